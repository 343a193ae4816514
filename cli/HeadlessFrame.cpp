// The window-less main frame of the command-line host.
#include "HeadlessFrame.h"

CId CHeadlessFrame::GetCurrentSloptId(int& number) const {
    // The current load is the one last announced; its key is its place in the selector.
    number = Combo().GetCurSel();
    return m_announcements.empty() ? CId() : m_announcements.back().id;
}

void CHeadlessFrame::Pane0Event_SlucajOpterecenja(const CString& text, const CId& id,
                                                  int envelope) {
    m_announcements.push_back({text, id, envelope});
}
