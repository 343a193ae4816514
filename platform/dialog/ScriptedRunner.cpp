// A modal runner that plays the user from a script.
#include "dialog/ScriptedRunner.h"

#include <algorithm>

CScriptedRunner::~CScriptedRunner() {
    if (m_bInstalled) {
        CModalRunner::Install(m_pPrevious);
        CVortaMessageBox::SetPresenter(nullptr);
    }
}

void CScriptedRunner::Install() {
    if (!m_bInstalled) {
        m_pPrevious = CModalRunner::Get();
        m_bInstalled = true;
    }
    CModalRunner::Install(this);
    CVortaMessageBox::SetPresenter([this](const CString& text, const CString& caption,
                                          unsigned type, const std::vector<CString>& buttons) {
        return ShowMessage(text, caption, type, buttons);
    });
}

CScriptedRunner& CScriptedRunner::Expect(int templateId, Scene scene) {
    m_scenes.emplace_back(templateId, std::move(scene));
    return *this;
}

CScriptedRunner& CScriptedRunner::AnswerPopup(int command) {
    m_popups.push_back(command);
    return *this;
}

CScriptedRunner& CScriptedRunner::AnswerFile(std::filesystem::path file) {
    m_files.push_back(std::move(file));
    return *this;
}

CScriptedRunner& CScriptedRunner::AnswerMessageBox(int answer) {
    m_answers.push_back(answer);
    return *this;
}

void CScriptedRunner::Close(CDialogPresenter& presenter) {
    // As the window's close box does: the presenter's Cancel, and closed whatever it does.
    if (!presenter.Dialog().IsEnded())
        presenter.OnCommand(IDCANCEL);
    if (!presenter.Dialog().IsEnded())
        presenter.Dialog().EndDialog(IDCANCEL);
}

int CScriptedRunner::RunModal(CDialogPresenter& presenter) {
    presenter.Start();
    const int id = presenter.Dialog().GetTemplateId();
    if (m_scenes.empty() || m_scenes.front().first != id) {
        m_errors.push_back("dialog " + std::to_string(id) + " opened but was not expected");
    } else if (!presenter.Dialog().IsEnded()) {
        Scene scene = std::move(m_scenes.front().second);
        m_scenes.pop_front();
        if (scene)
            scene(presenter);
    } else {
        m_scenes.pop_front();
    }
    Close(presenter);
    return presenter.Dialog().GetResult();
}

int CScriptedRunner::TrackPopupMenu(CDialogPresenter&, const CPopupMenu& menu, int) {
    if (m_popups.empty())
        return 0;
    const int command = m_popups.front();
    m_popups.pop_front();
    const bool offered = std::any_of(menu.begin(), menu.end(), [&](const CMenuItem& item) {
        return item.command == command && item.enabled;
    });
    if (!offered) {
        m_errors.push_back("popup command " + std::to_string(command) + " is not offered");
        return 0;
    }
    return command;
}

bool CScriptedRunner::ChooseFile(const CString&, const CString&, std::filesystem::path& file) {
    if (m_files.empty())
        return false;
    file = std::move(m_files.front());
    m_files.pop_front();
    return !file.empty();
}

int CScriptedRunner::ShowMessage(const CString& text, const CString& caption, unsigned type,
                                 const std::vector<CString>& buttons) {
    m_messages.push_back({text, caption, type, buttons});
    if (m_answers.empty())
        return buttons.empty() ? static_cast<int>(CVortaMessageBox::IDOK) : 1;
    const int answer = m_answers.front();
    m_answers.pop_front();
    return answer;
}

bool CScriptedRunner::Done() const {
    return m_scenes.empty() && m_popups.empty() && m_files.empty() && m_answers.empty();
}
