#pragma once
// The dialog resources of the combination editor and the dialogs it opens: the combination
// editor (1002), the rules dialogs "Ne kombinuj sa" (1003) and "Uvek kombinuj sa" (1021), and
// the load case mapping of imported combinations (1006); their control ids, the commands of
// the sort menu and the colours they use.
#include "dialog/DialogModel.h"

#include <cstdint>

namespace kombres {

// ------------------------------------------------------------------ resources
enum : int {
    IDD_KOMBINACIJE = 1002,
    IDD_NE_KOMBINUJ = 1003,
    IDD_MAPIRANJE = 1006,
    IDD_UVEK_KOMBINUJ = 1021,
};

// ------------------------------------------------------------------ the combination editor
enum : int {
    IDC_BRISI = 1006,
    IDC_DODAJ = 1007,
    IDC_GENERISI = 1008,
    IDC_BROJ_KOMBINACIJA = 1009,
    IDC_NE_KOMBINUJ = 1010,
    IDC_GENERISI_NAZIV = 1011,
    IDC_DOLE = 1012,
    IDC_GORE = 1013,
    IDC_UVEK_KOMBINUJ = 1014,
    IDC_GRID1 = 1017,
    IDC_GRID2 = 1018,
    IDC_SORTIRANJE = 1033,
    IDC_BRISI_SVE = 1034,
    IDC_UVOZ_IZ_MODELA = 1035,
    IDC_UCITAJ_SKLADISTE = 1036,
    IDC_SNIMI_SKLADISTE = 1037,
    IDC_SA_KOPIRANJEM = 1038,
};

/// Commands of the sort menu.
enum : int {
    ID_SORT_OPADAJUCE = 36865,
    ID_SORT_RASTUCE = 36866,
    ID_IZBACI_DUPLIKATE = 36867,
};

// ------------------------------------------------------------------ the rules dialogs
enum : int {
    IDC_PRAVILA_GRID = 1030,
    IDC_UKLJUCI_SVE = 1032,
    IDC_ISKLJUCI_SVE = 1033,
};

// ------------------------------------------------------------------ the mapping dialog
enum : int {
    IDC_MAPIRANJE_GRID = 1030,
    IDC_PREGLED = 1036,
};

/// Colours (0x00BBGGRR): names of influence-line load cases, and the background of the
/// names of the load cases whose rules a rules dialog edits.
constexpr uint32_t kSivo = 0x808080;
constexpr uint32_t kPozadinaTekucih = 0xFFE0E0;

CDialogTemplate KombinacijeOpterecenja();
CDialogTemplate NeKombinujSa();
CDialogTemplate UvekKombinujSa();
CDialogTemplate MapiranjeSlucajeva();

} // namespace kombres
