// The load case object: its flag word and SRSS unit, taking values from a list item, the copy
// for export, copies, checksums and the class-wide services over the load cases of a model.
#include "model/SlucajOpterecenja.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace loadrec;

TEST(SlucajOpterecenja, NameMarkerAndTheTwoIndependentBitsOfTheFlagWord) {
    CSlucajOpterecenja s;
    s.SetNaziv(L"G1");
    EXPECT_EQ(s.GetNaziv(1), CString(L"G1"));
    s.SetgMarker(1);
    EXPECT_EQ(s.GetNaziv(1), CString(L"G1 (g)"));
    EXPECT_EQ(s.GetNaziv(), CString(L"G1"));

    // The SRSS unit is the case's own copy; a factor other than 0 and 1 marks it weighted.
    s.SetSeizmicki(1);
    CLoadCaseUnit unit = Unit({{1, 1.0}, {2, 0.5}}, LCU_ANVELOPA);
    s.PostaviSRSS(unit);
    unit.SetFaktor(1, 2.0);
    EXPECT_TRUE(*s.DajLCUnitZaSRSS() == Unit({{1, 1.0}, {2, 0.5}}, LCU_ANVELOPA));
    EXPECT_EQ(s.GetFlags(), 3);
    s.PostaviSRSS(Unit({{1, 0.0}, {2, 1.0 + 1e-12}}));
    EXPECT_EQ(s.GetFlags(), 1);
    s.PostaviSRSS(Unit({{1, 0.5}}));
    s.SetSeizmicki(0);
    EXPECT_EQ(s.GetFlags(), 2);
    s.SetSeizmicki(7);
    EXPECT_EQ(s.GetFlags(), 3);
    s.BrisiSRSS();
    EXPECT_EQ(s.GetFlags(), 1);
    EXPECT_FALSE(s.JeliSRSS());
}

TEST(SlucajOpterecenja, SetTakesTheEditableValuesAndExportCopyLeavesNdaAndSrssBehind) {
    CSlucajOpterecenja s;
    FillEveryField(s);
    s.Set(8, CSlOptItem(L"Vetar", 9, 0, 1, CId(77), 1.1, 0, 0, Ids({1}), Ids({}), 5));
    CSlucajOpterecenja expected;
    FillEveryField(expected);
    expected.PostaviRedniBroj(8);
    expected.SetNaziv(L"Vetar");
    expected.SetgMarker(0);
    expected.SetKoeficijent(1.1);
    expected.SetStalno(0);
    expected.SetAlternativno(0);
    expected.SetNeKombinujSa(Ids({1}));
    expected.SetUvekKombinujSa(Ids({}));
    expected.PostaviUlaziUSeizmickiProracun(5);
    EXPECT_EQ(Written(s), Written(expected));

    // The export copy takes everything but the id, the attribute, NDA and the SRSS unit.
    CSlucajOpterecenja src;
    FillEveryField(src);
    src.PostaviSRSS(Unit({{1, 1.0}}));
    CSlucajOpterecenja dst;
    dst.PostaviSRSS(Unit({{9, 1.0}}));
    CSlucajOpterecenja::UmnoziSlOptZaIzvoz(&dst, &src);
    expected = src;
    expected.SetId(CId());
    expected.SetAtribut(0);
    expected.PostaviNDA(0);
    expected.PostaviSRSS(Unit({{9, 1.0}}));
    EXPECT_EQ(Written(dst), Written(expected));
    CSlucajOpterecenja::UmnoziSlOptZaIzvoz(&src, &src);
    EXPECT_EQ(src.GetNeKombinujSa(), Ids({7, 8}));
}

TEST(SlucajOpterecenja, CopiesAreWhatTheRecordCarriesWithAnSrssUnitOfTheirOwn) {
    CSlucajOpterecenja src;
    FillEveryField(src);
    std::unique_ptr<CObj> made(src.MakeNew());
    EXPECT_EQ(Written(*made), Written(src));
    CSlucajOpterecenja assigned;
    assigned.SetNaziv(L"x");
    assigned = src;
    EXPECT_EQ(Written(assigned), Written(src));
    assigned = assigned;
    EXPECT_EQ(Written(assigned), Written(src));
    src.BrisiSRSS();
    EXPECT_TRUE(assigned.JeliSRSS());

    // Destroy releases the unit.
    CObj* pooled = assigned.MakeNew();
    pooled->Destroy(0);
    EXPECT_FALSE(dynamic_cast<CSlucajOpterecenja*>(pooled)->JeliSRSS());
    pooled->Destroy(1);
}

TEST(SlucajOpterecenja, ChecksumsFollowTheirTwoStreams) {
    CSlucajOpterecenja s;
    FillEveryField(s);
    // The flag word (3) enters both streams as its seismic bit alone.
    const uint32_t base = Bytes().i32(6).crc();
    const auto all = [](bool withUnit) {
        Bytes b;
        b.i32(4).i32(1).f64(1.5).i32(1).i32(1).ids({7, 8}).ids({9}).f64(1.5).str(L"G1");
        b.i32(3).i32(6).i32(1);
        if (withUnit)
            b.unit(0, {{1, 1.0}, {2, 0.5}});
        return b.i32(1).crc();
    };
    const uint32_t numbering = Bytes().i32(1).i32(3).i32(6).i32(1).i32(1).crc();

    uint32_t crc1 = 100, crc2 = 200, crc3 = 300;
    s.UpdateCRC(crc1, crc2, crc3);
    EXPECT_EQ(crc1, 100u + base + all(true));
    EXPECT_EQ(crc2, 200u);
    EXPECT_EQ(crc3, 300u) << "SRSS cases do not enter the second-order sum";

    s.BrisiSRSS();
    crc1 = 100, crc2 = 200, crc3 = 300;
    s.UpdateCRC(crc1, crc2, crc3);
    EXPECT_EQ(crc1, 100u + base + all(false));
    EXPECT_EQ(crc2, 200u);
    EXPECT_EQ(crc3, 300u + base + numbering);
}

using SlucajOpterecenjaStore = ModelTest;

TEST_F(SlucajOpterecenjaStore, FindsLoadCasesByOrdinal) {
    const CId a = AddLoadCase(L"A", 1);
    AddLoadCase(L"B", 2);
    EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(1), Get<CSlucajOpterecenja>(a));
    for (const int missing : {0, 3, -1})
        EXPECT_EQ(CSlucajOpterecenja::GetSlucajOpterecenja(missing), nullptr);
    AddLoadCase(L"C", 3); // the store was closed again: it can be written
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
    first.id = addFrom(first).GetValue();
    const CId plainId = addFrom(plain);
    second.id = addFrom(second).GetValue();

    first.flags = 1; // a checksum stream sees only the seismic bit
    const uint32_t expected = Bytes().raw(first.Record(11)).raw(second.Record(11)).crc();
    EXPECT_EQ(CSlucajOpterecenja::GetCRCsvihSRSSopt(), expected);
    // Changing a case without an SRSS unit changes nothing.
    Change<CSlucajOpterecenja>(plainId, [](CSlucajOpterecenja& s) { s.SetNaziv(L"drugo"); });
    EXPECT_EQ(CSlucajOpterecenja::GetCRCsvihSRSSopt(), expected);
}
