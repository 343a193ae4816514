// A model's load cases as an editable list, and coefficients as text.
#include "dialogs/DlgKombOptPodaci.h"

#include "diag/Assert.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <cerrno>
#include <cmath>
#include <cwchar>
#include <vector>

namespace kombpodaci {

CSlOptItemArray SlucajeviModela(CObjBase& base) {
    CBaseManager bm(CSlucajOpterecenja::Type, &base);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int n = bm.Count();
    CSlOptItemArray lista;
    std::vector<const CSlucajOpterecenja*> van;
    bm.Select();
    for (CId Id = bm.GetFirst(); Id.Valid(); Id = bm.GetNext()) {
        VASSERT(Id.Valid());
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(Id));
        VASSERT(pSlOpt);
        const int r = pSlOpt->DajRedniBroj();
        if (r < 1 || r > n)
            van.push_back(pSlOpt);
        else
            lista.AddNew(pSlOpt->GetNaziv(0), r, 0, pSlOpt->GetgMarker(),
                         pSlOpt->IsUticajnaLinija() ? 1 : 0, Id, pSlOpt->GetKoeficijent(),
                         pSlOpt->GetStalno(), pSlOpt->GetAlternativno(), pSlOpt->GetNeKombinujSa(),
                         pSlOpt->GetUvekKombinujSa(), pSlOpt->DajUlaziUSeizmickiProracun());
    }
    for (const CSlucajOpterecenja* pSlOpt : van)
        lista.AddNew(pSlOpt->GetNaziv(0), lista.GetSize() + 1, 0, pSlOpt->GetgMarker(),
                     pSlOpt->IsUticajnaLinija() ? 1 : 0, pSlOpt->GetId(), pSlOpt->GetKoeficijent(),
                     pSlOpt->GetStalno(), pSlOpt->GetAlternativno(), pSlOpt->GetNeKombinujSa(),
                     pSlOpt->GetUvekKombinujSa(), pSlOpt->DajUlaziUSeizmickiProracun());
    bm.Close();
    return lista;
}

CString TekstKoeficijenta(double koef) {
    return CString::Formatted(L"%4.2f", std::floor(koef * 100.0 + 0.5) / 100.0);
}

bool ProcitajBroj(const CString& tekst, double& broj) {
    const wchar_t* pocetak = tekst.c_str();
    wchar_t* kraj = nullptr;
    errno = 0;
    const double vrednost = std::wcstod(pocetak, &kraj);
    if (kraj == pocetak || errno == ERANGE || !std::isfinite(vrednost))
        return false;
    while (*kraj == L' ' || *kraj == L'\t')
        ++kraj;
    if (*kraj != L'\0')
        return false;
    broj = vrednost;
    return true;
}

} // namespace kombpodaci
