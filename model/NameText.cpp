// The pieces of generated combination names, kept ready by value.
#include "model/NameText.h"

#include "text/Translator.h"

#include <bit>
#include <cstdint>

namespace nazivi {

namespace {

/// Ordinals up to this have their numerals kept; others are made on each call.
constexpr int kNajveciRimski = 3999;

/// A small table of coefficient texts by the value's bits and the sign flag (the text depends
/// on nothing else): generated combinations use a handful of distinct coefficients.
template <class Vrednost> class KoefTabela {
public:
    /// The text kept for the value, made by napravi(text) when the table has none.
    template <class Napravi>
    const Vrednost& Dohvati(double value, int signFlag, Napravi&& napravi) {
        const auto bits = std::bit_cast<uint64_t>(value);
        const int sign = signFlag != 0 ? 1 : 0;
        const uint64_t hash = (bits ^ (bits >> 29)) * 0x9E3779B97F4A7C15ull;
        Stavka& s = m_stavke[((hash >> 58) ^ static_cast<uint64_t>(sign)) & 63];
        if (s.sign != sign || s.bits != bits) {
            s.sign = -1; // not valid while the text is made
            napravi(s.vrednost);
            s.bits = bits;
            s.sign = sign;
        }
        return s.vrednost;
    }

private:
    struct Stavka {
        uint64_t bits = 0;
        int sign = -1;
        Vrednost vrednost;
    };
    Stavka m_stavke[64];
};

} // namespace

void Komad::Postavi(const CString& tekst) {
    duzina = tekst.size();
    znaci.fill(L'\0');
    dugacak.clear();
    if (duzina <= kZnakova)
        std::copy_n(tekst.data(), duzina, znaci.data());
    else
        dugacak = tekst;
}

void NazivBafer::Rasti(size_t n) {
    std::vector<wchar_t> veci(std::max(2 * m_nKapacitet, m_nDuzina + n));
    std::copy_n(m_pZnaci, m_nDuzina, veci.data());
    m_uHipu = std::move(veci);
    m_pZnaci = m_uHipu.data();
    m_nKapacitet = m_uHipu.size();
}

const CString& RimskiBroj(int redniBroj) {
    static std::vector<CString> numerals;
    static CString other;
    if (redniBroj < 1 || redniBroj > kNajveciRimski) {
        other = CRomanNumber::GetRomanValue(redniBroj);
        return other;
    }
    if (numerals.size() <= static_cast<size_t>(redniBroj))
        numerals.resize(static_cast<size_t>(redniBroj) + 1);
    CString& numeral = numerals[static_cast<size_t>(redniBroj)];
    if (numeral.empty())
        numeral = CRomanNumber::GetRomanValue(redniBroj);
    return numeral;
}

const Komad& RimskiKomad(int redniBroj) {
    static std::vector<Komad> komadi;
    static Komad other;
    if (redniBroj < 1 || redniBroj > kNajveciRimski) {
        other.Postavi(RimskiBroj(redniBroj));
        return other;
    }
    if (komadi.size() <= static_cast<size_t>(redniBroj))
        komadi.resize(static_cast<size_t>(redniBroj) + 1);
    Komad& komad = komadi[static_cast<size_t>(redniBroj)];
    if (komad.duzina == 0)
        komad.Postavi(RimskiBroj(redniBroj));
    return komad;
}

const CString& FormatKoef(double value, int signFlag) {
    static KoefTabela<CString> tabela;
    return tabela.Dohvati(value, signFlag, [&](CString& tekst) {
        tekst = gfnFormatDouble(value, 2, signFlag != 0 ? 1 : 0);
    });
}

const Komad& KoefKomad(double value, int signFlag) {
    static KoefTabela<Komad> tabela;
    return tabela.Dohvati(value, signFlag,
                          [&](Komad& komad) { komad.Postavi(FormatKoef(value, signFlag) + L"x"); });
}

} // namespace nazivi
