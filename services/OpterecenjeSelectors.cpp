// The load selector of the host's toolbar: the standard list (load input: ordinary load cases
// only) and the results list (every load case, combination and envelope, with marks for loads
// whose results could not be computed), the user's choice in either, and stepping through it.
//
// Standard list: position 0 is the total load and position k stands for the load case with
// ordinal k. Seismic, NDA and SRSS cases are not offered: their positions stay without a name
// (they usually come last, so the list simply ends before them).
//
// Results list: position p (zero-based) holds gComboItemArray[p], the load with the global
// ordinal p + 1; the marks of unstable loads are by that ordinal.
#include "services/Opterecenje.h"
#include "services/OpterecenjeDetail.h"

#include "diag/Assert.h"
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/OptionInfo.h"
#include "host/VortaUtils.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlOptItem.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/OpterecenjeIndeks.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

using opterecenje::Prevod;
using opterecenje::Proveri;
using opterecenje::Upozori;

namespace {

constexpr const wchar_t* kTotalno = Tr(L"Totalno opterecenje");
constexpr const wchar_t* kOpterecenje = Tr(L"Opterecenje %d: %s");
constexpr const wchar_t* kNisuProracunati =
    Tr(L"Za izabrani slucaj opterecenja rezultati nisu mogli biti proracunati.");
constexpr const wchar_t* kAnvelopaNeodgovara = Tr(L"Izabrani anvelopski slucaj nije u saglasnosti "
                                                  L"sa ukupnim brojem slucajeva i kombinacija "
                                                  L"opterecenja.");

void OsveziPoglede() {
    CVortaUtils::UpdateViews(1, 1, 0, 0, 0);
}

/// The choice in the selector, handled in the host's mode (as OnCombo does, without the
/// repaint).
void Posalji() {
    const CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;
    if (pFrame->IsResultsMode())
        COpterecenjeApp::OnComboResults();
    else
        COpterecenjeApp::OnComboStandard();
}

/// The highest position (one-based) that is not marked unstable, given to gnLastGoodStabile;
/// it keeps its value when every position is marked.
void NajvisaNeoznacenaPozicija() {
    const int n = COpterecenjeApp::gComboItemArray.GetSize();
    for (int p = 1; p <= n; ++p)
        if (!COpterecenjeApp::IsMarkedAsLabilanSlOpt(p))
            COpterecenjeApp::gnLastGoodStabile = p;
}

/// Falls back from the refused position to another one and handles the choice again. A
/// fall-back onto the refused position itself (an envelope that is refused again) would never
/// end: then nothing stays selected.
void Povratak(CSelectorList& combo, int pozicija, int odbijena, bool bAktiviraj) {
    if (pozicija == odbijena) {
        combo.SetCurSel(-1);
        return;
    }
    combo.SetCurSel(pozicija);
    if (bAktiviraj && pozicija >= 0 && pozicija < COpterecenjeApp::gComboItemArray.GetSize())
        CComboItemArray::SetActiveItem(COpterecenjeApp::gComboItemArray[pozicija]);
    COpterecenjeApp::OnCombo();
}

/// Appends a whole number as "%d" writes it, without the formatting machinery behind the
/// standard library's wide conversion, which a list of many thousand items would feel.
void DodajBroj(CString& tekst, int n) {
    char cifre[16];
    const char* const kraj = std::to_chars(cifre, cifre + sizeof cifre, n).ptr;
    for (const char* c = cifre; c != kraj; ++c)
        tekst += static_cast<wchar_t>(*c);
}

/// "%d. %s" (or "%d/%d. %s" with a tone index) of a position and a name.
CString TekstStavke(int p, int ton, const CString& naziv) {
    // Room for the numbers and the name at once: a long generated name is copied only once.
    CString tekst;
    tekst.reserve(naziv.size() + 24);
    DodajBroj(tekst, p);
    if (ton != 0) {
        tekst += L'/';
        DodajBroj(tekst, ton);
    }
    tekst += L". ";
    tekst += naziv;
    return tekst;
}

/// The items of the results list: load cases, combinations, envelopes, in the order of the
/// global scale. Sorted insertion into an emptied list gives the same order as a stable sort
/// of the items in the order they are added, which is what is done here.
void NapuniStavke() {
    std::vector<CComboItem> stavke;
    {
        CBaseManager bm;
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        stavke.reserve(static_cast<size_t>(bm.Count(CBaseManager::SlucajOpterecenjaType) +
                                           bm.Count(CBaseManager::KombinacijaOpterecenjaType) +
                                           bm.Count(CBaseManager::AnvelopaOpterecenjaType)));
        bm.Select(CBaseManager::SlucajOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
            VASSERT(pSlOpt);
            CComboItem item;
            item.m_nTip = CComboItem::SLUCAJ;
            item.m_nBroj = pSlOpt->DajRedniBroj();
            item.m_strNaziv = pSlOpt->GetNaziv(0);
            if (pSlOpt->JeLiNDA() != 0 && COpterecenjeApp::NapraviImeDDASlOpt != nullptr)
                COpterecenjeApp::NapraviImeDDASlOpt(item.m_strNaziv);
            item.m_bUticajnaLinija = pSlOpt->IsUticajnaLinija() ? 1 : 0;
            item.m_Id = id;
            stavke.push_back(std::move(item));
        }
        bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
            VASSERT(pKombOpt);
            CComboItem item;
            item.m_nTip = CComboItem::KOMBINACIJA;
            item.m_nBroj = pKombOpt->Item().GetRedniBroj();
            item.m_strNaziv = pKombOpt->Item().GetNaziv();
            item.m_Id = id;
            stavke.push_back(std::move(item));
        }
        bm.Close();
    }
    OCArray<CComboItem> anvelope;
    ClTranslator translator;
    CComboItem::GetNizAnvelopaItem(anvelope, translator);
    for (CComboItem& item : anvelope)
        stavke.push_back(std::move(item));

    const auto ispred = [](const CComboItem& a, const CComboItem& b) {
        return CComboItem::Uporedi(a, b) < 0;
    };
    // Usually the store order is already the order of the scale.
    if (!std::is_sorted(stavke.begin(), stavke.end(), ispred))
        std::stable_sort(stavke.begin(), stavke.end(), ispred);
    COpterecenjeApp::gComboItemArray.RemoveAll();
    COpterecenjeApp::gComboItemArray.Vector() = std::move(stavke);
}

} // namespace

void COpterecenjeApp::UpdateCombo(int n) {
    const CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;
    if (pFrame->IsResultsMode())
        UpdateComboResults(n == 1 ? 0 : n);
    else
        UpdateComboStandard(n);
}

// ---------------------------------------------------------------- the standard list

void COpterecenjeApp::UpdateComboStandard(int n) {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;

    CSlOptItemArray slucajevi;
    {
        CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        bm.Select();
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
            VASSERT(pSlOpt);
            if (pSlOpt->IsSeizmicki() || pSlOpt->JeLiNDA() != 0 || opterecenje::JeSRSS(*pSlOpt))
                continue;
            // At the place of its ordinal.
            slucajevi.AddNew(pSlOpt->GetNaziv(0), pSlOpt->DajRedniBroj(), 0, pSlOpt->GetgMarker(),
                             pSlOpt->IsUticajnaLinija() ? 1 : 0, id);
        }
        bm.Close();
    }

    CSelectorList& combo = pFrame->Combo();
    const int prethodna = combo.GetCurSel();
    const CString zapamcenTekst = prethodna >= 0 ? combo.GetText(prethodna) : CString();
    combo.ResetContent();
    combo.AddString(CString(L"0. ") + Prevod(kTotalno));
    for (int p = 1; p <= slucajevi.GetSize(); ++p)
        combo.AddString(CString::Formatted(L"%d. %s", p, slucajevi[p - 1].m_strNaziv.c_str()));

    if (n == -1) {
        if (prethodna >= 0) {
            int nadjena = -1;
            for (int i = 0; i < combo.GetCount(); ++i) {
                if (combo.GetText(i) == zapamcenTekst) {
                    nadjena = i;
                    break;
                }
            }
            combo.SetCurSel(nadjena);
        }
    } else {
        combo.SetCurSel(n);
    }

    int s = combo.GetCurSel();
    if (s < 0) {
        combo.SetCurSel(1);
        s = 1;
    }
    if (s == 0) {
        pFrame->Pane0Event_SlucajOpterecenja(Prevod(kTotalno), CId(), 0);
        CVortaUtils::g_bAktivanSlOptUticajneLinije = false;
    }
    if (s >= 1 && s <= slucajevi.GetSize()) {
        const CSlOptItem& slucaj = slucajevi[s - 1];
        // The name as the list shows it, after the first three characters: from position 10
        // on one blank of the number stays in front of the name.
        const CString ostatak = combo.GetText(s).Mid(3);
        const CString tekst = CString::Formatted(Prevod(kOpterecenje).c_str(), s, ostatak.c_str());
        pFrame->Pane0Event_SlucajOpterecenja(tekst, slucaj.m_Id, 0);
        CVortaUtils::g_bAktivanSlOptUticajneLinije = slucaj.m_bUticajnaLinija != 0;
    }
}

void COpterecenjeApp::OnComboStandard() {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;
    CSelectorList& combo = pFrame->Combo();
    const int s = combo.GetCurSel();
    if (s < 0)
        return;

    if (s == 0) {
        if (CVortaUtils::g_bAktivnaKomandaZaUnosOpterecenja) {
            combo.SetCurSel(s_nZapamcenaStandardna);
            return;
        }
        pFrame->Pane0Event_SlucajOpterecenja(Prevod(kTotalno), CId(), 0);
        CVortaUtils::g_bAktivanSlOptUticajneLinije = false;
        s_nZapamcenaStandardna = 0;
        OsveziPoglede();
        return;
    }

    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    bm.Select();
    CId Id;
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p != nullptr && p->DajRedniBroj() == s) {
            Id = id;
            break;
        }
    }
    VASSERT(Id.Valid());
    const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(Id));
    VASSERT(pSlOpt);
    const CString tekst =
        CString::Formatted(Prevod(kOpterecenje).c_str(), s, pSlOpt->GetNaziv(0).c_str());
    const bool bUticajnaLinija = pSlOpt->IsUticajnaLinija() != 0;
    bm.Close();

    // Loads cannot be put into an influence-line case.
    if (bUticajnaLinija && CVortaUtils::g_bAktivnaKomandaZaUnosOpterecenja) {
        combo.SetCurSel(s_nZapamcenaStandardna);
        return;
    }
    pFrame->Pane0Event_SlucajOpterecenja(tekst, Id, 0);
    CVortaUtils::g_bAktivanSlOptUticajneLinije = bUticajnaLinija;
    s_nZapamcenaStandardna = s;
    OsveziPoglede();
}

// ---------------------------------------------------------------- the results list

void COpterecenjeApp::UpdateComboResults(int n) {
    if (CVortaUtils::s_bLoading)
        return;
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;

    NapuniStavke();

    CSelectorList& combo = pFrame->Combo();
    combo.ResetContent();
    {
        const std::unordered_set<int> labilni(gArrRedBrLabilnihSlOpt.begin(),
                                              gArrRedBrLabilnihSlOpt.end());
        std::unique_ptr<opterecenje::CProveraAnvelopa> provera;
        for (int i = 0; i < gComboItemArray.GetSize(); ++i) {
            const CComboItem& item = gComboItemArray[i];
            const int p = i + 1;
            CString tekst;
            if (item.m_nTip != CComboItem::ANVELOPA) {
                const int ton = item.m_nTip == CComboItem::SLUCAJ
                                    ? CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(item.m_nBroj)
                                    : 0;
                tekst = TekstStavke(p, ton, item.m_strNaziv);
                if (labilni.count(p) != 0)
                    tekst.insert(0, L"(!) ");
            } else {
                if (!provera)
                    provera = std::make_unique<opterecenje::CProveraAnvelopa>();
                const auto stanje = provera->Proveri(item.m_nBroj);
                tekst = TekstStavke(p, 0, item.m_strNaziv);
                if (stanje.bNeuspeh)
                    tekst.insert(0, L"(?) ");
                else if (stanje.bLabilna)
                    tekst.insert(0, L"(!) ");
            }
            combo.AddString(std::move(tekst));
        }
    }

    if (n >= 0) {
        combo.SetCurSel(n);
    } else if (!CComboItemArray::GetActiveItem().m_Id.Valid()) {
        combo.SetCurSel(0);
    } else {
        const CId aktivan = CComboItemArray::GetActiveItem().m_Id;
        int pozicija = -1;
        for (int i = 0; i < gComboItemArray.GetSize(); ++i) {
            if (gComboItemArray[i].m_Id == aktivan) {
                pozicija = i;
                break;
            }
        }
        if (pozicija >= 0) {
            combo.SetCurSel(pozicija);
        } else {
            CComboItemArray::SetActiveItem(gComboItemArray.IsEmpty() ? CComboItem()
                                                                     : gComboItemArray[0]);
            s_idPoslednjeNajavljen = CId();
            combo.SetCurSel(0);
        }
        Posalji();
    }

    const int s = combo.GetCurSel();
    if (s < 0 || s >= gComboItemArray.GetSize())
        return;
    const CComboItem item = gComboItemArray[s];
    CComboItemArray::SetActiveItem(item);
    if (item.m_Id != s_idPoslednjeNajavljen) {
        s_idPoslednjeNajavljen = item.m_Id;
        if (item.m_nTip == CComboItem::SLUCAJ) {
            pFrame->Pane0Event_SlucajOpterecenja(
                CString::Formatted(Prevod(kOpterecenje).c_str(), s + 1, item.m_strNaziv.c_str()),
                item.m_Id, 0);
            CVortaUtils::g_bAktivanSlOptUticajneLinije = item.m_bUticajnaLinija != 0;
        }
    }
}

void COpterecenjeApp::OnComboResults() {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return;
    CSelectorList& combo = pFrame->Combo();
    const int s = combo.GetCurSel();
    if (s < 0)
        return;

    if (IsMarkedAsLabilanSlOpt(s + 1)) {
        if (gnLastGoodStabile != -1) {
            Upozori(kNisuProracunati);
            Proveri(!IsMarkedAsLabilanSlOpt(COpterecenjeApp::gnLastGoodStabile),
                    "!IsMarkedAsLabilanSlOpt (COpterecenjeApp::gnLastGoodStabile)");
        } else {
            NajvisaNeoznacenaPozicija();
            // The value tested is the truth of the comparison, 1 or 0; kept as it stands.
            Proveri(!IsMarkedAsLabilanSlOpt(COpterecenjeApp::gnLastGoodStabile != -1),
                    "!IsMarkedAsLabilanSlOpt (COpterecenjeApp::gnLastGoodStabile != -1)");
        }
        Povratak(combo, gnLastGoodStabile - 1, s, false);
        return;
    }
    if (s >= gComboItemArray.GetSize())
        return;

    const CComboItem item = gComboItemArray[s];
    CComboItemArray::SetActiveItem(item);
    if (item.m_nTip == CComboItem::ANVELOPA) {
        opterecenje::CProveraAnvelopa::Stanje stanje;
        {
            opterecenje::CProveraAnvelopa provera;
            stanje = provera.Proveri(item.m_nBroj);
        }
        if (stanje.bNeuspeh) {
            Upozori(kAnvelopaNeodgovara);
            NajvisaNeoznacenaPozicija();
            Povratak(combo, gnLastGoodStabile - 1, s, true);
            return;
        }
        if (stanje.bLabilna) {
            Upozori(kNisuProracunati);
            Povratak(combo, gnLastGoodStabile - 1, s, true);
            return;
        }
    }

    const CString tekst =
        CString::Formatted(Prevod(kOpterecenje).c_str(), s + 1, item.m_strNaziv.c_str());
    pFrame->Pane0Event_SlucajOpterecenja(tekst, item.m_Id,
                                         item.m_nTip == CComboItem::ANVELOPA ? 1 : 0);
    CVortaUtils::g_bAktivanSlOptUticajneLinije = item.m_bUticajnaLinija != 0;
    OnLoadCaseChange(item);
    pFrame->Pane2Event_UpdateUnit();
    gnLastGoodStabile = s + 1;
}

// ---------------------------------------------------------------- the current load

void COpterecenjeApp::OnLoadCaseChange(const CComboItem& item) {
    CGeneralizedLoadCase glc;
    if (item.m_nTip == CComboItem::ANVELOPA) {
        const int bRet = CAnvelopaOpterecenja::GeneralizedLoadcase(item.m_nBroj, glc);
        VASSERT(bRet);
    } else {
        OCArray<CLoadCaseFactor> faktori;
        if (item.m_nTip == CComboItem::SLUCAJ) {
            faktori.Add(CLoadCaseFactor(item.m_nBroj, 1.0));
        } else if (item.m_nTip == CComboItem::KOMBINACIJA && gbTeorija != 1) {
            // The combination's own place on the global scale.
            CBaseManager bm;
            const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
            faktori.Add(CLoadCaseFactor(nSlOpt + item.m_nBroj, 1.0));
        } else if (item.m_nTip == CComboItem::KOMBINACIJA) {
            // Superposition: the combination's load cases with their coefficients.
            CBaseManager bm;
            CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
            const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(item.m_Id));
            VASSERT(pKombOpt);
            const CKombOptItem& komb = pKombOpt->Item();
            for (int k = 0; k < komb.GetBrojOsnOpt(); ++k) {
                double koef = 0.0;
                CId id;
                komb.GetOsnOptByIndex(k, koef, id);
                if (CToler::Jednaki(koef, 0.0) || !id.Valid())
                    continue;
                const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
                VASSERT(pSlOpt);
                faktori.Add(CLoadCaseFactor(pSlOpt->DajRedniBroj(), koef));
            }
            bm.Close();
        } else {
            opterecenje::InternalError("Nedozvoljen tip combo item-a.");
        }
        CLoadCaseUnit unit;
        unit.Set(faktori, LCU_LINEARNA);
        glc.AddLoadCaseUnit(unit);
    }
    const CMainFrame* pFrame = CMainFrame::Get();
    glc.SetRbrFaze((pFrame != nullptr ? pFrame->GetBrojTekuceFazeGradjenja() : 0) + 1);
    VASSERT(COpterecenjeApp::ChangeLoadCaseTo);
    ChangeLoadCaseTo(glc, 0);
    OsveziPoglede();
}

// ---------------------------------------------------------------- commands on the list

int COpterecenjeApp::OnCombo() {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return 0;
    pFrame->Repaint();
    Posalji();
    return 0;
}

int COpterecenjeApp::OnSledeciSlOpt() {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return 0;
    CSelectorList& combo = pFrame->Combo();
    const int s = combo.GetCurSel();
    if (s < combo.GetCount() - 1) {
        combo.SetCurSel(s + 1);
        pFrame->Repaint();
        Posalji();
    }
    return 0;
}

int COpterecenjeApp::OnPrethodniSlOpt() {
    CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame == nullptr)
        return 0;
    CSelectorList& combo = pFrame->Combo();
    const int s = combo.GetCurSel();
    if (s > 0) {
        combo.SetCurSel(s - 1);
        pFrame->Repaint();
        Posalji();
    }
    return 0;
}

void COpterecenjeApp::UpdateEnabled(COptionInfo& info) {
    const CMainFrame* pFrame = CMainFrame::Get();
    info.UpdateCommand(pFrame != nullptr && !pFrame->IsCommandActive());
}

void COpterecenjeApp::UpdateComboCtrl(COptionInfo& info) {
    info.UpdateCommand(!CVortaUtils::g_bDisableComboResults);
}

void COpterecenjeApp::UpdateNextSlOpt(COptionInfo& info) {
    const CMainFrame* pFrame = CMainFrame::Get();
    info.UpdateCommand(pFrame != nullptr && !CVortaUtils::g_bDisableComboResults &&
                       pFrame->Combo().GetCurSel() < pFrame->Combo().GetCount() - 1);
}

void COpterecenjeApp::UpdatePrevSlOpt(COptionInfo& info) {
    const CMainFrame* pFrame = CMainFrame::Get();
    info.UpdateCommand(pFrame != nullptr && !CVortaUtils::g_bDisableComboResults &&
                       pFrame->Combo().GetCurSel() > 0);
}

void COpterecenjeApp::ResetSelektora() {
    s_nZapamcenaStandardna = 0;
    s_idPoslednjeNajavljen = CId();
}
