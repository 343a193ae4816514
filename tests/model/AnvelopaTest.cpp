// Envelopes: the record, the checksum, the selection text, the generalized load case built
// from it, deletion with renumbering and the report heading.
#include "ModelFixture.h"

#include "model/AnvelopaOpterecenja.h"
#include "model/ModelGlobals.h"
#include "text/Translator.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Little-endian bytes of a record, written field by field from the record table.
struct Bytes {
    std::vector<uint8_t> b;
    Bytes& I32(int32_t v) {
        for (int k = 0; k < 4; ++k)
            b.push_back(static_cast<uint8_t>(static_cast<uint32_t>(v) >> (8 * k)));
        return *this;
    }
    /// The string record: int32 count of UTF-16 code units, then the units.
    Bytes& Str(const std::u16string& s) {
        I32(static_cast<int32_t>(s.size()));
        for (const char16_t c : s) {
            b.push_back(static_cast<uint8_t>(c & 0xFF));
            b.push_back(static_cast<uint8_t>(c >> 8));
        }
        return *this;
    }
};

std::vector<uint8_t> Written(const CFillerUser& value) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    value.ToFiller(f);
    f.Close();
    return f.Buffer();
}

int ReadFrom(CFiller& f, const std::vector<uint8_t>& bytes, CFillerUser& value) {
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    return value.FromFiller(f);
}

/// The ordinals whose flags are set, 1-based.
std::vector<int> Selected(const CArray<int>& flags) {
    std::vector<int> ordinals;
    for (int i = 0; i < flags.GetSize(); ++i)
        if (flags[i])
            ordinals.push_back(i + 1);
    return ordinals;
}

CLoadCaseUnit Unit(std::initializer_list<std::pair<int, double>> pairs, eKarakter karakter) {
    CLoadCaseUnit unit;
    for (const auto& [ordinal, factor] : pairs)
        unit.Factors().Add(CLoadCaseFactor(ordinal, factor));
    unit.SetKarakter(karakter);
    return unit;
}

struct TeorijaGuard {
    int saved = CModelGlobals::nTeorija;
    ~TeorijaGuard() { CModelGlobals::nTeorija = saved; }
};

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
    std::vector<std::pair<int, CString>> Envelopes() const {
        std::vector<std::pair<int, CString>> out;
        for (const CId& id : m_base->Ids(CBaseManager::AnvelopaOpterecenjaType)) {
            const auto* p = Get<CAnvelopaOpterecenja>(id);
            out.emplace_back(p->GetBroj(), p->GetNaziv());
        }
        return out;
    }
    CId m_g, m_p, m_w;
};

TEST_F(AnvelopaTest, RecordVersion2IsWrittenAndReadAsTheTableSays) {
    CAnvelopaOpterecenja anv;
    anv.SetId(CId(7));
    anv.SetAtribut(5);
    anv.SetMod(1);
    anv.SetIzbor(L"1,3-5");
    anv.SetNaziv(L"Teret");
    anv.SetBroj(2);

    Bytes golden;
    golden.I32(1).I32(7).I32(5); // base record
    golden.I32(2).I32(1).Str(u"1,3-5").Str(u"Teret").I32(2);
    EXPECT_EQ(Written(anv), golden.b);

    CAnvelopaOpterecenja read;
    CFiller f;
    ASSERT_EQ(ReadFrom(f, golden.b, read), 1);
    EXPECT_EQ(f.Remaining(), 0u);
    EXPECT_EQ(read.GetId(), CId(7));
    EXPECT_EQ(read.GetAtribut(), 5);
    EXPECT_EQ(read.GetMod(), 1);
    EXPECT_EQ(read.GetIzbor(), L"1,3-5");
    EXPECT_EQ(read.GetNaziv(), L"Teret");
    EXPECT_EQ(read.GetBroj(), 2);
}

TEST_F(AnvelopaTest, RecordVersion1ReadsWithModeZero) {
    Bytes v1;
    v1.I32(1).I32(3).I32(0);
    v1.I32(1).Str(u"2").Str(u"").I32(1);

    CAnvelopaOpterecenja read;
    read.SetMod(1);
    CFiller f;
    ASSERT_EQ(ReadFrom(f, v1.b, read), 1);
    EXPECT_EQ(read.GetMod(), 0);
    EXPECT_EQ(read.GetIzbor(), L"2");
    EXPECT_EQ(read.GetNaziv(), L"");
    EXPECT_EQ(read.GetBroj(), 1);

    Bytes v2;
    v2.I32(1).I32(3).I32(0);
    v2.I32(2).I32(0).Str(u"2").Str(u"").I32(1);
    EXPECT_EQ(Written(read), v2.b);
}

TEST_F(AnvelopaTest, BadRecordsEndInTheErrorFlag) {
    CAnvelopaOpterecenja read;
    CFiller f;
    EXPECT_EQ(ReadFrom(f, Bytes().I32(1).I32(3).I32(0).I32(3).I32(0).b, read), 0);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.GetErrorSource(), "AnvelopaOpterecenja");
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: 3");

    CFiller base;
    EXPECT_EQ(ReadFrom(base, Bytes().I32(2).I32(3).I32(0).I32(2).b, read), 0);
    EXPECT_EQ(base.GetErrorSource(), "Obj");

    // An absurd string length allocates nothing and fails.
    CFiller absurd;
    EXPECT_EQ(ReadFrom(absurd, Bytes().I32(1).I32(3).I32(0).I32(2).I32(0).I32(0x7FFFFFFF).b, read),
              0);
    EXPECT_TRUE(absurd.IsError());

    CAnvelopaOpterecenja anv;
    anv.SetIzbor(L"1-2");
    anv.SetNaziv(L"A");
    anv.SetBroj(1);
    const std::vector<uint8_t> full = Written(anv);
    for (size_t len = 0; len < full.size(); ++len) {
        CAnvelopaOpterecenja part;
        CFiller t;
        EXPECT_EQ(ReadFrom(t, std::vector<uint8_t>(full.begin(), full.begin() + len), part), 0)
            << "length " << len;
        EXPECT_TRUE(t.IsError()) << "length " << len;
    }
}

TEST_F(AnvelopaTest, CopiesCarryTheRecordAndTheCopyConstructorOnlyServesThePool) {
    CAnvelopaOpterecenja anv;
    anv.SetId(CId(4));
    anv.SetMod(1);
    anv.SetIzbor(L"1-2");
    anv.SetNaziv(L"N");
    anv.SetBroj(3);

    std::unique_ptr<CObj> made(anv.MakeNew());
    const auto* copy = dynamic_cast<const CAnvelopaOpterecenja*>(made.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Written(*copy), Written(anv));

    const std::unique_ptr<CAnvelopaOpterecenja> pooled(new CAnvelopaOpterecenja(anv));
    EXPECT_EQ(Written(*pooled), Written(anv));

    CAnvelopaOpterecenja assigned;
    assigned = anv;
    EXPECT_EQ(Written(assigned), Written(anv));

    EXPECT_EXIT(
        {
            CAnvelopaOpterecenja onStack(anv);
            (void)onStack;
        },
        ::testing::ExitedWithCode(0), "this == validAdr");
    EXPECT_NE(ErrorLog().find("ASSERT(this == validAdr)\nFILE: AnvelopaOpterecenja\n"),
              std::string::npos);
}

TEST_F(AnvelopaTest, ChecksumCoversModeSelectionNameAndNumberOnlyInTheFirstSum) {
    CAnvelopaOpterecenja anv;
    anv.SetMod(1);
    anv.SetIzbor(L"1,3");
    anv.SetNaziv(L"Teret");
    anv.SetBroj(2);

    CCrcFiller expected;
    const std::vector<uint8_t> payload = Bytes().I32(1).Str(u"1,3").Str(u"Teret").I32(2).b;
    expected.Write(payload.data(), 1, payload.size());

    uint32_t c1 = 10, c2 = 20, c3 = 30;
    anv.UpdateCRC(c1, c2, c3);
    EXPECT_EQ(c1, 10u + expected.GetCRC());
    EXPECT_EQ(c2, 20u);
    EXPECT_EQ(c3, 30u);

    // The attribute word does not count.
    anv.SetAtribut(9);
    uint32_t d1 = 0, d2 = 0, d3 = 0;
    anv.UpdateCRC(d1, d2, d3);
    EXPECT_EQ(d1, expected.GetCRC());
}

TEST_F(AnvelopaTest, SelectionTextsAreParsedStrictly) {
    CArray<int> flags;
    flags.SetSize(2);
    flags[0] = 7;
    EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(L"1,3-5", flags, 6), 1);
    EXPECT_EQ(flags.GetSize(), 6);
    EXPECT_EQ(Selected(flags), (std::vector<int>{1, 3, 4, 5}));
    EXPECT_EQ(flags[1], 0);

    struct Case {
        const wchar_t* text;
        int n;
        int result;
        std::vector<int> selected;
    };
    const Case cases[] = {
        {L"", 0, 1, {}},
        {L"", 5, 1, {}},
        {L"12", 12, 1, {12}},
        {L"1-6", 6, 1, {1, 2, 3, 4, 5, 6}},
        {L"3-5", 4, 0, {}},
        {L"7", 6, 0, {}},
        {L"1", 0, 0, {}},
        {L"5-3", 6, 0, {}},
        {L"3-3", 6, 0, {}},
        {L"1-2-3", 6, 0, {}},
        {L"0", 6, 0, {}},
        {L"0-2", 6, 0, {}},
        {L"-2", 6, 0, {}},
        {L"-", 6, 0, {}},
        {L"2-", 6, 0, {}},
        {L",1", 6, 0, {}},
        {L"abc", 6, 0, {}},
        // leading blanks are allowed, anything after the number is ignored
        {L" 2", 6, 1, {2}},
        {L"2x", 6, 1, {2}},
        {L" 2 - 4 ", 6, 1, {2, 3, 4}},
        {L"1-3 ,5", 6, 1, {1, 2, 3, 5}},
        // a trailing comma ends the text; an empty item in the middle does not read
        {L"4,", 6, 1, {4}},
        // flags set before the invalid item stay set
        {L"1,,2", 6, 0, {1}},
        {L"2,x", 6, 0, {2}},
        {L"1-2,9", 6, 0, {1, 2}},
        // numbers too large for an int are too large for any model, never wrapped around
        {L"4294967297", 6, 0, {}},
        {L"1-4294967298", 6, 0, {}},
        {L"99999999999999999999", 6, 0, {}},
    };
    for (const Case& c : cases) {
        CArray<int> f;
        EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(c.text, f, c.n), c.result)
            << CString(c.text).ToUtf8();
        EXPECT_EQ(f.GetSize(), c.n);
        EXPECT_EQ(Selected(f), c.selected) << CString(c.text).ToUtf8();
    }

    // What the translation library writes for a list of ordinals is a valid selection.
    CArray<int> values;
    for (int v : {1, 2, 3, 5, 7, 8})
        values.Add(v);
    CArray<int> f;
    EXPECT_EQ(CAnvelopaOpterecenja::Str2FlagsArray(ClTranslator::IntArray2String(values), f, 8), 1);
    EXPECT_EQ(Selected(f), (std::vector<int>{1, 2, 3, 5, 7, 8}));

    EXPECT_THROW(CAnvelopaOpterecenja::Str2FlagsArray(L"", f, -1), CInvalidArgException);
}

TEST_F(AnvelopaTest, GeneralizedLoadCaseUnderSuperpositionExpandsCombinations) {
    TeorijaGuard guard;
    CModelGlobals::nTeorija = 1;
    NapraviModel();
    // A member of combination 2 whose load case is gone is left out.
    const CId gone = AddLoadCase(L"X", 4);
    AddCombination(3, {{gone, 2.0}});
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Delete(gone);
    }
    // combination 3 now names no load case; ordinals: loads 1..3, combinations 4..6

    CAnvelopaOpterecenja anv;
    anv.SetIzbor(L"3,1,4-6");
    CGeneralizedLoadCase glc;
    glc.SetRbrFaze(2);
    glc.AddLoadCaseUnit(Unit({{9, 1.0}}, LCU_LINEARNA));
    ASSERT_EQ(anv.NapraviGeneralizedLoadcase(glc), 1);
    EXPECT_EQ(glc.GetRbrFaze(), 2);
    EXPECT_TRUE(glc.IsAnvelopeType());
    ASSERT_EQ(glc.GetSize(), 5);
    EXPECT_EQ(glc.GetLoadCaseUnit(0), Unit({}, LCU_ANVELOPA));
    EXPECT_EQ(glc.GetLoadCaseUnit(1), Unit({{1, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(glc.GetLoadCaseUnit(2), Unit({{3, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(glc.GetLoadCaseUnit(3), Unit({{1, 1.0}, {3, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(glc.GetLoadCaseUnit(4), Unit({{1, 1.35}, {2, 1.5}}, LCU_ANVELOPA));

    // An invalid selection (7 is beyond the loads) builds nothing.
    anv.SetIzbor(L"1,7");
    EXPECT_EQ(anv.NapraviGeneralizedLoadcase(glc), 0);
    EXPECT_EQ(glc.GetSize(), 0);
}

TEST_F(AnvelopaTest, GeneralizedLoadCaseUnderTheOtherTheoryKeepsCombinationsWhole) {
    TeorijaGuard guard;
    CModelGlobals::nTeorija = 2;
    NapraviModel();
    AddEnvelope(1, L"4", L"K1");
    AddEnvelope(2, L"5,2", L"K2");

    CGeneralizedLoadCase glc;
    ASSERT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(1, glc), 1);
    ASSERT_EQ(glc.GetSize(), 1);
    EXPECT_EQ(glc.GetLoadCaseUnit(0), Unit({{4, 1.0}}, LCU_ANVELOPA));

    ASSERT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(2, glc), 1);
    ASSERT_EQ(glc.GetSize(), 2);
    EXPECT_EQ(glc.GetLoadCaseUnit(0), Unit({{2, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(glc.GetLoadCaseUnit(1), Unit({{5, 1.0}}, LCU_ANVELOPA));

    // No envelope 3: the value is emptied and 0 returned.
    glc.SetRbrFaze(4);
    EXPECT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(3, glc), 0);
    EXPECT_EQ(glc.GetSize(), 0);
    EXPECT_EQ(glc.GetRbrFaze(), 4);

    // A selection gone stale (the model lost a combination) is not repaired.
    AddEnvelope(3, L"6", L"K3");
    EXPECT_EQ(CAnvelopaOpterecenja::GeneralizedLoadcase(3, glc), 0);
}

TEST_F(AnvelopaTest, DeletingAnEnvelopeClosesTheGapInTheNumbering) {
    AddEnvelope(3, L"1", L"C");
    AddEnvelope(1, L"1", L"A");
    AddEnvelope(2, L"1", L"B");
    CAnvelopaOpterecenja::BrisiAnvelopu(2);
    EXPECT_EQ(Envelopes(), (std::vector<std::pair<int, CString>>{{2, L"C"}, {1, L"A"}}));
    CAnvelopaOpterecenja::BrisiAnvelopu(1);
    EXPECT_EQ(Envelopes(), (std::vector<std::pair<int, CString>>{{1, L"C"}}));

    // The deletion is one step that undo takes back whole.
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Envelopes(), (std::vector<std::pair<int, CString>>{{2, L"C"}, {1, L"A"}}));

    EXPECT_EXIT(CAnvelopaOpterecenja::BrisiAnvelopu(5), ::testing::ExitedWithCode(0),
                "idAnv.Valid \\(\\)");
    EXPECT_NE(ErrorLog().find("ASSERT(idAnv.Valid ())\nFILE: AnvelopaOpterecenja\n"),
              std::string::npos);
}

TEST_F(AnvelopaTest, ReportHeadingNamesTheFirstEnvelopeThatEqualsTheLoad) {
    TeorijaGuard guard;
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
    EXPECT_EQ(CAnvelopaOpterecenja::DajIspisZaIzvestaj(other),
              L"Dimenzionisanje grupe slucajeva opterecenja: 2");

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

} // namespace
