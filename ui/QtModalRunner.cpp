// The desktop host's modal runner, message box, progress indicator and fatal box.
#include "ui/QtModalRunner.h"

#include "diag/Assert.h"
#include "host/MessageBox.h"
#include "text/Translator.h"
#include "ui/DialogView.h"
#include "ui/QtText.h"

#include <QApplication>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

namespace {

QMessageBox::Icon IconOf(unsigned type) {
    switch (type & 0xF0u) {
    case CVortaMessageBox::MB_ICONSTOP:
        return QMessageBox::Critical;
    case CVortaMessageBox::MB_ICONQUESTION:
        return QMessageBox::Question;
    case CVortaMessageBox::MB_ICONWARNING:
        return QMessageBox::Warning;
    case CVortaMessageBox::MB_ICONINFORMATION:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

/// The answers of a standard box, in the order its buttons are shown.
std::vector<std::pair<int, CString>> StandardButtons(unsigned type) {
    switch (type & 0xFu) {
    case CVortaMessageBox::MB_OKCANCEL:
        return {{CVortaMessageBox::IDOK, L"OK"}, {CVortaMessageBox::IDCANCEL, L"Cancel"}};
    case CVortaMessageBox::MB_YESNOCANCEL:
        return {{CVortaMessageBox::IDYES, Tr(L"Da")},
                {CVortaMessageBox::IDNO, Tr(L"Ne")},
                {CVortaMessageBox::IDCANCEL, L"Cancel"}};
    case CVortaMessageBox::MB_YESNO:
        return {{CVortaMessageBox::IDYES, Tr(L"Da")}, {CVortaMessageBox::IDNO, Tr(L"Ne")}};
    default:
        return {{CVortaMessageBox::IDOK, L"OK"}};
    }
}

} // namespace

CQtModalRunner::CQtModalRunner(QWidget* parent) : m_parent(parent) {}

CQtModalRunner::~CQtModalRunner() {
    if (!m_bInstalled)
        return;
    CModalRunner::Install(m_pPreviousRunner);
    CWaitIndicator::Install(m_pPreviousIndicator);
    CVortaMessageBox::SetPresenter(nullptr);
    vdiag::SetBoxPresenter(nullptr);
}

void CQtModalRunner::Install() {
    if (!m_bInstalled) {
        m_pPreviousRunner = CModalRunner::Get();
        m_pPreviousIndicator = CWaitIndicator::Get();
        m_bInstalled = true;
    }
    CModalRunner::Install(this);
    CWaitIndicator::Install(this);
    CVortaMessageBox::SetPresenter([this](const CString& text, const CString& caption,
                                          unsigned type, const std::vector<CString>& buttons) {
        return MessageBox(Parent(), text, caption, type, buttons);
    });
    // The fatal box of a failed check: a real modal box, shown before the process ends.
    vdiag::SetBoxPresenter([this](const std::string& text, const std::string& caption) {
        QMessageBox box(QMessageBox::Critical, QString::fromStdString(caption),
                        QString::fromStdString(text), QMessageBox::Ok, Parent());
        box.setWindowModality(Qt::ApplicationModal);
        box.exec();
    });
}

QWidget* CQtModalRunner::Parent() const {
    if (!m_views.empty())
        return m_views.back();
    if (QWidget* active = QApplication::activeModalWidget())
        return active;
    return m_parent.data();
}

CQtDialogView* CQtModalRunner::TopView() const {
    return m_views.empty() ? nullptr : m_views.back();
}

int CQtModalRunner::RunModal(CDialogPresenter& presenter) {
    presenter.Start();
    CDialogModel& dialog = presenter.Dialog();
    if (dialog.IsEnded())
        return dialog.GetResult();
    CQtDialogView view(dialog, Parent());
    view.SetCloseHandler([&presenter] { presenter.OnCommand(IDCANCEL); });
    view.setWindowModality(Qt::ApplicationModal);
    m_views.push_back(&view);
    if (m_shown) {
        // The handler acts once the window is up and its grids are laid out.
        QTimer::singleShot(0, &view, [this, &view, &presenter] {
            view.SyncGrids();
            if (m_shown)
                m_shown(view, presenter);
        });
    }
    view.exec();
    m_views.pop_back();
    if (!dialog.IsEnded())
        dialog.EndDialog(IDCANCEL);
    return dialog.GetResult();
}

int CQtModalRunner::TrackPopupMenu(CDialogPresenter& presenter, const CPopupMenu& menu,
                                   int anchorId) {
    QWidget* anchor = nullptr;
    if (CQtDialogView* view = TopView(); view != nullptr && &view->Dialog() == &presenter.Dialog())
        anchor = view->Widget(anchorId);
    QMenu popup(anchor != nullptr ? anchor : Parent());
    for (const CMenuItem& item : menu) {
        if (item.command == 0) {
            popup.addSeparator();
            continue;
        }
        QAction* action = popup.addAction(ToQ(item.text));
        action->setData(item.command);
        action->setEnabled(item.enabled);
    }
    const QPoint at =
        anchor != nullptr ? anchor->mapToGlobal(QPoint(0, anchor->height())) : QCursor::pos();
    QAction* chosen = popup.exec(at);
    return chosen != nullptr ? chosen->data().toInt() : 0;
}

bool CQtModalRunner::ChooseFile(const CString& caption, const CString& filter,
                                std::filesystem::path& file) {
    const QString chosen =
        QFileDialog::getOpenFileName(Parent(), ToQ(caption), QString(), ToQ(filter));
    if (chosen.isEmpty())
        return false;
    file = std::filesystem::path(chosen.toStdString());
    return true;
}

int CQtModalRunner::MessageBox(QWidget* parent, const CString& text, const CString& caption,
                               unsigned type, const std::vector<CString>& buttons) {
    QMessageBox box(IconOf(type), ToQ(caption), ToQ(text), QMessageBox::NoButton, parent);
    box.setWindowModality(Qt::ApplicationModal);
    std::vector<std::pair<QAbstractButton*, int>> answers;
    if (!buttons.empty()) {
        for (size_t i = 0; i < buttons.size(); ++i)
            answers.emplace_back(box.addButton(ToQ(buttons[i]), QMessageBox::ActionRole),
                                 static_cast<int>(i) + 1);
    } else {
        for (const auto& [answer, label] : StandardButtons(type)) {
            const QMessageBox::ButtonRole role =
                answer == CVortaMessageBox::IDCANCEL || answer == CVortaMessageBox::IDNO
                    ? QMessageBox::RejectRole
                    : QMessageBox::AcceptRole;
            answers.emplace_back(box.addButton(ToQ(ClTranslator::Translate(label)), role), answer);
        }
    }
    if (!answers.empty())
        box.setDefaultButton(static_cast<QPushButton*>(answers.front().first));
    box.exec();
    for (const auto& [button, answer] : answers)
        if (box.clickedButton() == button)
            return answer;
    // Closed without a button: the last button of a custom box, Cancel (or No, or OK) of a
    // standard one.
    if (!buttons.empty())
        return static_cast<int>(buttons.size());
    return answers.back().second;
}

void CQtModalRunner::Begin(const CString& text, int64_t total) {
    m_nTotal = total;
    m_progress = std::make_unique<QProgressDialog>(
        ToQ(text), ToQ(ClTranslator::Translate(L"Cancel")), 0, total > 0 ? 1000 : 0, Parent());
    m_progress->setWindowModality(Qt::ApplicationModal);
    m_progress->setMinimumDuration(400);
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    m_progress->setValue(0);
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

bool CQtModalRunner::Step(int64_t done) {
    if (!m_progress)
        return true;
    if (m_nTotal > 0)
        m_progress->setValue(static_cast<int>(std::min<int64_t>(1000, done * 1000 / m_nTotal)));
    else
        m_progress->setValue(0);
    QApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    return !m_progress->wasCanceled();
}

void CQtModalRunner::End() {
    if (m_progress) {
        m_progress->close();
        m_progress.reset();
        QApplication::restoreOverrideCursor();
    }
}
