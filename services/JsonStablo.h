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
#include <deque>
#include <memory>
#include <span>
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
    /// Where the value begins in the text (its first byte), and where its key does.
    uint32_t poz = 0;
    uint32_t kljucPoz = 0;
    /// Vrsta::Parovi: the pairs [prvi, prvi + broj) of the tree's list.
    uint32_t prvi = 0;
    uint32_t broj = 0;
    int64_t i = 0;
    double d = 0.0;
    /// Texts and keys as they read, in the text itself when it has them so (no escapes), else
    /// in the tree.
    std::string_view s;
    std::string_view kljuc;
    /// Array elements, or object members with their keys, side by side in the tree.
    std::span<const CCvor> deca;

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
    /// array that is not made of pairs). The tree refers to the text, which must outlive it.
    bool Procitaj(std::string_view tekst);

    const CCvor& Koren() const { return m_koren; }
    const std::vector<CParJson>& Parovi() const { return m_parovi; }
    const std::vector<std::string>& Imena() const { return m_imena; }
    size_t GreskaPoz() const { return m_greskaPoz; }
    const CString& Greska() const { return m_greska; }

private:
    friend class CGraditeljStabla;
    void Isprazni();
    /// The text read by the fast library; false when it refuses it or leaves a doubt.
    bool ProcitajBrzo(std::string_view tekst);
    /// The values of a container, put side by side in the tree.
    std::span<const CCvor> Smesti(const std::vector<CCvor>& vrednosti);
    /// A text kept by the tree.
    std::string_view Zadrzi(std::string_view s);

    CCvor m_koren;
    // The values of the tree in blocks that never move once made.
    std::vector<std::vector<CCvor>> m_blokovi;
    std::deque<std::string> m_tekstovi;
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
