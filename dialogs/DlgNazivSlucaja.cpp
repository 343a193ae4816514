// The name of a load case being renamed or copied.
#include "dialogs/DlgNazivSlucaja.h"

#include "dialogs/EditoriResursi.h"
#include "host/MessageBox.h"
#include "text/Translator.h"

CString BezRazmaka(const CString& tekst) {
    const size_t prvi = tekst.find_first_not_of(L" \t");
    if (prvi == CString::npos)
        return CString();
    return tekst.substr(prvi, tekst.find_last_not_of(L" \t") - prvi + 1);
}

CDlgNazivSlucaja::CDlgNazivSlucaja(const CString& naziv, const CString& opis)
    : CDialogPresenter(edres::NazivSlucaja()), m_strNaziv(naziv), m_strOpis(opis) {}

void CDlgNazivSlucaja::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    d.SetText(edres::IDC_NAZIV, m_strNaziv);
    d.SetText(edres::IDC_OPIS, m_strOpis);
    d.SetFocus(edres::IDC_NAZIV);
}

void CDlgNazivSlucaja::OnOK() {
    const CString naziv = BezRazmaka(Dialog().GetText(edres::IDC_NAZIV));
    if (naziv.IsEmpty()) {
        CVortaMessageBox::MessageBoxW(ClTranslator::Translate(L"Naziv ne sme biti prazan."),
                                      ClTranslator::Translate(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        Dialog().SetFocus(edres::IDC_NAZIV);
        return;
    }
    m_strNaziv = naziv;
    EndDialog(IDOK);
}
