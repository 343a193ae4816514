// The assertion routine: the error log entry, the fatal box and the exit with code 0.
#include "diag/Assert.h"
#include "platform/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <optional>
#include <regex>
#include <sstream>

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string RegexEscape(const std::string& text) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::regex_replace(text, special, R"(\$&)");
}

/// "Date [dd.mm.yyyy]" of now, for comparing with the date the log carries.
std::string Today() {
    const std::time_t now = std::time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    char text[32];
    std::snprintf(text, sizeof text, "%02d.%02d.%04d", t.tm_mday, t.tm_mon + 1, t.tm_year + 1900);
    return text;
}

/// The pattern of one log entry; the date is captured and the time checked for its form.
std::string EntryPattern(const std::string& what, const std::string& file, int line) {
    return "##### BEGINING OF STACK DUMP\n\n"
           R"(Date \[(\d\d\.\d\d\.\d{4})\]\n)"
           R"(Local System Time \[([01]\d|2[0-3]):[0-5]\d\]\n\n)"
           "ASSERT\\(" +
           RegexEscape(what) + "\\)\nFILE: " + RegexEscape(file) +
           "\nLINE: " + std::to_string(line) + "\n\n";
}

class AssertRoutine : public ::testing::Test {
protected:
    void SetUp() override {
        if (const char* tmp = std::getenv("TMP"); tmp != nullptr)
            m_savedTmp = tmp;
        ::setenv("TMP", m_tmp.Path().c_str(), 1);
        m_savedRoot = vdiag::GetLogRoot();
        vdiag::SetLogRoot(m_root.Path().string());
    }
    void TearDown() override {
        vdiag::SetLogRoot(m_savedRoot);
        if (m_savedTmp)
            ::setenv("TMP", m_savedTmp->c_str(), 1);
        else
            ::unsetenv("TMP");
    }

    /// Checks that the log holds exactly the given entries, dated today.
    static void ExpectLog(const std::filesystem::path& log, const std::string& entries, int count,
                          const std::string& dayBefore) {
        ASSERT_TRUE(std::filesystem::exists(log)) << log;
        const std::string text = ReadFile(log);
        std::smatch m;
        ASSERT_TRUE(std::regex_match(text, m, std::regex(entries))) << text;
        for (int i = 0; i < count; ++i) {
            const std::string date = m[1 + 2 * i].str();
            EXPECT_TRUE(date == dayBefore || date == Today()) << date;
        }
    }

    CTempDir m_root;
    CTempDir m_tmp;
    std::string m_savedRoot;
    std::optional<std::string> m_savedTmp;
};

using AssertRoutineDeathTest = AssertRoutine;

} // namespace

TEST_F(AssertRoutineDeathTest, FailedCheckAppendsEntryShowsBoxAndExitsWithZero) {
    const std::string day = Today();
    EXPECT_EXIT(gfnAssertFailed("pSlOpt", "Opterecenje", 42), ::testing::ExitedWithCode(0),
                "ASSERT FAILED - Error log \"vmerror.log\" created\\.\nASSERT\\(pSlOpt\\)\n"
                "\\[Opterecenje : 42\\]\n");
    EXPECT_EXIT(gfnAssertFailed("nUkupno == nSlopt + nKomb + nAnv", "Opterecenje", 7),
                ::testing::ExitedWithCode(0), "");
    // Both entries are appended to the log at the root; nothing lands in TMP.
    ExpectLog(m_root.Path() / "vmerror.log",
              EntryPattern("pSlOpt", "Opterecenje", 42) +
                  EntryPattern("nUkupno == nSlopt + nKomb + nAnv", "Opterecenje", 7),
              2, day);
    EXPECT_FALSE(std::filesystem::exists(m_tmp.Path() / "vmerror.log"));
}

TEST_F(AssertRoutineDeathTest, InternalErrorLogsMessageAndShowsPlaceThenMessage) {
    const std::string day = Today();
    EXPECT_EXIT(gfnInternalError("ComboItemArray", 118, "Nedozvoljen tip combo item-a."),
                ::testing::ExitedWithCode(0),
                "INTERNAL ERROR - PROGRAM TERMINATES\n"
                "\\[ComboItemArray : 118\\]\nNedozvoljen tip combo item-a\\.");
    ExpectLog(m_root.Path() / "vmerror.log",
              EntryPattern("Nedozvoljen tip combo item-a.", "ComboItemArray", 118), 1, day);
}

TEST_F(AssertRoutineDeathTest, PresenterReceivesExactTextAndCaption) {
    auto expectBox = [](std::string text, std::string caption) {
        vdiag::SetBoxPresenter([=](const std::string& t, const std::string& c) {
            std::fputs(t == text && c == caption ? "box as expected" : "wrong box", stderr);
        });
    };
    EXPECT_EXIT(
        {
            expectBox("ASSERT(Id.Valid())\n[Skladiste : 9]\n",
                      "ASSERT FAILED - Error log \"vmerror.log\" created.");
            gfnAssertFailed("Id.Valid()", "Skladiste", 9);
        },
        ::testing::ExitedWithCode(0), "box as expected");
    EXPECT_EXIT(
        {
            expectBox("[Opterecenje : 3]\nDupli redni broj 4.",
                      "INTERNAL ERROR - PROGRAM TERMINATES");
            gfnInternalError("Opterecenje", 3, "Dupli redni broj 4.");
        },
        ::testing::ExitedWithCode(0), "box as expected");
    // A presenter that throws does not keep the process alive.
    EXPECT_EXIT(
        {
            vdiag::SetBoxPresenter(
                [](const std::string&, const std::string&) { throw std::runtime_error("x"); });
            gfnAssertFailed("false", "Opterecenje", 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(AssertRoutineDeathTest, LogFallsBackToTmpWhenTheRootCannotBeOpened) {
    const std::string day = Today();
    const std::filesystem::path missingRoot = m_root.Path() / "no" / "such" / "dir";
    vdiag::SetLogRoot(missingRoot.string());
    EXPECT_EXIT(gfnAssertFailed("pKomb", "KombOptItem", 55), ::testing::ExitedWithCode(0), "");
    EXPECT_FALSE(std::filesystem::exists(missingRoot));
    ExpectLog(m_tmp.Path() / "vmerror.log", EntryPattern("pKomb", "KombOptItem", 55), 1, day);
}

TEST_F(AssertRoutineDeathTest, VassertNamesExpressionSourceAndLine) {
    const std::string day = Today();
    int nSlopt = 2;
    VASSERT(nSlopt == 2); // a check that holds does nothing
    const int line = __LINE__ + 1;
    EXPECT_EXIT(VASSERT(nSlopt == 3), ::testing::ExitedWithCode(0), "\\[AssertTest : ");
    ExpectLog(m_root.Path() / "vmerror.log", EntryPattern("nSlopt == 3", "AssertTest", line), 1,
              day);
}

TEST(SourceName, StripsDirectoriesAndExtension) {
    EXPECT_STREQ(gfnSourceName("a/b/Opterecenje.cpp"), "Opterecenje");
    EXPECT_STREQ(gfnSourceName("C:\\vorta\\loads\\KombOptItem.cpp"), "KombOptItem");
    EXPECT_STREQ(gfnSourceName("Skladiste"), "Skladiste");
    EXPECT_STREQ(gfnSourceName("dir.v2/Model"), "Model");
    EXPECT_STREQ(gfnSourceName("x/Archive.tar.gz"), "Archive.tar");
    EXPECT_STREQ(gfnSourceName("x/.hidden"), ".hidden");
    EXPECT_STREQ(gfnSourceName(""), "");
    // The same name is handed out once and stays valid.
    EXPECT_EQ(gfnSourceName("p/Opterecenje.cpp"), gfnSourceName("q/Opterecenje.h"));
}
