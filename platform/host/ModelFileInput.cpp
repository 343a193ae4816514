// The bytes of a model file from memory or from a file read in pieces, with their checksum.
#include "host/ModelFileInput.h"

#include "stream/Crc32.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

CModelFileInput::CModelFileInput(const uint8_t* data, size_t size)
    : m_data(data), m_size(size), m_crc(0), m_body(size >= 4 ? size - 4 : 0) {}

CModelFileInput::CModelFileInput(int fd, size_t size)
    : m_size(size), m_fd(fd), m_crc(0), m_body(size >= 4 ? size - 4 : 0) {}

const uint8_t* CModelFileInput::Bytes(size_t pos, size_t n) {
    if (pos > m_size || n > m_size - pos)
        return nullptr;
    static const uint8_t kNothing = 0;
    if (n == 0)
        return &kNothing;
    if (m_fd < 0)
        return m_data + pos;
    if (pos < m_start || pos + n > m_start + m_filled) {
        if (m_failed || !Fill(pos, n))
            return nullptr;
    }
    return m_window.get() + (pos - m_start);
}

bool CModelFileInput::Fill(size_t pos, size_t n) {
    // The window is given room for the piece only; the bytes are read straight into it.
    const size_t want = std::min(std::max(n, PieceSize), m_size - pos);
    if (want > m_room) {
        m_window.reset(new uint8_t[want]);
        m_room = want;
    }
    m_start = pos;
    m_filled = 0;
    while (m_filled < want) {
        const ssize_t got = ::pread(m_fd, m_window.get() + m_filled, want - m_filled,
                                    static_cast<off_t>(pos + m_filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            // A file that ends before its measured size changed while it was read.
            m_failed = true;
            m_errno = got < 0 ? errno : 0;
            m_filled = 0;
            return false;
        }
        m_filled += static_cast<size_t>(got);
    }
    // Bytes read for the first time join the checksum; a piece read again adds nothing.
    const size_t end = std::min(pos + m_filled, m_body);
    if (m_summed >= pos && m_summed < end) {
        m_crc = Crc32(m_crc, m_window.get() + (m_summed - pos), end - m_summed);
        m_summed = end;
    }
    return true;
}

bool CModelFileInput::Checksum(uint32_t& crc) {
    if (m_fd < 0) {
        crc = Crc32(m_crc, m_data, m_body);
        return true;
    }
    while (m_summed < m_body) {
        const size_t n = std::min(PieceSize, m_body - m_summed);
        if (Bytes(m_summed, n) == nullptr)
            return false;
        // A piece already in the window that starts before the unsummed bytes.
        if (m_summed < m_start + m_filled && m_summed >= m_start) {
            const size_t end = std::min(m_start + m_filled, m_body);
            m_crc = Crc32(m_crc, m_window.get() + (m_summed - m_start), end - m_summed);
            m_summed = end;
        }
    }
    crc = m_crc;
    return true;
}
