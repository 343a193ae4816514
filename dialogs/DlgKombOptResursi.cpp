// The dialog templates of the combination editor, the rules dialogs and the mapping of
// imported combinations, laid out in pixels with 8-pixel margins.
#include "dialogs/DlgKombOptResursi.h"

#include "text/Translator.h"

namespace kombres {

namespace {

constexpr int S = CDialogModel::kStaticId;
using K = EControlKind;

CControlSpec Dugme(int id, const wchar_t* text, int x, int y, int w, bool visible = true) {
    CControlSpec c{id, K::Button, text, x, y, w, 24};
    c.visible = visible;
    c.isDefault = id == IDOK;
    return c;
}

CControlSpec Kontrola(int id, K kind, const wchar_t* text, int x, int y, int w, int h) {
    return CControlSpec{id, kind, text, x, y, w, h};
}

/// The two rules dialogs differ only in id, caption and explanation.
CDialogTemplate Pravila(int id, const wchar_t* caption, const wchar_t* objasnjenje) {
    return {id,
            caption,
            440,
            452,
            {Kontrola(IDC_PRAVILA_GRID, K::Static, L"$$Grid", 8, 8, 424, 345),
             Kontrola(S, K::Static, objasnjenje, 8, 361, 424, 48),
             Dugme(IDC_UKLJUCI_SVE, Tr(L"Ukljuci sve"), 8, 420, 110),
             Dugme(IDC_ISKLJUCI_SVE, Tr(L"Iskljuci sve"), 126, 420, 110),
             Dugme(IDOK, Tr(L"OK"), 248, 420, 88), Dugme(IDCANCEL, Tr(L"Cancel"), 344, 420, 88)}};
}

} // namespace

CDialogTemplate KombinacijeOpterecenja() {
    // The combinations above across the whole width; below them the buttons that work on the
    // list; lower left the load cases with their rules, lower right generation, storage and
    // import, OK and Cancel.
    return {IDD_KOMBINACIJE,
            Tr(L"Kombinacije opterecenja"),
            1000,
            700,
            {Kontrola(IDC_GRID2, K::Static, L"$$Grid2", 8, 8, 984, 385),
             Dugme(IDC_DODAJ, Tr(L"Dodaj"), 8, 401, 90),
             Kontrola(IDC_SA_KOPIRANJEM, K::CheckBox, Tr(L"Sa kopiranjem"), 106, 401, 120, 24),
             Dugme(IDC_BRISI, Tr(L"Brisi"), 234, 401, 90),
             Dugme(IDC_BRISI_SVE, Tr(L"Brisi sve"), 332, 401, 90),
             Dugme(IDC_GORE, Tr(L"Gore"), 430, 401, 70),
             Dugme(IDC_DOLE, Tr(L"Dole"), 508, 401, 70),
             Dugme(IDC_SORTIRANJE, Tr(L"Sortiranje"), 586, 401, 100),
             Dugme(IDC_GENERISI_NAZIV, Tr(L"Generisi naziv"), 694, 401, 120, false),
             Kontrola(IDC_GRID1, K::Static, L"$$Grid1", 8, 433, 600, 245),
             Dugme(IDC_NE_KOMBINUJ, Tr(L"Ne kombinuj sa"), 620, 433, 182),
             Dugme(IDC_UVEK_KOMBINUJ, Tr(L"Uvek kombinuj sa"), 810, 433, 182),
             Dugme(IDC_GENERISI, Tr(L"Generisanje kombinacija"), 620, 465, 372),
             Kontrola(S, K::Static, Tr(L"Broj mogucih kombinacija je"), 620, 501, 200, 20),
             Kontrola(IDC_BROJ_KOMBINACIJA, K::Static, L"$$Static", 828, 501, 164, 20),
             Dugme(IDC_UCITAJ_SKLADISTE, Tr(L"Ucitavanje kombinacija iz skladista"), 620, 533, 372),
             Dugme(IDC_SNIMI_SKLADISTE, Tr(L"Snimanje kombinacija u skladiste"), 620, 565, 372),
             Dugme(IDC_UVOZ_IZ_MODELA, Tr(L"Uvoz kombinacija iz drugog modela"), 620, 597, 372),
             Dugme(IDOK, Tr(L"OK"), 792, 654, 96),
             Dugme(IDCANCEL, Tr(L"Cancel"), 896, 654, 96)}};
}

CDialogTemplate NeKombinujSa() {
    return Pravila(IDD_NE_KOMBINUJ, Tr(L"Ne kombinuj sa"),
                   Tr(L"Tekuce opterecenje se nece javljati u kombinacijama u kojima se javljaju "
                      L"selektovana opterecenja."));
}

CDialogTemplate UvekKombinujSa() {
    return Pravila(
        IDD_UVEK_KOMBINUJ, Tr(L"Uvek kombinuj sa"),
        Tr(L"Tekuce opterecenje ce se javljati samo u kombinacijama u kojima se javljaju "
           L"sva selektovana opterecenja."));
}

CDialogTemplate MapiranjeSlucajeva() {
    return {IDD_MAPIRANJE,
            Tr(L"Mapiranje slucajeva opterecenja"),
            560,
            511,
            {Kontrola(IDC_MAPIRANJE_GRID, K::Static, L"$$Grid", 8, 8, 544, 285),
             Kontrola(S, K::Static, Tr(L"Pregled kombinacija opterecenja"), 8, 301, 300, 16),
             Kontrola(IDC_PREGLED, K::ListBox, L"", 8, 321, 544, 150),
             Dugme(IDOK, Tr(L"OK"), 368, 479, 88), Dugme(IDCANCEL, Tr(L"Cancel"), 464, 479, 88)}};
}

} // namespace kombres
