// The text tables of vorta-cli: alignment by characters, numbers to the right, selectors.
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

TEST(TablePrinter, AlignsColumnsByCharactersNotBytes) {
    EXPECT_EQ(DisplayWidth("abc"), 3u);
    EXPECT_EQ(DisplayWidth("Opterećenje"), 11u);
    EXPECT_EQ(DisplayWidth("ΔΣ"), 2u);

    const CTextTable table{
        "Slučajevi", {"RB", "Naziv", "Koef"}, {{"1", "Snežno", "1.35"}, {"10", "g", "-0.5"}}};
    EXPECT_EQ(Render(table), "Slučajevi\n"
                             "=========\n"
                             "RB  Naziv   Koef\n"
                             "--  ------  ----\n"
                             " 1  Snežno  1.35\n"
                             "10  g       -0.5\n"
                             "\n");
}

TEST(TablePrinter, RaggedRowsEmptyTablesAndMixedColumns) {
    // A row longer than the heading gets a column of its own; a column holding a word is
    // aligned left even when most of its cells are numbers.
    const CTextTable ragged{"T", {"A"}, {{"1", "x"}, {"abc"}, {"2", "yy"}}};
    EXPECT_EQ(Render(ragged), "T\n"
                              "=\n"
                              "A\n"
                              "---  --\n"
                              "1    x\n"
                              "abc\n"
                              "2    yy\n"
                              "\n");
    const CTextTable empty{"Prazno", {"X", "Y"}, {}};
    EXPECT_EQ(Render(empty), "Prazno\n======\nX  Y\n-  -\n(none)\n\n");
    const CTextTable noHeader{"N", {}, {{"1.", "+2", "3.5x"}}};
    EXPECT_EQ(Render(noHeader), "N\n=\n1.  +2  3.5x\n\n");
}

TEST(TablePrinter, SelectorMarksTheSelectedPosition) {
    CSelectorList selector;
    EXPECT_EQ(Render(SelectorTable("S", selector)), "S\n=\n   Pos  Text\n-  ---  ----\n(none)\n\n");

    selector.AddString(L"0. Totalno opterecenje");
    selector.AddString(L"1. Sopstvena težina");
    selector.SetCurSel(1);
    EXPECT_EQ(Render(SelectorTable("S", selector)), "S\n"
                                                    "=\n"
                                                    "   Pos  Text\n"
                                                    "-  ---  ----------------------\n"
                                                    "     0  0. Totalno opterecenje\n"
                                                    ">    1  1. Sopstvena težina\n"
                                                    "\n");
}
