// Model-wide maintenance of load cases: removing the SRSS and the seismic load cases with the
// combinations that use them, the load case that carries influence lines, activating an
// envelope in the results selector, and the stability dialog.
#include "services/Opterecenje.h"
#include "services/OpterecenjeDetail.h"

#include "diag/Assert.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/LoadNumbering.h"
#include "model/SlucajOpterecenja.h"
#include "model/StabilnostParams.h"
#include "objbase/BaseManager.h"

#include <array>
#include <memory>

void COpterecenjeApp::BrisanjeSrssSlOpt() {
    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.Select();
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        if (!opterecenje::JeSRSS(*pSlOpt))
            continue;
        CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(id);
        bm.Delete(id);
    }
    // Ordinals are not closed up here; envelopes and results are the business of others.
    bm.Close();
}

void COpterecenjeApp::BrisanjeSeizmickihSlOpt() {
    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    const int n = bm.Count();
    CArray<CId> ids;
    ids.SetSize(n);
    bm.Select();
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        if (pSlOpt->IsSeizmicki() || pSlOpt->JeLiNDA() != 0)
            ids[pSlOpt->DajRedniBroj() - 1] = id;
    }
    // From the highest ordinal down.
    for (int i = n - 1; i >= 0; --i) {
        if (!ids[i].Valid())
            continue;
        CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(ids[i]);
        bm.Delete(ids[i]);
    }
    bm.Close();
}

namespace {

/// Whether the model holds any individual load of the host.
bool ImaPojedinacnihOpterecenja() {
    static constexpr std::array<int, 11> tipovi = {
        CBaseManager::TackastoOpterecenjeType,    CBaseManager::LinijskoOpterecenjeType,
        CBaseManager::PovrsinskoOpterecenjeType,  CBaseManager::PrednaprezanjeType,
        CBaseManager::PokretnoOpterecenjeType,    CBaseManager::PomeranjeCvoraType,
        CBaseManager::TempUticajUGredi,           CBaseManager::TempUticajUPloci,
        CBaseManager::AksijalnoNaprezanjeType,    CBaseManager::UticajnaLinijaLinijskaType,
        CBaseManager::UticajnaLinijaTackastaType,
    };
    CBaseManager bm;
    for (int tip : tipovi)
        if (bm.Count(tip) != 0)
            return true;
    return false;
}

/// The only load case, when the model has exactly one and it is not marked g; else null.
const CSlucajOpterecenja* JedinoPrazanSlucaj(CBaseManager& bm) {
    if (bm.Count() != 1)
        return nullptr;
    bm.Select();
    const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(bm.GetFirst()));
    return pSlOpt != nullptr && pSlOpt->GetgMarker() == 0 ? pSlOpt : nullptr;
}

} // namespace

CId COpterecenjeApp::DodajSlOptUticajneLinije(const CString& naziv, eUticajUticajneLin uticaj) {
    CId rezultat;

    // Take over the one empty load case of a model without loads.
    bool bPreuzmi = false;
    {
        CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        bPreuzmi = JedinoPrazanSlucaj(bm) != nullptr && !ImaPojedinacnihOpterecenja();
        bm.Close();
    }
    if (bPreuzmi) {
        CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        opterecenje::Proveri(bm.Count() == 1, "bm.Count () == 1");
        bm.Select();
        rezultat = bm.GetFirst();
        auto* pSlOpt = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(rezultat));
        VASSERT(pSlOpt);
        pSlOpt->SetNaziv(naziv);
        pSlOpt->SetgMarker(0);
        pSlOpt->SetKoeficijent(0.0);
        pSlOpt->SetStalno(0);
        pSlOpt->SetUticajUticajneLinije(uticaj);
        bm.Close();
        UpdateCombo(1);
        return rezultat;
    }

    // Otherwise a new case after all others, once the seismic and SRSS cases are gone.
    BrisanjeSeizmickihSlOpt();
    BrisanjeSrssSlOpt();
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();

    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    const int n = bm.Count();
    auto novi = std::make_unique<CSlucajOpterecenja>();
    novi->SetNaziv(naziv);
    novi->PostaviRedniBroj(n + 1);
    novi->SetgMarker(0);
    novi->SetKoeficijent(0.0);
    novi->SetStalno(0);
    novi->SetUticajUticajneLinije(uticaj);
    rezultat = bm.Insert(novi.release());
    if (CObj* pObj = bm.GetW(rezultat))
        pObj->NotifyInsert();
    bm.Close();

    UpdateCombo(n + 1);
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();
    return rezultat;
}

void COpterecenjeApp::IzmeniSlOptUticajneLinije(const CString& naziv, CId id) {
    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    auto* pSlOpt = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(id));
    VASSERT(pSlOpt);
    pSlOpt->SetNaziv(naziv);
    const int k = pSlOpt->DajRedniBroj();
    bm.Close();
    UpdateCombo(k);
}

void COpterecenjeApp::AktivirajAnvelopu(int rbrAnvelope) {
    gnAktivnaAnvelopa = rbrAnvelope;
    const LoadNumbering::Counts brojevi = LoadNumbering::Count();
    const int nSlopt = brojevi.nSlOpt;
    const int nKomb = brojevi.nKomb;
    const int nAnv = brojevi.nAnv;
    const int nUkupno = gComboItemArray.GetSize();
    VASSERT(nUkupno == nSlopt + nKomb + nAnv);
    VASSERT(rbrAnvelope >= 0 && rbrAnvelope <= nAnv);
    // Envelope 0 activates the item just before the first envelope; accepted as it stands.
    CComboItemArray::SetActiveItem(gComboItemArray[nSlopt + nKomb + rbrAnvelope - 1]);
}

void COpterecenjeApp::ResetAnvelope() {
    gnAktivnaAnvelopa = 0;
    CComboItemArray::SetActiveItem(CComboItem());
}

int COpterecenjeApp::OnStabilnost(void* hParent, CStabilnostParams& params) {
    if (gfnOdradiStabilnostDlg == nullptr)
        return 0;
    CStabilnostParams kopija(params);
    if (gfnOdradiStabilnostDlg(hParent, kopija) != 1)
        return 0;
    params = kopija;
    return 1;
}
