// The name of a load case being renamed or copied.
#include "dialogs/DlgNazivSlucaja.h"

#include "dialogs/EditoriResursi.h"
#include "text/Translator.h"

CDlgNazivSlucaja::CDlgNazivSlucaja(const CString& naziv, const CString& opis)
    : CDlgNaziv(edres::NazivSlucaja(), naziv, opis, Tr(L"Naziv ne sme biti prazan.")) {}
