// Numbers as text: fixed decimals for factors and coefficients, Roman numerals for phases.
#include "Translator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

CString gfnFormatDouble(double value, int decimals, int signFlag) {
    if (std::isnan(value))
        return CString(L"nan");
    if (std::isinf(value))
        return CString(value < 0 ? L"-inf" : L"inf");
    decimals = std::clamp(decimals, 0, 100);
    // to_chars rounds the exact binary value correctly and, unlike printf, ignores the locale,
    // so the separator is always '.'.
    char buffer[512];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    std::string text(buffer, result.ec == std::errc() ? result.ptr : buffer);
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos)
        text.erase(0, 1); // a value that rounds to zero has no sign
    if (signFlag != 0 && !text.starts_with('-'))
        text.insert(0, 1, '+');
    return CString(std::wstring(text.begin(), text.end()));
}

CString CRomanNumber::GetRomanValue(int value) {
    if (value <= 0 || value > 3999)
        return CString(std::to_wstring(value));
    struct Symbol {
        int value;
        const wchar_t* text;
    };
    static constexpr Symbol kSymbols[] = {
        {1000, L"M"}, {900, L"CM"}, {500, L"D"}, {400, L"CD"}, {100, L"C"}, {90, L"XC"}, {50, L"L"},
        {40, L"XL"},  {10, L"X"},   {9, L"IX"},  {5, L"V"},    {4, L"IV"},  {1, L"I"}};
    CString roman;
    for (const Symbol& s : kSymbols) {
        for (; value >= s.value; value -= s.value)
            roman += s.text;
    }
    return roman;
}
