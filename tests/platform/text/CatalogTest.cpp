// Compiled catalogs read into the translator, and the Cyrillic sub-language of Serbian.
#include "platform/TempDir.h"
#include "text/Catalogs.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

/// The bytes of a .mo file with the entries (little-endian, as msgfmt writes on this machine).
std::string MoFile(const std::vector<std::pair<std::string, std::string>>& entries) {
    const auto n = static_cast<uint32_t>(entries.size());
    const uint32_t originals = 28;
    const uint32_t translations = originals + 8 * n;
    uint32_t text = translations + 8 * n;
    std::string tables, strings;
    auto word = [](std::string& s, uint32_t v) {
        for (int i = 0; i < 4; ++i)
            s.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
    };
    std::string original, translated;
    for (int side = 0; side < 2; ++side)
        for (const auto& e : entries) {
            const std::string& s = side == 0 ? e.first : e.second;
            word(side == 0 ? original : translated, static_cast<uint32_t>(s.size()));
            word(side == 0 ? original : translated, text);
            strings += s;
            strings.push_back('\0');
            text += static_cast<uint32_t>(s.size()) + 1;
        }
    std::string file;
    for (uint32_t v : {0x950412deu, 0u, n, originals, translations, 0u, 0u})
        word(file, v);
    return file + original + translated + strings;
}

} // namespace

TEST(Catalog, ReadsCompiledCatalogsAndFallsBackFromTheSubLanguage) {
    CTempDir dir;
    const auto cyr = dir.Path() / "sr.mo";
    std::ofstream(cyr, std::ios::binary) << MoFile({{"", "Content-Type: text/plain\n"},
                                                    {"Sneg", "\xd0\xa1\xd0\xbd\xd0\xb5\xd0\xb3"},
                                                    {"ctx\x04Vetar", "\xd0\x92\xd0\xb5\xd1\x82"},
                                                    {"Prazno", ""}});
    CString error;
    ClTranslator::ClearCatalogs();
    ASSERT_TRUE(
        ClTranslator::UcitajKatalog(ClTranslator::Srpski, ClTranslator::Cirilica, cyr, error))
        << error.ToUtf8();
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Sneg", L"Snow");

    struct Case {
        int language, sub;
        const wchar_t* source;
        const wchar_t* expected;
    };
    for (const Case& c : {Case{ClTranslator::Srpski, ClTranslator::Latinica, L"Sneg", L"Sneg"},
                          Case{ClTranslator::Srpski, ClTranslator::Cirilica, L"Sneg", L"Снег"},
                          Case{ClTranslator::Srpski, ClTranslator::Cirilica, L"Vetar", L"Вет"},
                          Case{ClTranslator::Srpski, ClTranslator::Cirilica, L"Prazno", L"Prazno"},
                          Case{ClTranslator::Srpski, ClTranslator::Cirilica, L"$$Sneg", L"Sneg"},
                          Case{ClTranslator::Engleski, ClTranslator::Cirilica, L"Sneg", L"Snow"},
                          Case{ClTranslator::Bugarski, 0, L"Sneg", L"Sneg"}}) {
        ClTranslator::SetLanguage(c.language, c.sub);
        EXPECT_EQ(ClTranslator::Translate(c.source), CString(c.expected))
            << c.language << "/" << c.sub;
    }
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();

    // Not a catalog, a cut one, and a missing one: refused, nothing added.
    const auto bad = dir.Path() / "bad.mo";
    std::ofstream(bad, std::ios::binary) << "not a catalog at all, just text";
    EXPECT_FALSE(ClTranslator::UcitajKatalog(ClTranslator::Engleski, 0, bad, error));
    const std::string cut = MoFile({{"Sneg", "Snow"}}).substr(0, 40);
    std::ofstream(bad, std::ios::binary | std::ios::trunc) << cut;
    EXPECT_FALSE(ClTranslator::UcitajKatalog(ClTranslator::Engleski, 0, bad, error));
    EXPECT_FALSE(
        ClTranslator::UcitajKatalog(ClTranslator::Engleski, 0, dir.Path() / "none.mo", error));
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    EXPECT_EQ(ClTranslator::Translate(L"Sneg"), CString(L"Sneg"));
    ClTranslator::SetLanguage(ClTranslator::Srpski);
}

TEST(Catalog, TheLanguageOfALocaleNameAndOfTheEnvironment) {
    using L = std::pair<int, int>;
    const L english{ClTranslator::Engleski, ClTranslator::Latinica};
    const L latin{ClTranslator::Srpski, ClTranslator::Latinica};
    const L cyrillic{ClTranslator::Srpski, ClTranslator::Cirilica};
    const L bulgarian{ClTranslator::Bugarski, ClTranslator::Latinica};
    const std::pair<const char*, L> names[] = {
        {"C", english},
        {"POSIX", english},
        {"C.UTF-8", english},
        {"en_GB.UTF-8", english},
        {"de_DE", english},
        {"", english},
        {"sr_RS", cyrillic},
        {"sr_RS.UTF-8", cyrillic},
        {"sr_RS@latin", latin},
        {"sr@latin", latin},
        {"hr_HR.UTF-8", latin},
        {"bs_BA", latin},
        {"bg_BG.UTF-8", bulgarian},
        {"srp", english},
    };
    for (const auto& [name, language] : names)
        EXPECT_EQ(vtext::LanguageOfLocaleName(name), language) << name;

    // LC_ALL before LC_MESSAGES before LANG; an empty one does not count.
    ::setenv("LC_ALL", "", 1);
    ::setenv("LC_MESSAGES", "bg_BG", 1);
    ::setenv("LANG", "sr_RS@latin", 1);
    EXPECT_EQ(vtext::LanguageOfEnvironment(), bulgarian);
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(vtext::LanguageOfEnvironment(), english);
    ::unsetenv("LC_ALL");
    ::unsetenv("LC_MESSAGES");
    EXPECT_EQ(vtext::LanguageOfEnvironment(), latin);
    ::unsetenv("LANG");
    EXPECT_EQ(vtext::LanguageOfEnvironment(), english);
}
