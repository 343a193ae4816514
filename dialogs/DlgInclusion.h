#pragma once
// CDlgInclusion: "Uvek kombinuj sa" (resource 1021), the always-combine rule of the current
// load cases. The relation is one-way: a load case marked is stored in the always-combine
// lists of the current cases only.
#include "dialogs/DlgKombOptPravila.h"

class CDlgInclusion : public CDlgKombOptPravila {
public:
    CDlgInclusion(CSlOptItemArray& slucajevi, int& bIzmenjeno,
                  const std::vector<int>& izabraniRedovi);

protected:
    OCArray<CId>& Lista(CSlOptItem& s) const override { return s.m_arrUvekKombinujSa; }
    int SlikaUListi() const override;
    void Ukljuci(int k) override;
    void Iskljuci(int k) override;
    void Razresi() override;
};
