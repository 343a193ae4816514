// zlib's CRC-32 continued over a block of bytes. On processors with carry-less multiplication
// a block of 64 bytes or more is folded sixteen bytes at a time in four lanes, then reduced to
// the 32-bit remainder through the reciprocal of the polynomial; the last bytes, short blocks
// and other processors go through zlib. Both give the same checksum: it is the remainder of
// the same polynomial division, worked out in a different order.
#include "Crc32.h"

#include <algorithm>
#include <zlib.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

uint32_t Zlib(uint32_t crc, const uint8_t* data, size_t n) {
    // zlib takes lengths as uInt; larger blocks go in pieces.
    constexpr size_t kChunk = size_t{1} << 30;
    uLong c = crc;
    while (n > 0) {
        const size_t part = std::min(n, kChunk);
        c = crc32(c, data, static_cast<uInt>(part));
        data += part;
        n -= part;
    }
    return static_cast<uint32_t>(c);
}

#if defined(__x86_64__)

// The constants of the folding, from the checksum's polynomial P = x^32 + ... (0x04C11DB7).
// The bytes are taken least significant bit first, so each constant is bit-reflected.

/// x^n mod P, most significant bit first.
constexpr uint32_t XnModP(unsigned n) {
    uint32_t r = 1;
    for (unsigned i = 0; i < n; ++i)
        r = (r << 1) ^ ((r & 0x80000000u) != 0 ? 0x04C11DB7u : 0u);
    return r;
}

constexpr uint64_t Obrnuto(uint64_t v, int bitova) {
    uint64_t r = 0;
    for (int i = 0; i < bitova; ++i)
        if ((v >> i) & 1u)
            r |= uint64_t{1} << (bitova - 1 - i);
    return r;
}

/// The factor that moves a remainder n bits on, as the multiplication wants it.
constexpr int64_t K(unsigned n) {
    return static_cast<int64_t>(Obrnuto(XnModP(n), 32) << 1);
}

/// floor(x^64 / P), reflected: the reciprocal by which the last 64 bits are reduced.
constexpr int64_t Mi() {
    unsigned __int128 deljenik = static_cast<unsigned __int128>(1) << 64;
    const unsigned __int128 p = 0x104C11DB7u;
    uint64_t q = 0;
    for (int d = 64; d >= 32; --d)
        if (((deljenik >> d) & 1u) != 0) {
            deljenik ^= p << (d - 32);
            q |= uint64_t{1} << (d - 32);
        }
    return static_cast<int64_t>(Obrnuto(q, 33));
}

// Worked out by the compiler: moving four lanes on by 512 bits, one lane by 128 bits, 64 bits
// on by 32, and the reciprocal with P reflected (33 bits).
constexpr int64_t kZa4Nize = K(4 * 128 + 32);
constexpr int64_t kZa4Vise = K(4 * 128 - 32);
constexpr int64_t kZa1Nize = K(128 + 32);
constexpr int64_t kZa1Vise = K(128 - 32);
constexpr int64_t kZa64 = K(64);
constexpr int64_t kMi = Mi();
constexpr int64_t kP = static_cast<int64_t>(Obrnuto(0x104C11DB7u, 33));

__attribute__((target("pclmul,sse4.1"))) inline __m128i Ucitaj(const uint8_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

/// The 128 bits of x moved on by the distance of k, added to the next bits.
__attribute__((target("pclmul,sse4.1"))) inline __m128i Presavij(__m128i x, __m128i k,
                                                                 __m128i sledeci) {
    return _mm_xor_si128(
        _mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x00), _mm_clmulepi64_si128(x, k, 0x11)), sledeci);
}

/// The running register (not inverted) over n bytes, n at least 64 and a multiple of 16.
__attribute__((target("pclmul,sse4.1"))) uint32_t Presavijanjem(uint32_t crc, const uint8_t* p,
                                                                size_t n) {
    const __m128i za4 = _mm_set_epi64x(kZa4Vise, kZa4Nize);
    const __m128i za1 = _mm_set_epi64x(kZa1Vise, kZa1Nize);
    const __m128i za64 = _mm_set_epi64x(0, kZa64);
    const __m128i ostatak = _mm_set_epi64x(kMi, kP);
    const __m128i niza32 = _mm_set_epi32(0, 0, 0, -1);

    __m128i x0 = _mm_xor_si128(Ucitaj(p), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i x1 = Ucitaj(p + 16);
    __m128i x2 = Ucitaj(p + 32);
    __m128i x3 = Ucitaj(p + 48);
    p += 64;
    n -= 64;
    for (; n >= 64; p += 64, n -= 64) {
        x0 = Presavij(x0, za4, Ucitaj(p));
        x1 = Presavij(x1, za4, Ucitaj(p + 16));
        x2 = Presavij(x2, za4, Ucitaj(p + 32));
        x3 = Presavij(x3, za4, Ucitaj(p + 48));
    }
    x0 = Presavij(x0, za1, x1);
    x0 = Presavij(x0, za1, x2);
    x0 = Presavij(x0, za1, x3);
    for (; n >= 16; p += 16, n -= 16)
        x0 = Presavij(x0, za1, Ucitaj(p));
    // 128 bits to 64, 64 to 32, then the remainder.
    __m128i x = _mm_xor_si128(_mm_clmulepi64_si128(x0, za1, 0x10), _mm_srli_si128(x0, 8));
    x = _mm_xor_si128(_mm_srli_si128(x, 4),
                      _mm_clmulepi64_si128(_mm_and_si128(x, niza32), za64, 0x00));
    __m128i t = _mm_clmulepi64_si128(_mm_and_si128(x, niza32), ostatak, 0x10);
    t = _mm_clmulepi64_si128(_mm_and_si128(t, niza32), ostatak, 0x00);
    return static_cast<uint32_t>(_mm_extract_epi32(_mm_xor_si128(x, t), 1));
}

bool ImaMnozenjeBezPrenosa() {
    static const bool ima = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return ima;
}

#endif

} // namespace

uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t n) {
#if defined(__x86_64__)
    if (n >= 64 && ImaMnozenjeBezPrenosa()) {
        const size_t m = n & ~size_t{15};
        crc = ~Presavijanjem(~crc, data, m);
        data += m;
        n -= m;
    }
#endif
    return Zlib(crc, data, n);
}
