#pragma once
// zlib's CRC-32 (the checksum of the checksum streams), continued over a block of bytes.
#include <cstddef>
#include <cstdint>

/// The checksum crc (that of the bytes before, 0 at the start) continued over the n bytes.
uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t n);
