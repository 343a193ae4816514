// The load selector list of the toolbar and the installed main frame.
#include "host/MainFrame.h"

#include <utility>

namespace {

CMainFrame* g_pFrame = nullptr;

} // namespace

int CSelectorList::SetCurSel(int pos) {
    m_sel = pos >= 0 && pos < GetCount() ? pos : -1;
    return m_sel;
}

void CSelectorList::ResetContent() {
    m_texts.clear();
    m_sel = -1;
}

int CSelectorList::AddString(const CString& text) {
    m_texts.push_back(text);
    return GetCount() - 1;
}

int CSelectorList::AddString(CString&& text) {
    m_texts.push_back(std::move(text));
    return GetCount() - 1;
}

CString CSelectorList::GetText(int pos) const {
    return pos >= 0 && pos < GetCount() ? m_texts[static_cast<size_t>(pos)] : CString();
}

CMainFrame* CMainFrame::Get() {
    return g_pFrame;
}

void CMainFrame::Install(CMainFrame* frame) {
    g_pFrame = frame;
}
