// The dialog templates of the SRSS editor, the stability dialog and the further load editors,
// laid out in pixels with 8-pixel margins.
#include "dialogs/EditoriResursi.h"

#include "text/Translator.h"

namespace edres {

namespace {

constexpr int S = CDialogModel::kStaticId;
using K = EControlKind;

CControlSpec Dugme(int id, const wchar_t* text, int x, int y, int w) {
    CControlSpec c{id, K::Button, text, x, y, w, 24};
    c.isDefault = id == IDOK;
    return c;
}

CControlSpec Kontrola(int id, K kind, const wchar_t* text, int x, int y, int w, int h) {
    return CControlSpec{id, kind, text, x, y, w, h};
}

} // namespace

CDialogTemplate SRSSKombinacije() {
    // The SRSS cases with a column per load case across most of the width; beside them the
    // names of the load cases that head those columns.
    return {IDD_SRSS,
            Tr(L"SRSS kombinacije opterecenja"),
            900,
            500,
            {Kontrola(IDC_GRID2, K::Static, L"$$Grid2", 8, 8, 640, 420),
             Kontrola(IDC_GRID1, K::Static, L"$$Grid1", 656, 8, 236, 420),
             Kontrola(S, K::Static,
                      Tr(L"U slucaju promena kod SRSS kombinacija rezultati dimenzionisanja ce "
                         L"biti obrisani."),
                      8, 436, 884, 20),
             Dugme(IDC_DODAJ, Tr(L"Dodaj"), 8, 466, 80),
             Dugme(IDC_BRISI, Tr(L"Brisi"), 96, 466, 80),
             Dugme(IDC_BRISI_SVE, Tr(L"Brisi sve"), 184, 466, 90),
             Dugme(IDC_GORE, Tr(L"Gore"), 282, 466, 80), Dugme(IDC_DOLE, Tr(L"Dole"), 370, 466, 80),
             Dugme(IDOK, Tr(L"OK"), 724, 466, 80), Dugme(IDCANCEL, Tr(L"Cancel"), 812, 466, 80)}};
}

CDialogTemplate ProracunStabilnosti() {
    CControlSpec torzija =
        Kontrola(IDC_TORZIJA, K::CheckBox,
                 Tr(L"Iskljucivanje torzije greda u horizontalnim plocama"), 8, 416, 480, 20);
    return {IDD_STABILNOST,
            Tr(L"Proracun stabilnosti"),
            672,
            480,
            {Kontrola(S, K::Static, Tr(L"Slucajevi opterecenja"), 8, 8, 260, 16),
             Kontrola(IDC_GRID1, K::Static, L"$$Grid1", 8, 28, 260, 305),
             Kontrola(IDC_PRAZNO, K::Static, L"$$", 8, 336, 652, 16),
             Kontrola(IDC_TEKST_INTERVAL, K::Static,
                      Tr(L"Interval u kome se trazi  vrednost za kriticno #gd#g"), 8, 362, 360, 20),
             Kontrola(IDC_TEKST_TACNOST, K::Static, Tr(L"Tacnost proracunatog koeficijenta #gd#g"),
                      8, 390, 360, 20),
             torzija, Kontrola(S, K::Static, Tr(L"Kombinacije opterecenja"), 280, 8, 380, 16),
             Kontrola(IDC_GRID2, K::Static, L"$$Grid2", 280, 28, 380, 305),
             Kontrola(IDC_NULA, K::Static, L"$$0 - ", 376, 362, 30, 20),
             Kontrola(IDC_INTERVAL, K::NumberEdit, L"", 410, 360, 80, 22),
             Kontrola(IDC_TACNOST, K::NumberEdit, L"", 410, 388, 80, 22),
             Dugme(IDOK, Tr(L"OK"), 488, 448, 80), Dugme(IDCANCEL, Tr(L"Cancel"), 580, 448, 80)}};
}

CDialogTemplate SlucajeviOpterecenja() {
    // The load cases across most of the dialog; the buttons that work on them in a column at
    // the right, OK and Cancel at its foot.
    return {IDD_SLUCAJEVI,
            Tr(L"Slucajevi opterecenja"),
            940,
            560,
            {Kontrola(IDC_GRID1, K::Static, L"$$Grid1", 8, 8, 770, 544),
             Dugme(IDC_DODAJ, Tr(L"Dodaj"), 786, 8, 146),
             Dugme(IDC_KOPIRAJ, Tr(L"Kopiraj"), 786, 40, 146),
             Dugme(IDC_PREIMENUJ, Tr(L"Preimenuj"), 786, 72, 146),
             Dugme(IDC_BRISI, Tr(L"Brisi"), 786, 104, 146),
             Dugme(IDC_GORE, Tr(L"Gore"), 786, 144, 146),
             Dugme(IDC_DOLE, Tr(L"Dole"), 786, 176, 146),
             Dugme(IDC_SRSS, Tr(L"SRSS kombinacije..."), 786, 216, 146),
             Dugme(IDOK, Tr(L"OK"), 786, 496, 146), Dugme(IDCANCEL, Tr(L"Cancel"), 786, 528, 146)}};
}

CDialogTemplate NazivSlucaja() {
    return {IDD_NAZIV_SLUCAJA,
            Tr(L"Naziv slucaja opterecenja"),
            400,
            112,
            {Kontrola(S, K::Static, Tr(L"Naziv:"), 8, 12, 60, 20),
             Kontrola(IDC_NAZIV, K::Edit, L"", 72, 8, 320, 24),
             Kontrola(IDC_OPIS, K::Static, L"$$", 8, 44, 384, 20),
             Dugme(IDOK, Tr(L"OK"), 224, 80, 80), Dugme(IDCANCEL, Tr(L"Cancel"), 312, 80, 80)}};
}

CDialogTemplate Anvelope() {
    // The envelopes of the model at the left; at the right the selection being composed, how
    // it is enveloped and what it holds; below, the load that OK shows in the results.
    return {IDD_ANVELOPE,
            Tr(L"Anvelope i izbor opterecenja"),
            760,
            470,
            {Kontrola(S, K::Static, Tr(L"Anvelope"), 8, 8, 360, 20),
             Kontrola(IDC_ANVELOPE, K::ListBox, L"", 8, 30, 360, 340),
             Dugme(IDC_BRISI, Tr(L"Brisi"), 8, 378, 110),
             Dugme(IDC_AKTIVIRAJ, Tr(L"Aktiviraj"), 126, 378, 110),
             Kontrola(S, K::Static, Tr(L"Izbor opterecenja (npr. 1,3-5,12):"), 384, 8, 368, 20),
             Kontrola(IDC_IZBOR, K::Edit, L"", 384, 30, 270, 24),
             Dugme(IDC_ODABERI, Tr(L"Odaberi..."), 662, 30, 90),
             Kontrola(S, K::Static, Tr(L"Nacin anvelopiranja:"), 384, 66, 368, 20),
             Kontrola(IDC_MOD, K::ComboBox, L"", 384, 88, 368, 24),
             Kontrola(IDC_SADRZAJ, K::Static, L"$$", 384, 124, 368, 60),
             Dugme(IDC_SNIMI, Tr(L"Snimi..."), 384, 192, 110),
             Kontrola(IDC_PRIKAZ, K::Static, L"$$", 8, 410, 744, 20),
             Dugme(IDOK, Tr(L"OK"), 584, 438, 80), Dugme(IDCANCEL, Tr(L"Cancel"), 672, 438, 80)}};
}

CDialogTemplate Snimi() {
    return {IDD_SNIMI,
            Tr(L"Snimi"),
            400,
            136,
            {Kontrola(S, K::Static, Tr(L"Naziv anvelope:"), 8, 12, 110, 20),
             Kontrola(IDC_NAZIV, K::Edit, L"", 120, 8, 272, 24),
             Kontrola(IDC_OPIS, K::Static, L"$$", 8, 44, 384, 40),
             Dugme(IDOK, Tr(L"OK"), 224, 104, 80), Dugme(IDCANCEL, Tr(L"Cancel"), 312, 104, 80)}};
}

CDialogTemplate IzborOpterecenja() {
    return {IDD_IZBOR_OPTERECENJA,
            Tr(L"Izbor opterecenja"),
            620,
            560,
            {Kontrola(S, K::Static, Tr(L"Slucajevi i kombinacije opterecenja:"), 8, 8, 604, 20),
             Kontrola(IDC_GRID1, K::Static, L"$$Grid1", 8, 30, 604, 420),
             Kontrola(S, K::Static, Tr(L"Izabrana opterecenja (npr. 1,3-5,12):"), 8, 458, 604, 20),
             Kontrola(IDC_IZBOR, K::Edit, L"", 8, 480, 500, 24),
             Dugme(IDC_PRIMENI, Tr(L"Primeni"), 516, 480, 96), Dugme(IDOK, Tr(L"OK"), 444, 528, 80),
             Dugme(IDCANCEL, Tr(L"Cancel"), 532, 528, 80)}};
}

} // namespace edres
