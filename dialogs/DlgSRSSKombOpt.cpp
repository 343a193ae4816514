// The SRSS editor: loading the SRSS cases and the load cases they may combine, the grid of
// coefficients, the entry's generated name, moving, adding and deleting entries, and writing
// the SRSS cases back on OK.
#include "dialogs/DlgSRSSKombOpt.h"

#include "diag/Assert.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/EditoriResursi.h"
#include "grid/GridImages.h"
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/Model.h"
#include "model/KombOptItem.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Opterecenje.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <memory>
#include <unordered_set>

using namespace edres;

namespace {

/// Header colours (0x00BBGGRR) of the load cases of multimodal groups, by group index mod 5.
constexpr uint32_t kBojeGrupa[5] = {0xC0F0FF, 0xC8FFC8, 0xFFE8C8, 0xE8C8FF, 0xB8DCFF};

constexpr int kSirinaRednogBroja = 35;
constexpr int kSirinaNaziva = 160;
constexpr int kSirinaKoeficijenta = 55;

CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

/// Two decimals of a value, as the coefficient cells show it.
double NaDveDecimale(double x) {
    return std::floor(x * 100.0 + 0.5) / 100.0;
}

/// The coefficient of the load case with that ordinal in an SRSS unit: the square root of its
/// factor, 0 when the unit has none.
CString TekstKoeficijenta(const CLoadCaseUnit& unit, int redniBroj) {
    double koef = 0.0;
    for (int i = 0; i < unit.GetSize(); ++i) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(i);
        if (f.GetLCRedniBroj() == redniBroj) {
            koef = NaDveDecimale(std::sqrt(std::fabs(f.GetFaktor())));
            break;
        }
    }
    return CString::Formatted(L"%4.2f", koef);
}

int IndeksFaktora(const CLoadCaseUnit& unit, int redniBroj) {
    for (int i = 0; i < unit.GetSize(); ++i)
        if (unit.GetLoadCaseFactor(i).GetLCRedniBroj() == redniBroj)
            return i;
    return -1;
}

} // namespace

CDlgSRSSKombOpt::CDlgSRSSKombOpt() : CDialogPresenter(SRSSKombinacije()) {}

// ------------------------------------------------------------------------ loading

bool CDlgSRSSKombOpt::Ucitaj() {
    m_stavke.clear();
    m_jedinice.clear();
    m_ponudjeni.clear();
    m_slucajPoRednomBroju.clear();
    m_nBazni = 0;
    m_bIzmenjen = false;

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    std::vector<const CSlucajOpterecenja*> slucajevi;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        slucajevi.push_back(pSlOpt);
        m_slucajPoRednomBroju[pSlOpt->DajRedniBroj()] = id;
        if (pSlOpt->JeliSRSS()) {
            m_stavke.push_back({pSlOpt->DajRedniBroj(), pSlOpt->GetNaziv(0), id});
            m_jedinice.push_back(*pSlOpt->DajLCUnitZaSRSS());
        }
    }
    // In ascending ordinal: each entry swaps with the smallest one after it.
    for (size_t i = 0; i + 1 < m_stavke.size(); ++i) {
        size_t min = i;
        for (size_t j = i + 1; j < m_stavke.size(); ++j)
            if (m_stavke[j].nRedniBroj < m_stavke[min].nRedniBroj)
                min = j;
        if (min != i) {
            std::swap(m_stavke[i], m_stavke[min]);
            std::swap(m_jedinice[i], m_jedinice[min]);
        }
    }
    // Load cases that carry moving loads are not combined by SRSS.
    std::unordered_set<CId> pokretna;
    bm.Select(CBaseManager::PokretnoOpterecenjeType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        if (const auto* p = dynamic_cast<const CPokretnoOpterecenje*>(bm.GetR(id)))
            pokretna.insert(p->GetSlOptId());
    for (const CSlucajOpterecenja* pSlOpt : slucajevi) {
        if (pSlOpt->JeliSRSS())
            continue;
        const int r = pSlOpt->DajRedniBroj();
        m_nBazni = std::max(m_nBazni, r);
        if (!pSlOpt->IsUticajnaLinija() && pSlOpt->JeLiNDA() == 0 &&
            !pokretna.contains(pSlOpt->GetId()) && !COpterecenjeApp::IsMarkedAsLabilanSlOpt(r))
            m_ponudjeni.push_back({r, pSlOpt->GetNaziv(0), -1});
    }
    bm.Close();

    // Load cases of one multimodal group stand one after another with rising tone indices.
    int grupa = -1;
    int prethodniRb = 0;
    int prethodniTon = 0;
    for (Ponudjen& p : m_ponudjeni) {
        const int ton = CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(p.nRedniBroj);
        if (ton != 0) {
            if (prethodniTon == 0 || ton <= prethodniTon || p.nRedniBroj != prethodniRb + 1)
                ++grupa;
            p.nGrupa = grupa;
        }
        prethodniRb = p.nRedniBroj;
        prethodniTon = ton;
    }

    // The entries are numbered after every other load case; a model whose SRSS cases stand
    // elsewhere cannot be numbered so.
    return m_nBazni + static_cast<int>(m_stavke.size()) == nSlOpt;
}

void CDlgSRSSKombOpt::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    m_pGrid = &CreateGrid(IDC_GRID2);
    m_pImena = &CreateGrid(IDC_GRID1);
    const bool bUcitano = Ucitaj();
    PopuniImena();
    PopuniGrid();
    if (!bUcitano) {
        CVortaMessageBox::MessageBoxW(
            Prevod(L"SRSS slucajevi opterecenja moraju biti posle svih ostalih slucajeva "
                   L"opterecenja. Premestite ih na kraj liste slucajeva opterecenja."),
            Prevod(L"Greska"), CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        EndDialog(IDCANCEL);
    }
}

// ------------------------------------------------------------------------ grids

void CDlgSRSSKombOpt::PopuniImena() {
    CGridModel& g = *m_pImena;
    g.SetRedraw(false);
    g.SetColumnCount(2);
    g.SetRowCount(static_cast<int>(m_ponudjeni.size()) + 1);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    g.SetListMode(false);
    g.EnableSelection(false);
    g.SetColumnWidth(0, kSirinaRednogBroja);
    g.SetColumnWidth(1, g.GetWidth() - CGridModel::kScrollBarWidth - kSirinaRednogBroja);
    g.SetItemImage(0, 0, GridImage::Zaglavlje);
    g.SetItemText(0, 1, Prevod(L"Naziv"));
    for (size_t k = 0; k < m_ponudjeni.size(); ++k) {
        const int r = static_cast<int>(k) + 1;
        g.SetItemText(r, 0, CString::Formatted(L"%d", m_ponudjeni[k].nRedniBroj));
        g.SetItemText(r, 1, m_ponudjeni[k].naziv);
        g.SetReadOnly(r, 1, true);
        if (m_ponudjeni[k].nGrupa >= 0)
            g.SetItemBkColour(r, 0, kBojeGrupa[m_ponudjeni[k].nGrupa % 5]);
    }
    g.SetRedraw(true);
}

void CDlgSRSSKombOpt::PopuniGrid() {
    CGridModel& g = *m_pGrid;
    g.SetRedraw(false);
    g.SetColumnCount(static_cast<int>(m_ponudjeni.size()) + 2);
    g.SetRowCount(static_cast<int>(m_stavke.size()) + 1);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    g.SetListMode(true);
    g.EnableSelection(true);
    g.SetColumnWidth(0, kSirinaRednogBroja);
    g.SetColumnWidth(1, kSirinaNaziva);
    g.SetItemImage(0, 0, GridImage::Zaglavlje);
    g.SetItemText(0, 1, Prevod(L"Naziv"));
    for (size_t k = 0; k < m_ponudjeni.size(); ++k) {
        const int c = static_cast<int>(k) + 2;
        g.SetColumnWidth(c, kSirinaKoeficijenta);
        g.SetItemText(0, c, CString::Formatted(L"%d", m_ponudjeni[k].nRedniBroj));
        if (m_ponudjeni[k].nGrupa >= 0)
            g.SetItemBkColour(0, c, kBojeGrupa[m_ponudjeni[k].nGrupa % 5]);
    }
    for (size_t i = 0; i < m_stavke.size(); ++i)
        PopuniRed(static_cast<int>(i));
    g.SetRedraw(true);
}

void CDlgSRSSKombOpt::PopuniRed(int i) {
    CGridModel& g = *m_pGrid;
    const int r = i + 1;
    const CLoadCaseUnit& unit = m_jedinice[static_cast<size_t>(i)];
    g.SetItemText(r, 0, CString::Formatted(L"%d", m_stavke[static_cast<size_t>(i)].nRedniBroj));
    g.SetItemText(r, 1, m_stavke[static_cast<size_t>(i)].naziv);
    for (size_t k = 0; k < m_ponudjeni.size(); ++k)
        g.SetItemText(r, static_cast<int>(k) + 2,
                      TekstKoeficijenta(unit, m_ponudjeni[k].nRedniBroj));
}

void CDlgSRSSKombOpt::Prenumerisi() {
    for (size_t i = 0; i < m_stavke.size(); ++i)
        m_stavke[i].nRedniBroj = m_nBazni + static_cast<int>(i) + 1;
}

int CDlgSRSSKombOpt::IzabranaStavka() const {
    const int row = m_pGrid->GetSelectedCount() > 0 ? m_pGrid->GetSelectedRows().front()
                                                    : m_pGrid->GetFocusRow();
    return row >= 1 && row <= static_cast<int>(m_stavke.size()) ? row - 1 : -1;
}

void CDlgSRSSKombOpt::FokusNaStavku(int i, int col) {
    if (i < 0 || i >= static_cast<int>(m_stavke.size())) {
        m_pGrid->ClearSelection();
        m_pGrid->SetFocusCell(-1, -1);
        return;
    }
    m_pGrid->SetFocusCell(i + 1, col);
    m_pGrid->EnsureVisible(i + 1, col);
    m_pGrid->SetSelectedRows({i + 1});
}

// ------------------------------------------------------------------------ editing

CString CDlgSRSSKombOpt::GenerickiNaziv(const CLoadCaseUnit& unit) const {
    // A combination of the unit's load cases, each with the coefficient the grid shows.
    CKombOptItem item;
    for (int i = 0; i < unit.GetSize(); ++i) {
        const CLoadCaseFactor& f = unit.GetLoadCaseFactor(i);
        const auto it = m_slucajPoRednomBroju.find(f.GetLCRedniBroj());
        if (it != m_slucajPoRednomBroju.end())
            item.DodajOsnOpt(std::sqrt(std::fabs(f.GetFaktor())), it->second);
    }
    item.SetGenericName(&unit, 1);
    return CString::Formatted(L"%s: %s", Prevod(L"$$SRSS").c_str(), item.GetNaziv().c_str());
}

bool CDlgSRSSKombOpt::UrediKoeficijent(int i, int kolona, const CString& text) {
    double x = 0.0;
    if (std::swscanf(text.c_str(), L"%lg", &x) != 1 || !std::isfinite(x))
        return false;
    // A non-zero coefficient below 0.01 is refused as typed, before rounding could lift it.
    if (x != 0.0 && !(x >= 0.01))
        return false;
    const double v = NaDveDecimale(x);
    if (v != 0.0 && !(v >= 0.01))
        return false;
    // The factor is kept squared: a coefficient whose square is no number is refused too.
    if (!std::isfinite(v * v))
        return false;

    CLoadCaseUnit& unit = m_jedinice[static_cast<size_t>(i)];
    Stavka& stavka = m_stavke[static_cast<size_t>(i)];
    const CString stariNaziv = GenerickiNaziv(unit);
    const int redniBroj = m_ponudjeni[static_cast<size_t>(kolona)].nRedniBroj;
    OCArray<CLoadCaseFactor>& faktori = unit.Factors();
    const int j = IndeksFaktora(unit, redniBroj);
    if (v == 0.0) {
        if (j >= 0)
            faktori.RemoveAt(j);
    } else if (j >= 0) {
        faktori[j].SetFaktor(v * v);
    } else {
        int mesto = 0;
        while (mesto < faktori.GetSize() && faktori[mesto].GetLCRedniBroj() < redniBroj)
            ++mesto;
        faktori.InsertAt(mesto, CLoadCaseFactor(redniBroj, v * v));
    }
    if (stavka.naziv == stariNaziv || stavka.naziv.IsEmpty())
        stavka.naziv = GenerickiNaziv(unit);
    m_bIzmenjen = true;
    PopuniRed(i);
    return true;
}

bool CDlgSRSSKombOpt::OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) {
    if (&grid != m_pGrid || row < 1 || row > static_cast<int>(m_stavke.size()))
        return false;
    const int i = row - 1;
    if (col == 1) {
        m_stavke[static_cast<size_t>(i)].naziv = text;
        m_bIzmenjen = true;
        return true;
    }
    return col >= 2 && UrediKoeficijent(i, col - 2, text);
}

void CDlgSRSSKombOpt::OnButton(int id) {
    switch (id) {
    case IDC_DODAJ:
        Dodaj();
        break;
    case IDC_BRISI:
        Brisi();
        break;
    case IDC_BRISI_SVE:
        BrisiSve();
        break;
    case IDC_GORE:
        Pomeri(-1);
        break;
    case IDC_DOLE:
        Pomeri(1);
        break;
    default:
        break;
    }
}

void CDlgSRSSKombOpt::Dodaj() {
    // Just after the entry of the focus row, or first.
    const int fokus = m_pGrid->GetFocusRow();
    const int i = fokus >= 1 && fokus <= static_cast<int>(m_stavke.size()) ? fokus : 0;
    CLoadCaseUnit prazna;
    prazna.SetKarakter(LCU_LINEARNA);
    m_stavke.insert(m_stavke.begin() + i, Stavka{});
    m_jedinice.insert(m_jedinice.begin() + i, prazna);
    Prenumerisi();
    PopuniGrid();
    FokusNaStavku(i);
    m_bIzmenjen = true;
}

void CDlgSRSSKombOpt::Brisi() {
    const int i = IzabranaStavka();
    if (i < 0)
        return;
    m_stavke.erase(m_stavke.begin() + i);
    m_jedinice.erase(m_jedinice.begin() + i);
    Prenumerisi();
    PopuniGrid();
    FokusNaStavku(std::min(i, static_cast<int>(m_stavke.size()) - 1));
    m_bIzmenjen = true;
}

void CDlgSRSSKombOpt::BrisiSve() {
    if (m_stavke.empty())
        return;
    m_stavke.clear();
    m_jedinice.clear();
    PopuniGrid();
    FokusNaStavku(-1);
    m_bIzmenjen = true;
}

void CDlgSRSSKombOpt::Pomeri(int smer) {
    const int i = IzabranaStavka();
    const int j = i + smer;
    if (i < 0 || j < 0 || j >= static_cast<int>(m_stavke.size()))
        return;
    std::swap(m_stavke[static_cast<size_t>(i)], m_stavke[static_cast<size_t>(j)]);
    std::swap(m_jedinice[static_cast<size_t>(i)], m_jedinice[static_cast<size_t>(j)]);
    Prenumerisi();
    PopuniGrid();
    FokusNaStavku(j, std::max(m_pGrid->GetFocusCol(), 1));
    m_bIzmenjen = true;
}

// ------------------------------------------------------------------------ OK

void CDlgSRSSKombOpt::OnOK() {
    for (size_t i = 0; i < m_stavke.size(); ++i) {
        const CLoadCaseUnit& unit = m_jedinice[i];
        int nNenultih = 0;
        for (int k = 0; k < unit.GetSize(); ++k)
            if (CToler::Razliciti(unit.GetLoadCaseFactor(k).GetFaktor(), 0.0))
                ++nNenultih;
        if (nNenultih >= 2)
            continue;
        CVortaMessageBox::MessageBoxW(
            Prevod(L"Bar dva koeficijenta moraju biti razlicita od nule."), Prevod(L"Greska"),
            CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
        // The first load case the entry does not combine yet, where the user goes on.
        int kolona = 2;
        for (size_t k = 0; k < m_ponudjeni.size(); ++k) {
            const int j = IndeksFaktora(unit, m_ponudjeni[k].nRedniBroj);
            if (j < 0 || unit.GetLoadCaseFactor(j).GetFaktor() == 0.0) {
                kolona = static_cast<int>(k) + 2;
                break;
            }
        }
        Dialog().SetFocus(IDC_GRID2);
        m_pGrid->SetSelectedRows({static_cast<int>(i) + 1});
        m_pGrid->EditCell(static_cast<int>(i) + 1, kolona);
        return;
    }
    if (!m_bIzmenjen) {
        EndDialog(IDOK);
        return;
    }
    Upisi();
    const CMainFrame* pFrame = CMainFrame::Get();
    if (pFrame != nullptr && pFrame->IsResultsMode())
        COpterecenjeApp::UpdateComboResults(-1);
    else
        COpterecenjeApp::UpdateComboStandard(-1);
    EndDialog(IDOK);
}

void CDlgSRSSKombOpt::Upisi() {
    bool bUpisano = false;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.FreezeUndoCounter();
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();

    std::vector<CId> srss;
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        if (pSlOpt->JeliSRSS())
            srss.push_back(id);
    }
    for (const CId& id : srss) {
        const auto it = std::find_if(m_stavke.begin(), m_stavke.end(),
                                     [&](const Stavka& s) { return s.id == id; });
        if (it == m_stavke.end()) {
            // Deleted in the dialog: its combinations go first.
            CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(id);
            bm.Delete(id);
            bUpisano = true;
            continue;
        }
        const CLoadCaseUnit& unit = m_jedinice[static_cast<size_t>(it - m_stavke.begin())];
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        if (pSlOpt->GetNaziv(0) == it->naziv && pSlOpt->DajRedniBroj() == it->nRedniBroj &&
            *pSlOpt->DajLCUnitZaSRSS() == unit)
            continue;
        auto* pPromenjen = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(id));
        VASSERT(pPromenjen);
        pPromenjen->PostaviSRSS(unit);
        pPromenjen->SetNaziv(it->naziv);
        pPromenjen->PostaviRedniBroj(it->nRedniBroj);
        bUpisano = true;
    }
    for (size_t i = 0; i < m_stavke.size(); ++i) {
        if (m_stavke[i].id.Valid())
            continue;
        auto pNovi = std::make_unique<CSlucajOpterecenja>();
        pNovi->PostaviSRSS(m_jedinice[i]);
        pNovi->SetNaziv(m_stavke[i].naziv);
        pNovi->PostaviRedniBroj(m_stavke[i].nRedniBroj);
        m_stavke[i].id = bm.Insert(pNovi.release());
        bUpisano = true;
    }

    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();
    bm.UnfreezeUndoCounter();
    bm.Close();
    // The results of dimensioning rest on the SRSS cases as they were.
    if (bUpisano && COpterecenjeApp::BrisiRezultateDimenzionisanja != nullptr)
        COpterecenjeApp::BrisiRezultateDimenzionisanja();
}

int opterecenje::SRSSKombinacijeDlg() {
    CDlgSRSSKombOpt dlg;
    return dlg.DoModal();
}
