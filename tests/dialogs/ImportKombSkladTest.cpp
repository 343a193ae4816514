// The mapping of a stored set's load cases onto the current model and the rewrite of its
// combinations: preselection, excluded influence-line cases, the duplicate check as it stands,
// dropped entries and renumbering after the existing combinations.
#include "KombFixture.h"

#include "dialogs/ImportKombSkladDlg.h"

#include <gtest/gtest.h>

TEST_F(KombTest, StoredCombinationsAreRewrittenThroughTheMapping) {
    // Current model: S1, S2 (an influence-line case), S3; two combinations.
    const std::vector<CId> c = Slucajevi(3, [](int k, CSlucajOpterecenja& s) {
        if (k == 1)
            s.SetUticajUticajneLinije(UL_MOMENT);
    });
    AddCombination(1, {{c[0], 1.0}});
    AddCombination(2, {{c[2], 1.0}});
    // The stored set: snapshot T1..T3 (ids of a model long gone) and four combinations, the
    // last of a load case the snapshot lacks.
    CSlOptItemArray snimak;
    for (int k = 1; k <= 3; ++k)
        snimak.AddNew(CString::Formatted(L"T%d", k), k, 0, 0, 0, CId(900 + k));
    CKombOptItemArray skladiste;
    const std::vector<std::vector<std::pair<int, double>>> uskladistene = {
        {{901, 1.0}, {902, 1.5}}, {{903, 2.0}}, {{902, 1.0}}, {{999, 1.0}}};
    for (const auto& clanovi : uskladistene) {
        CKombOptItem item;
        item.SetNaziv(CString(1, static_cast<wchar_t>(L'A' + skladiste.GetSize())));
        item.SetRedniBroj(skladiste.GetSize() + 1);
        for (const auto& [id, koef] : clanovi)
            item.DodajOsnOpt(koef, CId(id));
        skladiste.AddNew(item);
    }
    struct Slucaj {
        std::vector<int> izbor; // the option chosen per row; empty keeps the preselection
        bool odbijeno;          // the duplicate check refuses the first OK
        std::vector<CString> nazivi, clanovi;
    };
    const Slucaj slucajevi[] = {
        // T2 would go to S2, an influence-line case: "Nijedan" instead; C is left empty.
        {{}, false, {L"A", L"B"}, {L"1:1", L"3:2"}},
        // Two rows on S1 pass because the option after it (S2) is excluded.
        {{1, 1, 3}, false, {L"A", L"B", L"C"}, {L"1:1 1:1.5", L"3:2", L"1:1"}},
        // Two rows on S3 are refused; the scene then maps T2 to nothing.
        {{1, 3, 3}, true, {L"A", L"B"}, {L"1:1", L"3:2"}},
        // T2 on the influence-line case: its loads are dropped.
        {{0, 2, 1}, false, {L"B"}, {L"1:2"}},
    };
    for (const Slucaj& s : slucajevi) {
        m_runner.Expect(1006, [&](CDialogPresenter& d) {
            CGridModel& g = d.Dialog().Grid(1030);
            EXPECT_EQ(g.GetItemText(2, 0), L"2. T2");
            EXPECT_EQ(*g.GetCell(1, 1).options,
                      (std::vector<CString>{L"0. Nijedan", L"1. S1", L"2. S2", L"3. S3"}));
            EXPECT_EQ(g.GetComboSel(1, 1) * 100 + g.GetComboSel(2, 1) * 10 + g.GetComboSel(3, 1),
                      103);
            EXPECT_EQ(d.Dialog().GetItemText(1036, 3), L"4. D");
            for (size_t r = 0; r < s.izbor.size(); ++r)
                g.UserSelectCombo(static_cast<int>(r) + 1, 1, s.izbor[r]);
            d.Dialog().UserClick(IDOK);
            EXPECT_EQ(d.Dialog().IsEnded(), !s.odbijeno);
            g.UserSelectCombo(2, 1, 0);
            d.Dialog().UserClick(IDOK);
        });
        const size_t poruka = m_runner.Messages().size();
        CImportKombSkladDlg dlg(skladiste, snimak);
        ASSERT_EQ(dlg.DoModal(), IDOK);
        EXPECT_EQ(m_runner.Messages().size(), poruka + (s.odbijeno ? 1 : 0));
        if (s.odbijeno) {
            EXPECT_EQ(m_runner.Messages().back().text,
                      L"Nije dozvoljeno preslikavanje vise opterecenja u jedno.");
        }
        EXPECT_EQ(Nazivi(dlg.Rezultat()), s.nazivi);
        EXPECT_EQ(Clanovi(dlg.Rezultat(), c), s.clanovi);
        for (int i = 0; i < dlg.Rezultat().GetSize(); ++i) {
            EXPECT_EQ(dlg.Rezultat()[i].GetRedniBroj(), 3 + i); // after the existing ones
            EXPECT_FALSE(dlg.Rezultat()[i].GetId().Valid());
        }
    }
    // Cancel gives nothing.
    CImportKombSkladDlg dlg(skladiste, snimak);
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(dlg.Rezultat().GetSize(), 0);
}
