// Greek letters written in texts as "#g<letter>#g", the way the symbol font assigns them.
#include "Translator.h"

#include <string_view>

namespace {

/// The Greek letter of a Latin letter, or 0 when the letter stands for none.
wchar_t GreekOf(wchar_t latin) {
    constexpr std::wstring_view kLatin = L"abgdezhqiklmnxoprstufcyw";
    constexpr std::wstring_view kGreekSmall = L"αβγδεζηθικλμνξοπρστυφχψω";
    constexpr std::wstring_view kLatinCapital = L"ABGDEZHQIKLMNXOPRSTUFCYW";
    constexpr std::wstring_view kGreekCapital = L"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ";
    static_assert(kLatin.size() == kGreekSmall.size() && kLatin.size() == kGreekCapital.size());
    if (const size_t i = kLatin.find(latin); i != std::wstring_view::npos)
        return kGreekSmall[i];
    if (const size_t i = kLatinCapital.find(latin); i != std::wstring_view::npos)
        return kGreekCapital[i];
    return 0;
}

} // namespace

CString CGreek::ConvertToUnicode(const CString& text) {
    constexpr std::wstring_view kMarker = L"#g";
    const std::wstring_view in(text);
    CString out;
    out.reserve(in.size());
    size_t i = 0;
    while (i < in.size()) {
        // A marker is "#g", one letter and "#g" again: five characters.
        if (in.substr(i, 2) == kMarker && i + 5 <= in.size() && in.substr(i + 3, 2) == kMarker) {
            if (const wchar_t greek = GreekOf(in[i + 2]); greek != 0) {
                out.push_back(greek);
                i += 5;
                continue;
            }
        }
        out.push_back(in[i++]);
    }
    return out;
}
