// Numbers as text: fixed decimals with an optional sign, Roman numerals and Greek letters.
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <utility>

TEST(FormatDouble, FixedDecimalsAndLeadingPlusForSums) {
    EXPECT_EQ(gfnFormatDouble(1.5, 2, 0), L"1.50");
    EXPECT_EQ(gfnFormatDouble(1.5, 2, 1), L"+1.50");
    EXPECT_EQ(gfnFormatDouble(-1.5, 2, 0), L"-1.50");
    EXPECT_EQ(gfnFormatDouble(-1.5, 2, 1), L"-1.50");
    EXPECT_EQ(gfnFormatDouble(0.0, 2, 1), L"+0.00");
    EXPECT_EQ(gfnFormatDouble(1.35, 1, 0), L"1.4");
    EXPECT_EQ(gfnFormatDouble(1.349, 2, 0), L"1.35");
    EXPECT_EQ(gfnFormatDouble(1234567.891, 1, 0), L"1234567.9");
    EXPECT_EQ(gfnFormatDouble(2.7, 0, 0), L"3");
    EXPECT_EQ(gfnFormatDouble(-2.7, 0, 1), L"-3");
    EXPECT_EQ(gfnFormatDouble(1.0, -3, 0), L"1");
    EXPECT_EQ(gfnFormatDouble(1e20, 1, 0), L"100000000000000000000.0");
}

TEST(FormatDouble, ZeroNeverShowsAMinusAndSpecialValuesAreNamed) {
    EXPECT_EQ(gfnFormatDouble(-0.0, 2, 0), L"0.00");
    EXPECT_EQ(gfnFormatDouble(-0.001, 2, 0), L"0.00");
    EXPECT_EQ(gfnFormatDouble(-0.001, 2, 1), L"+0.00");
    EXPECT_EQ(gfnFormatDouble(-0.4, 0, 0), L"0");
    EXPECT_EQ(gfnFormatDouble(-0.006, 2, 0), L"-0.01");
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(gfnFormatDouble(inf, 2, 0), L"inf");
    EXPECT_EQ(gfnFormatDouble(inf, 2, 1), L"inf");
    EXPECT_EQ(gfnFormatDouble(-inf, 2, 1), L"-inf");
    EXPECT_EQ(gfnFormatDouble(std::numeric_limits<double>::quiet_NaN(), 2, 1), L"nan");
    EXPECT_EQ(gfnFormatDouble(-std::numeric_limits<double>::quiet_NaN(), 2, 0), L"nan");
}

TEST(RomanNumber, StandardNumeralsUpTo3999AndDigitsOtherwise) {
    const std::pair<int, const wchar_t*> cases[] = {{1, L"I"},
                                                    {3, L"III"},
                                                    {4, L"IV"},
                                                    {9, L"IX"},
                                                    {14, L"XIV"},
                                                    {40, L"XL"},
                                                    {49, L"XLIX"},
                                                    {90, L"XC"},
                                                    {400, L"CD"},
                                                    {944, L"CMXLIV"},
                                                    {1994, L"MCMXCIV"},
                                                    {2024, L"MMXXIV"},
                                                    {3888, L"MMMDCCCLXXXVIII"},
                                                    {3999, L"MMMCMXCIX"},
                                                    {0, L"0"},
                                                    {-5, L"-5"},
                                                    {4000, L"4000"},
                                                    {INT_MIN, L"-2147483648"}};
    for (const auto& [value, roman] : cases)
        EXPECT_EQ(CRomanNumber::GetRomanValue(value), roman) << value;
}

TEST(GreekMarkers, LettersOfTheSymbolFontBecomeGreek) {
    EXPECT_EQ(CGreek::ConvertToUnicode(L"#gd#g = 5 mm"), L"δ = 5 mm");
    EXPECT_EQ(CGreek::ConvertToUnicode(L"M#gD#g, #gs#g#gt#g"), L"MΔ, στ");
    EXPECT_EQ(CGreek::ConvertToUnicode(L"abgdezhqiklmnxoprstufcyw"), L"abgdezhqiklmnxoprstufcyw");
    const CString latin = L"abgdezhqiklmnxoprstufcywABGDEZHQIKLMNXOPRSTUFCYW";
    const CString greek = L"αβγδεζηθικλμνξοπρστυφχψωΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ";
    for (int i = 0; i < latin.GetLength(); ++i) {
        const CString marker = CString(L"#g") + latin[i] + L"#g";
        EXPECT_EQ(CGreek::ConvertToUnicode(marker), CString(1, greek[i])) << i;
    }
}

TEST(GreekMarkers, OtherContentStaysAsItStands) {
    const wchar_t* unchanged[] = {L"#gj#g", L"#g1#g", L"#gab#g", L"#g#g",   L"#ga",
                                  L"#ga#",  L"x#g",   L"#g č#g", L"#G a#G", L""};
    for (const wchar_t* text : unchanged)
        EXPECT_EQ(CGreek::ConvertToUnicode(text), text) << CString(text).ToUtf8();
    // The closing marker is not the start of another one.
    EXPECT_EQ(CGreek::ConvertToUnicode(L"#ga#gb#g"), L"αb#g");
    EXPECT_EQ(CGreek::ConvertToUnicode(L"##ga#g#"), L"#α#");
}
