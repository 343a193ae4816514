// The catalogs of the desktop host and the language of the system's locale, as every host
// chooses them.
#include "Languages.h"

#include "text/Catalogs.h"

std::filesystem::path Languages::CatalogDirectory() {
    return vtext::CatalogDirectory();
}

int Languages::LoadCatalogs(const std::filesystem::path& directory) {
    return vtext::LoadCatalogs(directory);
}

std::pair<int, int> Languages::FromLocale(const QLocale& locale) {
    return vtext::LanguageOf(QLocale::languageToCode(locale.language()).toStdString(),
                             QLocale::scriptToCode(locale.script()).toStdString());
}
