#pragma once
// CDialogPresenter: the logic of one modal dialog over its dialog model. A presenter fills the
// dialog when it starts, hears the user's actions on its controls and grids, and ends the
// dialog; it never knows how (or whether) the dialog is drawn.
//
// CModalRunner: what the host gives modal dialogs: it runs a dialog until it ends (a desktop
// host shows a window; a headless host or a test plays a script of user actions), shows
// popup menus and lets the user choose files. Without an installed runner a dialog starts and
// is cancelled at once, so a headless host that never installs one changes nothing.
#include "dialog/DialogModel.h"

#include <filesystem>

class CDialogPresenter : public IDialogHandler, public IGridHandler {
public:
    explicit CDialogPresenter(CDialogTemplate tmpl);
    ~CDialogPresenter() override;
    CDialogPresenter(const CDialogPresenter&) = delete;
    CDialogPresenter& operator=(const CDialogPresenter&) = delete;

    CDialogModel& Dialog() { return m_dialog; }
    const CDialogModel& Dialog() const { return m_dialog; }

    /// Runs the dialog modally through the host's runner; returns the modal result.
    int DoModal();
    /// Fills the dialog for a new run (runners call it before the dialog is shown).
    void Start();

    /// Buttons: IDOK goes to OnOK, IDCANCEL to OnCancel, any other to OnButton.
    void OnCommand(int id) override;

protected:
    virtual void OnInitDialog() {}
    virtual void OnOK() { EndDialog(IDOK); }
    virtual void OnCancel() { EndDialog(IDCANCEL); }
    virtual void OnButton(int id);
    void EndDialog(int result) { m_dialog.EndDialog(result); }
    /// Shows a popup menu under a control and returns the chosen command, 0 when none was.
    int TrackPopupMenu(const CPopupMenu& menu, int anchorId);
    /// Asks the user for an existing file; false when none was chosen.
    bool ChooseFile(const CString& caption, const CString& filter, std::filesystem::path& file);
    /// Creates a grid over a placeholder with this presenter as its handler.
    CGridModel& CreateGrid(int id, bool cutToRows = true);

private:
    CDialogModel m_dialog;
};

class CModalRunner {
public:
    virtual ~CModalRunner() = default;
    /// Shows the dialog modally until it ends; returns its result. It must call
    /// presenter.Start() first.
    virtual int RunModal(CDialogPresenter& presenter) = 0;
    /// Shows a popup menu under a control of the dialog; the chosen command or 0.
    virtual int TrackPopupMenu(CDialogPresenter& presenter, const CPopupMenu& menu,
                               int anchorId) = 0;
    /// Asks for an existing file (filter like "Modeli (*.vld)"); false when none was chosen.
    virtual bool ChooseFile(const CString& caption, const CString& filter,
                            std::filesystem::path& file) = 0;

    /// The installed runner, or null. A runner is not taken over.
    static CModalRunner* Get();
    static void Install(CModalRunner* runner);
};

/// Installs a runner for its lifetime and puts the previous one back afterwards.
class CModalRunnerInstallation {
public:
    explicit CModalRunnerInstallation(CModalRunner& runner);
    ~CModalRunnerInstallation();
    CModalRunnerInstallation(const CModalRunnerInstallation&) = delete;
    CModalRunnerInstallation& operator=(const CModalRunnerInstallation&) = delete;

private:
    CModalRunner* m_pPrevious;
};
