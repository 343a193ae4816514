#pragma once
// The languages of the desktop host: the compiled catalogs installed with the program, and
// the language chosen from the system's locale.
#include <QLocale>

#include <filesystem>
#include <utility>

namespace Languages {

/// Where the catalogs are: the environment variable VORTA_LOCALE_DIR, else share/vorta/locale
/// beside the program's directory (build tree and installation alike).
std::filesystem::path CatalogDirectory();
/// Reads every catalog found there into the translator; returns how many were read.
int LoadCatalogs(const std::filesystem::path& directory);
/// The language (ClTranslator's language and sub-language) for a locale: Serbian in Latin or
/// Cyrillic script, Bulgarian, and English for every other.
std::pair<int, int> FromLocale(const QLocale& locale);

} // namespace Languages
