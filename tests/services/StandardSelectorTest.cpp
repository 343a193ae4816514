// The standard load selector (load input): its list, the choice in it, the refusals while a
// load-input command runs, stepping through it and the update functions of its commands.
#include "RecordingHost.h"

#include "host/OptionInfo.h"

namespace {

class StandardSelectorTest : public ServicesTest {
protected:
    /// Ordinary cases 1 G, 2 Q, 6 W and 7 E (an empty SRSS unit), seismic 3, NDA 4, SRSS 5.
    void Model() {
        m_g = Slucaj(L"G", 1);
        m_q = Slucaj(L"Q", 2);
        Slucaj(L"Sx", 3, Seizmicki);
        Slucaj(L"DDA", 4, Nda);
        Slucaj(L"SRSS", 5, Srss({3}));
        m_w = Slucaj(L"W", 6);
        m_e = Slucaj(L"E", 7, [](CSlucajOpterecenja& s) { s.PostaviSRSS(CLoadCaseUnit()); });
    }
    CId m_g, m_q, m_w, m_e;
};

const std::vector<int> kSviPogledi = {1, 1, 0, 0, 0};

} // namespace

TEST_F(StandardSelectorTest, ListsOrdinaryLoadCasesAtTheirOrdinals) {
    Model();
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Lista(), (std::vector<CString>{L"0. Totalno opterecenje", L"1. G", L"2. Q",
                                                    L"3. ", L"4. ", L"5. ", L"6. W", L"7. E"}));
    // Nothing was selected: position 1 is taken and announced.
    EXPECT_EQ(m_host.Izbor(), 1);
    ASSERT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 1: G"));
    EXPECT_EQ(m_host.m_najave[0].id, m_g);
    EXPECT_EQ(m_host.m_najave[0].anvelopa, 0);

    COpterecenjeApp::UpdateComboStandard(6);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 6: W"));
    EXPECT_EQ(m_host.m_najave.back().id, m_w);

    // -1 keeps the choice by its text, wherever it now stands.
    Slucaj(L"Q2", 8);
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Izbor(), 6);
    EXPECT_EQ(m_host.Lista().size(), 9u);

    CVortaUtils::g_bAktivanSlOptUticajneLinije = true;
    COpterecenjeApp::UpdateComboStandard(0);
    EXPECT_EQ(m_host.m_najave.back().tekst, CString(L"Totalno opterecenje"));
    EXPECT_FALSE(m_host.m_najave.back().id.Valid());
    EXPECT_FALSE(CVortaUtils::g_bAktivanSlOptUticajneLinije);
    // The views are refreshed by the choice, not by the refill.
    EXPECT_TRUE(m_osvezavanja.empty());
}

TEST_F(StandardSelectorTest, ChosenTextThatIsGoneLeavesPositionOne) {
    Model();
    COpterecenjeApp::UpdateComboStandard(2);
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        dynamic_cast<CSlucajOpterecenja*>(bm.GetW(m_q))->SetNaziv(L"Q novo");
        bm.Close();
    }
    m_host.m_najave.clear();
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Izbor(), 1);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 1: G"));
}

TEST_F(StandardSelectorTest, WithoutOrdinaryCasesOnlyTheTotalLoadIsListed) {
    Slucaj(L"Sx", 1, Seizmicki);
    COpterecenjeApp::UpdateComboStandard(-1);
    EXPECT_EQ(m_host.Lista(), (std::vector<CString>{L"0. Totalno opterecenje"}));
    EXPECT_EQ(m_host.Izbor(), -1);
    EXPECT_TRUE(m_host.m_najave.empty());
}

TEST_F(StandardSelectorTest, FromPositionTenOnABlankStaysBeforeTheAnnouncedName) {
    for (int k = 1; k <= 11; ++k)
        Slucaj(CString::Formatted(L"S%d", k), k);
    COpterecenjeApp::UpdateComboStandard(9);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 9: S9"));
    COpterecenjeApp::UpdateComboStandard(10);
    EXPECT_EQ(m_host.Lista()[10], CString(L"10. S10"));
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 10:  S10"));
    // The choice itself names the case by its name.
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 10: S10"));
}

TEST_F(StandardSelectorTest, ChoiceAnnouncesTheCaseAndRefreshesTheViews) {
    Model();
    const CId ul = Slucaj(L"UL", 8, UticajnaLinija);
    COpterecenjeApp::UpdateComboStandard(2);
    m_host.m_najave.clear();

    COpterecenjeApp::OnComboStandard();
    ASSERT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 2: Q"));
    EXPECT_EQ(m_host.m_najave[0].id, m_q);
    EXPECT_EQ(COpterecenjeApp::DajZapamcenuStandardnuPoziciju(), 2);
    EXPECT_EQ(m_osvezavanja, std::vector<std::vector<int>>{kSviPogledi});

    m_host.Combo().SetCurSel(8);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.m_najave.back().id, ul);
    EXPECT_TRUE(CVortaUtils::g_bAktivanSlOptUticajneLinije);

    m_host.Combo().SetCurSel(0);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.m_najave.back().tekst, CString(L"Totalno opterecenje"));
    EXPECT_FALSE(CVortaUtils::g_bAktivanSlOptUticajneLinije);
    EXPECT_EQ(COpterecenjeApp::DajZapamcenuStandardnuPoziciju(), 0);
    EXPECT_EQ(m_osvezavanja.size(), 3u);

    m_host.Combo().SetCurSel(-1);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.m_najave.size(), 3u);
}

TEST_F(StandardSelectorTest, LoadInputRefusesTheInfluenceLineCaseAndTheTotalLoad) {
    Model();
    Slucaj(L"UL", 8, UticajnaLinija);
    COpterecenjeApp::UpdateComboStandard(2);
    COpterecenjeApp::OnComboStandard(); // remembered: 2
    const size_t najava = m_host.m_najave.size();

    CVortaUtils::g_bAktivnaKomandaZaUnosOpterecenja = true;
    m_host.Combo().SetCurSel(8);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.Izbor(), 2);
    m_host.Combo().SetCurSel(0);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.Izbor(), 2);
    EXPECT_EQ(m_host.m_najave.size(), najava);
    EXPECT_EQ(m_osvezavanja.size(), 1u);

    // An ordinary case is still accepted while loads are entered.
    m_host.Combo().SetCurSel(6);
    COpterecenjeApp::OnComboStandard();
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 6: W"));
    EXPECT_EQ(COpterecenjeApp::DajZapamcenuStandardnuPoziciju(), 6);
}

TEST_F(StandardSelectorTest, NextAndPreviousStepThroughTheListWithinItsEnds) {
    Slucaj(L"A", 1);
    Slucaj(L"B", 2);
    COpterecenjeApp::UpdateComboStandard(1);
    COpterecenjeApp::OnSledeciSlOpt();
    EXPECT_EQ(m_host.Izbor(), 2);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 2: B"));
    EXPECT_EQ(m_host.m_nRepaint, 1);
    COpterecenjeApp::OnSledeciSlOpt(); // at the end
    EXPECT_EQ(m_host.Izbor(), 2);
    EXPECT_EQ(m_host.m_nRepaint, 1);

    COpterecenjeApp::OnPrethodniSlOpt();
    COpterecenjeApp::OnPrethodniSlOpt();
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Totalno opterecenje"));
    EXPECT_EQ(COpterecenjeApp::OnPrethodniSlOpt(), 0); // at the start
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(m_host.m_nRepaint, 3);

    EXPECT_EQ(COpterecenjeApp::OnCombo(), 0);
    EXPECT_EQ(m_host.m_nRepaint, 4);
}

TEST_F(StandardSelectorTest, UpdateFunctionsFollowTheHostAndTheSelection) {
    Slucaj(L"A", 1);
    COptionInfo info;
    COpterecenjeApp::UpdateComboStandard(0);
    COpterecenjeApp::UpdatePrevSlOpt(info);
    EXPECT_FALSE(info.IsEnabled());
    COpterecenjeApp::UpdateNextSlOpt(info);
    EXPECT_TRUE(info.IsEnabled());
    m_host.Combo().SetCurSel(1);
    COpterecenjeApp::UpdateNextSlOpt(info);
    EXPECT_FALSE(info.IsEnabled());
    COpterecenjeApp::UpdatePrevSlOpt(info);
    EXPECT_TRUE(info.IsEnabled());
    COpterecenjeApp::UpdateComboCtrl(info);
    EXPECT_TRUE(info.IsEnabled());

    CVortaUtils::g_bDisableComboResults = true;
    COpterecenjeApp::UpdatePrevSlOpt(info);
    EXPECT_FALSE(info.IsEnabled());
    COpterecenjeApp::UpdateComboCtrl(info);
    EXPECT_FALSE(info.IsEnabled());
    m_host.Combo().SetCurSel(0);
    COpterecenjeApp::UpdateNextSlOpt(info);
    EXPECT_FALSE(info.IsEnabled());

    COpterecenjeApp::UpdateEnabled(info);
    EXPECT_TRUE(info.IsEnabled());
    m_host.m_bKomandaAktivna = true;
    COpterecenjeApp::UpdateEnabled(info);
    EXPECT_FALSE(info.IsEnabled());
}

TEST_F(StandardSelectorTest, RefreshEntryFollowsTheHostsMode) {
    Slucaj(L"A", 1);
    COpterecenjeApp::UpdateCombo(1);
    EXPECT_EQ(m_host.Lista().size(), 2u);
    EXPECT_EQ(m_host.Izbor(), 1);
    m_host.m_bRezultati = true;
    COpterecenjeApp::UpdateCombo(1); // results mode: 1 is passed as 0
    EXPECT_EQ(m_host.Lista(), (std::vector<CString>{L"1. A"}));
    EXPECT_EQ(m_host.Izbor(), 0);
    // The host reaches the refresh through its own pointer once the module is set up.
    CMainFrame::UpdateCombo = &COpterecenjeApp::UpdateCombo;
    m_host.m_bRezultati = false;
    CMainFrame::UpdateCombo(0);
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(m_host.Lista().size(), 2u);
}
