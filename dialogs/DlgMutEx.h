#pragma once
// CDlgMutEx: "Ne kombinuj sa" (resource 1003), the never-combine rule of the current load
// cases. The relation is kept symmetric: a load case marked for the current cases has them in
// its never-combine list and is in each of theirs.
#include "dialogs/DlgKombOptPravila.h"

class CDlgMutEx : public CDlgKombOptPravila {
public:
    CDlgMutEx(CSlOptItemArray& slucajevi, int& bIzmenjeno, const std::vector<int>& izabraniRedovi);

protected:
    OCArray<CId>& Lista(CSlOptItem& s) const override { return s.m_arrNeKombinujSa; }
    int SlikaUListi() const override;
    void Pripremi() override;
    void Ukljuci(int k) override;
    void Iskljuci(int k) override;
    void Razresi() override;
};
