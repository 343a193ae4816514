// The writing thread of a report.
#include "BlockWriter.h"

#include <cerrno>
#include <cstring>

CBlockWriter::CBlockWriter(std::streambuf& target, size_t ahead)
    : m_target(target), m_ahead(ahead == 0 ? 1 : ahead), m_thread([this] { Run(); }) {}

CBlockWriter::~CBlockWriter() {
    HandOverText();
    {
        std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

std::unique_ptr<char[]> CBlockWriter::Take(size_t size) {
    {
        std::lock_guard lock(m_mutex);
        // A block written already is filled again: its pages are the process's already.
        for (auto it = m_written.begin(); it != m_written.end(); ++it) {
            if (it->size >= size) {
                std::unique_ptr<char[]> bytes = std::move(it->bytes);
                m_written.erase(it);
                return bytes;
            }
        }
    }
    return std::make_unique_for_overwrite<char[]>(size);
}

void CBlockWriter::Give(std::unique_ptr<char[]> block, size_t size, size_t used) {
    HandOverText();
    Queue({std::move(block), size, used});
}

void CBlockWriter::Queue(Block block) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waiting.size() < m_ahead; });
    m_waiting.push_back(std::move(block));
    lock.unlock();
    m_changed.notify_all();
}

void CBlockWriter::HandOverText() {
    if (m_text.empty())
        return;
    auto bytes = std::make_unique_for_overwrite<char[]>(m_text.size());
    std::memcpy(bytes.get(), m_text.data(), m_text.size());
    Queue({std::move(bytes), m_text.size(), m_text.size()});
    m_text.clear();
}

std::streamsize CBlockWriter::xsputn(const char* s, std::streamsize n) {
    m_text.append(s, static_cast<size_t>(n));
    return n;
}

CBlockWriter::int_type CBlockWriter::overflow(int_type ch) {
    if (!traits_type::eq_int_type(ch, traits_type::eof()))
        m_text.push_back(traits_type::to_char_type(ch));
    return traits_type::not_eof(ch);
}

int CBlockWriter::sync() {
    HandOverText();
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waiting.empty() && !m_busy; });
    int error = m_error;
    lock.unlock();
    if (error == 0 && m_target.pubsync() != 0)
        error = errno != 0 ? errno : EIO;
    if (error == 0)
        return 0;
    // The write failed on the writing thread, whose errno is its own: the caller is told why
    // as if it had written itself.
    errno = error;
    return -1;
}

void CBlockWriter::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_closing; });
        if (m_waiting.empty())
            return;
        Block block = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_busy = true;
        const bool failed = m_error != 0;
        lock.unlock();
        m_changed.notify_all();
        // After a failed write nothing more is written: the output stops where it failed.
        int error = 0;
        if (!failed) {
            errno = 0;
            const auto bytes = static_cast<std::streamsize>(block.used);
            if (m_target.sputn(block.bytes.get(), bytes) != bytes)
                error = errno != 0 ? errno : EIO;
        }
        lock.lock();
        m_busy = false;
        if (m_error == 0)
            m_error = error;
        // Blocks of a large size are kept for reuse, a few at most.
        if (block.size >= (size_t{1} << 16) && m_written.size() < m_ahead + 2)
            m_written.push_back(std::move(block));
        m_changed.notify_all();
    }
}
