// Records of factors, factors for masses and load case units: exact bytes both ways, version
// errors, and damaged input that must end in the stream's error flag.
#include "LoadRecordBytes.h"
#include "model/LoadCaseDescriptions.h"

#include <gtest/gtest.h>

using loadrec::Bytes;
using loadrec::Reader;
using loadrec::Written;

namespace {

// Doubles are little-endian IEEE: 0.5 ends in E0 3F, 2.0 in 00 40, -1.0 in F0 BF.
const std::vector<uint8_t> kFactor3Half = {
    0x01, 0x00, 0x00, 0x00,                         // version 1
    0x03, 0x00, 0x00, 0x00,                         // ordinal 3
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F, // factor 0.5
};

const std::vector<uint8_t> kUnitEnvelope = {
    0x01, 0x00, 0x00, 0x00,                         // version 1
    0x01, 0x00, 0x00, 0x00,                         // character: envelope
    0x02, 0x00, 0x00, 0x00,                         // two factors
    0x01, 0x00, 0x00, 0x00,                         //   version 1
    0x01, 0x00, 0x00, 0x00,                         //   ordinal 1
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40, //   2.0
    0x01, 0x00, 0x00, 0x00,                         //   version 1
    0x04, 0x00, 0x00, 0x00,                         //   ordinal 4
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0xBF, //   -1.0
};

CLoadCaseUnit EnvelopeUnit() {
    CLoadCaseUnit unit;
    unit.SetKarakter(LCU_ANVELOPA);
    unit.Factors().Add(CLoadCaseFactor(1, 2.0));
    unit.Factors().Add(CLoadCaseFactor(4, -1.0));
    return unit;
}

} // namespace

TEST(LoadCaseFactorRecord, WritesAndReadsTheLayoutOfVersionOne) {
    EXPECT_EQ(Written(CLoadCaseFactor(3, 0.5)), kFactor3Half);

    Reader r(kFactor3Half);
    CLoadCaseFactor factor;
    EXPECT_EQ(factor.FromFiller(r.f()), 1);
    EXPECT_EQ(factor.GetLCRedniBroj(), 3);
    EXPECT_EQ(factor.GetFaktor(), 0.5);
    EXPECT_FALSE(r->IsError());
    EXPECT_EQ(r->Remaining(), 0u);
}

TEST(LoadCaseFactorRecord, MassFactorIsWrittenWholeWithoutNestingTheFactorRecord) {
    std::vector<uint8_t> expected = kFactor3Half;
    expected.insert(expected.end(), {0xFE, 0xFF, 0xFF, 0xFF}); // storey dependence -2
    EXPECT_EQ(Written(CLoadCaseFactorZaMase(3, 0.5, -2)), expected);

    Reader r(expected);
    CLoadCaseFactorZaMase factor;
    EXPECT_EQ(factor.FromFiller(r.f()), 1);
    EXPECT_EQ(factor.GetLCRedniBroj(), 3);
    EXPECT_EQ(factor.GetFaktor(), 0.5);
    EXPECT_EQ(factor.DajZavisnostOdSprata(), -2);
    EXPECT_EQ(r->Remaining(), 0u);

    // The constructor from a plain factor takes its ordinal and factor.
    const CLoadCaseFactorZaMase fromPair(CLoadCaseFactor(7, 1.25), 1);
    EXPECT_EQ(fromPair.GetLCRedniBroj(), 7);
    EXPECT_EQ(fromPair.GetFaktor(), 1.25);
    EXPECT_EQ(fromPair.DajZavisnostOdSprata(), 1);
    const CLoadCaseFactorZaMase def;
    EXPECT_EQ(def.GetLCRedniBroj(), 0);
    EXPECT_EQ(def.GetFaktor(), 0.0);
    EXPECT_EQ(def.DajZavisnostOdSprata(), 0);
}

TEST(LoadCaseUnitRecord, WritesAndReadsTheLayoutOfVersionOneWithoutResorting) {
    EXPECT_EQ(Written(EnvelopeUnit()), kUnitEnvelope);

    // Unsorted pairs are taken as they stand in the stream.
    const std::vector<uint8_t> unsorted =
        Bytes().i32(1).i32(0).i32(2).factor(5, 1.0).factor(2, 0.0).get();
    Reader r(unsorted);
    CLoadCaseUnit unit;
    unit.SetKarakter(LCU_ANVELOPA);
    EXPECT_EQ(unit.FromFiller(r.f()), 1);
    EXPECT_EQ(unit.GetKarakter(), LCU_LINEARNA);
    ASSERT_EQ(unit.GetSize(), 2);
    EXPECT_EQ(unit.GetLoadCaseFactor(0).GetLCRedniBroj(), 5);
    EXPECT_EQ(unit.GetLoadCaseFactor(1).GetLCRedniBroj(), 2);
    EXPECT_EQ(unit.GetLoadCaseFactor(1).GetFaktor(), 0.0);

    Reader r2(kUnitEnvelope);
    CLoadCaseUnit back;
    EXPECT_EQ(back.FromFiller(r2.f()), 1);
    EXPECT_TRUE(back == EnvelopeUnit());
    EXPECT_EQ(r2->Remaining(), 0u);
}

TEST(LoadCaseUnitRecord, EmptyUnitAndUnknownCharacterReadBackAsWritten) {
    const std::vector<uint8_t> empty = {0x01, 0, 0, 0, 0x01, 0, 0, 0, 0x00, 0, 0, 0};
    CLoadCaseUnit unit;
    unit.SetKarakter(LCU_ANVELOPA);
    EXPECT_EQ(Written(unit), empty);

    CLoadCaseUnit back = EnvelopeUnit();
    back.SetKarakter(LCU_LINEARNA);
    Reader r(empty);
    EXPECT_EQ(back.FromFiller(r.f()), 1);
    EXPECT_TRUE(back.IsEmpty());
    EXPECT_EQ(back.GetKarakter(), LCU_ANVELOPA);

    Reader r7(Bytes().i32(1).i32(7).i32(0).get());
    EXPECT_EQ(back.FromFiller(r7.f()), 1);
    EXPECT_EQ(static_cast<int>(back.GetKarakter()), 7);
}

TEST(LoadCaseUnitRecord, WrongVersionsAreVersionErrorsOfTheirSource) {
    const auto expectVersionError = [](CFillerUser& record, const std::vector<uint8_t>& bytes,
                                       const wchar_t* message) {
        Reader r(bytes);
        EXPECT_EQ(record.FromFiller(r.f()), 0);
        EXPECT_TRUE(r->IsError());
        EXPECT_EQ(r->GetErrorMessage(), CString(message));
        EXPECT_EQ(r->GetErrorSource(), "LoadCaseDescriptions");
    };
    CLoadCaseFactor factor(9, 9.0);
    expectVersionError(factor, Bytes().i32(2).i32(3).f64(0.5).get(),
                       L"Object version error! Version: 2");
    EXPECT_EQ(factor.GetLCRedniBroj(), 9);
    CLoadCaseFactorZaMase mase;
    expectVersionError(mase, Bytes().i32(0).get(), L"Object version error! Version: 0");
    CLoadCaseUnit unit = EnvelopeUnit();
    expectVersionError(unit, Bytes().i32(-1).i32(0).i32(0).get(),
                       L"Object version error! Version: -1");
    EXPECT_EQ(unit.GetSize(), 2);
}

TEST(LoadCaseUnitRecord, StreamInErrorIsNotReadAtAll) {
    Reader r(kUnitEnvelope);
    r->SetError();
    CLoadCaseUnit unit = EnvelopeUnit();
    CLoadCaseFactor factor(1, 1.0);
    CLoadCaseFactorZaMase mase(1, 1.0, 1);
    EXPECT_EQ(unit.FromFiller(r.f()), 0);
    EXPECT_EQ(factor.FromFiller(r.f()), 0);
    EXPECT_EQ(mase.FromFiller(r.f()), 0);
    EXPECT_EQ(r->Position(), 0u);
    EXPECT_EQ(unit.GetSize(), 2);
    EXPECT_EQ(factor.GetLCRedniBroj(), 1);
}

TEST(LoadCaseUnitRecord, DamagedRecordsEndInTheErrorFlag) {
    // Every truncation of a valid record.
    for (size_t n = 0; n < kUnitEnvelope.size(); ++n) {
        Reader r(loadrec::Prefix(kUnitEnvelope, n));
        CLoadCaseUnit unit;
        unit.FromFiller(r.f());
        EXPECT_TRUE(r->IsError()) << "prefix " << n;
        EXPECT_LE(unit.GetSize(), 2);
    }
    // Counts no stream of this size can hold, and negative ones: nothing is allocated and
    // the unit is empty.
    for (const int32_t count : {0x7FFFFFFF, 3, -1, static_cast<int32_t>(0x80000000)}) {
        Reader r(Bytes().i32(1).i32(0).i32(count).factor(1, 1.0).factor(2, 1.0).get());
        CLoadCaseUnit unit = EnvelopeUnit();
        EXPECT_EQ(unit.FromFiller(r.f()), 1);
        EXPECT_TRUE(r->IsError()) << count;
        EXPECT_TRUE(unit.IsEmpty()) << count;
    }
    // A factor with a wrong version inside the unit stops the rest of the unit.
    Reader r(Bytes().i32(1).i32(0).i32(2).factor(1, 1.0).i32(5).i32(2).f64(1.0).get());
    CLoadCaseUnit unit;
    EXPECT_EQ(unit.FromFiller(r.f()), 1);
    EXPECT_TRUE(r->IsError());
    EXPECT_EQ(r->GetErrorMessage(), CString(L"Object version error! Version: 5"));
    ASSERT_EQ(unit.GetSize(), 2);
    EXPECT_EQ(unit.GetLoadCaseFactor(0).GetLCRedniBroj(), 1);
    EXPECT_EQ(unit.GetLoadCaseFactor(1).GetLCRedniBroj(), 0);
}
