// The mapping of a stored set's load cases onto the current model and the rewrite of its
// combinations: preselection, excluded influence-line cases, the duplicate check as it stands,
// dropped entries and renumbering after the existing combinations.
#include "dialog/ScriptedRunner.h"
#include "dialogs/ImportKombSkladDlg.h"
#include "model/ModelFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Clanovi = std::vector<std::pair<int, double>>; // (current load case 1.., coefficient)

class ImportKombSklad : public ModelTest {};

} // namespace

TEST_F(ImportKombSklad, MapsSnapshotCasesAndRewritesTheStoredCombinations) {
    // Current model: C1, C2 (an influence-line case), C3; two combinations.
    std::vector<CId> c;
    for (int k = 1; k <= 3; ++k)
        c.push_back(AddLoadCase(CString::Formatted(L"C%d", k), k));
    Change<CSlucajOpterecenja>(c[1], [](auto& s) { s.SetUticajUticajneLinije(UL_MOMENT); });
    AddCombination(1, {{c[0], 1.0}});
    AddCombination(2, {{c[2], 1.0}});
    // The stored set: snapshot S1..S3 (ids of a model long gone) and four combinations, the
    // last of a load case the snapshot lacks.
    CSlOptItemArray snimak;
    for (int k = 1; k <= 3; ++k)
        snimak.AddNew(CString::Formatted(L"S%d", k), k, 0, 0, 0, CId(900 + k));
    CKombOptItemArray skladiste;
    const std::vector<std::pair<const wchar_t*, Clanovi>> uskladistene = {
        {L"A", {{901, 1.0}, {902, 1.5}}},
        {L"B", {{903, 2.0}}},
        {L"C", {{902, 1.0}}},
        {L"D", {{999, 1.0}}}};
    for (size_t i = 0; i < uskladistene.size(); ++i) {
        CKombOptItem item;
        item.SetNaziv(uskladistene[i].first);
        item.SetRedniBroj(static_cast<int>(i) + 1);
        for (const auto& [id, koef] : uskladistene[i].second)
            item.DodajOsnOpt(koef, CId(id));
        skladiste.AddNew(item);
    }

    struct Slucaj {
        std::vector<int> izbor; // the option chosen per row; empty keeps the preselection
        bool odbijeno;          // the duplicate check refuses the first OK
        std::vector<std::pair<CString, Clanovi>> rezultat;
    };
    const Slucaj slucajevi[] = {
        // S2 would go to C2, an influence-line case: "Nijedan" instead; C is left empty.
        {{}, false, {{L"A", {{1, 1.0}}}, {L"B", {{3, 2.0}}}}},
        // Two rows on C1 pass because the option after it (C2) is excluded.
        {{1, 1, 3}, false, {{L"A", {{1, 1.0}, {1, 1.5}}}, {L"B", {{3, 2.0}}}, {L"C", {{1, 1.0}}}}},
        // Two rows on C3 are refused; the scene then maps S2 to nothing.
        {{1, 3, 3}, true, {{L"A", {{1, 1.0}}}, {L"B", {{3, 2.0}}}}},
        // S2 on the influence-line case: its loads are dropped.
        {{0, 2, 1}, false, {{L"B", {{1, 2.0}}}}},
    };
    for (const Slucaj& s : slucajevi) {
        CScriptedRunner runner;
        runner.Install();
        runner.Expect(1006, [&](CDialogPresenter& d) {
            CGridModel& g = d.Dialog().Grid(1030);
            EXPECT_EQ(g.GetItemText(0, 0), L"Skladiste");
            EXPECT_EQ(g.GetItemText(0, 1), L"Tekuci fajl");
            EXPECT_EQ(g.GetItemText(2, 0), L"2. S2");
            EXPECT_EQ(*g.GetCell(1, 1).options,
                      (std::vector<CString>{L"0. Nijedan", L"1. C1", L"2. C2", L"3. C3"}));
            EXPECT_EQ(g.GetComboSel(1, 1), 1);
            EXPECT_EQ(g.GetComboSel(2, 1), 0);
            EXPECT_EQ(g.GetComboSel(3, 1), 3);
            EXPECT_EQ(d.Dialog().GetItemText(1036, 3), L"4. D");
            for (size_t r = 0; r < s.izbor.size(); ++r)
                g.UserSelectCombo(static_cast<int>(r) + 1, 1, s.izbor[r]);
            d.Dialog().UserClick(IDOK);
            EXPECT_EQ(d.Dialog().IsEnded(), !s.odbijeno);
            if (s.odbijeno) {
                g.UserSelectCombo(2, 1, 0);
                d.Dialog().UserClick(IDOK);
            }
        });
        CImportKombSkladDlg dlg(skladiste, snimak);
        ASSERT_EQ(dlg.DoModal(), IDOK);
        ASSERT_EQ(runner.Messages().size(), s.odbijeno ? 1u : 0u);
        if (s.odbijeno) {
            EXPECT_EQ(runner.Messages()[0].text,
                      L"Nije dozvoljeno preslikavanje vise opterecenja u jedno.");
        }
        const CKombOptItemArray& r = dlg.Rezultat();
        ASSERT_EQ(r.GetSize(), static_cast<int>(s.rezultat.size()));
        for (int i = 0; i < r.GetSize(); ++i) {
            EXPECT_EQ(r[i].GetNaziv(), s.rezultat[static_cast<size_t>(i)].first);
            EXPECT_EQ(r[i].GetRedniBroj(), 3 + i); // after the two existing ones
            EXPECT_FALSE(r[i].GetId().Valid());
            Clanovi clanovi;
            for (int e = 0; e < r[i].GetBrojOsnOpt(); ++e) {
                double koef = 0.0;
                CId id;
                r[i].GetOsnOptByIndex(e, koef, id);
                clanovi.emplace_back(
                    static_cast<int>(std::find(c.begin(), c.end(), id) - c.begin()) + 1, koef);
            }
            EXPECT_EQ(clanovi, s.rezultat[static_cast<size_t>(i)].second);
        }
    }
    // Cancel gives nothing.
    CImportKombSkladDlg dlg(skladiste, snimak);
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(dlg.Rezultat().GetSize(), 0);
}
