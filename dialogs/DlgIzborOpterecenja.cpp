// The selection of loads on the global scale, in a grid or as a selection text.
#include "dialogs/DlgIzborOpterecenja.h"

#include "diag/Assert.h"
#include "dialogs/DlgNaziv.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/EditoriResursi.h"
#include "grid/GridImages.h"
#include "host/MessageBox.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Anvelope.h"
#include "text/Translator.h"

using namespace edres;

namespace {

CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

} // namespace

void NeispravanIzbor(const CString& izbor, int n) {
    CVortaMessageBox::MessageBoxW(
        CString::Formatted(Prevod(L"Izbor opterecenja \"%s\" nije ispravan. Navedite redne "
                                  L"brojeve opterecenja od 1 do %d razdvojene zarezima, ili "
                                  L"opsege kao 3-5.")
                               .c_str(),
                           izbor.c_str(), n),
        Prevod(L"Greska"), CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
}

CDlgIzborOpterecenja::CDlgIzborOpterecenja(std::vector<int> izbor)
    : CDialogPresenter(IzborOpterecenja()), m_izbor(std::move(izbor)) {}

void CDlgIzborOpterecenja::OnInitDialog() {
    Dialog().Translate();
    m_strSlucaj = Prevod(L"Slucaj");
    m_strKombinacija = Prevod(L"Kombinacija");

    // Names by ordinal: load cases, then combinations.
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    m_nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    m_nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    m_naziviSlucajeva.assign(static_cast<size_t>(m_nSlOpt), CString());
    m_naziviKombinacija.assign(static_cast<size_t>(m_nKomb), nullptr);
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        const int r = pSlOpt->DajRedniBroj();
        if (r >= 1 && r <= m_nSlOpt)
            m_naziviSlucajeva[static_cast<size_t>(r - 1)] = pSlOpt->GetNaziv(0);
    }
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        VASSERT(pKombOpt);
        const int r = pKombOpt->Item().GetRedniBroj();
        if (r >= 1 && r <= m_nKomb)
            m_naziviKombinacija[static_cast<size_t>(r - 1)] = &pKombOpt->Item().GetNaziv();
    }
    bm.Close();

    CGridModel& g = CreateGrid(IDC_GRID1);
    m_pGrid = &g;
    g.SetRedraw(false);
    g.SetCellSource([this](int row, int col, CGridCell& cell) { Celija(row, col, cell); });
    g.SetColumnCount(3);
    g.SetRowCount(m_nSlOpt + m_nKomb + 1);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    g.SetListMode(true);
    g.EnableSelection(true);
    g.SetColumnWidth(0, 50);
    g.SetColumnWidth(1, 100);
    g.SetColumnWidth(2, g.GetWidth() - CGridModel::kScrollBarWidth - 150);
    std::vector<int> redovi;
    for (const int r : m_izbor)
        if (r >= 1 && r <= m_nSlOpt + m_nKomb)
            redovi.push_back(r);
    g.SetSelectedRows(redovi);
    if (!redovi.empty())
        g.EnsureVisible(redovi.front(), 0);
    g.SetRedraw(true);
    PrikaziIzbor();
}

void CDlgIzborOpterecenja::Celija(int row, int col, CGridCell& cell) const {
    cell.readOnly = true;
    if (row == 0) {
        if (col == 0)
            cell.image = GridImage::Zaglavlje;
        else
            cell.text = col == 1 ? Prevod(L"Vrsta") : Prevod(L"Naziv");
        return;
    }
    switch (col) {
    case 0:
        cell.text = CString::Formatted(L"%d", row);
        break;
    case 1:
        cell.text = row <= m_nSlOpt ? m_strSlucaj : m_strKombinacija;
        break;
    default:
        if (row <= m_nSlOpt)
            cell.text = m_naziviSlucajeva[static_cast<size_t>(row - 1)];
        else if (const CString* naziv =
                     m_naziviKombinacija[static_cast<size_t>(row - m_nSlOpt - 1)])
            cell.text = *naziv;
        break;
    }
}

void CDlgIzborOpterecenja::PrikaziIzbor() {
    Dialog().SetText(IDC_IZBOR, opterecenje::NapisiIzbor(m_pGrid->GetSelectedRows()));
}

void CDlgIzborOpterecenja::OnGridSelChanged(CGridModel&) {
    PrikaziIzbor();
}

bool CDlgIzborOpterecenja::ProcitajTekst(std::vector<int>& izbor) {
    const CString tekst = BezRazmaka(Dialog().GetText(IDC_IZBOR));
    const int n = m_nSlOpt + m_nKomb;
    if (opterecenje::ProcitajIzbor(tekst, n, izbor))
        return true;
    NeispravanIzbor(tekst, n);
    Dialog().SetFocus(IDC_IZBOR);
    return false;
}

void CDlgIzborOpterecenja::OnButton(int id) {
    if (id != IDC_PRIMENI)
        return;
    std::vector<int> izbor;
    if (!ProcitajTekst(izbor))
        return;
    m_pGrid->SetSelectedRows(izbor);
    if (!izbor.empty())
        m_pGrid->EnsureVisible(izbor.front(), 0);
    PrikaziIzbor();
}

void CDlgIzborOpterecenja::OnOK() {
    // What the edit says counts, also when it was typed without applying it to the grid.
    std::vector<int> izbor;
    if (!ProcitajTekst(izbor))
        return;
    m_izbor = std::move(izbor);
    EndDialog(IDOK);
}

bool opterecenje::IzborOpterecenjaDlg(std::vector<int>& redniBrojevi) {
    CDlgIzborOpterecenja dlg(redniBrojevi);
    if (dlg.DoModal() != IDOK)
        return false;
    redniBrojevi = dlg.Izbor();
    return true;
}
