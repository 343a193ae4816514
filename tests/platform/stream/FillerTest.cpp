// Record streams: byte layouts, the error flag, counts read from a stream, the checksum
// stream and file streams.
#include "stream/Filler.h"
#include "platform/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <tuple>
#include <vector>
#include <zlib.h>

namespace {

using Bytes = std::vector<uint8_t>;

/// A small record as the model writes it: version, a count and values.
void WriteRecord(CFiller& f) {
    f.WriteInt32(1);
    f.WriteInt32(3);
    for (double v : {1.35, 1.5, -0.9})
        f.WriteFloat64(v);
    f.WriteUInt8(1);
}

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
    f.WriteFloat64(-2.5);
    const int16_t raw[2] = {0x0102, -1};
    f.Write(raw, sizeof(int16_t), 2);
    EXPECT_TRUE(f.Close());
    const Bytes expected = {0xFE, 0xFF, 0xFF, 0xFF, 0x04, 0x03, 0x02, 0x01, 0xAB, 0xEF, 0xBE, 0x00,
                            0x00, 0x00, 0x00, 0x00, 0x00, 0x04, 0xC0, 0x02, 0x01, 0xFF, 0xFF};
    EXPECT_EQ(f.Buffer(), expected);

    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    int32_t i = 0;
    uint32_t u = 0;
    uint8_t b = 0;
    uint16_t w = 0;
    double d = 0;
    int16_t back[2] = {};
    EXPECT_TRUE(f.ReadInt32(i) && f.ReadUInt32(u) && f.ReadUInt8(b) && f.ReadUInt16(w) &&
                f.ReadFloat64(d) && f.Read(back, sizeof(int16_t), 2));
    EXPECT_EQ(std::make_tuple(i, u, b, w, d, back[0], back[1]),
              std::make_tuple(-2, 0x01020304u, uint8_t{0xAB}, uint16_t{0xBEEF}, -2.5,
                              int16_t{0x0102}, int16_t{-1}));
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
    EXPECT_FALSE(f.Read(&b, 1, 0));

    // Opening again clears the flag and starts from the first byte.
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    uint16_t w = 0;
    EXPECT_TRUE(f.ReadUInt16(w));
    EXPECT_EQ(w, 0x0201);
    // An element count whose byte count overflows is no way around the check.
    EXPECT_FALSE(f.Read(&b, 2, std::numeric_limits<size_t>::max() / 2 + 1));
    EXPECT_TRUE(f.IsError());

    // Writes to a stream not open for writing are ignored, and reads from one open for writing
    // fail.
    f.WriteUInt8(2);
    EXPECT_EQ(f.Buffer(), (Bytes{0x01, 0x02, 0x03}));
    ASSERT_TRUE(f.Open(CFiller::Mode::Write));
    EXPECT_FALSE(f.IsError());
    EXPECT_EQ(f.Size(), 0u);
    EXPECT_FALSE(f.ReadInt32(v));
    EXPECT_TRUE(f.IsError());
}

TEST(FillerCheckCount, RejectsNegativeAndAbsurdCountsBeforeAllocation) {
    CFiller f;
    // An int32 count of 0x7FFFFFFF followed by eight bytes.
    OpenForReading(f, {0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4, 5, 6, 7, 8});
    int32_t n = 0;
    ASSERT_TRUE(f.ReadInt32(n));
    EXPECT_TRUE(f.CheckCount(0, 8));
    EXPECT_TRUE(f.CheckCount(1, 8));
    EXPECT_TRUE(f.CheckCount(8, 0)); // no element takes less than a byte
    EXPECT_FALSE(f.IsError());
    EXPECT_FALSE(f.CheckCount(n, 4));
    EXPECT_TRUE(f.IsError());
    EXPECT_FALSE(f.CheckCount(0, 1)); // once the flag is set, nothing passes

    const std::pair<int64_t, size_t> refused[] = {
        {-1, 1}, {13, 1}, {13, 0}, {std::numeric_limits<int64_t>::max(), 16}};
    for (const auto& [count, size] : refused) {
        ASSERT_TRUE(f.Open(CFiller::Mode::Read));
        EXPECT_FALSE(f.CheckCount(count, size)) << count;
        EXPECT_TRUE(f.IsError());
    }
}

TEST(FillerVersionError, KeepsMessageAndSourceOfTheFirstError) {
    CFiller f;
    CTrFiller::SetObjVerErr(f, "SlucajOpterecenja", 7);
    CTrFiller::SetObjVerErr(f, "Skladiste", CString(L"druga greska"));
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: 7");
    EXPECT_EQ(f.GetErrorSource(), "SlucajOpterecenja");
}

TEST(CrcFiller, MatchesTheStandardCheckValueAndTheChecksumOfTheRecordBytes) {
    CCrcFiller crc;
    crc.Write("1234", 1, 4);
    crc.Write("56789", 1, 5);
    EXPECT_EQ(crc.GetCRC(), 0xCBF43926u);
    EXPECT_EQ(crc.Size(), 0u); // keeps nothing but the checksum
    crc.Reset();
    EXPECT_EQ(crc.GetCRC(), 0u);

    CFiller memory;
    ASSERT_TRUE(memory.Open(CFiller::Mode::Write));
    WriteRecord(memory);
    WriteRecord(crc);
    const Bytes& bytes = memory.Buffer();
    EXPECT_EQ(crc.GetCRC(), crc32(0L, bytes.data(), static_cast<uInt>(bytes.size())));
}

TEST(CrcFiller, PiecesOfEverySizeGiveTheChecksumOfTheWholeAskedForAtAnyPoint) {
    // Pieces small and large, around the block in which the stream gathers them, with the
    // checksum asked for between them: always that of all the bytes so far, in one piece.
    std::mt19937 rng(7);
    for (int round = 0; round < 50; ++round) {
        CCrcFiller crc;
        Bytes all;
        for (int piece = 0; piece < 12; ++piece) {
            const size_t sizes[] = {0, 1, 4, 12, 1023, 1024, 1025, 3000};
            const size_t n = round % 2 == 0 ? sizes[rng() % std::size(sizes)] : rng() % 700;
            Bytes bytes(n);
            for (uint8_t& b : bytes)
                b = static_cast<uint8_t>(rng());
            crc.Write(bytes.data(), 1, n);
            all.insert(all.end(), bytes.begin(), bytes.end());
            if (rng() % 3 == 0) {
                ASSERT_EQ(crc.GetCRC(), crc32(0L, all.data(), static_cast<uInt>(all.size())))
                    << round << " " << piece;
            }
        }
        EXPECT_EQ(crc.GetCRC(), crc32(0L, all.data(), static_cast<uInt>(all.size()))) << round;
        crc.Reset();
        crc.Write("1234", 1, 4);
        EXPECT_EQ(crc.GetCRC(), crc32(0L, reinterpret_cast<const Bytef*>("1234"), 4));
    }
}

TEST(FileFiller, WritesExactlyTheRecordBytesOnCloseAndRefusesMissingFiles) {
    CTempDir dir;
    const auto path = dir.Path() / "model.bin";
    CFiller file(path);
    ASSERT_TRUE(file.Open(CFiller::Mode::Write));
    WriteRecord(file);
    EXPECT_FALSE(std::filesystem::exists(path)); // written on Close
    ASSERT_TRUE(file.Close());
    CFiller memory;
    ASSERT_TRUE(memory.Open(CFiller::Mode::Write));
    WriteRecord(memory);
    const std::string onDisk = ReadText(path);
    EXPECT_EQ(Bytes(onDisk.begin(), onDisk.end()), memory.Buffer());

    CFiller missing(dir.Path() / "missing.bin");
    EXPECT_FALSE(missing.Open(CFiller::Mode::Read));
    EXPECT_TRUE(missing.IsError());
    CFiller unwritable(dir.Path() / "no-such-dir" / "out.bin");
    ASSERT_TRUE(unwritable.Open(CFiller::Mode::Write));
    EXPECT_FALSE(unwritable.Close());
}

TEST(FillerView, ReadsTheCallersBytesInPlaceUntilTheStreamIsGivenOthers) {
    const std::vector<uint8_t> bytes = {1, 0, 0, 0, 2, 0, 0, 0, 7};
    CFiller f;
    f.SetView(bytes.data(), 8); // the last byte lies outside the view
    ASSERT_TRUE(f.Open(CFiller::Mode::Read));
    EXPECT_EQ(f.Size(), 8u);
    int32_t v = 0;
    ASSERT_TRUE(f.ReadInt32(v));
    EXPECT_EQ(v, 1);
    EXPECT_EQ(f.Remaining(), 4u);
    EXPECT_FALSE(f.CheckCount(2, 4)) << "two int32 do not fit into what is left";
    f.Open(CFiller::Mode::Read); // reading again from the first byte clears the flag
    ASSERT_TRUE(f.ReadInt32(v) && f.ReadInt32(v));
    EXPECT_EQ(v, 2);
    uint8_t b = 0;
    EXPECT_FALSE(f.ReadUInt8(b)) << "the byte after the view is not read";
    EXPECT_TRUE(f.IsError());

    // An empty view reads nothing; a buffer given afterwards replaces the view.
    f.SetView(nullptr, 0);
    f.Open(CFiller::Mode::Read);
    EXPECT_EQ(f.Remaining(), 0u);
    EXPECT_FALSE(f.ReadUInt8(b));
    f.SetView(bytes.data(), bytes.size());
    f.SetBuffer({9});
    f.Open(CFiller::Mode::Read);
    ASSERT_TRUE(f.ReadUInt8(b));
    EXPECT_EQ(b, 9);
    // Writing ends the view too, and what is written can be taken out whole.
    f.SetView(bytes.data(), bytes.size());
    f.Open(CFiller::Mode::Write);
    f.WriteInt32(5);
    EXPECT_EQ(f.TakeBuffer(), (std::vector<uint8_t>{5, 0, 0, 0}));
    EXPECT_EQ(f.Size(), 0u);
    EXPECT_EQ(bytes[0], 1) << "the viewed bytes are never written";
}
