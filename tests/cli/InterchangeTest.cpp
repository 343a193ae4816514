// vorta-cli end to end: a model built from a JSON description, its combinations generated,
// sorted and rid of duplicates, exported as JSON and CSV and imported into new files that come
// out the same; input that is refused leaves the model file as it was.
#include "CliRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

/// A small building: self-weight always there, an imposed load that alternates, snow never
/// with wind, wind only with the imposed load, two seismic directions combined by SRSS.
const char* const kOpterecenja = R"({
  "load_cases": [
    {"name": "G", "g": true, "coefficient": 1.35, "permanent": true},
    {"name": "Q", "coefficient": 1.5, "alternating": true},
    {"name": "Sneg", "coefficient": 1.5, "never_with": ["Vetar"]},
    {"name": "Vetar", "coefficient": 1.5, "always_with": [2]},
    {"name": "EX", "coefficient": 0, "seismic": true},
    {"name": "EY", "coefficient": 0, "seismic": true},
    {"name": "E", "srss": [["EX", 1], ["EY", 0.3]]}
  ],
  "envelopes": [{"name": "Slucajevi", "selection": "1-7"}]
})";

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// Runs the commands one after another, each of which must succeed; their outputs joined.
std::string Succeed(const CTempDir& dir, std::initializer_list<std::string> commands) {
    std::string out;
    for (const std::string& command : commands) {
        const CRun run = RunCli(dir, command);
        EXPECT_EQ(run.code, 0) << command << "\n" << run.err;
        EXPECT_EQ(run.err, "") << command;
        out += run.out;
    }
    return out;
}

} // namespace

TEST(VortaCliInterchange, AJsonDescriptionBecomesAModelThatGoesToJsonAndCsvAndBackUnchanged) {
    CTempDir dir;
    WriteFile(dir.Path() / "loads.json", kOpterecenja);
    Succeed(dir, {"new a.vld", "import a.vld loads.json"});

    // Ten admissible sets of Q, Sneg, Vetar and E with G, six of them with Q and its sign.
    const std::vector<std::string> generated = Lines(RunCli(dir, "generate a.vld").out);
    ASSERT_EQ(generated.size(), 2u);
    EXPECT_EQ(generated[0], "Possible combinations: 16");
    EXPECT_EQ(generated[1], "Generated 16 combinations; a.vld has 16.");
    Succeed(dir, {"sort a.vld --descending", "generate a.vld --append"});
    EXPECT_EQ(Lines(RunCli(dir, "dedupe a.vld").out).back(),
              "Removed 16 duplicate combinations; a.vld has 16.");

    Succeed(dir, {"export a.vld -o a.json", "export a.vld --format csv -o a.csv"});
    const json model = json::parse(ReadText(dir.Path() / "a.json"));
    ASSERT_EQ(model["combinations"].size(), 16u);
    // Sorted descending: the combinations of most load cases first.
    for (size_t j = 1; j < 16; ++j)
        EXPECT_GE(model["combinations"][j - 1]["coefficients"].size(),
                  model["combinations"][j]["coefficients"].size());
    EXPECT_EQ(model["combinations"][0]["name"], "1.35xI+1.50xII+1.50xIV+VII");
    EXPECT_EQ(model["load_cases"][6]["srss"], json::parse("[[5, 1], [6, 0.3]]"));
    EXPECT_EQ(model["load_cases"][2]["never_with"], json::parse("[4]"));
    EXPECT_EQ(model["envelopes"][0]["selection"], "1-7");

    // Into a new file and out again: the same JSON, and show prints the same model.
    Succeed(dir, {"new b.vld", "import b.vld a.json", "export b.vld -o b.json"});
    EXPECT_EQ(ReadText(dir.Path() / "b.json"), ReadText(dir.Path() / "a.json"));
    const std::vector<std::string> shownA = Lines(RunCli(dir, "show a.vld").out);
    const std::vector<std::string> shownB = Lines(RunCli(dir, "show b.vld").out);
    ASSERT_GT(shownA.size(), 20u);
    EXPECT_EQ(std::vector<std::string>(shownA.begin() + 1, shownA.end()),
              std::vector<std::string>(shownB.begin() + 1, shownB.end()));

    // The spreadsheet: a heading of numbered load cases, a row per combination, and read back
    // into a model of the same load cases it gives the same combinations.
    const std::vector<std::string> csv = Lines(ReadText(dir.Path() / "a.csv"));
    ASSERT_EQ(csv.size(), 17u);
    EXPECT_EQ(csv[0], "No.,Name,Generated,1. G,2. Q,3. Sneg,4. Vetar,5. EX,6. EY,7. E\r");
    EXPECT_EQ(csv[1], "1,1.35xI+1.50xII+1.50xIV+VII,yes,1.35,1.5,,1.5,,,1\r");
    Succeed(dir, {"new c.vld", "import c.vld loads.json",
                  "import c.vld a.csv --combinations --append", "export c.vld -o c.json"});
    EXPECT_EQ(ReadText(dir.Path() / "c.json"), ReadText(dir.Path() / "a.json"));

    // show for scripts.
    const json shown = json::parse(RunCli(dir, "show a.vld --format json").out);
    EXPECT_EQ(shown["scale"]["combinations"], 16);
    EXPECT_EQ(shown["factors_for_analysis"].size(), 7u + 16u + 1u);
    EXPECT_EQ(shown["selector"]["results"]["items"].size(), 24u);
    // A name with a quote, a backslash and a tab is escaped.
    const std::string odd = "q\"b\\c\t.vld";
    std::filesystem::copy_file(dir.Path() / "a.vld", dir.Path() / odd);
    const json oddShown = json::parse(RunCli(dir, "show '" + odd + "' --format json").out);
    EXPECT_EQ(oddShown["file"], odd);
    EXPECT_EQ(oddShown["tables"], shown["tables"]);
}

TEST(VortaCliInterchange, RefusedInputIsNamedByLineAndColumnAndLeavesTheModelAsItWas) {
    CTempDir dir;
    WriteFile(dir.Path() / "loads.json", kOpterecenja);
    Succeed(dir, {"new m.vld", "import m.vld loads.json", "generate m.vld"});
    const std::string before = ReadText(dir.Path() / "m.vld");
    struct Refusal {
        const char* file;
        const char* text;
        const char* args;
        const char* error;
    };
    const Refusal refusals[] = {
        {"bad.json", "{\"load_cases\": [{\"name\": \"A\",\n  \"g\": tru}]}", "",
         "line 2, column 8: syntax error while parsing value - invalid literal"},
        {"bad.json",
         R"({"load_cases": [{"name": "A"}], "combinations": [{"coefficients": [["B", 1]]}]})", "",
         "line 1, column 69: there is no load case named \"B\""},
        {"bad.json", "{\"load_cases\": [\n  {\"name\": \"A\"},\n  {\"name\": \"A\"}]}", "",
         "line 3, column 12: the load case name \"A\" is given twice (first on line 2)"},
        {"bad.json", R"({"load_cases": [{"name": "A", "modes": 1000}]})", "",
         "line 1, column 40: \"modes\" must be a whole number from 0 to 999"},
        {"bad.json", R"({"load_cases": [{"name": "A", "coefficient": 1e400}]})", "",
         "line 1, column 46: the number 1e400 is out of range"},
        {"bad.json", R"({"load_cases": [{"name": "A"}, {"name": "E", "srss": [["A", 1e200]]}]})",
         "", "line 1, column 56: an SRSS weight must be below 1e154"},
        {"bad.json",
         R"({"load_cases": [{"name": "A", "seismic": true}, {"name": "B"}], "combinations": )"
         R"([{"coefficients": [[1, 1], [2, 1]]}], "stability": {"combinations": [1]}})",
         "",
         "line 1, column 150: combination 1 takes no part in a stability analysis: it holds "
         "load case 1"},
        {"bad.json",
         R"({"load_cases": [{"name": "A"}], "combinations": [{"coefficients": [[1, 1]]}], )"
         R"("stability": {"accuracy": 2, "combinations": [1]}})",
         "", "line 1, column 105: \"accuracy\" must be from 0.001 to 1"},
        {"bad.csv", "No.,Name,1. G,2. Q\r\n1,K,1.35,\"1,5\"\r\n", " --combinations --replace",
         "line 2, column 4 (D): a coefficient is written with '.' as the decimal separator"},
        {"bad.csv", "Name,1. G,2. Q\r\nK,1,\"1.5\r\n", " --combinations --replace",
         "line 2, column 3 (C): a quoted field is not closed"},
        {"bad.csv", "Name,1. G,2. Q\r\nK,0,\r\n", " --combinations --replace",
         "line 2, column 2 (B): a combination needs a coefficient other than zero"},
        {"bad.csv", "Name,1. G,9. Vetar\r\n", " --combinations --replace",
         "line 1, column 3 (C): \"9. Vetar\" names no load case of the model (they are numbered "
         "1 to 7)"},
        {"bad.csv", "Name,1. G,2. Sneg\r\n", " --combinations --replace",
         "line 1, column 3 (C): the heading \"2. Sneg\" does not match load case 2 of the model, "
         "\"Q\""},
    };
    for (const Refusal& r : refusals) {
        WriteFile(dir.Path() / r.file, r.text);
        const CRun run = RunCli(dir, std::string("import m.vld ") + r.file + r.args);
        EXPECT_EQ(run.code, 2) << r.text;
        EXPECT_EQ(run.err, std::string("vorta-cli: ") + r.file + ": " + r.error + "\n");
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(ReadText(dir.Path() / "m.vld"), before) << r.text;
    }

    // A file that is not a model is not touched either.
    WriteFile(dir.Path() / "notes.vld", "{\"load_cases\": []}");
    const CRun notModel = RunCli(dir, "import notes.vld loads.json");
    EXPECT_EQ(notModel.code, 1);
    EXPECT_NE(notModel.err.find("notes.vld"), std::string::npos) << notModel.err;
    EXPECT_EQ(ReadText(dir.Path() / "notes.vld"), "{\"load_cases\": []}");
    // Combinations are not replaced or appended without being asked.
    WriteFile(dir.Path() / "ok.csv", "Name,1. G\r\nK,1\r\n");
    EXPECT_EQ(RunCli(dir, "import m.vld ok.csv --combinations").code, 2);
    EXPECT_EQ(ReadText(dir.Path() / "m.vld"), before);
}
