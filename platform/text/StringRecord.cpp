// The string record: an int32 count of UTF-16 code units and the units, little-endian.
#include "Translator.h"
#include "stream/Filler.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

namespace {

constexpr uint16_t kReplacement = 0xFFFD;

bool IsHighSurrogate(uint32_t u) {
    return u >= 0xD800 && u <= 0xDBFF;
}
bool IsLowSurrogate(uint32_t u) {
    return u >= 0xDC00 && u <= 0xDFFF;
}

// Almost every text is of characters below the surrogates, each one UTF-16 unit: such texts
// are checked and narrowed sixteen characters at a time, which the compiler turns into
// vector instructions, and go to the stream in blocks from the stack.
constexpr size_t kGrupa = 16;

bool JedanZnakJednaJedinica(const wchar_t* p, size_t n) {
    uint32_t izvan = 0;
    size_t i = 0;
    for (; i + kGrupa <= n; i += kGrupa)
        for (size_t j = 0; j < kGrupa; ++j)
            izvan |= static_cast<uint32_t>(p[i + j]) >= 0xD800 ? 1u : 0u;
    for (; i < n; ++i)
        izvan |= static_cast<uint32_t>(p[i]) >= 0xD800 ? 1u : 0u;
    return izvan == 0;
}

/// Writes characters below U+D800 as their UTF-16LE units.
void PisiJedinice(CFiller& f, const wchar_t* p, size_t n) {
    uint16_t units[256];
    while (n > 0) {
        const size_t m = std::min(n, std::size(units));
        size_t j = 0;
        for (; j + kGrupa <= m; j += kGrupa)
            for (size_t k = 0; k < kGrupa; ++k)
                units[j + k] = static_cast<uint16_t>(p[j + k]);
        for (; j < m; ++j)
            units[j] = static_cast<uint16_t>(p[j]);
        if constexpr (std::endian::native == std::endian::little) {
            f.Write(units, sizeof(uint16_t), m);
        } else {
            uint8_t bytes[2 * std::size(units)];
            for (size_t k = 0; k < m; ++k) {
                bytes[2 * k] = static_cast<uint8_t>(units[k] & 0xFF);
                bytes[2 * k + 1] = static_cast<uint8_t>(units[k] >> 8);
            }
            f.Write(bytes, 1, 2 * m);
        }
        p += m;
        n -= m;
    }
}

CString FromUtf16Bytes(const uint8_t* bytes, size_t units) {
    auto unitAt = [bytes](size_t i) {
        return static_cast<uint32_t>(bytes[2 * i]) | (static_cast<uint32_t>(bytes[2 * i + 1]) << 8);
    };
    CString s(units, L'\0');
    // Names without surrogates (nearly all) are widened four units at a time, looking for a
    // surrogate on the way; the rare name with one is read again below.
    wchar_t* wide = s.data();
    uint64_t surrogates = 0;
    size_t i = 0;
    if constexpr (std::endian::native == std::endian::little) {
        constexpr uint64_t kLanes = 0x0001000100010001ULL;
        for (; i + 4 <= units; i += 4) {
            uint64_t w = 0;
            std::memcpy(&w, bytes + 2 * i, sizeof w);
            wide[i] = static_cast<wchar_t>(w & 0xFFFF);
            wide[i + 1] = static_cast<wchar_t>((w >> 16) & 0xFFFF);
            wide[i + 2] = static_cast<wchar_t>((w >> 32) & 0xFFFF);
            wide[i + 3] = static_cast<wchar_t>(w >> 48);
            // A lane is zero where its unit is a surrogate (0xD800-0xDFFF).
            const uint64_t m = (w & (0xF800 * kLanes)) ^ (0xD800 * kLanes);
            surrogates |= (m - kLanes) & ~m & (0x8000 * kLanes);
        }
    }
    for (; i < units; ++i) {
        const uint32_t u = unitAt(i);
        wide[i] = static_cast<wchar_t>(u);
        surrogates |= static_cast<uint64_t>((u & 0xF800) == 0xD800);
    }
    if (surrogates == 0)
        return s;
    size_t out = 0;
    for (size_t i = 0; i < units; ++i) {
        const uint32_t u = unitAt(i);
        if (IsHighSurrogate(u) && i + 1 < units && IsLowSurrogate(unitAt(i + 1))) {
            const uint32_t lo = unitAt(++i);
            s[out++] = static_cast<wchar_t>(0x10000 + ((u - 0xD800) << 10) + (lo - 0xDC00));
        } else if (IsHighSurrogate(u) || IsLowSurrogate(u)) {
            s[out++] = static_cast<wchar_t>(kReplacement);
        } else {
            s[out++] = static_cast<wchar_t>(u);
        }
    }
    s.resize(out);
    return s;
}

} // namespace

int ClTranslator::ToFiller(CFiller& f, const CString& s) {
    if (JedanZnakJednaJedinica(s.data(), s.size())) {
        if (s.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
            f.SetError();
            return 0;
        }
        f.WriteInt32(static_cast<int32_t>(s.size()));
        PisiJedinice(f, s.data(), s.size());
        return f.IsError() ? 0 : 1;
    }
    // The count of units first (a character beyond the Basic Multilingual Plane takes two),
    // then the units encoded on the stack and handed to the stream a block at a time.
    size_t units = s.size();
    for (const wchar_t wc : s) {
        const auto c = static_cast<uint32_t>(wc);
        units += c >= 0x10000 && c <= 0x10FFFF ? 1 : 0;
    }
    if (units > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        f.SetError();
        return 0;
    }
    f.WriteInt32(static_cast<int32_t>(units));
    uint8_t bytes[512];
    size_t n = 0;
    auto put = [&bytes, &n](uint32_t unit) {
        bytes[n++] = static_cast<uint8_t>(unit & 0xFF);
        bytes[n++] = static_cast<uint8_t>(unit >> 8);
    };
    for (const wchar_t wc : s) {
        if (n + 4 > sizeof bytes) {
            f.Write(bytes, 1, n);
            n = 0;
        }
        const auto c = static_cast<uint32_t>(wc);
        if (c >= 0x10000 && c <= 0x10FFFF) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else if (c > 0x10FFFF || IsHighSurrogate(c) || IsLowSurrogate(c)) {
            // What is not a Unicode scalar value is written as U+FFFD.
            put(kReplacement);
        } else {
            put(c);
        }
    }
    if (n != 0)
        f.Write(bytes, 1, n);
    return f.IsError() ? 0 : 1;
}

int ClTranslator::FromFiller(CFiller& f, CString& s) {
    int32_t n = 0;
    if (f.IsError() || !f.ReadInt32(n) || !f.CheckCount(n, sizeof(uint16_t)))
        return 0;
    const size_t size = static_cast<size_t>(n) * 2;
    if (size <= 512) {
        uint8_t small[512];
        if (!f.Read(small, 1, size))
            return 0;
        s = FromUtf16Bytes(small, static_cast<size_t>(n));
        return 1;
    }
    std::vector<uint8_t> bytes(size);
    if (!f.Read(bytes.data(), 1, size))
        return 0;
    s = FromUtf16Bytes(bytes.data(), static_cast<size_t>(n));
    return 1;
}
