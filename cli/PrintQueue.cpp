// The printing thread of a report.
#include "PrintQueue.h"

#include <cerrno>

CPrintQueue::CPrintQueue(std::ostream& out, size_t ahead)
    : m_out(out), m_ahead(ahead == 0 ? 1 : ahead), m_thread([this] { Run(); }) {}

CPrintQueue::~CPrintQueue() {
    {
        std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void CPrintQueue::Post(Piece piece) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_pieces.size() < m_ahead || m_failure != nullptr; });
    if (m_failure != nullptr)
        std::rethrow_exception(m_failure);
    m_pieces.push_back(std::move(piece));
    lock.unlock();
    m_changed.notify_all();
}

void CPrintQueue::Finish() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return (m_pieces.empty() && !m_busy) || m_failure != nullptr; });
    if (m_failure != nullptr)
        std::rethrow_exception(m_failure);
    // The stream failed on the printing thread, whose errno is its own: the caller, which
    // finds the stream failed, is told why as if it had written itself.
    if (m_writeError != 0)
        errno = m_writeError;
}

void CPrintQueue::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return !m_pieces.empty() || m_closing; });
        if (m_pieces.empty())
            return;
        Piece piece = std::move(m_pieces.front());
        m_pieces.pop_front();
        m_busy = true;
        lock.unlock();
        m_changed.notify_all();
        std::exception_ptr failure;
        int writeError = 0;
        try {
            piece(m_out);
            if (!m_out)
                writeError = errno != 0 ? errno : EIO;
        } catch (...) {
            failure = std::current_exception();
        }
        // The piece and the table it owns are freed here, off the thread that makes the next.
        piece = nullptr;
        lock.lock();
        m_busy = false;
        if (m_writeError == 0)
            m_writeError = writeError;
        if (failure != nullptr) {
            // What was still waiting is not printed: the report stops where it failed.
            m_failure = failure;
            m_pieces.clear();
        }
        m_changed.notify_all();
    }
}
