// The name under which an envelope is saved.
#include "dialogs/DlgSnimi.h"

#include "dialogs/EditoriResursi.h"
#include "text/Translator.h"

CDlgSnimi::CDlgSnimi(const CString& naziv, const CString& opis)
    : CDlgNaziv(edres::Snimi(), naziv, opis, Tr(L"Unesite naziv anvelope.")) {}
