#pragma once
// The pieces generated combination names are made of (coefficient texts, Roman numerals of
// load case ordinals) and the buffer a name is built in. A renumbering renames tens of
// thousands of combinations at once from a handful of distinct pieces, so the pieces are
// kept ready, padded to a fixed size, and each is copied into the name in one move.
#include "framework/String.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace nazivi {

/// The Roman numeral of a load case ordinal; the reference holds until the next call.
const CString& RimskiBroj(int redniBroj);
/// A coefficient with two decimals, with a leading "+" when signFlag is set and the value is
/// not negative; the reference holds until the next call.
const CString& FormatKoef(double value, int signFlag);

/// A piece of a name: up to kZnakova characters kept in a fixed array (so that a copy is one
/// move of the whole array), or a longer text kept as it is.
struct Komad {
    static constexpr size_t kZnakova = 16;

    void Postavi(const CString& tekst);

    std::array<wchar_t, kZnakova> znaci{};
    size_t duzina = 0;
    CString dugacak;
};

/// The numeral of the ordinal as a piece.
const Komad& RimskiKomad(int redniBroj);
/// The coefficient's text followed by "x" (FormatKoef(value, signFlag) + "x") as a piece.
const Komad& KoefKomad(double value, int signFlag);

/// A name being built: its characters go into a buffer on the stack (on the heap only for a
/// name too long for it) and into the name in one copy at the end.
class NazivBafer {
public:
    NazivBafer() = default;
    NazivBafer(const NazivBafer&) = delete;
    NazivBafer& operator=(const NazivBafer&) = delete;

    void Dodaj(wchar_t c) {
        Obezbedi(1);
        m_pZnaci[m_nDuzina++] = c;
    }
    void Dodaj(const Komad& komad) {
        if (komad.duzina > Komad::kZnakova) {
            Dodaj(komad.dugacak);
            return;
        }
        // The whole array is copied; what lies beyond the piece is overwritten next.
        Obezbedi(Komad::kZnakova);
        std::memcpy(m_pZnaci + m_nDuzina, komad.znaci.data(), sizeof komad.znaci);
        m_nDuzina += komad.duzina;
    }
    void Dodaj(const CString& tekst) {
        Obezbedi(tekst.size());
        std::copy_n(tekst.data(), tekst.size(), m_pZnaci + m_nDuzina);
        m_nDuzina += tekst.size();
    }
    void Prepisi(CString& naziv) const { naziv.assign(m_pZnaci, m_nDuzina); }

private:
    static constexpr size_t kNaSteku = 1024;

    void Obezbedi(size_t n) {
        if (m_nDuzina + n > m_nKapacitet)
            Rasti(n);
    }
    /// Moves the name to a larger buffer on the heap (rarely: names are short).
    void Rasti(size_t n);

    wchar_t m_naSteku[kNaSteku];
    std::vector<wchar_t> m_uHipu;
    wchar_t* m_pZnaci = m_naSteku;
    size_t m_nDuzina = 0;
    size_t m_nKapacitet = kNaSteku;
};

} // namespace nazivi
