// The load case object: its values, SRSS unit, copies, checksums and the class-wide services
// over the load cases of a model.
#include "model/SlucajOpterecenja.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using loadrec::Bytes;
using loadrec::CaseRecord;
using loadrec::Pairs;
using loadrec::Reader;
using loadrec::Written;

namespace {

CLoadCaseUnit Unit(const Pairs& pairs, eKarakter karakter = LCU_LINEARNA) {
    CLoadCaseUnit unit;
    unit.SetKarakter(karakter);
    for (const auto& [k, f] : pairs)
        unit.Factors().Add(CLoadCaseFactor(k, f));
    return unit;
}

OCArray<CId> Ids(std::initializer_list<int32_t> values) {
    OCArray<CId> ids;
    for (const int32_t v : values)
        ids.Add(CId(v));
    return ids;
}

/// A load case with every field set to something other than its default.
void FillAll(CSlucajOpterecenja& s) {
    s.SetId(CId(5));
    s.SetAtribut(6);
    s.SetNaziv(L"G1");
    s.SetgMarker(1);
    s.SetKoeficijent(1.5);
    s.SetStalno(1);
    s.SetAlternativno(1);
    s.SetNeKombinujSa(Ids({7, 8}));
    s.SetUvekKombinujSa(Ids({9}));
    s.SetSeizmicki(1);
    s.PostaviNDA(1);
    s.SetBrojMultimodalnih(4);
    s.SetUticajUticajneLinije(UL_NORMALNA_SILA);
    s.PostaviSRSS(Unit({{1, 1.0}, {2, 0.5}}));
    s.PostaviUlaziUSeizmickiProracun(1);
    s.PostaviRedniBroj(3);
}

} // namespace

TEST(SlucajOpterecenja, DefaultsNamesAndFlags) {
    CSlucajOpterecenja s;
    EXPECT_EQ(s.DajRedniBroj(), -1);
    EXPECT_EQ(s.GetKoeficijent(), 1.0);
    EXPECT_FALSE(s.IsUticajnaLinija());
    EXPECT_EQ(s.GetUticajUticajneLinije(), UL_NIJEDNA);
    EXPECT_EQ(s.GetFlags(), 0);
    EXPECT_FALSE(s.JeliSRSS());
    EXPECT_EQ(s.JeLiNDA(), 0);
    EXPECT_EQ(s.GetStalno(), 0);
    EXPECT_EQ(s.GetAlternativno(), 0);
    EXPECT_EQ(s.DajUlaziUSeizmickiProracun(), 0);
    EXPECT_TRUE(s.GetNaziv(1).IsEmpty());

    s.SetNaziv(L"G1");
    EXPECT_EQ(s.GetNaziv(1), CString(L"G1"));
    s.SetgMarker(1);
    EXPECT_EQ(s.GetNaziv(1), CString(L"G1 (g)"));
    EXPECT_EQ(s.GetNaziv(0), CString(L"G1"));
    EXPECT_EQ(s.GetNaziv(), CString(L"G1"));

    s.SetUticajUticajneLinije(UL_STARI_ZAPIS);
    EXPECT_TRUE(s.IsUticajnaLinija());
    s.SetUticajUticajneLinije(UL_MOMENT);
    EXPECT_TRUE(s.IsUticajnaLinija());

    // The seismic bit and the weighted bit are independent bits of one word.
    s.SetSeizmicki(1);
    s.PostaviSRSS(Unit({{1, 0.5}}));
    EXPECT_EQ(s.GetFlags(), 3);
    s.SetSeizmicki(0);
    EXPECT_EQ(s.GetFlags(), 2);
    EXPECT_FALSE(s.IsSeizmicki());
    s.SetSeizmicki(7);
    EXPECT_TRUE(s.IsSeizmicki());
    s.BrisiSRSS();
    EXPECT_EQ(s.GetFlags(), 1);
    EXPECT_FALSE(s.JeliSRSS());
}

TEST(SlucajOpterecenja, SrssUnitIsCopiedAndMarkedWeightedByItsFactors) {
    CSlucajOpterecenja s;
    const struct {
        Pairs pairs;
        bool weighted;
    } cases[] = {
        {{{1, 1.0}, {2, 1.0}}, false}, {{{1, 1.0}, {2, 0.5}}, true}, {{{1, 0.0}, {2, 1.0}}, false},
        {{{1, 1.0 + 1e-12}}, false},   {{{1, 1e-12}}, true},         {{}, false},
    };
    for (const auto& c : cases) {
        s.PostaviSRSS(Unit(c.pairs, LCU_ANVELOPA));
        ASSERT_TRUE(s.JeliSRSS());
        EXPECT_TRUE(*s.DajLCUnitZaSRSS() == Unit(c.pairs, LCU_ANVELOPA));
        EXPECT_EQ((s.GetFlags() & 2) != 0, c.weighted) << c.pairs.size();
    }
    // The unit is the case's own: changing the argument later changes nothing.
    CLoadCaseUnit unit = Unit({{4, 2.0}});
    s.PostaviSRSS(unit);
    unit.SetFaktor(0, 3.0);
    EXPECT_EQ(s.DajLCUnitZaSRSS()->GetLoadCaseFactor(0).GetFaktor(), 2.0);
}

TEST(SlucajOpterecenja, SetTakesTheEditableValuesOfAListItem) {
    CSlucajOpterecenja s;
    FillAll(s);
    const CSlOptItem item(L"Vetar", 9, 0, 1, CId(77), 1.1, 0, 0, Ids({1}), Ids({}), 5);
    s.Set(8, item);
    EXPECT_EQ(s.DajRedniBroj(), 8);
    EXPECT_EQ(s.GetNaziv(), CString(L"Vetar"));
    EXPECT_EQ(s.GetgMarker(), 0);
    EXPECT_EQ(s.GetKoeficijent(), 1.1);
    EXPECT_EQ(s.GetStalno(), 0);
    EXPECT_EQ(s.GetAlternativno(), 0);
    EXPECT_EQ(s.GetNeKombinujSa(), Ids({1}));
    EXPECT_TRUE(s.GetUvekKombinujSa().IsEmpty());
    EXPECT_EQ(s.DajUlaziUSeizmickiProracun(), 5);
    // Untouched: the flag word, NDA, multimodal count, influence-line kind, SRSS unit, id.
    EXPECT_EQ(s.GetFlags(), 3);
    EXPECT_EQ(s.JeLiNDA(), 1);
    EXPECT_EQ(s.GetBrojMultimodalnih(), 4);
    EXPECT_EQ(s.GetUticajUticajneLinije(), UL_NORMALNA_SILA);
    EXPECT_TRUE(s.JeliSRSS());
    EXPECT_EQ(s.GetId(), CId(5));
}

TEST(SlucajOpterecenja, ExportCopyLeavesNdaAndSrssBehind) {
    CSlucajOpterecenja src;
    FillAll(src);
    CSlucajOpterecenja dst;
    dst.PostaviSRSS(Unit({{9, 1.0}}));
    CSlucajOpterecenja::UmnoziSlOptZaIzvoz(&dst, &src);
    EXPECT_EQ(dst.GetNaziv(), CString(L"G1"));
    EXPECT_EQ(dst.DajRedniBroj(), 3);
    EXPECT_EQ(dst.GetgMarker(), 1);
    EXPECT_EQ(dst.GetKoeficijent(), 1.5);
    EXPECT_EQ(dst.GetStalno(), 1);
    EXPECT_EQ(dst.GetAlternativno(), 1);
    EXPECT_EQ(dst.GetNeKombinujSa(), Ids({7, 8}));
    EXPECT_EQ(dst.GetUvekKombinujSa(), Ids({9}));
    EXPECT_EQ(dst.GetFlags(), 3);
    EXPECT_EQ(dst.GetBrojMultimodalnih(), 4);
    EXPECT_EQ(dst.GetUticajUticajneLinije(), UL_NORMALNA_SILA);
    EXPECT_EQ(dst.DajUlaziUSeizmickiProracun(), 1);
    EXPECT_EQ(dst.JeLiNDA(), 0);
    EXPECT_TRUE(*dst.DajLCUnitZaSRSS() == Unit({{9, 1.0}}));
    EXPECT_FALSE(dst.GetId().Valid());

    CSlucajOpterecenja::UmnoziSlOptZaIzvoz(&src, &src);
    EXPECT_EQ(src.GetNeKombinujSa(), Ids({7, 8}));
}

TEST(SlucajOpterecenja, CopiesAreWhatTheRecordCarries) {
    CSlucajOpterecenja src;
    FillAll(src);
    std::unique_ptr<CObj> made(src.MakeNew());
    auto* copy = dynamic_cast<CSlucajOpterecenja*>(made.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Written(*copy), Written(src));

    std::unique_ptr<CSlucajOpterecenja> constructed(new CSlucajOpterecenja(src));
    EXPECT_EQ(Written(*constructed), Written(src));

    CSlucajOpterecenja assigned;
    assigned.SetNaziv(L"x");
    assigned = src;
    EXPECT_EQ(Written(assigned), Written(src));
    assigned = assigned;
    EXPECT_EQ(Written(assigned), Written(src));
    // The SRSS unit is copied, not shared.
    src.BrisiSRSS();
    EXPECT_TRUE(assigned.JeliSRSS());

    // Destroy releases the unit and, when asked, the object; a protected object stays.
    CObj* pooled = assigned.MakeNew();
    pooled->SetProtected(true);
    pooled->Destroy(1);
    EXPECT_TRUE(dynamic_cast<CSlucajOpterecenja*>(pooled)->JeliSRSS());
    pooled->SetProtected(false);
    pooled->Destroy(0);
    EXPECT_FALSE(dynamic_cast<CSlucajOpterecenja*>(pooled)->JeliSRSS());
    pooled->Destroy(1);
}

TEST(SlucajOpterecenja, ChecksumsFollowTheirTwoStreams) {
    CSlucajOpterecenja s;
    FillAll(s);
    const uint32_t base = Bytes().i32(6).crc();
    const Bytes unit = Bytes().i32(1).i32(0).i32(2).factor(1, 1.0).factor(2, 0.5);
    const auto all = [&](bool withUnit) {
        Bytes b;
        b.i32(4).i32(1).f64(1.5).i32(1).i32(1).ids({7, 8}).ids({9}).f64(1.5).str(L"G1");
        b.i32(3).i32(6).i32(1);
        if (withUnit)
            b.raw(unit.get());
        return b.i32(1).crc();
    };
    const uint32_t numbering = Bytes().i32(1).i32(3).i32(6).i32(1).i32(1).crc();

    uint32_t crc1 = 100, crc2 = 200, crc3 = 300;
    s.UpdateCRC(crc1, crc2, crc3);
    EXPECT_EQ(crc1, 100u + base + all(true));
    EXPECT_EQ(crc2, 200u);
    EXPECT_EQ(crc3, 300u); // SRSS cases do not enter the second-order sum

    s.BrisiSRSS();
    crc1 = 100, crc2 = 200, crc3 = 300;
    s.UpdateCRC(crc1, crc2, crc3);
    EXPECT_EQ(crc1, 100u + base + all(false));
    EXPECT_EQ(crc2, 200u);
    EXPECT_EQ(crc3, 300u + base + numbering);

    // The weighted bit is no part of either stream; the seismic bit is.
    const auto sums = [](int32_t flags) {
        CaseRecord rec;
        rec.flags = flags;
        CSlucajOpterecenja c;
        Reader r(rec.Record(11));
        c.FromFiller(r.f());
        rec.srss.reset();
        CSlucajOpterecenja n;
        Reader rn(rec.Record(11));
        n.FromFiller(rn.f());
        uint32_t s[6] = {};
        c.UpdateCRC(s[0], s[1], s[2]);
        n.UpdateCRC(s[3], s[4], s[5]);
        return std::vector<uint32_t>(s, s + 6);
    };
    EXPECT_EQ(sums(1), sums(3));
    EXPECT_EQ(sums(0), sums(2));
    EXPECT_NE(sums(1)[0], sums(0)[0]);
    EXPECT_NE(sums(1)[5], sums(0)[5]);
}

TEST(SlucajOpterecenja, ToneMapOfMultimodalCases) {
    CSlucajOpterecenja::ResetujMapuTonovaZaMultiModalne();
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(3), 0);
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(3, 7);
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(4, 8);
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(3, 9);
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(3), 9);
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(5), 0);

    CMap<int, int, int, int> copy;
    copy.SetAt(100, 1);
    CSlucajOpterecenja::GetKopijuMapeTonovaZaMultiModalne(copy);
    EXPECT_EQ(copy.GetCount(), 2);
    int tone = 0;
    EXPECT_TRUE(copy.Lookup(4, tone));
    EXPECT_EQ(tone, 8);
    EXPECT_FALSE(copy.Lookup(100, tone));

    CMap<int, int, int, int> replacement;
    replacement.SetAt(1, 2);
    CSlucajOpterecenja::PrekopirajMapuTonovaZaMultiModalne(replacement);
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(1), 2);
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(3), 0);

    CSlucajOpterecenja::ResetujMapuTonovaZaMultiModalne();
    EXPECT_EQ(CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(1), 0);
    CSlucajOpterecenja::GetKopijuMapeTonovaZaMultiModalne(copy);
    EXPECT_TRUE(copy.IsEmpty());
}

using SlucajOpterecenjaStore = ModelTest;

TEST_F(SlucajOpterecenjaStore, FindsLoadCasesByOrdinal) {
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(1), nullptr);
    const CId a = AddLoadCase(L"A", 1);
    const CId b = AddLoadCase(L"B", 2);
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(1), Get<CSlucajOpterecenja>(a));
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(2), Get<CSlucajOpterecenja>(b));
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(0), nullptr);
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(3), nullptr);
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(-1), nullptr);
    // The store is closed again: it can be written.
    AddLoadCase(L"C", 3);
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(3)->GetNaziv(), CString(L"C"));
}

TEST_F(SlucajOpterecenjaStore, SrssChecksumCoversSrssCasesInIdOrderAndOnlyTheSeismicBit) {
    EXPECT_EQ(CSlucajOpterecenja::GetCRCsvihSRSSopt(), 0u); // nothing written
    const auto addFrom = [&](const CaseRecord& rec) {
        auto* p = new CSlucajOpterecenja;
        Reader r(rec.Record(11));
        p->FromFiller(r.f());
        return Insert(p);
    };
    CaseRecord first; // SRSS over 2 and 3 with factors 1.0
    first.flags = 3;  // seismic and (stale) weighted
    CaseRecord plain;
    plain.srss.reset();
    plain.redniBroj = 2;
    CaseRecord second;
    second.srss = Pairs{{1, 1.0}};
    second.flags = 0;
    second.redniBroj = 3;
    const CId id1 = addFrom(first);
    addFrom(plain);
    const CId id3 = addFrom(second);

    first.id = id1.GetValue();
    first.flags = 1; // a checksum stream sees only the seismic bit
    second.id = id3.GetValue();
    const uint32_t expected = Bytes().raw(first.Record(11)).raw(second.Record(11)).crc();
    EXPECT_EQ(CSlucajOpterecenja::GetCRCsvihSRSSopt(), expected);

    // Changing a case without an SRSS unit changes nothing.
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Select(CBaseManager::SlucajOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            auto* s = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(id));
            if (!s->JeliSRSS())
                s->SetNaziv(L"drugo");
        }
        bm.Close();
    }
    EXPECT_EQ(CSlucajOpterecenja::GetCRCsvihSRSSopt(), expected);
}

using SlucajOpterecenjaFatal = ModelTest;

TEST_F(SlucajOpterecenjaFatal, OrdinalCheckAcceptsOneToNAndEndsTheProgramOtherwise) {
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(); // no load cases
    AddLoadCase(L"B", 2);
    AddLoadCase(L"A", 1);
    AddLoadCase(L"C", 3);
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();

    const CId extra = AddLoadCase(L"D", 5);
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0),
                "ASSERT\\(nIndex >= 0 && nIndex < nOsnovnihOpt\\)\n\\[SlucajOpterecenja : 630\\]");
    EXPECT_NE(ErrorLog().find("ASSERT(nIndex >= 0 && nIndex < nOsnovnihOpt)\n"
                              "FILE: SlucajOpterecenja\nLINE: 630\n\n"),
              std::string::npos)
        << ErrorLog();

    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        dynamic_cast<CSlucajOpterecenja*>(bm.GetW(extra))->PostaviRedniBroj(0);
        bm.Close();
    }
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0), "SlucajOpterecenja : 630");

    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        dynamic_cast<CSlucajOpterecenja*>(bm.GetW(extra))->PostaviRedniBroj(2);
        bm.Close();
    }
    EXPECT_EXIT(CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva(),
                ::testing::ExitedWithCode(0),
                "ASSERT\\(nizIndeks\\[nIndex\\] == -1\\)\n\\[SlucajOpterecenja : 633\\]");
    EXPECT_NE(ErrorLog().find("ASSERT(nizIndeks[nIndex] == -1)\nFILE: SlucajOpterecenja\n"
                              "LINE: 633\n\n"),
              std::string::npos);
}

TEST_F(SlucajOpterecenjaFatal, CopyConstructionOutsideThePoolEndsTheProgram) {
    CSlucajOpterecenja src;
    src.SetNaziv(L"A");
    EXPECT_EXIT(
        {
            CSlucajOpterecenja onStack(src);
            (void)onStack;
        },
        ::testing::ExitedWithCode(0),
        "ASSERT FAILED - Error log \"vmerror.log\" created.\nASSERT\\(this == validAdr\\)\n"
        "\\[SlucajOpterecenja : 48\\]");
    EXPECT_NE(ErrorLog().find("ASSERT(this == validAdr)\nFILE: SlucajOpterecenja\nLINE: 48\n\n"),
              std::string::npos)
        << ErrorLog();
}
