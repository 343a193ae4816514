#pragma once
// A JSON text read into a tree whose every value knows where it stands in the text, so that
// whoever checks the values can say where a bad one is. The JSON library reads the text; the
// tree is built from its events.
//
// Arrays of pairs under the keys "coefficients", "srss" and "fixed" ([[load case, number], ...]),
// the bulk of a model's description, are not made into values: their pairs go into one list that
// the tree keeps, the load case given as a number or as a name. An array of combinations of the
// usual form goes into a list of its own as well.
#include "framework/String.h"
#include "services/RazmenaOpis.h"

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
    enum class Vrsta : uint8_t { Null, Logicka, Broj, Tekst, Niz, Objekat, Parovi, Kombinacije };
    Vrsta vrsta = Vrsta::Null;
    bool b = false;
    /// A number written as a whole number (no fraction, no exponent) that fits in int64.
    bool ceo = false;
    /// Where the value begins in the text (its first byte), and where its key does.
    uint32_t poz = 0;
    uint32_t kljucPoz = 0;
    /// Vrsta::Parovi: the pairs [prvi, prvi + broj) of the tree's list. Vrsta::Kombinacije
    /// (an array of combinations): the combinations [prvi, prvi + broj) of the tree's list.
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

/// A combination of the usual form, the bulk of a description: an object whose members are
/// "name" (a string), "generated" (true or false) and "coefficients" (pairs), each at most
/// once. Read into a list of its own rather than as an object of values.
struct CKombinacijaJson {
    std::string_view ime;
    uint32_t poz = 0; // where the object begins
    uint32_t imePoz = 0;
    uint32_t koefPoz = 0; // where "coefficients" begins
    /// The pairs [prvi, prvi + broj) of the tree's list.
    uint32_t prvi = 0;
    uint32_t broj = 0;
    bool imaIme = false;
    bool imaGenerisan = false;
    bool generisan = false;
    bool imaKoeficijente = false;
};

/// The pairs [load case, number] of a text are kept as members of a combination (CClan) whose
/// indeks names the load case as written: by its number (indeks > 0), by a name of the tree's
/// list of names (name -indeks - 1 for indeks < 0), or by a number that names no load case, 0
/// or beyond 2^31 (indeks = 0; the number is read again from the text). The list is the one in
/// which a description keeps the members of its combinations, so that those of the bulk of a
/// text become its members where they stand.
class CStabloJson {
public:
    explicit CStabloJson(std::vector<CClan>& parovi) : m_parovi(parovi) {}

    /// Reads the text; false with the place and the reason when it is not JSON this tree
    /// takes (syntax, nesting deeper than 64 levels, a key given twice in one object, a pair
    /// array that is not made of pairs). The tree refers to the text, which must outlive it.
    /// bBrzo: the fast library reads the text first; without it, only the other does.
    bool Procitaj(std::string_view tekst, bool bBrzo = true);

    const CCvor& Koren() const { return m_koren; }
    const std::vector<CClan>& Parovi() const { return m_parovi; }
    /// Where pair i's load case is written (texts are under 4 GiB).
    uint32_t PozicijaPara(size_t i) const { return m_pozicije[i]; }
    const std::vector<std::string>& Imena() const { return m_imena; }
    const std::vector<CKombinacijaJson>& Kombinacije() const { return m_kombinacije; }
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
    std::vector<CClan>& m_parovi;
    std::vector<uint32_t> m_pozicije;
    std::vector<CKombinacijaJson> m_kombinacije;
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
