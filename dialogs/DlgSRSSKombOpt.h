#pragma once
// CDlgSRSSKombOpt: "SRSS kombinacije opterecenja" (resource 2090), the editor of the model's
// SRSS load cases: load cases whose results are the square root of the sum of squares of the
// results of other load cases, each weighted by a coefficient. An SRSS case keeps the squares
// of the coefficients as the factors of its SRSS unit. The editor works on copies; OK writes
// the SRSS cases back in one undo step, and the host then deletes the results of dimensioning.
#include "dialog/DialogPresenter.h"
#include "model/LoadCaseDescriptions.h"
#include "objbase/Id.h"

#include <unordered_map>
#include <vector>

class CDlgSRSSKombOpt : public CDialogPresenter {
public:
    CDlgSRSSKombOpt();

    /// The entries as the dialog holds them (ordinal, name, id), in display order.
    struct Stavka {
        int nRedniBroj = 0;
        CString naziv;
        CId id; // invalid for an entry added in the dialog
    };
    const std::vector<Stavka>& Stavke() const { return m_stavke; }
    const std::vector<CLoadCaseUnit>& Jedinice() const { return m_jedinice; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnButton(int id) override;
    bool OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) override;

private:
    /// A load case offered for SRSS cases: one column of the grid.
    struct Ponudjen {
        int nRedniBroj = 0;
        CString naziv;
        int nGrupa = -1; // multimodal group, -1 for none
    };

    bool Ucitaj();
    void PopuniGrid();
    void PopuniRed(int i);
    void PopuniImena();
    /// Entry i gets ordinal base + i + 1.
    void Prenumerisi();
    /// The entry of the selected row (or of the focus row), -1 for none.
    int IzabranaStavka() const;
    void FokusNaStavku(int i, int col = 1);
    /// "SRSS: " and the name that a combination made of the unit's load cases gets.
    CString GenerickiNaziv(const CLoadCaseUnit& unit) const;
    bool UrediKoeficijent(int i, int kolona, const CString& text);
    void Upisi();

    void Dodaj();
    void Brisi();
    void BrisiSve();
    void Pomeri(int smer);

    CGridModel* m_pGrid = nullptr;  // the SRSS cases (Grid2)
    CGridModel* m_pImena = nullptr; // ordinal and name of every column's load case (Grid1)
    std::vector<Stavka> m_stavke;
    std::vector<CLoadCaseUnit> m_jedinice; // parallel to m_stavke
    std::vector<Ponudjen> m_ponudjeni;
    std::unordered_map<int, CId> m_slucajPoRednomBroju; // every load case, for names
    int m_nBazni = 0;
    bool m_bIzmenjen = false;
};
