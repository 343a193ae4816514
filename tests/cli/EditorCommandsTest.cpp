// vorta-cli end to end: load cases, envelopes, SRSS cases and the stored combination set
// changed by the module's editors, each command one change of the file; a change the editor
// refuses writes nothing.
#include "CliRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

const char* const kOpterecenja = R"({
  "load_cases": [
    {"name": "G", "coefficient": 1.35, "permanent": true},
    {"name": "Q", "coefficient": 1.5},
    {"name": "EX", "coefficient": 0, "seismic": true},
    {"name": "EY", "coefficient": 0, "seismic": true},
    {"name": "E", "srss": [["EX", 1], ["EY", 0.3]]}
  ],
  "envelopes": [{"name": "Sve", "selection": "1-5"}]
})";

class VortaCliEditors : public ::testing::Test {
protected:
    void SetUp() override {
        WriteFile(m_dir.Path() / "loads.json", kOpterecenja);
        Run("new m.vld");
        Run("import m.vld loads.json");
    }
    /// Runs a command that must succeed and returns its output.
    std::string Run(const std::string& command) {
        const CRun run = RunCli(m_dir, command);
        EXPECT_EQ(run.code, 0) << command << "\n" << run.err;
        return run.out;
    }
    json Model() {
        Run("export m.vld -o m.json");
        return json::parse(ReadText(m_dir.Path() / "m.json"));
    }
    std::vector<std::string> Names(const json& list) {
        std::vector<std::string> names;
        for (const json& item : list)
            names.push_back(item["name"]);
        return names;
    }

    CTempDir m_dir;
};

} // namespace

TEST_F(VortaCliEditors, LoadCasesAreAddedRenamedMovedAndDeletedWithWhatGoesAlong) {
    EXPECT_EQ(Run("case add m.vld Sneg --coefficient 1.5 --g --after Q"),
              "Added load case 3 \"Sneg\"; m.vld has 6 load cases, 0 combinations, 1 "
              "envelopes.\n");
    Run("case rename m.vld 3 \"Sneg i led\"");
    Run("case move m.vld \"Sneg i led\" --to 1");
    json model = Model();
    EXPECT_EQ(Names(model["load_cases"]),
              (std::vector<std::string>{"Sneg i led", "G", "Q", "EX", "EY", "E"}));
    EXPECT_EQ(model["load_cases"][0]["g"], true);
    EXPECT_EQ(model["load_cases"][0]["coefficient"], 1.5);
    // The SRSS case and the envelope follow the new numbers.
    EXPECT_EQ(model["load_cases"][5]["srss"], json::parse("[[4, 1], [5, 0.3]]"));
    EXPECT_EQ(model["envelopes"][0]["selection"], "2-6");

    // An SRSS case keeps to its block; deleting a direction takes the SRSS case along.
    const std::string before = ReadText(m_dir.Path() / "m.vld");
    const CRun blocked = RunCli(m_dir, "case move m.vld E --to 2");
    EXPECT_EQ(blocked.code, 2);
    EXPECT_EQ(blocked.err, "vorta-cli: load case \"E\" cannot move to 2: ordinary load cases and "
                           "SRSS cases each keep to their block\n");
    // A place beyond the list is named as such.
    for (const char* to : {"7", "0", "-1"}) {
        const CRun beyond = RunCli(m_dir, std::string("case move m.vld G --to ") + to);
        EXPECT_EQ(beyond.code, 2) << to;
        EXPECT_EQ(beyond.err, std::string("vorta-cli: load case \"G\" cannot move to ") + to +
                                  ": the model has load cases 1 to 6\n");
    }
    EXPECT_EQ(ReadText(m_dir.Path() / "m.vld"), before);
    Run("generate m.vld");
    Run("case delete m.vld EX");
    model = Model();
    EXPECT_EQ(Names(model["load_cases"]), (std::vector<std::string>{"Sneg i led", "G", "Q", "EY"}));
    // G with any of "Sneg i led", Q and E: the half with E went with it.
    EXPECT_EQ(model["combinations"].size(), 4u);

    for (const char* refused : {"case add m.vld G", "case rename m.vld 9 X", "case delete m.vld Z"})
        EXPECT_EQ(RunCli(m_dir, refused).code, 2) << refused;
}

TEST_F(VortaCliEditors, EnvelopesAndSrssCasesAreSetByTheirEditors) {
    Run("envelope add m.vld Stalna --select 1,2 --mode 1");
    EXPECT_EQ(RunCli(m_dir, "envelope add m.vld Stalna --select 2").code, 2);
    Run("envelope add m.vld Stalna --select 2 --replace");
    Run("envelope delete m.vld Sve");
    Run("srss set m.vld E --weights EX=1,EY=1");
    Run("srss set m.vld \"E dijagonalno\" --weights EX=0.7,EY=0.7,Q=1");
    json model = Model();
    EXPECT_EQ(model["envelopes"],
              json::parse(R"([{"name": "Stalna", "selection": "2", "mode": 0}])"));
    EXPECT_EQ(model["load_cases"][4]["srss"], json::parse("[[3, 1], [4, 1]]"));
    EXPECT_EQ(model["load_cases"][5]["name"], "E dijagonalno");
    EXPECT_EQ(model["load_cases"][5]["srss"], json::parse("[[2, 1], [3, 0.7], [4, 0.7]]"));

    // What the editors refuse changes nothing.
    const std::string before = ReadText(m_dir.Path() / "m.vld");
    const CRun one = RunCli(m_dir, "srss set m.vld E --weights EX=1");
    EXPECT_EQ(one.code, 2);
    EXPECT_EQ(one.err, "vorta-cli: Greska: Bar dva koeficijenta moraju biti razlicita od nule.\n");
    // The editor's refusal comes in the language of the locale, English under C.
    EXPECT_EQ(RunCli(m_dir, "srss set m.vld E --weights EX=1", "LC_ALL= LC_MESSAGES= LANG=C").err,
              "vorta-cli: Error: At least two coefficients must be other than zero.\n");
    EXPECT_EQ(RunCli(m_dir, "srss set m.vld E --weights EX=1,EY=0.001").code, 2);
    EXPECT_EQ(RunCli(m_dir, "envelope add m.vld X --select 1-99").code, 2);
    EXPECT_EQ(ReadText(m_dir.Path() / "m.vld"), before);
}

TEST_F(VortaCliEditors, TheStoredSetComesBackThroughTheMapping) {
    Run("generate m.vld");
    EXPECT_EQ(Run("store m.vld"), "Stored the 4 combinations of m.vld.\n");
    EXPECT_EQ(RunCli(m_dir, "store m.vld").code, 2);
    // The model changes; the stored combinations are mapped onto it: G and Q trade places.
    Run("case move m.vld Q --to 1");
    EXPECT_EQ(Run("restore m.vld --map 1=2,2=1"),
              "Restored 4 combinations from the stored set; m.vld has 8.\n");
    const json model = Model();
    ASSERT_EQ(model["combinations"].size(), 8u);
    for (size_t j = 0; j < 4; ++j)
        EXPECT_EQ(model["combinations"][j + 4]["coefficients"],
                  model["combinations"][j]["coefficients"]);
    EXPECT_EQ(model["stored_set"]["load_cases"][0]["name"], "G");
    EXPECT_EQ(RunCli(m_dir, "restore m.vld --map 1=Q,2=Q").code, 2);
}
