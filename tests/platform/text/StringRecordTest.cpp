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
    EXPECT_EQ(Record(L"Aš"), (Bytes{0x02, 0x00, 0x00, 0x00, 0x41, 0x00, 0x61, 0x01}));
    // What is not a Unicode scalar value is written as U+FFFD.
    const CString bad{static_cast<wchar_t>(0xDC00), static_cast<wchar_t>(0x110000)};
    EXPECT_EQ(Record(bad), (Bytes{0x02, 0x00, 0x00, 0x00, 0xFD, 0xFF, 0xFD, 0xFF}));
}

TEST(StringRecord, CyrillicAndAstralTextsRoundTrip) {
    const CString texts[] = {L"", L"Stalno opterećenje", L"Постоянная нагрузка",
                             L"😀 𝔸 U+10FFFF: \U0010FFFF", L"Слој 3 – ђ"};
    CFiller f;
    f.Open(CFiller::Mode::Write);
    for (const CString& t : texts)
        ClTranslator::ToFiller(f, t);
    f.Open(CFiller::Mode::Read);
    for (const CString& t : texts) {
        CString back(L"x");
        ASSERT_EQ(ClTranslator::FromFiller(f, back), 1);
        EXPECT_EQ(back, t);
    }
    EXPECT_EQ(f.Remaining(), 0u);
}

TEST(StringRecord, LoneSurrogatesReadAsReplacementCharacters) {
    CFiller f;
    CString s;
    // D800 'A', then DE00 alone, then D83D at the very end.
    ASSERT_EQ(
        ReadRecord(f, {0x04, 0x00, 0x00, 0x00, 0x00, 0xD8, 0x41, 0x00, 0x00, 0xDE, 0x3D, 0xD8}, s),
        1);
    EXPECT_EQ(s, L"\uFFFDA\uFFFD\uFFFD");
}

TEST(StringRecord, DamagedRecordsFailAndLeaveTheTextUntouched) {
    CFiller f;
    CString s(L"nepromenjeno");
    // Count 3, but only two units follow.
    EXPECT_EQ(ReadRecord(f, {0x03, 0x00, 0x00, 0x00, 0x41, 0x00, 0x42, 0x00}, s), 0);
    EXPECT_TRUE(f.IsError());
    // An absurd count is refused before anything is allocated.
    EXPECT_EQ(ReadRecord(f, {0xFF, 0xFF, 0xFF, 0x7F, 0x41, 0x00}, s), 0);
    EXPECT_TRUE(f.IsError());
    // A negative count.
    EXPECT_EQ(ReadRecord(f, {0xFE, 0xFF, 0xFF, 0xFF, 0x41, 0x00}, s), 0);
    // The count itself cut short.
    EXPECT_EQ(ReadRecord(f, {0x01, 0x00}, s), 0);
    // An odd byte instead of a whole unit.
    EXPECT_EQ(ReadRecord(f, {0x01, 0x00, 0x00, 0x00, 0x41}, s), 0);
    EXPECT_EQ(s, L"nepromenjeno");

    // A stream already in error reads nothing, even a complete record.
    f.SetBuffer(Record(L"A"));
    f.Open(CFiller::Mode::Read);
    f.SetError();
    EXPECT_EQ(ClTranslator::FromFiller(f, s), 0);
    EXPECT_EQ(s, L"nepromenjeno");
}
