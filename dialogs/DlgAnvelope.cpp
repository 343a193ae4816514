// The envelopes and the choice of the load shown in the results.
#include "dialogs/DlgAnvelope.h"

#include "dialogs/DlgIzborOpterecenja.h"
#include "dialogs/DlgNazivSlucaja.h"
#include "dialogs/DlgSnimi.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/EditoriResursi.h"
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/VortaUtils.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/LoadNumbering.h"
#include "services/Opterecenje.h"
#include "text/Translator.h"

#include <algorithm>

using namespace edres;
using opterecenje::CAnvelopaListe;

namespace {

CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

bool URezimuRezultata() {
    const CMainFrame* pFrame = CMainFrame::Get();
    return pFrame != nullptr && pFrame->IsResultsMode();
}

} // namespace

CDlgAnvelope::CDlgAnvelope() : CDialogPresenter(edres::Anvelope()) {}

void CDlgAnvelope::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    m_anvelope = opterecenje::DajAnvelope();
    const LoadNumbering::Counts n = LoadNumbering::Count();
    m_nSlOpt = n.nSlOpt;
    m_nKomb = n.nKomb;
    m_bIzmenjen = false;
    m_bAktivirano = false;
    const int aktivna = COpterecenjeApp::DajAktivnuAnvelopu();
    m_nAktivna = aktivna >= 1 && aktivna <= static_cast<int>(m_anvelope.size()) ? aktivna - 1 : -1;
    m_idPocetnoAktivne = m_nAktivna >= 0 ? m_anvelope[static_cast<size_t>(m_nAktivna)].id : CId();

    d.ResetContent(IDC_MOD);
    d.AddString(IDC_MOD, Prevod(L"Ekstremne vrednosti uticaja"));
    d.AddString(IDC_MOD, Prevod(L"Ekstremne vrednosti sa pripadajucim uticajima"));
    d.SetCurSel(IDC_MOD, 0);
    d.SetText(IDC_IZBOR, CString());
    PopuniListu(-1);
    PrikaziAktivnu();
    PrikaziSadrzaj();
    d.SetFocus(IDC_IZBOR);
}

CString CDlgAnvelope::TekstAnvelope(int i) const {
    const CAnvelopaListe& a = m_anvelope[static_cast<size_t>(i)];
    const CString naziv = a.naziv.IsEmpty() ? Prevod(L"Anv") : a.naziv;
    return CString::Formatted(L"%d. [%s] %s", i + 1, naziv.c_str(), a.izbor.c_str());
}

void CDlgAnvelope::PopuniListu(int izabrana) {
    CDialogModel& d = Dialog();
    d.ResetContent(IDC_ANVELOPE);
    for (size_t i = 0; i < m_anvelope.size(); ++i)
        d.AddString(IDC_ANVELOPE, TekstAnvelope(static_cast<int>(i)));
    d.SetCurSel(IDC_ANVELOPE, izabrana);
}

void CDlgAnvelope::PrikaziSadrzaj() {
    const CString tekst = BezRazmaka(Dialog().GetText(IDC_IZBOR));
    std::vector<int> izbor;
    CString sadrzaj;
    if (!tekst.IsEmpty()) {
        if (opterecenje::ProcitajIzbor(tekst, BrojOpterecenja(), izbor)) {
            const auto nSlucajeva =
                std::count_if(izbor.begin(), izbor.end(), [&](int g) { return g <= m_nSlOpt; });
            sadrzaj = CString::Formatted(
                Prevod(L"Slucajeva opterecenja: %d, kombinacija opterecenja: %d").c_str(),
                static_cast<int>(nSlucajeva),
                static_cast<int>(izbor.size()) - static_cast<int>(nSlucajeva));
        } else {
            sadrzaj = Prevod(L"Izbor nije ispravan.");
        }
    }
    Dialog().SetText(IDC_SADRZAJ, sadrzaj);
}

void CDlgAnvelope::PrikaziAktivnu() {
    Dialog().SetText(IDC_PRIKAZ, m_nAktivna >= 0
                                     ? CString::Formatted(Prevod(L"Aktivna anvelopa: %s").c_str(),
                                                          TekstAnvelope(m_nAktivna).c_str())
                                     : Prevod(L"Nema aktivne anvelope."));
}

bool CDlgAnvelope::ProcitajIzbor(std::vector<int>& izbor) {
    const CString tekst = BezRazmaka(Dialog().GetText(IDC_IZBOR));
    if (opterecenje::ProcitajIzbor(tekst, BrojOpterecenja(), izbor))
        return true;
    NeispravanIzbor(tekst, BrojOpterecenja());
    Dialog().SetFocus(IDC_IZBOR);
    return false;
}

// ------------------------------------------------------------------------ the user's actions

void CDlgAnvelope::OnSelChange(int id) {
    if (id != IDC_ANVELOPE)
        return;
    const int i = Dialog().GetCurSel(IDC_ANVELOPE);
    if (i < 0)
        return;
    const CAnvelopaListe& a = m_anvelope[static_cast<size_t>(i)];
    Dialog().SetText(IDC_IZBOR, a.izbor);
    Dialog().SetCurSel(IDC_MOD, a.nMod == 1 ? 1 : 0);
    PrikaziSadrzaj();
}

void CDlgAnvelope::OnEditChange(int id) {
    if (id == IDC_IZBOR)
        PrikaziSadrzaj();
}

void CDlgAnvelope::OnButton(int id) {
    switch (id) {
    case IDC_SNIMI:
        Snimi();
        break;
    case IDC_BRISI:
        Brisi();
        break;
    case IDC_AKTIVIRAJ:
        Aktiviraj();
        break;
    case IDC_ODABERI:
        Odaberi();
        break;
    default:
        break;
    }
}

void CDlgAnvelope::Snimi() {
    std::vector<int> izbor;
    if (!ProcitajIzbor(izbor))
        return;
    if (izbor.empty()) {
        CVortaMessageBox::MessageBoxW(Prevod(L"Izaberite bar jedno opterecenje."),
                                      Prevod(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        Dialog().SetFocus(IDC_IZBOR);
        return;
    }
    const CString tekst = opterecenje::NapisiIzbor(izbor);
    const int mod = std::max(Dialog().GetCurSel(IDC_MOD), 0);
    const int izabrana = Dialog().GetCurSel(IDC_ANVELOPE);
    CDlgSnimi dlg(izabrana >= 0 ? m_anvelope[static_cast<size_t>(izabrana)].naziv : CString(),
                  CString::Formatted(Prevod(L"Izbor opterecenja: %s").c_str(), tekst.c_str()));
    if (dlg.DoModal() != IDOK)
        return;
    // A name already in use replaces that envelope, once the user agrees.
    auto it = std::find_if(m_anvelope.begin(), m_anvelope.end(),
                           [&](const CAnvelopaListe& a) { return a.naziv == dlg.Naziv(); });
    if (it != m_anvelope.end()) {
        const CString pitanje = CString::Formatted(
            Prevod(L"Anvelopa \"%s\" vec postoji. Da li zelite da je zamenite?").c_str(),
            dlg.Naziv().c_str());
        if (CVortaMessageBox::MessageBoxW(pitanje, Prevod(L"Upozorenje"),
                                          CVortaMessageBox::MB_YESNO |
                                              CVortaMessageBox::MB_ICONWARNING) !=
            CVortaMessageBox::IDYES)
            return;
        it->izbor = tekst;
        it->nMod = mod;
    } else {
        m_anvelope.push_back({CId(), dlg.Naziv(), tekst, mod});
        it = m_anvelope.end() - 1;
    }
    m_bIzmenjen = true;
    Dialog().SetText(IDC_IZBOR, tekst);
    PopuniListu(static_cast<int>(it - m_anvelope.begin()));
    PrikaziAktivnu();
    PrikaziSadrzaj();
}

void CDlgAnvelope::Brisi() {
    const int i = Dialog().GetCurSel(IDC_ANVELOPE);
    if (i < 0)
        return;
    m_anvelope.erase(m_anvelope.begin() + i);
    if (m_nAktivna == i) {
        m_nAktivna = -1;
        m_bAktivirano = false;
    } else if (m_nAktivna > i) {
        --m_nAktivna;
    }
    m_bIzmenjen = true;
    PopuniListu(-1);
    PrikaziAktivnu();
}

void CDlgAnvelope::Aktiviraj() {
    const int i = Dialog().GetCurSel(IDC_ANVELOPE);
    if (i < 0)
        return;
    m_nAktivna = i;
    m_bAktivirano = true;
    PrikaziAktivnu();
}

void CDlgAnvelope::Odaberi() {
    std::vector<int> izbor;
    // A selection that does not parse starts the choice empty.
    opterecenje::ProcitajIzbor(BezRazmaka(Dialog().GetText(IDC_IZBOR)), BrojOpterecenja(), izbor);
    if (!opterecenje::IzborOpterecenjaDlg(izbor))
        return;
    Dialog().SetText(IDC_IZBOR, opterecenje::NapisiIzbor(izbor));
    PrikaziSadrzaj();
}

// ------------------------------------------------------------------------ OK

void CDlgAnvelope::OnOK() {
    std::vector<int> izbor;
    if (!ProcitajIzbor(izbor))
        return;
    if (m_bIzmenjen) {
        opterecenje::PrimeniAnvelope(m_anvelope);
        // The envelope that was active is gone.
        if (m_idPocetnoAktivne.Valid() &&
            std::none_of(m_anvelope.begin(), m_anvelope.end(),
                         [&](const CAnvelopaListe& a) { return a.id == m_idPocetnoAktivne; }))
            COpterecenjeApp::ResetAnvelope();
    }
    if (URezimuRezultata())
        Prikazi(izbor);
    else if (m_bIzmenjen)
        COpterecenjeApp::UpdateCombo(-1);
    EndDialog(IDOK);
}

void CDlgAnvelope::PrikaziAnvelopu(int broj) {
    COpterecenjeApp::UpdateComboResults(m_nSlOpt + m_nKomb + broj - 1);
    COpterecenjeApp::AktivirajAnvelopu(broj);
    COpterecenjeApp::OnCombo();
}

void CDlgAnvelope::Prikazi(const std::vector<int>& izbor) {
    if (m_bAktivirano && m_nAktivna >= 0) {
        PrikaziAnvelopu(m_nAktivna + 1);
        return;
    }
    // A load of the selector refills it as it shows the load; anything else needs it refilled
    // first after a change.
    const CString tekst = opterecenje::NapisiIzbor(izbor);
    const int mod = std::max(Dialog().GetCurSel(IDC_MOD), 0);
    for (size_t i = 0; i < m_anvelope.size() && izbor.size() > 1; ++i) {
        if (m_anvelope[i].izbor == tekst && m_anvelope[i].nMod == mod) {
            PrikaziAnvelopu(static_cast<int>(i) + 1);
            return;
        }
    }
    if (izbor.size() != 1 && m_bIzmenjen)
        COpterecenjeApp::UpdateComboResults(-1);
    if (izbor.empty())
        return;
    if (izbor.size() == 1) {
        COpterecenjeApp::UpdateComboResults(izbor.front() - 1);
        COpterecenjeApp::OnCombo();
        return;
    }
    // Several loads that no envelope holds: shown as an envelope without a name.
    CAnvelopaOpterecenja privremena;
    privremena.SetIzbor(tekst);
    privremena.SetMod(mod);
    CGeneralizedLoadCase glc;
    if (!privremena.NapraviGeneralizedLoadcase(glc))
        return;
    CMainFrame* pFrame = CMainFrame::Get();
    glc.SetRbrFaze(pFrame->GetBrojTekuceFazeGradjenja() + 1);
    if (COpterecenjeApp::ChangeLoadCaseTo != nullptr)
        COpterecenjeApp::ChangeLoadCaseTo(glc, 0);
    pFrame->Pane0Event_SlucajOpterecenja(
        CString::Formatted(Prevod(L"Anvelopa: %s").c_str(), tekst.c_str()), CId(), 1);
    CVortaUtils::UpdateViews(1, 1, 0, 0, 0);
}

int opterecenje::AnvelopeDlg() {
    CDlgAnvelope dlg;
    return dlg.DoModal();
}
