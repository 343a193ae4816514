// vorta-cli refuses what it cannot take, each time with one line on the error stream, nothing
// on standard output and a non-zero exit code: files that are not model files, model files
// whose loads break what the module keeps, and output that cannot be written. What the module
// knows how to repair it repairs with a warning.
#include "CliRun.h"
#include "ModelFileBytes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Entries = std::vector<std::pair<int32_t, double>>;

/// A small model: three load cases, a combination and an envelope, with the load case of
/// ordinal 3 given by the test.
CModelFileBytes Model(int32_t id3 = 4, int32_t ordinal3 = 3, int32_t kind = -1,
                      int32_t oldFlag = 0) {
    CModelFileBytes m;
    m.Model(1).LoadCase(2, 1, "G").LoadCase(3, 2, "Q").LoadCase(id3, ordinal3, "S", kind, oldFlag);
    m.Combination(5, 1, {{2, 1.35}, {3, 1.5}}).Envelope(6, 1, "4");
    return m;
}

void ExpectRefused(const CRun& run, const std::string& reason, const std::string& what) {
    EXPECT_EQ(run.code, 1) << what << "\n" << run.err;
    EXPECT_EQ(run.out, "") << what;
    EXPECT_EQ(run.err.rfind("vorta-cli: ", 0), 0u) << what << "\n" << run.err;
    EXPECT_NE(run.err.find(reason), std::string::npos) << what << "\n" << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << what << "\n" << run.err;
}

} // namespace

TEST(VortaCliRefusals, ModelFilesWhoseLoadsBreakTheModulesRules) {
    CTempDir dir;
    WriteFile(dir.Path() / "good.vld", Model().Bytes());
    ASSERT_EQ(RunCli(dir, "show good.vld").code, 0);

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<CModelFileBytes, std::string> cases[] = {
        {Model(4, 99), "load case \"S\" has the ordinal 99; the 3 load cases must be numbered 1 "
                       "to 3"},
        {Model(4, 2000000), "has the ordinal 2000000"},
        {Model(4, 20000000), "has the ordinal 20000000"},
        {Model(4, 2), "load cases \"Q\" and \"S\" both have the ordinal 2"},
        {Model(4, 3, 0, 1), "model file is damaged: ASSERT(m_eUticajUticajneLinije == "
                            "UL_NIJEDNA) [SlucajOpterecenja : 223]"},
        {Model().SectionVersion(3), "model file is damaged: Version error in "
                                    "CKombOptItemArray::UcitajUskladisteneKombinacije"},
        {Model(2147483647), "object id 2147483647 of type 20 is invalid or repeated"},
        {Model().Combination(7, 1, {{2, 1.0}}), "combinations \"K\" and \"K\" both have the "
                                                "ordinal 1"},
        {Model().Combination(7, 3, {{2, 1.0}}), "has the ordinal 3; the 2 combinations"},
        {Model().Combination(7, 2, {{2, nan}}), "combination 2 \"K\" has a coefficient that is "
                                                "not a finite number"},
        {Model().Envelope(8, 5, "1"), "envelope \"A\" has the number 5; the 2 envelopes"},
        {Model().LoadCase(9, 4, "SRSS", -1, 0, {{1, 1.0}, {7, 1.0}}),
         "the SRSS unit of load case 4 \"SRSS\" names load 7, which is not one of the load "
         "cases 1 to 4"},
        {Model().LoadCase(9, 4, "SRSS", -1, 0, {{1, 1.0}, {1, 1.0}}), "names load case 1 twice"},
    };
    for (const auto& [model, reason] : cases) {
        WriteFile(dir.Path() / "bad.vld", model.Bytes());
        const auto start = std::chrono::steady_clock::now();
        const CRun run = RunCli(dir, "show bad.vld");
        ExpectRefused(run, "cannot read the model file \"bad.vld\": " + std::string(""), reason);
        EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
        // However large the numbers in the file, the refusal takes no time to speak of.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << reason;
    }
    EXPECT_FALSE(fs::exists(dir.Path() / "vmerror.log"));
}

TEST(VortaCliRefusals, CombinationsNamingMissingLoadCasesAreRepairedWithAWarning) {
    CTempDir dir;
    // Combination 1 names load case id 77, which does not exist, and load case 2 twice.
    CModelFileBytes m;
    m.Model(1).LoadCase(2, 1, "G").LoadCase(3, 2, "Q");
    m.Combination(5, 1, {{2, 1.35}, {77, 1.5}, {3, 1.5}, {2, 1.0}});
    WriteFile(dir.Path() / "model.vld", m.Bytes());
    const CRun run = RunCli(dir, "show model.vld");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "vorta-cli: Upozorenje: Iz kombinacija 1 izbaceni su clanovi sa "
                       "slucajevima opterecenja kojih nema ili koji se ponavljaju.\n");
    // What remains is the combination of the two load cases, named anew.
    EXPECT_NE(run.out.find("\n 1  1.35xI+1.50xII  da         1.35  1.50\n"), std::string::npos)
        << run.out;
}

TEST(VortaCliRefusals, WhatIsNotARegularModelFileIsRefusedBeforeItIsRead) {
    CTempDir dir;
    fs::create_directory(dir.Path() / "folder.vld");
    ASSERT_EQ(::mkfifo((dir.Path() / "pipe.vld").c_str(), 0600), 0);
    // Sparse files: one beyond the largest model file, one below it that is not a model file.
    fs::resize_file((WriteFile(dir.Path() / "huge.vld", ""), dir.Path() / "huge.vld"),
                    (uintmax_t{1} << 30) + 1);
    WriteFile(dir.Path() / "big.vld", "not a model");
    fs::resize_file(dir.Path() / "big.vld", uintmax_t{900} << 20);
    const std::pair<std::string, std::string> cases[] = {
        {"folder.vld", "cannot open model file \"folder.vld\": Is a directory"},
        {"pipe.vld", "cannot open model file \"pipe.vld\": not a regular file"},
        {"/dev/zero", "cannot open model file \"/dev/zero\": not a regular file"},
        {"huge.vld", "cannot open model file \"huge.vld\": 1073741825 bytes is too large for a "
                     "model file (at most 1073741824)"},
        {"big.vld", "cannot read the model file \"big.vld\": not a model file"},
    };
    for (const auto& [file, reason] : cases) {
        const auto start = std::chrono::steady_clock::now();
        ExpectRefused(RunCli(dir, "show " + file), "vorta-cli: " + reason, file);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << file;
    }
    if (::geteuid() != 0) { // the superuser reads any file
        WriteFile(dir.Path() / "secret.vld", Model().Bytes());
        fs::permissions(dir.Path() / "secret.vld", fs::perms::none);
        ExpectRefused(RunCli(dir, "show secret.vld"), "Permission denied", "secret.vld");
    }
}

TEST(VortaCliRefusals, SavingKeepsPermissionsTakesLongNamesAndOutputThatCannotBeWrittenFails) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    fs::permissions(dir.Path() / "model.vld", fs::perms(0444));
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    EXPECT_EQ(fs::status(dir.Path() / "model.vld").permissions(), fs::perms(0444));

    const std::string longest(NAME_MAX, 'm');
    const CRun saved = RunCli(dir, "demo " + longest);
    EXPECT_EQ(saved.code, 0) << saved.err;
    EXPECT_EQ(ReadText(dir.Path() / longest), ReadText(dir.Path() / "model.vld"));

    // A failure names the file the user gave, not a temporary one.
    ExpectRefused(RunCli(dir, "demo none/model.vld"),
                  "vorta-cli: cannot write model file \"none/model.vld\": No such file or "
                  "directory",
                  "none/model.vld");
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir.Path()))
        ++files;
    EXPECT_EQ(files, 2u);

    // Output that cannot be written is an error.
    const std::string d = dir.Path().string();
    for (const std::string args : {"show model.vld", "--help"}) {
        const int status = std::system(
            ("cd '" + d + "' && '" VORTA_CLI_PATH "' " + args + " >/dev/full 2>err.txt").c_str());
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 1) << args;
        EXPECT_EQ(ReadText(dir.Path() / "err.txt"),
                  "vorta-cli: cannot write the output: No space left on device\n")
            << args;
    }
}

TEST(VortaCliRefusals, ExportedFilesAreWrittenAsModelFilesAreSaved) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    ASSERT_EQ(RunCli(dir, "export model.vld -o first.json").code, 0);
    const std::string json = ReadText(dir.Path() / "first.json");

    // A read-only file keeps its permissions, a link keeps naming the file it named, and a name
    // at the limit of the file system is written.
    fs::permissions(dir.Path() / "first.json", fs::perms(0444));
    fs::create_symlink("first.json", dir.Path() / "link.json");
    const std::string longest = std::string(NAME_MAX - 5, 'e') + ".json";
    for (const std::string& out : {std::string("first.json"), std::string("link.json"), longest}) {
        const CRun run = RunCli(dir, "export model.vld -o " + out);
        EXPECT_EQ(run.code, 0) << out << "\n" << run.err;
        EXPECT_EQ(ReadText(dir.Path() / out), json) << out;
    }
    EXPECT_EQ(fs::status(dir.Path() / "first.json").permissions(), fs::perms(0444));
    EXPECT_TRUE(fs::is_symlink(dir.Path() / "link.json"));

    // A pipe is written as it is, and one without a reader or a writer is refused at once.
    ASSERT_EQ(::mkfifo((dir.Path() / "pipe").c_str(), 0600), 0);
    const int reader = ::open((dir.Path() / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(RunCli(dir, "export model.vld -o pipe").code, 0);
    std::string got(json.size() + 1, '\0');
    EXPECT_EQ(::read(reader, got.data(), got.size()), static_cast<ssize_t>(json.size()));
    EXPECT_EQ(got.substr(0, json.size()), json);
    ::close(reader);
    EXPECT_TRUE(fs::is_fifo(dir.Path() / "pipe"));
    ExpectRefused(RunCli(dir, "export model.vld -o pipe"),
                  "vorta-cli: cannot write pipe: No such device or address", "export to a pipe");
    ExpectRefused(RunCli(dir, "import model.vld pipe"),
                  "vorta-cli: cannot read pipe: it is not a regular file", "import from a pipe");
}
