// The model-wide operations on load cases: every ordinal that refers to a load case follows a
// move, a deletion takes its combinations, SRSS cases and emptied envelopes along, a copy asks
// the host for its individual loads, and each is one undo step that brings the model back.
#include "RecordingHost.h"

#include "services/Anvelope.h"
#include "services/SlucajeviOpterecenja.h"

#include <gtest/gtest.h>

namespace {

using opterecenje::CSlucajListe;

class SlucajeviTest : public ServicesTest {
protected:
    /// S1..S5 (S4, S5 seismic), Sx = SRSS of S4 and 0.5 x S5 (ordinal 6); combinations
    /// K1 = 1.35 S1 + 1.5 S2, K2 = S2 + S3, K3 = S1 + Sx (all named generically) and
    /// "Moja" = S3; envelopes 1-3, 7-10, 8 and 2,9; tones 1 and 2 for S4 and S5.
    void SetUp() override {
        ServicesTest::SetUp();
        for (int k = 1; k <= 5; ++k)
            m_s.push_back(Slucaj(CString::Formatted(L"S%d", k), k, k >= 4 ? Seizmicki : nullptr));
        m_s.push_back(Slucaj(L"Sx", 6, [](CSlucajOpterecenja& s) {
            s.PostaviSRSS(Unit({{4, 1.0}, {5, 0.25}}));
        }));
        m_k.push_back(AddGenerated(1, {{m_s[0], 1.35}, {m_s[1], 1.5}}));
        m_k.push_back(AddGenerated(2, {{m_s[1], 1.0}, {m_s[2], 1.0}}));
        m_k.push_back(AddGenerated(3, {{m_s[0], 1.0}, {m_s[5], 1.0}}));
        m_k.push_back(AddCombination(4, {{m_s[2], 1.0}}, L"Moja"));
        for (const wchar_t* izbor : {L"1-3", L"7-10", L"8", L"2,9"})
            AddEnvelope(m_base->Count(CAnvelopaOpterecenja::Type) + 1, izbor);
        CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(4, 1);
        CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(5, 2);
    }
    void TearDown() override {
        COpterecenjeApp::KopirajPojedinacnaOpterecenja = nullptr;
        ServicesTest::TearDown();
    }

    int RedniBroj(const CId& id) const { return Get<CSlucajOpterecenja>(id)->DajRedniBroj(); }
    std::vector<std::pair<int, double>> Srss(const CId& id) const {
        return ParoviJedinice(Get<CSlucajOpterecenja>(id)->DajLCUnitZaSRSS());
    }
    std::vector<CString> Anvelope() const {
        std::vector<CString> izbori;
        for (const opterecenje::CAnvelopaListe& a : opterecenje::DajAnvelope())
            izbori.push_back(a.izbor);
        return izbori;
    }
    /// Applies an operation and checks that one undo brings the model back byte for byte.
    template <class F> void JedanKorakUnazad(F&& operacija) {
        const std::vector<uint8_t> pre = Bajtovi();
        const int koraka = m_base->GetUndoCount();
        operacija();
        EXPECT_EQ(m_base->GetUndoCount(), koraka + 1);
        m_posle = Bajtovi();
        ASSERT_TRUE(m_base->Undo());
        EXPECT_EQ(Bajtovi(), pre);
        ASSERT_TRUE(m_base->Redo());
        EXPECT_EQ(Bajtovi(), m_posle);
    }

    std::vector<CId> m_s;
    std::vector<CId> m_k;
    std::vector<uint8_t> m_posle;
};

using Faktori = std::vector<std::pair<int, double>>;
using Nazivi = std::vector<CString>;

} // namespace

TEST_F(SlucajeviTest, MovingALoadCaseRewritesEveryOrdinalThatRefersToALoadCase) {
    // S1 to the third place: S2, S3, S1.
    JedanKorakUnazad([&] { EXPECT_TRUE(opterecenje::PremestiSlucajOpterecenja(m_s[0], 3)); });
    EXPECT_EQ(RedniBroj(m_s[1]), 1);
    EXPECT_EQ(RedniBroj(m_s[2]), 2);
    EXPECT_EQ(RedniBroj(m_s[0]), 3);
    EXPECT_EQ(CombinationNames(), (Nazivi{L"1.50xI+1.35xIII", L"I+II", L"III+VI", L"Moja"}));
    // The same loads under other numbers keep their text; 2 is now 1.
    EXPECT_EQ(Anvelope(), (Nazivi{L"1-3", L"7-10", L"8", L"1,9"}));
    EXPECT_EQ(Srss(m_s[5]), (Faktori{{4, 1.0}, {5, 0.25}}));

    // The two seismic cases trade places: the SRSS unit, the tones and the names follow.
    JedanKorakUnazad([&] { EXPECT_TRUE(opterecenje::PremestiSlucajOpterecenja(m_s[4], 4)); });
    EXPECT_EQ(Srss(m_s[5]), (Faktori{{4, 0.25}, {5, 1.0}}));
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(5), 1);
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(4), 2);

    // An ordinary case cannot go among the SRSS cases, nor an SRSS case before them.
    const int koraka = m_base->GetUndoCount();
    EXPECT_FALSE(opterecenje::PremestiSlucajOpterecenja(m_s[0], 6));
    EXPECT_FALSE(opterecenje::PremestiSlucajOpterecenja(m_s[5], 5));
    EXPECT_FALSE(opterecenje::PremestiSlucajOpterecenja(CId(999), 1));
    // Writing the list back as it stands changes nothing and makes no undo step.
    EXPECT_FALSE(opterecenje::PrimeniSlucajeveOpterecenja(opterecenje::DajSlucajeveOpterecenja()));
    EXPECT_EQ(m_base->GetUndoCount(), koraka);
}

TEST_F(SlucajeviTest, DeletingALoadCaseTakesItsCombinationsAndEmptiedEnvelopesAlong) {
    const opterecenje::CPosledice posledice = opterecenje::PosledicaBrisanja({m_s[1]});
    EXPECT_TRUE(posledice.srss.empty());
    EXPECT_EQ(posledice.nKombinacija, 2);
    EXPECT_EQ(posledice.nAnvelopa, 1);

    JedanKorakUnazad([&] { EXPECT_TRUE(opterecenje::BrisiSlucajOpterecenja(m_s[1])); });
    EXPECT_EQ(m_base->Find(m_s[1]), nullptr);
    EXPECT_EQ(RedniBroj(m_s[2]), 2);
    EXPECT_EQ(RedniBroj(m_s[5]), 5);
    EXPECT_EQ(CombinationNames(), (Nazivi{L"I+V", L"Moja"}));
    EXPECT_EQ(Srss(m_s[5]), (Faktori{{3, 1.0}, {4, 0.25}}));
    // Envelopes follow the scale: cases 1..5, combinations 6..7; "8" lost everything.
    EXPECT_EQ(Anvelope(), (Nazivi{L"1-2", L"6-7", L"6"}));
    std::vector<int> brojevi;
    for (const CId& id : m_base->Ids(CAnvelopaOpterecenja::Type))
        brojevi.push_back(Get<CAnvelopaOpterecenja>(id)->GetBroj());
    std::sort(brojevi.begin(), brojevi.end());
    EXPECT_EQ(brojevi, (std::vector<int>{1, 2, 3}));
}

TEST_F(SlucajeviTest, DeletingACaseThatAnSrssCaseCombinesDeletesTheSrssCaseWithItsCombinations) {
    const opterecenje::CPosledice posledice = opterecenje::PosledicaBrisanja({m_s[3]});
    EXPECT_EQ(posledice.srss, std::vector<CId>{m_s[5]});
    EXPECT_EQ(posledice.nKombinacija, 1);

    JedanKorakUnazad([&] { EXPECT_TRUE(opterecenje::BrisiSlucajOpterecenja(m_s[3])); });
    EXPECT_EQ(m_base->Find(m_s[5]), nullptr);
    EXPECT_EQ(m_base->Count(CSlucajOpterecenja::Type), 4);
    EXPECT_EQ(RedniBroj(m_s[4]), 4);
    EXPECT_EQ(CombinationNames(), (Nazivi{L"1.35xI+1.50xII", L"II+III", L"Moja"}));
    EXPECT_EQ(Anvelope(), (Nazivi{L"1-3", L"5-7", L"6", L"2"}));
}

TEST_F(SlucajeviTest, ACopyFollowsItsCaseWithItsDataAndTheHostCopiesItsLoads) {
    static std::vector<std::pair<CId, CId>> kopirano;
    kopirano.clear();
    COpterecenjeApp::KopirajPojedinacnaOpterecenja = [](const CId& izvor, const CId& kopija) {
        kopirano.emplace_back(izvor, kopija);
    };
    Change<CSlucajOpterecenja>(m_s[0], [](CSlucajOpterecenja& s) {
        s.SetKoeficijent(1.35);
        s.SetgMarker(1);
    });
    CId kopija;
    JedanKorakUnazad([&] { kopija = opterecenje::KopirajSlucajOpterecenja(m_s[0], L"S1 kopija"); });
    ASSERT_TRUE(kopija.Valid());
    ASSERT_EQ(kopirano.size(), 1u); // within the step: undo and redo take the loads along
    EXPECT_EQ(kopirano[0], std::make_pair(m_s[0], kopija));
    const CSlucajOpterecenja* p = Get<CSlucajOpterecenja>(kopija);
    EXPECT_EQ(p->GetNaziv(), L"S1 kopija");
    EXPECT_EQ(p->DajRedniBroj(), 2);
    EXPECT_EQ(p->GetKoeficijent(), 1.35);
    EXPECT_EQ(p->GetgMarker(), 1);
    EXPECT_EQ(RedniBroj(m_s[1]), 3);
    EXPECT_EQ(CombinationNames(), (Nazivi{L"1.35xI+1.50xIII", L"III+IV", L"I+VII", L"Moja"}));
    EXPECT_EQ(Srss(m_s[5]), (Faktori{{5, 1.0}, {6, 0.25}}));
    EXPECT_EQ(Anvelope(), (Nazivi{L"1,3-4", L"8-11", L"9", L"3,10"}));

    // A copy of the SRSS case goes last with the same combination of load cases.
    const CId srss = opterecenje::KopirajSlucajOpterecenja(m_s[5], L"Sy");
    EXPECT_EQ(RedniBroj(srss), 8);
    EXPECT_EQ(Srss(srss), (Faktori{{5, 1.0}, {6, 0.25}}));
    EXPECT_FALSE(opterecenje::KopirajSlucajOpterecenja(CId(999), L"x").Valid());
}

TEST_F(SlucajeviTest, AListWrittenBackNumbersCasesInItsOrderAndTakesTheValuesOfEachEntry) {
    std::vector<CSlucajListe> lista = opterecenje::DajSlucajeveOpterecenja();
    ASSERT_EQ(lista.size(), 6u);
    EXPECT_TRUE(lista[5].JeSRSS());
    EXPECT_EQ(lista[3].nSeizmicki, 1);
    // A new case between S3 and S4, S1 renamed and marked NDA, S2 gone.
    CSlucajListe novi;
    novi.item.m_strNaziv = L"Novi";
    novi.item.m_dKoeficijent = 1.5;
    novi.nBrojMultimodalnih = 3;
    lista.insert(lista.begin() + 3, novi);
    lista[0].item.m_strNaziv = L"Prvi";
    lista[0].nNDA = 1;
    lista.erase(lista.begin() + 1);
    std::vector<CId> idovi;
    JedanKorakUnazad([&] { EXPECT_TRUE(opterecenje::PrimeniSlucajeveOpterecenja(lista, &idovi)); });
    ASSERT_EQ(idovi.size(), 6u);
    EXPECT_EQ(idovi[0], m_s[0]);
    const CSlucajOpterecenja* p = Get<CSlucajOpterecenja>(idovi[2]);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->GetNaziv(), L"Novi");
    EXPECT_EQ(p->DajRedniBroj(), 3);
    EXPECT_EQ(p->GetBrojMultimodalnih(), 3);
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[0])->GetNaziv(), L"Prvi");
    EXPECT_EQ(Get<CSlucajOpterecenja>(m_s[0])->JeLiNDA(), 1);
    EXPECT_EQ(Srss(m_s[5]), (Faktori{{4, 1.0}, {5, 0.25}}));
    EXPECT_EQ(CombinationNames(), (Nazivi{L"I+VI", L"Moja"}));
}
