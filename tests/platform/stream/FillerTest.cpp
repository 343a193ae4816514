// Memory streams: byte layouts, the error flag and counts read from a stream.
#include "stream/Filler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

/// A memory stream holding the given bytes, open for reading.
void OpenForReading(CFiller& f, Bytes bytes) {
    f.SetBuffer(std::move(bytes));
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
}

} // namespace

TEST(FillerLayout, HelpersWriteLittleEndianAndReadBack) {
    CFiller f;
    ASSERT_TRUE(f.Open(CFiller::Mode::Write));
    f.WriteInt32(-2);
    f.WriteUInt32(0x01020304u);
    f.WriteUInt8(0xAB);
    f.WriteUInt16(0xBEEF);
    f.WriteFloat64(1.0);
    f.WriteFloat64(-2.5);
    const int16_t raw[2] = {0x0102, -1};
    f.Write(raw, sizeof(int16_t), 2);
    EXPECT_EQ(f.Remaining(), 31u);
    EXPECT_TRUE(f.Close());
    const Bytes expected = {0xFE, 0xFF, 0xFF, 0xFF, 0x04, 0x03, 0x02, 0x01, 0xAB, 0xEF, 0xBE,
                            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F, 0x00, 0x00, 0x00,
                            0x00, 0x00, 0x00, 0x04, 0xC0, 0x02, 0x01, 0xFF, 0xFF};
    EXPECT_EQ(f.Buffer(), expected);

    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    int32_t i = 0;
    uint32_t u = 0;
    uint8_t b = 0;
    uint16_t w = 0;
    double d1 = 0, d2 = 0;
    int16_t back[2] = {};
    EXPECT_TRUE(f.ReadInt32(i));
    EXPECT_TRUE(f.ReadUInt32(u));
    EXPECT_TRUE(f.ReadUInt8(b));
    EXPECT_TRUE(f.ReadUInt16(w));
    EXPECT_TRUE(f.ReadFloat64(d1));
    EXPECT_TRUE(f.ReadFloat64(d2));
    EXPECT_EQ(f.Remaining(), 4u);
    EXPECT_TRUE(f.Read(back, sizeof(int16_t), 2));
    EXPECT_EQ(i, -2);
    EXPECT_EQ(u, 0x01020304u);
    EXPECT_EQ(b, 0xAB);
    EXPECT_EQ(w, 0xBEEF);
    EXPECT_EQ(d1, 1.0);
    EXPECT_EQ(d2, -2.5);
    EXPECT_EQ(back[0], 0x0102);
    EXPECT_EQ(back[1], -1);
    EXPECT_EQ(f.Remaining(), 0u);
    EXPECT_FALSE(f.IsError());
}

TEST(FillerErrorFlag, ReadingPastTheEndStoresNothingAndStopsEveryLaterRead) {
    CFiller f;
    OpenForReading(f, {0x01, 0x02, 0x03});
    int32_t v = 77;
    EXPECT_FALSE(f.ReadInt32(v));
    EXPECT_EQ(v, 77);
    EXPECT_TRUE(f.IsError());
    // The remaining bytes would suffice, but the flag is set.
    uint8_t b = 9;
    EXPECT_FALSE(f.ReadUInt8(b));
    EXPECT_EQ(b, 9);
    double d = 1.5;
    EXPECT_FALSE(f.ReadFloat64(d));
    EXPECT_EQ(d, 1.5);
    EXPECT_FALSE(f.Read(&b, 1, 0));

    // Opening again clears the flag and starts from the first byte.
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.IsError());
    uint16_t w = 0;
    EXPECT_TRUE(f.ReadUInt16(w));
    EXPECT_EQ(w, 0x0201);

    // An element count whose byte count overflows is no way around the check.
    uint8_t sink[4] = {};
    EXPECT_FALSE(f.Read(sink, 2, std::numeric_limits<size_t>::max() / 2 + 1));
    EXPECT_TRUE(f.IsError());
}

TEST(FillerErrorFlag, WritesToAStreamNotOpenForWritingAreIgnored) {
    CFiller f;
    f.WriteInt32(5);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.Size(), 0u);

    OpenForReading(f, {0x01});
    f.WriteUInt8(2);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.Buffer(), Bytes{0x01});

    // Opening for writing empties the content and clears the flag.
    ASSERT_TRUE(f.Open(CFiller::Mode::Write));
    EXPECT_FALSE(f.IsError());
    EXPECT_EQ(f.Size(), 0u);
    int32_t v = 0;
    EXPECT_FALSE(f.ReadInt32(v)); // reading from a stream open for writing
    EXPECT_TRUE(f.IsError());
}

TEST(FillerCheckCount, RejectsNegativeAndAbsurdCountsBeforeAllocation) {
    CFiller f;
    // An int32 count of 0x7FFFFFFF followed by eight bytes.
    OpenForReading(f, {0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4, 5, 6, 7, 8});
    int32_t n = 0;
    ASSERT_TRUE(f.ReadInt32(n));
    EXPECT_EQ(n, std::numeric_limits<int32_t>::max());
    EXPECT_TRUE(f.CheckCount(0, 8));
    EXPECT_TRUE(f.CheckCount(1, 8));
    EXPECT_TRUE(f.CheckCount(4, 2));
    EXPECT_TRUE(f.CheckCount(8, 0)); // no element takes less than a byte
    EXPECT_FALSE(f.IsError());
    EXPECT_FALSE(f.CheckCount(n, 4));
    EXPECT_TRUE(f.IsError());
    EXPECT_FALSE(f.CheckCount(0, 1)); // once the flag is set, nothing passes

    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.CheckCount(-1, 1));
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.CheckCount(13, 1));
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.CheckCount(std::numeric_limits<int64_t>::max(), 16)); // product overflows
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.CheckCount(13, 0));
    EXPECT_TRUE(f.IsError());
}

TEST(FillerVersionError, KeepsMessageAndSourceOfTheFirstError) {
    CFiller f;
    OpenForReading(f, {});
    CTrFiller::SetObjVerErr(f, "SlucajOpterecenja", 7);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: 7");
    EXPECT_EQ(f.GetErrorSource(), "SlucajOpterecenja");
    CTrFiller::SetObjVerErr(f, "Skladiste", CString(L"druga greska"));
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: 7");
    EXPECT_EQ(f.GetErrorSource(), "SlucajOpterecenja");
    int32_t v = 3;
    EXPECT_FALSE(f.ReadInt32(v));

    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_FALSE(f.IsError());
    EXPECT_TRUE(f.GetErrorMessage().IsEmpty());
    EXPECT_TRUE(f.GetErrorSource().empty());
    CTrFiller::SetObjVerErr(f, "Skladiste", -1);
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: -1");
}

TEST(FillerMemory, GrowsInWholeBlocks) {
    CFiller f(100);
    ASSERT_TRUE(f.Open(CFiller::Mode::Write));
    f.WriteUInt8(1);
    EXPECT_EQ(f.Buffer().capacity(), 100u);
    const Bytes block(250, 0x5A);
    f.Write(block.data(), 1, block.size());
    EXPECT_EQ(f.Size(), 251u);
    EXPECT_EQ(f.Buffer().capacity() % 100, 0u);
    EXPECT_GE(f.Buffer().capacity(), 251u);
}
