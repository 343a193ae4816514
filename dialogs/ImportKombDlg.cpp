// The import of combinations from another model file: the other model's load cases and
// combinations as the source of the mapping.
#include "dialogs/ImportKombDlg.h"

#include "diag/Assert.h"
#include "host/ModelFile.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"
#include "text/Translator.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace {

/// The objects of one type of the base, in ascending order of their ordinals (store order
/// among equal ones).
template <class T, class Ordinal>
std::vector<const T*> PoRednomBroju(const CObjBase& base, int type, Ordinal ordinal) {
    std::vector<const T*> objekti;
    for (const CId& id : base.Ids(type))
        if (const auto* p = dynamic_cast<const T*>(base.Find(id)))
            objekti.push_back(p);
    std::stable_sort(objekti.begin(), objekti.end(),
                     [&](const T* a, const T* b) { return ordinal(*a) < ordinal(*b); });
    return objekti;
}

} // namespace

CImportKombDlg::CImportKombDlg(const CObjBase& izvor) {
    // The other model's load cases, as a stored set keeps its snapshot.
    const auto slucajevi = PoRednomBroju<CSlucajOpterecenja>(
        izvor, CSlucajOpterecenja::Type,
        [](const CSlucajOpterecenja& s) { return s.DajRedniBroj(); });
    for (const CSlucajOpterecenja* pSlOpt : slucajevi) {
        CString naziv = pSlOpt->GetNaziv(0);
        if (pSlOpt->JeLiNDA() && CModelGlobals::pfnNapraviImeDDASlOpt != nullptr)
            CModelGlobals::pfnNapraviImeDDASlOpt(naziv);
        m_izvorSlOpt.AddNew(naziv, m_izvorSlOpt.GetSize() + 1, 0, pSlOpt->GetgMarker(),
                            pSlOpt->IsUticajnaLinija() ? 1 : 0, pSlOpt->GetId());
    }
    const auto kombinacije = PoRednomBroju<CKombinacijaOpterecenja>(
        izvor, CKombinacijaOpterecenja::Type,
        [](const CKombinacijaOpterecenja& k) { return k.Item().GetRedniBroj(); });
    for (const CKombinacijaOpterecenja* pKomb : kombinacije)
        m_izvorKomb.AddNew(pKomb->Item());
}

CString CImportKombDlg::NaslovIzvora() const {
    return ClTranslator::Translate(L"Uvozni fajl");
}

std::unique_ptr<CObjBase> CImportKombDlg::UcitajModel(const std::filesystem::path& fajl,
                                                      CString& poruka) {
    CString razlog;
    std::unique_ptr<CObjBase> base;
    try {
        // What fails while another model is read is the fault of that file: it is refused.
        vdiag::CFatalTrap trap;
        base = CModelFile::Load(fajl, razlog);
    } catch (const std::exception& e) {
        base.reset();
        razlog = CString::FromUtf8(e.what());
    }
    if (!base) {
        poruka.Format(
            ClTranslator::Translate(L"Kombinacije nije moguce uvesti iz fajla \"%s\":\n%s").c_str(),
            CString::FromUtf8(fajl.string()).c_str(), razlog.c_str());
    }
    return base;
}
