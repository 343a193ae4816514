#pragma once
// The compiled catalogs installed with the program, and the language a host starts in, chosen
// from the locale. Every host uses these, so that the desktop and the command line speak the
// same language on the same system.
#include <filesystem>
#include <string_view>
#include <utility>

namespace vtext {

/// Where the catalogs are: the environment variable VORTA_LOCALE_DIR, else share/vorta/locale
/// beside the program's directory (build tree and installation alike).
std::filesystem::path CatalogDirectory();
/// Reads every catalog found there into the translator; returns how many were read.
int LoadCatalogs(const std::filesystem::path& directory);
/// The language (ClTranslator's language and sub-language) of a locale given by its ISO
/// language code and ISO script code ("sr", "Latn"): Serbian in Latin or Cyrillic script
/// (Serbian without a script is Cyrillic), Croatian and Bosnian as Serbian in Latin,
/// Bulgarian, and English for every other.
std::pair<int, int> LanguageOf(std::string_view language, std::string_view script);
/// The language of a POSIX locale name ("sr_RS@latin", "bg_BG.UTF-8", "C"): English for C
/// and POSIX.
std::pair<int, int> LanguageOfLocaleName(std::string_view name);
/// The language of the messages locale of the environment: the first of LC_ALL, LC_MESSAGES
/// and LANG that is set and not empty.
std::pair<int, int> LanguageOfEnvironment();

} // namespace vtext
