// The stability dialog: the load cases with their fixed flags and coefficients, the
// combinations to analyse, the search interval and accuracy of δ, and the checks on OK.
#include "dialogs/DlgKombOptStabilnost.h"

#include "diag/Assert.h"
#include "dialogs/DlgKombOptPodaci.h"
#include "dialogs/EditoriOpterecenja.h"
#include "dialogs/EditoriResursi.h"
#include "grid/GridImages.h"
#include "host/MessageBox.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

using namespace edres;

namespace {

CString Prevod(const wchar_t* tekst) {
    return ClTranslator::Translate(tekst);
}

void Greska(const CString& poruka) {
    CVortaMessageBox::MessageBoxW(poruka, Prevod(L"Greska"),
                                  CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
}

} // namespace

CDlgKombOptStabilnost::CDlgKombOptStabilnost(const CStabilnostParams& params)
    : CDialogPresenter(ProracunStabilnosti()), m_params(params) {}

void CDlgKombOptStabilnost::UcitajNazive() {
    m_naziviSlucajeva.assign(static_cast<size_t>(m_params.BrojSloptItema()), CString());
    m_naziviKombinacija.assign(static_cast<size_t>(m_params.BrojKombItema()), nullptr);
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    bm.Select(CBaseManager::SlucajOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        const int r = pSlOpt->DajRedniBroj();
        if (r >= 1 && r <= static_cast<int>(m_naziviSlucajeva.size()))
            m_naziviSlucajeva[static_cast<size_t>(r - 1)] = pSlOpt->GetNaziv(0);
    }
    bm.Select(CBaseManager::KombinacijaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
        VASSERT(pKombOpt);
        const int r = pKombOpt->Item().GetRedniBroj();
        if (r >= 1 && r <= static_cast<int>(m_naziviKombinacija.size()))
            m_naziviKombinacija[static_cast<size_t>(r - 1)] = &pKombOpt->Item().GetNaziv();
    }
    bm.Close();
}

void CDlgKombOptStabilnost::OnInitDialog() {
    CDialogModel& d = Dialog();
    d.Translate();
    d.SetText(IDC_TEKST_INTERVAL, CGreek::ConvertToUnicode(Prevod(
                                      L"Interval u kome se trazi vrednost koeficijenta #gd#g")));
    d.SetText(IDC_TEKST_TACNOST,
              CGreek::ConvertToUnicode(Prevod(L"Dovoljna tacnost izracunatog koeficijenta #gd#g")));
    // The torsion switch is not offered, but it passes through the dialog unchanged.
    d.Show(IDC_TORZIJA, false);
    d.SetCheck(IDC_TORZIJA, m_params.GetIskljucTorzGreda() != 0);
    d.SetRange(IDC_INTERVAL, 1.0, 5000.0);
    d.SetDecimals(IDC_INTERVAL, 0);
    d.SetValue(IDC_INTERVAL, m_params.GetOpsegZaDelta());
    d.SetRange(IDC_TACNOST, 0.001, 1.0);
    d.SetDecimals(IDC_TACNOST, 3);
    d.SetValue(IDC_TACNOST, m_params.GetTacnostZaDelta());

    m_strNaziv = Prevod(L"Naziv");
    m_strDelta = CGreek::ConvertToUnicode(L"#gd#g");
    UcitajNazive();

    m_pSlucajevi = &CreateGrid(IDC_GRID1, true);
    m_nMeniSlucajeva =
        m_pSlucajevi->AddPopupMenu({{ID_SLOPT_UKLJUCI_SVE, Prevod(L"Ukljuci sve")},
                                    {ID_SLOPT_ISKLJUCI_SVE, Prevod(L"Iskljuci sve")}});
    PopuniSlucajeve();

    CGridModel& k = CreateGrid(IDC_GRID2, false);
    m_pKombinacije = &k;
    m_nMeniKombinacija = k.AddPopupMenu({{ID_KOMB_UKLJUCI_SVE, Prevod(L"Ukljuci sve")},
                                         {ID_KOMB_ISKLJUCI_SVE, Prevod(L"Iskljuci sve")}});
    k.SetRedraw(false);
    k.SetCellSource(
        [this](int row, int col, CGridCell& cell) { KombinacijaCelija(row, col, cell); });
    k.SetColumnCount(3);
    k.SetRowCount(m_params.BrojKombItema() + 1);
    k.SetFixedRowCount(1);
    k.SetFixedColumnCount(1);
    k.SetListMode(false);
    k.EnableSelection(false);
    k.SetColumnWidth(0, 35);
    k.SetColumnWidth(1, k.GetWidth() - CGridModel::kScrollBarWidth - 60);
    k.SetColumnWidth(2, 25);
    k.SetRedraw(true);
}

void CDlgKombOptStabilnost::PopuniSlucajeve() {
    CGridModel& g = *m_pSlucajevi;
    g.SetRedraw(false);
    g.SetColumnCount(4);
    g.SetRowCount(m_params.BrojSloptItema() + 1);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    g.SetListMode(false);
    g.EnableSelection(false);
    g.SetColumnWidth(0, 25);
    g.SetColumnWidth(1, g.GetWidth() - CGridModel::kScrollBarWidth - 105);
    g.SetColumnWidth(2, 25);
    g.SetColumnWidth(3, 55);
    g.SetItemImage(0, 0, GridImage::Zaglavlje);
    g.SetItemText(0, 1, m_strNaziv);
    g.SetItemImage(0, 2, GridImage::Fiksno);
    g.SetItemText(0, 3, Prevod(L"Koef"));
    for (int i = 0; i < m_params.BrojSloptItema(); ++i) {
        const int r = i + 1;
        const CStabilnostSloptItem& item = m_params.GetSloptItem(i);
        g.SetItemText(r, 0, CString::Formatted(L"%d", r));
        g.SetItemText(r, 1, m_naziviSlucajeva[static_cast<size_t>(i)]);
        g.SetReadOnly(r, 1, true);
        if (item.IsDozvoljen()) {
            g.SetCheckCell(r, 2, item.IsFiksan() != 0);
            g.SetCellPopupMenu(r, 2, m_nMeniSlucajeva);
        } else {
            // A load case that cannot take part shows its name only.
            g.SetItemFgColour(r, 1, kSivo);
            g.SetReadOnly(r, 2, true);
            g.SetReadOnly(r, 3, true);
        }
        PopuniKoeficijent(i);
    }
    g.SetRedraw(true);
}

void CDlgKombOptStabilnost::PopuniKoeficijent(int i) {
    const CStabilnostSloptItem& item = m_params.GetSloptItem(i);
    if (!item.IsDozvoljen())
        return;
    CGridModel& g = *m_pSlucajevi;
    const int r = i + 1;
    if (item.IsFiksan()) {
        g.SetItemText(r, 3, kombpodaci::TekstKoeficijenta(item.GetFaktor()));
        g.SetReadOnly(r, 3, false);
    } else {
        g.SetItemText(r, 3, m_strDelta);
        g.SetReadOnly(r, 3, true);
    }
}

void CDlgKombOptStabilnost::KombinacijaCelija(int row, int col, CGridCell& cell) const {
    if (row == 0) {
        if (col == 0)
            cell.image = GridImage::Zaglavlje;
        else if (col == 1)
            cell.text = m_strNaziv;
        else
            cell.image = GridImage::Fiksno;
        return;
    }
    const int i = row - 1;
    const CStabilnostKombItem& item = m_params.GetKombItem(i);
    switch (col) {
    case 0:
        cell.text = CString::Formatted(L"%d", row);
        break;
    case 1:
        if (const CString* naziv = m_naziviKombinacija[static_cast<size_t>(i)])
            cell.text = *naziv;
        cell.readOnly = true;
        if (!item.IsOdobren())
            cell.foreground = kSivo;
        break;
    default:
        if (item.IsOdobren()) {
            cell.kind = CGridCell::Kind::Check;
            cell.checked = item.IsIzabran() != 0;
            cell.popupMenu = static_cast<int16_t>(m_nMeniKombinacija);
        } else {
            cell.readOnly = true;
        }
        break;
    }
}

// ------------------------------------------------------------------------ the user's actions

bool CDlgKombOptStabilnost::OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text) {
    if (&grid != m_pSlucajevi || col != 3 || row < 1 || row > m_params.BrojSloptItema())
        return false;
    CStabilnostSloptItem& item = m_params.GetSloptItem(row - 1);
    double koef = 0.0;
    if (!item.IsDozvoljen() || !item.IsFiksan() || !kombpodaci::ProcitajBroj(text, koef))
        return false;
    item.SetFaktor(koef);
    PopuniKoeficijent(row - 1);
    return true;
}

bool CDlgKombOptStabilnost::OnGridSetCheck(CGridModel& grid, int row, int col, bool checked) {
    if (&grid != m_pKombinacije || col != 2 || row < 1 || row > m_params.BrojKombItema())
        return false;
    CStabilnostKombItem& item = m_params.GetKombItem(row - 1);
    if (!item.IsOdobren())
        return false;
    item.SetIzabran(checked ? 1 : 0);
    return true;
}

void CDlgKombOptStabilnost::OnGridCheckChanged(CGridModel& grid, int row, int col) {
    if (&grid != m_pSlucajevi || col != 2 || row < 1 || row > m_params.BrojSloptItema())
        return;
    m_params.GetSloptItem(row - 1).SetFiksan(grid.GetCheck(row, col) ? 1 : 0);
    PopuniKoeficijent(row - 1);
}

void CDlgKombOptStabilnost::ProcitajFiksne() {
    for (int i = 0; i < m_params.BrojSloptItema(); ++i) {
        CStabilnostSloptItem& item = m_params.GetSloptItem(i);
        if (item.IsDozvoljen())
            item.SetFiksan(m_pSlucajevi->GetCheck(i + 1, 2) ? 1 : 0);
    }
}

void CDlgKombOptStabilnost::OnGridPopupCommand(CGridModel&, int, int, int command) {
    switch (command) {
    case ID_SLOPT_UKLJUCI_SVE:
    case ID_SLOPT_ISKLJUCI_SVE: {
        CGridModel& g = *m_pSlucajevi;
        g.SetRedraw(false);
        for (int i = 0; i < m_params.BrojSloptItema(); ++i)
            if (g.IsCheckCell(i + 1, 2))
                g.SetCheck(i + 1, 2, command == ID_SLOPT_UKLJUCI_SVE);
        ProcitajFiksne();
        for (int i = 0; i < m_params.BrojSloptItema(); ++i)
            PopuniKoeficijent(i);
        g.SetRedraw(true);
        break;
    }
    case ID_KOMB_UKLJUCI_SVE:
    case ID_KOMB_ISKLJUCI_SVE:
        for (int i = 0; i < m_params.BrojKombItema(); ++i) {
            CStabilnostKombItem& item = m_params.GetKombItem(i);
            if (item.IsOdobren())
                item.SetIzabran(command == ID_KOMB_UKLJUCI_SVE ? 1 : 0);
        }
        m_pKombinacije->Invalidate();
        break;
    default:
        return;
    }
    m_params.Update();
}

// ------------------------------------------------------------------------ OK

void CDlgKombOptStabilnost::OnOK() {
    // At least one combination to analyse.
    bool bIzabrana = false;
    for (int i = 0; i < m_params.BrojKombItema() && !bIzabrana; ++i) {
        const CStabilnostKombItem& item = m_params.GetKombItem(i);
        bIzabrana = item.IsOdobren() && item.IsIzabran();
    }
    if (!bIzabrana) {
        Greska(Prevod(
            L"Za proracun stabilnosti, barem jedna kombinacija opterecenja mora biti izabrana."));
        return;
    }

    // Each of them needs a load case that δ multiplies.
    std::vector<int> nepravilne;
    for (int i = 0; i < m_params.BrojKombItema(); ++i) {
        const CStabilnostKombItem& item = m_params.GetKombItem(i);
        if (!item.IsOdobren() || !item.IsIzabran())
            continue;
        bool bPromenljivo = false;
        for (int k = 0; k < item.GetSize() && !bPromenljivo; ++k) {
            const int s = item.GetSloptIndex(k);
            if (s >= 0 && s < m_params.BrojSloptItema()) {
                const CStabilnostSloptItem& slopt = m_params.GetSloptItem(s);
                bPromenljivo = slopt.IsDozvoljen() && !slopt.IsFiksan();
            }
        }
        if (!bPromenljivo)
            nepravilne.push_back(i + 1);
    }
    if (!nepravilne.empty()) {
        CString poruka;
        poruka.Format(L"%s. (%d)\r\n%s", Prevod(L"Nepravilna kombinacija").c_str(),
                      nepravilne.front(),
                      Prevod(L"Kombinacija mora da sadrzi bar jedno opterecenje koje moze da se "
                             L"menja.")
                          .c_str());
        Greska(poruka);
        return;
    }

    if (!Dialog().ValidateNumberEdits())
        return;
    m_params.SetOpsegZaDelta(*Dialog().GetValue(IDC_INTERVAL));
    m_params.SetTacnostZaDelta(*Dialog().GetValue(IDC_TACNOST));
    m_params.Update();
    m_params.SetIskljucTorzGreda(Dialog().IsChecked(IDC_TORZIJA) ? 1 : 0);
    EndDialog(IDOK);
}

int opterecenje::StabilnostDlg(void* /*hParent*/, CStabilnostParams& params) {
    // The dialog edits a copy; the caller's parameters change only when it is confirmed.
    CDlgKombOptStabilnost dlg(params);
    if (dlg.DoModal() != IDOK)
        return 0;
    params = dlg.Params();
    return 1;
}
