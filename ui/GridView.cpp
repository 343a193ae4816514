// The view of a grid model: a QTableView that hands every user action to the grid.
#include "ui/GridView.h"

#include "ui/QtText.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyledItemDelegate>

namespace {

/// Edits combo cells with a combo box of their options and text cells with a line edit.
class CGridCellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        const QStringList options = index.data(CQtGridTableModel::OptionsRole).toStringList();
        if (options.isEmpty())
            return QStyledItemDelegate::createEditor(parent, option, index);
        auto* combo = new QComboBox(parent);
        combo->addItems(options);
        return combo;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        if (auto* combo = qobject_cast<QComboBox*>(editor)) {
            combo->setCurrentIndex(index.data(CQtGridTableModel::ComboSelRole).toInt());
            return;
        }
        QStyledItemDelegate::setEditorData(editor, index);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        if (auto* combo = qobject_cast<QComboBox*>(editor)) {
            model->setData(index, combo->currentIndex(), CQtGridTableModel::ComboSelRole);
            return;
        }
        QStyledItemDelegate::setModelData(editor, model, index);
    }
};

} // namespace

CQtGridView::CQtGridView(CGridModel& grid, QWidget* parent)
    : QTableView(parent), m_model(grid, this) {
    setModel(&m_model);
    setItemDelegate(new CGridCellDelegate(this));
    // The grid keeps the selection and the view draws it.
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(CGridModel::kDefaultRowHeight);
    verticalHeader()->setMinimumSectionSize(CGridModel::kDefaultRowHeight);
    verticalHeader()->setDefaultAlignment(Qt::AlignVCenter | Qt::AlignRight);
    horizontalHeader()->setMinimumSectionSize(8);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    verticalHeader()->setSectionsClickable(true);

    connect(&m_model, &CQtGridTableModel::StructureApplied, this, &CQtGridView::ApplyStructure);
    connect(&m_model, &CQtGridTableModel::EditRequested, this, &CQtGridView::StartEdit);
    connect(&m_model, &CQtGridTableModel::FocusChanged, this, &CQtGridView::ShowFocus);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
        if (m_model.FixedRows() > 0)
            Grid().UserClick(m_model.FixedRows() - 1, section + m_model.FixedCols());
    });
    connect(verticalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
        if (m_model.FixedCols() > 0)
            Grid().UserClick(section + m_model.FixedRows(), m_model.FixedCols() - 1,
                             ClickOf(QApplication::keyboardModifiers()));
    });
    ApplyStructure();
}

void CQtGridView::Sync() {
    m_model.Sync();
}

void CQtGridView::ApplyStructure() {
    CGridModel& grid = Grid();
    const int fixedRows = m_model.FixedRows();
    const int fixedCols = m_model.FixedCols();
    horizontalHeader()->setVisible(fixedRows > 0);
    verticalHeader()->setVisible(fixedCols > 0);
    horizontalHeader()->setFixedHeight(std::max(1, fixedRows) * CGridModel::kDefaultRowHeight + 2);
    int headerWidth = 0;
    for (int c = 0; c < fixedCols; ++c)
        headerWidth += grid.GetColumnWidth(c);
    if (fixedCols > 0)
        verticalHeader()->setFixedWidth(std::max(headerWidth, 16));
    for (int c = fixedCols; c < grid.GetColumnCount(); ++c)
        setColumnWidth(c - fixedCols, grid.GetColumnWidth(c));
    if (grid.GetWidth() > 0 && grid.GetHeight() > 0 && parentWidget() != nullptr)
        setGeometry(grid.GetX(), grid.GetY(), grid.GetWidth(), grid.GetHeight());
}

CGridModel::Click CQtGridView::ClickOf(Qt::KeyboardModifiers modifiers) {
    if (modifiers & Qt::ControlModifier)
        return CGridModel::Click::Toggle;
    if (modifiers & Qt::ShiftModifier)
        return CGridModel::Click::Extend;
    return CGridModel::Click::Plain;
}

void CQtGridView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton)
        Grid().UserClick(m_model.GridRow(index), m_model.GridCol(index),
                         ClickOf(event->modifiers()));
    QTableView::mousePressEvent(event);
}

void CQtGridView::keyPressEvent(QKeyEvent* event) {
    const QModelIndex before = currentIndex();
    QTableView::keyPressEvent(event);
    const QModelIndex after = currentIndex();
    if (after.isValid() && after != before)
        Grid().UserClick(m_model.GridRow(after), m_model.GridCol(after),
                         (event->modifiers() & Qt::ShiftModifier) ? CGridModel::Click::Extend
                                                                  : CGridModel::Click::Plain);
}

void CQtGridView::contextMenuEvent(QContextMenuEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid())
        return;
    const int row = m_model.GridRow(index);
    const int col = m_model.GridCol(index);
    const int menuIndex = Grid().GetCell(row, col).popupMenu;
    if (menuIndex < 0 || menuIndex >= Grid().GetPopupMenuCount())
        return;
    QMenu menu(this);
    for (const CMenuItem& item : Grid().GetPopupMenu(menuIndex)) {
        if (item.command == 0) {
            menu.addSeparator();
            continue;
        }
        QAction* action = menu.addAction(ToQ(item.text));
        action->setData(item.command);
        action->setEnabled(item.enabled);
    }
    if (QAction* chosen = menu.exec(event->globalPos()))
        Grid().UserPopupCommand(row, col, chosen->data().toInt());
}

void CQtGridView::StartEdit(int gridRow, int gridCol) {
    const QModelIndex index = m_model.IndexOf(gridRow, gridCol);
    if (!index.isValid())
        return;
    setFocus();
    setCurrentIndex(index);
    scrollTo(index);
    edit(index);
}

void CQtGridView::ShowFocus(int gridRow, int gridCol) {
    Sync();
    const int visible = Grid().GetVisibleRow();
    const QModelIndex shown =
        m_model.IndexOf(visible >= 0 ? visible : gridRow, std::max(gridCol, m_model.FixedCols()));
    if (shown.isValid())
        scrollTo(shown);
    const QModelIndex focus = m_model.IndexOf(gridRow, gridCol);
    if (focus.isValid())
        selectionModel()->setCurrentIndex(focus, QItemSelectionModel::NoUpdate);
}
