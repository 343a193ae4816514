// The progress line of the command-line host on a terminal.
#include "TerminalProgress.h"

#include <unistd.h>

namespace {

/// The line is rewritten at most this often.
constexpr std::chrono::milliseconds kInterval{100};

} // namespace

CTerminalProgress::CTerminalProgress(std::FILE* stream)
    : m_stream(stream), m_bTerminal(::isatty(::fileno(stream)) == 1) {}

void CTerminalProgress::Begin(const CString& text, int64_t total) {
    // A piece of work within another is shown as the outer one.
    if (m_nDepth++ > 0 || !m_bTerminal)
        return;
    m_text = text.ToUtf8();
    m_nTotal = total;
    m_last = std::chrono::steady_clock::now();
    Show(0);
}

bool CTerminalProgress::Step(int64_t done) {
    if (!m_bTerminal || m_nDepth != 1)
        return true;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last >= kInterval) {
        m_last = now;
        Show(done);
    }
    return true;
}

void CTerminalProgress::End() {
    if (m_nDepth > 0 && --m_nDepth == 0 && m_bShown) {
        std::fputs("\r\033[K", m_stream);
        std::fflush(m_stream);
        m_bShown = false;
    }
}

void CTerminalProgress::Show(int64_t done) {
    if (m_nTotal > 0)
        std::fprintf(m_stream, "\r\033[K%s %lld / %lld (%d%%)", m_text.c_str(),
                     static_cast<long long>(done), static_cast<long long>(m_nTotal),
                     static_cast<int>(100 * done / m_nTotal));
    else
        std::fprintf(m_stream, "\r\033[K%s", m_text.c_str());
    std::fflush(m_stream);
    m_bShown = true;
}
