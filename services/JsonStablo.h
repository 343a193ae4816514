#pragma once
// A JSON text read into a tree whose every value knows where it stands in the text, so that
// whoever checks the values can say where a bad one is. The JSON library reads the text; the
// tree is built from its events.
//
// Arrays of pairs under the keys "coefficients", "srss" and "fixed" ([[load case, number], ...]),
// the bulk of a model's description, are not made into values: their pairs go into one list that
// the tree keeps, the load case given as a number or as a name.
#include "framework/String.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace opterecenje::razmena {

struct CCvor {
    enum class Vrsta : uint8_t { Null, Logicka, Broj, Tekst, Niz, Objekat, Parovi };
    Vrsta vrsta = Vrsta::Null;
    bool b = false;
    /// A number written as a whole number (no fraction, no exponent) that fits in int64.
    bool ceo = false;
    int64_t i = 0;
    double d = 0.0;
    std::string s;
    /// Array elements, or object members with their keys.
    std::vector<CCvor> deca;
    std::string kljuc;
    size_t kljucPoz = 0;
    /// Where the value begins in the text (its first byte).
    size_t poz = 0;
    /// Vrsta::Parovi: the pairs [prvi, prvi + broj) of the tree's list.
    uint32_t prvi = 0;
    uint32_t broj = 0;

    /// The member with that key, or null.
    const CCvor* Clan(std::string_view k) const;
};

/// One pair [load case, number]: the load case by its number (broj > 0) or by a name of the
/// tree's list of names (ime >= 0).
struct CParJson {
    int64_t broj = 0;
    double koef = 0.0;
    uint32_t poz = 0; // where the load case is written (texts are under 4 GiB)
    int32_t ime = -1;
};

class CStabloJson {
public:
    /// Reads the text; false with the place and the reason when it is not JSON this tree
    /// takes (syntax, nesting deeper than 64 levels, a key given twice in one object, a pair
    /// array that is not made of pairs).
    bool Procitaj(std::string_view tekst);

    const CCvor& Koren() const { return m_koren; }
    const std::vector<CParJson>& Parovi() const { return m_parovi; }
    const std::vector<std::string>& Imena() const { return m_imena; }
    size_t GreskaPoz() const { return m_greskaPoz; }
    const CString& Greska() const { return m_greska; }

private:
    friend class CGraditeljStabla;
    CCvor m_koren;
    std::vector<CParJson> m_parovi;
    std::vector<std::string> m_imena;
    size_t m_greskaPoz = 0;
    CString m_greska;
};

/// Line and column (both from 1, the column counted in characters) of a byte of a UTF-8 text.
struct CMestoUTekstu {
    int red = 1;
    int kolona = 1;
};
CMestoUTekstu MestoUTekstu(std::string_view tekst, size_t poz);

} // namespace opterecenje::razmena
