#pragma once
// CDlgNazivSlucaja: "Naziv slucaja opterecenja" (resource 2091), the name of a load case being
// renamed or copied.
#include "dialogs/DlgNaziv.h"

class CDlgNazivSlucaja : public CDlgNaziv {
public:
    /// opis says what the name is for (shown under the edit).
    CDlgNazivSlucaja(const CString& naziv, const CString& opis);
};
