// The combination editor: start-up, the two grids, their edits and the states of the buttons.
#include "dialogs/DlgKombOpt.h"

#include "diag/Assert.h"
#include "dialog/ButtonIcons.h"
#include "dialogs/DlgKombOptPodaci.h"
#include "dialogs/DlgKombOptResursi.h"
#include "grid/GridImages.h"
#include "host/MessageBox.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/Skladiste.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

#include <algorithm>

using namespace kombres;

namespace {

// Columns of Grid1.
enum : int { G1_REDNI_BROJ, G1_NAZIV, G1_PRAVILA, G1_STALNO, G1_KOEF, G1_ALTERNATIVNO };

} // namespace

CDlgKombOpt::CDlgKombOpt()
    : CDialogPresenter(KombinacijeOpterecenja()),
      m_pKombinacije(std::make_unique<CKombOptItemArray>()) {}

CDlgKombOpt::~CDlgKombOpt() = default;

void CDlgKombOpt::Upozori(const CString& poruka) {
    CVortaMessageBox::MessageBoxW(poruka, ClTranslator::Translate(L"Upozorenje"),
                                  CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
}

// ------------------------------------------------------------------------ start-up

void CDlgKombOpt::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    static constexpr std::pair<int, int> kIkone[] = {
        {IDC_DODAJ, ButtonIcon::Dodaj},
        {IDC_BRISI, ButtonIcon::Brisi},
        {IDC_BRISI_SVE, ButtonIcon::BrisiSve},
        {IDC_GORE, ButtonIcon::Gore},
        {IDC_DOLE, ButtonIcon::Dole},
        {IDC_SORTIRANJE, ButtonIcon::Sortiranje},
        {IDC_GENERISI_NAZIV, ButtonIcon::Naziv},
        {IDC_GENERISI, ButtonIcon::Generisanje},
        {IDC_NE_KOMBINUJ, ButtonIcon::Nikad},
        {IDC_UVEK_KOMBINUJ, ButtonIcon::Uvek},
        {IDC_UCITAJ_SKLADISTE, ButtonIcon::Ucitavanje},
        {IDC_SNIMI_SKLADISTE, ButtonIcon::Snimanje},
        {IDC_UVOZ_IZ_MODELA, ButtonIcon::Uvoz},
    };
    for (const auto& [id, ikona] : kIkone)
        d.SetIcon(id, ikona);
    m_strNaziv = ClTranslator::Translate(L"Naziv");

    CObjBase* pBase = CObjBase::GetCurrent();
    VASSERT(pBase);
    m_slucajevi = kombpodaci::SlucajeviModela(*pBase);
    if (m_slucajevi.GetSize() == 0) {
        // Combinations are made of load cases: without any there is nothing to edit.
        Upozori(ClTranslator::Translate(L"U modelu nema slucajeva opterecenja."));
        EndDialog(IDCANCEL);
        return;
    }
    {
        CBaseManager bm(CSlucajOpterecenja::Type);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        bm.Select();
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
            m_redniBrojevi.Postavi(
                id, dynamic_cast<const CSlucajOpterecenja&>(*bm.GetR(id)).DajRedniBroj());
    }
    PripremiGrid1();

    UcitajKombinacije();
    PripremiGrid2();
    m_bSlucajeviIzmenjeni = 0;
    m_bKombinacijeIzmenjene = 0;
    m_obrisane.clear();

    m_bSeizmickaOznaka = ClTranslator::bugarskiJezik();
    if (m_bSeizmickaOznaka)
        CLoadCaseUnit().SadrziLiSeizmickiSlopt(&m_slStatus, &m_slIds, &m_kombStatus, &m_kombIds, 0);
    ObnoviPodskupove(true);
    m_meniSortiranja = {
        {ID_SORT_OPADAJUCE, ClTranslator::Translate(L"Sortiranje u opadajucem poretku")},
        {ID_SORT_RASTUCE, ClTranslator::Translate(L"Sortiranje u rastucem poretku")},
        {ID_IZBACI_DUPLIKATE, ClTranslator::Translate(L"Izbacivanje duplikata")},
    };
    NacrtajOznakePravila();
    OsveziDugmad();
}

void CDlgKombOpt::UcitajKombinacije() {
    // Each combination at the place of its ordinal. A damaged model's ordinals outside 1..M
    // come after the rest rather than leaving a gap of empty rows.
    CBaseManager bm(CKombinacijaOpterecenja::Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int m = bm.Count();
    std::vector<std::pair<int, CId>> redosled;
    redosled.reserve(static_cast<size_t>(m));
    int najveci = 0;
    bm.Select();
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        VASSERT(pKombOpt);
        const int r = pKombOpt->Item().GetRedniBroj();
        redosled.emplace_back(r, id);
        if (r >= 1 && r <= m)
            najveci = std::max(najveci, r);
    }
    CKombOptItemArray& lista = *m_pKombinacije;
    lista.RemoveAll();
    if (najveci > 0)
        lista.AddNew(najveci, CKombOptItem());
    for (const auto& [r, id] : redosled) {
        const CKombOptItem& item =
            dynamic_cast<const CKombinacijaOpterecenja&>(*bm.GetR(id)).Item();
        const int mesto = r >= 1 && r <= m ? r : lista.GetSize() + 1;
        lista.AddNew(mesto, item);
        // The list knows every combination by the id of its object.
        lista[mesto - 1].SetId(id);
    }
}

void CDlgKombOpt::PripremiGrid1() {
    const int n = m_slucajevi.GetSize();
    CGridModel& grid = CreateGrid(IDC_GRID1);
    grid.SetRedraw(false);
    grid.SetColumnCount(6);
    grid.SetRowCount(n + 1);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    grid.SetListMode(true);
    grid.EnableSelection(true);
    static constexpr int kSirine[] = {25, 0, 25, 28, 55, 28};
    for (int c = 0; c < 6; ++c)
        grid.SetColumnWidth(c, kSirine[c]);
    grid.SetColumnWidth(G1_NAZIV, grid.GetWidth() - CGridModel::kScrollBarWidth - 161);
    grid.SetItemImage(0, G1_REDNI_BROJ, GridImage::Zaglavlje);
    grid.SetItemText(0, G1_NAZIV, m_strNaziv);
    grid.SetItemImage(0, G1_PRAVILA, GridImage::Pravila);
    grid.SetItemText(0, G1_STALNO, ClTranslator::Translate(L"St."));
    grid.SetItemText(0, G1_KOEF, ClTranslator::Translate(L"Koef"));
    grid.SetItemText(0, G1_ALTERNATIVNO, ClTranslator::Translate(L"A."));
    for (int r = 1; r <= n; ++r) {
        const CSlOptItem& s = m_slucajevi[r - 1];
        const bool uticajna = s.m_bUticajnaLinija != 0;
        grid.SetItemText(r, G1_REDNI_BROJ, CString::Formatted(L"%d", r));
        grid.SetItemText(r, G1_NAZIV, s.m_strNaziv);
        grid.SetReadOnly(r, G1_NAZIV, true);
        if (uticajna)
            grid.SetItemFgColour(r, G1_NAZIV, kSivo);
        grid.SetReadOnly(r, G1_PRAVILA, true);
        grid.SetItemText(r, G1_KOEF, kombpodaci::TekstKoeficijenta(s.m_dKoeficijent));
        grid.SetReadOnly(r, G1_KOEF, uticajna);
        // An influence-line case takes part in no generated combination: no checks for it.
        if (uticajna) {
            grid.SetReadOnly(r, G1_STALNO, true);
            grid.SetReadOnly(r, G1_ALTERNATIVNO, true);
        } else {
            grid.SetCheckCell(r, G1_STALNO, s.m_bStalno != 0);
            grid.SetCheckCell(r, G1_ALTERNATIVNO, s.m_bAlternativno != 0);
        }
    }
    grid.SetRedraw(true);
}

void CDlgKombOpt::PripremiGrid2() {
    const int n = m_slucajevi.GetSize();
    CGridModel& grid = CreateGrid(IDC_GRID2, false);
    grid.SetRedraw(false);
    // Thousands of combinations times the load cases: cells are made only when shown.
    grid.SetCellSource([this](int row, int col, CGridCell& cell) { CelijaGrid2(row, col, cell); });
    grid.SetColumnCount(n + 2);
    grid.SetRowCount(m_pKombinacije->GetSize() + 1);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    grid.SetListMode(true);
    grid.EnableSelection(true);
    grid.SetColumnWidth(0, 35);
    const int sirina = grid.GetWidth() - CGridModel::kScrollBarWidth - 55 * n - 35;
    grid.SetColumnWidth(1, sirina < 180 ? 200 : sirina);
    for (int j = 0; j < n; ++j)
        grid.SetColumnWidth(j + 2, 55);
    grid.SetRedraw(true);
}

void CDlgKombOpt::CelijaGrid2(int row, int col, CGridCell& cell) const {
    if (row == 0) {
        if (col == 0)
            cell.image = GridImage::Zaglavlje;
        else if (col == 1)
            cell.text = m_strNaziv;
        else
            cell.text = CString::Formatted(L"%d", col - 1);
        return;
    }
    const CKombOptItem& item = (*m_pKombinacije)[row - 1];
    if (col == 0) {
        cell.text = CString::Formatted(L"%d", row);
        if (m_bSeizmickaOznaka &&
            item.SadrziSeizmickiSlopt(m_slStatus, m_slIds, m_kombStatus, m_kombIds) != 0)
            cell.image = GridImage::Seizmicki;
    } else if (col == 1) {
        cell.text = item.GetNaziv();
    } else {
        const CSlOptItem& s = m_slucajevi[col - 2];
        int i = 0;
        double koef = 0.0;
        if (!item.GetOsnOptById(i, koef, s.m_Id))
            koef = 0.0;
        cell.text = kombpodaci::TekstKoeficijenta(koef);
        cell.readOnly = s.m_bUticajnaLinija != 0;
    }
}

void CDlgKombOpt::OsveziGrid2() {
    CGridModel& grid = Dialog().Grid(IDC_GRID2);
    grid.SetRedraw(false);
    grid.SetRowCount(m_pKombinacije->GetSize() + 1);
    grid.Invalidate();
    grid.SetRedraw(true);
    OsveziDugmad();
}

// ------------------------------------------------------------------------ states

void CDlgKombOpt::NacrtajOznakePravila() {
    CGridModel& grid = Dialog().Grid(IDC_GRID1);
    const std::vector<int>& izabrani = grid.GetSelectedRows();
    const int n = m_slucajevi.GetSize();
    grid.SetRedraw(false);
    for (int r = 1; r <= n; ++r)
        grid.SetItemImage(r, G1_PRAVILA, GridImage::None);
    if (izabrani.size() == 1) {
        const CSlOptItem& s = m_slucajevi[izabrani.front() - 1];
        grid.SetItemImage(izabrani.front(), G1_PRAVILA, GridImage::Izabrani);
        auto oznaci = [&](const OCArray<CId>& lista, int slika) {
            for (int r = 1; r <= n; ++r) {
                const CId& id = m_slucajevi[r - 1].m_Id;
                if (std::find(lista.begin(), lista.end(), id) != lista.end())
                    grid.SetItemImage(r, G1_PRAVILA, slika);
            }
        };
        oznaci(s.m_arrNeKombinujSa, GridImage::Nikad);
        oznaci(s.m_arrUvekKombinujSa, GridImage::Uvek);
    }
    grid.SetRedraw(true);
    // Rules are set for ordinary load cases only.
    const bool pravila =
        !izabrani.empty() && std::none_of(izabrani.begin(), izabrani.end(), [&](int r) {
            const CSlOptItem& s = m_slucajevi[r - 1];
            return s.m_bStalno != 0 || s.m_bUticajnaLinija != 0;
        });
    Dialog().Enable(IDC_NE_KOMBINUJ, pravila);
    Dialog().Enable(IDC_UVEK_KOMBINUJ, pravila);
}

void CDlgKombOpt::OsveziDugmad() {
    CDialogModel& d = Dialog();
    const std::vector<int>& izabrani = d.Grid(IDC_GRID2).GetSelectedRows();
    const int n = m_pKombinacije->GetSize();
    const size_t nIzabranih = izabrani.size();
    d.Enable(IDC_BRISI, nIzabranih >= 1 && n >= 1);
    d.Enable(IDC_BRISI_SVE, n >= 1);
    d.Enable(IDC_GORE, nIzabranih == 1 && izabrani.front() > 1);
    d.Enable(IDC_DOLE, nIzabranih == 1 && izabrani.front() < n);
    d.Enable(IDC_SORTIRANJE, n >= 2);
    d.Enable(IDC_DODAJ, nIzabranih <= 1);
    d.Enable(IDC_SNIMI_SKLADISTE, n >= 1);
    CBaseManager bm(CSkladiste::Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    d.Enable(IDC_UCITAJ_SKLADISTE, bm.Count() == 1);
}

void CDlgKombOpt::ObnoviPodskupove(bool pravila) {
    if (pravila)
        m_podskupovi.PostaviPravila(m_slucajevi);
    m_podskupovi.Nabroji(m_slucajevi);
    PrikaziBroj();
}

void CDlgKombOpt::PrikaziBroj() {
    m_nBrojMogucih = m_podskupovi.BrojMogucihKombinacija(m_slucajevi);
    CString tekst = CString::Formatted(L"%d", m_nBrojMogucih);
    if (m_podskupovi.Prepunjena())
        tekst = L"> " + tekst;
    Dialog().SetText(IDC_BROJ_KOMBINACIJA, tekst);
}

// ------------------------------------------------------------------------ grid edits

bool CDlgKombOpt::OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) {
    if (grid.GetId() == IDC_GRID1)
        return col == G1_KOEF && UrediKoeficijentSlucaja(grid, row, text);
    return UrediKombinaciju(row, col, text);
}

bool CDlgKombOpt::UrediKoeficijentSlucaja(CGridModel& grid, int row, const CString& text) {
    double koef = 0.0;
    if (!kombpodaci::ProcitajBroj(text, koef))
        return false;
    CSlOptItem& s = m_slucajevi[row - 1];
    // A coefficient of exactly zero keeps the case out of generated combinations.
    const bool biloNula = s.m_dKoeficijent == 0.0;
    s.m_dKoeficijent = koef;
    grid.SetItemText(row, G1_KOEF, kombpodaci::TekstKoeficijenta(koef));
    m_bSlucajeviIzmenjeni = 1;
    if (biloNula != (koef == 0.0))
        ObnoviPodskupove(false);
    return true;
}

void CDlgKombOpt::OnGridCheckChanged(CGridModel& grid, int row, int col) {
    if (grid.GetId() != IDC_GRID1)
        return;
    if (col == G1_STALNO)
        PromenaStalnog();
    else if (col == G1_ALTERNATIVNO)
        PromenaAlternativnog(grid, row);
}

void CDlgKombOpt::PromenaStalnog() {
    const CGridModel& grid = Dialog().Grid(IDC_GRID1);
    bool stalniPromenjeni = false;
    for (int r = 1; r <= m_slucajevi.GetSize(); ++r) {
        CSlOptItem& s = m_slucajevi[r - 1];
        if (grid.IsCheckCell(r, G1_STALNO)) {
            const int stalno = grid.GetCheck(r, G1_STALNO) ? 1 : 0;
            stalniPromenjeni = stalniPromenjeni || stalno != s.m_bStalno;
            s.m_bStalno = stalno;
        }
        if (grid.IsCheckCell(r, G1_ALTERNATIVNO))
            s.m_bAlternativno = grid.GetCheck(r, G1_ALTERNATIVNO) ? 1 : 0;
    }
    m_bSlucajeviIzmenjeni = 1;
    if (stalniPromenjeni)
        ObnoviPodskupove(true);
    else
        PrikaziBroj();
    NacrtajOznakePravila();
}

void CDlgKombOpt::PromenaAlternativnog(CGridModel& grid, int row) {
    int alternativnih = 0;
    for (int k = 0; k < m_slucajevi.GetSize(); ++k)
        if (m_slucajevi[k].m_bAlternativno != 0)
            ++alternativnih;
    if (alternativnih >= 10 && grid.GetCheck(row, G1_ALTERNATIVNO)) {
        grid.SetCheck(row, G1_ALTERNATIVNO, false);
        CVortaMessageBox::MessageBoxW(
            ClTranslator::Translate(L"Dozvoljeno je najvise 10 alternativnih opterecenja."),
            ClTranslator::Translate(L"Upozorenje"),
            CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
        return;
    }
    for (int r = 1; r <= m_slucajevi.GetSize(); ++r)
        if (grid.IsCheckCell(r, G1_ALTERNATIVNO))
            m_slucajevi[r - 1].m_bAlternativno = grid.GetCheck(r, G1_ALTERNATIVNO) ? 1 : 0;
    m_bSlucajeviIzmenjeni = 1;
    PrikaziBroj();
}

bool CDlgKombOpt::UrediKombinaciju(int row, int col, const CString& text) {
    if (row < 1 || row > m_pKombinacije->GetSize())
        return false;
    CKombOptItem& item = (*m_pKombinacije)[row - 1];
    if (col == 1) {
        if (text != item.GetNaziv()) {
            item.SetNaziv(text);
            m_bKombinacijeIzmenjene = 1;
        }
        return true;
    }
    double koef = 0.0;
    if (col < 2 || !kombpodaci::ProcitajBroj(text, koef))
        return false;
    m_bKombinacijeIzmenjene = 1;
    const CId& id = m_slucajevi[col - 2].m_Id;
    int i = 0;
    double staro = 0.0;
    if (item.GetOsnOptById(i, staro, id))
        item.SetOsnOptKoef(i, koef);
    else
        item.DodajOsnOpt(koef, id);
    if (item.IsGenericName() != 0)
        item.SetGenericName(nullptr, 0);
    return true;
}

void CDlgKombOpt::OnGridSelChanged(CGridModel& grid) {
    if (grid.GetId() == IDC_GRID1)
        NacrtajOznakePravila();
    else
        OsveziDugmad();
}

// ------------------------------------------------------------------------ commands

void CDlgKombOpt::OnButton(int id) {
    switch (id) {
    case IDC_BRISI:
        Brisi();
        break;
    case IDC_DODAJ:
        Dodaj();
        break;
    case IDC_GENERISI:
        Generisi();
        break;
    case IDC_NE_KOMBINUJ:
        Pravila(true);
        break;
    case IDC_UVEK_KOMBINUJ:
        Pravila(false);
        break;
    case IDC_GENERISI_NAZIV:
        GenerisiNaziv();
        break;
    case IDC_DOLE:
        Pomeri(1);
        break;
    case IDC_GORE:
        Pomeri(-1);
        break;
    case IDC_SORTIRANJE:
        if (const int komanda = TrackPopupMenu(m_meniSortiranja, IDC_SORTIRANJE))
            OnMenuCommand(komanda);
        break;
    case IDC_BRISI_SVE:
        BrisiSve();
        break;
    case IDC_UVOZ_IZ_MODELA:
        UvozIzModela();
        break;
    case IDC_UCITAJ_SKLADISTE:
        UcitajIzSkladista();
        break;
    case IDC_SNIMI_SKLADISTE:
        SnimiUSkladiste();
        break;
    default:
        break;
    }
}

void CDlgKombOpt::OnMenuCommand(int command) {
    if (command == ID_SORT_RASTUCE)
        Sortiraj(1);
    else if (command == ID_SORT_OPADAJUCE)
        Sortiraj(-1);
    else if (command == ID_IZBACI_DUPLIKATE)
        IzbaciDuplikate();
}

void CDlgKombOpt::OnCancel() {
    m_podskupovi.Oslobodi();
    EndDialog(IDCANCEL);
}
