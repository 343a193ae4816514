#pragma once
// CDlgNazivSlucaja: "Naziv slucaja opterecenja" (resource 2091), the name of a load case being
// renamed or copied. A name may not be blank; blanks around it are dropped.
#include "dialog/DialogPresenter.h"

class CDlgNazivSlucaja : public CDialogPresenter {
public:
    /// opis says what the name is for (shown under the edit).
    CDlgNazivSlucaja(const CString& naziv, const CString& opis);

    const CString& Naziv() const { return m_strNaziv; }

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    CString m_strNaziv;
    CString m_strOpis;
};

/// The text without the blanks (spaces and tabs) around it.
CString BezRazmaka(const CString& tekst);
