#pragma once
// CDlgIzborOpterecenja: "Izbor opterecenja" (resource 1020), the selection of loads whose
// results are shown: every load case and combination on the global scale (load cases 1..N,
// combinations N+1..N+M), chosen in the grid or typed as a selection text (1,3-5,12). The
// combinations, tens of thousands in a large model, come to the grid from a cell source.
#include "dialog/DialogPresenter.h"

#include <vector>

class CDlgIzborOpterecenja : public CDialogPresenter {
public:
    /// Starts with the given ordinals chosen.
    explicit CDlgIzborOpterecenja(std::vector<int> izbor);

    /// The chosen ordinals, ascending, after OK.
    const std::vector<int>& Izbor() const { return m_izbor; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnButton(int id) override;
    void OnGridSelChanged(CGridModel& grid) override;

private:
    void Celija(int row, int col, CGridCell& cell) const;
    /// The selection text of the grid's chosen rows into the edit.
    void PrikaziIzbor();
    /// The edit's text as ordinals; false (after telling the user) when it is not valid.
    bool ProcitajTekst(std::vector<int>& izbor);

    std::vector<int> m_izbor;
    int m_nSlOpt = 0;
    int m_nKomb = 0;
    std::vector<CString> m_naziviSlucajeva; // by ordinal - 1
    // The combinations' names as the store holds them (nothing is written while the dialog
    // runs), null for an ordinal the store has no combination for.
    std::vector<const CString*> m_naziviKombinacija; // by own ordinal - 1
    CString m_strSlucaj;
    CString m_strKombinacija;
    CGridModel* m_pGrid = nullptr;
};

/// Tells the user that a selection text is not valid on a scale of n loads.
void NeispravanIzbor(const CString& izbor, int n);
