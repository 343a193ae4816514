// vorta-cli end to end: the built program is run in a temporary directory on model files it
// writes itself, on damaged copies of them, and with bad arguments.
#include "platform/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/wait.h>

namespace {

struct CRun {
    int code = -1;
    std::string out;
    std::string err;
};

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

/// Runs vorta-cli with the arguments in the directory, which also receives the error log
/// should an assertion fail; `environment` holds further variable assignments.
CRun RunCli(const CTempDir& dir, const std::string& args, const std::string& environment = "") {
    const std::filesystem::path out = dir.Path() / "stdout.txt";
    const std::filesystem::path err = dir.Path() / "stderr.txt";
    const std::string command = "cd '" + dir.Path().string() + "' && TMP='" + dir.Path().string() +
                                "' " + environment + " '" VORTA_CLI_PATH "' " + args + " >'" +
                                out.string() + "' 2>'" + err.string() + "'";
    const int status = std::system(command.c_str());
    CRun run;
    run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = ReadFile(out);
    run.err = ReadFile(err);
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return run;
}

/// The table with the title: from the title line to the empty line that ends it.
std::string Section(const std::string& text, const std::string& title) {
    const size_t start = text.find("\n" + title + "\n");
    if (start == std::string::npos)
        return {};
    const size_t end = text.find("\n\n", start + 1);
    return text.substr(start + 1, end == std::string::npos ? std::string::npos : end - start);
}

/// The lines of a table section after its title, underline, heading and rule.
std::vector<std::string> BodyLines(const std::string& section) {
    std::istringstream in(section);
    std::vector<std::string> lines;
    std::string line;
    for (int skipped = 0; skipped < 4 && std::getline(in, line); ++skipped) {
    }
    while (std::getline(in, line) && !line.empty())
        lines.push_back(line);
    return lines;
}

std::vector<std::string> Words(const std::string& line) {
    std::istringstream in(line);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

/// The count of a row of the global scale ("load cases", "combinations", "envelopes").
int ScaleCount(const std::string& out, const std::string& loads) {
    for (const std::string& line : BodyLines(Section(out, "Ranges of the global scale")))
        if (line.rfind(loads + " ", 0) == 0)
            return std::stoi(Words(line.substr(loads.size()))[0]);
    return -1;
}

const char* const kTitles[] = {"Ranges of the global scale", "Factors for analysis",
                               "Factors for printing", "Load selector, input mode",
                               "Load selector, results mode"};

} // namespace

TEST(VortaCliDemo, WritesTheExampleModelAndShowPrintsItAgain) {
    CTempDir dir;
    const CRun demo = RunCli(dir, "demo model.vld");
    ASSERT_EQ(demo.code, 0) << demo.err;
    EXPECT_EQ(demo.err, "");
    for (const char* title : kTitles)
        EXPECT_NE(Section(demo.out, title), "") << title;
    EXPECT_NE(demo.out.find("0. Totalno opterecenje"), std::string::npos);

    // The example has load cases, combinations and an envelope, and every one of them has a
    // row in both factor tables.
    const int nSlOpt = ScaleCount(demo.out, "load cases");
    const int nKomb = ScaleCount(demo.out, "combinations");
    const int nAnv = ScaleCount(demo.out, "envelopes");
    EXPECT_GT(nSlOpt, 3);
    EXPECT_GT(nKomb, 0);
    EXPECT_GT(nAnv, 0);
    EXPECT_EQ(BodyLines(Section(demo.out, "Factors for analysis")).size(),
              static_cast<size_t>(nSlOpt + nKomb + nAnv));
    EXPECT_EQ(BodyLines(Section(demo.out, "Factors for printing")).size(),
              static_cast<size_t>(nSlOpt + nKomb + nAnv));

    // The module's own tables are shown, the checksums among them.
    for (const char* title :
         {"Slucajevi opterecenja", "Kombinacije opterecenja", "Anvelope", "Kontrolne sume"})
        EXPECT_NE(Section(demo.out, title), "") << title;

    // The input selector offers the total load and the ordinary load cases and starts on the
    // first case; the results selector offers every load and starts on the first position.
    const std::vector<std::string> input =
        BodyLines(Section(demo.out, "Load selector, input mode"));
    ASSERT_GE(input.size(), 2u);
    EXPECT_LE(input.size(), static_cast<size_t>(nSlOpt + 1));
    EXPECT_EQ(Words(input[0]), (std::vector<std::string>{"0", "0.", "Totalno", "opterecenje"}));
    EXPECT_EQ(input[1].rfind(">    1  1. ", 0), 0u) << input[1];
    const std::vector<std::string> results =
        BodyLines(Section(demo.out, "Load selector, results mode"));
    ASSERT_EQ(results.size(), static_cast<size_t>(nSlOpt + nKomb + nAnv));
    EXPECT_EQ(results[0].rfind(">    0  1. ", 0), 0u) << results[0];
    EXPECT_NE(demo.out.find("\nStatus pane: Opterecenje 1: "), std::string::npos);

    // The file was written in place, with no temporary file left beside it.
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"model.vld"});
    EXPECT_GT(std::filesystem::file_size(dir.Path() / "model.vld"), 16u);

    // Showing the file prints exactly what the demo showed after writing it.
    const CRun show = RunCli(dir, "show model.vld");
    ASSERT_EQ(show.code, 0) << show.err;
    EXPECT_EQ(show.err, "");
    EXPECT_EQ(show.out, demo.out);

    // A second demo replaces the file and shows the same model.
    const CRun again = RunCli(dir, "demo model.vld");
    ASSERT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(again.out, demo.out);
}

TEST(VortaCliShow, TheorySwitchChangesThePrintingVectorsOnly) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    const CRun one = RunCli(dir, "show model.vld");
    const CRun two = RunCli(dir, "show model.vld --teorija 2");
    ASSERT_EQ(one.code, 0) << one.err;
    ASSERT_EQ(two.code, 0) << two.err;
    EXPECT_NE(one.out.find("\nTheory: 1\n"), std::string::npos);
    EXPECT_NE(two.out.find("\nTheory: 2\n"), std::string::npos);
    EXPECT_EQ(RunCli(dir, "show --teorija 1 model.vld").out, one.out);

    const int nSlOpt = ScaleCount(one.out, "load cases");
    const int nKomb = ScaleCount(one.out, "combinations");
    ASSERT_GT(nKomb, 0);

    // The analysis always expands combinations into their load cases.
    EXPECT_EQ(Section(one.out, "Factors for analysis"), Section(two.out, "Factors for analysis"));
    const std::vector<std::string> analysis = BodyLines(Section(one.out, "Factors for analysis"));
    const std::vector<std::string> printing1 = BodyLines(Section(one.out, "Factors for printing"));
    const std::vector<std::string> printing2 = BodyLines(Section(two.out, "Factors for printing"));
    ASSERT_EQ(printing1.size(), analysis.size());
    ASSERT_EQ(printing2.size(), analysis.size());
    // Under theory 1 what is printed is what is analysed; under any other theory a
    // combination is printed as a unit vector at its own place, over cases and combinations.
    EXPECT_EQ(printing1, analysis);
    for (int j = 0; j < nKomb; ++j) {
        const std::vector<std::string> words = Words(printing2[static_cast<size_t>(nSlOpt + j)]);
        ASSERT_EQ(words.size(), static_cast<size_t>(3 + nSlOpt + nKomb)); // No., "combination", k
        for (int m = 0; m < nSlOpt + nKomb; ++m)
            EXPECT_EQ(words[static_cast<size_t>(3 + m)], m == nSlOpt + j ? "1.00" : "0")
                << "combination " << j + 1 << ", entry " << m + 1;
    }
    // The rest of the report does not depend on the theory.
    EXPECT_EQ(Section(one.out, "Load selector, input mode"),
              Section(two.out, "Load selector, input mode"));
}

TEST(VortaCliShow, RefusesMissingTruncatedAndCorruptFiles) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    const std::string bytes = ReadFile(dir.Path() / "model.vld");
    ASSERT_GT(bytes.size(), 16u);

    std::string flipped = bytes;
    flipped[flipped.size() / 2] = static_cast<char>(flipped[flipped.size() / 2] ^ 0x5A);
    std::string badChecksum = bytes;
    badChecksum.back() = static_cast<char>(badChecksum.back() ^ 0x01);
    WriteFile(dir.Path() / "truncated.vld", bytes.substr(0, bytes.size() / 2));
    WriteFile(dir.Path() / "flipped.vld", flipped);
    WriteFile(dir.Path() / "checksum.vld", badChecksum);
    WriteFile(dir.Path() / "empty.vld", "");
    WriteFile(dir.Path() / "text.vld", "this is not a model file\n");

    // Each refusal is one line on the error stream that names the file and the reason. A byte
    // flipped in the middle may hit a length, and the file then reads as truncated.
    const std::pair<const char*, const char*> cases[] = {
        {"missing.vld", "No such file"},   {"truncated.vld", "truncated"},
        {"flipped.vld", "model file is"},  {"checksum.vld", "damaged"},
        {"empty.vld", "not a model file"}, {"text.vld", "not a model file"},
    };
    for (const auto& [name, reason] : cases) {
        const CRun run = RunCli(dir, std::string("show ") + name);
        EXPECT_EQ(run.code, 1) << name;
        EXPECT_EQ(run.out, "") << name;
        EXPECT_EQ(run.err.rfind("vorta-cli: ", 0), 0u) << run.err;
        EXPECT_NE(run.err.find(name), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
    }
    // The refusals leave the files as they were.
    EXPECT_EQ(ReadFile(dir.Path() / "model.vld"), bytes);
    EXPECT_EQ(ReadFile(dir.Path() / "flipped.vld"), flipped);
}

TEST(VortaCliDemo, RefusesAFileItCannotWrite) {
    CTempDir dir;
    const CRun run = RunCli(dir, "demo no-such-directory/model.vld");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.rfind("vorta-cli: cannot write", 0), 0u) << run.err;
    EXPECT_NE(run.err.find("no-such-directory/model.vld"), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "no-such-directory"));
}

TEST(VortaCli, RefusesAModuleThatCannotBeLoaded) {
    CTempDir dir;
    WriteFile(dir.Path() / "not-a-library.so", "ELF? no\n");
    for (const char* module : {"missing/libopterecenje.so", "not-a-library.so"}) {
        const CRun show = RunCli(dir, std::string("show model.vld --module ") + module);
        EXPECT_EQ(show.code, 3) << module;
        EXPECT_NE(show.err.find("vorta-cli: cannot load the loads module"), std::string::npos)
            << show.err;
        EXPECT_NE(show.err.find(module), std::string::npos) << show.err;
        const CRun demo = RunCli(dir, std::string("--module ") + module + " demo model.vld");
        EXPECT_EQ(demo.code, 3) << module;
        EXPECT_FALSE(std::filesystem::exists(dir.Path() / "model.vld"));
    }
    // The environment variable names the module when no option does.
    const CRun named = RunCli(dir, "show model.vld");
    EXPECT_EQ(named.code, 1) << named.err; // the module loads; the file is missing
    const CRun env = RunCli(dir, "show model.vld", "VORTA_OPTERECENJE_MODULE=missing.so");
    EXPECT_EQ(env.code, 3) << env.err;
}

TEST(VortaCli, RefusesBadArguments) {
    CTempDir dir;
    for (const char* args : {"", "show", "demo", "frobnicate model.vld", "show a.vld b.vld",
                             "show model.vld --teorija", "show model.vld --teorija dva",
                             "show model.vld --nepoznato"}) {
        const CRun run = RunCli(dir, args);
        EXPECT_EQ(run.code, 2) << "'" << args << "'";
        EXPECT_NE(run.err, "") << "'" << args << "'";
    }
}

TEST(VortaCli, HelpForTheProgramAndEveryCommand) {
    CTempDir dir;
    const CRun program = RunCli(dir, "--help");
    EXPECT_EQ(program.code, 0);
    for (const char* word : {"Usage", "demo", "show", "--module"})
        EXPECT_NE(program.out.find(word), std::string::npos) << word << "\n" << program.out;

    const CRun demo = RunCli(dir, "demo --help");
    EXPECT_EQ(demo.code, 0);
    EXPECT_NE(demo.out.find("FILE"), std::string::npos) << demo.out;
    EXPECT_EQ(demo.out.find("--teorija"), std::string::npos) << demo.out;

    const CRun show = RunCli(dir, "show --help");
    EXPECT_EQ(show.code, 0);
    for (const char* word : {"FILE", "--teorija"})
        EXPECT_NE(show.out.find(word), std::string::npos) << word << "\n" << show.out;
    EXPECT_EQ(RunCli(dir, "show -h").out, show.out);
}
