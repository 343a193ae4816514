// The tables `show` builds from the module's services: factor vectors row by row, the ranges
// of the global scale, and the selector in both modes with what was announced.
#include "ModelReport.h"
#include "host/LoadsServices.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Row = std::vector<std::string>;

/// Two load cases and one combination (2.0 x I - 0.5 x II); loads beyond are all zeros.
void Faktori(int i, CArray<double>& f) {
    f.SetSize(2);
    f[0] = i == 0 ? 1.0 : i == 2 ? 2.0 : 0.0;
    f[1] = i == 1 ? 1.0 : i == 2 ? -0.5 : 0.0;
}

int g_nSelected = 0;

/// Fills the selector as a module would: the mode decides the texts.
void UpdateCombo(int n) {
    CMainFrame* frame = CMainFrame::Get();
    frame->Combo().ResetContent();
    frame->Combo().AddString(frame->IsResultsMode() ? L"1. Stalno" : L"0. Totalno");
    frame->Combo().AddString(frame->IsResultsMode() ? L"2. Vetar" : L"1. Stalno");
    frame->Combo().SetCurSel(n == -1 ? g_nSelected : n);
    if (!frame->IsResultsMode())
        frame->Pane0Event_SlucajOpterecenja(L"Opterecenje 1: Stalno", CId(4), 0);
}

} // namespace

TEST(ModelReport, FactorsAreFormattedCompactlyAndRowsCoverEveryLoad) {
    const std::pair<double, const char*> faktori[] = {
        {0.0, "0"},     {-0.0, "0"},      {1.0, "1.00"},          {-1.0, "-1.00"},
        {1.35, "1.35"}, {0.675, "0.675"}, {1.0 / 3.0, "0.333333"}};
    for (const auto& [f, tekst] : faktori)
        EXPECT_EQ(FormatFactor(f), tekst) << f;
    const CTextTable table = FactorTable("F", CLoadCounts{2, 1, 1}, &Faktori);
    EXPECT_EQ(table.header, (Row{"No.", "Load", "1", "2"}));
    EXPECT_EQ(table.rows, (std::vector<Row>{{"1", "case 1", "1.00", "0"},
                                            {"2", "case 2", "0", "1.00"},
                                            {"3", "combination 1", "2.00", "-0.50"},
                                            {"4", "envelope 1", "0", "0"}}));
    EXPECT_TRUE(FactorTable("F", CLoadCounts{}, &Faktori).rows.empty());

    CLoadsServices::UkupanBrojSloptOKombinacija = [] { return 5; };
    const CTextTable scale = ScaleTable(CLoadCounts{3, 2, 0});
    const CTextTable single = ScaleTable(CLoadCounts{1, 0, 1});
    CLoadsServices::Reset();
    ASSERT_EQ(scale.rows.size(), 4u);
    EXPECT_EQ(scale.rows[0], (Row{"load cases", "3", "1..3", "0..2"}));
    EXPECT_EQ(scale.rows[1], (Row{"combinations", "2", "4..5", "3..4"}));
    EXPECT_EQ(scale.rows[2], (Row{"envelopes", "0", "-", "-"}));
    EXPECT_EQ(scale.rows[3][1], "5");
    EXPECT_EQ(single.rows[2], (Row{"envelopes", "1", "2", "1"}));
}

TEST(ModelReport, SelectorIsFilledInTheRequestedModeWithItsAnnouncements) {
    CHeadlessFrame frame;
    CFrameInstallation installation(frame);
    CMainFrame::UpdateCombo = &UpdateCombo;
    std::ostringstream input;
    g_nSelected = 1;
    PrintSelector(input, frame, false);
    EXPECT_FALSE(frame.IsResultsMode());
    EXPECT_EQ(input.str(), "Load selector, input mode\n"
                           "=========================\n"
                           "   Pos  Text\n"
                           "-  ---  ----------\n"
                           "     0  0. Totalno\n"
                           ">    1  1. Stalno\n"
                           "\n"
                           "Status pane: Opterecenje 1: Stalno\n"
                           "\n");
    int number = -1;
    EXPECT_EQ(frame.GetCurrentSloptId(number), CId(4));
    EXPECT_EQ(number, 1);
    // The announcements of the earlier mode are not shown again.
    std::ostringstream results;
    g_nSelected = 0;
    PrintSelector(results, frame, true);
    EXPECT_TRUE(frame.IsResultsMode());
    EXPECT_NE(results.str().find(">    0  1. Stalno\n     1  2. Vetar\n"), std::string::npos)
        << results.str();
    EXPECT_NE(results.str().find("Status pane: (nothing announced)\n"), std::string::npos);
    CMainFrame::UpdateCombo = nullptr;
}

namespace {

/// Factors with runs of equal values, negative zeros and values differing only in their last
/// bits, by which the rows made one at a time could confuse texts.
void Mesoviti(int i, CArray<double>& f) {
    const double vrednosti[] = {0.0, 0.0, -0.0, 1.35, 1.35, 1.35 + 1e-15, 0.0, 2.0, 2.0, -1.5};
    f.SetSize(10);
    for (int m = 0; m < 10; ++m)
        f[m] = vrednosti[(m + i) % 10];
}

/// More distinct factors than the coded table holds.
void Razliciti(int i, CArray<double>& f) {
    f.SetSize(40);
    for (int m = 0; m < 40; ++m)
        f[m] = (i * 40 + m) / 8.0;
}

/// Exactly as many distinct factors as the coded table holds, of both signs.
void NajviseRazlicitih(int i, CArray<double>& f) {
    f.SetSize(32);
    for (int m = 0; m < 32; ++m)
        f[m] = (i * 32 + m - 128) * 0.37;
}

void SviMesoviti(const CLoadsServices::FactorRowVisitor& visit) {
    CArray<double> f;
    for (int i = 0; i < 7; ++i) {
        Mesoviti(i, f);
        visit(i, f);
    }
}

} // namespace

TEST(ModelReport, FactorRowsMadeOneAtATimePrintAsTheWholeTable) {
    const CLoadCounts counts{3, 3, 1};
    std::ostringstream whole;
    PrintTable(whole, FactorTable("F", counts, &Mesoviti));
    for (const AllFactorsService all : {AllFactorsService{nullptr}, &SviMesoviti}) {
        std::ostringstream rows;
        PrintTable(rows, FactorRows("F", counts, &Mesoviti, all));
        EXPECT_EQ(rows.str(), whole.str());
        std::ostringstream coded;
        PrintFactors(coded, "F", counts, &Mesoviti, all);
        EXPECT_EQ(coded.str(), whole.str());
    }
    EXPECT_NE(whole.str().find("1.35  1.35  1.35"), std::string::npos) << whole.str();

    // One factor more than the coded table holds is printed as before; as many as it holds
    // are coded, each with its own text.
    const CLoadCounts many{4, 4, 0};
    EXPECT_FALSE(CodedFactorRows("F", many, &Razliciti, nullptr).has_value());
    EXPECT_TRUE(CodedFactorRows("F", many, &NajviseRazlicitih, nullptr).has_value());
    for (const FactorService service : {&Razliciti, &NajviseRazlicitih}) {
        std::ostringstream literal;
        PrintTable(literal, FactorTable("F", many, service));
        std::ostringstream printed;
        PrintFactors(printed, "F", many, service, nullptr);
        EXPECT_EQ(printed.str(), literal.str());
    }
}
