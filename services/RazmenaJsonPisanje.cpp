// Writing the JSON description of a model's loads: load cases one member per line, every
// combination, envelope and stored combination on a line of its own, the stability parameters
// last. Numbers are written in
// their shortest form that reads back to the same double.
#include "services/RazmenaPisanje.h"
#include "services/RazmenaTekst.h"

#include <array>

namespace opterecenje::razmena {

namespace {

struct CUticaj {
    eUticajUticajneLin uticaj;
    const char* naziv;
};
constexpr std::array<CUticaj, 6> kUticaji = {{
    {UL_MOMENT, "moment"},
    {UL_TRANSVERZALNA_SILA, "shear_force"},
    {UL_NORMALNA_SILA, "axial_force"},
    {UL_POMERANJE, "displacement"},
    {UL_REAKCIJA, "reaction"},
    {UL_STARI_ZAPIS, "unspecified"},
}};

const char* Logicka(int v) {
    return v != 0 ? "true" : "false";
}

void Clanovi(std::string& t, const CClan* clanovi, size_t broj) {
    t += '[';
    for (size_t e = 0; e < broj; ++e) {
        if (e > 0)
            t += ", ";
        t += '[';
        DodajCeo(t, clanovi[e].indeks + 1);
        t += ", ";
        DodajBroj(t, clanovi[e].koef, "null");
        t += ']';
    }
    t += ']';
}

void Mesta(std::string& t, const std::vector<int32_t>& mesta) {
    t += '[';
    for (size_t e = 0; e < mesta.size(); ++e) {
        if (e > 0)
            t += ", ";
        DodajCeo(t, mesta[e] + 1);
    }
    t += ']';
}

void Slucaj(std::string& t, const CSlucajOpisa& s) {
    t += "    {\n      \"name\": ";
    DodajTekstJson(t, s.naziv);
    t += ",\n      \"g\": ";
    t += Logicka(s.g);
    t += ",\n      \"coefficient\": ";
    DodajBroj(t, s.koef, "null");
    t += ",\n      \"permanent\": ";
    t += Logicka(s.stalno);
    t += ",\n      \"alternating\": ";
    t += Logicka(s.alternativno);
    t += ",\n      \"seismic\": ";
    t += Logicka(s.seizmicki);
    t += ",\n      \"seismic_analysis\": ";
    t += Logicka(s.ulaziUSeizmickiProracun);
    t += ",\n      \"nda\": ";
    t += Logicka(s.nda);
    t += ",\n      \"modes\": ";
    DodajCeo(t, s.tonovi);
    t += ",\n      \"influence_line\": ";
    if (s.uticaj == UL_NIJEDNA) {
        t += "null";
    } else if (const char* naziv = NazivUticaja(s.uticaj)) {
        t += '"';
        t += naziv;
        t += '"';
    } else {
        DodajCeo(t, s.uticaj);
    }
    t += ",\n      \"never_with\": ";
    Mesta(t, s.nikad);
    t += ",\n      \"always_with\": ";
    Mesta(t, s.uvek);
    t += ",\n      \"srss\": ";
    Clanovi(t, s.srss.data(), s.srss.size());
    t += "\n    }";
}

void Kombinacije(std::string& t, const CKombinacijeOpisa& kombinacije, const char* uvlaka) {
    t += '[';
    for (size_t j = 0; j < kombinacije.lista.size(); ++j) {
        const CKombinacijaOpisa& k = kombinacije.lista[j];
        t += j > 0 ? ",\n" : "\n";
        t += uvlaka;
        t += "{\"name\": ";
        DodajTekstJson(t, k.naziv);
        t += ", \"generated\": ";
        t += Logicka(k.generisan);
        t += ", \"coefficients\": ";
        Clanovi(t, kombinacije.Clanovi(k), k.broj);
        t += '}';
    }
    if (!kombinacije.lista.empty()) {
        t += '\n';
        t.append(uvlaka, std::char_traits<char>::length(uvlaka) - 2);
    }
    t += ']';
}

} // namespace

const char* NazivUticaja(eUticajUticajneLin uticaj) {
    for (const CUticaj& u : kUticaji)
        if (u.uticaj == uticaj)
            return u.naziv;
    return nullptr;
}

bool UticajPoNazivu(std::string_view naziv, eUticajUticajneLin& uticaj) {
    for (const CUticaj& u : kUticaji)
        if (naziv == u.naziv) {
            uticaj = u.uticaj;
            return true;
        }
    return false;
}

void NapisiJson(const COpis& opis, std::string& t) {
    t.reserve(t.size() + 256 * opis.slucajevi.size() + 64 * opis.kombinacije.lista.size() +
              24 * opis.kombinacije.clanovi.size());
    t += "{\n  \"format\": \"vorta-loads\",\n  \"version\": 1,\n  \"load_cases\": [";
    for (size_t k = 0; k < opis.slucajevi.size(); ++k) {
        t += k > 0 ? ",\n" : "\n";
        Slucaj(t, opis.slucajevi[k]);
    }
    t += opis.slucajevi.empty() ? "],\n" : "\n  ],\n";
    t += "  \"combinations\": ";
    Kombinacije(t, opis.kombinacije, "    ");
    t += ",\n  \"envelopes\": [";
    for (size_t a = 0; a < opis.anvelope.size(); ++a) {
        const CAnvelopaOpisa& anv = opis.anvelope[a];
        t += a > 0 ? ",\n    {\"name\": " : "\n    {\"name\": ";
        DodajTekstJson(t, anv.naziv);
        t += ", \"selection\": ";
        DodajTekstJson(t, anv.izbor);
        t += ", \"mode\": ";
        DodajCeo(t, anv.mod);
        t += '}';
    }
    t += opis.anvelope.empty() ? "]" : "\n  ]";
    if (opis.skladiste) {
        t += ",\n  \"stored_set\": {\n    \"load_cases\": [";
        const std::vector<CUskladisteniSlucaj>& slucajevi = opis.skladiste->slucajevi;
        for (size_t k = 0; k < slucajevi.size(); ++k) {
            t += k > 0 ? ",\n      {\"name\": " : "\n      {\"name\": ";
            DodajTekstJson(t, slucajevi[k].naziv);
            t += ", \"g\": ";
            t += Logicka(slucajevi[k].g);
            t += ", \"influence_line\": ";
            t += Logicka(slucajevi[k].uticajna);
            t += '}';
        }
        t += slucajevi.empty() ? "],\n" : "\n    ],\n";
        t += "    \"combinations\": ";
        Kombinacije(t, opis.skladiste->kombinacije, "      ");
        t += "\n  }";
    }
    if (opis.stabilnost) {
        const CStabilnostOpisa& s = *opis.stabilnost;
        t += ",\n  \"stability\": {\"search_range\": ";
        DodajBroj(t, s.opseg, "null");
        t += ", \"accuracy\": ";
        DodajBroj(t, s.tacnost, "null");
        t += ", \"beam_torsion_off\": ";
        t += Logicka(s.iskljucTorziju);
        t += ",\n    \"fixed\": ";
        Clanovi(t, s.fiksni.data(), s.fiksni.size());
        t += ",\n    \"combinations\": ";
        Mesta(t, s.izabrane);
        t += "}";
    }
    t += "\n}\n";
}

} // namespace opterecenje::razmena
