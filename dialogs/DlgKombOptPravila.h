#pragma once
// CDlgKombOptPravila: what the two rules dialogs of the combination editor share. Opened for
// the load cases selected in the editor's load case grid (the current cases, the first of
// them the reference case), a rules dialog edits in place the never-combine or always-combine
// lists of the editor's load case list: a grid lists every load case with a mark, and a click
// on the mark of an eligible load case (not current, not permanent, not an influence-line
// case) puts it into the relation or takes it out. Cancel brings the list and the editor's
// modified flag back to what they were at opening.
#include "dialog/DialogPresenter.h"
#include "model/SlOptItem.h"

#include <vector>

class CDlgKombOptPravila : public CDialogPresenter {
public:
    /// izabraniRedovi: the 1-based rows selected in the editor's load case grid (row r shows
    /// load case r-1), in row order; at least one.
    CDlgKombOptPravila(CDialogTemplate tmpl, CSlOptItemArray& slucajevi, int& bIzmenjeno,
                       const std::vector<int>& izabraniRedovi);

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnButton(int id) override;
    void OnGridClick(CGridModel& grid, int row, int col) override;

    /// The list the relation lives in (never-combine or always-combine) of a load case.
    virtual OCArray<CId>& Lista(CSlOptItem& s) const = 0;
    /// The mark of a load case that is in the reference case's list.
    virtual int SlikaUListi() const = 0;
    /// What opening does before the grid is filled.
    virtual void Pripremi() {}
    /// Puts load case k into the relation with the current cases, or takes it out.
    virtual void Ukljuci(int k) = 0;
    virtual void Iskljuci(int k) = 0;
    /// Resolves contradictions with the other relation before OK closes.
    virtual void Razresi() = 0;

    int BrojSlucajeva() const { return m_slucajevi.GetSize(); }
    CSlOptItem& Slucaj(int k) { return m_slucajevi[k]; }
    const std::vector<int>& Tekuci() const { return m_tekuci; }
    bool JeTekuci(int k) const;
    /// Neither current nor permanent nor an influence-line case.
    bool Prihvatljiv(int k);
    /// Whether load case k is in the reference case's list.
    bool UListi(int k);
    /// The position of the load case with that id, -1 when none.
    int Polozaj(const CId& id) const;
    void PostaviIzmenjeno() { m_bIzmenjeno = 1; }

    static bool Ima(const OCArray<CId>& lista, const CId& id);
    /// Appends the id unless the list holds it already.
    static void Dodaj(OCArray<CId>& lista, const CId& id);
    /// Removes every occurrence of the id.
    static void Izbaci(OCArray<CId>& lista, const CId& id);

private:
    void Popuni();
    void PostaviOznaku(int k);

    CSlOptItemArray& m_slucajevi;
    CSlOptItemArray m_rezerva;
    int& m_bIzmenjeno;
    int m_bIzmenjenoNaPocetku = 0;
    bool m_bOtvoren = false; // the backup was taken
    std::vector<int> m_tekuci;
};
