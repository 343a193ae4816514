// The main of every test program. A failed check (VASSERT, gfnAssertFailed, gfnInternalError)
// ends the process at once; in a test program it must not end it with the routine's default
// exit code 0, or CTest would count a test that never finished, and the tests after it that
// never ran, as passed. Here it ends the program with kFailedCheckExitCode, after the routine
// has written the check's text to the error stream. Death tests run their statement in a
// child process and keep checking the routine's own exit code.
#include "TestMain.h"

#include "diag/Assert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <pthread.h>
#include <string_view>

int main(int argc, char** argv) {
    // A death test run in a process started anew (the "threadsafe" style) is told so by
    // gtest's flag on its command line; one run in a forked child (the "fast" style) gets the
    // default back through the fork handler.
    const bool deathTestChild = std::any_of(argv, argv + argc, [](const char* arg) {
        return std::string_view(arg).starts_with("--gtest_internal_run_death_test");
    });
    ::testing::InitGoogleTest(&argc, argv);
    if (!deathTestChild) {
        vdiag::SetFatalExitCode(kFailedCheckExitCode);
        ::pthread_atfork(nullptr, nullptr, [] { vdiag::SetFatalExitCode(0); });
    }
    return RUN_ALL_TESTS();
}
