// The catalogs of translations and the current language.
#include "Translator.h"

#include <map>

namespace {

struct LanguageState {
    int language = ClTranslator::Srpski;
    int subLanguage = 0;
    // By language and sub-language.
    std::map<std::pair<int, int>, std::map<std::wstring, CString>> catalogs;
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
    if (state.language == Srpski && state.subLanguage == Latinica)
        return source;
    // The sub-language's catalog first, then the language's own.
    for (const int sub : {state.subLanguage, 0}) {
        const auto catalog = state.catalogs.find({state.language, sub});
        if (catalog == state.catalogs.end())
            continue;
        const auto entry = catalog->second.find(source);
        if (entry != catalog->second.end())
            return entry->second;
        if (sub == 0)
            break;
    }
    return source;
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
    AddTranslation(language, 0, source, translation);
}

void ClTranslator::AddTranslation(int language, int subLanguage, const CString& source,
                                  const CString& translation) {
    State().catalogs[{language, subLanguage}][source] = translation;
}

void ClTranslator::ClearCatalogs() {
    State().catalogs.clear();
}
