// CString: formatting with wide "%s", substrings and UTF-8 conversions.
#include "framework/String.h"

#include <gtest/gtest.h>

TEST(CStringFormat, PercentSTakesWideStringsAndNumbersFollowPrintf) {
    const CString name(L"Stalno");
    EXPECT_EQ(CString::Formatted(L"[%s]", static_cast<const wchar_t*>(name)), L"[Stalno]");
    EXPECT_EQ(CString::Formatted(L"[%-4s|%4s]", L"ab", L"cd"), L"[ab  |  cd]");
    EXPECT_EQ(CString::Formatted(L"[%.3s|%*s]", L"Opterećenje", 4, L"x"), L"[Opt|   x]");
    EXPECT_EQ(CString::Formatted(L"%ls|%%s|%d%%", L"ls", 50), L"ls|%s|50%");
    EXPECT_EQ(CString::Formatted(L"%2$s %1$s", L"b", L"a"), L"a b");
    EXPECT_EQ(CString::Formatted(L"K%d = %.2f|%05d", 12, 1.355, 42), L"K12 = 1.35|00042");
    EXPECT_EQ(CString::Formatted(L"%c: %s", L'Ж', L"Ђурђевак 😀"), L"Ж: Ђурђевак 😀");
    // A long text grows the buffer; formatting replaces the old content.
    CString s(L"old content");
    s.Format(L"<%s>%d", CString(5000, L'ž').c_str(), 7);
    ASSERT_EQ(s.GetLength(), 5003);
    EXPECT_EQ(s.Right(3), L"ž>7");
    s.Format(L"%s", L"");
    EXPECT_TRUE(s.IsEmpty());
}

TEST(CStringSubstrings, AreClampedToTheStringAndSearchesFindFromBothEnds) {
    const CString s(L"1-3,5-7");
    EXPECT_EQ(s.Left(100) + s.Left(-1) + s.Mid(-3), s + s);
    EXPECT_EQ(s.Mid(4, 50) + s.Mid(20, 2) + s.Right(50), L"5-7" + s);
    EXPECT_EQ(s.Find(L'-', 2), 5);
    EXPECT_EQ(s.Find(L'-', -4), 1);
    EXPECT_EQ(s.Find(L'-', 100), -1);
    EXPECT_EQ(s.ReverseFind(L'-'), 5);
}

TEST(Utf8Conversion, RoundTripsEveryPlaneAndReplacesInvalidValues) {
    const std::wstring text = L"Opterećenje Нагрузка 😀 \U0010FFFF";
    EXPECT_EQ(WideToUtf8(text), "Opterećenje Нагрузка 😀 \xF4\x8F\xBF\xBF");
    EXPECT_EQ(CString::FromUtf8(CString(text).ToUtf8()), text);
    const std::wstring bad{static_cast<wchar_t>(0xD800), L'a', static_cast<wchar_t>(0x110000)};
    EXPECT_EQ(WideToUtf8(bad), "\xEF\xBF\xBD"
                               "a"
                               "\xEF\xBF\xBD");
    // A byte that starts nothing, overlong forms, encoded surrogates, values above U+10FFFF
    // and sequences cut short.
    const std::pair<const char*, const wchar_t*> invalid[] = {
        {"a\x80z", L"a\uFFFDz"},
        {"\xC0\xAF", L"\uFFFD\uFFFD"},
        {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"x\xF0\x9F\x98", L"x\uFFFD"},
        {"\xE2\x82y", L"\uFFFDy"}};
    for (const auto& [bytes, wide] : invalid)
        EXPECT_EQ(Utf8ToWide(bytes), wide) << bytes;
}
