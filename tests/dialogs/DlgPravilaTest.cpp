// The rules dialogs: which load cases they let the user mark, what the marks do to the
// never-combine and always-combine lists, and what OK and Cancel leave.
#include "dialog/ScriptedRunner.h"
#include "dialogs/DlgInclusion.h"
#include "dialogs/DlgMutEx.h"
#include "grid/GridImages.h"

#include <gtest/gtest.h>

namespace {

/// S1..Sn with ids 1..n: S5 permanent, S6 an influence-line case, rules as given (by number).
CSlOptItemArray Lista(int n, const std::vector<std::pair<int, int>>& nikad,
                      const std::vector<std::pair<int, int>>& uvek) {
    CSlOptItemArray s;
    for (int k = 1; k <= n; ++k)
        s.AddNew(CString::Formatted(L"S%d", k), k, 0, 0, k == 6 ? 1 : 0, CId(k));
    if (n >= 5)
        s[4].m_bStalno = 1;
    for (const auto& [a, b] : nikad)
        s[a - 1].m_arrNeKombinujSa.Add(CId(b));
    for (const auto& [a, b] : uvek)
        s[a - 1].m_arrUvekKombinujSa.Add(CId(b));
    return s;
}

std::vector<int> Ids(const OCArray<CId>& l) {
    std::vector<int> v;
    for (const CId& id : l)
        v.push_back(id.GetValue());
    return v;
}

using V = std::vector<int>;

} // namespace

TEST(DlgPravila, NeverCombineIsMadeUniformKeptSymmetricAndWinsOverAlwaysOnOk) {
    const CSlOptItemArray pocetna =
        Lista(6, {{1, 3}, {2, 3}, {2, 4}, {3, 1}, {3, 2}, {4, 2}}, {{1, 4}, {4, 1}});
    for (const bool ok : {true, false}) {
        CSlOptItemArray s = pocetna;
        int izmenjeno = 0;
        CScriptedRunner runner;
        runner.Install();
        runner.Expect(1003, [&](CDialogPresenter& d) {
            CGridModel& g = d.Dialog().Grid(1030);
            // S4 was a never-case of S2 only: opening drops it from both sides.
            EXPECT_EQ(Ids(s[1].m_arrNeKombinujSa), V{3});
            EXPECT_EQ(Ids(s[3].m_arrNeKombinujSa), V{});
            EXPECT_EQ(izmenjeno, 1);
            const int slike[] = {GridImage::Tekuci, GridImage::Tekuci, GridImage::Nikad,
                                 GridImage::None,   GridImage::Uvek,   GridImage::None};
            for (int r = 1; r <= 6; ++r)
                EXPECT_EQ(g.GetItemImage(r, 1), slike[r - 1]) << r;
            EXPECT_EQ(g.GetCell(2, 2).background, 0xFFE0E0u);
            EXPECT_EQ(g.GetCell(6, 2).foreground, 0x808080u);
            EXPECT_EQ(g.GetFocusRow(), 1);
            // Current, permanent and influence-line rows take no mark; S4 does.
            for (const int r : {1, 5, 6, 4})
                g.UserClick(r, 1);
            EXPECT_EQ(g.GetItemImage(4, 1), GridImage::Nikad);
            EXPECT_EQ(Ids(s[0].m_arrNeKombinujSa), (V{3, 4}));
            EXPECT_EQ(Ids(s[3].m_arrNeKombinujSa), (V{1, 2}));
            EXPECT_EQ(Ids(s[4].m_arrNeKombinujSa), V{});
            d.Dialog().UserClick(ok ? IDOK : IDCANCEL);
        });
        CDlgMutEx dlg(s, izmenjeno, {1, 2});
        EXPECT_EQ(dlg.DoModal(), ok ? IDOK : IDCANCEL);
        EXPECT_TRUE(runner.Done());
        if (ok) {
            // S1 and S4 may never be combined: the always entries between them went.
            EXPECT_EQ(Ids(s[0].m_arrUvekKombinujSa), V{});
            EXPECT_EQ(Ids(s[3].m_arrUvekKombinujSa), V{});
            EXPECT_EQ(Ids(s[1].m_arrNeKombinujSa), (V{3, 4}));
        } else {
            EXPECT_EQ(izmenjeno, 0);
            for (int k = 0; k < 6; ++k) {
                EXPECT_EQ(Ids(s[k].m_arrNeKombinujSa), Ids(pocetna[k].m_arrNeKombinujSa));
                EXPECT_EQ(Ids(s[k].m_arrUvekKombinujSa), Ids(pocetna[k].m_arrUvekKombinujSa));
            }
        }
    }
}

TEST(DlgPravila, AlwaysCombineIsOneWayAndWinsOverNeverOnOk) {
    CSlOptItemArray s = Lista(5, {{1, 2}, {2, 1}}, {});
    int izmenjeno = 0;
    CScriptedRunner runner;
    runner.Install();
    runner.Expect(1021, [&](CDialogPresenter& d) {
        CGridModel& g = d.Dialog().Grid(1030);
        EXPECT_EQ(izmenjeno, 0); // no uniform step here
        g.UserClick(2, 1);
        EXPECT_EQ(Ids(s[0].m_arrUvekKombinujSa), V{2});
        EXPECT_EQ(Ids(s[1].m_arrUvekKombinujSa), V{});
        EXPECT_EQ(g.GetItemImage(2, 1), GridImage::Uvek);
        d.Dialog().UserClick(1032); // "Ukljuci sve": every eligible case, not S5
        EXPECT_EQ(Ids(s[0].m_arrUvekKombinujSa), (V{2, 3, 4}));
        d.Dialog().UserClick(1033); // "Iskljuci sve"
        EXPECT_EQ(Ids(s[0].m_arrUvekKombinujSa), V{});
        EXPECT_EQ(g.GetItemImage(3, 1), GridImage::None);
        g.UserClick(2, 1);
        d.Dialog().UserClick(IDOK);
    });
    CDlgInclusion dlg(s, izmenjeno, {1});
    EXPECT_EQ(dlg.DoModal(), IDOK);
    EXPECT_EQ(izmenjeno, 1);
    EXPECT_EQ(Ids(s[0].m_arrUvekKombinujSa), V{2});
    EXPECT_EQ(Ids(s[0].m_arrNeKombinujSa), V{});
    EXPECT_EQ(Ids(s[1].m_arrNeKombinujSa), V{});
}
