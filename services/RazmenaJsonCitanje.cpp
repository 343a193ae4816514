// Reading the JSON description of a model's loads: every value checked, every load case that
// is named found, and the first thing refused named by its line and column.
#include "model/AnvelopaOpterecenja.h"
#include "services/JsonStablo.h"
#include "services/RazmenaTekst.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <charconv>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <unordered_map>

namespace opterecenje::razmena {

namespace {

CString T(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

CString Utf(std::string_view s) {
    return CString::FromUtf8(s);
}

/// The names of load cases by which a list names them, with where each stands.
struct CImenik {
    std::unordered_map<std::string_view, int32_t> indeks;
    std::vector<size_t> poz;
};

class CCitacOpisa {
public:
    CCitacOpisa(std::string_view tekst, const CStabloJson& stablo, COpis& opis)
        : m_tekst(tekst), m_stablo(stablo), m_opis(opis) {}

    bool Citaj();
    const CString& Greska() const { return m_greska; }

private:
    bool Odbij(size_t poz, const CString& poruka) {
        m_greska = NaMestu(m_tekst, poz, poruka);
        return false;
    }
    bool Odbij(size_t poz, const wchar_t* format, std::string_view kljuc) {
        return Odbij(poz, CString::Formatted(T(format).c_str(), Utf(kljuc).c_str()));
    }

    // ---- values of members, left as they are when the member is missing
    bool Poznati(const CCvor& o, std::initializer_list<std::string_view> kljucevi,
                 const wchar_t* gde);
    bool Objekat(const CCvor& c, const wchar_t* sta);
    bool Logicka(const CCvor& o, const char* k, int& v);
    bool Broj(const CCvor& o, const char* k, double& v);
    bool Ceo(const CCvor& o, const char* k, int& v, int od, int doBroja);
    bool Tekst(const CCvor& o, const char* k, CString& v);
    const CCvor* Niz(const CCvor& o, const char* k, bool& ok);

    // ---- load cases named by number or name
    bool Imenik(const CCvor& niz, CImenik& imenik, bool bJedinstvena);
    bool Slucaj(const CCvor& c, const CImenik& imenik, int n, int32_t& indeks);
    bool SlucajUParu(size_t par, const CImenik& imenik, int n, int32_t& indeks);
    bool Parovi(const CCvor& o, const char* k, const CImenik& imenik, int n,
                std::vector<CClan>& clanovi, bool& imaClan);
    bool Parovi(uint32_t prvi, uint32_t broj, const CImenik& imenik, int n,
                std::vector<CClan>& clanovi);
    bool Clanovi(uint32_t prvi, uint32_t broj, const CImenik& imenik, int n,
                 CKombinacijeOpisa& kombinacije, CKombinacijaOpisa& k);

    bool Slucajevi(const CCvor& niz);
    bool Slucaj(const CCvor& c, CSlucajOpisa& s);
    bool Pravila(const CCvor& c, const char* k, int32_t ja, std::vector<int32_t>& lista);
    bool SRSS();
    bool Kombinacije(const CCvor& niz, const CImenik& imenik, int n, bool bObicne,
                     CKombinacijeOpisa& kombinacije);
    bool Kombinacija(const CKombinacijaJson& j, const CImenik& imenik, int n, bool bObicne,
                     CKombinacijeOpisa& kombinacije);
    bool Obicna(const CKombinacijaOpisa& k, const CKombinacijeOpisa& kombinacije, size_t poz,
                size_t koefPoz, uint32_t prviPar, bool imaKoeficijente);
    bool Anvelope(const CCvor& niz);
    bool Skladiste(const CCvor& c);
    bool Stabilnost(const CCvor& c);
    bool UStabilnosti(int32_t indeks) const;

    std::string_view m_tekst;
    const CStabloJson& m_stablo;
    COpis& m_opis;
    CString m_greska;
    CImenik m_imenik;
    std::vector<const CCvor*> m_cvorSlucaja;
};

bool CCitacOpisa::Poznati(const CCvor& o, std::initializer_list<std::string_view> kljucevi,
                          const wchar_t* gde) {
    for (const CCvor& c : o.deca) {
        bool poznat = false;
        for (const std::string_view k : kljucevi)
            poznat = poznat || c.kljuc == k;
        if (!poznat)
            return Odbij(c.kljucPoz, CString::Formatted(T(L"unknown key \"%s\" in %s").c_str(),
                                                        Utf(c.kljuc).c_str(), T(gde).c_str()));
    }
    return true;
}

bool CCitacOpisa::Objekat(const CCvor& c, const wchar_t* sta) {
    if (c.vrsta == CCvor::Vrsta::Objekat)
        return true;
    return Odbij(c.poz, CString::Formatted(T(L"%s must be a JSON object").c_str(), T(sta).c_str()));
}

bool CCitacOpisa::Logicka(const CCvor& o, const char* k, int& v) {
    const CCvor* c = o.Clan(k);
    if (c == nullptr)
        return true;
    if (c->vrsta != CCvor::Vrsta::Logicka)
        return Odbij(c->poz, L"\"%s\" must be true or false", k);
    v = c->b ? 1 : 0;
    return true;
}

bool CCitacOpisa::Broj(const CCvor& o, const char* k, double& v) {
    const CCvor* c = o.Clan(k);
    if (c == nullptr)
        return true;
    if (c->vrsta != CCvor::Vrsta::Broj)
        return Odbij(c->poz, L"\"%s\" must be a number", k);
    v = c->d;
    return true;
}

bool CCitacOpisa::Ceo(const CCvor& o, const char* k, int& v, int od, int doBroja) {
    const CCvor* c = o.Clan(k);
    if (c == nullptr)
        return true;
    if (c->vrsta != CCvor::Vrsta::Broj || !c->ceo || c->i < od || c->i > doBroja)
        return Odbij(c->poz,
                     CString::Formatted(T(L"\"%s\" must be a whole number from %d to %d").c_str(),
                                        Utf(k).c_str(), od, doBroja));
    v = static_cast<int>(c->i);
    return true;
}

bool CCitacOpisa::Tekst(const CCvor& o, const char* k, CString& v) {
    const CCvor* c = o.Clan(k);
    if (c == nullptr)
        return true;
    if (c->vrsta != CCvor::Vrsta::Tekst)
        return Odbij(c->poz, L"\"%s\" must be a string", k);
    v = Utf(c->s);
    return true;
}

const CCvor* CCitacOpisa::Niz(const CCvor& o, const char* k, bool& ok) {
    const CCvor* c = o.Clan(k);
    ok = c == nullptr || c->vrsta == CCvor::Vrsta::Niz || c->vrsta == CCvor::Vrsta::Kombinacije;
    if (!ok)
        Odbij(c->poz, L"\"%s\" must be an array", k);
    return ok ? c : nullptr;
}

// ------------------------------------------------------------------------ names

bool CCitacOpisa::Imenik(const CCvor& niz, CImenik& imenik, bool bJedinstvena) {
    for (const CCvor& c : niz.deca) {
        if (!Objekat(c, L"a load case"))
            return false;
        const CCvor* ime = c.Clan("name");
        if (ime == nullptr)
            return Odbij(c.poz, T(L"a load case needs a \"name\""));
        if (ime->vrsta != CCvor::Vrsta::Tekst)
            return Odbij(ime->poz, L"\"%s\" must be a string", "name");
        if (ime->s.find_first_not_of(" \t") == std::string::npos && bJedinstvena)
            return Odbij(ime->poz, T(L"a load case needs a name that is not blank"));
        const auto [it, nov] =
            imenik.indeks.try_emplace(ime->s, static_cast<int32_t>(imenik.poz.size()));
        if (!nov && bJedinstvena) {
            const CMestoUTekstu prvi = MestoUTekstu(m_tekst, imenik.poz[it->second]);
            return Odbij(ime->poz, CString::Formatted(T(L"the load case name \"%s\" is given twice "
                                                        L"(first on line %d)")
                                                          .c_str(),
                                                      Utf(ime->s).c_str(), prvi.red));
        }
        imenik.poz.push_back(ime->poz);
    }
    return true;
}

bool CCitacOpisa::Slucaj(const CCvor& c, const CImenik& imenik, int n, int32_t& indeks) {
    if (c.vrsta == CCvor::Vrsta::Tekst) {
        const auto it = imenik.indeks.find(c.s);
        if (it == imenik.indeks.end())
            return Odbij(c.poz, L"there is no load case named \"%s\"", c.s);
        indeks = it->second;
        return true;
    }
    if (c.vrsta != CCvor::Vrsta::Broj || !c.ceo)
        return Odbij(c.poz, T(L"a load case is given by its number or its name"));
    if (c.i < 1 || c.i > n)
        return Odbij(c.poz, CString::Formatted(T(L"there is no load case %lld (they are numbered "
                                                 L"1 to %d)")
                                                   .c_str(),
                                               static_cast<long long>(c.i), n));
    indeks = static_cast<int32_t>(c.i - 1);
    return true;
}

bool CCitacOpisa::SlucajUParu(size_t par, const CImenik& imenik, int n, int32_t& indeks) {
    const int32_t slucaj = m_stablo.Parovi()[par].indeks;
    const uint32_t poz = m_stablo.PozicijaPara(par);
    if (slucaj < 0) {
        const std::string& ime = m_stablo.Imena()[static_cast<size_t>(-slucaj - 1)];
        const auto it = imenik.indeks.find(ime);
        if (it == imenik.indeks.end())
            return Odbij(poz, L"there is no load case named \"%s\"", ime);
        indeks = it->second;
        return true;
    }
    if (slucaj == 0 || slucaj > n) {
        // A number the pair could not keep is written in the text as a whole number.
        long long broj = slucaj;
        if (slucaj == 0)
            std::from_chars(m_tekst.data() + poz, m_tekst.data() + m_tekst.size(), broj);
        return Odbij(poz, CString::Formatted(T(L"there is no load case %lld (they are numbered "
                                               L"1 to %d)")
                                                 .c_str(),
                                             broj, n));
    }
    indeks = slucaj - 1;
    return true;
}

/// The pairs of a member, each load case named once; imaClan tells whether the member is
/// there at all.
bool CCitacOpisa::Parovi(const CCvor& o, const char* k, const CImenik& imenik, int n,
                         std::vector<CClan>& clanovi, bool& imaClan) {
    const CCvor* c = o.Clan(k);
    imaClan = c != nullptr;
    if (c == nullptr)
        return true;
    if (c->vrsta != CCvor::Vrsta::Parovi)
        return Odbij(c->poz, L"\"%s\" must be an array of pairs [load case, number]", k);
    return Parovi(c->prvi, c->broj, imenik, n, clanovi);
}

/// The pairs [prvi, prvi + broj) of the tree, each load case named once.
bool CCitacOpisa::Parovi(uint32_t prviPar, uint32_t broj, const CImenik& imenik, int n,
                         std::vector<CClan>& clanovi) {
    const size_t prvi = clanovi.size();
    for (size_t par = prviPar; par < size_t{prviPar} + broj; ++par) {
        CClan clan;
        if (!SlucajUParu(par, imenik, n, clan.indeks))
            return false;
        clan.koef = m_stablo.Parovi()[par].koef;
        for (size_t j = prvi; j < clanovi.size(); ++j)
            if (clanovi[j].indeks == clan.indeks)
                return Odbij(m_stablo.PozicijaPara(par), T(L"the load case is named twice"));
        clanovi.push_back(clan);
    }
    return true;
}

/// The members of a combination, from the pairs [prvi, prvi + broj) of the tree. In the
/// description's own list of combinations, whose members are the tree's pairs, each pair
/// becomes the member it names where it stands.
bool CCitacOpisa::Clanovi(uint32_t prviPar, uint32_t broj, const CImenik& imenik, int n,
                          CKombinacijeOpisa& kombinacije, CKombinacijaOpisa& k) {
    if (&kombinacije.clanovi != &m_stablo.Parovi()) {
        k.prvi = static_cast<uint32_t>(kombinacije.clanovi.size());
        if (!Parovi(prviPar, broj, imenik, n, kombinacije.clanovi))
            return false;
        k.broj = static_cast<uint32_t>(kombinacije.clanovi.size()) - k.prvi;
        return true;
    }
    k.prvi = prviPar;
    k.broj = broj;
    CClan* clanovi = kombinacije.clanovi.data() + prviPar;
    for (uint32_t e = 0; e < broj; ++e) {
        int32_t indeks = 0;
        if (!SlucajUParu(prviPar + e, imenik, n, indeks))
            return false;
        for (uint32_t j = 0; j < e; ++j)
            if (clanovi[j].indeks == indeks)
                return Odbij(m_stablo.PozicijaPara(prviPar + e),
                             T(L"the load case is named twice"));
        clanovi[e].indeks = indeks;
    }
    return true;
}

// ------------------------------------------------------------------------ load cases

bool CCitacOpisa::Slucajevi(const CCvor& niz) {
    if (!Imenik(niz, m_imenik, true))
        return false;
    m_opis.slucajevi.resize(niz.deca.size());
    for (size_t k = 0; k < niz.deca.size(); ++k) {
        m_cvorSlucaja.push_back(&niz.deca[k]);
        if (!Slucaj(niz.deca[k], m_opis.slucajevi[k]))
            return false;
    }
    for (size_t k = 0; k < niz.deca.size(); ++k) {
        CSlucajOpisa& s = m_opis.slucajevi[k];
        const auto ja = static_cast<int32_t>(k);
        if (!Pravila(niz.deca[k], "never_with", ja, s.nikad) ||
            !Pravila(niz.deca[k], "always_with", ja, s.uvek))
            return false;
    }
    return SRSS();
}

bool CCitacOpisa::Slucaj(const CCvor& c, CSlucajOpisa& s) {
    if (!Poznati(c,
                 {"name", "g", "coefficient", "permanent", "alternating", "seismic",
                  "seismic_analysis", "nda", "modes", "influence_line", "never_with", "always_with",
                  "srss"},
                 L"a load case"))
        return false;
    s.naziv = Utf(c.Clan("name")->s);
    if (!Logicka(c, "g", s.g) || !Broj(c, "coefficient", s.koef) ||
        !Logicka(c, "permanent", s.stalno) || !Logicka(c, "alternating", s.alternativno) ||
        !Logicka(c, "seismic", s.seizmicki) ||
        !Logicka(c, "seismic_analysis", s.ulaziUSeizmickiProracun) || !Logicka(c, "nda", s.nda) ||
        !Ceo(c, "modes", s.tonovi, 0, 999))
        return false;
    if (!(s.koef >= 0.0))
        return Odbij(c.Clan("coefficient")->poz, T(L"\"coefficient\" must not be negative"));
    if (const CCvor* u = c.Clan("influence_line"); u != nullptr && u->vrsta != CCvor::Vrsta::Null) {
        // A kind this program has no name for is kept as its number.
        if (u->vrsta == CCvor::Vrsta::Broj && u->ceo && u->i >= INT32_MIN && u->i <= INT32_MAX &&
            u->i != UL_NIJEDNA)
            s.uticaj = static_cast<eUticajUticajneLin>(u->i);
        else if (u->vrsta != CCvor::Vrsta::Tekst || !UticajPoNazivu(u->s, s.uticaj))
            return Odbij(u->poz, T(L"\"influence_line\" must be null or one of \"moment\", "
                                   L"\"shear_force\", \"axial_force\", \"displacement\", "
                                   L"\"reaction\", \"unspecified\""));
    }
    return true;
}

bool CCitacOpisa::Pravila(const CCvor& c, const char* k, int32_t ja, std::vector<int32_t>& lista) {
    bool ok = true;
    const CCvor* niz = Niz(c, k, ok);
    if (niz == nullptr)
        return ok;
    const int n = static_cast<int>(m_opis.slucajevi.size());
    for (const CCvor& e : niz->deca) {
        int32_t indeks = 0;
        if (!Slucaj(e, m_imenik, n, indeks))
            return false;
        if (indeks == ja)
            return Odbij(e.poz, T(L"a load case cannot be named in its own rules"));
        for (const int32_t i : lista)
            if (i == indeks)
                return Odbij(e.poz, T(L"the load case is named twice"));
        lista.push_back(indeks);
    }
    return true;
}

bool CCitacOpisa::SRSS() {
    const int n = static_cast<int>(m_opis.slucajevi.size());
    // SRSS cases are those with weights, wherever they stand.
    std::vector<bool> jeSRSS(static_cast<size_t>(n));
    for (int k = 0; k < n; ++k) {
        const CCvor* srss = m_cvorSlucaja[static_cast<size_t>(k)]->Clan("srss");
        jeSRSS[static_cast<size_t>(k)] =
            srss != nullptr && srss->vrsta == CCvor::Vrsta::Parovi && srss->broj > 0;
    }
    bool bPosleSRSS = false;
    for (int k = 0; k < n; ++k) {
        const CCvor& c = *m_cvorSlucaja[static_cast<size_t>(k)];
        CSlucajOpisa& s = m_opis.slucajevi[static_cast<size_t>(k)];
        bool ima = false;
        if (!Parovi(c, "srss", m_imenik, n, s.srss, ima))
            return false;
        if (!jeSRSS[static_cast<size_t>(k)]) {
            if (bPosleSRSS)
                return Odbij(c.poz, T(L"SRSS load cases come after all other load cases"));
            continue;
        }
        bPosleSRSS = true;
        const CCvor& niz = *c.Clan("srss");
        for (uint32_t e = 0; e < niz.broj; ++e) {
            const uint32_t poz = m_stablo.PozicijaPara(niz.prvi + e);
            const CClan& clan = s.srss[e];
            if (jeSRSS[static_cast<size_t>(clan.indeks)])
                return Odbij(poz, T(L"an SRSS load case combines load cases that are not "
                                    L"SRSS cases"));
            if (!std::isfinite(clan.koef) || clan.koef <= 0.0)
                return Odbij(poz, T(L"an SRSS weight must be a number above 0"));
            // The weight is kept squared, and the square must be a number too.
            if (!std::isfinite(clan.koef * clan.koef))
                return Odbij(poz, T(L"an SRSS weight must be below 1e154"));
        }
        if (s.srss.size() < 2)
            return Odbij(niz.poz, T(L"an SRSS load case combines at least two load cases"));
    }
    return true;
}

// ------------------------------------------------------------------------ combinations

bool CCitacOpisa::Kombinacije(const CCvor& niz, const CImenik& imenik, int n, bool bObicne,
                              CKombinacijeOpisa& kombinacije) {
    // Room for every pair of the text: only the part that is filled takes memory.
    if (&kombinacije.clanovi != &m_stablo.Parovi())
        kombinacije.clanovi.reserve(m_stablo.Parovi().size());
    if (niz.vrsta == CCvor::Vrsta::Kombinacije) {
        kombinacije.lista.reserve(niz.broj);
        for (uint32_t e = 0; e < niz.broj; ++e)
            if (!Kombinacija(m_stablo.Kombinacije()[niz.prvi + e], imenik, n, bObicne, kombinacije))
                return false;
        return true;
    }
    kombinacije.lista.reserve(niz.deca.size());
    for (const CCvor& c : niz.deca) {
        if (!Objekat(c, L"a combination") ||
            !Poznati(c, {"name", "generated", "coefficients"}, L"a combination"))
            return false;
        CKombinacijaOpisa k;
        const CCvor* ime = c.Clan("name");
        int generisan = ime == nullptr ? 1 : 0;
        if (!Logicka(c, "generated", generisan))
            return false;
        k.generisan = generisan != 0;
        // A generated name is made anew from the coefficients: the one written is not kept.
        if (ime != nullptr && ime->vrsta != CCvor::Vrsta::Tekst)
            return Odbij(ime->poz, L"\"%s\" must be a string", "name");
        if (!k.generisan && !Tekst(c, "name", k.naziv))
            return false;
        const CCvor* koef = c.Clan("coefficients");
        const bool ima = koef != nullptr;
        if (ima && koef->vrsta != CCvor::Vrsta::Parovi)
            return Odbij(koef->poz, L"\"%s\" must be an array of pairs [load case, number]",
                         "coefficients");
        if (!Clanovi(ima ? koef->prvi : 0, ima ? koef->broj : 0, imenik, n, kombinacije, k))
            return false;
        if (bObicne &&
            !Obicna(k, kombinacije, c.poz, ima ? koef->poz : 0, ima ? koef->prvi : 0, ima))
            return false;
        kombinacije.lista.push_back(std::move(k));
    }
    return true;
}

/// What the combination editor would not accept on OK, for a combination of ordinary load
/// cases: it needs coefficients, one of them other than zero, and no influence-line load case.
/// `poz`, `koefPoz` and `prviPar` are where the combination, its "coefficients" and their first
/// pair stand in the text.
bool CCitacOpisa::Obicna(const CKombinacijaOpisa& k, const CKombinacijeOpisa& kombinacije,
                         size_t poz, size_t koefPoz, uint32_t prviPar, bool imaKoeficijente) {
    if (!imaKoeficijente)
        return Odbij(poz, T(L"a combination needs \"coefficients\""));
    bool nenulti = false;
    for (uint32_t e = 0; e < k.broj; ++e) {
        const CClan& clan = kombinacije.clanovi[k.prvi + e];
        nenulti = nenulti || !CToler::Jednaki(clan.koef, 0.0);
        if (m_opis.slucajevi[static_cast<size_t>(clan.indeks)].uticaj != UL_NIJEDNA)
            return Odbij(m_stablo.PozicijaPara(prviPar + e),
                         T(L"an influence-line load case takes part in no combination"));
    }
    if (!nenulti)
        return Odbij(koefPoz, T(L"a combination needs a coefficient other than zero"));
    return true;
}

/// A combination of the usual form (its members' kinds are right): checked as above.
bool CCitacOpisa::Kombinacija(const CKombinacijaJson& j, const CImenik& imenik, int n, bool bObicne,
                              CKombinacijeOpisa& kombinacije) {
    CKombinacijaOpisa k;
    k.generisan = j.imaGenerisan ? j.generisan : !j.imaIme;
    if (!k.generisan && j.imaIme)
        k.naziv = Utf(j.ime);
    if (!Clanovi(j.imaKoeficijente ? j.prvi : 0, j.imaKoeficijente ? j.broj : 0, imenik, n,
                 kombinacije, k))
        return false;
    if (bObicne && !Obicna(k, kombinacije, j.poz, j.koefPoz, j.prvi, j.imaKoeficijente))
        return false;
    kombinacije.lista.push_back(std::move(k));
    return true;
}

// ------------------------------------------------------------------------ envelopes, storage

bool CCitacOpisa::Anvelope(const CCvor& niz) {
    const int n = static_cast<int>(m_opis.slucajevi.size() + m_opis.kombinacije.lista.size());
    std::unordered_map<std::wstring, size_t> imena;
    for (const CCvor& c : niz.deca) {
        if (!Objekat(c, L"an envelope") ||
            !Poznati(c, {"name", "selection", "mode"}, L"an envelope"))
            return false;
        CAnvelopaOpisa a;
        if (!Tekst(c, "name", a.naziv) || !Tekst(c, "selection", a.izbor) ||
            !Ceo(c, "mode", a.mod, 0, 1))
            return false;
        const CCvor* ime = c.Clan("name");
        if (ime == nullptr || a.naziv.find_first_not_of(L" \t") == CString::npos)
            return Odbij(ime != nullptr ? ime->poz : c.poz,
                         T(L"an envelope needs a name that is not blank"));
        if (const auto [it, nov] = imena.try_emplace(a.naziv, ime->poz); !nov)
            return Odbij(ime->poz, CString::Formatted(T(L"the envelope name \"%s\" is given twice "
                                                        L"(first on line %d)")
                                                          .c_str(),
                                                      a.naziv.c_str(),
                                                      MestoUTekstu(m_tekst, it->second).red));
        const CCvor* izbor = c.Clan("selection");
        CArray<int> oznake;
        if (izbor == nullptr || a.izbor.find_first_not_of(L" \t") == CString::npos)
            return Odbij(izbor != nullptr ? izbor->poz : c.poz,
                         T(L"an envelope needs a \"selection\" of at least one load"));
        if (!CAnvelopaOpterecenja::Str2FlagsArray(a.izbor, oznake, n))
            return Odbij(izbor->poz,
                         CString::Formatted(T(L"the selection \"%s\" is not a list such as 1,3-5 "
                                              L"of loads 1 to %d (load cases, then combinations)")
                                                .c_str(),
                                            a.izbor.c_str(), n));
        m_opis.anvelope.push_back(std::move(a));
    }
    return true;
}

bool CCitacOpisa::Skladiste(const CCvor& c) {
    if (!Objekat(c, L"\"stored_set\"") ||
        !Poznati(c, {"load_cases", "combinations"}, L"\"stored_set\""))
        return false;
    CSkladisteOpisa skladiste;
    bool ok = true;
    CImenik imenik;
    if (const CCvor* slucajevi = Niz(c, "load_cases", ok)) {
        // A stored set remembers the load cases as they were, names repeated or not.
        if (!Imenik(*slucajevi, imenik, false))
            return false;
        for (const CCvor& s : slucajevi->deca) {
            if (!Poznati(s, {"name", "g", "influence_line"}, L"a stored load case"))
                return false;
            CUskladisteniSlucaj u;
            u.naziv = Utf(s.Clan("name")->s);
            if (!Logicka(s, "g", u.g) || !Logicka(s, "influence_line", u.uticajna))
                return false;
            skladiste.slucajevi.push_back(std::move(u));
        }
    }
    if (!ok)
        return false;
    if (const CCvor* kombinacije = Niz(c, "combinations", ok)) {
        if (!Kombinacije(*kombinacije, imenik, static_cast<int>(skladiste.slucajevi.size()), false,
                         skladiste.kombinacije))
            return false;
    }
    if (!ok)
        return false;
    m_opis.skladiste = std::move(skladiste);
    return true;
}

/// A load case may take part in a stability analysis unless it is seismic, an SRSS case, NDA
/// or an influence-line case.
bool CCitacOpisa::UStabilnosti(int32_t indeks) const {
    const CSlucajOpisa& s = m_opis.slucajevi[static_cast<size_t>(indeks)];
    return s.seizmicki == 0 && s.srss.empty() && s.nda == 0 && s.uticaj == UL_NIJEDNA;
}

bool CCitacOpisa::Stabilnost(const CCvor& c) {
    if (!Objekat(c, L"\"stability\"") ||
        !Poznati(c, {"search_range", "accuracy", "beam_torsion_off", "fixed", "combinations"},
                 L"\"stability\""))
        return false;
    CStabilnostOpisa st;
    if (!Broj(c, "search_range", st.opseg) || !Broj(c, "accuracy", st.tacnost) ||
        !Logicka(c, "beam_torsion_off", st.iskljucTorziju))
        return false;
    // The ranges of the stability dialog's edits.
    if (!(st.opseg >= 1.0 && st.opseg <= 5000.0))
        return Odbij(c.Clan("search_range")->poz, T(L"\"search_range\" must be from 1 to 5000"));
    if (!(st.tacnost >= 0.001 && st.tacnost <= 1.0))
        return Odbij(c.Clan("accuracy")->poz, T(L"\"accuracy\" must be from 0.001 to 1"));
    const int n = static_cast<int>(m_opis.slucajevi.size());
    bool ima = false;
    if (!Parovi(c, "fixed", m_imenik, n, st.fiksni, ima))
        return false;
    std::vector<bool> fiksan(static_cast<size_t>(n));
    for (size_t e = 0; e < st.fiksni.size(); ++e) {
        const CClan& clan = st.fiksni[e];
        const size_t poz = m_stablo.PozicijaPara(c.Clan("fixed")->prvi + e);
        if (!UStabilnosti(clan.indeks))
            return Odbij(poz, CString::Formatted(T(L"load case %d takes no part in a stability "
                                                   L"analysis (it is seismic, SRSS, NDA or an "
                                                   L"influence-line case)")
                                                     .c_str(),
                                                 clan.indeks + 1));
        if (!std::isfinite(clan.koef))
            return Odbij(poz, T(L"a fixed load case needs a finite coefficient"));
        fiksan[static_cast<size_t>(clan.indeks)] = true;
    }
    bool ok = true;
    const CCvor* izabrane = Niz(c, "combinations", ok);
    if (!ok)
        return false;
    if (izabrane == nullptr || izabrane->deca.empty())
        return Odbij(izabrane != nullptr ? izabrane->poz : c.poz,
                     T(L"a stability analysis needs at least one combination in "
                       L"\"combinations\""));
    const int m = static_cast<int>(m_opis.kombinacije.lista.size());
    std::vector<bool> izabrana(static_cast<size_t>(m));
    for (const CCvor& e : izabrane->deca) {
        if (e.vrsta != CCvor::Vrsta::Broj || !e.ceo || e.i < 1 || e.i > m)
            return Odbij(e.poz, CString::Formatted(T(L"a combination is given by its number, 1 "
                                                     L"to %d")
                                                       .c_str(),
                                                   m));
        const auto j = static_cast<int32_t>(e.i - 1);
        if (izabrana[static_cast<size_t>(j)])
            return Odbij(e.poz, T(L"the combination is named twice"));
        izabrana[static_cast<size_t>(j)] = true;
        // As the stability dialog offers and accepts combinations: none with a load case that
        // takes no part, and at least one load case multiplied by the critical multiplier.
        const CKombinacijaOpisa& k = m_opis.kombinacije.lista[static_cast<size_t>(j)];
        const CClan* clanovi = m_opis.kombinacije.Clanovi(k);
        bool promenljiv = false;
        for (uint32_t i = 0; i < k.broj; ++i) {
            if (CToler::Jednaki(clanovi[i].koef, 0.0))
                continue;
            if (!UStabilnosti(clanovi[i].indeks))
                return Odbij(e.poz, CString::Formatted(T(L"combination %d takes no part in a "
                                                         L"stability analysis: it holds load "
                                                         L"case %d")
                                                           .c_str(),
                                                       j + 1, clanovi[i].indeks + 1));
            promenljiv = promenljiv || !fiksan[static_cast<size_t>(clanovi[i].indeks)];
        }
        if (!promenljiv)
            return Odbij(e.poz, CString::Formatted(T(L"combination %d needs a load case that is "
                                                     L"not fixed")
                                                       .c_str(),
                                                   j + 1));
        st.izabrane.push_back(j);
    }
    m_opis.stabilnost = std::move(st);
    return true;
}

bool CCitacOpisa::Citaj() {
    const CCvor& koren = m_stablo.Koren();
    if (!Objekat(koren, L"the description") ||
        !Poznati(koren,
                 {"format", "version", "load_cases", "combinations", "envelopes", "stored_set",
                  "stability"},
                 L"the description"))
        return false;
    if (const CCvor* f = koren.Clan("format");
        f != nullptr && (f->vrsta != CCvor::Vrsta::Tekst || f->s != "vorta-loads"))
        return Odbij(f->poz, T(L"\"format\" must be \"vorta-loads\""));
    if (const CCvor* v = koren.Clan("version");
        v != nullptr && (v->vrsta != CCvor::Vrsta::Broj || !v->ceo || v->i != 1))
        return Odbij(v->poz, T(L"this program reads \"version\" 1 of the description"));
    bool ok = true;
    if (const CCvor* slucajevi = Niz(koren, "load_cases", ok); slucajevi && !Slucajevi(*slucajevi))
        return false;
    if (!ok)
        return false;
    if (const CCvor* kombinacije = Niz(koren, "combinations", ok);
        kombinacije &&
        !Kombinacije(*kombinacije, m_imenik, static_cast<int>(m_opis.slucajevi.size()), true,
                     m_opis.kombinacije))
        return false;
    if (!ok)
        return false;
    if (const CCvor* anvelope = Niz(koren, "envelopes", ok); anvelope && !Anvelope(*anvelope))
        return false;
    if (!ok)
        return false;
    if (const CCvor* skladiste = koren.Clan("stored_set");
        skladiste != nullptr && skladiste->vrsta != CCvor::Vrsta::Null && !Skladiste(*skladiste))
        return false;
    if (const CCvor* stabilnost = koren.Clan("stability");
        stabilnost != nullptr && stabilnost->vrsta != CCvor::Vrsta::Null &&
        !Stabilnost(*stabilnost))
        return false;
    return true;
}

} // namespace

CString NaMestu(std::string_view tekst, size_t poz, const CString& poruka) {
    const CMestoUTekstu m = MestoUTekstu(tekst, poz);
    return CString::Formatted(T(L"line %d, column %d: %s").c_str(), m.red, m.kolona,
                              poruka.c_str());
}

bool ProcitajJson(std::string_view tekst, COpis& opis, CString& greska, ECitanjeJson citanje) {
    opis = COpis();
    // The pairs of the text are kept where the description keeps its combinations' members.
    CStabloJson stablo(opis.kombinacije.clanovi);
    if (!stablo.Procitaj(tekst, citanje == ECitanjeJson::Brzo)) {
        greska = NaMestu(tekst, stablo.GreskaPoz(), stablo.Greska());
        return false;
    }
    CCitacOpisa citac(tekst, stablo, opis);
    if (citac.Citaj())
        return true;
    greska = citac.Greska();
    return false;
}

} // namespace opterecenje::razmena
