// The load case record: the current version byte by byte, every older version with the fields
// it lacks, the read-time fix-ups, the checksum layout, and damaged input.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/SlucajOpterecenja.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using loadrec::Bytes;
using loadrec::CaseRecord;
using loadrec::Pairs;
using loadrec::Reader;
using loadrec::Written;

namespace {

CLoadCaseUnit Unit(const Pairs& pairs) {
    CLoadCaseUnit unit;
    unit.SetKarakter(LCU_LINEARNA);
    for (const auto& [k, f] : pairs)
        unit.Factors().Add(CLoadCaseFactor(k, f));
    return unit;
}

Pairs PairsOf(const CLoadCaseUnit* unit) {
    Pairs pairs;
    for (int i = 0; unit != nullptr && i < unit->GetSize(); ++i)
        pairs.emplace_back(unit->GetLoadCaseFactor(i).GetLCRedniBroj(),
                           unit->GetLoadCaseFactor(i).GetFaktor());
    return pairs;
}

OCArray<CId> Ids(std::initializer_list<int32_t> values) {
    OCArray<CId> ids;
    for (const int32_t v : values)
        ids.Add(CId(v));
    return ids;
}

/// A load case with every field set: the subject of the exact record below.
void FillGolden(CSlucajOpterecenja& s) {
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
    s.PostaviSRSS(Unit({{1, 1.0}, {2, 0.5}})); // weighted: sets flag bit 1 too
    s.PostaviUlaziUSeizmickiProracun(1);
    s.PostaviRedniBroj(3);
}

// Its record, version 11.
const std::vector<uint8_t> kGolden = {
    0x01, 0x00, 0x00, 0x00,                         // base record: version 1
    0x05, 0x00, 0x00, 0x00,                         //   id 5
    0x06, 0x00, 0x00, 0x00,                         //   attribute 6
    0x0B, 0x00, 0x00, 0x00,                         // version 11
    0x01, 0x00, 0x00, 0x00,                         // NDA
    0x01, 0x00, 0x00, 0x00,                         // enters seismic analysis
    0x01,                                           // SRSS unit present
    0x01, 0x00, 0x00, 0x00,                         //   unit version 1
    0x00, 0x00, 0x00, 0x00,                         //   linear
    0x02, 0x00, 0x00, 0x00,                         //   two factors
    0x01, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, //   version 1, ordinal 1,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F, //   1.0
    0x01, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, //   version 1, ordinal 2,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F, //   0.5
    0x01, 0x00, 0x00, 0x00,                         // alternating
    0x01, 0x00, 0x00, 0x00, 0x09, 0x00, 0x00, 0x00, // always-combine: 9
    0x02, 0x00, 0x00, 0x00,                         // influence-line kind 2
    0x04, 0x00, 0x00, 0x00,                         // multimodal count
    0x03, 0x00, 0x00, 0x00,                         // flag word: seismic, weighted
    0x00, 0x00, 0x00, 0x00,                         // old influence-line flag
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF8, 0x3F, // coefficient 1.5
    0x01, 0x00, 0x00, 0x00,                         // permanent
    0x02, 0x00, 0x00, 0x00,                         // never-combine: 2 ids
    0x07, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00, //   7, 8
    0x02, 0x00, 0x00, 0x00, 'G',  0x00, '1',  0x00, // name "G1"
    0x03, 0x00, 0x00, 0x00,                         // ordinal
    0x01, 0x00, 0x00, 0x00,                         // g marker
};
constexpr size_t kGoldenFlagWord = 12 + 4 + 4 + 4 + 1 + 12 + 32 + 4 + 8 + 4 + 4;
constexpr size_t kGoldenAlwaysCount = 12 + 4 + 4 + 4 + 1 + 12 + 32 + 4;
constexpr size_t kGoldenNeverCount = kGoldenFlagWord + 4 + 4 + 8 + 4;
constexpr size_t kGoldenNameCount = kGoldenNeverCount + 12;
constexpr size_t kGoldenUnitCount = 12 + 4 + 4 + 4 + 1 + 8;

void ExpectGolden(const CSlucajOpterecenja& s) {
    EXPECT_EQ(s.GetId(), CId(5));
    EXPECT_EQ(s.GetAtribut(), 6);
    EXPECT_EQ(s.GetNaziv(), CString(L"G1"));
    EXPECT_EQ(s.GetgMarker(), 1);
    EXPECT_EQ(s.GetKoeficijent(), 1.5);
    EXPECT_EQ(s.GetStalno(), 1);
    EXPECT_EQ(s.GetAlternativno(), 1);
    EXPECT_EQ(s.GetNeKombinujSa(), Ids({7, 8}));
    EXPECT_EQ(s.GetUvekKombinujSa(), Ids({9}));
    EXPECT_EQ(s.GetFlags(), 3);
    EXPECT_EQ(s.JeLiNDA(), 1);
    EXPECT_EQ(s.GetBrojMultimodalnih(), 4);
    EXPECT_EQ(s.GetUticajUticajneLinije(), UL_NORMALNA_SILA);
    ASSERT_TRUE(s.JeliSRSS());
    EXPECT_EQ(PairsOf(s.DajLCUnitZaSRSS()), (Pairs{{1, 1.0}, {2, 0.5}}));
    EXPECT_EQ(s.DajUlaziUSeizmickiProracun(), 1);
    EXPECT_EQ(s.DajRedniBroj(), 3);
}

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
int Read(CSlucajOpterecenja& s, const std::vector<uint8_t>& bytes, bool* error = nullptr) {
    Reader r(bytes);
    const int result = s.FromFiller(r.f());
    if (error != nullptr)
        *error = r->IsError();
    EXPECT_TRUE(r->IsError() || r->Remaining() == 0u);
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
    FillGolden(s);
    EXPECT_EQ(Written(s), kGolden);

    CSlucajOpterecenja back;
    FillPrior(back);
    EXPECT_EQ(Read(back, kGolden), 1);
    ExpectGolden(back);

    // The old influence-line flag is always written as 0; a case without an SRSS unit writes
    // the presence byte 0 and nothing for the unit.
    s.SetUticajUticajneLinije(UL_STARI_ZAPIS);
    s.BrisiSRSS();
    const std::vector<uint8_t> noUnit = Written(s);
    EXPECT_EQ(noUnit.size(), kGolden.size() - 44);
    EXPECT_EQ(noUnit[24], 0x00);
    EXPECT_EQ(noUnit[kGoldenFlagWord - 44 + 4], 0x00);
    EXPECT_EQ(noUnit[kGoldenFlagWord - 44], 0x01); // the weighted bit went with the unit
}

TEST(SlucajOpterecenjaRecord, ChecksumStreamsSeeOnlyTheSeismicBit) {
    CSlucajOpterecenja s;
    FillGolden(s);
    std::vector<uint8_t> bitZeroOnly = kGolden;
    bitZeroOnly[kGoldenFlagWord] = 0x01;
    CCrcFiller crc;
    s.ToFiller(crc);
    EXPECT_EQ(crc.GetCRC(), Bytes().raw(bitZeroOnly).crc());

    // The checksum record keeps the layout of version 9 with the whole flag word.
    std::vector<uint8_t> v9(kGolden.begin(), kGolden.begin() + 12);
    const std::vector<uint8_t> tail(kGolden.begin() + 24, kGolden.end());
    Bytes expected;
    expected.raw(v9).i32(9).raw(tail);
    CFiller f;
    f.Open(CFiller::Mode::Write);
    EXPECT_EQ(s.ToCRCFiller(f), 1);
    EXPECT_EQ(f.Buffer(), expected.get());

    // A version 9 record is also what the reader accepts: the same case minus NDA and the
    // seismic-analysis entry.
    CSlucajOpterecenja back;
    EXPECT_EQ(Read(back, expected.get()), 1);
    EXPECT_EQ(back.JeLiNDA(), 0);
    EXPECT_EQ(back.DajUlaziUSeizmickiProracun(), 0);
    EXPECT_EQ(back.GetFlags(), 3);
    EXPECT_EQ(back.GetNaziv(), CString(L"G1"));
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
        EXPECT_EQ(s.JeliSRSS(), version >= 9 ? 1 : 0);
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

TEST(SlucajOpterecenjaRecord, OldInfluenceLineFlagMarksCasesWithoutAKind) {
    CaseRecord rec;
    rec.staraUticajna = 1;
    rec.uticaj = UL_NIJEDNA;
    for (int32_t version = 3; version <= 11; ++version) {
        CSlucajOpterecenja s; // no kind before reading
        EXPECT_EQ(Read(s, rec.Record(version)), 1);
        EXPECT_EQ(s.GetUticajUticajneLinije(), UL_STARI_ZAPIS) << version;
        EXPECT_TRUE(s.IsUticajnaLinija());
    }
    // Versions 1 and 2 have no such flag.
    CSlucajOpterecenja s;
    EXPECT_EQ(Read(s, rec.Record(2)), 1);
    EXPECT_FALSE(s.IsUticajnaLinija());
}

using SlucajOpterecenjaRecordFatal = ModelTest;

TEST_F(SlucajOpterecenjaRecordFatal, OldInfluenceLineFlagOnACaseWithAKindEndsTheProgram) {
    CaseRecord rec;
    rec.staraUticajna = 1;
    rec.uticaj = UL_MOMENT;
    EXPECT_EXIT(
        {
            CSlucajOpterecenja s;
            Read(s, rec.Record(6));
        },
        ::testing::ExitedWithCode(0),
        "ASSERT\\(m_eUticajUticajneLinije == UL_NIJEDNA\\)\n\\[SlucajOpterecenja : 223\\]");
    EXPECT_NE(ErrorLog().find("ASSERT(m_eUticajUticajneLinije == UL_NIJEDNA)\n"
                              "FILE: SlucajOpterecenja\nLINE: 223\n\n"),
              std::string::npos)
        << ErrorLog();

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
    const std::vector<std::pair<std::wstring, int>> names = {
        {L"DDA", 1},
        {L"xDDAx", 1},
        {L"ddax", 1},
        {L"\u0414\u0414\u0410", 1},    // Cyrillic capitals
        {L"x\u0434\u0434\u0430x", 1},  // Cyrillic small letters
        {L"DDAxxx", 0},                // six characters
        {L"\u0414\u0414\u0410xxx", 0}, //
        {L"DD", 0},                    // too short
        {L"xDdAx", 0},                 // mixed case is no mark
        {L"D\u0414A", 0},              // mixed scripts neither
        {L"dDA", 0},
        {L"", 0},
    };
    for (const auto& [naziv, nda] : names) {
        CaseRecord rec;
        rec.naziv = naziv;
        EXPECT_EQ(ReadCase(10, rec)->JeLiNDA(), nda) << CString(naziv).ToUtf8();
        EXPECT_EQ(ReadCase(9, rec)->JeLiNDA(), 0);
        rec.nda = 0;
        EXPECT_EQ(ReadCase(11, rec)->JeLiNDA(), 0) << "the stored value counts in version 11";
    }
    // A version 10 name without the mark does not clear anything else: NDA is 0 from the reset.
    CaseRecord rec;
    rec.naziv = L"Vetar";
    EXPECT_EQ(ReadCase(10, rec)->JeLiNDA(), 0);
}

TEST(SlucajOpterecenjaRecord, WeightedSrssCasesReadWithoutTheMarkAreRenamedOnce) {
    struct Case {
        Pairs srss;
        bool weighted;
    };
    const std::vector<Case> cases = {
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
        for (const Case& c : cases) {
            CaseRecord rec;
            rec.srss = c.srss;
            rec.flags = 1;
            const auto s = ReadCase(version, rec);
            EXPECT_EQ(s->GetNaziv(), CString(c.weighted ? L"SRSS: ******" : L"Stalno \u010d"))
                << version << " " << PairsOf(s->DajLCUnitZaSRSS()).size();
            EXPECT_EQ(s->GetFlags(), c.weighted ? 3 : 1);
            // Once marked, the name read is kept.
            rec.flags = 3;
            EXPECT_EQ(ReadCase(version, rec)->GetNaziv(), CString(L"Stalno \u010d"));
        }
    }
    // Older versions have no SRSS unit to weigh.
    CaseRecord rec;
    rec.flags = 0;
    EXPECT_EQ(ReadCase(8, rec)->GetNaziv(), CString(L"Stalno \u010d"));

    // Any non-zero presence byte means a unit follows.
    rec.srss = Pairs{{4, 1.0}};
    std::vector<uint8_t> bytes = rec.Record(9);
    bytes[16] = 0x02;
    CSlucajOpterecenja s;
    EXPECT_EQ(Read(s, bytes), 1);
    EXPECT_EQ(PairsOf(s.DajLCUnitZaSRSS()), (Pairs{{4, 1.0}}));
}

TEST(SlucajOpterecenjaRecord, UnknownVersionsAreVersionErrors) {
    for (const int32_t version : {0, 12, -1, 0x7FFFFFFF}) {
        CSlucajOpterecenja s;
        FillPrior(s);
        std::vector<uint8_t> bytes = CaseRecord().Record(11);
        for (int i = 0; i < 4; ++i)
            bytes[12 + static_cast<size_t>(i)] = static_cast<uint8_t>(version >> (8 * i));
        Reader rv(bytes);
        EXPECT_EQ(s.FromFiller(rv.f()), 0);
        EXPECT_TRUE(rv->IsError());
        EXPECT_EQ(rv->GetErrorMessage(),
                  CString::Formatted(L"Object version error! Version: %d", version));
        EXPECT_EQ(rv->GetErrorSource(), "SlucajOpterecenja");
        // What was reset before the version was read stays reset; the rest is untouched.
        EXPECT_FALSE(s.JeliSRSS());
        EXPECT_EQ(s.JeLiNDA(), 0);
        EXPECT_EQ(s.GetNaziv(), CString(L"staro"));
    }
    // A wrong base record is the base's version error.
    std::vector<uint8_t> bytes = kGolden;
    bytes[0] = 2;
    Reader r(bytes);
    CSlucajOpterecenja s;
    EXPECT_EQ(s.FromFiller(r.f()), 0);
    EXPECT_EQ(r->GetErrorSource(), "Obj");
    EXPECT_EQ(s.GetNaziv(), CString());
    // A stream already in error is not read.
    Reader re(kGolden);
    re->SetError();
    EXPECT_EQ(s.FromFiller(re.f()), 0);
    EXPECT_EQ(re->Position(), 0u);
}

TEST(SlucajOpterecenjaRecord, DamagedRecordsEndInTheErrorFlagWithoutLargeAllocations) {
    for (size_t n = 0; n < kGolden.size(); ++n) {
        CSlucajOpterecenja s;
        bool error = false;
        Read(s, loadrec::Prefix(kGolden, n), &error);
        EXPECT_TRUE(error) << "prefix " << n;
    }
    const std::vector<uint8_t> v1 = CaseRecord().Record(1);
    for (size_t n = 0; n < v1.size(); ++n) {
        CSlucajOpterecenja s;
        bool error = false;
        Read(s, loadrec::Prefix(v1, n), &error);
        EXPECT_TRUE(error) << "version 1 prefix " << n;
    }

    ASSERT_EQ(kGolden[kGoldenAlwaysCount], 0x01);
    ASSERT_EQ(kGolden[kGoldenNeverCount], 0x02);
    ASSERT_EQ(kGolden[kGoldenNameCount], 0x02);
    ASSERT_EQ(kGolden[kGoldenUnitCount], 0x02);
    for (const size_t offset :
         {kGoldenAlwaysCount, kGoldenNeverCount, kGoldenNameCount, kGoldenUnitCount}) {
        for (const int32_t count : {0x7FFFFFFF, -1, 0x40000000, static_cast<int32_t>(0x80000000)}) {
            std::vector<uint8_t> bytes = kGolden;
            for (int i = 0; i < 4; ++i)
                bytes[offset + static_cast<size_t>(i)] = static_cast<uint8_t>(count >> (8 * i));
            CSlucajOpterecenja s;
            bool error = false;
            Read(s, bytes, &error);
            EXPECT_TRUE(error) << offset << " " << count;
            EXPECT_LE(s.GetNeKombinujSa().GetSize(), 2);
            EXPECT_LE(s.GetUvekKombinujSa().GetSize(), 1);
            EXPECT_LE(s.GetNaziv().GetLength(), 12);
        }
    }
}

TEST(SlucajOpterecenjaRecord, NamesOutsideLatinSurviveTheRecord) {
    CSlucajOpterecenja s;
    s.SetNaziv(L"\u0421\u0435\u0438\u0437\u043C\u0438\u043A\u0430 \u0161\u0111\u010D\u0107\u017E");
    CSlucajOpterecenja back;
    EXPECT_EQ(Read(back, Written(s)), 1);
    EXPECT_EQ(back.GetNaziv(), s.GetNaziv());
}
