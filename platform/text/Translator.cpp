// The catalogs of translations and the current language.
#include "Translator.h"

#include <map>

namespace {

struct LanguageState {
    int language = ClTranslator::Srpski;
    int subLanguage = 0;
    std::map<int, std::map<std::wstring, CString>> catalogs;
};

LanguageState& State() {
    static LanguageState state;
    return state;
}

} // namespace

CString ClTranslator::Do(const CString& source) const {
    return Translate(source);
}

CString ClTranslator::Translate(const CString& source) {
    // "$$" marks a text that is shown as it stands (numbers, placeholders, formats of
    // translated pieces): the marker goes and nothing is translated.
    if (source.size() >= 2 && source[0] == L'$' && source[1] == L'$')
        return source.Mid(2);
    const LanguageState& state = State();
    if (state.language == Srpski)
        return source;
    const auto catalog = state.catalogs.find(state.language);
    if (catalog == state.catalogs.end())
        return source;
    const auto entry = catalog->second.find(source);
    return entry == catalog->second.end() ? source : entry->second;
}

void ClTranslator::SetLanguage(int language, int subLanguage) {
    State().language = language;
    State().subLanguage = subLanguage;
}

int ClTranslator::GetLanguage() {
    return State().language;
}

int ClTranslator::GetSubLanguage() {
    return State().subLanguage;
}

bool ClTranslator::bugarskiJezik() {
    return State().language == Bugarski || State().subLanguage == Bugarski;
}

void ClTranslator::AddTranslation(int language, const CString& source, const CString& translation) {
    State().catalogs[language][source] = translation;
}

void ClTranslator::ClearCatalogs() {
    State().catalogs.clear();
}
