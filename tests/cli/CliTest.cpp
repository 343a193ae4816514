// vorta-cli end to end: the built program is run in a temporary directory on model files it
// writes itself, on damaged copies of them, and with bad arguments.
#include "CliRun.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// The body rows of the table with the title, each as its words: the lines after the title,
/// underline, heading and rule, up to the empty line that ends the table.
std::vector<std::vector<std::string>> Rows(const std::string& text, const std::string& title) {
    std::vector<std::vector<std::string>> rows;
    const size_t start = text.find("\n" + title + "\n");
    if (start == std::string::npos)
        return rows;
    std::istringstream in(text.substr(start + 1));
    std::string line;
    for (int skipped = 0; skipped < 4 && std::getline(in, line); ++skipped) {
    }
    while (std::getline(in, line) && !line.empty()) {
        std::istringstream words(line);
        rows.emplace_back(std::istream_iterator<std::string>(words),
                          std::istream_iterator<std::string>());
    }
    return rows;
}

/// The count of a row of the global scale ("load", "combinations", "envelopes").
size_t Count(const std::string& out, const std::string& loads) {
    for (const auto& row : Rows(out, "Ranges of the global scale"))
        if (row[0] == loads)
            return std::stoul(row[loads == "load" ? 2 : 1]);
    return 0;
}

} // namespace

TEST(VortaCliDemo, WritesTheExampleModelAndShowPrintsItAgain) {
    CTempDir dir;
    const CRun demo = RunCli(dir, "demo model.vld");
    ASSERT_EQ(demo.code, 0) << demo.err;
    EXPECT_EQ(demo.err, "");
    // The example has load cases, combinations and an envelope; every one of them has a row in
    // both factor tables and in the results selector.
    const size_t n = Count(demo.out, "load") + Count(demo.out, "combinations");
    EXPECT_GT(Count(demo.out, "load"), 3u);
    EXPECT_GT(Count(demo.out, "envelopes"), 0u);
    for (const char* title :
         {"Factors for analysis", "Factors for printing", "Load selector, results mode"})
        EXPECT_EQ(Rows(demo.out, title).size(), n + Count(demo.out, "envelopes")) << title;
    for (const char* title :
         {"Slucajevi opterecenja", "Kombinacije opterecenja", "Anvelope", "Kontrolne sume"})
        EXPECT_FALSE(Rows(demo.out, title).empty()) << title;
    // The input selector starts on the first load case after the total load; the results
    // selector on its first position.
    const auto input = Rows(demo.out, "Load selector, input mode");
    ASSERT_GE(input.size(), 2u);
    EXPECT_EQ(input[0], (std::vector<std::string>{"0", "0.", "Totalno", "opterecenje"}));
    EXPECT_EQ(std::vector<std::string>(input[1].begin(), input[1].begin() + 3),
              (std::vector<std::string>{">", "1", "1."}));
    const auto results = Rows(demo.out, "Load selector, results mode");
    EXPECT_EQ(std::vector<std::string>(results[0].begin(), results[0].begin() + 3),
              (std::vector<std::string>{">", "0", "1."}));
    EXPECT_NE(demo.out.find("\nStatus pane: Opterecenje 1: "), std::string::npos);

    // The file was written in place, with no temporary file left beside it, and showing it
    // prints exactly what the demo showed.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
    const CRun show = RunCli(dir, "show model.vld");
    ASSERT_EQ(show.code, 0) << show.err;
    EXPECT_EQ(show.err, "");
    EXPECT_EQ(show.out, demo.out);
}

TEST(VortaCliShow, TheorySwitchChangesThePrintingVectorsOnly) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    const CRun one = RunCli(dir, "show model.vld");
    const CRun two = RunCli(dir, "show model.vld --teorija 2");
    ASSERT_EQ(two.code, 0) << two.err;
    EXPECT_NE(one.out.find("\nTheory: 1\n"), std::string::npos);
    EXPECT_NE(two.out.find("\nTheory: 2\n"), std::string::npos);
    EXPECT_EQ(RunCli(dir, "show --teorija 1 model.vld").out, one.out);

    // The analysis always expands combinations into their load cases, and under theory 1 that
    // is what is printed; under any other theory a combination is printed as a unit vector at
    // its own place, over cases and combinations.
    const auto analysis = Rows(one.out, "Factors for analysis");
    EXPECT_EQ(Rows(two.out, "Factors for analysis"), analysis);
    EXPECT_EQ(Rows(one.out, "Factors for printing"), analysis);
    const auto printing = Rows(two.out, "Factors for printing");
    const size_t nSlOpt = Count(one.out, "load");
    const size_t nKomb = Count(one.out, "combinations");
    ASSERT_EQ(printing.size(), analysis.size());
    for (size_t j = 0; j < nKomb; ++j) {
        std::vector<std::string> expected = {std::to_string(nSlOpt + j + 1), "combination",
                                             std::to_string(j + 1)};
        for (size_t m = 0; m < nSlOpt + nKomb; ++m)
            expected.push_back(m == nSlOpt + j ? "1.00" : "0");
        EXPECT_EQ(printing[nSlOpt + j], expected);
    }
    EXPECT_EQ(Rows(one.out, "Load selector, input mode"),
              Rows(two.out, "Load selector, input mode"));
}

TEST(VortaCliShow, RefusesMissingTruncatedCorruptAndUnwritableFiles) {
    CTempDir dir;
    ASSERT_EQ(RunCli(dir, "demo model.vld").code, 0);
    const std::string bytes = ReadText(dir.Path() / "model.vld");
    std::string flipped = bytes;
    flipped[bytes.size() / 2] = static_cast<char>(flipped[bytes.size() / 2] ^ 0x5A);
    std::string checksum = bytes;
    checksum.back() = static_cast<char>(checksum.back() ^ 0x01);
    WriteFile(dir.Path() / "truncated.vld", bytes.substr(0, bytes.size() / 2));
    WriteFile(dir.Path() / "flipped.vld", flipped);
    WriteFile(dir.Path() / "checksum.vld", checksum);
    WriteFile(dir.Path() / "text.vld", "this is not a model file\n");

    // Each refusal is one line on the error stream that names the file and the reason. A byte
    // flipped in the middle may hit a length, and the file then reads as truncated.
    const std::pair<std::string, std::string> cases[] = {
        {"show missing.vld", "No such file"},  {"show truncated.vld", "truncated"},
        {"show flipped.vld", "model file is"}, {"show checksum.vld", "damaged"},
        {"show text.vld", "not a model file"}, {"demo none/model.vld", "cannot write"}};
    for (const auto& [args, reason] : cases) {
        const CRun run = RunCli(dir, args);
        EXPECT_EQ(run.code, 1) << args;
        EXPECT_EQ(run.out, "") << args;
        EXPECT_EQ(run.err.rfind("vorta-cli: ", 0), 0u) << run.err;
        EXPECT_NE(run.err.find(args.substr(5)), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
    }
    // The refusals leave the files as they were.
    EXPECT_EQ(ReadText(dir.Path() / "model.vld"), bytes);
    EXPECT_EQ(ReadText(dir.Path() / "flipped.vld"), flipped);
}

TEST(VortaCli, RefusesBadArgumentsAndModulesThatCannotBeLoaded) {
    CTempDir dir;
    for (const char* args : {"", "show", "demo", "frobnicate model.vld", "show a.vld b.vld",
                             "show model.vld --teorija", "show model.vld --teorija dva",
                             "show model.vld --nepoznato"}) {
        const CRun run = RunCli(dir, args);
        EXPECT_EQ(run.code, 2) << "'" << args << "'";
        EXPECT_NE(run.err, "") << "'" << args << "'";
    }
    WriteFile(dir.Path() / "not-a-library.so", "ELF? no\n");
    for (const std::string module : {"missing/libopterecenje.so", "not-a-library.so"}) {
        const CRun show = RunCli(dir, "show model.vld --module " + module);
        EXPECT_EQ(show.code, 3) << module;
        EXPECT_NE(show.err.find("vorta-cli: cannot load the loads module"), std::string::npos);
        EXPECT_NE(show.err.find(module), std::string::npos) << show.err;
        EXPECT_EQ(RunCli(dir, "--module " + module + " demo model.vld").code, 3) << module;
        EXPECT_FALSE(std::filesystem::exists(dir.Path() / "model.vld"));
    }
    // The environment variable names the module when no option does.
    EXPECT_EQ(RunCli(dir, "show model.vld", "VORTA_OPTERECENJE_MODULE=missing.so").code, 3);

    // A check of the program that fails ends it with the code of an internal error, never 0.
    const CRun failed = RunCli(dir, "demo model.vld --module '" VORTA_FAILING_MODULE_PATH "'");
    EXPECT_EQ(failed.code, 5);
    EXPECT_EQ(failed.out, "");
    EXPECT_NE(failed.err.find("ASSERT(list == nullptr)"), std::string::npos) << failed.err;
    EXPECT_NE(ReadText(dir.Path() / "vmerror.log").find("ASSERT(list == nullptr)"),
              std::string::npos);
}

TEST(VortaCli, HelpForTheProgramAndEveryCommand) {
    CTempDir dir;
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"--help", {"Usage", "demo", "show", "--module"}},
        {"demo --help", {"FILE"}},
        {"show -h", {"FILE", "--teorija"}}};
    for (const auto& [args, words] : cases) {
        const CRun run = RunCli(dir, args);
        EXPECT_EQ(run.code, 0) << args;
        for (const std::string& word : words)
            EXPECT_NE(run.out.find(word), std::string::npos) << word << "\n" << run.out;
    }
    EXPECT_EQ(RunCli(dir, "demo --help").out.find("--teorija"), std::string::npos);
}
