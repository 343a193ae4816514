// The report tables whose rows are made when asked for give, row for row and byte for byte,
// what the tables walked row by row give, and `show` prints them the same: on a model with
// letters beyond ASCII, long names, an empty name, a zero coefficient, and on an empty model.
#include "CliHost.h"
#include "CliRun.h"
#include "ModelReport.h"
#include "TablePrinter.h"
#include "host/LoadsServices.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

const char* const kOpis = R"({"format": "vorta-loads", "version": 1,
 "load_cases": [{"name": "Sopstvena težina", "g": true, "coefficient": 1.35, "permanent": true},
  {"name": "Снег — дуго име оптерећења које се протеже преко ширине колоне", "coefficient": 1.5},
  {"name": "Vetar", "coefficient": 1.5, "never_with": [2]}],
 "combinations": [{"name": "Ž kombinacija", "coefficients": [[1, 1.35], [2, 0.5], [3, 0]]},
  {"coefficients": [[3, 1.5], [1, 1]]},
  {"name": "", "coefficients": [[2, 1.35]]}],
 "envelopes": [{"name": "Anvelopa čćž", "selection": "4-6", "mode": 0}]})";

/// The rows of a table as the walk gives them, in UTF-8.
std::vector<std::vector<std::string>> Walked(const CLoadsReport::TableSource& table) {
    std::vector<std::vector<std::string>> rows;
    table.rows([&rows](const CLoadsReport::Row& row) {
        auto& cells = rows.emplace_back();
        for (const CString& cell : row)
            cells.push_back(cell.ToUtf8());
    });
    return rows;
}

std::vector<std::string> Row(const CReportRows& rows, size_t r) {
    std::vector<std::string> cells;
    for (size_t c = 0; c < rows.Cells(r); ++c)
        cells.emplace_back(rows.Get(r, c));
    return cells;
}

void CompareWithTheWalk(const std::string& model) {
    std::vector<std::string> titles;
    std::vector<std::vector<std::vector<std::string>>> walked;
    std::string literal;
    CLoadsServices::IzvestajPoTabelama([&](const CLoadsReport::TableSource& table) {
        titles.push_back(table.title.ToUtf8());
        walked.push_back(Walked(table));
        std::ostringstream out;
        PrintTable(out, ToRowSource(table));
        literal += out.str();
    });

    const CReportTables tables = CLoadsServices::IzvestajNaZahtev();
    ASSERT_EQ(tables.size(), titles.size()) << model;
    std::string printed;
    for (size_t t = 0; t < tables.size(); ++t) {
        const CReportTable& table = *tables[t];
        EXPECT_EQ(table.title.ToUtf8(), titles[t]) << model;
        ASSERT_EQ(table.RowCount(), walked[t].size()) << model << ": " << titles[t];
        // Each row asked for alone, then all of them at once, then a range past the end.
        CReportRows rows;
        for (size_t r = 0; r < table.RowCount(); ++r) {
            rows.Clear();
            table.Rows(r, 1, rows);
            ASSERT_EQ(rows.Count(), 1u);
            EXPECT_EQ(Row(rows, 0), walked[t][r]) << model << ": " << titles[t] << " row " << r;
        }
        rows.Clear();
        table.Rows(0, table.RowCount(), rows);
        ASSERT_EQ(rows.Count(), table.RowCount());
        for (size_t r = 0; r < rows.Count(); ++r)
            EXPECT_EQ(Row(rows, r), walked[t][r]) << model << ": " << titles[t] << " row " << r;
        rows.Clear();
        table.Rows(table.RowCount() > 0 ? table.RowCount() - 1 : 0, 10, rows);
        EXPECT_EQ(rows.Count(), std::min<size_t>(table.RowCount(), 1));
        table.Rows(table.RowCount() + 5, 3, rows);
        EXPECT_EQ(rows.Count(), std::min<size_t>(table.RowCount(), 1));

        std::ostringstream out;
        PrintTable(out, table);
        printed += out.str();
    }
    EXPECT_EQ(printed, literal) << model;
}

} // namespace

TEST(ReportRows, RowsAskedForAreTheWalkedRowsAndPrintTheSame) {
    const CTempDir dir;
    WriteFile(dir.Path() / "opis.json", kOpis);
    ASSERT_EQ(RunCli(dir, "new model.vld").code, 0);
    ASSERT_EQ(RunCli(dir, "new prazan.vld").code, 0);
    const CRun imported = RunCli(dir, "import model.vld opis.json");
    ASSERT_EQ(imported.code, 0) << imported.err;
    ASSERT_EQ(RunCli(dir, "demo primer.vld").code, 0);

    CCliHost host;
    std::string error;
    ASSERT_TRUE(host.LoadModule(VORTA_MODULE_PATH, error)) << error;
    for (const char* model : {"model.vld", "prazan.vld", "primer.vld"}) {
        ASSERT_TRUE(host.OpenDocument(dir.Path() / model, error)) << error;
        CompareWithTheWalk(model);
    }
}
