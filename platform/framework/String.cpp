// CString: substrings, searching, printf-style formatting and UTF-8 conversions.
#include "String.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <vector>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalarValue(uint32_t c) {
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

/// The framework's "%s" (and "%c") take wide arguments, while the C library's wide printf
/// expects narrow ones there; every such conversion without a length modifier gets an 'l'.
/// "%%" is copied as it stands, so "%%s" stays a literal "%s".
std::wstring WidenConversions(const wchar_t* fmt) {
    std::wstring out;
    const std::wstring_view in(fmt);
    out.reserve(in.size() + 8);
    size_t i = 0;
    while (i < in.size()) {
        const wchar_t c = in[i];
        out.push_back(c);
        ++i;
        if (c != L'%')
            continue;
        if (i < in.size() && in[i] == L'%') {
            out.push_back(L'%');
            ++i;
            continue;
        }
        // Flags, width and precision (digits, '*', '$' of positional arguments, '.').
        while (i < in.size() && std::wcschr(L"-+ #0'123456789*.$", in[i]) != nullptr)
            out.push_back(in[i++]);
        if (i >= in.size())
            break;
        const bool hasLength = std::wcschr(L"hlLqjzt", in[i]) != nullptr;
        if (!hasLength && (in[i] == L's' || in[i] == L'c'))
            out.push_back(L'l');
        // Length modifiers and the conversion itself are copied unchanged.
        while (i < in.size() && std::wcschr(L"hlLqjzt", in[i]) != nullptr)
            out.push_back(in[i++]);
        if (i < in.size())
            out.push_back(in[i++]);
    }
    return out;
}

void AppendUtf8(std::string& out, uint32_t c) {
    if (!IsScalarValue(c))
        c = kReplacement;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

} // namespace

CString CString::Left(int n) const {
    if (n <= 0)
        return CString();
    return CString(substr(0, static_cast<size_t>(n)));
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int n) const {
    first = std::max(first, 0);
    if (n <= 0 || first >= GetLength())
        return CString();
    return CString(substr(static_cast<size_t>(first), static_cast<size_t>(n)));
}

CString CString::Right(int n) const {
    if (n <= 0)
        return CString();
    if (n >= GetLength())
        return *this;
    return CString(substr(size() - static_cast<size_t>(n)));
}

int CString::Find(wchar_t c, int start) const {
    start = std::max(start, 0);
    if (start >= GetLength())
        return -1;
    const size_t pos = find(c, static_cast<size_t>(start));
    return pos == npos ? -1 : static_cast<int>(pos);
}

int CString::Find(std::wstring_view s, int start) const {
    start = std::max(start, 0);
    if (start > GetLength())
        return -1;
    const size_t pos = find(s, static_cast<size_t>(start));
    return pos == npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(wchar_t c) const {
    const size_t pos = rfind(c);
    return pos == npos ? -1 : static_cast<int>(pos);
}

void CString::Format(const wchar_t* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    *this = FormatV(fmt, args);
    va_end(args);
}

CString CString::Formatted(const wchar_t* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    CString s = FormatV(fmt, args);
    va_end(args);
    return s;
}

CString CString::FormatV(const wchar_t* fmt, va_list args) {
    if (fmt == nullptr)
        return CString();
    const std::wstring wide = WidenConversions(fmt);
    // vswprintf reports a too small buffer only by failing, so the buffer doubles until the
    // text fits; a format the C library rejects fails at every size and gives an empty text.
    constexpr size_t kMaxChars = size_t{1} << 24;
    std::vector<wchar_t> buffer(256);
    while (buffer.size() <= kMaxChars) {
        va_list copy;
        va_copy(copy, args);
        const int n = std::vswprintf(buffer.data(), buffer.size(), wide.c_str(), copy);
        va_end(copy);
        if (n >= 0 && static_cast<size_t>(n) < buffer.size())
            return CString(std::wstring(buffer.data(), static_cast<size_t>(n)));
        buffer.resize(buffer.size() * 2);
    }
    return CString();
}

std::string CString::ToUtf8() const {
    return WideToUtf8(*this);
}

CString CString::FromUtf8(std::string_view s) {
    return CString(Utf8ToWide(s));
}

std::string WideToUtf8(std::wstring_view s) {
    std::string out;
    out.reserve(s.size());
    for (const wchar_t c : s)
        AppendUtf8(out, static_cast<uint32_t>(c));
    return out;
}

std::wstring Utf8ToWide(std::string_view s) {
    // A malformed sequence is replaced by one U+FFFD per maximal ill-formed part: a byte that
    // cannot start a sequence, or a started sequence up to the first byte that does not fit.
    std::wstring out;
    out.reserve(s.size());
    size_t i = 0;
    const size_t n = s.size();
    auto byteAt = [&](size_t k) { return static_cast<uint8_t>(s[k]); };
    while (i < n) {
        const uint8_t b0 = byteAt(i);
        if (b0 < 0x80) {
            out.push_back(static_cast<wchar_t>(b0));
            ++i;
            continue;
        }
        int len = 0;
        uint32_t c = 0;
        uint8_t lo = 0x80;
        uint8_t hi = 0xBF;
        if (b0 >= 0xC2 && b0 <= 0xDF) {
            len = 2;
            c = b0 & 0x1F;
        } else if (b0 >= 0xE0 && b0 <= 0xEF) {
            len = 3;
            c = b0 & 0x0F;
            lo = b0 == 0xE0 ? 0xA0 : 0x80; // no overlong forms
            hi = b0 == 0xED ? 0x9F : 0xBF; // no surrogates
        } else if (b0 >= 0xF0 && b0 <= 0xF4) {
            len = 4;
            c = b0 & 0x07;
            lo = b0 == 0xF0 ? 0x90 : 0x80; // no overlong forms
            hi = b0 == 0xF4 ? 0x8F : 0xBF; // nothing above U+10FFFF
        } else {
            out.push_back(static_cast<wchar_t>(kReplacement));
            ++i;
            continue;
        }
        size_t k = i + 1;
        bool ok = true;
        for (int j = 1; j < len; ++j, ++k) {
            const uint8_t lower = j == 1 ? lo : 0x80;
            const uint8_t upper = j == 1 ? hi : 0xBF;
            if (k >= n || byteAt(k) < lower || byteAt(k) > upper) {
                ok = false;
                break;
            }
            c = (c << 6) | (byteAt(k) & 0x3F);
        }
        out.push_back(static_cast<wchar_t>(ok ? c : kReplacement));
        i = k;
    }
    return out;
}
