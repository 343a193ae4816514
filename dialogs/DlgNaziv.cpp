// A dialog that asks for one name.
#include "dialogs/DlgNaziv.h"

#include "dialogs/EditoriResursi.h"
#include "host/MessageBox.h"
#include "text/Translator.h"

#include <utility>

CString BezRazmaka(const CString& tekst) {
    const size_t prvi = tekst.find_first_not_of(L" \t");
    if (prvi == CString::npos)
        return CString();
    return tekst.substr(prvi, tekst.find_last_not_of(L" \t") - prvi + 1);
}

CDlgNaziv::CDlgNaziv(CDialogTemplate tmpl, const CString& naziv, const CString& opis,
                     const wchar_t* prazan)
    : CDialogPresenter(std::move(tmpl)), m_strNaziv(naziv), m_strOpis(opis), m_prazan(prazan) {}

void CDlgNaziv::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    d.SetText(edres::IDC_NAZIV, m_strNaziv);
    d.SetText(edres::IDC_OPIS, m_strOpis);
    d.SetFocus(edres::IDC_NAZIV);
}

void CDlgNaziv::OnOK() {
    const CString naziv = BezRazmaka(Dialog().GetText(edres::IDC_NAZIV));
    if (naziv.IsEmpty()) {
        CVortaMessageBox::MessageBoxW(ClTranslator::Translate(m_prazan),
                                      ClTranslator::Translate(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        Dialog().SetFocus(edres::IDC_NAZIV);
        return;
    }
    m_strNaziv = naziv;
    EndDialog(IDOK);
}
