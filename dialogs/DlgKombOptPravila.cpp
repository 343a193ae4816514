// The shared part of the rules dialogs: the grid of load cases with their marks, the clicks
// that toggle a relation, "Ukljuci sve", "Iskljuci sve", OK and Cancel.
#include "dialogs/DlgKombOptPravila.h"

#include "diag/Assert.h"
#include "dialogs/DlgKombOptResursi.h"
#include "grid/GridImages.h"
#include "text/Translator.h"

#include <algorithm>

CDlgKombOptPravila::CDlgKombOptPravila(CDialogTemplate tmpl, CSlOptItemArray& slucajevi,
                                       int& bIzmenjeno, const std::vector<int>& izabraniRedovi)
    : CDialogPresenter(std::move(tmpl)), m_slucajevi(slucajevi), m_bIzmenjeno(bIzmenjeno) {
    for (const int r : izabraniRedovi)
        if (r >= 1 && r <= slucajevi.GetSize())
            m_tekuci.push_back(r - 1);
    VASSERT(!m_tekuci.empty());
}

bool CDlgKombOptPravila::JeTekuci(int k) const {
    return std::find(m_tekuci.begin(), m_tekuci.end(), k) != m_tekuci.end();
}

bool CDlgKombOptPravila::Prihvatljiv(int k) {
    const CSlOptItem& s = Slucaj(k);
    return !JeTekuci(k) && s.m_bStalno == 0 && s.m_bUticajnaLinija == 0;
}

bool CDlgKombOptPravila::UListi(int k) {
    return Ima(Lista(Slucaj(m_tekuci.front())), Slucaj(k).m_Id);
}

int CDlgKombOptPravila::Polozaj(const CId& id) const {
    for (int k = 0; k < m_slucajevi.GetSize(); ++k)
        if (m_slucajevi[k].m_Id == id)
            return k;
    return -1;
}

bool CDlgKombOptPravila::Ima(const OCArray<CId>& lista, const CId& id) {
    return std::find(lista.begin(), lista.end(), id) != lista.end();
}

void CDlgKombOptPravila::Dodaj(OCArray<CId>& lista, const CId& id) {
    if (!Ima(lista, id))
        lista.Add(id);
}

void CDlgKombOptPravila::Izbaci(OCArray<CId>& lista, const CId& id) {
    std::erase(lista.Vector(), id);
}

void CDlgKombOptPravila::OnInitDialog() {
    m_rezerva = m_slucajevi;
    m_bIzmenjenoNaPocetku = m_bIzmenjeno;
    m_bOtvoren = true;
    Dialog().Translate();
    Pripremi();
    Popuni();
}

void CDlgKombOptPravila::PostaviOznaku(int k) {
    CGridModel& grid = Dialog().Grid(kombres::IDC_PRAVILA_GRID);
    const CSlOptItem& s = Slucaj(k);
    int slika = GridImage::None;
    if (JeTekuci(k))
        slika = GridImage::Tekuci;
    else if (s.m_bStalno != 0)
        slika = GridImage::Uvek;
    else if (UListi(k))
        slika = SlikaUListi();
    grid.SetItemImage(k + 1, 1, slika);
}

void CDlgKombOptPravila::Popuni() {
    const int n = BrojSlucajeva();
    CGridModel& grid = CreateGrid(kombres::IDC_PRAVILA_GRID);
    grid.SetRedraw(false);
    grid.SetColumnCount(3);
    grid.SetRowCount(n + 1);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(2);
    grid.SetListMode(false);
    grid.EnableSelection(false);
    grid.SetColumnWidth(0, 25);
    grid.SetColumnWidth(1, 28);
    grid.SetColumnWidth(2, grid.GetWidth() - CGridModel::kScrollBarWidth - 53);
    grid.SetItemImage(0, 0, GridImage::Zaglavlje);
    grid.SetItemText(0, 1, ClTranslator::Translate(L"St."));
    grid.SetItemText(0, 2, ClTranslator::Translate(L"Naziv"));
    for (int k = 0; k < n; ++k) {
        const CSlOptItem& s = Slucaj(k);
        grid.SetItemText(k + 1, 0, CString::Formatted(L"%d", k + 1));
        grid.SetItemText(k + 1, 2, s.m_strNaziv);
        grid.SetReadOnly(k + 1, 2, true);
        if (s.m_bUticajnaLinija != 0)
            grid.SetItemFgColour(k + 1, 2, kombres::kSivo);
        if (JeTekuci(k))
            grid.SetItemBkColour(k + 1, 2, kombres::kPozadinaTekucih);
        PostaviOznaku(k);
    }
    const int referentni = m_tekuci.front() + 1;
    grid.SetFocusCell(referentni, 2);
    grid.EnsureVisible(referentni, 2);
    grid.SetRedraw(true);
}

void CDlgKombOptPravila::OnGridClick(CGridModel&, int row, int col) {
    const int k = row - 1;
    if (col != 1 || k < 0 || k >= BrojSlucajeva() || !Prihvatljiv(k))
        return;
    PostaviIzmenjeno();
    if (UListi(k))
        Iskljuci(k);
    else
        Ukljuci(k);
    PostaviOznaku(k);
}

void CDlgKombOptPravila::OnButton(int id) {
    if (id != kombres::IDC_UKLJUCI_SVE && id != kombres::IDC_ISKLJUCI_SVE)
        return;
    const bool ukljuci = id == kombres::IDC_UKLJUCI_SVE;
    CGridModel& grid = Dialog().Grid(kombres::IDC_PRAVILA_GRID);
    grid.SetRedraw(false);
    for (int k = 0; k < BrojSlucajeva(); ++k) {
        if (!Prihvatljiv(k) || UListi(k) == ukljuci)
            continue;
        if (ukljuci)
            Ukljuci(k);
        else
            Iskljuci(k);
        PostaviOznaku(k);
    }
    grid.SetRedraw(true);
    PostaviIzmenjeno();
}

void CDlgKombOptPravila::OnOK() {
    Razresi();
    EndDialog(IDOK);
}

void CDlgKombOptPravila::OnCancel() {
    if (m_bOtvoren) {
        m_slucajevi = m_rezerva;
        m_bIzmenjeno = m_bIzmenjenoNaPocetku;
    }
    EndDialog(IDCANCEL);
}
