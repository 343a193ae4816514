// The window of a dialog model, laid out in pixels from its template.
#include "ui/DialogView.h"

#include "ui/GridView.h"
#include "ui/ImageSet.h"
#include "ui/QtText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleValidator>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

CQtDialogView::CQtDialogView(CDialogModel& dialog, QWidget* parent)
    : QDialog(parent), m_dialog(dialog) {
    const CDialogTemplate& tmpl = dialog.GetTemplate();
    setFixedSize(tmpl.width, tmpl.height);
    setObjectName(QStringLiteral("dialog%1").arg(tmpl.id));
    for (int i = 0; i < m_dialog.GetControlCount(); ++i)
        m_widgets.push_back(MakeWidget(m_dialog.GetControlAt(i).resource));
    // Frames go under the controls they group.
    for (int i = 0; i < m_dialog.GetControlCount(); ++i)
        if (m_dialog.GetControlAt(i).resource.kind == EControlKind::Frame)
            m_widgets[static_cast<size_t>(i)]->lower();
    MakeGrids();
    RefreshAll();
    m_dialog.AddObserver(this);
}

CQtDialogView::~CQtDialogView() {
    m_dialog.RemoveObserver(this);
}

QWidget* CQtDialogView::Widget(int id) const {
    for (int i = 0; i < m_dialog.GetControlCount(); ++i)
        if (m_dialog.GetControlAt(i).resource.id == id)
            return m_widgets[static_cast<size_t>(i)];
    return nullptr;
}

CQtGridView* CQtDialogView::GridView(int id) const {
    const auto it = m_grids.find(id);
    return it == m_grids.end() ? nullptr : it->second;
}

void CQtDialogView::SyncGrids() {
    for (auto& [id, view] : m_grids)
        view->Sync();
}

QWidget* CQtDialogView::MakeWidget(const CControlSpec& resource) {
    QWidget* widget = nullptr;
    const int id = resource.id;
    switch (resource.kind) {
    case EControlKind::Button: {
        auto* button = new QPushButton(this);
        button->setAutoDefault(false);
        button->setDefault(resource.isDefault);
        connect(button, &QPushButton::clicked, this, [this, id] { m_dialog.UserClick(id); });
        widget = button;
        break;
    }
    case EControlKind::CheckBox: {
        auto* check = new QCheckBox(this);
        // The model toggles the check; the view draws what the model then holds.
        connect(check, &QCheckBox::clicked, this, [this, id] { m_dialog.UserClick(id); });
        widget = check;
        break;
    }
    case EControlKind::Edit:
    case EControlKind::NumberEdit: {
        auto* edit = new QLineEdit(this);
        connect(edit, &QLineEdit::textEdited, this,
                [this, id](const QString& text) { m_dialog.UserSetText(id, FromQ(text)); });
        widget = edit;
        break;
    }
    case EControlKind::ListBox: {
        auto* list = new QListWidget(this);
        connect(list, &QListWidget::currentRowChanged, this, [this, id](int row) {
            if (!m_bRefreshing && row >= 0)
                m_dialog.UserSelect(id, row);
        });
        widget = list;
        break;
    }
    case EControlKind::ComboBox: {
        auto* combo = new QComboBox(this);
        connect(combo, &QComboBox::activated, this,
                [this, id](int index) { m_dialog.UserSelect(id, index); });
        widget = combo;
        break;
    }
    case EControlKind::Frame:
        widget = new QGroupBox(this);
        break;
    case EControlKind::Static: {
        auto* label = new QLabel(this);
        label->setWordWrap(resource.height >= 2 * CGridModel::kDefaultRowHeight);
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        widget = label;
        break;
    }
    }
    widget->setGeometry(resource.x, resource.y, resource.width, resource.height);
    if (id != CDialogModel::kStaticId)
        widget->setObjectName(QStringLiteral("control%1").arg(id));
    return widget;
}

void CQtDialogView::Refresh(int index) {
    const CDialogControl& control = m_dialog.GetControlAt(index);
    QWidget* widget = m_widgets[static_cast<size_t>(index)];
    const QSignalBlocker blocker(widget);
    const QString text = ToQ(control.text);
    // A placeholder that carries a grid stays hidden: the grid is drawn in its place.
    const bool hasGrid = control.resource.id > 0 && m_dialog.HasGrid(control.resource.id);
    widget->setVisible(control.visible && !hasGrid);
    widget->setEnabled(control.enabled);
    switch (control.resource.kind) {
    case EControlKind::Button: {
        auto* button = static_cast<QPushButton*>(widget);
        button->setText(text);
        button->setIcon(control.icon >= 0 ? ImageSet::Button(control.icon) : QIcon());
        break;
    }
    case EControlKind::CheckBox: {
        auto* check = static_cast<QCheckBox*>(widget);
        check->setText(text);
        check->setChecked(control.checked);
        break;
    }
    case EControlKind::Edit:
    case EControlKind::NumberEdit: {
        auto* edit = static_cast<QLineEdit*>(widget);
        if (edit->text() != text)
            edit->setText(text);
        if (control.resource.kind == EControlKind::NumberEdit &&
            control.maxValue > control.minValue) {
            auto* validator =
                qobject_cast<QDoubleValidator*>(const_cast<QValidator*>(edit->validator()));
            if (validator == nullptr) {
                validator = new QDoubleValidator(edit);
                validator->setNotation(QDoubleValidator::StandardNotation);
                validator->setLocale(QLocale::c());
                edit->setValidator(validator);
            }
            validator->setRange(control.minValue, control.maxValue, control.decimals);
        }
        break;
    }
    case EControlKind::ListBox: {
        auto* list = static_cast<QListWidget*>(widget);
        m_bRefreshing = true;
        list->clear();
        for (const CString& item : control.items)
            list->addItem(ToQ(item));
        list->setCurrentRow(control.curSel);
        m_bRefreshing = false;
        break;
    }
    case EControlKind::ComboBox: {
        auto* combo = static_cast<QComboBox*>(widget);
        combo->clear();
        for (const CString& item : control.items)
            combo->addItem(ToQ(item));
        combo->setCurrentIndex(control.curSel);
        break;
    }
    case EControlKind::Frame:
        static_cast<QGroupBox*>(widget)->setTitle(text);
        break;
    case EControlKind::Static:
        static_cast<QLabel*>(widget)->setText(text);
        break;
    }
}

void CQtDialogView::RefreshAll() {
    setWindowTitle(ToQ(m_dialog.GetCaption()));
    for (int i = 0; i < m_dialog.GetControlCount(); ++i)
        Refresh(i);
    ShowFocus();
}

void CQtDialogView::MakeGrids() {
    for (int i = 0; i < m_dialog.GetGridCount(); ++i) {
        CGridModel& grid = m_dialog.GetGridAt(i);
        if (m_grids.count(grid.GetId()) != 0)
            continue;
        auto* view = new CQtGridView(grid, this);
        view->setObjectName(QStringLiteral("grid%1").arg(grid.GetId()));
        view->setGeometry(grid.GetX(), grid.GetY(), grid.GetWidth(), grid.GetHeight());
        view->show();
        m_grids[grid.GetId()] = view;
    }
}

void CQtDialogView::ShowFocus() {
    const int focus = m_dialog.GetFocus();
    if (focus == 0)
        return;
    if (CQtGridView* grid = GridView(focus))
        grid->setFocus();
    else if (QWidget* widget = Widget(focus))
        widget->setFocus();
}

void CQtDialogView::ControlChanged(int id) {
    if (id == 0 || m_dialog.GetGridCount() != static_cast<int>(m_grids.size())) {
        MakeGrids();
        if (id == 0) {
            RefreshAll();
            return;
        }
    }
    for (int i = 0; i < m_dialog.GetControlCount(); ++i)
        if (m_dialog.GetControlAt(i).resource.id == id)
            Refresh(i);
}

void CQtDialogView::DialogEnded(int result) {
    done(result);
}

void CQtDialogView::reject() {
    // As the close box of the window: the presenter's Cancel, and closed whatever it does.
    if (!m_dialog.IsEnded() && m_dialog.HasControl(IDCANCEL) && m_dialog.IsEnabled(IDCANCEL) &&
        m_dialog.IsVisible(IDCANCEL))
        m_dialog.UserClick(IDCANCEL);
    if (!m_dialog.IsEnded() && m_close)
        m_close();
    if (!m_dialog.IsEnded())
        m_dialog.EndDialog(IDCANCEL);
}

void CQtDialogView::accept() {
    for (int i = 0; i < m_dialog.GetControlCount(); ++i) {
        const CDialogControl& control = m_dialog.GetControlAt(i);
        if (control.resource.kind == EControlKind::Button && control.resource.isDefault) {
            m_dialog.UserClick(control.resource.id);
            return;
        }
    }
}
