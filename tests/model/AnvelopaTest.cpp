// Envelopes: the record, the checksum, the selection text, the generalized load case built
// from it under both theories, deletion with renumbering and the report heading.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/AnvelopaOpterecenja.h"
#include "text/Translator.h"

#include "toler/Toler.h"

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

using namespace loadrec;

namespace {

/// The ordinals whose flags are set, 1-based.
std::vector<int> Selected(const CArray<int>& flags) {
    std::vector<int> ordinals;
    for (int i = 0; i < flags.GetSize(); ++i)
        if (flags[i])
            ordinals.push_back(i + 1);
    return ordinals;
}

class AnvelopaTest : public ModelTest {
protected:
    /// Three load cases and two combinations: 1.35 G + 1.5 P (with a zero W), and G + W.
    void NapraviModel() {
        m_g = AddLoadCase(L"G", 1);
        m_p = AddLoadCase(L"P", 2);
        m_w = AddLoadCase(L"W", 3);
        AddCombination(1, {{m_g, 1.35}, {m_w, 0.0}, {m_p, 1.5}});
        AddCombination(2, {{m_w, 1.0}, {m_g, 1.0}});
    }
    CId m_g, m_p, m_w;
    TeorijaGuard m_guard;
};

} // namespace

TEST_F(AnvelopaTest, RecordIsExactBothWaysAndTheChecksumTakesItsFieldsWithoutTheBase) {
    CAnvelopaOpterecenja anv;
    anv.SetId(CId(7));
    anv.SetAtribut(5);
    anv.SetMod(1);
    anv.SetIzbor(L"1,3-5");
    anv.SetNaziv(L"Teret");
    anv.SetBroj(2);
    const std::vector<uint8_t> golden =
        Bytes().base(7, 5).i32(2).i32(1).str(L"1,3-5").str(L"Teret").i32(2).get();
    EXPECT_EQ(Written(anv), golden);
    EXPECT_EQ(Written(*std::unique_ptr<CObj>(anv.MakeNew())), golden);
    uint32_t c1 = 10, c2 = 20, c3 = 30;
    anv.UpdateCRC(c1, c2, c3);
    EXPECT_EQ(c1, 10u + Bytes().i32(1).str(L"1,3-5").str(L"Teret").i32(2).crc());
    EXPECT_EQ(c2 + c3, 50u);

    Reader r(golden);
    CAnvelopaOpterecenja read;
    ASSERT_EQ(read.FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(Written(read), golden);

    // Version 1 has no mode: it reads as 0 and is written back as version 2.
    Reader r1(Bytes().base(3).i32(1).str(L"2").str(L"").i32(1).get());
    ASSERT_EQ(read.FromFiller(r1.f()), 1);
    EXPECT_EQ(r1->Remaining(), 0u);
    EXPECT_EQ(Written(read), Bytes().base(3).i32(2).i32(0).str(L"2").str(L"").i32(1).get());
}

TEST_F(AnvelopaTest, BadRecordsEndInTheErrorFlag) {
    const std::vector<uint8_t> good = Bytes().base(3).i32(2).i32(0).str(L"1-2").str(L"A").get();
    ExpectVersionError<CAnvelopaOpterecenja>(With32(good, 12, 3), 3, "AnvelopaOpterecenja");
    ExpectVersionError<CAnvelopaOpterecenja>(With32(good, 0, 2), 2, "Obj");
    ExpectDamagedInputFails<CAnvelopaOpterecenja>(Bytes().raw(good).i32(1).get(), {20, 30});
}

TEST_F(AnvelopaTest, SelectionTextsAreParsedStrictly) {
    // Refused: beyond the loads, reversed or empty ranges, zero, stray signs, commas and letters,
    // and numbers too large for an int, which are never wrapped around. Flags set before are
    // cleared.
    CArray<int> flags;
    for (const wchar_t* text :
         {L"7", L"5-3", L"3-3", L"1-2-3", L"0", L"0-2", L"-2", L"-", L"2-", L",1", L"abc",
          L"4294967297", L"1-4294967298", L"99999999999999999999"}) {
        flags.SetSize(2);
        flags[0] = 1;
        EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(text, flags, 6), 0)
            << CString(text).ToUtf8();
        EXPECT_EQ(flags.GetSize(), 6);
        EXPECT_EQ(Selected(flags), std::vector<int>{}) << CString(text).ToUtf8();
    }
    const struct {
        const wchar_t* text;
        int n;
        int result;
        std::vector<int> selected;
    } cases[] = {
        {L"1,3-5", 6, 1, {1, 3, 4, 5}},
        {L"", 0, 1, {}},
        {L"", 5, 1, {}},
        {L"12", 12, 1, {12}},
        {L"3-5", 4, 0, {}},
        {L"1", 0, 0, {}},
        // Leading blanks are allowed, anything after the number is ignored.
        {L" 2 - 4 ", 6, 1, {2, 3, 4}},
        {L"2x", 6, 1, {2}},
        {L"1-3 ,5", 6, 1, {1, 2, 3, 5}},
        // A trailing comma ends the text; an empty item in the middle does not read, and the
        // flags set before an invalid item stay set.
        {L"4,", 6, 1, {4}},
        {L"1,,2", 6, 0, {1}},
        {L"2,x", 6, 0, {2}},
        {L"1-2,9", 6, 0, {1, 2}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(c.text, flags, c.n), c.result)
            << CString(c.text).ToUtf8();
        EXPECT_EQ(flags.GetSize(), c.n);
        EXPECT_EQ(Selected(flags), c.selected) << CString(c.text).ToUtf8();
    }
    // What the translation library writes for a list of ordinals is a valid selection.
    CArray<int> values;
    values.Vector() = {1, 2, 3, 5, 7, 8};
    EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(ClTranslator::IntArray2String(values), flags, 8),
              1);
    EXPECT_EQ(Selected(flags), values.Vector());
    EXPECT_THROW(CAnvelopaOpterecenja::Str2FlagsArray(L"", flags, -1), CInvalidArgException);
}

TEST_F(AnvelopaTest, GeneralizedLoadCaseExpandsCombinationsOnlyUnderSuperposition) {
    CModelGlobals::nTeorija = 1;
    NapraviModel();
    // A member whose load case is gone is left out: combination 3 names no load case.
    const CId gone = AddLoadCase(L"X", 4);
    AddCombination(3, {{gone, 2.0}});
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Delete(gone);
    }
    // Ordinals: loads 1..3, combinations 4..6.
    CAnvelopaOpterecenja anv;
    anv.SetIzbor(L"3,1,4-6");
    CGeneralizedLoadCase glc;
    glc.SetRbrFaze(2);
    glc.AddLoadCaseUnit(Unit({{9, 1.0}}));
    ASSERT_EQ(anv.NapraviGeneralizedLoadcase(glc), 1);
    EXPECT_EQ(glc.GetRbrFaze(), 2);
    EXPECT_EQ(UnitsOf(glc),
              (Units{Unit({}, LCU_ANVELOPA), Unit({{1, 1.0}}, LCU_ANVELOPA),
                     Unit({{3, 1.0}}, LCU_ANVELOPA), Unit({{1, 1.0}, {3, 1.0}}, LCU_ANVELOPA),
                     Unit({{1, 1.35}, {2, 1.5}}, LCU_ANVELOPA)}));
    // An invalid selection (7 is beyond the loads) builds nothing.
    anv.SetIzbor(L"1,7");
    EXPECT_EQ(anv.NapraviGeneralizedLoadcase(glc), 0);
    EXPECT_EQ(glc.GetSize(), 0);

    // Under the other theory a combination stands for itself.
    CModelGlobals::nTeorija = 2;
    AddEnvelope(1, L"5,2", L"K");
    ASSERT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(1, glc), 1);
    EXPECT_EQ(UnitsOf(glc),
              (Units{Unit({{2, 1.0}}, LCU_ANVELOPA), Unit({{5, 1.0}}, LCU_ANVELOPA)}));
    // No envelope 2: the value is emptied and 0 returned; a stale selection is not repaired.
    EXPECT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(2, glc), 0);
    EXPECT_EQ(glc.GetSize(), 0);
    EXPECT_EQ(glc.GetRbrFaze(), 2);
    AddEnvelope(2, L"7", L"Zastarela");
    EXPECT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(2, glc), 0);
}

/// The generalized load case of a selection built literally: for every selected ordinal in
/// turn, a walk of the store and one sorted insertion per unit.
CGeneralizedLoadCase LiteralnaAnvelopa(const CString& izbor) {
    CGeneralizedLoadCase glc;
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    CArray<int> flags;
    if (!CAnvelopaOpterecenja::Str2FlagsArray(
            izbor, flags, nSlOpt + bm.Count(CBaseManager::KombinacijaOpterecenjaType)))
        return glc;
    for (int g = 1; g <= flags.GetSize(); ++g) {
        if (!flags[g - 1])
            continue;
        if (g <= nSlOpt || CModelGlobals::nTeorija != 1) {
            glc.AddLoadCaseUnit(Unit({{g, 1.0}}, LCU_ANVELOPA));
            continue;
        }
        bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto& item = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id))->Item();
            if (item.GetRedniBroj() + nSlOpt != g)
                continue;
            OCArray<CLoadCaseFactor> factors;
            for (int m = 0; m < item.GetBrojOsnOpt(); ++m) {
                double koef = 0.0;
                CId slOpt;
                item.GetOsnOptByIndex(m, koef, slOpt);
                const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(slOpt));
                if (CToler::Razliciti(koef, 0.0) && p != nullptr)
                    factors.Add(CLoadCaseFactor(p->DajRedniBroj(), koef));
            }
            CLoadCaseUnit unit;
            unit.Set(factors, LCU_ANVELOPA);
            glc.AddLoadCaseUnit(unit);
        }
    }
    return glc;
}

TEST_F(AnvelopaTest, GeneralizedLoadCaseIsTheLiteralInsertionOfItsUnits) {
    // Small random models whose combinations repeat each other, their ordinals and the load
    // cases' units (ties), with coefficients equal, apart, and within the tolerance.
    std::mt19937 rng(7);
    const double koef[] = {1.0, 1.35, 1.5, 0.0, -1.0, 1.35 + 1e-12, 1.5 + 4e-10, 1.5 + 9e-10};
    for (int round = 0; round < 40; ++round) {
        m_base = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(m_base.get());
        const int nSlOpt = 1 + static_cast<int>(rng() % 6);
        std::vector<CId> slucajevi;
        for (int k = 1; k <= nSlOpt; ++k)
            slucajevi.push_back(AddLoadCase(L"S", k));
        const int nKomb = static_cast<int>(rng() % 30);
        const bool bSlicni = round % 2 == 0; // only the first two coefficients
        for (int j = 1; j <= nKomb; ++j) {
            auto* p = new CKombinacijaOpterecenja;
            // Repeated ordinals now and then: several combinations stand for one load.
            p->Item().SetRedniBroj(rng() % 5 == 0 ? 1 + static_cast<int>(rng() % nKomb) : j);
            std::vector<CId> clanovi = slucajevi;
            std::shuffle(clanovi.begin(), clanovi.end(), rng);
            clanovi.resize(1 + rng() % clanovi.size());
            for (const CId& id : clanovi)
                p->Item().DodajOsnOpt(koef[rng() % (bSlicni ? 2 : std::size(koef))], id);
            Insert(p);
        }
        const int n = nSlOpt + nKomb;
        const CString izbor = rng() % 3 == 0 ? CString::Formatted(L"1-%d", std::max(n, 2))
                                             : CString::Formatted(L"%d", 1 + rng() % n);
        for (const int teorija : {1, 2}) {
            CModelGlobals::nTeorija = teorija;
            CAnvelopaOpterecenja anv;
            anv.SetIzbor(izbor);
            CGeneralizedLoadCase glc;
            const CGeneralizedLoadCase literal = LiteralnaAnvelopa(izbor);
            const int ok = anv.NapraviGeneralizedLoadcase(glc);
            ASSERT_EQ(ok != 0, n >= 2 || izbor == L"1") << round;
            ASSERT_EQ(glc.GetSize(), literal.GetSize()) << round;
            for (int i = 0; i < glc.GetSize(); ++i) {
                EXPECT_EQ(glc.GetLoadCaseUnit(i), literal.GetLoadCaseUnit(i)) << round << " " << i;
                // Told apart by the exact values, not only within the tolerance.
                EXPECT_EQ(PairsOf(&glc.GetLoadCaseUnit(i)), PairsOf(&literal.GetLoadCaseUnit(i)));
            }
        }
    }
}

TEST_F(AnvelopaTest, DeletingAnEnvelopeClosesTheGapInOneUndoStep) {
    AddEnvelope(3, L"1", L"C");
    AddEnvelope(1, L"1", L"A");
    AddEnvelope(2, L"1", L"B");
    using Rows = std::vector<std::pair<int, CString>>;
    const auto envelopes = [&] {
        Rows out;
        for (const CId& id : m_base->Ids(CBaseManager::AnvelopaOpterecenjaType))
            out.emplace_back(Get<CAnvelopaOpterecenja>(id)->GetBroj(),
                             Get<CAnvelopaOpterecenja>(id)->GetNaziv());
        return out;
    };
    CAnvelopaOpterecenja::BrisiAnvelopu(2);
    EXPECT_EQ(envelopes(), (Rows{{2, L"C"}, {1, L"A"}}));
    CAnvelopaOpterecenja::BrisiAnvelopu(1);
    EXPECT_EQ(envelopes(), (Rows{{1, L"C"}}));
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(envelopes(), (Rows{{2, L"C"}, {1, L"A"}}));
}

TEST_F(AnvelopaTest, ReportHeadingNamesTheFirstEnvelopeThatEqualsTheLoad) {
    CModelGlobals::nTeorija = 1;
    NapraviModel();
    AddEnvelope(1, L"3", L"Vetar");
    AddEnvelope(2, L"1-2,4", L"Prva");
    AddEnvelope(3, L"4,1,2", L"Druga");
    AddEnvelope(4, L"9", L"Pokvarena");
    CGeneralizedLoadCase glc;
    ASSERT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(3, glc), 1);
    EXPECT_EQ(CAnvelopaOpterecenja::DajIspisZaIzvestaj(glc),
              L"Dimenzionisanje grupe slucajeva opterecenja: 1-2,4 (Prva)");

    // Another phase, or a selection no envelope has, names no envelope.
    glc.SetRbrFaze(2);
    EXPECT_EQ(CAnvelopaOpterecenja::DajIspisZaIzvestaj(glc),
              L"Dimenzionisanje grupe slucajeva opterecenja: 1-2,4");
    CGeneralizedLoadCase other;
    other.AddLoadCaseUnit(Unit({{2, 1.0}}, LCU_ANVELOPA));
    // The caption follows the language.
    ClTranslator::AddTranslation(ClTranslator::Engleski,
                                 L"Dimenzionisanje grupe slucajeva opterecenja",
                                 L"Design of a group of load cases");
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    const CString english = CAnvelopaOpterecenja::DajIspisZaIzvestaj(other);
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();
    EXPECT_EQ(english, L"Design of a group of load cases: 2");
}
