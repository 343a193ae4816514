#pragma once
// CScriptedRunner: a modal runner that plays the user from a script, for headless hosts and
// tests. Every dialog that opens takes the next expected scene: the dialog's resource id and
// a function that acts in it as a user would (clicks, typing, grid edits). A dialog that the
// scene leaves open is cancelled. Popup menus, file choices and message boxes take their
// answers from queues; a message box without a queued answer is answered like the headless
// default (IDOK, or the first custom button).
//
// While installed (Install, undone by the destructor) it is the modal runner and the message
// box presenter, and it records every message box shown.
#include "dialog/DialogPresenter.h"
#include "host/MessageBox.h"

#include <deque>
#include <functional>
#include <string>

class CScriptedRunner : public CModalRunner {
public:
    using Scene = std::function<void(CDialogPresenter& dialog)>;
    struct Message {
        CString text;
        CString caption;
        unsigned type = 0;
        std::vector<CString> buttons;
    };

    CScriptedRunner() = default;
    ~CScriptedRunner() override;
    CScriptedRunner(const CScriptedRunner&) = delete;
    CScriptedRunner& operator=(const CScriptedRunner&) = delete;

    /// Makes this the modal runner and the message box presenter until destroyed.
    void Install();

    /// The next dialog to open must be the resource `templateId`; the scene acts in it.
    CScriptedRunner& Expect(int templateId, Scene scene);
    CScriptedRunner& AnswerPopup(int command);
    CScriptedRunner& AnswerFile(std::filesystem::path file);
    CScriptedRunner& AnswerMessageBox(int answer);

    int RunModal(CDialogPresenter& presenter) override;
    int TrackPopupMenu(CDialogPresenter& presenter, const CPopupMenu& menu, int anchorId) override;
    bool ChooseFile(const CString& caption, const CString& filter,
                    std::filesystem::path& file) override;

    /// Every message box shown while installed, in order.
    const std::vector<Message>& Messages() const { return m_messages; }
    /// What went against the script: a dialog that was not expected (it is cancelled), a
    /// popup whose answer it does not offer.
    const std::vector<std::string>& Errors() const { return m_errors; }
    /// True when every expected scene was played and every queued answer taken.
    bool Done() const;

private:
    int ShowMessage(const CString& text, const CString& caption, unsigned type,
                    const std::vector<CString>& buttons);
    static void Close(CDialogPresenter& presenter);

    std::deque<std::pair<int, Scene>> m_scenes;
    std::deque<int> m_popups;
    std::deque<std::filesystem::path> m_files;
    std::deque<int> m_answers;
    std::vector<Message> m_messages;
    std::vector<std::string> m_errors;
    bool m_bInstalled = false;
    CModalRunner* m_pPrevious = nullptr;
};
