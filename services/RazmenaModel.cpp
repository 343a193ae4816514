// The model's loads as an interchange description, and a description written into the model.
#include "diag/Assert.h"
#include "host/Model.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/Skladiste.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Anvelope.h"
#include "services/Opterecenje.h"
#include "services/RazmenaOpis.h"
#include "services/SlucajeviOpterecenja.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <memory>
#include <unordered_map>

namespace opterecenje::razmena {

namespace {

template <class Zapis> std::vector<const Zapis*> Procitaj(CBaseManager& bm, int tip) {
    std::vector<const Zapis*> objekti;
    bm.Select(tip);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const Zapis*>(bm.GetR(id));
        VASSERT(p);
        objekti.push_back(p);
    }
    return objekti;
}

/// Places (from 0) of the listed load cases; ids of no load case are left out.
std::vector<int32_t> Mesta(const OCArray<CId>& ids, const CRedniBrojeviSlOpt& redniBrojevi) {
    std::vector<int32_t> mesta;
    for (const CId& id : ids) {
        int r = 0;
        if (redniBrojevi.Nadji(id, r))
            mesta.push_back(r - 1);
    }
    return mesta;
}

/// Appends the combination's members, each named by the place that `mesto` gives its load
/// case (members of load cases it does not know are left out).
template <class Mesto>
void DodajKombinaciju(CKombinacijeOpisa& opis, const CKombOptItem& item, Mesto&& mesto) {
    CKombinacijaOpisa k;
    k.naziv = item.GetNaziv();
    k.generisan = item.IsGenericName() != 0;
    k.prvi = static_cast<uint32_t>(opis.clanovi.size());
    for (int e = 0; e < item.GetBrojOsnOpt(); ++e) {
        double koef = 0.0;
        CId id;
        item.GetOsnOptByIndex(e, koef, id);
        const int m = mesto(id);
        if (m >= 0)
            opis.clanovi.push_back({m, koef});
    }
    k.broj = static_cast<uint32_t>(opis.clanovi.size()) - k.prvi;
    opis.lista.push_back(std::move(k));
}

CSlucajOpisa OpisSlucaja(const CSlucajOpterecenja& p, const CRedniBrojeviSlOpt& redniBrojevi,
                         int nSlOpt) {
    CSlucajOpisa s;
    s.naziv = p.GetNaziv(0);
    s.g = p.GetgMarker() != 0 ? 1 : 0;
    s.koef = p.GetKoeficijent();
    s.stalno = p.GetStalno() != 0 ? 1 : 0;
    s.alternativno = p.GetAlternativno() != 0 ? 1 : 0;
    s.seizmicki = p.IsSeizmicki();
    s.ulaziUSeizmickiProracun = p.DajUlaziUSeizmickiProracun() != 0 ? 1 : 0;
    s.nda = p.JeLiNDA() != 0 ? 1 : 0;
    s.tonovi = p.GetBrojMultimodalnih();
    s.uticaj = p.GetUticajUticajneLinije();
    s.nikad = Mesta(p.GetNeKombinujSa(), redniBrojevi);
    s.uvek = Mesta(p.GetUvekKombinujSa(), redniBrojevi);
    if (p.JeliSRSS()) {
        // The unit keeps the squares of the weights a user enters.
        for (const CLoadCaseFactor& f : p.DajLCUnitZaSRSS()->GetFactors()) {
            const int r = f.GetLCRedniBroj();
            if (r >= 1 && r <= nSlOpt)
                s.srss.push_back({r - 1, std::sqrt(std::fabs(f.GetFaktor()))});
        }
    }
    return s;
}

CSkladisteOpisa OpisSkladista(const CSkladiste& skladiste) {
    CSkladisteOpisa opis;
    const CSlOptItemArray& snimak = skladiste.GetSlOptArr();
    std::unordered_map<int32_t, int> red;
    for (int r = snimak.GetSize() - 1; r >= 0; --r)
        red[snimak[r].m_Id.GetValue()] = r;
    for (int r = 0; r < snimak.GetSize(); ++r)
        opis.slucajevi.push_back({snimak[r].m_strNaziv, snimak[r].m_ngMarker != 0 ? 1 : 0,
                                  snimak[r].m_bUticajnaLinija != 0 ? 1 : 0});
    const CKombOptItemArray& kombinacije = skladiste.GetKombOptArr();
    for (int i = 0; i < kombinacije.GetSize(); ++i)
        DodajKombinaciju(opis.kombinacije, kombinacije[i], [&](const CId& id) {
            const auto it = red.find(id.GetValue());
            return it == red.end() ? -1 : it->second;
        });
    return opis;
}

/// The item of a described combination over the load cases `ids` (by place). Zero members go
/// when bBezNula is set, as the combination editor's OK drops them.
void NapraviItem(const CKombinacijaOpisa& k, const CClan* clanovi, const std::vector<CId>& ids,
                 const CRedniBrojeviSlOpt& redniBrojevi, int redniBroj, bool bBezNula,
                 CString& naziv, CKombOptItem& item) {
    for (uint32_t e = 0; e < k.broj; ++e)
        if (!bBezNula || !CToler::Jednaki(clanovi[e].koef, 0.0))
            item.DodajOsnOpt(clanovi[e].koef, ids[static_cast<size_t>(clanovi[e].indeks)]);
    item.SetRedniBroj(redniBroj);
    if (k.generisan) {
        item.NapraviGenerickiNaziv(redniBrojevi, naziv);
        item.PostaviGenerickiNaziv(naziv);
    } else {
        item.SetNaziv(k.naziv);
    }
}

/// Inserts the combinations, numbered from prvi + 1, over the load cases `ids` (by place).
void UmetniKombinacije(CBaseManager& bm, const CKombinacijeOpisa& kombinacije,
                       const std::vector<CId>& ids, int prvi) {
    CRedniBrojeviSlOpt redniBrojevi;
    for (size_t k = 0; k < ids.size(); ++k)
        redniBrojevi.Postavi(ids[k], static_cast<int>(k) + 1);
    CString naziv;
    for (size_t j = 0; j < kombinacije.lista.size(); ++j) {
        const CKombinacijaOpisa& k = kombinacije.lista[j];
        auto p = std::make_unique<CKombinacijaOpterecenja>();
        NapraviItem(k, kombinacije.Clanovi(k), ids, redniBrojevi, prvi + static_cast<int>(j) + 1,
                    true, naziv, p->Item());
        bm.Insert(p.release());
    }
}

/// Combinations need the host's model object (their checksums read it); a document made
/// without one gets it.
void ObezbediModel(CBaseManager& bm) {
    if (bm.Count(CBaseManager::ModelType) == 0)
        bm.Insert(std::make_unique<CModel>().release());
}

/// Ids of the document's load cases by ordinal - 1.
std::vector<CId> SlucajeviPoRednomBroju(CBaseManager& bm) {
    const auto slucajevi = Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type);
    std::vector<CId> ids(slucajevi.size());
    for (const CSlucajOpterecenja* p : slucajevi) {
        const int r = p->DajRedniBroj();
        VASSERT(r >= 1 && r <= static_cast<int>(ids.size()));
        ids[static_cast<size_t>(r - 1)] = p->GetId();
    }
    return ids;
}

/// The stored set of the description. A load case of its snapshot is the document's load case
/// of the same name, as when the set was stored from this document; one the document no
/// longer has keeps an id that no object of the store will ever hold (ids count up from 1),
/// as the id of a deleted case would.
void UmetniSkladiste(CBaseManager& bm, const CSkladisteOpisa& opis) {
    std::unordered_map<std::wstring, CId> poNazivu;
    for (const CSlucajOpterecenja* p : Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type))
        poNazivu.emplace(p->GetNaziv(0), p->GetId());
    CSlOptItemArray snimak;
    std::vector<CId> ids;
    int32_t nepostojeci = std::numeric_limits<int32_t>::max();
    for (size_t r = 0; r < opis.slucajevi.size(); ++r) {
        const CUskladisteniSlucaj& s = opis.slucajevi[r];
        const auto it = poNazivu.find(s.naziv);
        if (it != poNazivu.end()) {
            ids.push_back(it->second);
            poNazivu.erase(it);
        } else {
            ids.emplace_back(nepostojeci--);
        }
        snimak.AddNew(s.naziv, static_cast<int>(r) + 1, 0, s.g, s.uticajna, ids.back());
    }
    CRedniBrojeviSlOpt redniBrojevi;
    for (size_t r = 0; r < ids.size(); ++r)
        redniBrojevi.Postavi(ids[r], static_cast<int>(r) + 1);
    CKombOptItemArray kombinacije;
    CString naziv;
    for (size_t j = 0; j < opis.kombinacije.lista.size(); ++j) {
        const CKombinacijaOpisa& k = opis.kombinacije.lista[j];
        CKombOptItem item;
        // A stored set keeps its combinations as they were stored.
        NapraviItem(k, opis.kombinacije.Clanovi(k), ids, redniBrojevi, static_cast<int>(j) + 1,
                    false, naziv, item);
        kombinacije.AddNew(item);
    }
    auto p = std::make_unique<CSkladiste>();
    p->Postavi(kombinacije, snimak);
    bm.Insert(p.release());
}

/// The list that the load case list editor writes back: the described load cases in their
/// order, each taking the place of a stored case of the same name when there is one.
std::vector<CSlucajListe> ListaSlucajeva(const std::vector<CSlucajOpisa>& slucajevi) {
    // Stored cases by name, in ordinal order; each is taken once.
    std::unordered_map<std::wstring, std::deque<const CSlucajListe*>> poNazivu;
    const std::vector<CSlucajListe> postojeci = DajSlucajeveOpterecenja();
    for (const CSlucajListe& e : postojeci)
        poNazivu[e.item.m_strNaziv].push_back(&e);
    std::vector<CSlucajListe> lista;
    for (const CSlucajOpisa& s : slucajevi) {
        CSlucajListe e;
        if (const auto it = poNazivu.find(s.naziv); it != poNazivu.end() && !it->second.empty()) {
            e.id = it->second.front()->id;
            e.nStariRedniBroj = it->second.front()->nStariRedniBroj;
            it->second.pop_front();
        }
        // The rule lists name load cases by id, known only once every case is stored.
        e.item =
            CSlOptItem(s.naziv, 0, s.g, s.uticaj != UL_NIJEDNA ? 1 : 0, e.id, s.koef, s.stalno,
                       s.alternativno, OCArray<CId>(), OCArray<CId>(), s.ulaziUSeizmickiProracun);
        e.nSeizmicki = s.seizmicki;
        e.nNDA = s.nda;
        e.nBrojMultimodalnih = s.tonovi;
        e.eUticaj = s.uticaj;
        lista.push_back(std::move(e));
    }
    return lista;
}

OCArray<CId> Idovi(const std::vector<int32_t>& mesta, const std::vector<CId>& ids) {
    OCArray<CId> lista;
    for (const int32_t m : mesta)
        lista.Add(ids[static_cast<size_t>(m)]);
    return lista;
}

/// The load cases in ordinal order, with their places by id (a sound model's places are its
/// ordinals).
std::vector<CSlucajOpisa> Slucajevi(CBaseManager& bm, CRedniBrojeviSlOpt& redniBrojevi) {
    auto slucajevi = Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type);
    std::stable_sort(slucajevi.begin(), slucajevi.end(),
                     [](const CSlucajOpterecenja* a, const CSlucajOpterecenja* b) {
                         return a->DajRedniBroj() < b->DajRedniBroj();
                     });
    for (size_t k = 0; k < slucajevi.size(); ++k)
        redniBrojevi.Postavi(slucajevi[k]->GetId(), static_cast<int>(k) + 1);
    std::vector<CSlucajOpisa> opisi;
    const int nSlOpt = static_cast<int>(slucajevi.size());
    for (const CSlucajOpterecenja* p : slucajevi)
        opisi.push_back(OpisSlucaja(*p, redniBrojevi, nSlOpt));
    return opisi;
}

} // namespace

std::vector<CSlucajOpisa> ProcitajSlucajeve() {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    CRedniBrojeviSlOpt redniBrojevi;
    return Slucajevi(bm, redniBrojevi);
}

COpis ProcitajModel() {
    COpis opis;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    CRedniBrojeviSlOpt redniBrojevi;
    opis.slucajevi = Slucajevi(bm, redniBrojevi);

    auto kombinacije = Procitaj<CKombinacijaOpterecenja>(bm, CKombinacijaOpterecenja::Type);
    std::stable_sort(kombinacije.begin(), kombinacije.end(),
                     [](const CKombinacijaOpterecenja* a, const CKombinacijaOpterecenja* b) {
                         return a->Item().GetRedniBroj() < b->Item().GetRedniBroj();
                     });
    opis.kombinacije.lista.reserve(kombinacije.size());
    size_t nClanova = 0;
    for (const CKombinacijaOpterecenja* p : kombinacije)
        nClanova += static_cast<size_t>(p->Item().GetBrojOsnOpt());
    opis.kombinacije.clanovi.reserve(nClanova);
    for (const CKombinacijaOpterecenja* p : kombinacije)
        DodajKombinaciju(opis.kombinacije, p->Item(), [&](const CId& id) {
            int r = 0;
            return redniBrojevi.Nadji(id, r) ? r - 1 : -1;
        });

    auto anvelope = Procitaj<CAnvelopaOpterecenja>(bm, CAnvelopaOpterecenja::Type);
    std::stable_sort(anvelope.begin(), anvelope.end(),
                     [](const CAnvelopaOpterecenja* a, const CAnvelopaOpterecenja* b) {
                         return a->GetBroj() < b->GetBroj();
                     });
    for (const CAnvelopaOpterecenja* p : anvelope)
        opis.anvelope.push_back({p->GetNaziv(), p->GetIzbor(), p->GetMod()});

    // The editors keep at most one stored set.
    const auto skladista = Procitaj<CSkladiste>(bm, CSkladiste::Type);
    if (!skladista.empty())
        opis.skladiste = OpisSkladista(*skladista.front());
    opis.stabilnost = ProcitajStabilnost(bm);
    bm.Close();
    return opis;
}

void UpisiModel(const COpis& opis) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    // Everything below joins the undo step of this view.
    ObezbediModel(bm);
    bm.DeleteAll(CBaseManager::KombinacijaOpterecenjaType);
    bm.DeleteAll(CBaseManager::AnvelopaOpterecenjaType);
    bm.DeleteAll(CBaseManager::SkladisteType);
    // SRSS units are written anew: none may take a load case it combines along when the list
    // below deletes that case.
    for (const CSlucajOpterecenja* p : Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type))
        if (p->JeliSRSS())
            dynamic_cast<CSlucajOpterecenja&>(*bm.GetW(p->GetId())).BrisiSRSS();

    std::vector<CId> ids;
    PrimeniSlucajeveOpterecenja(ListaSlucajeva(opis.slucajevi), &ids);
    for (size_t k = 0; k < opis.slucajevi.size(); ++k) {
        const CSlucajOpisa& s = opis.slucajevi[k];
        auto* p = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(ids[k]));
        VASSERT(p);
        p->SetNeKombinujSa(Idovi(s.nikad, ids));
        p->SetUvekKombinujSa(Idovi(s.uvek, ids));
        p->SetUticajUticajneLinije(s.uticaj);
        if (!s.srss.empty()) {
            OCArray<CLoadCaseFactor> faktori;
            for (const CClan& c : s.srss)
                faktori.Add(CLoadCaseFactor(c.indeks + 1, c.koef * c.koef));
            std::sort(faktori.begin(), faktori.end(),
                      [](const CLoadCaseFactor& a, const CLoadCaseFactor& b) {
                          return a.GetLCRedniBroj() < b.GetLCRedniBroj();
                      });
            CLoadCaseUnit unit;
            unit.Factors() = faktori;
            unit.SetKarakter(LCU_LINEARNA);
            p->PostaviSRSS(unit);
        }
    }

    UmetniKombinacije(bm, opis.kombinacije, ids, 0);
    std::vector<CAnvelopaListe> anvelope;
    for (const CAnvelopaOpisa& a : opis.anvelope)
        anvelope.push_back({CId(), a.naziv, a.izbor, a.mod});
    PrimeniAnvelope(anvelope);
    if (opis.skladiste)
        UmetniSkladiste(bm, *opis.skladiste);
    UpisiStabilnost(bm, opis.stabilnost);
    bm.Close();
    COpterecenjeApp::UpdateCombo(-1);
}

void UpisiKombinacije(const CKombinacijeOpisa& kombinacije, bool bZameni) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    ObezbediModel(bm);
    const std::vector<CId> ids = SlucajeviPoRednomBroju(bm);
    const int nSlOpt = static_cast<int>(ids.size());
    const int nStarih = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    if (bZameni) {
        bm.DeleteAll(CBaseManager::KombinacijaOpterecenjaType);
        // Envelopes name combinations by their place on the scale, as the editor leaves them
        // when it replaces the combinations: places that no combination takes any more go.
        const int nNovih = static_cast<int>(kombinacije.lista.size());
        std::vector<int> novi(static_cast<size_t>(nSlOpt + nStarih));
        for (int g = 1; g <= nSlOpt + nStarih; ++g)
            novi[static_cast<size_t>(g - 1)] = g <= nSlOpt + nNovih ? g : 0;
        PreslikajAnvelope(bm, novi, true);
    }
    UmetniKombinacije(bm, kombinacije, ids, bZameni ? 0 : nStarih);
    bm.Close();
    COpterecenjeApp::UpdateCombo(-1);
}

} // namespace opterecenje::razmena
