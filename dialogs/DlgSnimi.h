#pragma once
// CDlgSnimi: "Snimi" (resource 1004), the name under which an envelope is saved. A name may
// not be blank; blanks around it are dropped.
#include "dialog/DialogPresenter.h"

class CDlgSnimi : public CDialogPresenter {
public:
    /// opis tells what is saved (shown under the name).
    CDlgSnimi(const CString& naziv, const CString& opis);

    const CString& Naziv() const { return m_strNaziv; }

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    CString m_strNaziv;
    CString m_strOpis;
};
