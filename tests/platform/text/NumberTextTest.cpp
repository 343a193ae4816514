// Numbers as text: fixed decimals with an optional sign, Roman numerals and Greek letters.
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <tuple>
#include <utility>

TEST(FormatDouble, FixedDecimalsLeadingPlusForSumsAndNoMinusOnZero) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<double, int, int, const wchar_t*> cases[] = {
        {1.5, 2, 0, L"1.50"},  {1.5, 2, 1, L"+1.50"},    {-1.5, 2, 1, L"-1.50"},
        {0.0, 2, 1, L"+0.00"}, {1.35, 1, 0, L"1.4"},     {1.349, 2, 0, L"1.35"},
        {-2.7, 0, 1, L"-3"},   {1.0, -3, 0, L"1"},       {1e20, 1, 0, L"100000000000000000000.0"},
        {-0.0, 2, 0, L"0.00"}, {-0.001, 2, 0, L"0.00"},  {-0.001, 2, 1, L"+0.00"},
        {-0.4, 0, 0, L"0"},    {-0.006, 2, 0, L"-0.01"}, {inf, 2, 1, L"inf"},
        {-inf, 2, 1, L"-inf"}, {nan, 2, 1, L"nan"},      {-nan, 2, 0, L"nan"}};
    for (const auto& [value, decimals, sign, text] : cases)
        EXPECT_EQ(gfnFormatDouble(value, decimals, sign), text)
            << value << " " << decimals << " " << sign;
}

TEST(RomanNumber, StandardNumeralsUpTo3999AndDigitsOtherwise) {
    const std::pair<int, const wchar_t*> cases[] = {{1, L"I"},
                                                    {4, L"IV"},
                                                    {9, L"IX"},
                                                    {14, L"XIV"},
                                                    {40, L"XL"},
                                                    {49, L"XLIX"},
                                                    {90, L"XC"},
                                                    {400, L"CD"},
                                                    {944, L"CMXLIV"},
                                                    {1994, L"MCMXCIV"},
                                                    {3888, L"MMMDCCCLXXXVIII"},
                                                    {3999, L"MMMCMXCIX"},
                                                    {0, L"0"},
                                                    {-5, L"-5"},
                                                    {4000, L"4000"},
                                                    {INT_MIN, L"-2147483648"}};
    for (const auto& [value, roman] : cases)
        EXPECT_EQ(CRomanNumber::GetRomanValue(value), roman) << value;
}

TEST(GreekMarkers, LettersOfTheSymbolFontBecomeGreekAndOtherContentStays) {
    const CString latin = L"abgdezhqiklmnxoprstufcywABGDEZHQIKLMNXOPRSTUFCYW";
    const CString greek = L"αβγδεζηθικλμνξοπρστυφχψωΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ";
    for (int i = 0; i < latin.GetLength(); ++i)
        EXPECT_EQ(CGreek::ConvertToUnicode(CString(L"#g") + latin[i] + L"#g"),
                  CString(1, greek[i]));
    // The closing marker is not the start of another one; anything but one letter stays.
    EXPECT_EQ(CGreek::ConvertToUnicode(L"M#gD#g, #ga#gb#g"), L"MΔ, αb#g");
    for (const wchar_t* text : {L"abg", L"#gj#g", L"#g1#g", L"#gab#g", L"#g#g", L"#ga#", L"#G a#G"})
        EXPECT_EQ(CGreek::ConvertToUnicode(text), text) << CString(text).ToUtf8();
}
