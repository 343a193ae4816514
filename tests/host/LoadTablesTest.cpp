// The load tables of the desktop host ask the report for the rows a view shows, a page at a
// time: rows read in any order across pages (more pages than are kept) are the rows of the
// model, and after a change the tables show the changed model, not pages kept from before.
#include "HostFixture.h"

#include "LoadTables.h"
#include "host/LoadsServices.h"
#include "host/MainFrame.h"

#include <QTableView>

#include <string>

namespace {

/// Three load cases and `count` combinations named by the prefix and their ordinal.
std::string Opis(int count, const std::string& prefix) {
    std::string text = R"({"format": "vorta-loads", "version": 1, "load_cases": [)"
                       R"({"name": "G"}, {"name": "Q"}, {"name": "Сн"}], "combinations": [)";
    for (int k = 1; k <= count; ++k)
        text += (k > 1 ? ", " : "") + std::string(R"({"name": ")") + prefix + std::to_string(k) +
                R"(", "coefficients": [[1, 1.35], [3, 1.5]]})";
    return text + "]}";
}

void Uvezi(CMainWindow& window, int count, const std::string& prefix) {
    window.RunCommandWork([count, prefix] {
        CString error;
        ASSERT_TRUE(CLoadsServices::UveziJson(Opis(count, prefix), error)) << error.ToUtf8();
        CMainFrame::UpdateCombo(-1);
    });
}

QString Cell(CMainWindow& window, int table, int row, int col) {
    return window.Tables().Table(table)->model()->index(row, col).data().toString();
}

} // namespace

TEST_F(HostTest, LoadTablesShowTheRowsAskedForInAnyOrderAndTheModelAfterAChange) {
    CMainWindow& w = *m_window;
    Uvezi(w, 1500, "K");
    w.Tables().Refresh();
    ASSERT_EQ(w.Tables().Table(1)->model()->rowCount(), 1500);
    // Pages far apart, a page boundary from both sides, then every row from the end back.
    for (const int row : {0, 1499, 64, 63, 700, 128, 0})
        EXPECT_EQ(Cell(w, 1, row, 1), QStringLiteral("K%1").arg(row + 1)) << row;
    for (int row = 1499; row >= 0; --row)
        ASSERT_EQ(Cell(w, 1, row, 1), QStringLiteral("K%1").arg(row + 1)) << row;
    EXPECT_EQ(Cell(w, 1, 10, 3), QStringLiteral("1.35"));
    EXPECT_EQ(Cell(w, 1, 10, 4), QString());
    EXPECT_EQ(Cell(w, 3, 2, 2), QStringLiteral("Сн")) << "letters beyond ASCII on the scale";

    // Other combinations in the same places: no row is kept from before the change.
    Uvezi(w, 20, "N");
    w.Tables().Refresh();
    ASSERT_EQ(w.Tables().Table(1)->model()->rowCount(), 20);
    for (const int row : {19, 0})
        EXPECT_EQ(Cell(w, 1, row, 1), QStringLiteral("N%1").arg(row + 1)) << row;
    EXPECT_EQ(Cell(w, 3, 3 + 19, 2), QStringLiteral("N20"));
}
