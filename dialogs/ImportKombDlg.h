#pragma once
// CImportKombDlg: the import of combinations from another model file. The same mapping as the
// import from storage (resource 1006), with the other model's load cases and combinations as
// the source.
#include "dialogs/ImportKombSkladDlg.h"
#include "objbase/ObjBase.h"

#include <filesystem>
#include <memory>

class CImportKombDlg : public CImportKombSkladDlg {
public:
    /// The source: the load cases and combinations of another model's object base (read
    /// here; the base is not kept).
    explicit CImportKombDlg(const CObjBase& izvor);

    /// Whether the source holds any combination to import.
    bool ImaKombinacija() const { return m_izvorKomb.GetSize() > 0; }

    /// Reads another model file into a base of its own; null with a message for the user
    /// (translated) when it cannot be read.
    static std::unique_ptr<CObjBase> UcitajModel(const std::filesystem::path& fajl,
                                                 CString& poruka);

protected:
    CString NaslovIzvora() const override;
};
