// The name under which an envelope is saved.
#include "dialogs/DlgSnimi.h"

#include "dialogs/DlgNazivSlucaja.h"
#include "dialogs/EditoriResursi.h"
#include "host/MessageBox.h"
#include "text/Translator.h"

CDlgSnimi::CDlgSnimi(const CString& naziv, const CString& opis)
    : CDialogPresenter(edres::Snimi()), m_strNaziv(naziv), m_strOpis(opis) {}

void CDlgSnimi::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    d.SetText(edres::IDC_NAZIV, m_strNaziv);
    d.SetText(edres::IDC_OPIS, m_strOpis);
    d.SetFocus(edres::IDC_NAZIV);
}

void CDlgSnimi::OnOK() {
    const CString naziv = BezRazmaka(Dialog().GetText(edres::IDC_NAZIV));
    if (naziv.IsEmpty()) {
        CVortaMessageBox::MessageBoxW(ClTranslator::Translate(L"Unesite naziv anvelope."),
                                      ClTranslator::Translate(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        Dialog().SetFocus(edres::IDC_NAZIV);
        return;
    }
    m_strNaziv = naziv;
    EndDialog(IDOK);
}
