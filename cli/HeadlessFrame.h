#pragma once
// CHeadlessFrame: the main frame of the command-line host. It has no window: it keeps the load
// selector as data, records what the loads module announces for the status pane, and reports
// the results mode the host chose.
#include "host/MainFrame.h"

#include <vector>

class CHeadlessFrame : public CMainFrame {
public:
    /// One announcement of the current load for the status pane.
    struct Announcement {
        CString text;
        CId id;
        int envelope = 0;
    };

    CId GetCurrentSloptId(int& number) const override;
    int GetBrojTekuceFazeGradjenja() const override { return 0; }
    bool IsCommandActive() const override { return false; }
    bool IsResultsMode() const override { return m_bResultsMode; }
    void Pane0Event_SlucajOpterecenja(const CString& text, const CId& id, int envelope) override;
    /// Nothing to repaint without a window.
    void Pane2Event_UpdateUnit() override {}
    void Repaint() override {}

    void SetResultsMode(bool resultsMode) { m_bResultsMode = resultsMode; }
    const std::vector<Announcement>& Announcements() const { return m_announcements; }
    void ClearAnnouncements() { m_announcements.clear(); }

private:
    bool m_bResultsMode = false;
    std::vector<Announcement> m_announcements;
};

/// Installs a frame as the host's main frame for as long as the guard lives.
class CFrameInstallation {
public:
    explicit CFrameInstallation(CMainFrame& frame) { CMainFrame::Install(&frame); }
    ~CFrameInstallation() { CMainFrame::Install(nullptr); }
    CFrameInstallation(const CFrameInstallation&) = delete;
    CFrameInstallation& operator=(const CFrameInstallation&) = delete;
};
