// The string record: an int32 count of UTF-16 code units and the units, little-endian.
#include "Translator.h"
#include "stream/Filler.h"

#include <cstdint>
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

// The UTF-16LE bytes of a text, written and read in one block. Names are short and almost
// always within the Basic Multilingual Plane, so the buffer is sized for one unit a character
// and grows only for surrogate pairs.
std::vector<uint8_t> ToUtf16Bytes(const CString& s) {
    std::vector<uint8_t> bytes(s.size() * 2);
    size_t pos = 0;
    auto put = [&bytes, &pos](uint32_t unit) {
        if (pos + 2 > bytes.size())
            bytes.resize(bytes.size() + 2);
        bytes[pos++] = static_cast<uint8_t>(unit & 0xFF);
        bytes[pos++] = static_cast<uint8_t>(unit >> 8);
    };
    for (const wchar_t wc : s) {
        const auto c = static_cast<uint32_t>(wc);
        if (c >= 0x10000 && c <= 0x10FFFF) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else if (c > 0x10FFFF || IsHighSurrogate(c) || IsLowSurrogate(c)) {
            put(kReplacement);
        } else {
            put(c);
        }
    }
    return bytes;
}

CString FromUtf16Bytes(const uint8_t* bytes, size_t units) {
    auto unitAt = [bytes](size_t i) {
        return static_cast<uint32_t>(bytes[2 * i]) | (static_cast<uint32_t>(bytes[2 * i + 1]) << 8);
    };
    CString s(units, L'\0');
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
    // Names are short: they are encoded on the stack and go to the stream in one write.
    constexpr size_t kNaSteku = 256;
    if (s.size() <= kNaSteku / 2) {
        bool bmp = true;
        for (const wchar_t wc : s)
            bmp = bmp && static_cast<uint32_t>(wc) < 0xD800;
        if (bmp) {
            uint8_t bytes[kNaSteku];
            size_t n = 0;
            for (const wchar_t wc : s) {
                bytes[n++] = static_cast<uint8_t>(static_cast<uint32_t>(wc) & 0xFF);
                bytes[n++] = static_cast<uint8_t>(static_cast<uint32_t>(wc) >> 8);
            }
            f.WriteInt32(static_cast<int32_t>(s.size()));
            if (n != 0)
                f.Write(bytes, 1, n);
            return f.IsError() ? 0 : 1;
        }
    }
    const std::vector<uint8_t> bytes = ToUtf16Bytes(s);
    const size_t units = bytes.size() / 2;
    if (units > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        f.SetError();
        return 0;
    }
    f.WriteInt32(static_cast<int32_t>(units));
    if (!bytes.empty())
        f.Write(bytes.data(), 1, bytes.size());
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
