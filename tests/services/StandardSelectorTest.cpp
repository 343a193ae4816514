// The standard load selector (load input): its list, the choice in it, the refusals while a
// load-input command runs, and stepping through it.
#include "RecordingHost.h"

#include "host/OptionInfo.h"

namespace {

class StandardSelectorTest : public ServicesTest {
protected:
    /// Ordinary cases 1 G, 2 Q, 6 W and 7 E (an empty SRSS unit), seismic 3, NDA 4, SRSS 5,
    /// and the influence-line case 8.
    void Model() {
        m_g = Slucaj(L"G", 1);
        m_q = Slucaj(L"Q", 2);
        Slucaj(L"Sx", 3, Seizmicki);
        Slucaj(L"DDA", 4, Nda);
        Slucaj(L"SRSS", 5, Srss({3}));
        m_w = Slucaj(L"W", 6);
        Slucaj(L"E", 7, [](CSlucajOpterecenja& s) { s.PostaviSRSS(CLoadCaseUnit()); });
        m_ul = Slucaj(L"UL", 8, UticajnaLinija);
    }
    void Izaberi(int pozicija) {
        m_host.Combo().SetCurSel(pozicija);
        COpterecenjeApp::OnComboStandard();
    }
    CId m_g, m_q, m_w, m_ul;
};

} // namespace

TEST_F(StandardSelectorTest, ListsOrdinaryLoadCasesAtTheirOrdinalsAndKeepsTheChoiceByText) {
    Model();
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Lista(),
              (std::vector<CString>{L"0. Totalno opterecenje", L"1. G", L"2. Q", L"3. ", L"4. ",
                                    L"5. ", L"6. W", L"7. E", L"8. UL"}));
    // Nothing was selected: position 1 is taken and announced.
    EXPECT_EQ(m_host.Izbor(), 1);
    ASSERT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 1: G"));
    EXPECT_EQ(m_host.m_najave[0].id, m_g);
    EXPECT_EQ(m_host.m_najave[0].anvelopa, 0);
    COpterecenjeApp::UpdateComboStandard(6);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 6: W"));
    EXPECT_EQ(m_host.m_najave.back().id, m_w);

    // -1 keeps the choice by its text, wherever it now stands; a text that is gone leaves
    // position 1.
    Slucaj(L"W2", 9);
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Izbor(), 6);
    EXPECT_EQ(m_host.Lista().size(), 10u);
    Change<CSlucajOpterecenja>(m_w, [](CSlucajOpterecenja& s) { s.SetNaziv(L"W novo"); });
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Izbor(), 1);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 1: G"));

    CVortaUtils::g_bAktivanSlOptUticajneLinije = true;
    COpterecenjeApp::UpdateComboStandard(0);
    EXPECT_EQ(m_host.m_najave.back().tekst, CString(L"Totalno opterecenje"));
    EXPECT_FALSE(m_host.m_najave.back().id.Valid());
    EXPECT_FALSE(CVortaUtils::g_bAktivanSlOptUticajneLinije);
    // The views are refreshed by the choice, not by the refill.
    EXPECT_TRUE(m_osvezavanja.empty());
}

TEST_F(StandardSelectorTest, WithoutOrdinaryCasesOnlyTheTotalLoadIsListed) {
    Slucaj(L"Sx", 1, Seizmicki);
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Lista(), (std::vector<CString>{L"0. Totalno opterecenje"}));
    EXPECT_EQ(m_host.Izbor(), -1);
    EXPECT_TRUE(m_host.m_najave.empty());
}

TEST_F(StandardSelectorTest, ChoiceAnnouncesRefreshesAndIsRefusedWhileLoadsAreEntered) {
    Model();
    Slucaj(L"S10", 10);
    COpterecenjeApp::UpdateComboStandard(10);
    EXPECT_EQ(m_host.Lista()[10], CString(L"10. S10"));
    // From position 10 on, the refill announces a blank before the name; the choice does not.
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 10:  S10"));
    m_host.m_najave.clear();
    // A load-input command refuses the influence-line case and the total load silently, and
    // the selector goes back to the position accepted last.
    struct Korak {
        bool komanda;
        int pozicija;
        int izbor;
        const wchar_t* najava; // the last announcement
        int zapamcena;
        size_t osvezavanja;
    };
    const Korak koraci[] = {
        {false, 10, 10, L"Opterecenje 10: S10", 10, 1}, {false, 2, 2, L"Opterecenje 2: Q", 2, 2},
        {false, -1, -1, L"Opterecenje 2: Q", 2, 2}, // nothing chosen: nothing happens
        {true, 8, 2, L"Opterecenje 2: Q", 2, 2},        {true, 0, 2, L"Opterecenje 2: Q", 2, 2},
        {true, 6, 6, L"Opterecenje 6: W", 6, 3},        {false, 8, 8, L"Opterecenje 8: UL", 8, 4},
        {false, 0, 0, L"Totalno opterecenje", 0, 5},
    };
    for (const Korak& k : koraci) {
        SCOPED_TRACE(k.pozicija);
        CVortaUtils::g_bAktivnaKomandaZaUnosOpterecenja = k.komanda;
        Izaberi(k.pozicija);
        EXPECT_EQ(m_host.Izbor(), k.izbor);
        EXPECT_EQ(m_host.PoslednjaNajava(), CString(k.najava));
        EXPECT_EQ(COpterecenjeApp::DajZapamcenuStandardnuPoziciju(), k.zapamcena);
        EXPECT_EQ(m_osvezavanja.size(), k.osvezavanja);
        // Only the influence-line case turns the influence-line display on.
        EXPECT_EQ(CVortaUtils::g_bAktivanSlOptUticajneLinije, k.izbor == 8);
    }
    EXPECT_EQ(m_host.m_najave.size(), 5u);
    EXPECT_EQ(m_osvezavanja.back(), (std::vector<int>{1, 1, 0, 0, 0}));
    EXPECT_TRUE(m_poruke.empty());
}

TEST_F(StandardSelectorTest, NextAndPreviousStepWithinTheEnds) {
    Model();
    COptionInfo prev, next;
    // Position, then the command: the position after it, the repaints so far, and whether
    // the commands are enabled there.
    const std::tuple<int, int (*)(), int, int, bool, bool> koraci[] = {
        {7, &COpterecenjeApp::OnSledeciSlOpt, 8, 1, true, false},
        {8, &COpterecenjeApp::OnSledeciSlOpt, 8, 1, true, false}, // at the end
        {1, &COpterecenjeApp::OnPrethodniSlOpt, 0, 2, false, true},
        {0, &COpterecenjeApp::OnPrethodniSlOpt, 0, 2, false, true}, // at the start
        {6, &COpterecenjeApp::OnCombo, 6, 3, true, true}};
    for (const auto& [pozicija, komanda, posle, repaint, imaPrethodni, imaSledeci] : koraci) {
        COpterecenjeApp::UpdateComboStandard(pozicija);
        EXPECT_EQ(komanda(), 0);
        EXPECT_EQ(m_host.Izbor(), posle);
        EXPECT_EQ(m_host.m_nRepaint, repaint);
        COpterecenjeApp::UpdatePrevSlOpt(prev);
        COpterecenjeApp::UpdateNextSlOpt(next);
        EXPECT_EQ(prev.IsEnabled(), imaPrethodni) << pozicija;
        EXPECT_EQ(next.IsEnabled(), imaSledeci) << pozicija;
    }
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 6: W"));
    // The host can switch the selector off, and commands wait while another one runs.
    CVortaUtils::g_bDisableComboResults = true;
    COpterecenjeApp::UpdateNextSlOpt(next);
    COpterecenjeApp::UpdateComboCtrl(prev);
    EXPECT_FALSE(next.IsEnabled() || prev.IsEnabled());
    m_host.m_bKomandaAktivna = true;
    COpterecenjeApp::UpdateEnabled(next);
    EXPECT_FALSE(next.IsEnabled());
}

TEST_F(StandardSelectorTest, RefreshEntryFollowsTheHostsMode) {
    Model();
    COpterecenjeApp::UpdateCombo(1);
    EXPECT_EQ(m_host.Lista().size(), 9u);
    EXPECT_EQ(m_host.Izbor(), 1);
    m_host.m_bRezultati = true;
    COpterecenjeApp::UpdateCombo(1); // results mode: 1 is passed as 0
    EXPECT_EQ(m_host.Lista().size(), 8u);
    EXPECT_EQ(m_host.Izbor(), 0);
}
