// The assertion routine: the error log entry, the fatal box, the exit with code 0 or the
// host's code, and the trap that turns a failed check into an exception.
#include "diag/Assert.h"
#include "platform/ErrorLogDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <regex>

namespace {

std::string Escape(const std::string& text) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::regex_replace(text, special, R"(\$&)");
}

/// Today as the log writes it, dd.mm.yyyy.
std::string Today() {
    const std::time_t now = std::time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    char text[32];
    std::snprintf(text, sizeof text, "%02d.%02d.%04d", t.tm_mday, t.tm_mon + 1, t.tm_year + 1900);
    return text;
}

class AssertRoutineDeathTest : public ::testing::Test {
protected:
    /// The exact pattern of one log entry, dated the day the test began or today.
    std::string Entry(const std::string& what, const std::string& file, int line) const {
        return "##### BEGINING OF STACK DUMP\n\nDate \\[(" + Escape(m_day) + "|" + Escape(Today()) +
               ")\\]\n"
               R"(Local System Time \[([01]\d|2[0-3]):[0-5]\d\]\n\n)"
               "ASSERT\\(" +
               Escape(what) + "\\)\nFILE: " + Escape(file) + "\nLINE: " + std::to_string(line) +
               "\n\n";
    }
    static void ExpectLog(const std::filesystem::path& dir, const std::string& entries) {
        const std::string text = ReadText(dir / "vmerror.log");
        EXPECT_TRUE(std::regex_match(text, std::regex(entries))) << text;
    }

    const std::string m_day = Today();
    CErrorLogDir m_tmp; // TMP, and the log root unless a test moves it
};

} // namespace

TEST_F(AssertRoutineDeathTest, BothRoutinesAppendTheExactEntryShowTheBoxAndExitWithZero) {
    const std::filesystem::path root = m_tmp.Path() / "root";
    std::filesystem::create_directory(root);
    vdiag::SetLogRoot(root.string());
    EXPECT_EXIT(gfnAssertFailed("pSlOpt", "Opterecenje", 42), ::testing::ExitedWithCode(0),
                "ASSERT FAILED - Error log \"vmerror.log\" created\\.\nASSERT\\(pSlOpt\\)\n"
                "\\[Opterecenje : 42\\]\n");
    EXPECT_EXIT(gfnInternalError("ComboItemArray", 118, "Nedozvoljen tip combo item-a."),
                ::testing::ExitedWithCode(0),
                "INTERNAL ERROR - PROGRAM TERMINATES\n"
                "\\[ComboItemArray : 118\\]\nNedozvoljen tip combo item-a\\.");
    // Both entries are appended to the log at the root; nothing lands in TMP.
    ExpectLog(root, Entry("pSlOpt", "Opterecenje", 42) +
                        Entry("Nedozvoljen tip combo item-a.", "ComboItemArray", 118));
    EXPECT_FALSE(std::filesystem::exists(m_tmp.Path() / "vmerror.log"));

    // A presenter that throws does not keep the process alive.
    EXPECT_EXIT(
        {
            vdiag::SetBoxPresenter(
                [](const std::string&, const std::string&) { throw std::runtime_error("x"); });
            gfnAssertFailed("false", "Opterecenje", 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(AssertRoutineDeathTest, AHostChoosesTheExitCode) {
    EXPECT_EXIT(
        {
            vdiag::SetFatalExitCode(5);
            gfnInternalError("KombOptItem", 7, "Version error");
        },
        ::testing::ExitedWithCode(5), "INTERNAL ERROR - PROGRAM TERMINATES\n\\[KombOptItem : 7\\]");
    EXPECT_EXIT(
        {
            vdiag::SetFatalExitCode(5);
            VASSERT(1 > 2);
        },
        ::testing::ExitedWithCode(5), "ASSERT\\(1 > 2\\)");
}

TEST_F(AssertRoutineDeathTest, UnderATrapAFailedCheckThrowsItsTextAndNothingIsLogged) {
    const auto caught = [](auto&& check) {
        try {
            check();
        } catch (const vdiag::CFatalCheck& e) {
            return std::string(e.what());
        }
        return std::string("nothing thrown");
    };
    {
        const vdiag::CFatalTrap outer;
        EXPECT_EQ(caught([] { gfnAssertFailed("pSlOpt", "Opterecenje", 42); }),
                  "ASSERT(pSlOpt) [Opterecenje : 42]");
        {
            const vdiag::CFatalTrap inner; // traps nest
            EXPECT_EQ(caught([] { gfnInternalError("KombOptItem", 9, "Version error"); }),
                      "Version error [KombOptItem : 9]");
        }
        const int line = __LINE__ + 1;
        EXPECT_EQ(caught([] { VASSERT(2 + 2 == 5); }),
                  "ASSERT(2 + 2 == 5) [AssertTest : " + std::to_string(line) + "]");
    }
    EXPECT_FALSE(std::filesystem::exists(m_tmp.Path() / "vmerror.log"));
    // Without a trap the check ends the process again.
    EXPECT_EXIT(gfnAssertFailed("pKomb", "KombOptItem", 55), ::testing::ExitedWithCode(0),
                "ASSERT\\(pKomb\\)");
}

TEST_F(AssertRoutineDeathTest, LogFallsBackToTmpWhenTheRootCannotBeOpened) {
    const std::filesystem::path missingRoot = m_tmp.Path() / "no" / "such" / "dir";
    vdiag::SetLogRoot(missingRoot.string());
    EXPECT_EXIT(gfnAssertFailed("pKomb", "KombOptItem", 55), ::testing::ExitedWithCode(0), "");
    EXPECT_FALSE(std::filesystem::exists(missingRoot));
    ExpectLog(m_tmp.Path(), Entry("pKomb", "KombOptItem", 55));
}

TEST_F(AssertRoutineDeathTest, VassertNamesExpressionSourceAndLine) {
    int nSlopt = 2;
    VASSERT(nSlopt == 2); // a check that holds does nothing
    const int line = __LINE__ + 1;
    EXPECT_EXIT(VASSERT(nSlopt == 3), ::testing::ExitedWithCode(0), "\\[AssertTest : ");
    ExpectLog(m_tmp.Path(), Entry("nSlopt == 3", "AssertTest", line));
}
