// The combinations of a model as a CSV table (RFC 4180): a heading row, then one row per
// combination with its number, name, whether the name is generated, and one column per load
// case holding the case's coefficient (empty when the case takes no part).
#include "services/RazmenaPisanje.h"
#include "services/RazmenaTekst.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <deque>
#include <string_view>
#include <unordered_map>

namespace opterecenje::razmena {

namespace {

CString T(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

/// The letters by which a spreadsheet names a column (1: A, 27: AA).
CString Slova(int kolona) {
    CString slova;
    for (int k = kolona; k > 0; k = (k - 1) / 26)
        slova.insert(slova.begin(), static_cast<wchar_t>(L'A' + (k - 1) % 26));
    return slova;
}

CString NaPolju(int red, int kolona, const CString& poruka) {
    return CString::Formatted(T(L"line %d, column %d (%s): %s").c_str(), red, kolona,
                              Slova(kolona).c_str(), poruka.c_str());
}

std::string_view BezRazmaka(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

bool Jednako(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

/// A field of a record that is not empty, with its column (from 0).
struct CPolje {
    uint32_t kolona = 0;
    std::string_view tekst;
};

/// The records of a CSV text, one at a time, fields unquoted: a field without quotes is the
/// text's own bytes, a quoted one is kept by the reader until the next record. Only fields that
/// are not empty are given, for a table of combinations is mostly empty fields.
class CCitacCsv {
public:
    explicit CCitacCsv(std::string_view tekst) : m_tekst(tekst) {
        if (m_tekst.starts_with("\xEF\xBB\xBF"))
            m_p = 3;
    }

    /// The next record: its fields that are not empty into polja, and the number of all its
    /// fields; false at the end of the text or when a quoted field does not end (Greska() then
    /// says so).
    bool Sledeci(std::vector<CPolje>& polja, size_t& brojPolja) {
        polja.clear();
        brojPolja = 0;
        if (m_p >= m_tekst.size())
            return false;
        m_red = m_sledeciRed;
        const char* const tekst = m_tekst.data();
        const char* const kraj = tekst + m_tekst.size();
        size_t nNavodnih = 0;
        uint32_t kolona = 0;
        for (;;) {
            // Empty fields cost one comparison each.
            const char* p = tekst + m_p;
            while (p != kraj && *p == ',') {
                ++kolona;
                ++p;
            }
            m_p = static_cast<size_t>(p - tekst);
            if (p != kraj && *p == '"') {
                if (nNavodnih == m_navodni.size())
                    m_navodni.emplace_back();
                std::string& polje = m_navodni[nNavodnih++];
                polje.clear();
                const int pocetniRed = m_sledeciRed;
                ++m_p;
                for (;;) {
                    if (m_p >= m_tekst.size()) {
                        m_greska = NaPolju(pocetniRed, static_cast<int>(kolona) + 1,
                                           T(L"a quoted field is not closed"));
                        return false;
                    }
                    const char c = m_tekst[m_p++];
                    if (c == '"') {
                        if (m_p < m_tekst.size() && m_tekst[m_p] == '"') {
                            polje += '"';
                            ++m_p;
                            continue;
                        }
                        break;
                    }
                    if (c == '\n')
                        ++m_sledeciRed;
                    polje += c;
                }
                // Text after the closing quote belongs to the field, as spreadsheets read it.
                while (m_p < m_tekst.size() && m_tekst[m_p] != ',' && m_tekst[m_p] != '\n' &&
                       m_tekst[m_p] != '\r')
                    polje += m_tekst[m_p++];
                if (!polje.empty())
                    polja.push_back({kolona, polje});
            } else {
                const char* q = p;
                while (q != kraj && *q != ',' && *q != '\n' && *q != '\r')
                    ++q;
                if (q != p)
                    polja.push_back({kolona, std::string_view(p, static_cast<size_t>(q - p))});
                m_p = static_cast<size_t>(q - tekst);
            }
            ++kolona;
            if (m_p < m_tekst.size() && m_tekst[m_p] == ',') {
                ++m_p;
                continue;
            }
            if (m_p < m_tekst.size() && m_tekst[m_p] == '\r')
                ++m_p;
            if (m_p < m_tekst.size() && m_tekst[m_p] == '\n')
                ++m_p;
            ++m_sledeciRed;
            brojPolja = kolona;
            return true;
        }
    }

    int Red() const { return m_red; }
    const CString& Greska() const { return m_greska; }

private:
    std::string_view m_tekst;
    size_t m_p = 0;
    int m_red = 1;
    int m_sledeciRed = 1;
    CString m_greska;
    // The quoted fields of the record, in places that do not move while it is read.
    std::deque<std::string> m_navodni;
};

enum class EKolona { Broj, Naziv, Generisan, Slucaj };

struct CKolona {
    EKolona vrsta = EKolona::Slucaj;
    int32_t slucaj = -1;
};

/// The load case a heading names: "3. Sneg", "3" or "Sneg".
bool SlucajZaglavlja(std::string_view zaglavlje, const std::vector<CSlucajOpisa>& slucajevi,
                     int32_t& slucaj, CString& greska) {
    const std::string_view z = BezRazmaka(zaglavlje);
    size_t cifre = 0;
    while (cifre < z.size() && z[cifre] >= '0' && z[cifre] <= '9')
        ++cifre;
    const int n = static_cast<int>(slucajevi.size());
    if (cifre > 0 && (cifre == z.size() || z[cifre] == '.')) {
        int broj = 0;
        const auto r = std::from_chars(z.data(), z.data() + cifre, broj);
        if (r.ec != std::errc() || broj < 1 || broj > n) {
            greska = CString::Formatted(T(L"\"%s\" names no load case of the model (they are "
                                          L"numbered 1 to %d)")
                                            .c_str(),
                                        CString::FromUtf8(z).c_str(), n);
            return false;
        }
        slucaj = broj - 1;
        if (cifre == z.size())
            return true;
        const CString ime = CString::FromUtf8(BezRazmaka(z.substr(cifre + 1)));
        if (ime.IsEmpty() || ime == slucajevi[static_cast<size_t>(slucaj)].naziv)
            return true;
        greska = CString::Formatted(T(L"the heading \"%s\" does not match load case %d of the "
                                      L"model, \"%s\"")
                                        .c_str(),
                                    CString::FromUtf8(z).c_str(), broj,
                                    slucajevi[static_cast<size_t>(slucaj)].naziv.c_str());
        return false;
    }
    const CString ime = CString::FromUtf8(z);
    slucaj = -1;
    for (int k = 0; k < n; ++k) {
        if (slucajevi[static_cast<size_t>(k)].naziv != ime)
            continue;
        if (slucaj >= 0) {
            greska = CString::Formatted(T(L"several load cases are named \"%s\"; head the "
                                          L"column \"<number>. <name>\"")
                                            .c_str(),
                                        ime.c_str());
            return false;
        }
        slucaj = k;
    }
    if (slucaj < 0) {
        greska =
            CString::Formatted(T(L"\"%s\" is not a load case of the model").c_str(), ime.c_str());
        return false;
    }
    return true;
}

bool Zaglavlje(const std::vector<std::string_view>& polja,
               const std::vector<CSlucajOpisa>& slucajevi, std::vector<CKolona>& kolone,
               CString& greska) {
    std::vector<int> kolonaSlucaja(slucajevi.size(), 0);
    bool imaNaziv = false;
    bool imaGenerisan = false;
    for (size_t c = 0; c < polja.size(); ++c) {
        const std::string_view z = BezRazmaka(polja[c]);
        CKolona k;
        const int kolona = static_cast<int>(c) + 1;
        if (Jednako(z, "No.") || Jednako(z, "No") || Jednako(z, "#")) {
            k.vrsta = EKolona::Broj;
        } else if (Jednako(z, "Name")) {
            k.vrsta = EKolona::Naziv;
            if (imaNaziv) {
                greska = NaPolju(1, kolona, T(L"a second column of names"));
                return false;
            }
            imaNaziv = true;
        } else if (Jednako(z, "Generated")) {
            k.vrsta = EKolona::Generisan;
            if (imaGenerisan) {
                greska = NaPolju(1, kolona, T(L"a second column \"Generated\""));
                return false;
            }
            imaGenerisan = true;
        } else {
            CString razlog;
            if (!SlucajZaglavlja(z, slucajevi, k.slucaj, razlog)) {
                greska = NaPolju(1, kolona, razlog);
                return false;
            }
            int& prva = kolonaSlucaja[static_cast<size_t>(k.slucaj)];
            if (prva != 0) {
                greska =
                    NaPolju(1, kolona,
                            CString::Formatted(T(L"load case %d has a column already (%s)").c_str(),
                                               k.slucaj + 1, Slova(prva).c_str()));
                return false;
            }
            prva = kolona;
        }
        kolone.push_back(k);
    }
    return true;
}

bool Koeficijent(std::string_view polje, double& koef, CString& greska) {
    std::string_view p = BezRazmaka(polje);
    if (p.starts_with('+'))
        p.remove_prefix(1);
    const auto r = std::from_chars(p.data(), p.data() + p.size(), koef);
    if (r.ec == std::errc() && r.ptr == p.data() + p.size() && std::isfinite(koef))
        return true;
    greska = p.find(',') != std::string_view::npos
                 ? T(L"a coefficient is written with '.' as the decimal separator")
                 : CString::Formatted(T(L"\"%s\" is not a coefficient").c_str(),
                                      CString::FromUtf8(BezRazmaka(polje)).c_str());
    return false;
}

bool Generisan(std::string_view polje, int& generisan) {
    const std::string_view p = BezRazmaka(polje);
    if (p.empty())
        return true;
    for (const char* da : {"yes", "true", "1", "y"})
        if (Jednako(p, da)) {
            generisan = 1;
            return true;
        }
    for (const char* ne : {"no", "false", "0", "n"})
        if (Jednako(p, ne)) {
            generisan = 0;
            return true;
        }
    return false;
}

} // namespace

void NapisiCsv(const COpis& opis, std::string& t) {
    const size_t n = opis.slucajevi.size();
    t.reserve(t.size() + opis.kombinacije.lista.size() * (n + 48) +
              opis.kombinacije.clanovi.size() * 6);
    t += "No.,Name,Generated";
    for (size_t k = 0; k < n; ++k) {
        t += ',';
        DodajPoljeCsv(t, CString::Formatted(L"%d. ", static_cast<int>(k) + 1) +
                             opis.slucajevi[k].naziv);
    }
    t += "\r\n";
    std::vector<const CClan*> poSlucaju(n, nullptr);
    for (size_t j = 0; j < opis.kombinacije.lista.size(); ++j) {
        const CKombinacijaOpisa& k = opis.kombinacije.lista[j];
        DodajCeo(t, static_cast<int64_t>(j) + 1);
        t += ',';
        DodajPoljeCsv(t, k.naziv);
        t += k.generisan ? ",yes" : ",no";
        const CClan* clanovi = opis.kombinacije.Clanovi(k);
        for (uint32_t e = 0; e < k.broj; ++e)
            poSlucaju[static_cast<size_t>(clanovi[e].indeks)] = &clanovi[e];
        for (size_t s = 0; s < n; ++s) {
            t += ',';
            if (poSlucaju[s] != nullptr) {
                DodajBroj(t, poSlucaju[s]->koef, "");
                poSlucaju[s] = nullptr;
            }
        }
        t += "\r\n";
    }
}

bool ProcitajCsv(std::string_view tekst, const std::vector<CSlucajOpisa>& slucajevi,
                 CKombinacijeOpisa& kombinacije, CString& greska) {
    kombinacije = CKombinacijeOpisa();
    // Room for as many coefficients as the text can hold (",1" takes two bytes): only the part
    // that is filled takes memory, and the list is never copied while it grows.
    kombinacije.clanovi.reserve(tekst.size() / 2 + 16);
    kombinacije.lista.reserve(static_cast<size_t>(std::count(tekst.begin(), tekst.end(), '\n')) +
                              1);
    CCitacCsv citac(tekst);
    std::vector<CPolje> polja;
    size_t brojPolja = 0;
    std::vector<CKolona> kolone;
    if (!citac.Sledeci(polja, brojPolja)) {
        greska =
            citac.Greska().IsEmpty() ? T(L"line 1: the table has no heading row") : citac.Greska();
        return false;
    }
    std::vector<std::string_view> zaglavlje(brojPolja);
    for (const CPolje& p : polja)
        zaglavlje[p.kolona] = p.tekst;
    if (!Zaglavlje(zaglavlje, slucajevi, kolone, greska))
        return false;
    while (citac.Sledeci(polja, brojPolja)) {
        const int red = citac.Red();
        if (std::all_of(polja.begin(), polja.end(),
                        [](const CPolje& p) { return BezRazmaka(p.tekst).empty(); }))
            continue;
        if (brojPolja > kolone.size()) {
            greska = NaPolju(red, static_cast<int>(kolone.size()) + 1,
                             T(L"the row has more fields than the heading"));
            return false;
        }
        CKombinacijaOpisa k;
        k.prvi = static_cast<uint32_t>(kombinacije.clanovi.size());
        std::string_view naziv;
        int generisan = -1;
        bool nenulti = false;
        for (const CPolje& polje : polja) {
            const int kolona = static_cast<int>(polje.kolona) + 1;
            const CKolona& opis = kolone[polje.kolona];
            if (opis.vrsta == EKolona::Naziv) {
                naziv = polje.tekst;
            } else if (opis.vrsta == EKolona::Generisan) {
                if (!Generisan(polje.tekst, generisan)) {
                    greska = NaPolju(red, kolona, T(L"\"Generated\" is yes or no"));
                    return false;
                }
            } else if (opis.vrsta == EKolona::Slucaj && !BezRazmaka(polje.tekst).empty()) {
                CClan clan{opis.slucaj, 0.0};
                CString razlog;
                if (!Koeficijent(polje.tekst, clan.koef, razlog)) {
                    greska = NaPolju(red, kolona, razlog);
                    return false;
                }
                if (CToler::Jednaki(clan.koef, 0.0))
                    continue;
                if (slucajevi[static_cast<size_t>(clan.indeks)].uticaj != UL_NIJEDNA) {
                    greska = NaPolju(red, kolona,
                                     T(L"an influence-line load case takes part in "
                                       L"no combination"));
                    return false;
                }
                nenulti = true;
                kombinacije.clanovi.push_back(clan);
            }
        }
        if (!nenulti) {
            // Named at the row's first load case, where a coefficient would go.
            size_t prva = 0;
            while (prva < kolone.size() && kolone[prva].vrsta != EKolona::Slucaj)
                ++prva;
            greska = NaPolju(red, static_cast<int>(prva) + 1,
                             T(L"a combination needs a coefficient other than zero"));
            return false;
        }
        k.broj = static_cast<uint32_t>(kombinacije.clanovi.size()) - k.prvi;
        // Without the column, a combination without a name gets one made. A generated name is
        // made anew from the coefficients: the one written is not kept.
        k.generisan = generisan < 0 ? naziv.empty() : generisan != 0;
        if (!k.generisan)
            k.naziv = CString::FromUtf8(naziv);
        kombinacije.lista.push_back(std::move(k));
    }
    if (!citac.Greska().IsEmpty()) {
        greska = citac.Greska();
        return false;
    }
    return true;
}

} // namespace opterecenje::razmena
