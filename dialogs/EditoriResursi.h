#pragma once
// The dialog resources of the SRSS editor, the stability dialog and the further load editors:
// the load case list (1000) with its name dialog (2091), the envelopes and the choice of the
// load shown (1001) with the save dialog "Snimi" (1004), and the selection of loads (1020);
// their control ids.
#include "dialog/DialogModel.h"

#include <cstdint>

namespace edres {

// ------------------------------------------------------------------ resources
enum : int {
    IDD_SLUCAJEVI = 1000,
    IDD_ANVELOPE = 1001,
    IDD_SNIMI = 1004,
    IDD_STABILNOST = 1005,
    IDD_IZBOR_OPTERECENJA = 1020,
    IDD_SRSS = 2090,
    IDD_NAZIV_SLUCAJA = 2091,
};

// ------------------------------------------------------------------ controls
enum : int {
    IDC_BRISI = 1006,
    IDC_DODAJ = 1007,
    IDC_BRISI_SVE = 1008,
    IDC_KOPIRAJ = 1009,
    IDC_PREIMENUJ = 1010,
    IDC_SRSS = 1011,
    IDC_DOLE = 1012,
    IDC_GORE = 1013,
    IDC_NAZIV = 1015,
    IDC_OPIS = 1016,
    IDC_GRID1 = 1017,
    IDC_GRID2 = 1018,
    IDC_PRAZNO = 1019,
    IDC_INTERVAL = 1020,
    IDC_TACNOST = 1021,
    IDC_NULA = 1022,
    IDC_TEKST_INTERVAL = 1023,
    IDC_TEKST_TACNOST = 1024,
    IDC_ANVELOPE = 1036,
    IDC_IZBOR = 1037,
    IDC_MOD = 1038,
    IDC_SADRZAJ = 1039,
    IDC_AKTIVIRAJ = 1040,
    IDC_ODABERI = 1041,
    IDC_SNIMI = 1042,
    IDC_PRIKAZ = 1043,
    IDC_PRIMENI = 1044,
    IDC_TORZIJA = 2089,
};

/// Columns of the grid of the load case list (1000).
enum KolonaSlucajeva : int {
    kRedniBroj,
    kNaziv,
    kG,
    kKoeficijent,
    kSeizmicki,
    kSeizmickiProracun,
    kNDA,
    kTonovi,
    kUticajnaLinija,
    kSRSS,
    kBrojKolona
};

/// Popup commands of the stability dialog's check cells.
enum : int {
    ID_SLOPT_UKLJUCI_SVE = 1100,
    ID_SLOPT_ISKLJUCI_SVE = 1101,
    ID_KOMB_UKLJUCI_SVE = 1200,
    ID_KOMB_ISKLJUCI_SVE = 1201,
};

/// Colours (0x00BBGGRR): names of load cases that cannot take part, shown in grey.
constexpr uint32_t kSivo = 0x808080;

CDialogTemplate SRSSKombinacije();
CDialogTemplate ProracunStabilnosti();
CDialogTemplate SlucajeviOpterecenja();
CDialogTemplate NazivSlucaja();
CDialogTemplate Anvelope();
CDialogTemplate Snimi();
CDialogTemplate IzborOpterecenja();

} // namespace edres
