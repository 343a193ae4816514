// The editor runners of the application object.
#include "dialogs/Editors.h"

#include "dialogs/DlgKombOpt.h"
#include "dialogs/EditoriOpterecenja.h"
#include "services/Opterecenje.h"

namespace {

int KombinacijeOpterecenja() {
    CDlgKombOpt dlg;
    return dlg.DoModal();
}

} // namespace

void opterecenje::PostaviEditore() {
    COpterecenjeApp::gfnOdradiKombinacijeOpterecenjaDlg = &KombinacijeOpterecenja;
    COpterecenjeApp::gfnOdradiStabilnostDlg = &StabilnostDlg;
    COpterecenjeApp::gfnOdradiSlucajeviOpterecenjaDlg = &SlucajeviOpterecenjaDlg;
    COpterecenjeApp::gfnOdradiOdabirOpterecenjaDlg = &AnvelopeDlg;
}
