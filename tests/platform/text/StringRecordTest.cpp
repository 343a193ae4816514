// The string record: UTF-16 code units with a count, and damaged records.
#include "stream/Filler.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes Record(const CString& s) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    EXPECT_EQ(ClTranslator::ToFiller(f, s), 1);
    return f.Buffer();
}

/// Reads one record from the given bytes through f, which the caller then inspects.
int ReadRecord(CFiller& f, Bytes bytes, CString& s) {
    f.SetBuffer(std::move(bytes));
    f.Open(CFiller::Mode::Read);
    return ClTranslator::FromFiller(f, s);
}

} // namespace

TEST(StringRecord, LayoutIsCountThenUtf16UnitsWithSurrogatePairs) {
    // "Ж" is one unit, U+1F600 a surrogate pair: three units in all.
    EXPECT_EQ(Record(L"Ж😀"), (Bytes{0x03, 0x00, 0x00, 0x00, 0x16, 0x04, 0x3D, 0xD8, 0x00, 0xDE}));
    EXPECT_EQ(Record(L""), (Bytes{0x00, 0x00, 0x00, 0x00}));
    // What is not a Unicode scalar value is written as U+FFFD.
    const CString bad{L'A', static_cast<wchar_t>(0xDC00), static_cast<wchar_t>(0x110000)};
    EXPECT_EQ(Record(bad), (Bytes{0x03, 0, 0, 0, 0x41, 0x00, 0xFD, 0xFF, 0xFD, 0xFF}));
    // Lone surrogates read back as U+FFFD: D800 'A', then DE00 alone, then D83D at the end.
    CFiller f;
    CString s;
    ASSERT_EQ(ReadRecord(f, {0x04, 0, 0, 0, 0x00, 0xD8, 0x41, 0x00, 0x00, 0xDE, 0x3D, 0xD8}, s), 1);
    EXPECT_EQ(s, L"\uFFFDA\uFFFD\uFFFD");
}

TEST(StringRecord, CyrillicAndAstralTextsOfEveryLengthRoundTrip) {
    // Short and long texts, around 256 units, and texts of surrogate pairs only.
    const CString texts[] = {L"",
                             L"Stalno opterećenje",
                             L"Постоянная нагрузка",
                             L"😀 𝔸 U+10FFFF: \U0010FFFF",
                             CString(255, L'ђ') + L"😀",
                             CString(256, L'Ж'),
                             CString(257, L'Ж'),
                             CString(1000, L'ш') + L"𝔸",
                             CString(300, L'\U0001F600')};
    CFiller f;
    f.Open(CFiller::Mode::Write);
    for (const CString& t : texts)
        ClTranslator::ToFiller(f, t);
    f.Open(CFiller::Mode::Read);
    for (const CString& t : texts) {
        CString back(L"x");
        ASSERT_EQ(ClTranslator::FromFiller(f, back), 1);
        EXPECT_EQ(back, t) << t.GetLength();
    }
    EXPECT_EQ(f.Remaining(), 0u);
    EXPECT_EQ(Record(CString(300, L'\U0001F600')).size(), 4u + 300u * 4u);
}

TEST(StringRecord, DamagedRecordsFailAndLeaveTheTextUntouched) {
    const Bytes damaged[] = {
        {0x03, 0x00, 0x00, 0x00, 0x41, 0x00, 0x42, 0x00}, // count 3, two units follow
        {0xFF, 0xFF, 0xFF, 0x7F, 0x41, 0x00},             // an absurd count
        {0xFE, 0xFF, 0xFF, 0xFF, 0x41, 0x00},             // a negative count
        {0x01, 0x00},                                     // the count cut short
        {0x01, 0x00, 0x00, 0x00, 0x41},                   // an odd byte instead of a unit
    };
    CFiller f;
    CString s(L"nepromenjeno");
    for (const Bytes& bytes : damaged) {
        EXPECT_EQ(ReadRecord(f, bytes, s), 0);
        EXPECT_TRUE(f.IsError());
    }
    // A long record cut short, and a stream already in error even with a complete record.
    Bytes longRecord = Record(CString(400, L'ж'));
    longRecord.pop_back();
    EXPECT_EQ(ReadRecord(f, longRecord, s), 0);
    f.SetBuffer(Record(L"A"));
    f.Open(CFiller::Mode::Read);
    f.SetError();
    EXPECT_EQ(ClTranslator::FromFiller(f, s), 0);
    EXPECT_EQ(s, L"nepromenjeno");
}
