// The printing thread of `show`: order kept, failures stop the printing and reach the caller.
#include "PrintQueue.h"

#include <gtest/gtest.h>

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
