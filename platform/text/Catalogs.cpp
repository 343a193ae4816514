// The catalogs of the hosts and the language of the locale.
#include "Catalogs.h"

#include "Translator.h"

#include <cstdlib>
#include <system_error>

namespace {

struct CCatalog {
    const char* folder;
    int language;
    int subLanguage;
};

constexpr CCatalog kCatalogs[] = {
    {"en", ClTranslator::Engleski, ClTranslator::Latinica},
    {"sr@cyrillic", ClTranslator::Srpski, ClTranslator::Cirilica},
    {"bg", ClTranslator::Bugarski, ClTranslator::Latinica},
};

} // namespace

std::filesystem::path vtext::CatalogDirectory() {
    if (const char* named = std::getenv("VORTA_LOCALE_DIR"); named != nullptr && *named != '\0')
        return named;
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec)
        return "locale";
    return (exe.parent_path() / ".." / "share" / "vorta" / "locale").lexically_normal();
}

int vtext::LoadCatalogs(const std::filesystem::path& directory) {
    int loaded = 0;
    for (const CCatalog& catalog : kCatalogs) {
        CString error;
        const std::filesystem::path file = directory / catalog.folder / "LC_MESSAGES" / "vorta.mo";
        if (ClTranslator::UcitajKatalog(catalog.language, catalog.subLanguage, file, error))
            ++loaded;
    }
    return loaded;
}

std::pair<int, int> vtext::LanguageOf(std::string_view language, std::string_view script) {
    if (language == "sr")
        return {ClTranslator::Srpski,
                script == "Latn" ? ClTranslator::Latinica : ClTranslator::Cirilica};
    if (language == "hr" || language == "bs")
        return {ClTranslator::Srpski, ClTranslator::Latinica};
    if (language == "bg")
        return {ClTranslator::Bugarski, ClTranslator::Latinica};
    return {ClTranslator::Engleski, ClTranslator::Latinica};
}

std::pair<int, int> vtext::LanguageOfLocaleName(std::string_view name) {
    // language[_territory][.codeset][@modifier]; the modifier names the script of Serbian.
    const std::string_view language = name.substr(0, name.find_first_of("_.@"));
    const size_t at = name.find('@');
    const std::string_view modifier = at == std::string_view::npos ? "" : name.substr(at + 1);
    return LanguageOf(language, modifier == "latin" ? "Latn" : "Cyrl");
}

std::pair<int, int> vtext::LanguageOfEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* value = std::getenv(variable); value != nullptr && *value != '\0')
            return LanguageOfLocaleName(value);
    return LanguageOfLocaleName("C");
}
