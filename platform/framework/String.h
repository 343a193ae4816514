#pragma once
// CString: the framework's wide-character string.
//
// It is a std::wstring with the few conveniences the loads module uses. Format follows the
// framework convention that "%s" in a wide format takes a wide string (CString or
// const wchar_t*); it is rewritten to the C library's "%ls" before formatting, flags, width
// and precision kept ("%-10s" becomes "%-10ls"; "%%s" and "%ls" stay). Likewise "%c" takes a
// wide character and becomes "%lc", so that letters such as 'č' format as themselves.
#include <cstdarg>
#include <string>
#include <string_view>

class CString : public std::wstring {
public:
    using std::wstring::wstring;
    CString() = default;
    CString(const std::wstring& s) : std::wstring(s) {}
    CString(std::wstring&& s) : std::wstring(std::move(s)) {}
    CString(std::wstring_view s) : std::wstring(s) {}

    int GetLength() const { return static_cast<int>(size()); }
    bool IsEmpty() const { return empty(); }
    void Empty() { clear(); }
    operator const wchar_t*() const { return c_str(); }

    /// Left(n), Mid(first), Mid(first, n), Right(n): substrings clamped to the string.
    CString Left(int n) const;
    CString Mid(int first) const;
    CString Mid(int first, int n) const;
    CString Right(int n) const;
    /// Position of the first occurrence at or after start, or -1.
    int Find(wchar_t c, int start = 0) const;
    int Find(std::wstring_view s, int start = 0) const;
    /// Position of the last occurrence, or -1.
    int ReverseFind(wchar_t c) const;

    /// Replaces the content by the formatted text (printf rules, "%s" takes a wide string).
    void Format(const wchar_t* fmt, ...);
    static CString FormatV(const wchar_t* fmt, va_list args);
    static CString Formatted(const wchar_t* fmt, ...);

    /// UTF-8 conversions, for files, terminals and the C library.
    std::string ToUtf8() const;
    static CString FromUtf8(std::string_view s);
};

/// UTF-8 from any wide text; values outside Unicode become U+FFFD.
std::string WideToUtf8(std::wstring_view s);
/// Wide text from UTF-8; malformed sequences become U+FFFD.
std::wstring Utf8ToWide(std::string_view s);
