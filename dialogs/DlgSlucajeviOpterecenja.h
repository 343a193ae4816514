#pragma once
// CDlgSlucajeviOpterecenja: "Slucajevi opterecenja" (resource 1000), the list of the model's
// load cases: ordinal, name, g marker, coefficient, seismic flag, whether the case enters the
// seismic analysis, NDA mark and number of multimodal tones, with the influence line and the
// SRSS composition shown. Cases are added, copied (the host copies their individual loads),
// renamed, deleted (after a warning that names what goes with them) and moved; SRSS cases
// stay after the others. The editor works on a copy; OK writes it back in one undo step and
// every ordinal that refers to a load case follows. Its SRSS button opens the SRSS editor.
#include "dialog/DialogPresenter.h"
#include "dialogs/EditoriResursi.h"
#include "services/SlucajeviOpterecenja.h"

#include <vector>

class CDlgSlucajeviOpterecenja : public CDialogPresenter {
public:
    CDlgSlucajeviOpterecenja();

    const std::vector<opterecenje::CSlucajListe>& Lista() const { return m_lista; }

    /// Grid columns.
    using Kolona = edres::KolonaSlucajeva;
    using enum edres::KolonaSlucajeva;

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnButton(int id) override;
    bool OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) override;
    void OnGridCheckChanged(CGridModel& grid, int row, int col) override;

private:
    void PopuniGrid();
    void PopuniRed(int i);
    /// The index of the first SRSS case (the list's size when there is none).
    int PocetakSRSS() const;
    /// Selected rows as list indices, ascending (the focus row when nothing is selected).
    std::vector<int> Izabrani() const;
    void Izaberi(int i);
    CString TekstSRSS(const opterecenje::CSlucajListe& e) const;

    void Dodaj();
    void Kopiraj();
    void Preimenuj();
    void Brisi();
    void Pomeri(int smer);
    void SRSS();

    CGridModel* m_pGrid = nullptr;
    std::vector<opterecenje::CSlucajListe> m_lista;
    bool m_bIzmenjen = false;
};
