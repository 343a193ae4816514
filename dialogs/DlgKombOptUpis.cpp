// The combination editor and the model: the combination storage, the imports, and OK, which
// writes the load cases and the combinations back in one undo step.
#include "dialogs/DlgKombOpt.h"

#include "diag/Assert.h"
#include "dialogs/DlgKombOptResursi.h"
#include "dialogs/ImportKombDlg.h"
#include "dialogs/ImportKombSkladDlg.h"
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/VortaUtils.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/Skladiste.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "services/Opterecenje.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <memory>

using namespace kombres;

namespace {

/// Whether the stored item is already what OK would write for the item at that ordinal (the
/// record would not change).
bool IstiZapis(const CKombOptItem& uskladisten, const CKombOptItem& item, int redniBroj) {
    if (uskladisten.GetRedniBroj() != redniBroj ||
        uskladisten.GetBrojOsnOpt() != item.GetBrojOsnOpt() ||
        uskladisten.IsGenericName() != item.IsGenericName() ||
        uskladisten.GetNaziv() != item.GetNaziv())
        return false;
    for (int e = 0; e < item.GetBrojOsnOpt(); ++e) {
        double ka = 0.0;
        double kb = 0.0;
        CId ia;
        CId ib;
        uskladisten.GetOsnOptByIndex(e, ka, ia);
        item.GetOsnOptByIndex(e, kb, ib);
        // An item with a zero coefficient is written without it, so it differs.
        if (ia != ib || ka != kb || CToler::Jednaki(kb, 0.0))
            return false;
    }
    return true;
}

/// Gives back a pooled object that never reached the store.
struct UnistiObj {
    void operator()(CObj* pObj) const { pObj->Destroy(1); }
};

} // namespace

// ------------------------------------------------------------------------ storage

void CDlgKombOpt::SnimiUSkladiste() {
    {
        CBaseManager bm(CSkladiste::Type);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        if (bm.Count() > 0 &&
            CVortaMessageBox::MessageBoxW(
                ClTranslator::Translate(L"Brisanje ranije uskladistenih kombinacija i dodavanje "
                                        L"novih?"),
                ClTranslator::Translate(L"Upozorenje"),
                CVortaMessageBox::MB_OKCANCEL | CVortaMessageBox::MB_ICONWARNING) ==
                CVortaMessageBox::IDOK)
            bm.DeleteAll(CSkladiste::Type);
        // Cancel leaves the stored set as it was and stores nothing.
        if (bm.Count() == 0) {
            std::unique_ptr<CSkladiste, UnistiObj> pSkladiste(new CSkladiste());
            pSkladiste->Set(*m_pKombinacije);
            bm.Insert(pSkladiste.release());
        }
        bm.Close();
    }
    OsveziDugmad();
}

void CDlgKombOpt::UcitajIzSkladista() {
    std::unique_ptr<CImportKombSkladDlg> pDlg;
    {
        CBaseManager bm(CSkladiste::Type);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
        if (bm.Count() != 1)
            return;
        bm.Select();
        const auto* pSkladiste = dynamic_cast<const CSkladiste*>(bm.GetR(bm.GetFirst()));
        VASSERT(pSkladiste);
        pDlg = std::make_unique<CImportKombSkladDlg>(pSkladiste->GetKombOptArr(),
                                                     pSkladiste->GetSlOptArr());
    }
    if (pDlg->DoModal() == IDOK)
        DodajUvezene(pDlg->Rezultat());
}

void CDlgKombOpt::UvozIzModela() {
    std::filesystem::path fajl;
    if (!ChooseFile(ClTranslator::Translate(L"Uvoz kombinacija iz drugog modela"),
                    ClTranslator::Translate(L"Modeli (*.vld)"), fajl))
        return;
    CString poruka;
    std::unique_ptr<CObjBase> pIzvor = CImportKombDlg::UcitajModel(fajl, poruka);
    if (!pIzvor) {
        CVortaMessageBox::MessageBoxW(poruka, ClTranslator::Translate(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        return;
    }
    CImportKombDlg dlg(*pIzvor);
    pIzvor.reset();
    if (!dlg.ImaKombinacija()) {
        Upozori(ClTranslator::Translate(L"U izabranom modelu nema kombinacija opterecenja."));
        return;
    }
    if (dlg.DoModal() == IDOK)
        DodajUvezene(dlg.Rezultat());
}

void CDlgKombOpt::DodajUvezene(const CKombOptItemArray& uvezene) {
    if (uvezene.GetSize() == 0)
        return;
    for (int i = 0; i < uvezene.GetSize(); ++i)
        m_pKombinacije->AddNew(uvezene[i]);
    Prenumerisi();
    OsveziGrid2();
    m_bKombinacijeIzmenjene = 1;
}

// ------------------------------------------------------------------------ OK

int CDlgKombOpt::PrvaNulta() const {
    for (int i = 0; i < m_pKombinacije->GetSize(); ++i) {
        const CKombOptItem& item = (*m_pKombinacije)[i];
        bool nula = true;
        for (int e = 0; e < item.GetBrojOsnOpt() && nula; ++e)
            nula = !CToler::Razliciti(item.GetOsnOptKoefByIndex(e), 0.0, CToler::gDefltTol);
        if (nula)
            return i;
    }
    return -1;
}

void CDlgKombOpt::OnOK() {
    if (const int i = PrvaNulta(); i >= 0) {
        CVortaMessageBox::MessageBoxW(
            ClTranslator::Translate(
                L"U kombinaciji opterecenja ne smeju da budu svi koeficijenti nula!"),
            ClTranslator::Translate(L"Upozorenje"),
            CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
        CGridModel& grid = Dialog().Grid(IDC_GRID2);
        grid.SetSelectedRows({i + 1});
        grid.EditCell(i + 1, 2);
        Dialog().SetFocus(IDC_GRID2);
        OsveziDugmad();
        return;
    }
    if (m_bSlucajeviIzmenjeni != 0 || m_bKombinacijeIzmenjene != 0) {
        int obrisano = 0;
        {
            // Load cases and combinations change in one undo step.
            CBaseManager bm;
            CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
            bm.FreezeUndoCounter();
            if (m_bSlucajeviIzmenjeni != 0)
                UpisiSlucajeve(bm);
            if (m_bKombinacijeIzmenjene != 0)
                obrisano = UpisiKombinacije(bm);
            bm.UnfreezeUndoCounter();
            bm.Close();
        }
        if (m_bKombinacijeIzmenjene != 0) {
            const CMainFrame* pFrame = CMainFrame::Get();
            if (pFrame != nullptr && pFrame->IsResultsMode())
                COpterecenjeApp::UpdateComboResults(-1);
            else
                COpterecenjeApp::UpdateComboStandard(-1);
            if (obrisano > 0)
                CVortaUtils::UpdateViews(1, 1, 0, 0, 0);
        }
    }
    m_podskupovi.Oslobodi();
    EndDialog(IDOK);
}

void CDlgKombOpt::UpisiSlucajeve(CBaseManager& bm) const {
    for (int k = 0; k < m_slucajevi.GetSize(); ++k) {
        const CSlOptItem& s = m_slucajevi[k];
        if (!s.m_Id.Valid())
            continue;
        const auto* pStaro = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(s.m_Id));
        VASSERT(pStaro);
        // A load case taken for writing becomes part of the undo step: only changed ones are.
        if (pStaro->GetKoeficijent() == s.m_dKoeficijent && pStaro->GetStalno() == s.m_bStalno &&
            pStaro->GetAlternativno() == s.m_bAlternativno &&
            pStaro->GetNeKombinujSa() == s.m_arrNeKombinujSa &&
            pStaro->GetUvekKombinujSa() == s.m_arrUvekKombinujSa)
            continue;
        auto* pSlOpt = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(s.m_Id));
        VASSERT(pSlOpt);
        pSlOpt->SetKoeficijent(s.m_dKoeficijent);
        pSlOpt->SetStalno(s.m_bStalno);
        pSlOpt->SetAlternativno(s.m_bAlternativno);
        pSlOpt->SetNeKombinujSa(s.m_arrNeKombinujSa);
        pSlOpt->SetUvekKombinujSa(s.m_arrUvekKombinujSa);
    }
}

int CDlgKombOpt::UpisiKombinacije(CBaseManager& bm) {
    CKombOptItemArray& lista = *m_pKombinacije;
    for (int i = 0; i < lista.GetSize(); ++i) {
        const CKombOptItem& item = lista[i];
        const CKombinacijaOpterecenja* pKombOpt = nullptr;
        if (item.GetId().Valid()) {
            pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(item.GetId()));
            VASSERT(pKombOpt);
            if (IstiZapis(pKombOpt->Item(), item, i + 1))
                continue;
        }
        // The combination as stored: numbered in list order, without zero coefficients.
        std::unique_ptr<CKombinacijaOpterecenja, UnistiObj> pKomb(new CKombinacijaOpterecenja());
        CKombOptItem& novi = pKomb->Item();
        novi = item;
        novi.SetRedniBroj(i + 1);
        novi.IzbaciNepotrebneNule(bm);
        if (pKombOpt == nullptr) {
            // A new combination: stored, and known by its id from now on.
            lista[i].SetId(bm.Insert(pKomb.release()));
        } else {
            // The changed combination takes the place of the stored one; the undo step keeps
            // the old object itself.
            pKomb->SetAtribut(pKombOpt->GetAtribut());
            bm.Replace(item.GetId(), pKomb.release());
        }
    }
    int obrisano = 0;
    for (const CId& id : m_obrisane)
        if (bm.Delete(id))
            ++obrisano;
    m_obrisane.clear();
    return obrisano;
}
