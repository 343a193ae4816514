// The checksum continued over a block is zlib's, whatever the block's length, its alignment
// and the checksum it continues: short blocks, blocks folded whole and blocks with a rest.
#include "stream/Crc32.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>
#include <zlib.h>

TEST(Crc32, EveryLengthAndAlignmentGivesZlibsChecksum) {
    std::mt19937 rng(3);
    std::vector<uint8_t> bytes(2200);
    for (uint8_t& b : bytes)
        b = static_cast<uint8_t>(rng());
    for (size_t pomak = 0; pomak < 16; ++pomak) {
        for (size_t n = 0; n + pomak <= bytes.size(); n += n < 300 ? 1 : 37) {
            const uint32_t pocetak = pomak % 4 == 0 ? 0u : static_cast<uint32_t>(rng());
            const uint8_t* p = bytes.data() + pomak;
            ASSERT_EQ(Crc32(pocetak, p, n), crc32(pocetak, p, static_cast<uInt>(n)))
                << pomak << " " << n;
        }
    }
    // All ones and all zeros, where a wrong reduction shows first.
    for (const uint8_t b : {uint8_t{0}, uint8_t{0xFF}}) {
        const std::vector<uint8_t> isti(1000, b);
        EXPECT_EQ(Crc32(0, isti.data(), isti.size()),
                  crc32(0, isti.data(), static_cast<uInt>(isti.size())));
    }
}
