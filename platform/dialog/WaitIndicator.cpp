// The host's wait and progress indicator.
#include "dialog/WaitIndicator.h"

namespace {

CWaitIndicator*& Installed() {
    static CWaitIndicator* indicator = nullptr;
    return indicator;
}

} // namespace

CWaitIndicator* CWaitIndicator::Get() {
    return Installed();
}

void CWaitIndicator::Install(CWaitIndicator* indicator) {
    Installed() = indicator;
}

CWaitProgress::CWaitProgress(const CString& text, int64_t total) : m_pIndicator(Installed()) {
    if (m_pIndicator != nullptr)
        m_pIndicator->Begin(text, total);
}

CWaitProgress::~CWaitProgress() {
    if (m_pIndicator != nullptr)
        m_pIndicator->End();
}

bool CWaitProgress::Report(int64_t done) {
    if (!m_pIndicator->Step(done))
        m_bCancelled = true;
    return !m_bCancelled;
}
