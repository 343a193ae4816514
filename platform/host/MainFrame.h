#pragma once
// CMainFrame: what the host's main window offers the loads module. The host derives from it
// and installs its frame; the module reaches it through CMainFrame::Get().
//
// The load selector of the toolbar is kept here as data (texts and the selection); a window
// host draws it, a headless host just keeps it.
#include "framework/String.h"
#include "objbase/Id.h"

#include <vector>

/// The selector list of the toolbar: texts by position and the selected position (-1: none).
class CSelectorList {
public:
    int GetCount() const { return static_cast<int>(m_texts.size()); }
    int GetCurSel() const { return m_sel; }
    /// Selects a position; anything outside the list clears the selection. Returns the
    /// selection, -1 when cleared.
    int SetCurSel(int pos);
    void ResetContent();
    int AddString(const CString& text);
    /// The same, taking the text over: a long list is filled without copying its texts.
    int AddString(CString&& text);
    /// The text at a position, empty outside the list.
    CString GetText(int pos) const;
    const std::vector<CString>& Texts() const { return m_texts; }

private:
    std::vector<CString> m_texts;
    int m_sel = -1;
};

class CMainFrame {
public:
    virtual ~CMainFrame() = default;

    static CMainFrame* Get();
    /// Installs the host's frame (not taken over); null removes it.
    static void Install(CMainFrame* frame);

    /// Refresh of the load selector, filled by the loads module at set-up.
    static inline void (*UpdateCombo)(int n) = nullptr;

    /// The current load: its identifier, and in `number` its key in the selector items.
    virtual CId GetCurrentSloptId(int& number) const = 0;
    /// The current construction phase, zero-based.
    virtual int GetBrojTekuceFazeGradjenja() const = 0;
    /// True while a command of the host is running.
    virtual bool IsCommandActive() const = 0;
    /// True when the selector shows results (every load) rather than load input.
    virtual bool IsResultsMode() const = 0;
    /// Status pane: the current load's text, its identifier and whether it is an envelope.
    virtual void Pane0Event_SlucajOpterecenja(const CString& text, const CId& id, int envelope) = 0;
    /// Status pane: the units shown changed.
    virtual void Pane2Event_UpdateUnit() = 0;
    /// Repaints the frame.
    virtual void Repaint() = 0;

    /// The load selector list.
    CSelectorList& Combo() { return m_combo; }
    const CSelectorList& Combo() const { return m_combo; }

private:
    CSelectorList m_combo;
};
