// The checksum stream and file streams.
#include "platform/TempDir.h"
#include "stream/Filler.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <zlib.h>

namespace {

/// A small record as the model writes it: version, a count and values.
void WriteRecord(CFiller& f) {
    f.WriteInt32(1);
    f.WriteInt32(3);
    for (double v : {1.35, 1.5, -0.9})
        f.WriteFloat64(v);
    f.WriteUInt8(1);
}

} // namespace

TEST(CrcFiller, MatchesTheStandardCheckValueWhateverTheSplit) {
    CCrcFiller crc;
    crc.Write("123456789", 1, 9);
    EXPECT_EQ(crc.GetCRC(), 0xCBF43926u);
    EXPECT_FALSE(crc.IsError());
    EXPECT_EQ(crc.Size(), 0u); // keeps nothing but the checksum

    crc.Reset();
    EXPECT_EQ(crc.GetCRC(), 0u);
    crc.Write("1234", 1, 4);
    crc.Write("56789", 1, 5);
    EXPECT_EQ(crc.GetCRC(), 0xCBF43926u);
}

TEST(CrcFiller, ChecksumOfARecordIsThatOfItsBytes) {
    CFiller memory;
    ASSERT_TRUE(memory.Open(CFiller::Mode::Write));
    WriteRecord(memory);
    CCrcFiller crc;
    WriteRecord(crc);
    const std::vector<uint8_t>& bytes = memory.Buffer();
    EXPECT_EQ(crc.GetCRC(), crc32(0L, bytes.data(), static_cast<uInt>(bytes.size())));

    // A different value gives a different checksum.
    CCrcFiller other;
    other.WriteInt32(1);
    other.WriteInt32(3);
    for (double v : {1.35, 1.5, -0.8})
        other.WriteFloat64(v);
    other.WriteUInt8(1);
    EXPECT_NE(other.GetCRC(), crc.GetCRC());
}

TEST(FileFiller, RoundTripWritesExactlyTheRecordBytes) {
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
    std::ifstream in(path, std::ios::binary);
    const std::vector<uint8_t> onDisk{std::istreambuf_iterator<char>(in),
                                      std::istreambuf_iterator<char>()};
    EXPECT_EQ(onDisk, memory.Buffer());

    CFiller reader(path);
    ASSERT_TRUE(reader.Open(CFiller::Mode::Read));
    int32_t version = 0, count = 0;
    double values[3] = {};
    uint8_t flag = 0;
    ASSERT_TRUE(reader.ReadInt32(version));
    ASSERT_TRUE(reader.ReadInt32(count));
    ASSERT_TRUE(reader.CheckCount(count, sizeof(double)));
    for (double& v : values)
        ASSERT_TRUE(reader.ReadFloat64(v));
    ASSERT_TRUE(reader.ReadUInt8(flag));
    EXPECT_EQ(version, 1);
    EXPECT_EQ(values[2], -0.9);
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(reader.Remaining(), 0u);
    EXPECT_TRUE(reader.Close());

    // Writing again replaces the file.
    ASSERT_TRUE(file.Open(CFiller::Mode::Write));
    file.WriteUInt8(7);
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(std::filesystem::file_size(path), 1u);
}

TEST(FileFiller, MissingOrUnwritableFileSetsTheErrorFlag) {
    CTempDir dir;
    CFiller missing(dir.Path() / "missing.bin");
    EXPECT_FALSE(missing.Open(CFiller::Mode::Read));
    EXPECT_TRUE(missing.IsError());
    int32_t v = 4;
    EXPECT_FALSE(missing.ReadInt32(v));
    EXPECT_EQ(v, 4);

    CFiller unwritable(dir.Path() / "no-such-dir" / "out.bin");
    ASSERT_TRUE(unwritable.Open(CFiller::Mode::Write));
    unwritable.WriteInt32(1);
    EXPECT_FALSE(unwritable.Close());
    EXPECT_TRUE(unwritable.IsError());
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "no-such-dir"));
}
