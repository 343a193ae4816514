#pragma once
// CDlgNaziv: a dialog that asks for one name (a load case's, an envelope's). A name may not be
// blank; blanks around it are dropped.
#include "dialog/DialogPresenter.h"

class CDlgNaziv : public CDialogPresenter {
public:
    const CString& Naziv() const { return m_strNaziv; }

protected:
    /// opis says what the name is for (shown under the edit); prazan is the message, marked for
    /// translation, when the name is left blank.
    CDlgNaziv(CDialogTemplate tmpl, const CString& naziv, const CString& opis,
              const wchar_t* prazan);

    void OnInitDialog() override;
    void OnOK() override;

private:
    CString m_strNaziv;
    CString m_strOpis;
    const wchar_t* m_prazan;
};

/// The text without the blanks (spaces and tabs) around it.
CString BezRazmaka(const CString& tekst);
