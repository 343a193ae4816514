// The results load selector: every load case, combination and envelope with the marks of
// unstable loads and failing envelopes, the choice with its fall-backs, and the refresh.
#include "RecordingHost.h"

#include "model/AnvelopaOpterecenja.h"

namespace {

class ResultsSelectorTest : public ServicesTest {
protected:
    void SetUp() override {
        ServicesTest::SetUp();
        m_host.m_bRezultati = true;
    }
    /// Cases 1 G, 2 Q, 3 Sx (seismic), 4 DDA (NDA); combinations 1 = 1.35 G + 1.5 Q and
    /// 2 = G + Sx; envelopes 1 [Sve] 1-6, 2 [Lose] 1-9 (beyond the loads), 3 unnamed over
    /// combination 1. Case 2 and combination 2 are stored first.
    void Model() {
        m_q = Slucaj(L"Q", 2);
        m_g = Slucaj(L"G", 1);
        m_sx = Slucaj(L"Sx", 3, Seizmicki);
        Slucaj(L"DDA", 4, Nda);
        AddCombination(2, {{m_g, 1.0}, {m_sx, 1.0}}, L"G+Sx");
        m_k1 = AddCombination(1, {{m_g, 1.35}, {m_q, 1.5}}, L"1.35xI+1.50xII");
        m_a1 = AddEnvelope(1, L"1-6", L"Sve");
        AddEnvelope(2, L"1-9", L"Lose");
        m_a3 = AddEnvelope(3, L"5");
        COpterecenjeApp::UpdateComboResults(0);
    }
    /// Load cases A, B and C, and an empty combination.
    void Malo() {
        int rb = 0;
        for (const wchar_t* naziv : {L"A", L"B", L"C"})
            Slucaj(naziv, ++rb);
        AddCombination(1, {});
        COpterecenjeApp::UpdateComboResults(0);
    }
    void Izaberi(int pozicija) {
        m_host.Combo().SetCurSel(pozicija);
        COpterecenjeApp::OnComboResults();
    }
    using Clanovi = std::vector<std::pair<int, double>>;
    /// The first unit of the load made current last.
    Clanovi Tekuca() const { return ParoviJedinice(&m_promene.back().first.GetLoadCaseUnit(0)); }
    CId m_g, m_q, m_sx, m_k1, m_a1, m_a3;
};

const CString kNisuProracunati =
    L"Za izabrani slucaj opterecenja rezultati nisu mogli biti proracunati.";
const CString kAnvelopa = L"Izabrani anvelopski slucaj nije u saglasnosti sa ukupnim brojem "
                          L"slucajeva i kombinacija opterecenja.";

} // namespace

TEST_F(ResultsSelectorTest, ListsEveryLoadOnTheGlobalScaleWithItsMarks) {
    CVortaUtils::s_bLoading = true; // nothing is refilled while a model is loaded
    Model();
    EXPECT_TRUE(m_host.Lista().empty());
    EXPECT_TRUE(COpterecenjeApp::gComboItemArray.IsEmpty());
    CVortaUtils::s_bLoading = false;

    COpterecenjeApp::NapraviImeDDASlOpt = [](CString& naziv) { naziv = L"NDA: " + naziv; };
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(3, 2);
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(5, 7); // the ordinal of no load case
    COpterecenjeApp::UpdateComboResults(0);
    EXPECT_EQ(
        m_host.Lista(),
        (std::vector<CString>{L"1. G", L"2. Q", L"3/2. Sx", L"4. NDA: DDA", L"5. 1.35xI+1.50xII",
                              L"6. G+Sx", L"7. [Sve] 1-6", L"(?) 8. [Lose] 1-9", L"9. [Anv] 5"}));
    // Selected: position 0, the first load case, announced once.
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, m_g);
    COpterecenjeApp::UpdateComboResults(0);
    ASSERT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 1: G"));

    COpterecenjeApp::MarkAsLabilanSlOpt(2);
    COpterecenjeApp::MarkAsLabilanSlOpt(6);
    COpterecenjeApp::UpdateComboResults(4);
    // [Sve] holds case 2; [Lose] fails before anything is marked; the unit of [Anv] stands for
    // combination 1, position 5.
    EXPECT_EQ(m_host.Lista(),
              (std::vector<CString>{L"1. G", L"(!) 2. Q", L"3/2. Sx", L"4. NDA: DDA",
                                    L"5. 1.35xI+1.50xII", L"(!) 6. G+Sx", L"(!) 7. [Sve] 1-6",
                                    L"(?) 8. [Lose] 1-9", L"9. [Anv] 5"}));
    // A combination is not announced by the refill.
    EXPECT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, m_k1);
}

TEST_F(ResultsSelectorTest, EnvelopeMarksAgreeWithThePlainBuildUnderBothTheories) {
    std::vector<CId> s;
    for (int k = 1; k <= 5; ++k)
        s.push_back(Slucaj(CString::Formatted(L"S%d", k), k));
    // Combinations 4 and 1 have the same loads (4 is stored first); 3 is a single whole case.
    AddCombination(4, {{s[0], 1.35}, {s[1], 1.5}});
    AddCombination(1, {{s[1], 1.5}, {s[0], 1.35}, {s[2], 0.0}});
    AddCombination(2, {{s[3], -1.0}, {s[4], 0.5}});
    AddCombination(3, {{s[2], 1.0}});
    // Envelope 1 holds combination 4 alone, so that combination 1 (the same loads, stored
    // later) is numbered once combination 4 has been read.
    const std::vector<CString> izbori = {L"9",   L"6",   L"7",  L"8", L"6-9", L"1,3",
                                         L"2-4", L"3-3", L"10", L"",  L"8,9"};
    for (size_t i = 0; i < izbori.size(); ++i)
        AddEnvelope(static_cast<int>(i) + 1, izbori[i]);
    const std::vector<std::vector<int>> oznake = {{3}, {9}, {2}, {5}, {6, 7}, {0}};
    for (const std::vector<int>& labilni : oznake) {
        for (int teorija : {1, 2}) {
            COpterecenjeApp::SetTeorija(teorija);
            COpterecenjeApp::ResetArrayLabilnihSlOpt();
            for (int rb : labilni)
                COpterecenjeApp::MarkAsLabilanSlOpt(rb);
            COpterecenjeApp::UpdateComboResults(0);
            const auto lista = m_host.Lista();
            ASSERT_EQ(lista.size(), 9u + izbori.size());
            for (size_t i = 0; i < izbori.size(); ++i) {
                CGeneralizedLoadCase glc;
                CString ocekivan;
                if (!CAnvelopaOpterecenja::GeneralizedLoadcase(static_cast<int>(i) + 1, glc))
                    ocekivan = L"(?) ";
                for (int u = 0; u < glc.GetSize() && ocekivan.IsEmpty(); ++u)
                    if (COpterecenjeApp::IsMarkedAsLabilanSlOpt(
                            RedniBrojDoslovno(glc.GetLoadCaseUnit(u))))
                        ocekivan = L"(!) ";
                ocekivan += CString::Formatted(L"%d. [Anv] %ls", static_cast<int>(i) + 10,
                                               izbori[i].c_str());
                EXPECT_EQ(lista[9 + i], ocekivan) << "theory " << teorija;
            }
        }
    }
}

TEST_F(ResultsSelectorTest, RefreshKeepsTheActiveLoadAndDispatchesIt) {
    Model();
    COpterecenjeApp::UpdateComboResults(4); // combination 1
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Izbor(), 4);
    // Dispatched as a choice: announced and made current.
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 5: 1.35xI+1.50xII"));
    ASSERT_EQ(m_promene.size(), 1u);
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, 5);
    // A new load case moves the combination down by one position; it stays chosen.
    Slucaj(L"W", 5);
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Izbor(), 5);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 6: 1.35xI+1.50xII"));

    // The active load is gone: the first item is taken and announced anew, by the choice and
    // by the refill.
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    bm.Delete(m_k1);
    bm.Close();
    m_host.m_najave.clear();
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, m_g);
    ASSERT_EQ(m_host.m_najave.size(), 2u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 1: G"));
    EXPECT_EQ(m_host.m_najave[1].tekst, CString(L"Opterecenje 1: G"));
    // No active item: position 0 without a dispatch.
    COpterecenjeApp::ResetAnvelope();
    const size_t promena = m_promene.size();
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Izbor(), 0);
    EXPECT_EQ(m_promene.size(), promena);
}

TEST_F(ResultsSelectorTest, ChoiceAnnouncesAndMakesEveryKindOfLoadCurrentInThePhase) {
    Model();
    m_host.m_nFaza = 2;
    CVortaUtils::g_bAktivanSlOptUticajneLinije = true;
    Izaberi(6);
    const Najava& n = m_host.m_najave.back();
    EXPECT_EQ(n.tekst, CString(L"Opterecenje 7: [Sve] 1-6"));
    EXPECT_EQ(n.id, m_a1);
    EXPECT_EQ(n.anvelopa, 1);
    EXPECT_FALSE(CVortaUtils::g_bAktivanSlOptUticajneLinije);
    ASSERT_EQ(m_promene.size(), 1u);
    EXPECT_TRUE(m_promene[0].first.IsAnvelopeType());
    EXPECT_EQ(m_promene[0].first.GetSize(), 6);
    EXPECT_EQ(m_host.m_nUpdateUnit, 1);
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, 7);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, m_a1);
    Izaberi(1);
    EXPECT_EQ(m_host.m_najave.back().anvelopa, 0);
    EXPECT_EQ(Tekuca(), (Clanovi{{2, 1.0}}));
    EXPECT_FALSE(m_promene.back().first.IsAnvelopeType());

    // A combination: its cases, sorted, without the zero and the invalid member; under the
    // other theory its own place on the scale.
    CComboItem item;
    item.m_nTip = CComboItem::KOMBINACIJA;
    item.m_nBroj = 3;
    item.m_Id = AddCombination(3, {{m_sx, 0.5}, {m_g, 1.35}, {m_q, 0.0}, {CId(), 2.0}});
    COpterecenjeApp::OnLoadCaseChange(item);
    EXPECT_EQ(Tekuca(), (Clanovi{{1, 1.35}, {3, 0.5}}));
    COpterecenjeApp::SetTeorija(3);
    COpterecenjeApp::OnLoadCaseChange(item);
    EXPECT_EQ(Tekuca(), (Clanovi{{7, 1.0}}));
    for (const auto& [glc, flag] : m_promene) {
        EXPECT_EQ(glc.GetRbrFaze(), 3);
        EXPECT_EQ(flag, 0);
    }
    EXPECT_EQ(m_osvezavanja, std::vector<std::vector<int>>(4, std::vector<int>{1, 1, 0, 0, 0}));
    EXPECT_TRUE(m_poruke.empty());
}

TEST_F(ResultsSelectorTest, UnstableOrFailingChoicesWarnAndFallBack) {
    Model();
    Izaberi(4); // accepted: last good position 5
    COpterecenjeApp::MarkAsLabilanSlOpt(2);
    m_host.m_najave.clear();
    Izaberi(1); // unstable: back to the last good position
    EXPECT_EQ(m_poruke, std::vector<CString>{kNisuProracunati});
    EXPECT_EQ(m_poslednja, std::make_pair(CString(L"Upozorenje"),
                                          static_cast<unsigned>(CVortaMessageBox::MB_OK |
                                                                CVortaMessageBox::MB_ICONWARNING)));
    EXPECT_EQ(m_host.Izbor(), 4);
    ASSERT_EQ(m_host.m_najave.size(), 1u);
    EXPECT_EQ(m_host.m_najave[0].tekst, CString(L"Opterecenje 5: 1.35xI+1.50xII"));
    EXPECT_EQ(m_host.m_nRepaint, 1); // the fall-back runs OnCombo

    Izaberi(7); // [Lose] fails: the highest unmarked position is envelope 3
    EXPECT_EQ(m_poruke.back(), kAnvelopa);
    EXPECT_EQ(m_host.Izbor(), 8);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 9: [Anv] 5"));
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, 9);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, m_a3);

    // The highest unmarked position is a failing envelope itself: refused once.
    Change<CAnvelopaOpterecenja>(m_a3, [](CAnvelopaOpterecenja& a) { a.SetIzbor(L"0"); });
    COpterecenjeApp::UpdateComboResults(0);
    EXPECT_EQ(m_host.Lista()[8], CString(L"(?) 9. [Anv] 0"));
    m_poruke.clear();
    m_host.m_najave.clear();
    m_promene.clear();
    Izaberi(8);
    EXPECT_EQ(m_poruke, std::vector<CString>{kAnvelopa});
    EXPECT_EQ(m_host.Izbor(), -1);
    EXPECT_TRUE(m_host.m_najave.empty());
    EXPECT_TRUE(m_promene.empty());
}

TEST_F(ResultsSelectorTest, UnstableChoiceWithoutAGoodPositionTakesTheHighestUnmarked) {
    Malo();
    COpterecenjeApp::MarkAsLabilanSlOpt(2);
    COpterecenjeApp::MarkAsLabilanSlOpt(4);
    Izaberi(1);
    EXPECT_TRUE(m_poruke.empty()); // silently
    EXPECT_EQ(m_host.Izbor(), 2);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 3: C"));
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, 3);
    // Every position marked: nothing is chosen.
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    for (int rb = 1; rb <= 4; ++rb)
        COpterecenjeApp::MarkAsLabilanSlOpt(rb);
    m_host.m_najave.clear();
    Izaberi(1);
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, -1);
    EXPECT_EQ(m_host.Izbor(), -1);
    EXPECT_TRUE(m_host.m_najave.empty());
    EXPECT_TRUE(m_poruke.empty());
}

TEST_F(ResultsSelectorTest, FallBackChecksEndTheProgramWhenTheFallBackIsMarked) {
    Malo();
    COpterecenjeApp::MarkAsLabilanSlOpt(1);
    // The check tests the truth value of "gnLastGoodStabile != -1", i.e. position 1.
    EXPECT_EXIT(Izaberi(0), ::testing::ExitedWithCode(0),
                "!IsMarkedAsLabilanSlOpt \\(COpterecenjeApp::gnLastGoodStabile != -1\\)\\)\n"
                "\\[OpterecenjeSelectors : ");
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    Izaberi(0); // accepted: last good position 1
    for (int rb = 1; rb <= 4; ++rb)
        COpterecenjeApp::MarkAsLabilanSlOpt(rb);
    EXPECT_EXIT(Izaberi(1), ::testing::ExitedWithCode(0),
                "!IsMarkedAsLabilanSlOpt \\(COpterecenjeApp::gnLastGoodStabile\\)");
}

TEST_F(ResultsSelectorTest, EnvelopeOfUnstableLoadsFallsBackToTheLastGoodPosition) {
    // Combination 1 is case A taken whole: under superposition the envelope's unit stands for
    // case A, under the other theory for the combination's own results.
    const CId a = Slucaj(L"A", 1);
    Slucaj(L"B", 2);
    AddCombination(1, {{a, 1.0}}, L"K");
    AddEnvelope(1, L"3", L"E");
    COpterecenjeApp::UpdateComboResults(0);
    Izaberi(1);
    COpterecenjeApp::MarkAsLabilanSlOpt(1);
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Lista()[3], CString(L"(!) 4. [E] 3"));
    m_host.m_najave.clear();
    Izaberi(3);
    EXPECT_EQ(m_poruke, std::vector<CString>{kNisuProracunati});
    EXPECT_EQ(m_host.Izbor(), 1);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 2: B"));
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_nBroj, 2);

    COpterecenjeApp::SetTeorija(2);
    COpterecenjeApp::UpdateComboResults(-1);
    EXPECT_EQ(m_host.Lista()[3], CString(L"4. [E] 3"));
    m_poruke.clear();
    Izaberi(3);
    EXPECT_TRUE(m_poruke.empty());
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, 4);
    EXPECT_EQ(m_host.m_najave.back().anvelopa, 1);
}

TEST_F(ResultsSelectorTest, UnknownItemsMissingEnvelopesAndNoHostFunctionEndTheProgram) {
    Model();
    CComboItem item;
    item.m_nTip = 3;
    EXPECT_EXIT(COpterecenjeApp::OnLoadCaseChange(item), ::testing::ExitedWithCode(0),
                "Nedozvoljen tip combo item-a\\.");
    EXPECT_NE(ErrorLog().find("##### BEGINING OF STACK DUMP\n"), std::string::npos);
    EXPECT_NE(
        ErrorLog().find("ASSERT(Nedozvoljen tip combo item-a.)\nFILE: OpterecenjeSelectors\n"),
        std::string::npos);
    item.m_nTip = CComboItem::ANVELOPA;
    item.m_nBroj = 7;
    EXPECT_EXIT(COpterecenjeApp::OnLoadCaseChange(item), ::testing::ExitedWithCode(0),
                "ASSERT\\(bRet\\)");
    COpterecenjeApp::ChangeLoadCaseTo = nullptr;
    EXPECT_EXIT(Izaberi(0), ::testing::ExitedWithCode(0),
                "ASSERT\\(COpterecenjeApp::ChangeLoadCaseTo\\)");
}
