#pragma once
// The bytes of a model file as its reader takes them: from memory, or from an open file read in
// pieces into a window that moves forward with the reader, so that a large file is never held
// whole beside the model made from it. The CRC-32 of the bytes before the checksum is summed
// as they are first read, so that the file is read once.
#include <cstddef>
#include <cstdint>
#include <memory>

class CModelFileInput {
public:
    /// The bytes of a piece read from a file at a time (a longer record takes a longer piece).
    static constexpr size_t PieceSize = size_t{1} << 20;

    /// Bytes in memory, which stay the caller's.
    CModelFileInput(const uint8_t* data, size_t size);
    /// An open file of `size` bytes, read from its start (the descriptor stays the caller's).
    CModelFileInput(int fd, size_t size);

    size_t Size() const { return m_size; }
    /// The n bytes from pos in one piece, valid until the next call; null when they lie beyond
    /// the end, or the file cannot be read or ended early (see Failed).
    const uint8_t* Bytes(size_t pos, size_t n);
    /// The CRC-32 of every byte but the last four (the checksum's place); what the reader has
    /// not asked for yet is read now. False when the file cannot be read.
    bool Checksum(uint32_t& crc);

    /// Whether reading the file failed: with errno's value, or 0 when it became shorter than it
    /// was when opened.
    bool Failed() const { return m_failed; }
    int Error() const { return m_errno; }

private:
    /// Reads the piece of the file that starts at pos and holds at least n bytes.
    bool Fill(size_t pos, size_t n);

    const uint8_t* m_data = nullptr;
    size_t m_size = 0;
    int m_fd = -1;
    // The window of a file: its bytes, their room and where they start in the file.
    std::unique_ptr<uint8_t[]> m_window;
    size_t m_room = 0;
    size_t m_start = 0;
    size_t m_filled = 0;
    // The checksum of the bytes before m_summed, and where it stops (four bytes before the end).
    uint32_t m_crc;
    size_t m_summed = 0;
    size_t m_body = 0;
    bool m_failed = false;
    int m_errno = 0;
};
