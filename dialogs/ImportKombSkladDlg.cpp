// The mapping of a stored combination set's load cases onto the current model's, and the
// rewrite of its combinations through the mapping.
#include "dialogs/ImportKombSkladDlg.h"

#include "diag/Assert.h"
#include "dialogs/DlgKombOptPodaci.h"
#include "dialogs/DlgKombOptResursi.h"
#include "host/MessageBox.h"
#include "model/KombinacijaOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

#include <algorithm>
#include <unordered_map>

CImportKombSkladDlg::CImportKombSkladDlg() : CDialogPresenter(kombres::MapiranjeSlucajeva()) {}

CImportKombSkladDlg::CImportKombSkladDlg(const CKombOptItemArray& kombinacije,
                                         const CSlOptItemArray& slucajevi)
    : CImportKombSkladDlg() {
    m_izvorKomb = kombinacije;
    m_izvorSlOpt = slucajevi;
}

CString CImportKombSkladDlg::NaslovIzvora() const {
    return ClTranslator::Translate(L"Skladiste");
}

void CImportKombSkladDlg::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    m_rezultat.RemoveAll();

    // The current load cases; an influence-line case may not receive loads of the import.
    CObjBase* pBase = CObjBase::GetCurrent();
    VASSERT(pBase);
    m_tekuci = kombpodaci::SlucajeviModela(*pBase);
    auto opcije = std::make_shared<std::vector<CString>>();
    opcije->push_back(CString(L"0. ") + ClTranslator::Translate(L"Nijedan"));
    m_iskljuceni.clear();
    for (int k = 0; k < m_tekuci.GetSize(); ++k) {
        opcije->push_back(CString::Formatted(L"%d. %s", k + 1, m_tekuci[k].m_strNaziv.c_str()));
        if (m_tekuci[k].m_bUticajnaLinija != 0)
            m_iskljuceni.insert(k + 1);
    }
    m_opcije = opcije;

    const int nRedova = m_izvorSlOpt.GetSize();
    CGridModel& grid = CreateGrid(kombres::IDC_MAPIRANJE_GRID);
    grid.SetRedraw(false);
    grid.SetColumnCount(2);
    grid.SetRowCount(nRedova + 1);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(0);
    grid.SetListMode(false);
    grid.EnableSelection(false);
    const int sirina = grid.GetWidth() - CGridModel::kScrollBarWidth;
    grid.SetColumnWidth(0, sirina / 2);
    grid.SetColumnWidth(1, sirina - sirina / 2);
    grid.SetItemText(0, 0, NaslovIzvora());
    grid.SetItemText(0, 1, ClTranslator::Translate(L"Tekuci fajl"));
    // By default snapshot case r goes to current case r.
    for (int r = 1; r <= nRedova; ++r) {
        grid.SetItemText(r, 0,
                         CString::Formatted(L"%d. %s", r, m_izvorSlOpt[r - 1].m_strNaziv.c_str()));
        grid.SetReadOnly(r, 0, true);
        const bool podrazumevana = r <= m_tekuci.GetSize() && m_iskljuceni.count(r) == 0;
        grid.SetComboCell(r, 1, m_opcije, podrazumevana ? r : 0);
    }
    grid.SetRedraw(true);

    d.ResetContent(kombres::IDC_PREGLED);
    for (int i = 0; i < m_izvorKomb.GetSize(); ++i) {
        const CKombOptItem& item = m_izvorKomb[i];
        d.AddString(kombres::IDC_PREGLED,
                    CString::Formatted(L"%d. ", item.GetRedniBroj()) + item.GetNaziv());
    }
}

bool CImportKombSkladDlg::DvostrukoPreslikavanje() const {
    const CGridModel& grid = Dialog().Grid(kombres::IDC_MAPIRANJE_GRID);
    const int nRedova = grid.GetRowCount() - 1;
    // The check looks for the option after the chosen one among the excluded ones: a
    // duplicate whose next option belongs to an influence-line case passes.
    for (int r = 1; r < nRedova; ++r) {
        const int s = grid.GetComboSel(r, 1);
        if (s <= 0 || m_iskljuceni.count(s + 1) != 0)
            continue;
        for (int q = r + 1; q <= nRedova; ++q)
            if (grid.GetComboSel(q, 1) == s)
                return true;
    }
    return false;
}

void CImportKombSkladDlg::OnOK() {
    if (DvostrukoPreslikavanje()) {
        CVortaMessageBox::MessageBoxW(
            ClTranslator::Translate(L"Nije dozvoljeno preslikavanje vise opterecenja u jedno."),
            ClTranslator::Translate(L"Upozorenje"),
            CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
        return;
    }
    const CGridModel& grid = Dialog().Grid(kombres::IDC_MAPIRANJE_GRID);

    CBaseManager bm(CKombinacijaOpterecenja::Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    int max = 0;
    bm.Select();
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pKombOptSrc = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        VASSERT(pKombOptSrc);
        max = std::max(max, pKombOptSrc->Item().GetRedniBroj());
    }

    // The snapshot row of every load case of the stored combinations (the first with its id).
    std::unordered_map<int32_t, int> red;
    for (int r = m_izvorSlOpt.GetSize(); r >= 1; --r)
        red[m_izvorSlOpt[r - 1].m_Id.GetValue()] = r;
    m_rezultat.RemoveAll();
    for (int i = 0; i < m_izvorKomb.GetSize(); ++i) {
        const CKombOptItem& izvor = m_izvorKomb[i];
        CKombOptItem kopija = izvor;
        kopija.Obrisi();
        // The copy becomes a new combination of this model.
        kopija.SetId(CId());
        for (int e = 0; e < izvor.GetBrojOsnOpt(); ++e) {
            double koef = 0.0;
            CId id;
            izvor.GetOsnOptByIndex(e, koef, id);
            const auto it = red.find(id.GetValue());
            if (it == red.end())
                continue;
            const int s = grid.GetComboSel(it->second, 1);
            if (s > 0 && s <= m_tekuci.GetSize() && m_iskljuceni.count(s) == 0)
                kopija.DodajOsnOpt(koef, m_tekuci[s - 1].m_Id);
        }
        if (kopija.GetBrojOsnOpt() == 0)
            continue;
        kopija.SetRedniBroj(++max);
        m_rezultat.AddNew(kopija);
    }
    bm.Close();
    EndDialog(IDOK);
}
