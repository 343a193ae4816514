#pragma once
// CDlgSnimi: "Snimi" (resource 1004), the name under which an envelope is saved.
#include "dialogs/DlgNaziv.h"

class CDlgSnimi : public CDlgNaziv {
public:
    /// opis tells what is saved (shown under the name).
    CDlgSnimi(const CString& naziv, const CString& opis);
};
