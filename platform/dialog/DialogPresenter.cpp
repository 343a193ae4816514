// The presenter base of modal dialogs and the host's modal runner.
#include "dialog/DialogPresenter.h"

namespace {

CModalRunner*& Installed() {
    static CModalRunner* runner = nullptr;
    return runner;
}

} // namespace

CDialogPresenter::CDialogPresenter(CDialogTemplate tmpl) : m_dialog(std::move(tmpl)) {
    m_dialog.SetHandler(this);
}

CDialogPresenter::~CDialogPresenter() {
    m_dialog.SetHandler(nullptr);
}

int CDialogPresenter::DoModal() {
    if (CModalRunner* runner = CModalRunner::Get())
        return runner->RunModal(*this);
    // Nobody can answer a dialog: it opens and is closed again, as if cancelled.
    Start();
    if (!m_dialog.IsEnded())
        OnCancel();
    if (!m_dialog.IsEnded())
        EndDialog(IDCANCEL);
    return m_dialog.GetResult();
}

void CDialogPresenter::Start() {
    m_dialog.Restart();
    OnInitDialog();
}

void CDialogPresenter::OnCommand(int id) {
    if (id == IDOK)
        OnOK();
    else if (id == IDCANCEL)
        OnCancel();
    else
        OnButton(id);
}

void CDialogPresenter::OnButton(int) {}

int CDialogPresenter::TrackPopupMenu(const CPopupMenu& menu, int anchorId) {
    CModalRunner* runner = CModalRunner::Get();
    return runner != nullptr ? runner->TrackPopupMenu(*this, menu, anchorId) : 0;
}

bool CDialogPresenter::ChooseFile(const CString& caption, const CString& filter,
                                  std::filesystem::path& file) {
    CModalRunner* runner = CModalRunner::Get();
    return runner != nullptr && runner->ChooseFile(caption, filter, file);
}

CGridModel& CDialogPresenter::CreateGrid(int id, bool cutToRows) {
    CGridModel& grid = m_dialog.CreateGrid(id, cutToRows);
    grid.SetHandler(this);
    return grid;
}

CModalRunner* CModalRunner::Get() {
    return Installed();
}

void CModalRunner::Install(CModalRunner* runner) {
    Installed() = runner;
}

CModalRunnerInstallation::CModalRunnerInstallation(CModalRunner& runner)
    : m_pPrevious(CModalRunner::Get()) {
    CModalRunner::Install(&runner);
}

CModalRunnerInstallation::~CModalRunnerInstallation() {
    CModalRunner::Install(m_pPrevious);
}
