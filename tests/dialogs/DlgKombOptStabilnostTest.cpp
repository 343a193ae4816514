// The stability dialog driven as a user drives it: the texts with δ, the two grids, the δ cells
// of load cases that are not fixed, the popup commands, the range of the two number edits, the
// two refusals of OK, and the parameters the caller gets after OK and after Cancel.
#include "EditoriFixture.h"

#include "dialogs/DlgKombOptStabilnost.h"
#include "model/StabilnostParams.h"

#include <gtest/gtest.h>

namespace {

enum : int { INTERVAL = 1020, TACNOST = 1021, TORZIJA = 2089 };

const CString kDelta = L"\u03b4";

class StabilnostTest : public EditoriTest {
protected:
    /// S1..S4 (S3 seismic, so not offered) and the combinations
    ///   1: 1.35xS1 + 1.5xS2,  2: S1 + S3 (not offered),  3: S2 - S4,  4: S1 + S2.
    void SetUp() override {
        EditoriTest::SetUp();
        for (int k = 1; k <= 4; ++k)
            m_s.push_back(Slucaj(CString::Formatted(L"S%d", k), k, k == 3 ? Seizmicki : nullptr));
        AddCombination(1, {{m_s[0], 1.35}, {m_s[1], 1.5}}, L"K1");
        AddCombination(2, {{m_s[0], 1.0}, {m_s[2], 1.0}}, L"K2");
        AddCombination(3, {{m_s[1], 1.0}, {m_s[3], -1.0}}, L"K3");
        AddCombination(4, {{m_s[0], 1.0}, {m_s[1], 1.0}}, L"K4");
        m_params.InitDefault();
        m_params.SetIskljucTorzGreda(1);
    }
    int Dijalog(std::function<void(CDlgKombOptStabilnost&)> scena) {
        Ocekuj<CDlgKombOptStabilnost>(1005, std::move(scena));
        const int rezultat = COpterecenjeApp::OnStabilnost(nullptr, m_params);
        ScenarioOdigran();
        return rezultat;
    }

    std::vector<CId> m_s;
    CStabilnostParams m_params;
};

} // namespace

TEST_F(StabilnostTest, StartUpShowsTheTextsTheLoadCasesAndTheCombinations) {
    Dijalog([&](CDlgKombOptStabilnost& d) {
        const CDialogModel& m = d.Dialog();
        EXPECT_EQ(m.GetText(1023), L"Interval u kome se trazi vrednost koeficijenta " + kDelta);
        EXPECT_FALSE(m.IsVisible(TORZIJA));
        EXPECT_EQ(m.GetText(INTERVAL), L"1000");
        EXPECT_EQ(m.GetText(TACNOST), L"0.100");

        const CGridModel& g1 = m.Grid(G1);
        EXPECT_EQ(Red(g1, 1), (std::vector<CString>{L"1", L"S1", L"", kDelta}));
        EXPECT_TRUE(g1.IsCheckCell(1, 2));
        EXPECT_TRUE(g1.IsReadOnly(1, 3));
        EXPECT_FALSE(g1.IsCheckCell(3, 2)); // the seismic case cannot take part
        EXPECT_EQ(g1.GetCell(3, 1).foreground, 0x808080u);

        const CGridModel& g2 = m.Grid(G2);
        EXPECT_EQ(g2.GetRowCount(), 5);
        EXPECT_EQ(Red(g2, 3), (std::vector<CString>{L"3", L"K3", L""}));
        EXPECT_TRUE(g2.IsCheckCell(3, 2));
        EXPECT_FALSE(g2.GetCheck(3, 2));
        EXPECT_FALSE(g2.IsCheckCell(2, 2));
    });
}

TEST_F(StabilnostTest, FixingALoadCaseShowsItsCoefficientAndFreeingItShowsDelta) {
    const CStabilnostParams pre = m_params;
    Dijalog([&](CDlgKombOptStabilnost& d) {
        CGridModel& g1 = Grid(d, G1);
        EXPECT_FALSE(g1.UserEndEdit(1, 3, L"2")); // δ is read-only
        EXPECT_TRUE(g1.UserClickCheck(1, 2));
        EXPECT_EQ(g1.GetItemText(1, 3), L"1.00");
        EXPECT_FALSE(g1.IsReadOnly(1, 3));
        EXPECT_FALSE(g1.UserEndEdit(1, 3, L"abc"));
        EXPECT_EQ(g1.GetItemText(1, 3), L"1.00");
        EXPECT_TRUE(g1.UserEndEdit(1, 3, L"1.357"));
        EXPECT_EQ(g1.GetItemText(1, 3), L"1.36");
        EXPECT_TRUE(g1.UserClickCheck(1, 2));
        EXPECT_EQ(g1.GetItemText(1, 3), kDelta);
        EXPECT_TRUE(g1.UserClickCheck(1, 2));
        EXPECT_EQ(g1.GetItemText(1, 3), L"1.36");
        // The popup of any check cell: every load case fixed, then every one free again.
        g1.UserPopupCommand(2, 2, 1100);
        EXPECT_TRUE(g1.GetCheck(4, 2));
        EXPECT_EQ(g1.GetItemText(4, 3), L"1.00");
        EXPECT_FALSE(g1.IsCheckCell(3, 2));
        EXPECT_EQ(d.Params().GetSloptItem(1).IsFiksan(), 1);
        g1.UserPopupCommand(4, 2, 1101);
        EXPECT_EQ(g1.GetItemText(1, 3), kDelta);
        EXPECT_EQ(d.Params().GetSloptItem(0).IsFiksan(), 0);
        EXPECT_EQ(d.Params().GetSloptItem(0).GetFaktor(), 1.357); // kept while free
    });
    // Cancelled: the caller's parameters stay as they were.
    EXPECT_EQ(m_params.GetSloptItem(0).GetFaktor(), pre.GetSloptItem(0).GetFaktor());
    EXPECT_EQ(m_params.GetSloptItem(0).IsFiksan(), 0);
}

TEST_F(StabilnostTest, OkRefusesNoCombinationThenACombinationWithoutAVariableLoadThenBadEdits) {
    const int rezultat = Dijalog([&](CDlgKombOptStabilnost& d) {
        CDialogModel& m = d.Dialog();
        CGridModel& g1 = Grid(d, G1);
        CGridModel& g2 = Grid(d, G2);
        // Nothing chosen: refused before anything else, even with every case fixed.
        g1.UserPopupCommand(1, 2, 1100);
        m.UserClick(IDOK);
        // Combinations 1 and 3 chosen with every load case fixed: refused with the first.
        EXPECT_TRUE(g2.UserClickCheck(3, 2));
        EXPECT_TRUE(g2.UserClickCheck(1, 2));
        EXPECT_FALSE(g2.UserClickCheck(2, 2)); // not offered
        m.UserClick(IDOK);
        // S4 free: combination 1 still holds only fixed cases.
        g1.UserClickCheck(4, 2);
        m.UserClick(IDOK);
        EXPECT_FALSE(m.IsEnded());
        // Free S2 as well; then the edits are checked.
        g1.UserClickCheck(2, 2);
        m.UserSetText(INTERVAL, L"0.5");
        m.UserClick(IDOK);
        m.UserSetText(INTERVAL, L"250");
        m.UserSetText(TACNOST, L"2");
        m.UserClick(IDOK);
        EXPECT_FALSE(m.IsEnded());
        m.UserSetText(TACNOST, L"0.01");
        m.UserClick(IDOK);
        EXPECT_EQ(m.GetResult(), IDOK);
    });
    const std::vector<CScriptedRunner::Message>& poruke = m_runner.Messages();
    ASSERT_EQ(poruke.size(), 5u);
    EXPECT_EQ(poruke[0].text,
              L"Za proracun stabilnosti, barem jedna kombinacija opterecenja mora biti izabrana.");
    const CString nepravilna = L"Nepravilna kombinacija. (%d)\r\nKombinacija mora da sadrzi bar "
                               L"jedno opterecenje koje moze da se menja.";
    EXPECT_EQ(poruke[1].text, CString::Formatted(nepravilna.c_str(), 1));
    EXPECT_EQ(poruke[2].text, CString::Formatted(nepravilna.c_str(), 1));
    EXPECT_EQ(poruke[3].text, L"Unesite broj izmedju 1 i 5000.");
    EXPECT_EQ(poruke[4].text, L"Unesite broj izmedju 0.001 i 1.000.");
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(poruke[i].caption, L"Greska");
        EXPECT_EQ(poruke[i].type & 0xF0u, static_cast<unsigned>(CVortaMessageBox::MB_ICONSTOP));
    }

    // The caller's parameters: the edits, the torsion switch passed through, and the distinct
    // stability combinations of 1 (1.35 S1 fixed, S2 by δ) and 3 (S2 - S4, both by δ).
    EXPECT_EQ(rezultat, 1);
    EXPECT_EQ(m_params.GetOpsegZaDelta(), 250.0);
    EXPECT_EQ(m_params.GetTacnostZaDelta(), 0.01);
    EXPECT_EQ(m_params.GetIskljucTorzGreda(), 1);
    EXPECT_EQ(m_params.GetBrojRazlicitihKombinacijaStabilnosti(), 2);
    EXPECT_EQ(m_params.KombinacijaRbrToStabilnostIndex(1), 0);
    EXPECT_EQ(m_params.KombinacijaRbrToStabilnostIndex(4), -1);
    EXPECT_EQ(m_params.GetKritDeltaArray().GetSize(), 2);
}

TEST_F(StabilnostTest, PopupCommandsChooseEveryOfferedCombination) {
    Dijalog([&](CDlgKombOptStabilnost& d) {
        CGridModel& g2 = Grid(d, G2);
        g2.UserPopupCommand(1, 2, 1200);
        for (int r = 1; r <= 4; ++r)
            EXPECT_EQ(g2.GetCheck(r, 2), r != 2) << r;
        // 1 and 4 differ only in coefficients, which δ does not see: they are one.
        EXPECT_EQ(d.Params().GetBrojRazlicitihKombinacijaStabilnosti(), 2);
        g2.UserPopupCommand(3, 2, 1201);
        EXPECT_FALSE(g2.GetCheck(1, 2));
        EXPECT_EQ(d.Params().GetBrojRazlicitihKombinacijaStabilnosti(), 0);
        g2.UserPopupCommand(2, 2, 1200); // not a check cell: no menu there
        EXPECT_FALSE(g2.GetCheck(1, 2));
    });
}
