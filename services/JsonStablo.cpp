// A JSON text read into a tree of values that know their place in the text.
#include "services/JsonStablo.h"

#include "text/Translator.h"

#include <nlohmann/json.hpp>

#include <algorithm>
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

bool KljucParova(const std::string& kljuc) {
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
    CGraditeljStabla(CStabloJson& stablo, std::string_view tekst, const char* const& kursor)
        : m_stablo(stablo), m_tekst(tekst), m_kursor(kursor) {}

    bool null() { return Vrednost(CCvor::Vrsta::Null, false); }
    bool boolean(bool b) {
        if (m_parDubina > 0)
            return NijePar();
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
    bool string(std::string& s) {
        if (m_parDubina > 0)
            return ImeUParu(s);
        CCvor* c = Novi(CCvor::Vrsta::Tekst, false);
        if (c != nullptr)
            c->s = std::move(s);
        return c != nullptr;
    }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_object(size_t) {
        if (m_parDubina > 0)
            return NijePar();
        return Otvori(CCvor::Vrsta::Objekat);
    }
    bool key(std::string& k) {
        const size_t poz = Pocetak();
        m_kraj = Kursor();
        CCvor& objekat = *m_stek.back();
        if (objekat.deca.size() >= kNajviseClanova)
            return Odbij(poz, T(L"an object with more members than this format has"));
        if (objekat.Clan(k) != nullptr)
            return Odbij(poz, CString::Formatted(T(L"the key \"%s\" is given twice").c_str(),
                                                 CString::FromUtf8(k).c_str()));
        m_kljuc = std::move(k);
        m_kljucPoz = poz;
        return true;
    }
    bool end_object() { return Zatvori(); }
    bool start_array(size_t) {
        if (m_parDubina == 1) {
            // A pair begins.
            m_par = CParJson{};
            m_par.poz = static_cast<uint32_t>(Pocetak());
            m_kraj = m_par.poz + 1;
            m_nElemenata = 0;
            m_parDubina = 2;
            return true;
        }
        if (m_parDubina == 2)
            return NijePar();
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
                return Odbij(m_par.poz, T(L"a pair must hold a load case and a number"));
            m_stablo.m_parovi.push_back(m_par);
            m_parDubina = 1;
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
                   vrsta == CCvor::Vrsta::Parovi) {
            m_kraj = poz + 1;
        } else {
            m_kraj = Kursor();
        }
        CCvor* c = nullptr;
        if (m_stek.empty()) {
            c = &m_stablo.m_koren;
        } else {
            CCvor& roditelj = *m_stek.back();
            c = &roditelj.deca.emplace_back();
            if (roditelj.vrsta == CCvor::Vrsta::Objekat) {
                c->kljuc = std::move(m_kljuc);
                c->kljucPoz = m_kljucPoz;
            }
        }
        c->vrsta = vrsta;
        c->poz = poz;
        return c;
    }

    bool Vrednost(CCvor::Vrsta vrsta, bool broj) {
        if (m_parDubina > 0)
            return NijePar();
        return Novi(vrsta, broj) != nullptr;
    }

    bool Broj(double d, bool ceo, int64_t i) {
        if (m_parDubina == 1)
            return NijePar();
        if (m_parDubina == 2) {
            const size_t poz = Pocetak();
            size_t kraj = poz;
            while (kraj < m_tekst.size() && ZnakBroja(m_tekst[kraj]))
                ++kraj;
            m_kraj = kraj;
            if (m_nElemenata == 0) {
                if (!ceo)
                    return Odbij(poz, T(L"a load case is given by its number or its name"));
                m_par.broj = i;
                m_par.poz = static_cast<uint32_t>(poz);
            } else if (m_nElemenata == 1) {
                m_par.koef = d;
            } else {
                return Odbij(m_par.poz, T(L"a pair must hold a load case and a number"));
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

    bool ImeUParu(std::string& s) {
        const size_t poz = Pocetak();
        m_kraj = Kursor();
        if (m_parDubina == 1 || m_nElemenata != 0)
            return Odbij(poz, m_nElemenata == 1 ? T(L"the second member of a pair must be a number")
                                                : T(L"a pair must hold a load case and a number"));
        auto [it, nov] =
            m_indeksImena.try_emplace(std::move(s), static_cast<int32_t>(m_stablo.m_imena.size()));
        if (nov)
            m_stablo.m_imena.push_back(it->first);
        m_par.ime = it->second;
        m_par.poz = static_cast<uint32_t>(poz);
        ++m_nElemenata;
        return true;
    }

    bool Otvori(CCvor::Vrsta vrsta) {
        if (m_stek.size() >= kNajvecaDubina)
            return Odbij(Pocetak(), T(L"values nested deeper than this format allows"));
        CCvor* c = Novi(vrsta, false);
        // Combinations, the bulk of a description, are objects of three members.
        if (vrsta == CCvor::Vrsta::Objekat)
            c->deca.reserve(4);
        m_stek.push_back(c);
        return true;
    }

    bool Zatvori() {
        m_kraj = Pocetak() + 1;
        m_stek.pop_back();
        return true;
    }

    CStabloJson& m_stablo;
    std::string_view m_tekst;
    const char* const& m_kursor;
    size_t m_kraj = 0; // where the last token ended
    std::vector<CCvor*> m_stek;
    std::string m_kljuc;
    size_t m_kljucPoz = 0;
    // Inside an array of pairs: 1 between pairs, 2 within a pair.
    int m_parDubina = 0;
    int m_nElemenata = 0;
    CParJson m_par;
    std::unordered_map<std::string, int32_t> m_indeksImena;
};

bool CStabloJson::Procitaj(std::string_view tekst) {
    m_koren = CCvor();
    m_parovi.clear();
    m_imena.clear();
    m_greska.clear();
    m_greskaPoz = 0;
    if (tekst.size() >= (size_t{1} << 32)) {
        m_greska = T(L"the text is larger than 4 GiB");
        return false;
    }
    // Room for as many pairs as the text can hold ("[1,1]," takes six bytes): only the part
    // that is filled takes memory, and the list is never copied while it grows.
    m_parovi.reserve(std::min<size_t>(tekst.size() / 6 + 16, size_t{1} << 24));
    const char* kursor = tekst.data();
    CGraditeljStabla graditelj(*this, tekst, kursor);
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
