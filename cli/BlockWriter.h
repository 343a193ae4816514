#pragma once
// Writing a report's output on a thread of its own: the thread that formats the tables hands
// over whole blocks of text and goes on with the next rows while the system copies the last
// block into the file.
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

/// A stream buffer in front of another that writes on a thread of its own. Text written to it
/// as a stream is kept until a block is handed over or the stream is flushed; a block handed
/// over is written as it is, in order, without being copied. Flushing waits until everything
/// is written; when a write failed it fails with errno telling why.
class CBlockWriter : public std::streambuf {
public:
    /// At most `ahead` blocks wait to be written.
    explicit CBlockWriter(std::streambuf& target, size_t ahead = 4);
    /// Writes what is left, then ends the thread.
    ~CBlockWriter() override;
    CBlockWriter(const CBlockWriter&) = delete;
    CBlockWriter& operator=(const CBlockWriter&) = delete;

    /// A block of at least `size` bytes to fill, one already written when there is one.
    std::unique_ptr<char[]> Take(size_t size);
    /// Hands over the first `used` bytes of a block of `size` bytes (from Take or not).
    void Give(std::unique_ptr<char[]> block, size_t size, size_t used);

protected:
    std::streamsize xsputn(const char* s, std::streamsize n) override;
    int_type overflow(int_type ch) override;
    int sync() override;

private:
    struct Block {
        std::unique_ptr<char[]> bytes;
        size_t size = 0;
        size_t used = 0;
    };
    void Queue(Block block);
    void HandOverText();
    void Run();

    std::streambuf& m_target;
    const size_t m_ahead;
    std::string m_text;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Block> m_waiting;
    std::vector<Block> m_written;
    bool m_busy = false;
    bool m_closing = false;
    int m_error = 0;
    // Last, so that it starts once the rest is in place.
    std::thread m_thread;
};
