#pragma once
// The runners of the SRSS editor, the stability dialog and the further load editors: each
// opens its dialog through the host's modal runner. The set-up of the dialogs layer gives the
// application object those it runs for its commands; the editors open each other through the
// rest.
#include <vector>

class CStabilnostParams;

namespace opterecenje {

/// The SRSS editor; IDOK or IDCANCEL.
int SRSSKombinacijeDlg();
/// The stability dialog over the parameters, which change only when it is confirmed; 1 then.
int StabilnostDlg(void* hParent, CStabilnostParams& params);
/// The load case list editor; IDOK or IDCANCEL.
int SlucajeviOpterecenjaDlg();
/// The envelopes and the choice of the load shown in the results; IDOK or IDCANCEL.
int AnvelopeDlg();
/// The selection of loads on the global scale (load cases and combinations), starting from
/// the given ordinals; true and the chosen ordinals (ascending) when confirmed.
bool IzborOpterecenjaDlg(std::vector<int>& redniBrojevi);

} // namespace opterecenje
