#pragma once
// CImportKombSkladDlg: "Mapiranje slucajeva opterecenja" (resource 1006) over a stored
// combination set. The set was stored with a snapshot of the load cases it was made for; the
// user maps every load case of the snapshot to a load case of the current model (or to
// none), and OK rewrites the stored combinations through that map into new combinations that
// the caller takes over.
#include "dialog/DialogPresenter.h"
#include "model/KombOptItem.h"
#include "model/SlOptItem.h"

#include <memory>
#include <set>
#include <vector>

class CImportKombSkladDlg : public CDialogPresenter {
public:
    /// The stored set: its combinations and its load case snapshot (both copied).
    CImportKombSkladDlg(const CKombOptItemArray& kombinacije, const CSlOptItemArray& slucajevi);

    /// The rewritten combinations after OK (empty otherwise), numbered after the model's
    /// existing combinations.
    const CKombOptItemArray& Rezultat() const { return m_rezultat; }

protected:
    /// For a source filled by a derived dialog.
    CImportKombSkladDlg();

    void OnInitDialog() override;
    void OnOK() override;

    /// The heading of the column of the source's load cases.
    virtual CString NaslovIzvora() const;

    CKombOptItemArray m_izvorKomb; // the combinations to bring over
    CSlOptItemArray m_izvorSlOpt;  // the load cases they were made for

private:
    /// Whether two rows are mapped to one current load case (as the mapping's check sees it).
    bool DvostrukoPreslikavanje() const;

    CSlOptItemArray m_tekuci;   // the current model's load cases, by ordinal
    std::set<int> m_iskljuceni; // options of influence-line load cases
    std::shared_ptr<const std::vector<CString>> m_opcije;
    CKombOptItemArray m_rezultat;
};
