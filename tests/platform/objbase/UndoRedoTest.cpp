// Undo and redo of the object base: steps per writing opening, frozen openings joined into
// one step, and exact restoration of objects, ids, store order and the next id.
#include "objbase/BaseManager.h"
#include "platform/objbase/TestRecords.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

/// Everything undo must bring back: per type the objects in store order with their ids and
/// fields, and the next id.
struct State {
    std::vector<std::tuple<int32_t, int32_t, double, int32_t>> zapisi; // id, value, factor, attr
    std::vector<std::pair<int32_t, std::vector<int32_t>>> oznake;      // id, codes
    int32_t nextId = 0;
    bool operator==(const State&) const = default;
};

void PrintTo(const State& s, std::ostream* os) {
    *os << "next id " << s.nextId << "; records";
    for (const auto& [id, value, factor, attr] : s.zapisi)
        *os << " [" << id << ": " << value << ", " << factor << ", " << attr << "]";
    *os << "; marks";
    for (const auto& [id, codes] : s.oznake)
        *os << " [" << id << ": " << codes.size() << " codes]";
}

State Capture(const CObjBase& base) {
    State s;
    for (const CId& id : base.Ids(CTestZapis::Type)) {
        const auto* z = static_cast<const CTestZapis*>(base.Find(id));
        s.zapisi.emplace_back(id.GetValue(), z->m_nVrednost, z->m_dFaktor, z->GetAtribut());
    }
    for (const CId& id : base.Ids(CTestOznaka::Type))
        s.oznake.emplace_back(id.GetValue(),
                              static_cast<const CTestOznaka*>(base.Find(id))->m_kodovi);
    s.nextId = base.GetNextId();
    return s;
}

class UndoRedo : public ::testing::Test {
protected:
    void SetUp() override { RegisterTestRecords(); }

    CTestZapis* Zapis(CBaseManager& bm, int32_t id) {
        return static_cast<CTestZapis*>(bm.GetW(CId(id)));
    }

    CObjBase m_base;
};

} // namespace

TEST_F(UndoRedo, SeparateOpeningsAreSeparateStepsUndoneAndRedoneExactly) {
    std::vector<State> states{Capture(m_base)};
    auto step = [&](auto change) {
        CBaseManager bm(CTestZapis::Type, &m_base);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        change(bm);
        bm.Close();
        states.push_back(Capture(m_base));
    };
    step([](CBaseManager& bm) {
        for (int v = 1; v <= 4; ++v)
            bm.Insert(new CTestZapis(v, v * 0.5));
        auto* o = new CTestOznaka;
        o->m_kodovi = {7, 8, 9};
        bm.Insert(o);
    });
    step([&](CBaseManager& bm) {
        Zapis(bm, 2)->m_nVrednost = 20;
        Zapis(bm, 2)->m_dFaktor = -1.25; // a second change of the same object in the step
        Zapis(bm, 3)->SetAtribut(77);
    });
    step([](CBaseManager& bm) {
        bm.Delete(CId(2)); // from the middle of the store order
        bm.Delete(CId(5));
    });
    step([](CBaseManager& bm) { bm.Insert(new CTestZapis(6)); });
    step([&](CBaseManager& bm) {
        bm.Delete(CId(1));
        bm.Insert(new CTestZapis(7));
        Zapis(bm, 7)->m_nVrednost = 70;
        Zapis(bm, 4)->m_nVrednost = 40;
    });
    ASSERT_EQ(m_base.GetUndoCount(), 5);
    EXPECT_EQ(states.back().nextId, 8);

    for (int k = 5; k > 0; --k) {
        ASSERT_TRUE(m_base.Undo());
        EXPECT_EQ(Capture(m_base), states[k - 1]) << "after undoing step " << k;
    }
    EXPECT_FALSE(m_base.Undo());
    EXPECT_EQ(m_base.CountAll(), 0);
    for (int k = 1; k <= 5; ++k) {
        ASSERT_TRUE(m_base.Redo());
        EXPECT_EQ(Capture(m_base), states[k]) << "after redoing step " << k;
    }
    EXPECT_FALSE(m_base.Redo());

    // Undone deletes bring objects back in their old places, and a new step after an undo
    // forgets what could have been redone.
    m_base.Undo();
    m_base.Undo();
    m_base.Undo();
    EXPECT_EQ(Capture(m_base), states[2]);
    EXPECT_TRUE(m_base.CanRedo());
    step([](CBaseManager& bm) { bm.Insert(new CTestZapis(8)); });
    EXPECT_FALSE(m_base.CanRedo());
    EXPECT_EQ(std::get<0>(states.back().zapisi.back()), 6) << "the next id came back with undo";
}

TEST_F(UndoRedo, FrozenOpeningsJoinOneStep) {
    {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CTestZapis(1));
        bm.Insert(new CTestZapis(2));
    }
    const State before = Capture(m_base);

    // While the counter is frozen, every opening joins the same step.
    m_base.FreezeUndoCounter();
    for (int i = 0; i < 3; ++i) {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CTestZapis(10 + i));
        Zapis(bm, 1)->m_nVrednost += 100;
        if (i == 1)
            bm.Delete(CId(2));
    }
    EXPECT_FALSE(m_base.CanUndo()) << "no undo while a step is in progress";
    m_base.UnfreezeUndoCounter();
    const State after = Capture(m_base);
    EXPECT_EQ(m_base.GetUndoCount(), 2);

    // A cascade: a view freezes inside an editor's writing opening, a second view writes and
    // closes, and the editor closes; the freeze left by the editor's view is undone at Close.
    {
        CBaseManager editor(CTestZapis::Type, &m_base);
        editor.Open(CBaseManager::Write);
        editor.FreezeUndoCounter();
        Zapis(editor, 3)->m_nVrednost = -3;
        {
            CBaseManager cascade(CTestZapis::Type, &m_base);
            cascade.Open(CBaseManager::Write);
            cascade.FreezeUndoCounter();
            cascade.Delete(CId(4));
            cascade.UnfreezeUndoCounter();
        }
        editor.Close();
        EXPECT_FALSE(m_base.IsFrozen());
    }
    EXPECT_EQ(m_base.GetUndoCount(), 3);

    ASSERT_TRUE(m_base.Undo());
    EXPECT_EQ(Capture(m_base), after);
    ASSERT_TRUE(m_base.Undo());
    EXPECT_EQ(Capture(m_base), before);
    ASSERT_TRUE(m_base.Redo());
    EXPECT_EQ(Capture(m_base), after);
}

TEST_F(UndoRedo, OpeningsThatChangeNothingLeaveNoStep) {
    {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CTestZapis(1));
    }
    {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        Zapis(bm, 1); // taken for writing but left as it was
        bm.FreezeUndoCounter();
    }
    {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CTestZapis(2));
        bm.Delete(CId(2)); // inserted and deleted: the next id still moved on
    }
    EXPECT_EQ(m_base.GetUndoCount(), 2);
    EXPECT_EQ(m_base.GetNextId(), 3);
    m_base.Undo();
    EXPECT_EQ(m_base.GetNextId(), 2);
    EXPECT_EQ(m_base.CountAll(), 1);

    m_base.SetUndoLimit(0);
    EXPECT_EQ(m_base.GetUndoCount(), 0);
    EXPECT_FALSE(m_base.Undo());
}
