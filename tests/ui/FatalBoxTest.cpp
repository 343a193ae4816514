// A failed check of the program shows its box as a real modal message box of the desktop
// host, and the process ends only once the user has answered it.
#include "QtTestApp.h"

#include "diag/Assert.h"
#include "ui/QtModalRunner.h"

#include <QMessageBox>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>

TEST(QtModalRunnerDeathTest, AFailedCheckShowsItsModalBoxBeforeTheProcessEnds) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                      ("vorta-fatal-box-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    EXPECT_EXIT(
        {
            vdiag::SetLogRoot(dir.string());
            vdiag::SetFatalExitCode(5);
            CQtModalRunner runner;
            runner.Install();
            WhenModal<QMessageBox>([](QMessageBox* box) {
                const QString shown = box->windowTitle() + QStringLiteral(" / ") + box->text();
                std::fprintf(stderr, "answered %s: %s\n", box->isModal() ? "modal" : "modeless",
                             shown.simplified().toUtf8().constData());
                box->accept();
            });
            gfnInternalError("Proba", 7, "Nedozvoljeno stanje.");
        },
        ::testing::ExitedWithCode(5), "answered modal: .*Proba : 7.*Nedozvoljeno stanje\\.");
    std::filesystem::remove_all(dir);
}
