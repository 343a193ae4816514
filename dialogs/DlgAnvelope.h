#pragma once
// CDlgAnvelope: "Anvelope i izbor opterecenja" (resource 1001), where the user composes
// envelopes from load cases and combinations (a selection text such as 1,3-5,12 on the global
// scale, typed or chosen in the load selection dialog), saves them under a name ("Snimi"),
// deletes them, activates one, and chooses the load shown in the results: the activated
// envelope, else the load or loads of the selection (a selection of several loads that is not
// saved is shown as an envelope without a name). The envelopes are edited as a copy; OK writes
// them back in one undo step.
#include "dialog/DialogPresenter.h"
#include "services/Anvelope.h"

#include <vector>

class CDlgAnvelope : public CDialogPresenter {
public:
    CDlgAnvelope();

    const std::vector<opterecenje::CAnvelopaListe>& Anvelope() const { return m_anvelope; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnButton(int id) override;
    void OnSelChange(int id) override;
    void OnEditChange(int id) override;

private:
    int BrojOpterecenja() const { return m_nSlOpt + m_nKomb; }
    CString TekstAnvelope(int i) const;
    void PopuniListu(int izabrana);
    void PrikaziSadrzaj();
    void PrikaziAktivnu();
    /// The selection of the edit, normalized; false (after telling the user) when invalid.
    bool ProcitajIzbor(std::vector<int>& izbor);

    void Snimi();
    void Brisi();
    void Aktiviraj();
    void Odaberi();
    /// Shows in the results what the user chose (in the host's results mode only), with the
    /// results selector refilled.
    void Prikazi(const std::vector<int>& izbor);
    /// Makes envelope broj (1-based) the current load of the results selector.
    void PrikaziAnvelopu(int broj);

    std::vector<opterecenje::CAnvelopaListe> m_anvelope;
    int m_nSlOpt = 0;
    int m_nKomb = 0;
    int m_nAktivna = -1;        // index of the active envelope, -1 for none
    bool m_bAktivirano = false; // the user activated one in this dialog
    bool m_bIzmenjen = false;
    CId m_idPocetnoAktivne; // the envelope that was active when the dialog opened
};
