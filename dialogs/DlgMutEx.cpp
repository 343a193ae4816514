// "Ne kombinuj sa": the symmetric never-combine relation of the current load cases.
#include "dialogs/DlgMutEx.h"

#include "dialogs/DlgKombOptResursi.h"
#include "grid/GridImages.h"

CDlgMutEx::CDlgMutEx(CSlOptItemArray& slucajevi, int& bIzmenjeno,
                     const std::vector<int>& izabraniRedovi)
    : CDlgKombOptPravila(kombres::NeKombinujSa(), slucajevi, bIzmenjeno, izabraniRedovi) {}

int CDlgMutEx::SlikaUListi() const {
    return GridImage::Nikad;
}

void CDlgMutEx::Pripremi() {
    // Several current cases share one mark per load case: a load case that is not in the
    // never-combine list of every one of them leaves the relation with all of them.
    for (int k = 0; k < BrojSlucajeva(); ++k) {
        if (!Prihvatljiv(k))
            continue;
        CSlOptItem& l = Slucaj(k);
        bool svi = true;
        for (const int t : Tekuci())
            svi = svi && Ima(Slucaj(t).m_arrNeKombinujSa, l.m_Id);
        if (svi)
            continue;
        for (const int t : Tekuci()) {
            Izbaci(Slucaj(t).m_arrNeKombinujSa, l.m_Id);
            Izbaci(l.m_arrNeKombinujSa, Slucaj(t).m_Id);
        }
    }
    PostaviIzmenjeno();
}

void CDlgMutEx::Ukljuci(int k) {
    CSlOptItem& l = Slucaj(k);
    for (const int t : Tekuci()) {
        Dodaj(l.m_arrNeKombinujSa, Slucaj(t).m_Id);
        Dodaj(Slucaj(t).m_arrNeKombinujSa, l.m_Id);
    }
}

void CDlgMutEx::Iskljuci(int k) {
    CSlOptItem& l = Slucaj(k);
    for (const int t : Tekuci()) {
        Izbaci(l.m_arrNeKombinujSa, Slucaj(t).m_Id);
        Izbaci(Slucaj(t).m_arrNeKombinujSa, l.m_Id);
    }
}

void CDlgMutEx::Razresi() {
    // A pair that may never be combined cannot be one that must always be: the always-combine
    // entries between the current cases and the cases marked here go.
    const OCArray<CId> nikad = Slucaj(Tekuci().front()).m_arrNeKombinujSa;
    for (const CId& idL : nikad) {
        const int l = Polozaj(idL);
        for (const int t : Tekuci()) {
            CSlOptItem& k = Slucaj(t);
            const bool uK = Ima(k.m_arrUvekKombinujSa, idL);
            const bool uL = l >= 0 && Ima(Slucaj(l).m_arrUvekKombinujSa, k.m_Id);
            if (!uK && !uL)
                continue;
            Izbaci(k.m_arrUvekKombinujSa, idL);
            if (l >= 0)
                Izbaci(Slucaj(l).m_arrUvekKombinujSa, k.m_Id);
        }
    }
}
