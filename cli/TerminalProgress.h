#pragma once
// CTerminalProgress: the wait and progress indicator of the command-line host. Long work of the
// module (enumerating and generating combinations) shows on the error stream as one line that
// is rewritten in place, with a percentage when the amount of work is known, and erased when
// the work ends. Only on a terminal: output that goes to a file or a pipe stays clean.
#include "dialog/WaitIndicator.h"

#include <chrono>
#include <cstdio>
#include <string>

class CTerminalProgress : public CWaitIndicator {
public:
    /// Shows on `stream` when its descriptor is a terminal, otherwise never.
    explicit CTerminalProgress(std::FILE* stream = stderr);

    void Begin(const CString& text, int64_t total) override;
    bool Step(int64_t done) override;
    void End() override;

private:
    void Show(int64_t done);

    std::FILE* m_stream;
    bool m_bTerminal;
    int m_nDepth = 0;
    std::string m_text;
    int64_t m_nTotal = 0;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_last;
};

/// Installs the indicator for the lifetime of the guard.
class CProgressInstallation {
public:
    explicit CProgressInstallation(CWaitIndicator& indicator) {
        CWaitIndicator::Install(&indicator);
    }
    ~CProgressInstallation() { CWaitIndicator::Install(nullptr); }
    CProgressInstallation(const CProgressInstallation&) = delete;
    CProgressInstallation& operator=(const CProgressInstallation&) = delete;
};
