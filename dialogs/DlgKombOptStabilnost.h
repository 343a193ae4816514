#pragma once
// CDlgKombOptStabilnost: "Proracun stabilnosti" (resource 1005), in which the user prepares a
// stability (critical load factor) analysis: which combinations are analysed, which load
// cases keep a fixed coefficient and which are multiplied by the searched coefficient δ, the
// interval in which δ is searched and the accuracy at which the search stops. It edits its own
// copy of the parameters; the caller takes them after OK.
//
// The combinations (tens of thousands in a large model) come to their grid from a cell
// source; the load cases are held as cells.
#include "dialog/DialogPresenter.h"
#include "model/StabilnostParams.h"

#include <vector>

class CDlgKombOptStabilnost : public CDialogPresenter {
public:
    explicit CDlgKombOptStabilnost(const CStabilnostParams& params);

    const CStabilnostParams& Params() const { return m_params; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    bool OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) override;
    bool OnGridSetCheck(CGridModel& grid, int row, int col, bool checked) override;
    void OnGridCheckChanged(CGridModel& grid, int row, int col) override;
    void OnGridPopupCommand(CGridModel& grid, int row, int col, int command) override;

private:
    void UcitajNazive();
    void PopuniSlucajeve();
    /// Column 3 of load case i: its coefficient when it is fixed, δ (read-only) otherwise.
    void PopuniKoeficijent(int i);
    void KombinacijaCelija(int row, int col, CGridCell& cell) const;
    /// The checks of Grid1 into the fixed flags of the offered load cases.
    void ProcitajFiksne();

    CStabilnostParams m_params;
    std::vector<CString> m_naziviSlucajeva; // by ordinal - 1
    // The combinations' names as the store holds them (nothing is written while the dialog
    // runs), null for an item the store has no combination for.
    std::vector<const CString*> m_naziviKombinacija; // by own ordinal - 1
    CString m_strNaziv;                              // the header "Naziv"
    CString m_strDelta;                              // δ
    CGridModel* m_pSlucajevi = nullptr;              // Grid1
    CGridModel* m_pKombinacije = nullptr;            // Grid2
    int m_nMeniSlucajeva = -1;
    int m_nMeniKombinacija = -1;
};
