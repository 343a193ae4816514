// The combination editor's list: generation, adding, deleting, moving, sorting, duplicate
// removal, generated names, and the rules dialogs.
#include "dialogs/DlgKombOpt.h"

#include "dialog/WaitIndicator.h"
#include "dialogs/DlgInclusion.h"
#include "dialogs/DlgKombOptResursi.h"
#include "dialogs/DlgMutEx.h"
#include "dialogs/KombSortiranje.h"
#include "host/MessageBox.h"
#include "text/Translator.h"

#include <algorithm>

using namespace kombres;

void CDlgKombOpt::Prenumerisi() {
    for (int i = 0; i < m_pKombinacije->GetSize(); ++i)
        (*m_pKombinacije)[i].SetRedniBroj(i + 1);
}

void CDlgKombOpt::Obrisana(const CKombOptItem& item) {
    if (item.GetId().Valid())
        m_obrisane.push_back(item.GetId());
}

void CDlgKombOpt::Zadrzi(const std::vector<bool>& ostaje) {
    CKombOptItemArray& lista = *m_pKombinacije;
    for (int i = lista.GetSize() - 1; i >= 0; --i)
        if (!ostaje[static_cast<size_t>(i)])
            Obrisana(lista[i]);
    // Removing one combination at a time would move every later one each time: those that
    // stay move up once, each into a place whose text and arrays it can reuse, and the end
    // is cut off.
    int n = 0;
    for (int i = 0; i < lista.GetSize(); ++i)
        if (ostaje[static_cast<size_t>(i)]) {
            if (n != i)
                lista[n] = lista[i];
            ++n;
        }
    while (lista.GetSize() > n)
        lista.RemoveAt(lista.GetSize() - 1);
}

// ------------------------------------------------------------------------ generation

void CDlgKombOpt::Generisi() {
    bool zameni = false;
    if (m_pKombinacije->GetSize() > 0) {
        const int odgovor = CVortaMessageBox::MessageBoxW(
            ClTranslator::Translate(L"Vec postoje kreirane kombinacije!"),
            ClTranslator::Translate(L"Upozorenje"), CVortaMessageBox::MB_ICONQUESTION,
            {ClTranslator::Translate(L"Zameni"), ClTranslator::Translate(L"Dodaj"),
             ClTranslator::Translate(L"Cancel")});
        if (odgovor != 1 && odgovor != 2)
            return;
        zameni = odgovor == 1;
    }
    const int nSlOpt = m_slucajevi.GetSize();
    const int ostaje = zameni ? 0 : m_pKombinacije->GetSize();
    if (static_cast<int64_t>(ostaje) + m_nBrojMogucih > kMaxKombinacija) {
        CString poruka;
        poruka.Format(ClTranslator::Translate(L"Generisanjem bi nastalo %d kombinacija, a "
                                              L"dozvoljeno je najvise %d. Smanjite broj "
                                              L"alternativnih opterecenja ili dodajte pravila.")
                          .c_str(),
                      ostaje + m_nBrojMogucih, kMaxKombinacija);
        Upozori(poruka);
        return;
    }

    // A replacing generation fills a new list, an appending one the list itself; a cancelled
    // generation leaves everything as it was.
    std::unique_ptr<CKombOptItemArray> nova;
    if (zameni)
        nova = std::make_unique<CKombOptItemArray>();
    CKombOptItemArray& cilj = zameni ? *nova : *m_pKombinacije;
    const int pocetak = cilj.GetSize();
    CWaitProgress napredak(ClTranslator::Translate(L"Generisanje kombinacija..."), m_nBrojMogucih);
    CKombOptItem osnovna;
    CString naziv;
    std::vector<int> alternativni;
    int64_t napravljeno = 0;
    for (int red = 0; red < m_podskupovi.BrojRedova(); ++red) {
        // The members in load case order with their coefficients; the alternating ones by
        // their place among the members.
        osnovna.Obrisi();
        alternativni.clear();
        for (int k = 0; k < nSlOpt; ++k) {
            if (!m_podskupovi.Sadrzi(red, k))
                continue;
            const CSlOptItem& s = m_slucajevi[k];
            if (s.m_bAlternativno != 0)
                alternativni.push_back(osnovna.GetBrojOsnOpt());
            osnovna.DodajOsnOpt(s.m_dKoeficijent, s.m_Id);
        }
        const auto a = static_cast<int>(alternativni.size());
        const int varijanti = a <= 10 ? 1 << a : 1;
        // Variant m negates the alternating member b when bit b of m is set: the first
        // alternating case changes sign fastest, and variant 0 is the combination as entered.
        for (int m = 0; m < varijanti; ++m) {
            cilj.AddNew(osnovna);
            CKombOptItem& varijanta = cilj[cilj.GetSize() - 1];
            for (int b = 0; m != 0 && b < a; ++b)
                if ((m >> b & 1) != 0) {
                    const int e = alternativni[static_cast<size_t>(b)];
                    varijanta.SetOsnOptKoef(e, -varijanta.GetOsnOptKoefByIndex(e));
                }
            varijanta.NapraviGenerickiNaziv(m_redniBrojevi, naziv);
            varijanta.PostaviGenerickiNaziv(naziv);
            if (!napredak.Step(++napravljeno)) {
                while (cilj.GetSize() > pocetak)
                    cilj.RemoveAt(cilj.GetSize() - 1);
                return;
            }
        }
    }

    if (zameni) {
        for (int i = m_pKombinacije->GetSize() - 1; i >= 0; --i)
            Obrisana((*m_pKombinacije)[i]);
        m_pKombinacije = std::move(nova);
    }
    Prenumerisi();
    Dialog().Grid(IDC_GRID2).ClearSelection();
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

// ------------------------------------------------------------------------ add, delete, move

void CDlgKombOpt::Dodaj() {
    CGridModel& grid = Dialog().Grid(IDC_GRID2);
    const std::vector<int> izabrani = grid.GetSelectedRows();
    CKombOptItemArray& lista = *m_pKombinacije;
    const int mesto = izabrani.size() == 1 ? izabrani.front() : lista.GetSize();
    CKombOptItem nova;
    if (izabrani.size() == 1 && Dialog().IsChecked(IDC_SA_KOPIRANJEM)) {
        nova = lista[izabrani.front() - 1];
        nova.SetId(CId());
    }
    nova.SetGenericName(nullptr, 0);
    lista.InsertNewAt(mesto + 1);
    lista[mesto] = nova;
    Prenumerisi();
    grid.SetSelectedRows({mesto + 1});
    grid.EnsureVisible(mesto + 1, 1);
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

void CDlgKombOpt::Brisi() {
    CGridModel& grid = Dialog().Grid(IDC_GRID2);
    const std::vector<int> izabrani = grid.GetSelectedRows();
    const int n = m_pKombinacije->GetSize();
    if (izabrani.empty() || n == 0)
        return;
    std::vector<bool> ostaje(static_cast<size_t>(n), true);
    for (const int r : izabrani)
        if (r >= 1 && r <= n)
            ostaje[static_cast<size_t>(r) - 1] = false;
    Zadrzi(ostaje);
    Prenumerisi();
    const int red = std::min(izabrani.front(), m_pKombinacije->GetSize());
    grid.SetSelectedRows(red >= 1 ? std::vector<int>{red} : std::vector<int>{});
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

void CDlgKombOpt::BrisiSve() {
    const int odgovor = CVortaMessageBox::MessageBoxW(
        ClTranslator::Translate(L"Da li zelite da obrisete sve kombinacije?"),
        ClTranslator::Translate(L"Upozorenje"),
        CVortaMessageBox::MB_YESNO | CVortaMessageBox::MB_ICONWARNING);
    if (odgovor == CVortaMessageBox::IDNO || m_pKombinacije->GetSize() == 0)
        return;
    for (int i = m_pKombinacije->GetSize() - 1; i >= 0; --i)
        Obrisana((*m_pKombinacije)[i]);
    m_pKombinacije->RemoveAll();
    Dialog().Grid(IDC_GRID2).ClearSelection();
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

void CDlgKombOpt::Pomeri(int smer) {
    CGridModel& grid = Dialog().Grid(IDC_GRID2);
    const std::vector<int> izabrani = grid.GetSelectedRows();
    CKombOptItemArray& lista = *m_pKombinacije;
    if (izabrani.size() != 1)
        return;
    const int i = izabrani.front() - 1;
    const int j = i + smer;
    if (i < 0 || j < 0 || i >= lista.GetSize() || j >= lista.GetSize())
        return;
    const CKombOptItem premestena = lista[i];
    lista[i] = lista[j];
    lista[j] = premestena;
    Prenumerisi();
    grid.SetSelectedRows({j + 1});
    grid.EnsureVisible(j + 1, 1);
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

// ------------------------------------------------------------------------ order and names

void CDlgKombOpt::Sortiraj(int smer) {
    CKombOptItemArray& lista = *m_pKombinacije;
    const std::vector<int> poredak = kombsort::PoredakPosleSortiranja(lista, m_redniBrojevi, smer);
    // Sorting moves whole combinations (their ordinals follow on OK). The list is put in the
    // new order cycle by cycle, every combination copied once into a place whose text and
    // arrays it can reuse.
    std::vector<bool> naMestu(poredak.size(), false);
    CKombOptItem privremena;
    for (size_t pocetak = 0; pocetak < poredak.size(); ++pocetak) {
        if (naMestu[pocetak] || poredak[pocetak] == static_cast<int>(pocetak))
            continue;
        privremena = lista[static_cast<int>(pocetak)];
        size_t j = pocetak;
        for (;;) {
            naMestu[j] = true;
            const auto k = static_cast<size_t>(poredak[j]);
            if (k == pocetak) {
                lista[static_cast<int>(j)] = privremena;
                break;
            }
            lista[static_cast<int>(j)] = lista[static_cast<int>(k)];
            j = k;
        }
    }
    Dialog().Grid(IDC_GRID2).ClearSelection();
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

void CDlgKombOpt::IzbaciDuplikate() {
    Zadrzi(kombsort::PosleIzbacivanjaDuplikata(*m_pKombinacije, m_redniBrojevi));
    Prenumerisi();
    Dialog().Grid(IDC_GRID2).ClearSelection();
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

void CDlgKombOpt::GenerisiNaziv() {
    const std::vector<int>& izabrani = Dialog().Grid(IDC_GRID2).GetSelectedRows();
    if (izabrani.size() != 1)
        return;
    CKombOptItem& item = (*m_pKombinacije)[izabrani.front() - 1];
    const CString staro = item.GetNaziv();
    item.SetGenericName(nullptr, 0);
    if (item.GetNaziv() != staro) {
        m_bKombinacijeIzmenjene = 1;
        OsveziGrid2();
    }
}

void CDlgKombOpt::Pravila(bool nikad) {
    const std::vector<int> izabrani = Dialog().Grid(IDC_GRID1).GetSelectedRows();
    const bool dozvoljeno =
        !izabrani.empty() && std::none_of(izabrani.begin(), izabrani.end(), [&](int r) {
            const CSlOptItem& s = m_slucajevi[r - 1];
            return s.m_bStalno != 0 || s.m_bUticajnaLinija != 0;
        });
    if (!dozvoljeno)
        return;
    if (nikad) {
        CDlgMutEx dlg(m_slucajevi, m_bSlucajeviIzmenjeni, izabrani);
        dlg.DoModal();
    } else {
        CDlgInclusion dlg(m_slucajevi, m_bSlucajeviIzmenjeni, izabrani);
        dlg.DoModal();
    }
    // Whatever the answer, the rules may have changed.
    ObnoviPodskupove(true);
    NacrtajOznakePravila();
}
