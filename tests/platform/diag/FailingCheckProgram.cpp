// A test program whose first test fails a check on purpose. It is not run as a test of its
// own: FailedCheckTest runs it and expects the failure to be reported.
#include "diag/Assert.h"

#include <gtest/gtest.h>

TEST(DeliberateFailure, ACheckThatFails) {
    const int floors = 3;
    VASSERT(floors == 4);
}

TEST(DeliberateFailure, ATestAfterIt) {
    SUCCEED();
}

TEST(DeliberateFailure, ADeathTestKeepsTheDefaultExitCode) {
    EXPECT_EXIT(VASSERT(false), ::testing::ExitedWithCode(0), "ASSERT\\(false\\)");
}
