#pragma once
// CQtModalRunner: the desktop host's modal runner. Every dialog a presenter runs is shown as a
// modal window laid out from its template; popup menus open under their control; files are
// chosen in the file dialog. While installed it is also the host's message box (standard
// buttons or custom captions, which answer with the 1-based index of the pressed button), the
// wait and progress indicator (a progress dialog with Cancel), and the presenter of the
// assertion routine's fatal box.
#include "dialog/DialogPresenter.h"
#include "dialog/WaitIndicator.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class CQtDialogView;
class QProgressDialog;

class CQtModalRunner : public CModalRunner, public CWaitIndicator {
public:
    /// Called with every dialog view as soon as it is shown (tests and screenshots act in it).
    using ShownHandler = std::function<void(CQtDialogView& view, CDialogPresenter& presenter)>;

    explicit CQtModalRunner(QWidget* parent = nullptr);
    ~CQtModalRunner() override;
    CQtModalRunner(const CQtModalRunner&) = delete;
    CQtModalRunner& operator=(const CQtModalRunner&) = delete;

    /// Installs the runner, the message box, the wait indicator and the fatal box; the
    /// destructor removes them again.
    void Install();
    void SetParent(QWidget* parent) { m_parent = parent; }
    void SetShownHandler(ShownHandler handler) { m_shown = std::move(handler); }

    int RunModal(CDialogPresenter& presenter) override;
    int TrackPopupMenu(CDialogPresenter& presenter, const CPopupMenu& menu, int anchorId) override;
    bool ChooseFile(const CString& caption, const CString& filter,
                    std::filesystem::path& file) override;

    void Begin(const CString& text, int64_t total) override;
    bool Step(int64_t done) override;
    void End() override;

    /// The message box of the host.
    static int MessageBox(QWidget* parent, const CString& text, const CString& caption,
                          unsigned type, const std::vector<CString>& buttons);
    /// The dialog view shown last and still open, or null.
    CQtDialogView* TopView() const;

private:
    QWidget* Parent() const;

    QPointer<QWidget> m_parent;
    std::vector<CQtDialogView*> m_views;
    ShownHandler m_shown;
    std::unique_ptr<QProgressDialog> m_progress;
    int64_t m_nTotal = 0;
    bool m_bInstalled = false;
    CModalRunner* m_pPreviousRunner = nullptr;
    CWaitIndicator* m_pPreviousIndicator = nullptr;
};
