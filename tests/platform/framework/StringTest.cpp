// CString: formatting with wide "%s", substrings and UTF-8 conversions.
#include "framework/String.h"

#include <gtest/gtest.h>

TEST(CStringFormat, PercentSTakesWideStringsWithFlagsWidthAndPrecision) {
    const CString name(L"Stalno");
    const wchar_t* raw = L"Kombinacija";
    CString s;
    s.Format(L"%s: %s", name.c_str(), raw);
    EXPECT_EQ(s, L"Stalno: Kombinacija");
    // CString converts to const wchar_t* by itself.
    EXPECT_EQ(CString::Formatted(L"[%s]", static_cast<const wchar_t*>(name)), L"[Stalno]");
    EXPECT_EQ(CString::Formatted(L"[%-8s|%8s]", L"ab", L"cd"), L"[ab      |      cd]");
    EXPECT_EQ(CString::Formatted(L"[%.3s]", L"Opterećenje"), L"[Opt]");
    EXPECT_EQ(CString::Formatted(L"[%*s]", 4, L"x"), L"[   x]");
    EXPECT_EQ(CString::Formatted(L"%ls and %s", L"ls", L"s"), L"ls and s");
    EXPECT_EQ(CString::Formatted(L"%%s stays, %d%%", 50), L"%s stays, 50%");
    EXPECT_EQ(CString::Formatted(L"%2$s %1$s", L"b", L"a"), L"a b");
}

TEST(CStringFormat, NumbersAndWideCharacters) {
    EXPECT_EQ(CString::Formatted(L"K%d = %.2f", 12, 1.355), L"K12 = 1.35");
    EXPECT_EQ(CString::Formatted(L"%05d|%-4d|%x|%lld", 42, -7, 255, 1LL << 40),
              L"00042|-7  |ff|1099511627776");
    EXPECT_EQ(CString::Formatted(L"%.2f %.0f %e", -0.5, 2.5, 1000.0), L"-0.50 2 1.000000e+03");
    EXPECT_EQ(CString::Formatted(L"%c%c%c", L'č', L'Ж', L'a'), L"čЖa");
    EXPECT_EQ(CString::Formatted(L"Šifra: %s", L"Ђурђевак 😀"), L"Šifra: Ђурђевак 😀");
    EXPECT_EQ(CString::Formatted(L"Object version error! Version: %d", 3),
              L"Object version error! Version: 3");
}

TEST(CStringFormat, LongTextsGrowTheBuffer) {
    const CString longText(5000, L'ž');
    const CString s = CString::Formatted(L"<%s>%d", longText.c_str(), 7);
    ASSERT_EQ(s.GetLength(), 5003);
    EXPECT_EQ(s.Left(2), L"<ž");
    EXPECT_EQ(s.Right(3), L"ž>7");

    CString replaced(L"old content");
    replaced.Format(L"%s", L"");
    EXPECT_TRUE(replaced.IsEmpty());
}

TEST(CStringSubstrings, AreClampedToTheString) {
    const CString s(L"Slucaj 12");
    EXPECT_EQ(s.Left(6), L"Slucaj");
    EXPECT_EQ(s.Left(100), s);
    EXPECT_EQ(s.Left(-1), L"");
    EXPECT_EQ(s.Mid(7), L"12");
    EXPECT_EQ(s.Mid(-3), s);
    EXPECT_EQ(s.Mid(7, 1), L"1");
    EXPECT_EQ(s.Mid(7, 50), L"12");
    EXPECT_EQ(s.Mid(20, 2), L"");
    EXPECT_EQ(s.Mid(2, 0), L"");
    EXPECT_EQ(s.Right(2), L"12");
    EXPECT_EQ(s.Right(50), s);
    EXPECT_EQ(s.Right(0), L"");
}

TEST(CStringSearch, FindsFromStartAndFromTheEnd) {
    const CString s(L"1-3,5-7");
    EXPECT_EQ(s.Find(L'-'), 1);
    EXPECT_EQ(s.Find(L'-', 2), 5);
    EXPECT_EQ(s.Find(L'-', 6), -1);
    EXPECT_EQ(s.Find(L'-', -4), 1);
    EXPECT_EQ(s.Find(L'-', 100), -1);
    EXPECT_EQ(s.Find(L"5-7"), 4);
    EXPECT_EQ(s.Find(L"5-7", 5), -1);
    EXPECT_EQ(s.Find(L"", 7), 7);
    EXPECT_EQ(s.ReverseFind(L'-'), 5);
    EXPECT_EQ(s.ReverseFind(L'x'), -1);
}

TEST(Utf8Conversion, RoundTripsEveryPlane) {
    const std::wstring text = L"Opterećenje Нагрузка 😀 Ω";
    const std::string utf8 = WideToUtf8(text);
    EXPECT_EQ(utf8, "Opterećenje Нагрузка 😀 Ω");
    EXPECT_EQ(Utf8ToWide(utf8), text);
    EXPECT_EQ(CString(text).ToUtf8(), utf8);
    EXPECT_EQ(CString::FromUtf8(utf8), text);
    EXPECT_EQ(WideToUtf8(std::wstring(1, static_cast<wchar_t>(0x10FFFF))), "\xF4\x8F\xBF\xBF");
}

TEST(Utf8Conversion, InvalidValuesBecomeReplacementCharacters) {
    const std::wstring bad{static_cast<wchar_t>(0xD800), L'a', static_cast<wchar_t>(0x110000)};
    EXPECT_EQ(WideToUtf8(bad), "\xEF\xBF\xBD"
                               "a"
                               "\xEF\xBF\xBD");

    // A byte that starts nothing, overlong forms, encoded surrogates, values above U+10FFFF
    // and sequences cut short.
    EXPECT_EQ(Utf8ToWide("a\x80z"), L"a\uFFFDz");
    EXPECT_EQ(Utf8ToWide("\xC0\xAF"), L"\uFFFD\uFFFD");
    EXPECT_EQ(Utf8ToWide("\xE0\x80\xAF"), L"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf8ToWide("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf8ToWide("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf8ToWide("x\xF0\x9F\x98"), L"x\uFFFD");
    EXPECT_EQ(Utf8ToWide("\xE2\x82y"), L"\uFFFDy");
    EXPECT_EQ(Utf8ToWide("\xFF"), L"\uFFFD");
}
