#pragma once
// What the shared main of the test programs promises (tests/TestMain.cpp).

/// The exit code of a test program ended by a failed check outside a death test.
constexpr int kFailedCheckExitCode = 70;
