// A JSON text read into a tree of values that know their place in the text.
//
// Two JSON libraries read it. The fast one reads every text first; a text it refuses, or one
// whose reading leaves any doubt, is read again by the other, whose account of a syntax error
// (its words and its place) is the one users get. A text both accept gives both the same
// events, so the tree is the same whichever read it.
#include "services/JsonStablo.h"

#include "text/Translator.h"

#include <nlohmann/json.hpp>
#include <rapidjson/reader.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <unordered_map>

namespace opterecenje::razmena {

namespace {

CString T(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

constexpr size_t kNajvecaDubina = 64;
// No object of the format has more than a dozen members; a cap keeps the check for repeated
// keys cheap whatever the text.
constexpr size_t kNajviseClanova = 256;

/// Reads the text for the JSON library and notes how far it got: the library reads one byte
/// at a time through it, and the events it raises come just after the bytes of their token.
class CCitacBajtova {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CCitacBajtova() = default;
    CCitacBajtova(const char* p, const char** kursor) : m_p(p), m_kursor(kursor) {}
    reference operator*() const { return *m_p; }
    CCitacBajtova& operator++() {
        *m_kursor = ++m_p;
        return *this;
    }
    CCitacBajtova operator++(int) {
        CCitacBajtova staro = *this;
        ++*this;
        return staro;
    }
    bool operator==(const CCitacBajtova& o) const { return m_p == o.m_p; }

private:
    const char* m_p = nullptr;
    const char** m_kursor = nullptr;
};

bool Razmak(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool ZnakBroja(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

bool KljucParova(std::string_view kljuc) {
    return kljuc == "coefficients" || kljuc == "srss" || kljuc == "fixed";
}

/// The library's account of a syntax error without the bytes it last read, which may span
/// lines: "syntax error while parsing object key - unexpected ']'; expected string literal".
CString OpisGreske(const std::string& what) {
    std::string opis = what;
    if (const size_t p = opis.find("] ");
        opis.starts_with("[json.exception") && p != std::string::npos)
        opis.erase(0, p + 2);
    if (const size_t p = opis.find("syntax error"); p != std::string::npos)
        opis.erase(0, p);
    if (const size_t p = opis.find("; last read: '"); p != std::string::npos) {
        const size_t kraj = opis.find("'; ", p + 14);
        opis.erase(p, kraj == std::string::npos ? std::string::npos : kraj + 1 - p);
    }
    return CString::FromUtf8(opis);
}

} // namespace

const CCvor* CCvor::Clan(std::string_view k) const {
    for (const CCvor& c : deca)
        if (c.kljuc == k)
            return &c;
    return nullptr;
}

CMestoUTekstu MestoUTekstu(std::string_view tekst, size_t poz) {
    CMestoUTekstu m;
    poz = std::min(poz, tekst.size());
    size_t pocetakReda = 0;
    for (size_t i = 0; i < poz; ++i)
        if (tekst[i] == '\n') {
            ++m.red;
            pocetakReda = i + 1;
        }
    for (size_t i = pocetakReda; i < poz; ++i)
        if ((static_cast<unsigned char>(tekst[i]) & 0xC0) != 0x80)
            ++m.kolona;
    return m;
}

/// The events of the JSON library made into the tree.
class CGraditeljStabla {
public:
    /// bKombinacije: combinations of the usual form are read into the tree's list of them
    /// (Vrsta::Kombinacija); one of any other form gives up the reading, for a reader of values
    /// alone to read the text again.
    CGraditeljStabla(CStabloJson& stablo, std::string_view tekst, const char* const& kursor,
                     bool bKombinacije)
        : m_stablo(stablo), m_tekst(tekst), m_kursor(kursor), m_bKombinacije(bKombinacije) {}

    bool null() { return Vrednost(CCvor::Vrsta::Null, false); }
    bool boolean(bool b) {
        if (m_parDubina > 0)
            return NijePar();
        if (m_komb != nullptr) {
            if (m_kombClan != EClan::Generisan)
                return false;
            m_kraj = Kursor();
            m_komb->imaGenerisan = true;
            m_komb->generisan = b;
            return true;
        }
        if (UListiKombinacija())
            return false;
        CCvor* c = Novi(CCvor::Vrsta::Logicka, false);
        if (c != nullptr)
            c->b = b;
        return c != nullptr;
    }
    bool number_integer(int64_t v) { return Broj(static_cast<double>(v), true, v); }
    bool number_unsigned(uint64_t v) {
        const bool ceo = v <= static_cast<uint64_t>(INT64_MAX);
        return Broj(static_cast<double>(v), ceo, ceo ? static_cast<int64_t>(v) : 0);
    }
    bool number_float(double v, const std::string&) { return Broj(v, false, 0); }
    bool string(std::string_view s) {
        if (m_parDubina > 0)
            return ImeUParu(s);
        if (m_komb != nullptr) {
            if (m_kombClan != EClan::Ime)
                return false;
            const size_t poz = Pocetak();
            m_kraj = Kursor();
            m_komb->imaIme = true;
            m_komb->imePoz = static_cast<uint32_t>(poz);
            m_komb->ime = Procitan(poz, s);
            return true;
        }
        if (UListiKombinacija())
            return false;
        CCvor* c = Novi(CCvor::Vrsta::Tekst, false);
        if (c != nullptr)
            c->s = Procitan(c->poz, s);
        return c != nullptr;
    }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_object(size_t) {
        if (m_parDubina > 0)
            return NijePar();
        if (m_komb != nullptr)
            return false;
        if (UListiKombinacija()) {
            const size_t poz = Pocetak();
            m_kraj = poz + 1;
            m_komb = &m_stablo.m_kombinacije.emplace_back();
            m_komb->poz = static_cast<uint32_t>(poz);
            m_kombClan = EClan::Nijedan;
            m_kombKljucevi = 0;
            return true;
        }
        return Otvori(CCvor::Vrsta::Objekat);
    }
    bool key(std::string_view k) {
        const size_t poz = Pocetak();
        m_kraj = Kursor();
        if (m_komb != nullptr) {
            // A key of another name, or one given twice, is left to the reader of values.
            const EClan clan = k == "name"           ? EClan::Ime
                               : k == "generated"    ? EClan::Generisan
                               : k == "coefficients" ? EClan::Koeficijenti
                                                     : EClan::Nijedan;
            const uint8_t bit = static_cast<uint8_t>(1u << static_cast<unsigned>(clan));
            if (clan == EClan::Nijedan || (m_kombKljucevi & bit) != 0)
                return false;
            m_kombKljucevi |= bit;
            m_kombClan = clan;
            return true;
        }
        const std::vector<CCvor>& clanovi = m_deca[m_stek.size() - 1];
        if (clanovi.size() >= kNajviseClanova)
            return Odbij(poz, T(L"an object with more members than this format has"));
        for (const CCvor& c : clanovi)
            if (c.kljuc == k)
                return Odbij(poz, CString::Formatted(T(L"the key \"%s\" is given twice").c_str(),
                                                     CString::FromUtf8(k).c_str()));
        m_kljuc = Procitan(poz, k);
        m_kljucPoz = poz;
        return true;
    }
    bool end_object() {
        if (m_komb != nullptr) {
            m_kraj = Pocetak() + 1;
            m_komb = nullptr;
            return true;
        }
        return Zatvori();
    }
    bool start_array(size_t) {
        if (m_parDubina == 1) {
            // A pair begins.
            m_par = CClan{};
            m_parPoz = static_cast<uint32_t>(Pocetak());
            m_kraj = m_parPoz + 1;
            m_nElemenata = 0;
            m_parDubina = 2;
            return true;
        }
        if (m_parDubina == 2)
            return NijePar();
        if (m_komb != nullptr) {
            if (m_kombClan != EClan::Koeficijenti)
                return false;
            const size_t poz = Pocetak();
            m_kraj = poz + 1;
            m_komb->imaKoeficijente = true;
            m_komb->koefPoz = static_cast<uint32_t>(poz);
            m_komb->prvi = static_cast<uint32_t>(m_stablo.m_parovi.size());
            m_parDubina = 1;
            return true;
        }
        if (UListiKombinacija())
            return false;
        if (ListaKombinacija()) {
            if (!Otvori(CCvor::Vrsta::Kombinacije))
                return false;
            m_stek.back()->prvi = static_cast<uint32_t>(m_stablo.m_kombinacije.size());
            return true;
        }
        const bool parovi = !m_stek.empty() && m_stek.back()->vrsta == CCvor::Vrsta::Objekat &&
                            KljucParova(m_kljuc);
        if (!Otvori(parovi ? CCvor::Vrsta::Parovi : CCvor::Vrsta::Niz))
            return false;
        if (parovi) {
            m_stek.back()->prvi = static_cast<uint32_t>(m_stablo.m_parovi.size());
            m_parDubina = 1;
        }
        return true;
    }
    bool end_array() {
        if (m_parDubina == 2) {
            const size_t poz = Pocetak();
            m_kraj = poz + 1;
            if (m_nElemenata != 2)
                return Odbij(m_parPoz, T(L"a pair must hold a load case and a number"));
            m_stablo.m_parovi.push_back(m_par);
            m_stablo.m_pozicije.push_back(m_parPoz);
            m_parDubina = 1;
            return true;
        }
        if (m_parDubina == 1 && m_komb != nullptr) {
            m_kraj = Pocetak() + 1;
            m_komb->broj = static_cast<uint32_t>(m_stablo.m_parovi.size()) - m_komb->prvi;
            m_parDubina = 0;
            return true;
        }
        if (m_parDubina == 1) {
            CCvor& parovi = *m_stek.back();
            parovi.broj = static_cast<uint32_t>(m_stablo.m_parovi.size()) - parovi.prvi;
            m_parDubina = 0;
        }
        return Zatvori();
    }
    bool parse_error(size_t poz, const std::string& token, const nlohmann::detail::exception& e) {
        if (e.id == 406) // a number beyond the range of doubles
            return Odbij(Pocetak(), CString::Formatted(T(L"the number %s is out of range").c_str(),
                                                       CString::FromUtf8(token).c_str()));
        // At the start of the token that failed, or at the byte that did when that is earlier
        // (an unexpected separator).
        return Odbij(std::min(Pocetak(), poz > 0 ? poz - 1 : 0), OpisGreske(e.what()));
    }

private:
    size_t Kursor() const { return static_cast<size_t>(m_kursor - m_tekst.data()); }

    /// A string just read, written from poz (its opening quote) to the cursor: the text's own
    /// bytes when they are the string's (no escapes make it longer), else a copy the tree keeps.
    std::string_view Procitan(size_t poz, std::string_view s) const {
        if (Kursor() == poz + s.size() + 2)
            return m_tekst.substr(poz + 1, s.size());
        return m_stablo.Zadrzi(s);
    }

    /// The first byte of the token just read: after the end of the one before it, blanks and
    /// separators skipped.
    size_t Pocetak() const {
        size_t p = m_kraj;
        while (p < m_tekst.size() && (Razmak(m_tekst[p]) || m_tekst[p] == ',' || m_tekst[p] == ':'))
            ++p;
        return p;
    }

    bool Odbij(size_t poz, const CString& poruka) {
        if (m_stablo.m_greska.IsEmpty()) {
            m_stablo.m_greskaPoz = poz;
            m_stablo.m_greska = poruka;
        }
        return false;
    }

    bool NijePar() { return Odbij(Pocetak(), T(L"a pair must hold a load case and a number")); }

    /// A new value in the open container (or the root) at the token just read; null (with the
    /// reason noted) when it cannot go there.
    CCvor* Novi(CCvor::Vrsta vrsta, bool broj) {
        const size_t poz = Pocetak();
        if (broj) {
            size_t kraj = poz;
            while (kraj < m_tekst.size() && ZnakBroja(m_tekst[kraj]))
                ++kraj;
            m_kraj = kraj;
        } else if (vrsta == CCvor::Vrsta::Objekat || vrsta == CCvor::Vrsta::Niz ||
                   vrsta == CCvor::Vrsta::Parovi || vrsta == CCvor::Vrsta::Kombinacije) {
            m_kraj = poz + 1;
        } else {
            m_kraj = Kursor();
        }
        CCvor* c = nullptr;
        if (m_stek.empty()) {
            c = &m_stablo.m_koren;
        } else {
            // The open container's values wait side by side until it closes.
            c = &m_deca[m_stek.size() - 1].emplace_back();
            if (m_stek.back()->vrsta == CCvor::Vrsta::Objekat) {
                c->kljuc = m_kljuc;
                c->kljucPoz = static_cast<uint32_t>(m_kljucPoz);
            }
        }
        c->vrsta = vrsta;
        c->poz = static_cast<uint32_t>(poz);
        return c;
    }

    bool Vrednost(CCvor::Vrsta vrsta, bool broj) {
        if (m_parDubina > 0)
            return NijePar();
        if (m_komb != nullptr || UListiKombinacija())
            return false;
        return Novi(vrsta, broj) != nullptr;
    }

    bool Broj(double d, bool ceo, int64_t i) {
        if (m_parDubina == 1)
            return NijePar();
        if ((m_komb != nullptr || UListiKombinacija()) && m_parDubina == 0)
            return false;
        if (m_parDubina == 2) {
            const size_t poz = Pocetak();
            size_t kraj = poz;
            while (kraj < m_tekst.size() && ZnakBroja(m_tekst[kraj]))
                ++kraj;
            m_kraj = kraj;
            if (m_nElemenata == 0) {
                if (!ceo)
                    return Odbij(poz, T(L"a load case is given by its number or its name"));
                m_par.indeks = i >= 1 && i <= INT32_MAX ? static_cast<int32_t>(i) : 0;
                m_parPoz = static_cast<uint32_t>(poz);
            } else if (m_nElemenata == 1) {
                m_par.koef = d;
            } else {
                return Odbij(m_parPoz, T(L"a pair must hold a load case and a number"));
            }
            ++m_nElemenata;
            return true;
        }
        CCvor* c = Novi(CCvor::Vrsta::Broj, true);
        c->d = d;
        c->ceo = ceo;
        c->i = i;
        return true;
    }

    bool ImeUParu(std::string_view s) {
        const size_t poz = Pocetak();
        m_kraj = Kursor();
        if (m_parDubina == 1 || m_nElemenata != 0)
            return Odbij(poz, m_nElemenata == 1 ? T(L"the second member of a pair must be a number")
                                                : T(L"a pair must hold a load case and a number"));
        auto it = m_indeksImena.find(s);
        if (it == m_indeksImena.end()) {
            it = m_indeksImena.emplace(s, static_cast<int32_t>(m_stablo.m_imena.size())).first;
            m_stablo.m_imena.push_back(it->first);
        }
        m_par.indeks = -it->second - 1;
        m_parPoz = static_cast<uint32_t>(poz);
        ++m_nElemenata;
        return true;
    }

    /// The array that opens is the list of combinations of the description or of its stored
    /// set.
    bool ListaKombinacija() const {
        if (!m_bKombinacije || m_kljuc != "combinations" || m_stek.empty() ||
            m_stek.back()->vrsta != CCvor::Vrsta::Objekat)
            return false;
        return m_stek.size() == 1 || (m_stek.size() == 2 && m_stek[1]->kljuc == "stored_set");
    }

    /// A value comes in such a list (only combinations of the usual form are read there).
    bool UListiKombinacija() const {
        return !m_stek.empty() && m_stek.back()->vrsta == CCvor::Vrsta::Kombinacije;
    }

    bool Otvori(CCvor::Vrsta vrsta) {
        if (m_stek.size() >= kNajvecaDubina)
            return Odbij(Pocetak(), T(L"values nested deeper than this format allows"));
        CCvor* c = Novi(vrsta, false);
        m_stek.push_back(c);
        if (m_deca.size() < m_stek.size())
            m_deca.emplace_back();
        return true;
    }

    /// The container closes: its values go side by side into the tree.
    bool Zatvori() {
        m_kraj = Pocetak() + 1;
        if (m_stek.back()->vrsta == CCvor::Vrsta::Kombinacije)
            m_stek.back()->broj =
                static_cast<uint32_t>(m_stablo.m_kombinacije.size()) - m_stek.back()->prvi;
        std::vector<CCvor>& deca = m_deca[m_stek.size() - 1];
        if (!deca.empty()) {
            m_stek.back()->deca = m_stablo.Smesti(deca);
            deca.clear();
        }
        m_stek.pop_back();
        return true;
    }

    CStabloJson& m_stablo;
    std::string_view m_tekst;
    const char* const& m_kursor;
    size_t m_kraj = 0; // where the last token ended
    std::vector<CCvor*> m_stek;
    // The values of each open container, by its depth.
    std::vector<std::vector<CCvor>> m_deca;
    std::string_view m_kljuc;
    size_t m_kljucPoz = 0;
    // Inside an array of pairs: 1 between pairs, 2 within a pair.
    int m_parDubina = 0;
    // The combination being read into the tree's list, and which of its members comes.
    enum class EClan : uint8_t { Nijedan, Ime, Generisan, Koeficijenti };
    const bool m_bKombinacije;
    CKombinacijaJson* m_komb = nullptr;
    EClan m_kombClan = EClan::Nijedan;
    uint8_t m_kombKljucevi = 0;
    int m_nElemenata = 0;
    CClan m_par;
    uint32_t m_parPoz = 0;
    struct CHes {
        using is_transparent = void;
        size_t operator()(std::string_view s) const { return std::hash<std::string_view>()(s); }
    };
    std::unordered_map<std::string, int32_t, CHes, std::equal_to<>> m_indeksImena;
};

namespace {

/// The text as the fast library reads it: byte by byte up to its end, the place of the next
/// byte kept where the tree's builder sees it.
class CTokTeksta {
public:
    using Ch = char;

    CTokTeksta(std::string_view tekst, const char*& kursor)
        : m_pocetak(tekst.data()), m_kraj(tekst.data() + tekst.size()), m_p(kursor) {}

    Ch Peek() const { return m_p == m_kraj ? '\0' : *m_p; }
    Ch Take() { return m_p == m_kraj ? '\0' : *m_p++; }
    size_t Tell() const { return static_cast<size_t>(m_p - m_pocetak); }
    // Never written to: the text is read as it is.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    size_t PutEnd(Ch*) { return 0; }

    const char* Pocetak() const { return m_pocetak; }
    const char* Kursor() const { return m_p; }

private:
    const char* m_pocetak;
    const char* m_kraj;
    const char*& m_p;
};

/// The fast library's events passed to the tree's builder as the other library raises them.
/// Whatever the two libraries might read differently gives up the reading (m_sumnja), and the
/// text is then read again by the other: a number that only the other's conversion rounds as
/// it should, and a text that holds a byte 0 or the UTF-8 of an unpaired surrogate, which the
/// fast library lets through.
class CBrziDogadjaji {
public:
    CBrziDogadjaji(CGraditeljStabla& graditelj, const CTokTeksta& tok)
        : m_graditelj(graditelj), m_tok(tok) {}

    bool Null() { return m_graditelj.null(); }
    bool Bool(bool b) { return m_graditelj.boolean(b); }
    bool Int(int v) { return m_graditelj.number_integer(v); }
    bool Uint(unsigned v) { return m_graditelj.number_unsigned(v); }
    bool Int64(int64_t v) { return m_graditelj.number_integer(v); }
    bool Uint64(uint64_t v) { return m_graditelj.number_unsigned(v); }
    bool Double(double) {
        // The number's text ends where the reading stands; no byte before a number belongs to
        // one. It is converted anew, rounded as the other library rounds it.
        const char* kraj = m_tok.Kursor();
        const char* pocetak = kraj;
        while (pocetak > m_tok.Pocetak() && ZnakBroja(pocetak[-1]))
            --pocetak;
        double d = 0.0;
        const auto r = std::from_chars(pocetak, kraj, d);
        if (r.ec != std::errc() || r.ptr != kraj)
            return Sumnja();
        std::string tekst;
        return m_graditelj.number_float(d, tekst);
    }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return Sumnja(); }
    bool String(const char* s, rapidjson::SizeType n, bool) {
        if (!Tekst(s, n))
            return false;
        return m_graditelj.string(std::string_view(s, n));
    }
    bool Key(const char* s, rapidjson::SizeType n, bool) {
        if (!Tekst(s, n))
            return false;
        return m_graditelj.key(std::string_view(s, n));
    }
    bool StartObject() { return m_graditelj.start_object(0); }
    bool EndObject(rapidjson::SizeType) { return m_graditelj.end_object(); }
    bool StartArray() { return m_graditelj.start_array(0); }
    bool EndArray(rapidjson::SizeType) { return m_graditelj.end_array(); }

    bool ImaSumnje() const { return m_sumnja; }

private:
    bool Sumnja() {
        m_sumnja = true;
        return false;
    }

    /// False for a string that holds an unpaired surrogate (ED A0..BF in UTF-8).
    bool Tekst(const char* s, rapidjson::SizeType n) {
        const char* kraj = s + n;
        for (const char* p = s;
             (p = static_cast<const char*>(std::memchr(p, '\xED', static_cast<size_t>(kraj - p))));
             ++p)
            if (p + 1 < kraj && static_cast<unsigned char>(p[1]) >= 0xA0)
                return Sumnja();
        return true;
    }

    CGraditeljStabla& m_graditelj;
    const CTokTeksta& m_tok;
    bool m_sumnja = false;
};

} // namespace

std::span<const CCvor> CStabloJson::Smesti(const std::vector<CCvor>& vrednosti) {
    // Blocks growing twice as large up to about a megabyte, so that a short text takes little,
    // or one of its own for a larger container.
    constexpr size_t kPrvi = 64;
    constexpr size_t kNajveci = 12000;
    const size_t n = vrednosti.size();
    if (m_blokovi.empty() || m_blokovi.back().capacity() - m_blokovi.back().size() < n) {
        const size_t blok =
            m_blokovi.empty() ? kPrvi : std::min(2 * m_blokovi.back().capacity(), kNajveci);
        m_blokovi.emplace_back().reserve(std::max(n, blok));
    }
    std::vector<CCvor>& blok = m_blokovi.back();
    blok.insert(blok.end(), vrednosti.begin(), vrednosti.end());
    return std::span<const CCvor>(blok.data() + blok.size() - n, n);
}

std::string_view CStabloJson::Zadrzi(std::string_view s) {
    return m_tekstovi.emplace_back(s);
}

void CStabloJson::Isprazni() {
    m_koren = CCvor();
    m_blokovi.clear();
    m_tekstovi.clear();
    m_kombinacije.clear();
    m_parovi.clear();
    m_pozicije.clear();
    m_imena.clear();
    m_greska.clear();
    m_greskaPoz = 0;
}

bool CStabloJson::ProcitajBrzo(std::string_view tekst) {
    // A byte 0 ends the text for the fast library.
    if (std::memchr(tekst.data(), '\0', tekst.size()) != nullptr)
        return false;
    const char* kursor = tekst.data();
    CTokTeksta tok(tekst, kursor);
    CGraditeljStabla graditelj(*this, tekst, kursor, true);
    CBrziDogadjaji dogadjaji(graditelj, tok);
    rapidjson::Reader citac;
    constexpr unsigned kNacin = rapidjson::kParseValidateEncodingFlag;
    return !citac.Parse<kNacin>(tok, dogadjaji).IsError();
}

bool CStabloJson::Procitaj(std::string_view tekst, bool bBrzo) {
    Isprazni();
    if (tekst.size() >= (size_t{1} << 32)) {
        m_greska = T(L"the text is larger than 4 GiB");
        return false;
    }
    // Room for as many pairs as the text can hold ("[1,1]," takes six bytes): only the part
    // that is filled takes memory, and the list is never copied while it grows.
    m_parovi.reserve(std::min<size_t>(tekst.size() / 6 + 16, size_t{1} << 24));
    m_pozicije.reserve(m_parovi.capacity());
    // And for as many combinations ("{"coefficients": [[1,1]]}," takes 26 bytes).
    m_kombinacije.reserve(std::min<size_t>(tekst.size() / 26 + 4, size_t{1} << 22));
    if (bBrzo && ProcitajBrzo(tekst))
        return true;
    Isprazni();
    const char* kursor = tekst.data();
    CGraditeljStabla graditelj(*this, tekst, kursor, false);
    const bool ok =
        nlohmann::json::sax_parse(CCitacBajtova(tekst.data(), &kursor),
                                  CCitacBajtova(tekst.data() + tekst.size(), &kursor), &graditelj);
    if (!ok && m_greska.IsEmpty()) {
        m_greskaPoz = static_cast<size_t>(kursor - tekst.data());
        m_greska = T(L"the text is not JSON");
    }
    return ok;
}

} // namespace opterecenje::razmena
