#pragma once
// The desktop host in a test: the loads module loaded once for the program (as vorta loads
// it), the catalogs of the build read, and a main window per test on the offscreen platform.
#include "QtTestApp.h"

#include "MainWindow.h"
#include "host/ModuleLoader.h"
#include "host/OptionInfo.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

class HostTest : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// The example model in the window, saved to a file of the test's directory.
    std::filesystem::path ExampleFile(const char* name);

    static COptionInfoList& Commands();
    std::unique_ptr<CMainWindow> m_window;
    std::filesystem::path m_dir;
};
