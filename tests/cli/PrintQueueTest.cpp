// The printing and writing threads of `show`: order kept, failures stop the output and reach
// the caller.
#include "PrintQueue.h"
#include "BlockWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>

TEST(PrintQueue, PrintsInOrderAndStopsAtTheFirstFailure) {
    // Many small pieces through a queue of one: each waits for the one before.
    std::ostringstream out;
    std::string expected;
    {
        CPrintQueue printer(out, 1);
        for (int i = 0; i < 500; ++i) {
            printer.Post([i](std::ostream& o) { o << i << ','; });
            expected += std::to_string(i) + ',';
        }
        printer.Finish();
        EXPECT_EQ(out.str(), expected);
        // What is handed over after Finish is printed when the queue ends.
        printer.Post([](std::ostream& o) { o << "end"; });
    }
    EXPECT_EQ(out.str(), expected + "end");

    std::ostringstream failed;
    CPrintQueue printer(failed, 4);
    printer.Post([](std::ostream& o) { o << "a"; });
    printer.Post([](std::ostream&) { throw std::runtime_error("disk gone"); });
    printer.Post([](std::ostream& o) { o << "b"; });
    EXPECT_THROW(printer.Finish(), std::runtime_error);
    // The failure is given again to whoever hands over more, and nothing after it is printed.
    EXPECT_THROW(printer.Post([](std::ostream& o) { o << "c"; }), std::runtime_error);
    EXPECT_EQ(failed.str(), "a");
}

namespace {

/// A file that takes `room` bytes, then fails as a full disk does.
class CFullDisk : public std::stringbuf {
public:
    explicit CFullDisk(size_t room) : m_room(room) {}

protected:
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        const auto taken = std::min(n, static_cast<std::streamsize>(m_room));
        m_room -= static_cast<size_t>(taken);
        if (taken < n)
            errno = ENOSPC;
        return std::stringbuf::xsputn(s, taken);
    }

private:
    size_t m_room;
};

/// Writes text and blocks of one letter each, alternately, through the writer.
void Write(CBlockWriter& writer, std::string& expected) {
    std::ostream text(&writer);
    for (int i = 0; i < 40; ++i) {
        text << i << ';';
        expected += std::to_string(i) + ';';
        const size_t size = 1000 + 7 * static_cast<size_t>(i);
        auto block = writer.Take(size);
        std::memset(block.get(), 'a' + i % 26, size);
        writer.Give(std::move(block), size, size - 3);
        expected.append(size - 3, static_cast<char>('a' + i % 26));
    }
}

} // namespace

TEST(BlockWriter, KeepsTextAndBlocksInOrderAndReportsAFullDisk) {
    std::ostringstream out;
    std::string expected;
    {
        CBlockWriter writer(*out.rdbuf(), 2);
        Write(writer, expected);
        std::ostream text(&writer);
        EXPECT_TRUE(text.flush());
        EXPECT_EQ(out.str(), expected);
        text << "end";
    }
    EXPECT_EQ(out.str(), expected + "end");

    CFullDisk disk(5000);
    CBlockWriter writer(disk, 3);
    expected.clear();
    Write(writer, expected);
    std::ostream text(&writer);
    errno = 0;
    EXPECT_FALSE(text.flush());
    EXPECT_EQ(errno, ENOSPC);
    // Nothing after the failed write is written.
    EXPECT_EQ(disk.str(), expected.substr(0, 5000));
}
