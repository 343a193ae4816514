// The cascades that delete combinations left without their load cases: which combinations
// go, how the survivors are renumbered and renamed, that the switch bSacuvajKombinacije stops
// both, and that a cascade is one undo step with the change that caused it.
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace {

/// The stored combinations as (ordinal, name, generated), by ordinal.
using Rows = std::vector<std::tuple<int, CString, int>>;

class KombinacijaCascadeTest : public ModelTest {
protected:
    // Load cases G, P, W, S with ordinals 1..4 and five combinations, stored in another order
    // than their ordinals:
    //   K1 (1) 1.35 G + 1.50 P   generated name
    //   K2 (2) P + W             user's name
    //   K3 (3) G + 0 x W         generated name; its only tie to W has coefficient 0
    //   K4 (4) G + 1.50 S        generated name
    //   K5 (5) S                 user's name
    void SetUp() override {
        ModelTest::SetUp();
        m_g = AddLoadCase(L"G", 1);
        m_p = AddLoadCase(L"P", 2);
        m_w = AddLoadCase(L"W", 3);
        m_s = AddLoadCase(L"S", 4);
        AddGenerated(4, {{m_g, 1.0}, {m_s, 1.5}});
        AddCombination(2, {{m_p, 1.0}, {m_w, 1.0}}, L"Vetar");
        AddCombination(5, {{m_s, 1.0}}, L"Sneg");
        AddGenerated(1, {{m_g, 1.35}, {m_p, 1.5}});
        AddGenerated(3, {{m_g, 1.0}, {m_w, 0.0}});
    }
    void TearDown() override {
        CKombinacijaOpterecenja::bSacuvajKombinacije = 0;
        ModelTest::TearDown();
    }

    /// Deletes a load case and closes the gap in the load case ordinals, as the load case
    /// editor does, within the given view.
    void DeleteLoadCase(CBaseManager& bm, const CId& id) {
        const int r = Get<CSlucajOpterecenja>(id)->DajRedniBroj();
        bm.Delete(id);
        for (const CId& other : m_base->Ids(CSlucajOpterecenja::Type)) {
            auto* p = dynamic_cast<CSlucajOpterecenja*>(bm.GetW(other));
            if (p->DajRedniBroj() > r)
                p->PostaviRedniBroj(p->DajRedniBroj() - 1);
        }
    }
    /// Deletes the load case and runs the cascade in one undo step.
    template <class Cascade> void DeleteLoadCaseWith(const CId& id, Cascade cascade) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.FreezeUndoCounter();
        DeleteLoadCase(bm, id);
        cascade();
        bm.UnfreezeUndoCounter();
        bm.Close();
    }
    Rows Combinations() const {
        Rows rows;
        for (const CId& id : m_base->Ids(CKombinacijaOpterecenja::Type)) {
            const CKombOptItem& k = Get<CKombinacijaOpterecenja>(id)->Item();
            rows.emplace_back(k.GetRedniBroj(), k.GetNaziv(), k.IsGenericName());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    /// A cascade that has nothing to do changes nothing and leaves no undo step.
    template <class Cascade> void ExpectNoChange(Cascade cascade) {
        const std::vector<uint8_t> before = Bajtovi();
        const int steps = m_base->GetUndoCount();
        cascade();
        EXPECT_EQ(Bajtovi(), before);
        EXPECT_EQ(m_base->GetUndoCount(), steps);
    }

    CId m_g, m_p, m_w, m_s;
};

} // namespace

TEST_F(KombinacijaCascadeTest, DeletingALoadCaseRemovesItsCombinationsRenumbersAndRenames) {
    ASSERT_EQ(std::get<1>(Combinations()[3]), L"I+1.50xIV");
    // The host's attribute word of a renamed combination survives the renaming.
    CId k4;
    for (const CId& id : m_base->Ids(CKombinacijaOpterecenja::Type))
        if (Get<CKombinacijaOpterecenja>(id)->Item().GetRedniBroj() == 4)
            k4 = id;
    Change<CKombinacijaOpterecenja>(k4, [](CKombinacijaOpterecenja& k) { k.SetAtribut(42); });
    const std::vector<uint8_t> before = Bajtovi();
    const int steps = m_base->GetUndoCount();
    DeleteLoadCaseWith(m_w, [&] { // S becomes III
        EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 2);
    });
    // K3 goes too: its tie to W had coefficient 0. Generated names follow the new ordinals;
    // the user's name stays.
    const Rows after = {{1, L"1.35xI+1.50xII", 1}, {2, L"I+1.50xIII", 1}, {3, L"Sneg", 0}};
    EXPECT_EQ(Combinations(), after);
    EXPECT_EQ(Get<CKombinacijaOpterecenja>(k4)->GetAtribut(), 42);
    ExpectNoChange([&] {
        EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 0);
        EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(CId(999)), 0);
    });

    // The cascade is one undo step with the deletion that caused it.
    EXPECT_EQ(m_base->GetUndoCount(), steps + 1);
    const std::vector<uint8_t> afterImage = Bajtovi();
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Bajtovi(), before);
    ASSERT_TRUE(m_base->Redo());
    EXPECT_EQ(Bajtovi(), afterImage);
}

TEST_F(KombinacijaCascadeTest, MissingOrOutOfRangeLoadCasesTakeTheirCombinationsAlong) {
    // X's ordinal lies beyond the number of load cases; K6 holds it with coefficient 0.
    const CId x = AddLoadCase(L"X", 9);
    const CId k6 = AddGenerated(6, {{m_g, 1.0}, {x, 0.0}});
    // S becomes III, X becomes 8: still beyond 4.
    DeleteLoadCaseWith(m_w,
                       [] { CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt(); });
    EXPECT_EQ(Combinations(),
              (Rows{{1, L"1.35xI+1.50xII", 1}, {2, L"I+1.50xIII", 1}, {3, L"Sneg", 0}}));
    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Combinations().size(), 6u);

    // Without X the rest is consistent: only K6, the last, goes and nothing else changes.
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Delete(x);
        bm.Close();
    }
    const Rows before = Combinations();
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(Get<CKombinacijaOpterecenja>(k6), nullptr);
    EXPECT_EQ(Combinations(), Rows(before.begin(), before.end() - 1));
    ExpectNoChange([] { CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt(); });
}

TEST_F(KombinacijaCascadeTest, KeepingCombinationsStopsBothCascades) {
    CKombinacijaOpterecenja::bSacuvajKombinacije = 1;
    DeleteLoadCaseWith(m_p, [] {});
    ExpectNoChange([&] {
        EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_p), 0);
        CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    });
    CKombinacijaOpterecenja::bSacuvajKombinacije = 0;
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(Combinations(), (Rows{{1, L"I", 1}, {2, L"I+1.50xIII", 1}, {3, L"Sneg", 0}}));
}

TEST_F(KombinacijaCascadeTest, OrdinalOutsideTheCombinationsIsAnInvalidArgument) {
    const CId stray = AddCombination(9, {{m_g, 1.0}}, L"Zalutala");
    EXPECT_THROW(CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt(),
                 CInvalidArgException);
    EXPECT_THROW(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w),
                 CInvalidArgException);
    // The views were closed on the way out: the store can be changed and the cascade run.
    Change<CKombinacijaOpterecenja>(stray,
                                    [](CKombinacijaOpterecenja& k) { k.Item().SetRedniBroj(6); });
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 2);
    EXPECT_EQ(Get<CKombinacijaOpterecenja>(stray)->Item().GetRedniBroj(), 4);
}
