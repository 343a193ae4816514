// The global numbering of loads: counts, factor vectors, units, ordinals and the texts of
// loads, and the list of loads whose results could not be computed.
#include "services/Opterecenje.h"

#include "diag/Assert.h"
#include "host/MainFrame.h"
#include "model/LoadNumbering.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/OpterecenjeIndeks.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <cmath>

void COpterecenjeApp::GetBrojOpt(int& nSeizmickihINda, int& nOstalih) {
    nSeizmickihINda = 0;
    nOstalih = 0;
    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    bm.Select();
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        if (pSlOpt->IsSeizmicki() || pSlOpt->JeLiNDA() != 0)
            ++nSeizmickihINda;
        else
            ++nOstalih;
    }
    bm.Close();
}

int COpterecenjeApp::UkupanBrojSloptOKombinacija() {
    const LoadNumbering::Counts n = LoadNumbering::Count();
    return n.nSlOpt + n.nKomb;
}

int COpterecenjeApp::GetTeorija() {
    return gbTeorija;
}

void COpterecenjeApp::SetTeorija(int teorija) {
    gbTeorija = teorija;
}

void COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(int zerobased,
                                                             CArray<double>& faktori) {
    LoadNumbering::FaktoriZaProracun(zerobased, faktori);
}

void COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(int zerobased, CArray<double>& faktori) {
    LoadNumbering::FaktoriZaIspis(zerobased, faktori);
}

void COpterecenjeApp::SviFaktori_ZaProracun(
    const std::function<void(int, const CArray<double>&)>& red) {
    LoadNumbering::SviFaktori(false, red);
}

void COpterecenjeApp::SviFaktori_ZaIspis(
    const std::function<void(int, const CArray<double>&)>& red) {
    LoadNumbering::SviFaktori(true, red);
}

void COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(int zerobased, CLoadCaseUnit& unit) {
    LoadNumbering::ZerobasedToLoadCaseUnit(zerobased, unit);
}

int COpterecenjeApp::LoadCaseUnitToRedniBroj(const CLoadCaseUnit& unit) {
    // A single whole load names itself, whatever range it lies in; the store is not read.
    if (unit.GetSize() == 1 && CToler::Jednaki(unit.GetLoadCaseFactor(0).GetFaktor(), 1.0))
        return unit.GetLoadCaseFactor(0).GetLCRedniBroj();
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    const opterecenje::CRedniBrojeviSlucajeva slucajevi(bm);
    opterecenje::CIndeksKombinacija indeks(bm, nSlOpt, slucajevi);
    const int rb = indeks.RedniBroj(unit);
    bm.Close();
    return rb;
}

namespace {

/// The terms of a unit: sign, factor when it is not 1.0 (or always with bJedinicni), Roman
/// numeral, and the count suffix when counts are given.
CString Formula(const CLoadCaseUnit& unit, const OCArray<int>* brojevi, int bJedinicni) {
    CString s;
    for (int i = 0; i < unit.GetSize(); ++i) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(i);
        const double v = f.GetFaktor();
        if (CToler::Jednaki(v, 0.0))
            continue;
        if (v < 0.0)
            s += L"-";
        else if (!s.IsEmpty())
            s += L"+";
        // The signed factor is compared with +1.0: -1.0 writes its factor, +1.0 does not.
        if (bJedinicni != 0 || CToler::Razliciti(v, 1.0))
            s += CString::Formatted(L"%.2fx", std::fabs(v));
        s += CRomanNumber::GetRomanValue(f.GetLCRedniBroj());
        if (brojevi != nullptr) {
            const int broj = (*brojevi)[f.GetLCRedniBroj() - 1];
            if (broj > 1)
                s += CString::Formatted(L"(%d)", broj - 1);
        }
    }
    return s;
}

} // namespace

CString COpterecenjeApp::LoadCaseUnitToString(const CLoadCaseUnit& unit, int bJedinicni) {
    return Formula(unit, nullptr, bJedinicni);
}

CString COpterecenjeApp::LoadCaseUnitToString(const CLoadCaseUnit& unit,
                                              const OCArray<int>& brojevi, int bJedinicni) {
    if (unit.GetSize() == 1 && CToler::Jednaki(unit.GetLoadCaseFactor(0).GetFaktor(), 1.0)) {
        const int rb = unit.GetLoadCaseFactor(0).GetLCRedniBroj();
        if (rb > LoadNumbering::Count().nSlOpt) {
            // A whole combination: written as its load cases, without counts.
            CLoadCaseUnit kombinacija;
            ZerobasedRedniBrojToLoadCaseUnit(rb - 1, kombinacija);
            return LoadCaseUnitToString(kombinacija, bJedinicni);
        }
    }
    return Formula(unit, &brojevi, bJedinicni);
}

int COpterecenjeApp::KljucComboItema(const CComboItem& item, int nSlOpt, int nKomb) {
    switch (item.m_nTip) {
    case CComboItem::SLUCAJ:
        return item.m_nBroj;
    case CComboItem::KOMBINACIJA:
        return nSlOpt + item.m_nBroj;
    case CComboItem::ANVELOPA:
        return nSlOpt + nKomb + item.m_nBroj;
    default:
        return -1;
    }
}

CString COpterecenjeApp::NazivTekucegOpterecenja(int bKratko, ClTranslator& translator) {
    const CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return CString();
    int broj = 0;
    pFrame->GetCurrentSloptId(broj);

    const LoadNumbering::Counts n = LoadNumbering::Count();
    int p = 0;
    for (int i = 0; i < gComboItemArray.GetSize(); ++i) {
        if (KljucComboItema(gComboItemArray[i], n.nSlOpt, n.nKomb) == broj) {
            p = i + 1;
            break;
        }
    }
    if (p == 0)
        return CString();
    gTekuciComboItem = gComboItemArray[p - 1];

    const CString prefiks = translator.Do(L"Opt.");
    const int rb = KljucComboItema(gTekuciComboItem, n.nSlOpt, n.nKomb);
    const int ton = rb <= n.nSlOpt ? CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(rb) : 0;
    const CString tekstBroja =
        ton != 0 ? CString::Formatted(L"%d/%d", p, ton) : CString::Formatted(L"%d", p);
    if (bKratko != 0)
        return CString::Formatted(L"%s %s", prefiks.c_str(), tekstBroja.c_str());
    return CString::Formatted(L"%s %s: %s", prefiks.c_str(), tekstBroja.c_str(),
                              gTekuciComboItem.m_strNaziv.c_str());
}

void COpterecenjeApp::MarkAsLabilanSlOpt(int redniBroj) {
    gArrRedBrLabilnihSlOpt.Add(redniBroj);
}

int COpterecenjeApp::IsMarkedAsLabilanSlOpt(int redniBroj) {
    for (int rb : gArrRedBrLabilnihSlOpt)
        if (rb == redniBroj)
            return 1;
    return 0;
}

void COpterecenjeApp::ResetArrayLabilnihSlOpt() {
    gArrRedBrLabilnihSlOpt.RemoveAll();
    gArrRedBrLabilnihSlOpt.FreeExtra();
    gnLastGoodStabile = -1;
}
