// The text tables of vorta-cli: alignment by characters, numbers to the right.
#include "TablePrinter.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string Render(const CTextTable& table) {
    std::ostringstream out;
    PrintTable(out, table);
    return out.str();
}

} // namespace

TEST(TablePrinter, AlignsColumnsByCharactersAndNumbersToTheRight) {
    EXPECT_EQ(DisplayWidth("Opterećenje ΔΣ"), 14u);
    const CTextTable table{
        "Slučajevi", {"RB", "Naziv", "Koef"}, {{"1", "Snežno", "1.35"}, {"10", "g", "-0.5"}}};
    EXPECT_EQ(Render(table), "Slučajevi\n"
                             "=========\n"
                             "RB  Naziv   Koef\n"
                             "--  ------  ----\n"
                             " 1  Snežno  1.35\n"
                             "10  g       -0.5\n"
                             "\n");
    // A row longer than the heading gets a column of its own; a column holding a word is
    // aligned left even when most of its cells are numbers.
    const CTextTable ragged{"T", {"A"}, {{"1", "x"}, {"abc"}, {"2", "yy"}}};
    EXPECT_EQ(Render(ragged), "T\n=\nA\n---  --\n1    x\nabc\n2    yy\n\n");
    EXPECT_EQ(Render(CTextTable{"Prazno", {"X", "Y"}, {}}),
              "Prazno\n======\nX  Y\n-  -\n(none)\n\n");
    EXPECT_EQ(Render(CTextTable{"N", {}, {{"1.", "+2", "3.5x"}}}), "N\n=\n1.  +2  3.5x\n\n");
    // A letter of two bytes far into a long name still counts as one character.
    EXPECT_EQ(Render(CTextTable{"D", {"Naziv", "K"}, {{"Stalno opterećenje", "1"}, {"x", "2"}}}),
              "D\n=\nNaziv               K\n------------------  -\n"
              "Stalno opterećenje  1\nx                   2\n\n");
    // An empty selector (a filled one is shown by the report's tests).
    EXPECT_EQ(Render(SelectorTable("S", CSelectorList())),
              "S\n=\n   Pos  Text\n-  ---  ----\n(none)\n\n");
}

TEST(TablePrinter, ReportTablesMadeRowByRowPrintAsTheWholeTables) {
    // Long cells followed by shorter ones, letters beyond ASCII, empty and missing cells.
    const CLoadsReport::Table whole{L"Kombinacije",
                                    {L"Rb", L"Naziv", L"I", L"II"},
                                    {{L"1", L"1.35xI+Sneg", L"1.35", L"0.90"},
                                     {L"2", L"Снег", L"", L"1.50"},
                                     {L"10", L"Vetar Ž", L"0.75"},
                                     {L"11", L"", L"1", L"2", L"ekstra"}}};
    int walks = 0;
    CLoadsReport::TableSource source{whole.title, whole.header,
                                     [&](const CLoadsReport::RowVisitor& visit) {
                                         ++walks;
                                         CLoadsReport::Row row;
                                         for (const CLoadsReport::Row& cells : whole.rows) {
                                             row = cells;
                                             visit(row);
                                         }
                                     }};
    std::ostringstream rowByRow;
    PrintTable(rowByRow, ToRowSource(source));
    EXPECT_EQ(rowByRow.str(), Render(ToTextTable(whole)));
    EXPECT_EQ(walks, 1); // each row made once, measured and written from where it is kept
    std::ostringstream kept;
    PrintTable(kept, ToRowSource(whole));
    EXPECT_EQ(kept.str(), rowByRow.str());

    // The selector, with its choice past the first position.
    CSelectorList selector;
    for (const wchar_t* text : {L"1. Stalno", L"2. Snežno opterećenje", L"", L"10. Kombinacija"})
        selector.AddString(text);
    selector.SetCurSel(3);
    std::ostringstream selectorRows;
    PrintTable(selectorRows, SelectorRowsTable("Selector", selector));
    EXPECT_EQ(selectorRows.str(), Render(SelectorTable("Selector", selector)));
    EXPECT_NE(selectorRows.str().find(">    3  10. Kombinacija\n"), std::string::npos);
}

TEST(TablePrinter, SparseAndCodedRowsPrintAsTheTextTable) {
    // Empty cells given one by one, in a run, as empty texts and at the ends of rows.
    const CTextTable text{"Ž",
                          {"A", "B", "C", "D"},
                          {{"1", "", "", "x"}, {"", "", "", ""}, {"22", "Ђ", "", ""}, {}, {"3"}}};
    CReportRows rows;
    rows.Cell("1");
    rows.EmptyCells(2);
    rows.Cell("x");
    rows.EndRow();
    rows.EmptyCells(1);
    rows.Cell("");
    rows.EndCell();
    rows.EmptyCells(1);
    rows.EndRow();
    rows.Cell("22");
    rows.Cell("Ђ");
    rows.EmptyCells(2);
    rows.EndRow();
    rows.EndRow();
    rows.Cell("3");
    rows.EndRow();
    ASSERT_EQ(rows.Count(), text.rows.size());
    for (size_t r = 0; r < rows.Count(); ++r) {
        ASSERT_EQ(rows.Cells(r), text.rows[r].size()) << r;
        for (size_t c = 0; c < rows.Cells(r); ++c)
            EXPECT_EQ(rows.Get(r, c), text.rows[r][c]) << r << "," << c;
    }
    std::ostringstream sparse;
    PrintTable(sparse, CRowsTable{text.title, text.header, rows});
    EXPECT_EQ(sparse.str(), Render(text));

    // Rows of their own cells and then coded ones, of different lengths, ASCII or not.
    for (const char* extra : {"-1.5", "ΔΣ", "-12345.678"}) {
        CCodedTable coded{"K", {"No.", "Load", "1", "2", "3"}, {}, {"0", "1.35", extra}, {}, {}};
        const std::vector<std::vector<CCodedTable::Code>> codes = {{0, 1, 2}, {2}, {}, {1, 1}};
        CTextTable same{"K", coded.header, {}};
        for (size_t r = 0; r < codes.size(); ++r) {
            auto& cells = same.rows.emplace_back();
            cells = {std::to_string(r + 1), "load " + std::to_string(r + 1)};
            coded.lead.Cell(cells[0]);
            coded.lead.Cell(cells[1]);
            coded.lead.EndRow();
            for (const CCodedTable::Code code : codes[r]) {
                coded.codes.push_back(code);
                cells.push_back(coded.texts[code]);
            }
            coded.rowEnds.push_back(coded.codes.size());
        }
        std::ostringstream out;
        PrintTable(out, coded);
        EXPECT_EQ(out.str(), Render(same)) << extra;
    }
}
