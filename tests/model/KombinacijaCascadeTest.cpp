// The cascades that delete combinations left without their load cases: which combinations
// go, how the survivors are renumbered and renamed, that the switch bSacuvajKombinacije stops
// both, and that a cascade is one undo step with the change that caused it.
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

/// Every load case and combination of the store as (id -> record bytes).
using StoreImage = std::map<int32_t, std::vector<uint8_t>>;

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
        m_k4 = AddGenerated(4, {{m_g, 1.0}, {m_s, 1.5}});
        m_k2 = AddCombination(2, {{m_p, 1.0}, {m_w, 1.0}}, L"Vetar");
        m_k5 = AddCombination(5, {{m_s, 1.0}}, L"Sneg");
        m_k1 = AddGenerated(1, {{m_g, 1.35}, {m_p, 1.5}});
        m_k3 = AddGenerated(3, {{m_g, 1.0}, {m_w, 0.0}});
    }
    void TearDown() override {
        CKombinacijaOpterecenja::bSacuvajKombinacije = 0;
        ModelTest::TearDown();
    }

    CId AddGenerated(int ordinal, std::initializer_list<std::pair<CId, double>> entries) {
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(ordinal);
        for (const auto& [id, koef] : entries)
            p->Item().DodajOsnOpt(koef, id);
        p->Item().SetGenericName(nullptr, 0);
        return Insert(p);
    }
    const CKombOptItem* Komb(const CId& id) const {
        const auto* p = Get<CKombinacijaOpterecenja>(id);
        return p != nullptr ? &p->Item() : nullptr;
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
    StoreImage Image() const {
        StoreImage image;
        for (const int type : {CSlucajOpterecenja::Type, CKombinacijaOpterecenja::Type}) {
            for (const CId& id : m_base->Ids(type)) {
                CFiller f;
                f.Open(CFiller::Mode::Write);
                m_base->Find(id)->ToFiller(f);
                image[id.GetValue()] = f.Buffer();
            }
        }
        return image;
    }

    CId m_g, m_p, m_w, m_s;
    CId m_k1, m_k2, m_k3, m_k4, m_k5;
};

} // namespace

TEST_F(KombinacijaCascadeTest, DeletingALoadCaseRemovesItsCombinationsRenumbersAndRenames) {
    ASSERT_EQ(Komb(m_k4)->GetNaziv(), L"I+1.50xIV");
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        DeleteLoadCase(bm, m_w); // S becomes III
        bm.Close();
    }
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 2);

    EXPECT_EQ(Komb(m_k2), nullptr);
    EXPECT_EQ(Komb(m_k3), nullptr); // its tie to W had coefficient 0
    ASSERT_EQ(m_base->Count(CKombinacijaOpterecenja::Type), 3);
    EXPECT_EQ(Komb(m_k1)->GetRedniBroj(), 1);
    EXPECT_EQ(Komb(m_k1)->GetNaziv(), L"1.35xI+1.50xII");
    EXPECT_EQ(Komb(m_k4)->GetRedniBroj(), 2);
    EXPECT_EQ(Komb(m_k4)->GetNaziv(), L"I+1.50xIII"); // S is now III
    EXPECT_EQ(Komb(m_k4)->IsGenericName(), 1);
    EXPECT_EQ(Komb(m_k5)->GetRedniBroj(), 3);
    EXPECT_EQ(Komb(m_k5)->GetNaziv(), L"Sneg"); // the user's name stays
    EXPECT_EQ(Komb(m_k5)->IsGenericName(), 0);

    // A load case that no combination contains changes nothing and leaves no undo step.
    const StoreImage before = Image();
    const int steps = m_base->GetUndoCount();
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 0);
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(CId(999)), 0);
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(m_base->GetUndoCount(), steps);
}

TEST_F(KombinacijaCascadeTest, CascadeIsOneUndoStepWithTheDeletionThatCausedIt) {
    const StoreImage before = Image();
    const int steps = m_base->GetUndoCount();
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.FreezeUndoCounter();
        DeleteLoadCase(bm, m_p);
        EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_p), 2);
        bm.UnfreezeUndoCounter();
        bm.Close();
    }
    const StoreImage after = Image();
    EXPECT_EQ(m_base->GetUndoCount(), steps + 1);
    EXPECT_EQ(Komb(m_k3)->GetRedniBroj(), 1);
    EXPECT_EQ(Komb(m_k3)->GetNaziv(), L"I");
    EXPECT_EQ(Komb(m_k4)->GetNaziv(), L"I+1.50xIII");

    ASSERT_TRUE(m_base->Undo());
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(Komb(m_k1)->GetNaziv(), L"1.35xI+1.50xII");
    EXPECT_EQ(Komb(m_k1)->GetRedniBroj(), 1);
    ASSERT_TRUE(m_base->Redo());
    EXPECT_EQ(Image(), after);
}

TEST_F(KombinacijaCascadeTest, MissingOrOutOfRangeLoadCasesTakeTheirCombinationsAlong) {
    // X's ordinal lies beyond the number of load cases; K6 holds it with coefficient 0.
    const CId x = AddLoadCase(L"X", 9);
    const CId k6 = AddGenerated(6, {{m_g, 1.0}, {x, 0.0}});
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.FreezeUndoCounter();
        DeleteLoadCase(bm, m_w); // S becomes III, X becomes 8: still beyond 4
        CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
        bm.UnfreezeUndoCounter();
        bm.Close();
    }
    EXPECT_EQ(Komb(m_k2), nullptr);
    EXPECT_EQ(Komb(m_k3), nullptr);
    EXPECT_EQ(Komb(k6), nullptr);
    ASSERT_EQ(m_base->Count(CKombinacijaOpterecenja::Type), 3);
    EXPECT_EQ(Komb(m_k1)->GetRedniBroj(), 1);
    EXPECT_EQ(Komb(m_k4)->GetRedniBroj(), 2);
    EXPECT_EQ(Komb(m_k4)->GetNaziv(), L"I+1.50xIII");
    EXPECT_EQ(Komb(m_k5)->GetRedniBroj(), 3);
    EXPECT_EQ(Komb(m_k5)->GetNaziv(), L"Sneg");
    ASSERT_TRUE(m_base->Undo());
    EXPECT_NE(Komb(k6), nullptr);
    EXPECT_EQ(Komb(m_k4)->GetRedniBroj(), 4);

    // Without X the rest is consistent: only K6, the last, goes and nothing else changes.
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Delete(x);
        bm.Close();
    }
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(Komb(k6), nullptr);
    EXPECT_EQ(Komb(m_k5)->GetRedniBroj(), 5);
    EXPECT_EQ(Komb(m_k1)->GetNaziv(), L"1.35xI+1.50xII");
    const StoreImage before = Image();
    const int steps = m_base->GetUndoCount();
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(m_base->GetUndoCount(), steps);
}

TEST_F(KombinacijaCascadeTest, KeepingCombinationsStopsBothCascades) {
    CKombinacijaOpterecenja::bSacuvajKombinacije = 1;
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    DeleteLoadCase(bm, m_p);
    bm.Close();
    const StoreImage before = Image();
    const int steps = m_base->GetUndoCount();
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_p), 0);
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(m_base->GetUndoCount(), steps);

    CKombinacijaOpterecenja::bSacuvajKombinacije = 0;
    CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    EXPECT_EQ(m_base->Count(CKombinacijaOpterecenja::Type), 3);
}

TEST_F(KombinacijaCascadeTest, OrdinalOutsideTheCombinationsIsAnInvalidArgument) {
    const CId stray = AddCombination(9, {{m_g, 1.0}}, L"Zalutala");
    EXPECT_THROW(CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt(),
                 CInvalidArgException);
    EXPECT_THROW(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w),
                 CInvalidArgException);
    // The views were closed on the way out: the store can be changed and the cascade run.
    CBaseManager bm;
    ASSERT_EQ(bm.Open(CBaseManager::Write), 1);
    dynamic_cast<CKombinacijaOpterecenja*>(bm.GetW(stray))->Item().SetRedniBroj(6);
    bm.Close();
    EXPECT_EQ(CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(m_w), 2);
    EXPECT_EQ(Komb(stray)->GetRedniBroj(), 4);
}
