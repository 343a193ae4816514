// The catalogs of the desktop host and the language of the system's locale.
#include "Languages.h"

#include "text/Translator.h"

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

std::filesystem::path Languages::CatalogDirectory() {
    if (const char* named = std::getenv("VORTA_LOCALE_DIR"); named != nullptr && *named != '\0')
        return named;
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec)
        return "locale";
    return (exe.parent_path() / ".." / "share" / "vorta" / "locale").lexically_normal();
}

int Languages::LoadCatalogs(const std::filesystem::path& directory) {
    int loaded = 0;
    for (const CCatalog& catalog : kCatalogs) {
        CString error;
        const std::filesystem::path file = directory / catalog.folder / "LC_MESSAGES" / "vorta.mo";
        if (ClTranslator::UcitajKatalog(catalog.language, catalog.subLanguage, file, error))
            ++loaded;
    }
    return loaded;
}

std::pair<int, int> Languages::FromLocale(const QLocale& locale) {
    switch (locale.language()) {
    case QLocale::Serbian:
        return {ClTranslator::Srpski, locale.script() == QLocale::CyrillicScript
                                          ? ClTranslator::Cirilica
                                          : ClTranslator::Latinica};
    case QLocale::Bosnian:
    case QLocale::Croatian:
        return {ClTranslator::Srpski, ClTranslator::Latinica};
    case QLocale::Bulgarian:
        return {ClTranslator::Bugarski, ClTranslator::Latinica};
    default:
        return {ClTranslator::Engleski, ClTranslator::Latinica};
    }
}
