// Compiled catalogs of translations (GNU .mo files) read into the translator.
//
// A .mo file: uint32 magic 0x950412de (in the file's byte order), uint32 revision (major 0),
// uint32 N, uint32 offset of the table of originals, uint32 offset of the table of
// translations; each table holds N pairs (uint32 length, uint32 offset) of strings ending in a
// NUL byte. Entries with an empty original (the header) or without a translation are skipped;
// for plural entries only the first form is kept; a context ("ctx\x04text") is dropped.
#include "Translator.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr uint32_t kMagic = 0x950412deu;
constexpr uint32_t kMagicSwapped = 0xde120495u;
constexpr std::streamoff kMaxCatalog = std::streamoff{64} << 20;

class CMoReader {
public:
    explicit CMoReader(std::vector<char> bytes) : m_bytes(std::move(bytes)) {}

    bool Word(size_t at, uint32_t& value) const {
        if (at > m_bytes.size() || m_bytes.size() - at < 4)
            return false;
        uint32_t v = 0;
        for (int i = 3; i >= 0; --i)
            v = (v << 8) | static_cast<uint8_t>(m_bytes[at + static_cast<size_t>(i)]);
        if (m_bSwapped)
            v = ((v & 0xFFu) << 24) | ((v & 0xFF00u) << 8) | ((v >> 8) & 0xFF00u) | (v >> 24);
        value = v;
        return true;
    }
    /// The string of entry i of the table at `table`.
    bool Text(uint32_t table, uint32_t i, std::string_view& text) const {
        uint32_t length = 0, offset = 0;
        const size_t at = static_cast<size_t>(table) + static_cast<size_t>(i) * 8;
        if (!Word(at, length) || !Word(at + 4, offset))
            return false;
        if (offset > m_bytes.size() || m_bytes.size() - offset < static_cast<size_t>(length))
            return false;
        text = std::string_view(m_bytes.data() + offset, length);
        return true;
    }
    void SetSwapped(bool swapped) { m_bSwapped = swapped; }

private:
    std::vector<char> m_bytes;
    bool m_bSwapped = false;
};

} // namespace

bool ClTranslator::UcitajKatalog(int language, int subLanguage, const std::filesystem::path& file,
                                 CString& error) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        error =
            CString::Formatted(L"cannot open the catalog %s", Utf8ToWide(file.string()).c_str());
        return false;
    }
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0);
    if (size < 20 || size > kMaxCatalog) {
        error = L"the catalog is not a compiled catalog of translations";
        return false;
    }
    std::vector<char> bytes(static_cast<size_t>(size));
    in.read(bytes.data(), size);
    CMoReader mo(std::move(bytes));
    uint32_t magic = 0, revision = 0, n = 0, originals = 0, translations = 0;
    mo.Word(0, magic);
    if (magic != kMagic && magic != kMagicSwapped) {
        error = L"the catalog is not a compiled catalog of translations";
        return false;
    }
    mo.SetSwapped(magic == kMagicSwapped);
    if (!mo.Word(4, revision) || (revision >> 16) != 0 || !mo.Word(8, n) ||
        !mo.Word(12, originals) || !mo.Word(16, translations)) {
        error = L"the catalog has an unknown revision";
        return false;
    }
    std::vector<std::pair<CString, CString>> entries;
    for (uint32_t i = 0; i < n; ++i) {
        std::string_view source, translation;
        if (!mo.Text(originals, i, source) || !mo.Text(translations, i, translation)) {
            error = L"the catalog is damaged";
            return false;
        }
        if (const size_t context = source.find('\x04'); context != std::string_view::npos)
            source.remove_prefix(context + 1);
        source = source.substr(0, source.find('\0'));
        translation = translation.substr(0, translation.find('\0'));
        if (source.empty() || translation.empty())
            continue;
        entries.emplace_back(Utf8ToWide(source), Utf8ToWide(translation));
    }
    for (const auto& [source, translation] : entries)
        AddTranslation(language, subLanguage, source, translation);
    return true;
}
