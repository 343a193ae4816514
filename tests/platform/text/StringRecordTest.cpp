// The string record: UTF-16 code units with a count, and damaged records.
#include "stream/Filler.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <random>
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
    // Lone surrogates read back as U+FFFD: D800 'A', then DE00 alone, then D83D at the end.
    CFiller f;
    CString s;
    ASSERT_EQ(ReadRecord(f, {0x04, 0, 0, 0, 0x00, 0xD8, 0x41, 0x00, 0x00, 0xDE, 0x3D, 0xD8}, s), 1);
    EXPECT_EQ(s, L"\uFFFDA\uFFFD\uFFFD");
    // A pair or a lone surrogate at any place of a longer name, whichever group of units is
    // read together with it.
    for (size_t at = 0; at < 10; ++at) {
        Bytes bytes{11, 0, 0, 0};
        for (size_t i = 0; i < 11; ++i) {
            const uint16_t unit = i == at ? 0xD83D : i == at + 1 ? 0xDE00 : 0x0416;
            bytes.push_back(static_cast<uint8_t>(unit & 0xFF));
            bytes.push_back(static_cast<uint8_t>(unit >> 8));
        }
        ASSERT_EQ(ReadRecord(f, bytes, s), 1);
        EXPECT_EQ(s, CString(at, L'Ж') + L"😀" + CString(9 - at, L'Ж')) << at;
        // The low half gone: the high one stands alone.
        bytes[4 + 2 * (at + 1)] = 0x16;
        bytes[4 + 2 * (at + 1) + 1] = 0x04;
        ASSERT_EQ(ReadRecord(f, bytes, s), 1);
        EXPECT_EQ(s, CString(at, L'Ж') + L"\uFFFD" + CString(10 - at, L'Ж')) << at;
    }
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

TEST(StringRecord, TextsOfEveryKindOfCharacterAreWrittenAsTheirUnitsOneByOne) {
    // The units written character by character, the plain way, against the record: texts of
    // every length up to past two blocks, of ASCII, Cyrillic, characters just below and at the
    // surrogates, astral characters and values that are not Unicode, in runs and mixed.
    const auto literal = [](const CString& s) {
        Bytes units;
        const auto put = [&units](uint32_t u) {
            units.push_back(static_cast<uint8_t>(u & 0xFF));
            units.push_back(static_cast<uint8_t>(u >> 8));
        };
        for (const wchar_t wc : s) {
            const auto c = static_cast<uint32_t>(wc);
            if (c >= 0xD800 && c <= 0xDFFF) {
                put(0xFFFD);
            } else if (c > 0x10FFFF) {
                put(0xFFFD);
            } else if (c >= 0x10000) {
                put(0xD800 + ((c - 0x10000) >> 10));
                put(0xDC00 + ((c - 0x10000) & 0x3FF));
            } else {
                put(c);
            }
        }
        const auto n = static_cast<uint32_t>(units.size() / 2);
        Bytes record{static_cast<uint8_t>(n), static_cast<uint8_t>(n >> 8),
                     static_cast<uint8_t>(n >> 16), static_cast<uint8_t>(n >> 24)};
        record.insert(record.end(), units.begin(), units.end());
        return record;
    };
    const uint32_t kinds[] = {L'a',   0x7F,   0x416,   0xD7FF,   0xD800,   0xDFFF,
                              0xE000, 0xFFFF, 0x1F600, 0x10FFFF, 0x110000, 0xFFFFFFFF};
    std::mt19937 rng(11);
    for (int round = 0; round < 400; ++round) {
        const size_t n = round < 40 ? static_cast<size_t>(round) : rng() % 600;
        const size_t mixed = rng() % 4; // 0: ASCII only, 1: one other kind, else any kinds
        CString s(n, L'a');
        for (size_t i = 0; i < n; ++i)
            if (mixed != 0 && (mixed == 1 ? i == n / 2 : rng() % 3 == 0))
                s[i] = static_cast<wchar_t>(kinds[rng() % std::size(kinds)]);
        ASSERT_EQ(Record(s), literal(s)) << round;
    }
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
