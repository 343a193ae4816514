// The load case record: the current version byte by byte, every older version with the fields
// it lacks, the checksum layout, the read-time fix-ups, and damaged input.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/SlucajOpterecenja.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace loadrec;

namespace {

// The record of FillEveryField, version 11: its unit's factor count, the always-combine count,
// the flag word, the never-combine count and the name's length stand at these offsets.
const std::vector<uint8_t> kGolden = CaseRecord{.id = 5,
                                                .atribut = 6,
                                                .nda = 1,
                                                .ulazi = 1,
                                                .srss = Pairs{{1, 1.0}, {2, 0.5}},
                                                .alternativno = 1,
                                                .uvek = {9},
                                                .uticaj = UL_NORMALNA_SILA,
                                                .multimodalni = 4,
                                                .flags = 3,
                                                .koeficijent = 1.5,
                                                .stalno = 1,
                                                .nikad = {7, 8},
                                                .naziv = L"G1",
                                                .redniBroj = 3,
                                                .gMarker = 1}
                                         .Record(11);
constexpr size_t kUnitCount = 33;
constexpr size_t kAlwaysCount = 73;
constexpr size_t kFlagWord = 89;
constexpr size_t kNeverCount = 109;
constexpr size_t kNameCount = 121;

/// What a load case held before a record of an older version was read into it.
void FillPrior(CSlucajOpterecenja& s) {
    s.SetNaziv(L"staro");
    s.SetgMarker(1);
    s.SetKoeficijent(2.5);
    s.SetStalno(1);
    s.SetAlternativno(1);
    s.SetNeKombinujSa(Ids({66}));
    s.SetUvekKombinujSa(Ids({77}));
    s.PostaviSRSS(Unit({{1, 0.5}})); // sets the weighted bit: flag word 2
    s.PostaviNDA(1);
    s.SetBrojMultimodalnih(9);
    s.SetUticajUticajneLinije(UL_REAKCIJA);
    s.PostaviUlaziUSeizmickiProracun(1);
    s.PostaviRedniBroj(42);
}

/// Reads the bytes into the case; returns what FromFiller returned.
int Read(CSlucajOpterecenja& s, const std::vector<uint8_t>& bytes) {
    Reader r(bytes);
    const int result = s.FromFiller(r.f());
    EXPECT_FALSE(r->IsError());
    EXPECT_EQ(r->Remaining(), 0u);
    return result;
}

/// The case that a record of the version with these values gives.
std::unique_ptr<CSlucajOpterecenja> ReadCase(int32_t version, const CaseRecord& rec) {
    auto s = std::make_unique<CSlucajOpterecenja>();
    EXPECT_EQ(Read(*s, rec.Record(version)), 1) << version;
    return s;
}

} // namespace

TEST(SlucajOpterecenjaRecord, CurrentVersionHasTheExactLayoutBothWays) {
    CSlucajOpterecenja s;
    FillEveryField(s);
    EXPECT_EQ(Written(s), kGolden);

    CSlucajOpterecenja back;
    FillPrior(back);
    EXPECT_EQ(Read(back, kGolden), 1);
    // Every field is read into its place: written back, the record is the same bytes.
    EXPECT_EQ(Written(back), kGolden);

    // The old influence-line flag is always written as 0; a case without an SRSS unit writes
    // the presence byte 0 and nothing for the unit, and loses the weighted bit with it.
    s.SetUticajUticajneLinije(UL_STARI_ZAPIS);
    s.BrisiSRSS();
    const std::vector<uint8_t> noUnit = Written(s);
    ASSERT_EQ(noUnit.size(), kGolden.size() - 44);
    EXPECT_EQ(noUnit[24], 0x00);
    EXPECT_EQ(noUnit[kFlagWord - 44], 0x01);
    EXPECT_EQ(noUnit[kFlagWord - 44 + 4], 0x00);
}

TEST(SlucajOpterecenjaRecord, ChecksumRecordKeepsTheLayoutOfVersionNine) {
    CSlucajOpterecenja s;
    FillEveryField(s);
    // The checksum record: version 9 without NDA and the seismic-analysis entry, whole flags.
    Bytes v9;
    v9.raw(Prefix(kGolden, 12)).i32(9).raw({kGolden.begin() + 24, kGolden.end()});
    CFiller f;
    f.Open(CFiller::Mode::Write);
    EXPECT_EQ(s.ToCRCFiller(f), 1);
    EXPECT_EQ(f.Buffer(), v9.get());
}

TEST(SlucajOpterecenjaRecord, EveryOlderVersionReadsItsRowsAndKeepsTheRest) {
    const CaseRecord rec;
    for (int32_t version = 1; version <= 11; ++version) {
        SCOPED_TRACE("version " + std::to_string(version));
        CSlucajOpterecenja s;
        FillPrior(s);
        EXPECT_EQ(Read(s, rec.Record(version)), 1);
        // Always reset before reading, whatever the version.
        EXPECT_EQ(s.JeLiNDA(), version >= 11 ? 1 : 0);
        EXPECT_EQ(s.DajUlaziUSeizmickiProracun(), version >= 10 ? 3 : 0);
        EXPECT_EQ(PairsOf(s.DajLCUnitZaSRSS()),
                  version >= 9 ? (Pairs{{2, 1.0}, {3, 1.0}}) : Pairs{});
        // Kept from before when the version lacks them.
        EXPECT_EQ(s.GetAlternativno(), version >= 8 ? 0 : 1);
        EXPECT_EQ(s.GetUvekKombinujSa(), version >= 7 ? Ids({5, 6}) : Ids({77}));
        EXPECT_EQ(s.GetUticajUticajneLinije(), version >= 6 ? UL_MOMENT : UL_REAKCIJA);
        EXPECT_EQ(s.GetBrojMultimodalnih(), version >= 5 ? 3 : 9);
        EXPECT_EQ(s.GetFlags(), version >= 4 ? 1 : 2);
        EXPECT_EQ(s.GetKoeficijent(), version >= 2 ? 1.25 : 2.5);
        EXPECT_EQ(s.GetStalno(), version >= 2 ? 0 : 1);
        EXPECT_EQ(s.GetNeKombinujSa(), version >= 2 ? Ids({7}) : Ids({66}));
        // Every version carries these.
        EXPECT_EQ(s.GetNaziv(), CString(L"Stalno \u010d"));
        EXPECT_EQ(s.DajRedniBroj(), 3);
        EXPECT_EQ(s.GetgMarker(), 0);
    }
}

using SlucajOpterecenjaFixUp = ModelTest;

TEST_F(SlucajOpterecenjaFixUp, OldInfluenceLineFlagMarksCasesWithoutAKindAndAssertsOtherwise) {
    CaseRecord rec;
    rec.staraUticajna = 1;
    rec.uticaj = UL_NIJEDNA;
    for (int32_t version = 3; version <= 11; ++version)
        EXPECT_EQ(ReadCase(version, rec)->GetUticajUticajneLinije(), UL_STARI_ZAPIS) << version;
    EXPECT_FALSE(ReadCase(2, rec)->IsUticajnaLinija()) << "versions 1 and 2 have no such flag";

    rec.uticaj = UL_MOMENT;
    EXPECT_EXIT(ReadCase(6, rec), ::testing::ExitedWithCode(0),
                "ASSERT\\(m_eUticajUticajneLinije == UL_NIJEDNA\\)\n"
                "\\[SlucajOpterecenja : 223\\]");
    // Version 5 has no kind of its own: the kind the case held before counts.
    EXPECT_EXIT(
        {
            CSlucajOpterecenja s;
            s.SetUticajUticajneLinije(UL_POMERANJE);
            Read(s, rec.Record(5));
        },
        ::testing::ExitedWithCode(0), "ASSERT FAILED - Error log \"vmerror.log\" created.");
}

TEST(SlucajOpterecenjaRecord, VersionTenDerivesNdaFromShortNames) {
    const auto nda = [](const std::wstring& naziv, int32_t version, int32_t stored) {
        CaseRecord rec;
        rec.naziv = naziv;
        rec.nda = stored;
        return ReadCase(version, rec)->JeLiNDA();
    };
    // "DDA" within a name of up to five characters, in one case and one script.
    for (const wchar_t* naziv :
         {L"DDA", L"xDDAx", L"ddax", L"\u0414\u0414\u0410", L"x\u0434\u0434\u0430x"}) {
        EXPECT_EQ(nda(naziv, 10, 0), 1) << CString(naziv).ToUtf8();
        EXPECT_EQ(nda(naziv, 9, 0), 0);
        EXPECT_EQ(nda(naziv, 11, 0), 0) << "the stored value counts in version 11";
    }
    for (const wchar_t* naziv :
         {L"DDAxxx", L"\u0414\u0414\u0410xxx", L"DD", L"", L"xDdAx", L"D\u0414A"})
        EXPECT_EQ(nda(naziv, 10, 1), 0) << CString(naziv).ToUtf8();
}

TEST(SlucajOpterecenjaRecord, WeightedSrssCasesReadWithoutTheMarkAreRenamedOnce) {
    const std::pair<Pairs, bool> cases[] = {
        {{{1, 1.0}, {2, 1.0}}, false},
        {{{1, 1.0}, {2, 0.5}}, true},
        {{{1, 1.0}, {2, 0.0}}, false},         // an exact zero is no weight
        {{{1, 1.0}, {2, 1e-12}}, true},        // a tiny factor is
        {{{1, 1.0 + 1e-12}, {2, 1.0}}, false}, // one within the tolerance
        {{{1, 1.0}, {2, 1.0 + 1e-6}}, true},
        {{{1, -1.0}}, true},
        {{}, false},
    };
    for (int32_t version = 9; version <= 11; ++version) {
        for (const auto& [srss, weighted] : cases) {
            CaseRecord rec;
            rec.srss = srss;
            rec.flags = 1;
            const auto s = ReadCase(version, rec);
            EXPECT_EQ(s->GetNaziv(), CString(weighted ? L"SRSS: ******" : L"Stalno \u010d"))
                << version << " " << srss.size();
            EXPECT_EQ(s->GetFlags(), weighted ? 3 : 1);
            // Once marked, the name read is kept.
            rec.flags = 3;
            EXPECT_EQ(ReadCase(version, rec)->GetNaziv(), CString(L"Stalno \u010d"));
        }
    }
    // Any non-zero presence byte means a unit follows.
    CaseRecord rec;
    rec.srss = Pairs{{4, 1.0}};
    std::vector<uint8_t> bytes = rec.Record(9);
    bytes[16] = 0x02;
    CSlucajOpterecenja s;
    EXPECT_EQ(Read(s, bytes), 1);
    EXPECT_EQ(PairsOf(s.DajLCUnitZaSRSS()), (Pairs{{4, 1.0}}));
}

TEST(SlucajOpterecenjaRecord, UnknownVersionsAndDamagedRecordsEndInTheErrorFlag) {
    for (const int32_t version : {0, 12, -1, 0x7FFFFFFF})
        ExpectVersionError<CSlucajOpterecenja>(With32(kGolden, 12, version), version,
                                               "SlucajOpterecenja");
    // A wrong base record is the base's version error.
    ExpectVersionError<CSlucajOpterecenja>(With32(kGolden, 0, 2), 2, "Obj");

    ASSERT_EQ(kGolden[kUnitCount], 0x02);
    ASSERT_EQ(kGolden[kAlwaysCount], 0x01);
    ASSERT_EQ(kGolden[kNeverCount], 0x02);
    ASSERT_EQ(kGolden[kNameCount], 0x02);
    ExpectDamagedInputFails<CSlucajOpterecenja>(
        kGolden, {kUnitCount, kAlwaysCount, kNeverCount, kNameCount});
    ExpectDamagedInputFails<CSlucajOpterecenja>(CaseRecord().Record(1));
}
