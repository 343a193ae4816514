// Model-wide operations on the load cases: the editable list, writing it back with every
// consequence, and the single operations built on it.
#include "services/SlucajeviOpterecenja.h"

#include "diag/Assert.h"
#include "model/KombinacijaOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Anvelope.h"
#include "services/Opterecenje.h"
#include "toler/Toler.h"

#include <algorithm>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace opterecenje {

namespace {

const CSlucajOpterecenja* Slucaj(const CBaseManager& bm, const CId& id) {
    const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
    VASSERT(pSlOpt);
    return pSlOpt;
}

const CKombinacijaOpterecenja* Kombinacija(const CBaseManager& bm, const CId& id) {
    const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
    VASSERT(pKombOpt);
    return pKombOpt;
}

/// An SRSS case: one whose SRSS unit holds factors.
bool ImaSRSS(const CSlucajOpterecenja& slucaj) {
    return slucaj.JeliSRSS() && !slucaj.DajLCUnitZaSRSS()->IsEmpty();
}

/// The model as it stands before a list is written back.
struct CStanje {
    int nSlOpt = 0;
    int nKomb = 0;
    std::unordered_map<CId, int> redniBrojSlucaja;
    /// Load case ids by ordinal - 1.
    std::vector<CId> slucajPoRednomBroju;
    /// Combination ids by their own ordinal - 1.
    std::vector<CId> kombinacijaPoRednomBroju;
};

CStanje ProcitajStanje(CBaseManager& bm) {
    CStanje s;
    s.nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    s.nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    s.slucajPoRednomBroju.resize(static_cast<size_t>(s.nSlOpt));
    s.kombinacijaPoRednomBroju.resize(static_cast<size_t>(s.nKomb));
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const int r = Slucaj(bm, id)->DajRedniBroj();
        s.redniBrojSlucaja[id] = r;
        if (r >= 1 && r <= s.nSlOpt)
            s.slucajPoRednomBroju[static_cast<size_t>(r - 1)] = id;
    }
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const int r = Kombinacija(bm, id)->Item().GetRedniBroj();
        if (r >= 1 && r <= s.nKomb)
            s.kombinacijaPoRednomBroju[static_cast<size_t>(r - 1)] = id;
    }
    return s;
}

/// The stored load cases the list lacks, and the SRSS cases that combine any of them (or
/// another such SRSS case): everything that goes.
std::unordered_set<CId> Brisani(CBaseManager& bm, const CStanje& s,
                                const std::unordered_set<CId>& uListi) {
    std::unordered_set<CId> brisani;
    for (const auto& [id, r] : s.redniBrojSlucaja)
        if (!uListi.contains(id))
            brisani.insert(id);
    for (bool bPromena = !brisani.empty(); bPromena;) {
        bPromena = false;
        for (const auto& [id, r] : s.redniBrojSlucaja) {
            if (brisani.contains(id))
                continue;
            const CSlucajOpterecenja* pSlOpt = Slucaj(bm, id);
            if (!ImaSRSS(*pSlOpt))
                continue;
            const CLoadCaseUnit& srss = *pSlOpt->DajLCUnitZaSRSS();
            for (int i = 0; i < srss.GetSize(); ++i) {
                const CLoadCaseFactor& f = srss.GetLoadCaseFactor(i);
                const int k = f.GetLCRedniBroj();
                if (f.GetFaktor() != 0.0 && k >= 1 && k <= s.nSlOpt &&
                    brisani.contains(s.slucajPoRednomBroju[static_cast<size_t>(k - 1)])) {
                    brisani.insert(id);
                    bPromena = true;
                    break;
                }
            }
        }
    }
    return brisani;
}

/// Whether a combination contains any of the load cases (whatever the coefficient).
bool SadrziNeki(const CKombOptItem& item, const std::unordered_set<CId>& slucajevi) {
    for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
        double koef = 0.0;
        CId id;
        item.GetOsnOptByIndex(i, koef, id);
        if (slucajevi.contains(id))
            return true;
    }
    return false;
}

/// The new global ordinal of every old one (0: gone), from the new ordinals of the load cases
/// (by old ordinal) and of the combinations (by old own ordinal).
std::vector<int> GlobalnaPreslikavanja(const std::vector<int>& noviSl,
                                       const std::vector<int>& noviKomb, int nNovoSl) {
    std::vector<int> novi(noviSl);
    for (const int k : noviKomb)
        novi.push_back(k > 0 ? nNovoSl + k : 0);
    return novi;
}

/// Whether the stored case already holds the values of the list entry at the ordinal.
bool IstiSlucaj(const CSlucajOpterecenja& s, const CSlucajListe& e, int r) {
    const CSlOptItem& it = e.item;
    return s.DajRedniBroj() == r && s.GetNaziv() == it.m_strNaziv &&
           s.GetgMarker() == it.m_ngMarker && s.GetKoeficijent() == it.m_dKoeficijent &&
           s.GetStalno() == it.m_bStalno && s.GetAlternativno() == it.m_bAlternativno &&
           s.GetNeKombinujSa() == it.m_arrNeKombinujSa &&
           s.GetUvekKombinujSa() == it.m_arrUvekKombinujSa &&
           s.DajUlaziUSeizmickiProracun() == it.m_nUlaziUSeizmickiProracun &&
           s.IsSeizmicki() == (e.nSeizmicki != 0 ? 1 : 0) && s.JeLiNDA() == e.nNDA &&
           s.GetBrojMultimodalnih() == e.nBrojMultimodalnih;
}

void Postavi(CSlucajOpterecenja& s, const CSlucajListe& e, int r) {
    s.Set(r, e.item);
    s.SetSeizmicki(e.nSeizmicki);
    s.PostaviNDA(e.nNDA);
    s.SetBrojMultimodalnih(e.nBrojMultimodalnih);
}

/// The SRSS unit over the new global ordinals; factors of loads that are gone are dropped.
CLoadCaseUnit PreslikajSRSS(const CLoadCaseUnit& srss, const std::vector<int>& novi) {
    OCArray<CLoadCaseFactor> faktori;
    for (int i = 0; i < srss.GetSize(); ++i) {
        const CLoadCaseFactor& f = srss.GetLoadCaseFactor(i);
        const int g = f.GetLCRedniBroj();
        const int n =
            g >= 1 && g <= static_cast<int>(novi.size()) ? novi[static_cast<size_t>(g - 1)] : 0;
        if (n > 0)
            faktori.Add(CLoadCaseFactor(n, f.GetFaktor()));
    }
    std::sort(faktori.begin(), faktori.end(),
              [](const CLoadCaseFactor& a, const CLoadCaseFactor& b) {
                  return a.GetLCRedniBroj() < b.GetLCRedniBroj();
              });
    CLoadCaseUnit u;
    u.Factors() = faktori;
    u.SetKarakter(srss.GetKarakter());
    return u;
}

/// The multimodal tone map over the new load case ordinals.
void PreslikajTonove(const std::vector<int>& noviSl) {
    CMap<int, int, int, int> stara;
    CSlucajOpterecenja::GetKopijuMapeTonovaZaMultiModalne(stara);
    CMap<int, int, int, int> nova;
    for (const auto& [r, ton] : stara) {
        if (r >= 1 && r <= static_cast<int>(noviSl.size())) {
            if (const int n = noviSl[static_cast<size_t>(r - 1)]; n > 0)
                nova.SetAt(n, ton);
        }
    }
    CSlucajOpterecenja::PrekopirajMapuTonovaZaMultiModalne(nova);
}

} // namespace

std::vector<CSlucajListe> DajSlucajeveOpterecenja() {
    std::vector<CSlucajListe> lista;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    std::map<int, CId> poRednomBroju;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        poRednomBroju.emplace(Slucaj(bm, id)->DajRedniBroj(), id);
    for (const auto& [r, id] : poRednomBroju) {
        const CSlucajOpterecenja* p = Slucaj(bm, id);
        CSlucajListe e;
        e.id = id;
        e.nStariRedniBroj = r;
        e.item = CSlOptItem(p->GetNaziv(0), 0, p->GetgMarker(), p->IsUticajnaLinija() ? 1 : 0, id,
                            p->GetKoeficijent(), p->GetStalno(), p->GetAlternativno(),
                            p->GetNeKombinujSa(), p->GetUvekKombinujSa(),
                            p->DajUlaziUSeizmickiProracun());
        e.nSeizmicki = p->IsSeizmicki();
        e.nNDA = p->JeLiNDA();
        e.nBrojMultimodalnih = p->GetBrojMultimodalnih();
        e.eUticaj = p->GetUticajUticajneLinije();
        if (p->JeliSRSS())
            e.srss = *p->DajLCUnitZaSRSS();
        lista.push_back(std::move(e));
    }
    bm.Close();
    return lista;
}

CPosledice PosledicaBrisanja(const std::vector<CId>& slucajevi) {
    CPosledice posledice;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const CStanje s = ProcitajStanje(bm);
    std::unordered_set<CId> uListi;
    for (const auto& [id, r] : s.redniBrojSlucaja)
        uListi.insert(id);
    for (const CId& id : slucajevi)
        uListi.erase(id);
    const std::unordered_set<CId> brisani = Brisani(bm, s, uListi);
    for (const CId& id : brisani)
        if (std::find(slucajevi.begin(), slucajevi.end(), id) == slucajevi.end())
            posledice.srss.push_back(id);
    std::sort(posledice.srss.begin(), posledice.srss.end(), [&](const CId& a, const CId& b) {
        return s.redniBrojSlucaja.at(a) < s.redniBrojSlucaja.at(b);
    });

    // The survivors keep their order and close the gaps.
    std::vector<int> noviSl(static_cast<size_t>(s.nSlOpt), 0);
    int nNovoSl = 0;
    for (int r = 1; r <= s.nSlOpt; ++r)
        if (!brisani.contains(s.slucajPoRednomBroju[static_cast<size_t>(r - 1)]))
            noviSl[static_cast<size_t>(r - 1)] = ++nNovoSl;
    std::vector<int> noviKomb(static_cast<size_t>(s.nKomb), 0);
    int nNovoKomb = 0;
    for (int j = 1; j <= s.nKomb; ++j) {
        const CId& id = s.kombinacijaPoRednomBroju[static_cast<size_t>(j - 1)];
        const bool bIde = !CKombinacijaOpterecenja::bSacuvajKombinacije && id.Valid() &&
                          SadrziNeki(Kombinacija(bm, id)->Item(), brisani);
        if (bIde)
            ++posledice.nKombinacija;
        else
            noviKomb[static_cast<size_t>(j - 1)] = ++nNovoKomb;
    }
    posledice.nAnvelopa =
        PreslikajAnvelope(bm, GlobalnaPreslikavanja(noviSl, noviKomb, nNovoSl), false);
    bm.Close();
    return posledice;
}

bool PrimeniSlucajeveOpterecenja(const std::vector<CSlucajListe>& lista,
                                 std::vector<CId>* noviIdovi) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const CStanje s = ProcitajStanje(bm);
    std::unordered_set<CId> uListi;
    for (const CSlucajListe& e : lista) {
        // The list comes from the store: an id it does not hold is a fault of the caller.
        gfnAssert(!e.id.Valid() || s.redniBrojSlucaja.contains(e.id),
                  "!e.id.Valid () || s.redniBrojSlucaja.contains (e.id)", gfnSourceName(__FILE__),
                  __LINE__);
        if (e.id.Valid())
            uListi.insert(e.id);
    }
    const std::unordered_set<CId> brisani = Brisani(bm, s, uListi);

    // Nothing to write when the list holds every stored case, as it is, in its place.
    bool bIsto = brisani.empty() && static_cast<int>(lista.size()) == s.nSlOpt;
    for (size_t i = 0; i < lista.size() && bIsto; ++i)
        bIsto = lista[i].id.Valid() &&
                IstiSlucaj(*Slucaj(bm, lista[i].id), lista[i], static_cast<int>(i) + 1);
    bm.Close();
    if (noviIdovi != nullptr) {
        noviIdovi->clear();
        for (const CSlucajListe& e : lista)
            noviIdovi->push_back(brisani.contains(e.id) ? CId() : e.id);
    }
    if (bIsto)
        return false;

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.FreezeUndoCounter();

    // New cases first, while the cases they copy are still there.
    std::vector<CId> idovi(lista.size());
    for (size_t i = 0; i < lista.size(); ++i) {
        const CSlucajListe& e = lista[i];
        if (e.id.Valid()) {
            idovi[i] = e.id;
            continue;
        }
        const auto* pIzvor = e.kopijaOd.Valid()
                                 ? dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(e.kopijaOd))
                                 : nullptr;
        std::unique_ptr<CSlucajOpterecenja> pNovi(
            pIzvor != nullptr ? dynamic_cast<CSlucajOpterecenja*>(pIzvor->MakeNew())
                              : new CSlucajOpterecenja());
        Postavi(*pNovi, e, 0);
        idovi[i] = bm.Insert(pNovi.release());
        if (pIzvor != nullptr && COpterecenjeApp::KopirajPojedinacnaOpterecenja != nullptr)
            COpterecenjeApp::KopirajPojedinacnaOpterecenja(e.kopijaOd, idovi[i]);
    }

    // Deleted cases take their combinations along, from the highest ordinal down.
    std::vector<CId> poRedu(brisani.begin(), brisani.end());
    std::sort(poRedu.begin(), poRedu.end(), [&](const CId& a, const CId& b) {
        return s.redniBrojSlucaja.at(a) > s.redniBrojSlucaja.at(b);
    });
    for (const CId& id : poRedu) {
        CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(id);
        bm.Delete(id);
    }

    // The new numbering of load cases and, after the cascades, of combinations.
    std::vector<int> noviSl(static_cast<size_t>(s.nSlOpt), 0);
    int nNovoSl = 0;
    std::vector<CId> prenumerisani;
    for (size_t i = 0; i < lista.size(); ++i) {
        if (brisani.contains(lista[i].id))
            continue;
        ++nNovoSl;
        if (const auto it = s.redniBrojSlucaja.find(lista[i].id); it != s.redniBrojSlucaja.end()) {
            if (it->second >= 1 && it->second <= s.nSlOpt)
                noviSl[static_cast<size_t>(it->second - 1)] = nNovoSl;
            if (it->second != nNovoSl)
                prenumerisani.push_back(lista[i].id);
        }
    }
    // The combinations keep their ordinals unless a cascade deleted some.
    std::vector<int> noviKomb(static_cast<size_t>(s.nKomb), 0);
    for (int j = 1; j <= s.nKomb; ++j) {
        const CId& id = s.kombinacijaPoRednomBroju[static_cast<size_t>(j - 1)];
        if (brisani.empty())
            noviKomb[static_cast<size_t>(j - 1)] = j;
        else if (const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id)))
            noviKomb[static_cast<size_t>(j - 1)] = pKombOpt->Item().GetRedniBroj();
    }
    const std::vector<int> novi = GlobalnaPreslikavanja(noviSl, noviKomb, nNovoSl);

    // The cases take their places and values; SRSS units follow the new ordinals.
    int r = 0;
    for (size_t i = 0; i < lista.size(); ++i) {
        if (brisani.contains(lista[i].id))
            continue;
        ++r;
        const CSlucajOpterecenja* pSlOpt = Slucaj(bm, idovi[i]);
        std::optional<CLoadCaseUnit> srss;
        if (pSlOpt->JeliSRSS()) {
            // A new copy's unit still names the cases by their old ordinals, like the others.
            srss = PreslikajSRSS(*pSlOpt->DajLCUnitZaSRSS(), novi);
            if (*srss == *pSlOpt->DajLCUnitZaSRSS())
                srss.reset();
        }
        if (IstiSlucaj(*pSlOpt, lista[i], r) && !srss)
            continue;
        auto* pPromenjen = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(idovi[i]));
        VASSERT(pPromenjen);
        Postavi(*pPromenjen, lista[i], r);
        if (srss)
            pPromenjen->PostaviSRSS(*srss);
    }

    PreslikajAnvelope(bm, novi, true);
    // Generated names show the load cases' ordinals.
    if (!prenumerisani.empty())
        CKombinacijaOpterecenja::ObnoviGenerickeNazive(prenumerisani);
    PreslikajTonove(noviSl);

    bm.UnfreezeUndoCounter();
    bm.Close();
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();
    if (noviIdovi != nullptr)
        for (size_t i = 0; i < lista.size(); ++i)
            (*noviIdovi)[i] = brisani.contains(lista[i].id) ? CId() : idovi[i];
    COpterecenjeApp::UpdateCombo(-1);
    return true;
}

// ------------------------------------------------------------------------ single operations

namespace {

/// The index of the case in the list, or -1.
int Indeks(const std::vector<CSlucajListe>& lista, const CId& id) {
    for (size_t i = 0; i < lista.size(); ++i)
        if (lista[i].id == id)
            return static_cast<int>(i);
    return -1;
}

/// The index of the first SRSS case, or the list's size when there is none after the last
/// ordinary case.
int PocetakSRSS(const std::vector<CSlucajListe>& lista) {
    int i = static_cast<int>(lista.size());
    while (i > 0 && lista[static_cast<size_t>(i - 1)].JeSRSS())
        --i;
    return i;
}

} // namespace

bool BrisiSlucajOpterecenja(const CId& id) {
    std::vector<CSlucajListe> lista = DajSlucajeveOpterecenja();
    const int i = Indeks(lista, id);
    if (i < 0)
        return false;
    lista.erase(lista.begin() + i);
    PrimeniSlucajeveOpterecenja(lista);
    return true;
}

bool PremestiSlucajOpterecenja(const CId& id, int noviRedniBroj) {
    std::vector<CSlucajListe> lista = DajSlucajeveOpterecenja();
    const int i = Indeks(lista, id);
    if (i < 0)
        return false;
    const int srss = PocetakSRSS(lista);
    const bool bSRSS = i >= srss;
    const int od = bSRSS ? srss : 0;
    const int doIndeksa = bSRSS ? static_cast<int>(lista.size()) - 1 : srss - 1;
    const int j = noviRedniBroj - 1;
    if (j < od || j > doIndeksa)
        return false;
    CSlucajListe e = std::move(lista[static_cast<size_t>(i)]);
    lista.erase(lista.begin() + i);
    lista.insert(lista.begin() + j, std::move(e));
    PrimeniSlucajeveOpterecenja(lista);
    return true;
}

CId KopirajSlucajOpterecenja(const CId& id, const CString& naziv) {
    std::vector<CSlucajListe> lista = DajSlucajeveOpterecenja();
    const int i = Indeks(lista, id);
    if (i < 0)
        return CId();
    CSlucajListe kopija = lista[static_cast<size_t>(i)];
    kopija.id = CId();
    kopija.kopijaOd = id;
    kopija.nStariRedniBroj = 0;
    kopija.item.m_Id = CId();
    kopija.item.m_strNaziv = naziv;
    const size_t mesto = kopija.JeSRSS() ? lista.size() : static_cast<size_t>(i) + 1;
    lista.insert(lista.begin() + static_cast<std::ptrdiff_t>(mesto), std::move(kopija));
    std::vector<CId> idovi;
    PrimeniSlucajeveOpterecenja(lista, &idovi);
    return idovi[mesto];
}

} // namespace opterecenje
