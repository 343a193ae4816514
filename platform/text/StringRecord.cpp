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

std::vector<uint16_t> ToUtf16(const CString& s) {
    std::vector<uint16_t> units;
    units.reserve(s.size());
    for (const wchar_t wc : s) {
        const auto c = static_cast<uint32_t>(wc);
        if (c >= 0x10000 && c <= 0x10FFFF) {
            units.push_back(static_cast<uint16_t>(0xD800 + ((c - 0x10000) >> 10)));
            units.push_back(static_cast<uint16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        } else if (c > 0x10FFFF || IsHighSurrogate(c) || IsLowSurrogate(c)) {
            units.push_back(kReplacement);
        } else {
            units.push_back(static_cast<uint16_t>(c));
        }
    }
    return units;
}

CString FromUtf16(const std::vector<uint16_t>& units) {
    CString s;
    s.reserve(units.size());
    for (size_t i = 0; i < units.size(); ++i) {
        const uint32_t u = units[i];
        if (IsHighSurrogate(u) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
            const uint32_t lo = units[++i];
            s.push_back(static_cast<wchar_t>(0x10000 + ((u - 0xD800) << 10) + (lo - 0xDC00)));
        } else if (IsHighSurrogate(u) || IsLowSurrogate(u)) {
            s.push_back(static_cast<wchar_t>(kReplacement));
        } else {
            s.push_back(static_cast<wchar_t>(u));
        }
    }
    return s;
}

} // namespace

int ClTranslator::ToFiller(CFiller& f, const CString& s) {
    const std::vector<uint16_t> units = ToUtf16(s);
    if (units.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        f.SetError();
        return 0;
    }
    f.WriteInt32(static_cast<int32_t>(units.size()));
    for (const uint16_t u : units)
        f.WriteUInt16(u);
    return f.IsError() ? 0 : 1;
}

int ClTranslator::FromFiller(CFiller& f, CString& s) {
    int32_t n = 0;
    if (f.IsError() || !f.ReadInt32(n) || !f.CheckCount(n, sizeof(uint16_t)))
        return 0;
    std::vector<uint16_t> units(static_cast<size_t>(n));
    for (uint16_t& u : units) {
        if (!f.ReadUInt16(u))
            return 0;
    }
    s = FromUtf16(units);
    return 1;
}
