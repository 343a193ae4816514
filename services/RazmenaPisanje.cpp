// Pieces of the text formats of the interchange: strings, numbers and CSV fields.
#include "services/RazmenaPisanje.h"

#include <charconv>
#include <cmath>

namespace opterecenje::razmena {

namespace {

/// One character in UTF-8; what is not a Unicode scalar value becomes U+FFFD.
void DodajZnak(std::string& t, uint32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        c = 0xFFFD;
    if (c < 0x80) {
        t += static_cast<char>(c);
    } else if (c < 0x800) {
        t += static_cast<char>(0xC0 | (c >> 6));
        t += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        t += static_cast<char>(0xE0 | (c >> 12));
        t += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        t += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        t += static_cast<char>(0xF0 | (c >> 18));
        t += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        t += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        t += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace

void DodajTekstJson(std::string& t, const CString& tekst) {
    static constexpr char kHex[] = "0123456789abcdef";
    t += '"';
    for (const wchar_t w : tekst) {
        const auto c = static_cast<uint32_t>(w);
        switch (c) {
        case '"':
            t += "\\\"";
            break;
        case '\\':
            t += "\\\\";
            break;
        case '\n':
            t += "\\n";
            break;
        case '\r':
            t += "\\r";
            break;
        case '\t':
            t += "\\t";
            break;
        default:
            if (c < 0x20) {
                t += "\\u00";
                t += kHex[c >> 4];
                t += kHex[c & 0xF];
            } else {
                DodajZnak(t, c);
            }
        }
    }
    t += '"';
}

void DodajBroj(std::string& t, double v, const char* zaNeKonacan) {
    if (!std::isfinite(v)) {
        t += zaNeKonacan;
        return;
    }
    char buffer[32];
    const auto rezultat = std::to_chars(buffer, buffer + sizeof buffer, v);
    t.append(buffer, rezultat.ptr);
}

void DodajCeo(std::string& t, int64_t v) {
    char buffer[24];
    const auto rezultat = std::to_chars(buffer, buffer + sizeof buffer, v);
    t.append(buffer, rezultat.ptr);
}

void DodajPoljeCsv(std::string& t, const CString& tekst) {
    const bool navodnici = tekst.find_first_of(L",\"\r\n") != CString::npos ||
                           (!tekst.empty() && (tekst.front() == L' ' || tekst.back() == L' ' ||
                                               tekst.front() == L'\t' || tekst.back() == L'\t'));
    if (navodnici)
        t += '"';
    for (const wchar_t w : tekst) {
        if (w == L'"')
            t += '"';
        DodajZnak(t, static_cast<uint32_t>(w));
    }
    if (navodnici)
        t += '"';
}

} // namespace opterecenje::razmena
