// The load case list editor: the grid of load cases, the values a user sets in it, and the
// commands that add, copy, rename, delete and move load cases.
#include "dialogs/DlgSlucajeviOpterecenja.h"

#include "dialogs/DlgKombOptPodaci.h"
#include "dialogs/DlgNazivSlucaja.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/EditoriResursi.h"
#include "grid/GridImages.h"
#include "host/MessageBox.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

using namespace edres;
using opterecenje::CSlucajListe;

namespace {

CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

constexpr int kSirine[CDlgSlucajeviOpterecenja::kBrojKolona - 1] = {35,  180, 30, 55, 70,
                                                                    105, 40,  70, 90};

/// The text of an influence line's kind.
CString TekstUticajneLinije(eUticajUticajneLin uticaj) {
    switch (uticaj) {
    case UL_NIJEDNA:
        return CString();
    case UL_MOMENT:
        return Prevod(L"Moment");
    case UL_TRANSVERZALNA_SILA:
        return Prevod(L"Transverzalna sila");
    case UL_NORMALNA_SILA:
        return Prevod(L"Normalna sila");
    case UL_POMERANJE:
        return Prevod(L"Pomeranje");
    case UL_REAKCIJA:
        return Prevod(L"Reakcija");
    default:
        return Prevod(L"Uticajna linija");
    }
}

/// A whole number typed into a grid, blanks around it aside; false otherwise.
bool ProcitajCeoBroj(const CString& tekst, int& broj) {
    const CString t = BezRazmaka(tekst);
    if (t.IsEmpty() || t.size() > 9 || t.find_first_not_of(L"0123456789") != CString::npos)
        return false;
    broj = std::stoi(t);
    return true;
}

/// Cases that values a user sets apply to: neither influence-line nor SRSS cases.
bool Obican(const CSlucajListe& e) {
    return e.eUticaj == UL_NIJEDNA && !e.JeSRSS();
}

} // namespace

CDlgSlucajeviOpterecenja::CDlgSlucajeviOpterecenja() : CDialogPresenter(SlucajeviOpterecenja()) {}

void CDlgSlucajeviOpterecenja::OnInitDialog() {
    Dialog().Translate();
    m_lista = opterecenje::DajSlucajeveOpterecenja();
    m_bIzmenjen = false;
    m_pGrid = &CreateGrid(IDC_GRID1);
    PopuniGrid();
}

// ------------------------------------------------------------------------ the grid

void CDlgSlucajeviOpterecenja::PopuniGrid() {
    CGridModel& g = *m_pGrid;
    g.SetRedraw(false);
    g.SetColumnCount(kBrojKolona);
    g.SetRowCount(static_cast<int>(m_lista.size()) + 1);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    g.SetListMode(true);
    g.EnableSelection(true);
    int sirina = 0;
    for (int c = 0; c < kSRSS; ++c) {
        g.SetColumnWidth(c, kSirine[c]);
        sirina += kSirine[c];
    }
    g.SetColumnWidth(kSRSS, std::max(60, g.GetWidth() - CGridModel::kScrollBarWidth - sirina));
    g.SetItemImage(0, kRedniBroj, GridImage::Zaglavlje);
    const CString naslovi[] = {CString(),        Prevod(L"Naziv"),      Prevod(L"g"),
                               Prevod(L"Koef."), Prevod(L"Seizmicki"),  Prevod(L"Seizm. proracun"),
                               Prevod(L"NDA"),   Prevod(L"Br. tonova"), Prevod(L"Uticajna linija"),
                               Prevod(L"SRSS")};
    for (int c = 1; c < kBrojKolona; ++c)
        g.SetItemText(0, c, naslovi[c]);
    for (size_t i = 0; i < m_lista.size(); ++i)
        PopuniRed(static_cast<int>(i));
    g.SetRedraw(true);
}

void CDlgSlucajeviOpterecenja::PopuniRed(int i) {
    CGridModel& g = *m_pGrid;
    const CSlucajListe& e = m_lista[static_cast<size_t>(i)];
    const int r = i + 1;
    const bool obican = Obican(e);
    g.SetItemText(r, kRedniBroj, CString::Formatted(L"%d", r));
    g.SetItemText(r, kNaziv, e.item.m_strNaziv);
    g.SetCheckCell(r, kG, e.item.m_ngMarker != 0);
    g.SetItemText(r, kKoeficijent, kombpodaci::TekstKoeficijenta(e.item.m_dKoeficijent));
    g.SetCheckCell(r, kSeizmicki, e.nSeizmicki != 0);
    g.SetCheckCell(r, kSeizmickiProracun, e.item.m_nUlaziUSeizmickiProracun != 0);
    g.SetCheckCell(r, kNDA, e.nNDA != 0);
    g.SetItemText(r, kTonovi, CString::Formatted(L"%d", e.nBrojMultimodalnih));
    for (const int c : {kSeizmicki, kSeizmickiProracun, kNDA, kTonovi})
        g.SetReadOnly(r, c, !obican);
    g.SetItemText(r, kUticajnaLinija, TekstUticajneLinije(e.eUticaj));
    g.SetReadOnly(r, kUticajnaLinija, true);
    g.SetItemText(r, kSRSS, TekstSRSS(e));
    g.SetReadOnly(r, kSRSS, true);
}

CString CDlgSlucajeviOpterecenja::TekstSRSS(const CSlucajListe& e) const {
    if (!e.JeSRSS())
        return CString();
    // The unit names load cases by the ordinals they had when the list was read.
    std::map<int, int> sada;
    for (size_t i = 0; i < m_lista.size(); ++i)
        if (m_lista[i].nStariRedniBroj > 0)
            sada[m_lista[i].nStariRedniBroj] = static_cast<int>(i) + 1;
    std::map<int, double> clanovi;
    for (int k = 0; k < e.srss->GetSize(); ++k) {
        const CLoadCaseFactor& f = e.srss->GetLoadCaseFactor(k);
        const auto it = sada.find(f.GetLCRedniBroj());
        if (it != sada.end() && f.GetFaktor() != 0.0)
            clanovi[it->second] = std::sqrt(std::fabs(f.GetFaktor()));
    }
    CString tekst;
    for (const auto& [r, koef] : clanovi) {
        if (!tekst.IsEmpty())
            tekst += L"+";
        if (CToler::Razliciti(koef, 1.0))
            tekst += CString::Formatted(L"%.2fx", koef);
        tekst += CRomanNumber::GetRomanValue(r);
    }
    return tekst;
}

int CDlgSlucajeviOpterecenja::PocetakSRSS() const {
    int i = static_cast<int>(m_lista.size());
    while (i > 0 && m_lista[static_cast<size_t>(i - 1)].JeSRSS())
        --i;
    return i;
}

std::vector<int> CDlgSlucajeviOpterecenja::Izabrani() const {
    std::vector<int> redovi = m_pGrid->GetSelectedRows();
    if (redovi.empty() && m_pGrid->GetFocusRow() >= 1)
        redovi.push_back(m_pGrid->GetFocusRow());
    std::vector<int> indeksi;
    for (const int r : redovi)
        if (r >= 1 && r <= static_cast<int>(m_lista.size()))
            indeksi.push_back(r - 1);
    return indeksi;
}

void CDlgSlucajeviOpterecenja::Izaberi(int i) {
    if (i < 0 || i >= static_cast<int>(m_lista.size())) {
        m_pGrid->ClearSelection();
        return;
    }
    m_pGrid->SetSelectedRows({i + 1});
    m_pGrid->SetFocusCell(i + 1, kNaziv);
    m_pGrid->EnsureVisible(i + 1, kNaziv);
}

// ------------------------------------------------------------------------ edits

bool CDlgSlucajeviOpterecenja::OnGridEndEdit(CGridModel& grid, int row, int col,
                                             const CString& text) {
    if (&grid != m_pGrid || row < 1 || row > static_cast<int>(m_lista.size()))
        return false;
    CSlucajListe& e = m_lista[static_cast<size_t>(row - 1)];
    switch (col) {
    case kNaziv: {
        const CString naziv = BezRazmaka(text);
        if (naziv.IsEmpty())
            return false;
        e.item.m_strNaziv = naziv;
        break;
    }
    case kKoeficijent: {
        double koef = 0.0;
        if (!kombpodaci::ProcitajBroj(text, koef) || koef < 0.0)
            return false;
        e.item.m_dKoeficijent = koef;
        break;
    }
    case kTonovi: {
        int broj = 0;
        if (!ProcitajCeoBroj(text, broj) || broj > 999)
            return false;
        e.nBrojMultimodalnih = broj;
        break;
    }
    default:
        return false;
    }
    m_bIzmenjen = true;
    PopuniRed(row - 1);
    return true;
}

void CDlgSlucajeviOpterecenja::OnGridCheckChanged(CGridModel& grid, int row, int col) {
    if (&grid != m_pGrid || row < 1 || row > static_cast<int>(m_lista.size()))
        return;
    CSlucajListe& e = m_lista[static_cast<size_t>(row - 1)];
    const int vrednost = grid.GetCheck(row, col) ? 1 : 0;
    switch (col) {
    case kG:
        e.item.m_ngMarker = vrednost;
        break;
    case kSeizmicki:
        e.nSeizmicki = vrednost;
        break;
    case kSeizmickiProracun:
        e.item.m_nUlaziUSeizmickiProracun = vrednost;
        break;
    case kNDA:
        e.nNDA = vrednost;
        break;
    default:
        return;
    }
    m_bIzmenjen = true;
}

// ------------------------------------------------------------------------ commands

void CDlgSlucajeviOpterecenja::OnButton(int id) {
    switch (id) {
    case IDC_DODAJ:
        Dodaj();
        break;
    case IDC_KOPIRAJ:
        Kopiraj();
        break;
    case IDC_PREIMENUJ:
        Preimenuj();
        break;
    case IDC_BRISI:
        Brisi();
        break;
    case IDC_GORE:
        Pomeri(-1);
        break;
    case IDC_DOLE:
        Pomeri(1);
        break;
    case IDC_SRSS:
        SRSS();
        break;
    default:
        break;
    }
}

void CDlgSlucajeviOpterecenja::Dodaj() {
    // After the selected ordinary case, otherwise after the last one; SRSS cases stay last.
    const std::vector<int> izabrani = Izabrani();
    const int srss = PocetakSRSS();
    const int i = !izabrani.empty() && izabrani.front() < srss ? izabrani.front() + 1 : srss;
    CSlucajListe e;
    e.item.m_strNaziv = CString::Formatted(Prevod(L"Slucaj opterecenja %d").c_str(), i + 1);
    m_lista.insert(m_lista.begin() + i, std::move(e));
    m_bIzmenjen = true;
    PopuniGrid();
    Izaberi(i);
    m_pGrid->EditCell(i + 1, kNaziv);
}

void CDlgSlucajeviOpterecenja::Kopiraj() {
    const std::vector<int> izabrani = Izabrani();
    if (izabrani.empty())
        return;
    const int i = izabrani.front();
    const CSlucajListe& izvor = m_lista[static_cast<size_t>(i)];
    CDlgNazivSlucaja dlg(
        CString::Formatted(Prevod(L"%s - kopija").c_str(), izvor.item.m_strNaziv.c_str()),
        CString::Formatted(Prevod(L"Kopija slucaja opterecenja \"%s\" sa njegovim "
                                  L"opterecenjima.")
                               .c_str(),
                           izvor.item.m_strNaziv.c_str()));
    if (dlg.DoModal() != IDOK)
        return;
    CSlucajListe kopija = izvor;
    // A copy of a case the store does not hold yet copies what that one copies.
    kopija.kopijaOd = izvor.id.Valid() ? izvor.id : izvor.kopijaOd;
    kopija.id = CId();
    kopija.item.m_Id = CId();
    kopija.nStariRedniBroj = 0;
    kopija.item.m_strNaziv = dlg.Naziv();
    const int mesto = kopija.JeSRSS() ? static_cast<int>(m_lista.size()) : i + 1;
    m_lista.insert(m_lista.begin() + mesto, std::move(kopija));
    m_bIzmenjen = true;
    PopuniGrid();
    Izaberi(mesto);
}

void CDlgSlucajeviOpterecenja::Preimenuj() {
    const std::vector<int> izabrani = Izabrani();
    if (izabrani.empty())
        return;
    CSlucajListe& e = m_lista[static_cast<size_t>(izabrani.front())];
    CDlgNazivSlucaja dlg(e.item.m_strNaziv, CString());
    if (dlg.DoModal() != IDOK || dlg.Naziv() == e.item.m_strNaziv)
        return;
    e.item.m_strNaziv = dlg.Naziv();
    m_bIzmenjen = true;
    PopuniRed(izabrani.front());
}

void CDlgSlucajeviOpterecenja::Brisi() {
    const std::vector<int> izabrani = Izabrani();
    if (izabrani.empty())
        return;
    // The SRSS cases that combine a deleted case go with it (and those that combine them).
    std::set<int> brisani(izabrani.begin(), izabrani.end());
    std::set<int> stari;
    for (const int i : brisani)
        if (m_lista[static_cast<size_t>(i)].nStariRedniBroj > 0)
            stari.insert(m_lista[static_cast<size_t>(i)].nStariRedniBroj);
    int nSRSS = 0;
    for (bool bPromena = true; bPromena;) {
        bPromena = false;
        for (size_t i = 0; i < m_lista.size(); ++i) {
            const CSlucajListe& e = m_lista[i];
            if (brisani.contains(static_cast<int>(i)) || !e.JeSRSS())
                continue;
            for (int k = 0; k < e.srss->GetSize(); ++k) {
                const CLoadCaseFactor& f = e.srss->GetLoadCaseFactor(k);
                if (f.GetFaktor() != 0.0 && stari.contains(f.GetLCRedniBroj())) {
                    brisani.insert(static_cast<int>(i));
                    if (e.nStariRedniBroj > 0)
                        stari.insert(e.nStariRedniBroj);
                    ++nSRSS;
                    bPromena = true;
                    break;
                }
            }
        }
    }
    std::vector<CId> uSkladistu;
    for (const int i : brisani)
        if (m_lista[static_cast<size_t>(i)].id.Valid())
            uSkladistu.push_back(m_lista[static_cast<size_t>(i)].id);
    const opterecenje::CPosledice posledice = opterecenje::PosledicaBrisanja(uSkladistu);
    const CString pitanje = CString::Formatted(
        Prevod(L"Izabrani slucajevi opterecenja (%d) bice obrisani, a sa njima i kombinacije koje "
               L"ih sadrze (%d), SRSS slucajevi koji ih kombinuju (%d) i anvelope koje ostaju bez "
               L"opterecenja (%d). Da li zelite da ih obrisete?")
            .c_str(),
        static_cast<int>(izabrani.size()), posledice.nKombinacija, nSRSS, posledice.nAnvelopa);
    if (CVortaMessageBox::MessageBoxW(pitanje, Prevod(L"Upozorenje"),
                                      CVortaMessageBox::MB_YESNO |
                                          CVortaMessageBox::MB_ICONWARNING) !=
        CVortaMessageBox::IDYES)
        return;
    for (auto it = brisani.rbegin(); it != brisani.rend(); ++it)
        m_lista.erase(m_lista.begin() + *it);
    m_bIzmenjen = true;
    PopuniGrid();
    Izaberi(std::min(*brisani.begin(), static_cast<int>(m_lista.size()) - 1));
}

void CDlgSlucajeviOpterecenja::Pomeri(int smer) {
    const std::vector<int> izabrani = Izabrani();
    if (izabrani.empty())
        return;
    const int i = izabrani.front();
    const int j = i + smer;
    // Ordinary cases move among themselves, SRSS cases too.
    const int srss = PocetakSRSS();
    const bool bSRSS = i >= srss;
    if (j < (bSRSS ? srss : 0) || j >= (bSRSS ? static_cast<int>(m_lista.size()) : srss))
        return;
    std::swap(m_lista[static_cast<size_t>(i)], m_lista[static_cast<size_t>(j)]);
    m_bIzmenjen = true;
    PopuniGrid();
    Izaberi(j);
}

void CDlgSlucajeviOpterecenja::SRSS() {
    // The SRSS editor works on the store: what this list changed is written first.
    if (m_bIzmenjen) {
        if (CVortaMessageBox::MessageBoxW(
                Prevod(L"Izmene slucajeva opterecenja bice upisane pre otvaranja SRSS "
                       L"kombinacija. Da li zelite da nastavite?"),
                Prevod(L"Upozorenje"),
                CVortaMessageBox::MB_YESNO | CVortaMessageBox::MB_ICONWARNING) !=
            CVortaMessageBox::IDYES)
            return;
        opterecenje::PrimeniSlucajeveOpterecenja(m_lista);
    }
    opterecenje::SRSSKombinacijeDlg();
    m_lista = opterecenje::DajSlucajeveOpterecenja();
    m_bIzmenjen = false;
    PopuniGrid();
}

// ------------------------------------------------------------------------ OK

void CDlgSlucajeviOpterecenja::OnOK() {
    if (m_bIzmenjen)
        opterecenje::PrimeniSlucajeveOpterecenja(m_lista);
    EndDialog(IDOK);
}

int opterecenje::SlucajeviOpterecenjaDlg() {
    CDlgSlucajeviOpterecenja dlg;
    return dlg.DoModal();
}
