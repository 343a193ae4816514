// The Qt application of the view tests.
#include "QtTestApp.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<QApplication>& App() {
    static std::unique_ptr<QApplication> app;
    return app;
}

/// Creates the application before the first test and ends it after the last.
class QtEnvironment : public ::testing::Environment {
public:
    void SetUp() override { QtTestApp(); }
    void TearDown() override { App().reset(); }
};

[[maybe_unused]] const auto* const kEnvironment =
    ::testing::AddGlobalTestEnvironment(new QtEnvironment);

} // namespace

QApplication& QtTestApp() {
    static int argc = 1;
    static char name[] = "vorta-test";
    static char* argv[] = {name, nullptr};
    if (!App()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        App() = std::make_unique<QApplication>(argc, argv);
    }
    return *App();
}
