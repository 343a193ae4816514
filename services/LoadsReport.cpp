// The loads of the current document as tables for a host: load cases with their flags and
// combination rules, combinations with their coefficients, envelopes, the global scale and
// the checksums by which results are invalidated. Each table is handed over as it is made,
// its rows made as they are walked, so that the tables of a large model are never held whole.
#include "services/LoadsReport.h"

#include "host/LoadsServices.h"
#include "host/Model.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/ModuleServices.h"
#include "services/Opterecenje.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace opterecenje {

namespace {

CString T(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

CString Broj(int n) {
    return CString::Formatted(L"%d", n);
}

CString Da(int flag) {
    return flag != 0 ? T(L"da") : CString();
}

CString Koeficijent(double k) {
    return gfnFormatDouble(k, 2, 0);
}

/// The objects of one type in store order, read from an open view.
template <class Zapis> std::vector<const Zapis*> Procitaj(CBaseManager& bm, int tip) {
    std::vector<const Zapis*> objekti;
    bm.Select(tip);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        if (const auto* p = dynamic_cast<const Zapis*>(bm.GetR(id)))
            objekti.push_back(p);
    return objekti;
}

/// A list of load case ids as the ordinals of those cases ("?" for an id of no load case).
CString RedniBrojevi(const OCArray<CId>& ids, const std::map<int32_t, int>& rbPoId) {
    CArray<int> rb;
    bool bNepoznat = false;
    for (const CId& id : ids) {
        auto it = rbPoId.find(id.GetValue());
        if (it == rbPoId.end())
            bNepoznat = true;
        else
            rb.Add(it->second);
    }
    CString tekst = ClTranslator::IntArray2String(rb);
    if (bNepoznat)
        tekst += tekst.IsEmpty() ? L"?" : L",?";
    return tekst;
}

using Tabela = CLoadsReport::TableSource;
using Red = CLoadsReport::Row;

} // namespace

Red RedSlucaja(const CSlucajOpterecenja& s, const std::map<int32_t, int>& rbPoId) {
    const CString srss =
        s.JeliSRSS() ? COpterecenjeApp::LoadCaseUnitToString(*s.DajLCUnitZaSRSS(), 0) : CString();
    const CString uticaj = s.IsUticajnaLinija() ? Broj(s.GetUticajUticajneLinije()) : CString();
    return {Broj(s.DajRedniBroj()),
            s.GetNaziv(0),
            s.GetgMarker() != 0 ? Broj(s.GetgMarker()) : CString(),
            Koeficijent(s.GetKoeficijent()),
            Da(s.GetStalno()),
            Da(s.GetAlternativno()),
            Da(s.IsSeizmicki()),
            Da(s.JeLiNDA()),
            srss,
            uticaj,
            RedniBrojevi(s.GetNeKombinujSa(), rbPoId),
            RedniBrojevi(s.GetUvekKombinujSa(), rbPoId)};
}

Red RedAnvelope(const CAnvelopaOpterecenja& a) {
    return {Broj(a.GetBroj()), a.GetNaziv(), a.GetIzbor(), Broj(a.GetMod())};
}

namespace {

Tabela TabelaSlucajeva(const std::vector<const CSlucajOpterecenja*>& slucajevi,
                       const std::map<int32_t, int>& rbPoId) {
    Tabela t;
    t.title = T(L"Slucajevi opterecenja");
    t.header = {T(L"Rb"),
                T(L"Naziv"),
                T(L"g"),
                T(L"Koef."),
                T(L"Stalno"),
                T(L"Alternativno"),
                T(L"Seizmicki"),
                T(L"NDA"),
                T(L"SRSS"),
                T(L"Uticajna linija"),
                T(L"Ne kombinuj sa"),
                T(L"Uvek kombinuj sa")};
    t.rows = [&slucajevi, &rbPoId](const CLoadsReport::RowVisitor& visit) {
        for (const CSlucajOpterecenja* p : slucajevi)
            visit(RedSlucaja(*p, rbPoId));
    };
    return t;
}

Tabela TabelaKombinacija(const std::vector<const CKombinacijaOpterecenja*>& kombinacije, int nSlOpt,
                         const std::map<int32_t, int>& rbPoId) {
    Tabela t;
    t.title = T(L"Kombinacije opterecenja");
    t.header = {T(L"Rb"), T(L"Naziv"), T(L"Generisan")};
    for (int k = 1; k <= nSlOpt; ++k)
        t.header.push_back(CRomanNumber::GetRomanValue(k));
    t.rows = [&kombinacije, nSlOpt, &rbPoId](const CLoadsReport::RowVisitor& visit) {
        // One row and one vector of coefficients serve every combination in turn.
        Red red(3 + static_cast<size_t>(nSlOpt));
        std::vector<double> koef(static_cast<size_t>(nSlOpt), 0.0);
        std::unordered_map<uint64_t, CString> tekstovi;
        for (const CKombinacijaOpterecenja* p : kombinacije) {
            const CKombOptItem& item = p->Item();
            red[0] = Broj(item.GetRedniBroj());
            red[1] = item.GetNaziv();
            red[2] = Da(item.IsGenericName());
            std::fill(koef.begin(), koef.end(), 0.0);
            for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
                double k = 0.0;
                CId id;
                item.GetOsnOptByIndex(i, k, id);
                auto it = rbPoId.find(id.GetValue());
                if (it != rbPoId.end() && it->second >= 1 && it->second <= nSlOpt)
                    koef[static_cast<size_t>(it->second - 1)] += k;
            }
            for (size_t k = 0; k < koef.size(); ++k) {
                if (CToler::Jednaki(koef[k], 0.0)) {
                    red[3 + k].Empty();
                    continue;
                }
                // A model has few distinct coefficients: each is formatted once.
                auto it = tekstovi.find(std::bit_cast<uint64_t>(koef[k]));
                if (it == tekstovi.end())
                    it = tekstovi.emplace(std::bit_cast<uint64_t>(koef[k]), Koeficijent(koef[k]))
                             .first;
                red[3 + k] = it->second;
            }
            visit(red);
        }
    };
    return t;
}

Tabela TabelaAnvelopa(const std::vector<const CAnvelopaOpterecenja*>& anvelope) {
    Tabela t;
    t.title = T(L"Anvelope");
    t.header = {T(L"Broj"), T(L"Naziv"), T(L"Izbor"), T(L"Mod")};
    t.rows = [&anvelope](const CLoadsReport::RowVisitor& visit) {
        for (const CAnvelopaOpterecenja* p : anvelope)
            visit(RedAnvelope(*p));
    };
    return t;
}

Tabela TabelaSkale(const std::vector<const CSlucajOpterecenja*>& slucajevi,
                   const std::vector<const CKombinacijaOpterecenja*>& kombinacije,
                   const std::vector<const CAnvelopaOpterecenja*>& anvelope) {
    Tabela t;
    t.title = T(L"Globalna skala opterecenja");
    t.header = {T(L"Vrsta"), T(L"Sopstveni broj"), T(L"Naziv"), T(L"Od nule"), T(L"Redni broj")};
    t.rows = [&slucajevi, &kombinacije, &anvelope](const CLoadsReport::RowVisitor& visit) {
        const int nSlOpt = static_cast<int>(slucajevi.size());
        const int nKomb = static_cast<int>(kombinacije.size());
        // The kinds are translated once for every row.
        const CString slucaj = T(Tr(L"slucaj"));
        const CString kombinacija = T(Tr(L"kombinacija"));
        const CString anvelopa = T(Tr(L"anvelopa"));
        Red red(5);
        auto dodaj = [&](const CString& vrsta, int sopstveni, const CString& naziv, int redniBroj) {
            red[0] = vrsta;
            red[1] = Broj(sopstveni);
            red[2] = naziv;
            red[3] = Broj(redniBroj - 1);
            red[4] = Broj(redniBroj);
            visit(red);
        };
        for (const CSlucajOpterecenja* p : slucajevi)
            dodaj(slucaj, p->DajRedniBroj(), p->GetNaziv(0), p->DajRedniBroj());
        for (const CKombinacijaOpterecenja* p : kombinacije)
            dodaj(kombinacija, p->Item().GetRedniBroj(), p->Item().GetNaziv(),
                  nSlOpt + p->Item().GetRedniBroj());
        for (const CAnvelopaOpterecenja* p : anvelope)
            dodaj(anvelopa, p->GetBroj(), p->GetNaziv(), nSlOpt + nKomb + p->GetBroj());
    };
    return t;
}

CString Hex(uint32_t crc) {
    return CString::Formatted(L"%08X", crc);
}

} // namespace

std::vector<Red> Sume(const std::vector<const CSlucajOpterecenja*>& slucajevi,
                      const std::vector<const CKombinacijaOpterecenja*>& kombinacije,
                      const std::vector<const CAnvelopaOpterecenja*>& anvelope, bool bImaModel) {
    // The sums of the records' checksums. A combination's checksum reads the model object,
    // so without one the combinations are left out.
    uint32_t crc1 = 0, crc2 = 0, crc3 = 0;
    for (const CSlucajOpterecenja* p : slucajevi)
        p->UpdateCRC(crc1, crc2, crc3);
    if (bImaModel && !kombinacije.empty()) {
        // What each combination's UpdateCRC adds, with the model object read once for all.
        CBaseManager bm;
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        const bool bTeorijaII = CKombinacijaOpterecenja::JeTeorijaII(bm);
        bm.Close();
        for (const CKombinacijaOpterecenja* p : kombinacije)
            p->DodajCRC(crc1, crc3, bTeorijaII);
    }
    for (const CAnvelopaOpterecenja* p : anvelope)
        p->UpdateCRC(crc1, crc2, crc3);
    std::vector<Red> sume;
    sume.push_back({T(L"crc1 (rezultati)"), Hex(crc1)});
    sume.push_back({T(L"crc3 (teorija II reda)"), Hex(crc3)});
    sume.push_back({T(L"SRSS slucajevi"), Hex(CSlucajOpterecenja::GetCRCsvihSRSSopt())});
    if (!bImaModel && !kombinacije.empty())
        sume.push_back({T(L"Napomena"), T(L"bez objekta modela kombinacije nisu uracunate")});
    return sume;
}

CUcitaniIzvestaj UcitajIzvestaj(CBaseManager& bm) {
    CUcitaniIzvestaj u;
    u.slucajevi = Procitaj<CSlucajOpterecenja>(bm, CBaseManager::SlucajOpterecenjaType);
    u.kombinacije = Procitaj<CKombinacijaOpterecenja>(bm, CBaseManager::KombinacijaOpterecenjaType);
    u.anvelope = Procitaj<CAnvelopaOpterecenja>(bm, CBaseManager::AnvelopaOpterecenjaType);
    // In the order of the global scale; the store order breaks ties.
    std::stable_sort(u.slucajevi.begin(), u.slucajevi.end(),
                     [](auto* a, auto* b) { return a->DajRedniBroj() < b->DajRedniBroj(); });
    std::stable_sort(u.kombinacije.begin(), u.kombinacije.end(), [](auto* a, auto* b) {
        return a->Item().GetRedniBroj() < b->Item().GetRedniBroj();
    });
    std::stable_sort(u.anvelope.begin(), u.anvelope.end(),
                     [](auto* a, auto* b) { return a->GetBroj() < b->GetBroj(); });

    for (const CSlucajOpterecenja* p : u.slucajevi)
        u.rbPoId.emplace(p->GetId().GetValue(), p->DajRedniBroj());

    u.bImaModel = bm.Count(CBaseManager::ModelType) != 0;
    return u;
}

void IzvestajPoTabelama(const CLoadsReport::TableVisitor& visit) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const CUcitaniIzvestaj u = UcitajIzvestaj(bm);
    // The view stays open while the tables are walked: their rows are read from the store.
    for (const Tabela& t : TabeleIzvestaja(u))
        visit(t);
    bm.Close();
}

std::vector<CLoadsReport::TableSource> TabeleIzvestaja(const CUcitaniIzvestaj& u) {
    std::vector<Tabela> tabele;
    tabele.push_back(TabelaSlucajeva(u.slucajevi, u.rbPoId));
    tabele.push_back(
        TabelaKombinacija(u.kombinacije, static_cast<int>(u.slucajevi.size()), u.rbPoId));
    tabele.push_back(TabelaAnvelopa(u.anvelope));
    tabele.push_back(TabelaSkale(u.slucajevi, u.kombinacije, u.anvelope));
    Tabela& t = tabele.emplace_back();
    t.title = T(L"Kontrolne sume");
    t.header = {T(L"Suma"), T(L"Vrednost")};
    t.rows = [&u](const CLoadsReport::RowVisitor& visitRow) {
        // The checksums are summed only when they are shown.
        for (const Red& red : Sume(u.slucajevi, u.kombinacije, u.anvelope, u.bImaModel))
            visitRow(red);
    };
    return tabele;
}

void Izvestaj(CLoadsReport& report) {
    report.tables.clear();
    IzvestajPoTabelama([&report](const CLoadsReport::TableSource& izvor) {
        CLoadsReport::Table& t = report.tables.emplace_back();
        t.title = izvor.title;
        t.header = izvor.header;
        izvor.rows([&t](const Red& red) { t.rows.push_back(red); });
    });
}

} // namespace opterecenje
