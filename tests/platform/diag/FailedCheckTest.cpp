// A check that fails inside an ordinary test fails the test program: a non-zero exit code and
// the check's text on the error stream, so that CTest reports it.
#include "TestMain.h"
#include "platform/TempDir.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

namespace {

struct CRun {
    int code = -1;
    std::string out;
    std::string err;
};

CRun RunProgram(const CTempDir& dir, const std::string& filter) {
    const std::string d = dir.Path().string();
    const std::string command = "cd '" + d + "' && TMP='" + d +
                                "' '" VORTA_FAILING_CHECK_PROGRAM "' --gtest_filter=" + filter +
                                " >out.txt 2>err.txt";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadText(dir.Path() / "out.txt"),
            ReadText(dir.Path() / "err.txt")};
}

} // namespace

TEST(FailedCheck, EndsTheTestProgramWithAFailureAndItsText) {
    CTempDir dir;
    const CRun run = RunProgram(dir, "DeliberateFailure.*");
    EXPECT_EQ(run.code, kFailedCheckExitCode);
    EXPECT_NE(run.err.find("ASSERT(floors == 4)\n[FailingCheckProgram : "), std::string::npos)
        << run.err;
    // The program ended inside the first test: nothing after it ran or was reported passed.
    EXPECT_EQ(run.out.find("ATestAfterIt"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("PASSED"), std::string::npos) << run.out;

    // The death test alone passes: it still sees the routine's own exit code, 0.
    const CRun death = RunProgram(dir, "DeliberateFailure.ADeathTestKeepsTheDefaultExitCode");
    EXPECT_EQ(death.code, 0) << death.out << death.err;
}
