#pragma once
// The wait and progress indicator of the host: a long piece of work (enumerating or
// generating thousands of combinations) tells the host that it runs, how far it got, and asks
// whether the user cancelled. A desktop host shows a wait cursor or a progress bar with a
// Cancel button; a terminal host prints progress; without an installed indicator nothing is
// shown and nothing is cancelled.
#include "framework/String.h"

#include <cstdint>

class CWaitIndicator {
public:
    virtual ~CWaitIndicator() = default;
    /// Work begins; total is the number of steps, 0 when unknown (a wait cursor).
    virtual void Begin(const CString& text, int64_t total) = 0;
    /// Work got to `done` steps; false when the user asked to cancel.
    virtual bool Step(int64_t done) = 0;
    virtual void End() = 0;

    static CWaitIndicator* Get();
    /// Installs the host's indicator (not taken over); null removes it.
    static void Install(CWaitIndicator* indicator);
};

/// One piece of work shown by the installed indicator for the lifetime of the object. Step is
/// cheap enough for every step: the indicator hears at most one step in every 1024.
class CWaitProgress {
public:
    explicit CWaitProgress(const CString& text, int64_t total = 0);
    ~CWaitProgress();
    CWaitProgress(const CWaitProgress&) = delete;
    CWaitProgress& operator=(const CWaitProgress&) = delete;

    /// False once the user asked to cancel.
    bool Step(int64_t done) {
        if (m_pIndicator == nullptr || m_bCancelled || (done & 1023) != 0)
            return !m_bCancelled;
        return Report(done);
    }
    bool IsCancelled() const { return m_bCancelled; }

private:
    bool Report(int64_t done);

    CWaitIndicator* m_pIndicator;
    bool m_bCancelled = false;
};
