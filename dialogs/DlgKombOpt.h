#pragma once
// CDlgKombOpt: "Kombinacije opterecenja" (resource 1002), the editor of the model's load
// combinations.
//
// The lower-left grid (Grid1) lists the load cases with what drives the generation of
// combinations: coefficient, permanent ("St."), alternating ("A.") and the marks of the
// never-combine and always-combine rules of the selected case. The upper grid (Grid2) lists
// the combinations, one row per combination and one column per load case. The editor
// generates every admissible combination from the rules (each subset of load cases with its
// sign variants of the alternating cases), edits them cell by cell, adds, deletes, moves,
// sorts and removes duplicates, keeps a copy in the model's combination storage and brings
// combinations back from the storage or from another model file.
//
// It works on copies: nothing but the storage reaches the object store before OK, which
// writes the load cases and the combinations back in one undo step.
#include "dialog/DialogPresenter.h"
#include "dialogs/KombPodskupovi.h"
#include "model/KombOptItem.h"
#include "model/SlOptItem.h"

#include <memory>
#include <vector>

class CBaseManager;

class CDlgKombOpt : public CDialogPresenter {
public:
    /// The most combinations a generation may leave in the list.
    static constexpr int kMaxKombinacija = 1 << 18;

    CDlgKombOpt();
    ~CDlgKombOpt() override;

    /// The editor's copies, for hosts that drive it from a script and for tests.
    const CSlOptItemArray& Slucajevi() const { return m_slucajevi; }
    const CKombOptItemArray& Kombinacije() const { return *m_pKombinacije; }
    const CTabelaPodskupova& Podskupovi() const { return m_podskupovi; }
    int BrojMogucihKombinacija() const { return m_nBrojMogucih; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnButton(int id) override;
    void OnMenuCommand(int command) override;
    bool OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) override;
    void OnGridCheckChanged(CGridModel& grid, int row, int col) override;
    void OnGridSelChanged(CGridModel& grid) override;

private:
    // ---- start-up, grids and states (DlgKombOpt.cpp)
    void UcitajKombinacije();
    void PripremiGrid1();
    void PripremiGrid2();
    /// The cell (row, col) of Grid2, made from the list when the view asks for it.
    void CelijaGrid2(int row, int col, CGridCell& cell) const;
    /// Grid2 after a change of the list: its rows and cells anew.
    void OsveziGrid2();
    /// The rule marks of Grid1 and the states of the two rule buttons.
    void NacrtajOznakePravila();
    void OsveziDugmad();
    /// Rebuilds the rule sets (when asked), enumerates the subsets and shows the count.
    void ObnoviPodskupove(bool pravila);
    void PrikaziBroj();
    bool UrediKoeficijentSlucaja(CGridModel& grid, int row, const CString& text);
    void PromenaStalnog();
    void PromenaAlternativnog(CGridModel& grid, int row);
    bool UrediKombinaciju(int row, int col, const CString& text);
    void Upozori(const CString& poruka);

    // ---- the list (DlgKombOptLista.cpp)
    void Generisi();
    void Dodaj();
    void Brisi();
    void BrisiSve();
    void Pomeri(int smer);
    void Sortiraj(int smer);
    void IzbaciDuplikate();
    void GenerisiNaziv();
    void Pravila(bool nikad);
    /// Ordinal = index + 1 for every combination.
    void Prenumerisi();
    /// Moves a removed combination's id to the deleted list (when it was stored).
    void Obrisana(const CKombOptItem& item);
    /// The list becomes the combinations whose flag is set, the others go to the deleted list.
    void Zadrzi(const std::vector<bool>& ostaje);

    // ---- storage, imports and OK (DlgKombOptUpis.cpp)
    void SnimiUSkladiste();
    void UcitajIzSkladista();
    void UvozIzModela();
    void DodajUvezene(const CKombOptItemArray& uvezene);
    /// The first combination that is empty or all of whose coefficients are zero; -1 when
    /// there is none.
    int PrvaNulta() const;
    void UpisiSlucajeve(CBaseManager& bm) const;
    /// Returns how many stored combinations were deleted.
    int UpisiKombinacije(CBaseManager& bm);

    CSlOptItemArray m_slucajevi;
    std::unique_ptr<CKombOptItemArray> m_pKombinacije;
    /// The deleted list: the stored combinations removed from the working list, by id (all
    /// that OK needs of them).
    std::vector<CId> m_obrisane;
    int m_bSlucajeviIzmenjeni = 0;
    int m_bKombinacijeIzmenjene = 0;
    CTabelaPodskupova m_podskupovi;
    int m_nBrojMogucih = 0;
    /// Load case ordinals by id, for names and the order of combinations.
    CRedniBrojeviSlOpt m_redniBrojevi;
    CPopupMenu m_meniSortiranja;
    CString m_strNaziv; // the heading "Naziv", translated once
    // The seismic mark of Grid2 (Bulgarian only): the seismic status of every load case and
    // combination, gathered once.
    bool m_bSeizmickaOznaka = false;
    CArray<int> m_slStatus;
    CArray<CId> m_slIds;
    CArray<int> m_kombStatus;
    CArray<CId> m_kombIds;
};
