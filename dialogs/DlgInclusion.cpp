// "Uvek kombinuj sa": the one-way always-combine relation of the current load cases.
#include "dialogs/DlgInclusion.h"

#include "dialogs/DlgKombOptResursi.h"
#include "grid/GridImages.h"

CDlgInclusion::CDlgInclusion(CSlOptItemArray& slucajevi, int& bIzmenjeno,
                             const std::vector<int>& izabraniRedovi)
    : CDlgKombOptPravila(kombres::UvekKombinujSa(), slucajevi, bIzmenjeno, izabraniRedovi) {}

int CDlgInclusion::SlikaUListi() const {
    return GridImage::Uvek;
}

void CDlgInclusion::Ukljuci(int k) {
    for (const int t : Tekuci())
        Dodaj(Slucaj(t).m_arrUvekKombinujSa, Slucaj(k).m_Id);
}

void CDlgInclusion::Iskljuci(int k) {
    for (const int t : Tekuci())
        Izbaci(Slucaj(t).m_arrUvekKombinujSa, Slucaj(k).m_Id);
}

void CDlgInclusion::Razresi() {
    // A pair that must always be combined cannot be one that may never be: the never-combine
    // entries between the current cases and the cases marked here go, on both sides.
    const OCArray<CId> uvek = Slucaj(Tekuci().front()).m_arrUvekKombinujSa;
    for (const CId& idL : uvek) {
        const int l = Polozaj(idL);
        for (const int t : Tekuci()) {
            CSlOptItem& k = Slucaj(t);
            const bool uK = Ima(k.m_arrNeKombinujSa, idL);
            const bool uL = l >= 0 && Ima(Slucaj(l).m_arrNeKombinujSa, k.m_Id);
            if (!uK && !uL)
                continue;
            Izbaci(k.m_arrNeKombinujSa, idL);
            if (l >= 0)
                Izbaci(Slucaj(l).m_arrNeKombinujSa, k.m_Id);
        }
    }
}
