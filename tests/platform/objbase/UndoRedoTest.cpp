// Undo and redo of the object base: steps per writing opening, frozen openings joined into
// one step, steps over many objects and over objects with ids far beyond the store's own
// numbering, and exact restoration of objects, ids, store order and the next id.
#include "objbase/BaseManager.h"
#include "platform/objbase/TestRecords.h"

#include <gtest/gtest.h>

namespace {

class UndoRedo : public ::testing::Test {
protected:
    /// Everything undo must bring back: the objects of every type in store order with their
    /// ids and fields, and the next id.
    using State = std::pair<std::vector<std::pair<int, std::vector<uint8_t>>>, int32_t>;

    void SetUp() override { RegisterTestRecords(); }

    State Capture() const { return {Contents(m_base), m_base.GetNextId()}; }
    /// Runs the change in one opening for writing.
    template <class F> void Step(F change) {
        CBaseManager bm(CTestZapis::Type, &m_base);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        change(bm);
    }
    static CTestZapis* Zapis(CBaseManager& bm, int32_t id) {
        return static_cast<CTestZapis*>(bm.GetW(CId(id)));
    }
    /// A record under an id of its own, as a model file gives it.
    static CTestZapis* Loaded(int32_t id, int32_t value) {
        auto* z = new CTestZapis(value);
        z->SetId(CId(id));
        return z;
    }
    /// Undoes every step down to states[0] and redoes them all, checking each state; with
    /// `first` nothing before states[0] can be undone.
    void ExpectUndoAndRedoExact(const std::vector<State>& states, bool first = true) {
        for (size_t k = states.size() - 1; k > 0; --k) {
            ASSERT_TRUE(m_base.Undo());
            EXPECT_EQ(Capture(), states[k - 1]) << "after undoing step " << k;
        }
        EXPECT_EQ(m_base.CanUndo(), !first);
        for (size_t k = 1; k < states.size(); ++k) {
            ASSERT_TRUE(m_base.Redo());
            EXPECT_EQ(Capture(), states[k]) << "after redoing step " << k;
        }
        EXPECT_FALSE(m_base.Redo());
    }

    CObjBase m_base;
};

} // namespace

TEST_F(UndoRedo, SeparateOpeningsAreSeparateStepsUndoneAndRedoneExactly) {
    std::vector<State> states{Capture()};
    Step([](CBaseManager& bm) {
        for (int v = 1; v <= 4; ++v)
            bm.Insert(new CTestZapis(v, v * 0.5));
        bm.Insert(new CTestOznaka(5));
    });
    states.push_back(Capture());
    Step([](CBaseManager& bm) {
        Zapis(bm, 2)->m_nVrednost = 20;
        Zapis(bm, 2)->m_dFaktor = -1.25; // a second change of the same object in the step
        Zapis(bm, 3)->SetAtribut(77);
    });
    states.push_back(Capture());
    Step([](CBaseManager& bm) {
        bm.Delete(CId(2)); // from the middle of the store order
        bm.Delete(CId(5));
    });
    states.push_back(Capture());
    Step([](CBaseManager& bm) {
        bm.Delete(CId(1));
        bm.Insert(new CTestZapis(7));
        Zapis(bm, 6)->m_nVrednost = 70;
        Zapis(bm, 4)->m_nVrednost = 40;
    });
    states.push_back(Capture());
    ASSERT_EQ(m_base.GetUndoCount(), 4);
    // Undo and redo recreate objects from their records without notifying them.
    const auto notified = std::make_pair(CTestZapis::s_nInserted, CTestZapis::s_nDeleted);
    ExpectUndoAndRedoExact(states);
    EXPECT_EQ(std::make_pair(CTestZapis::s_nInserted, CTestZapis::s_nDeleted), notified);

    // Undone deletes bring objects back in their old places, the next id comes back, and a
    // new step after an undo forgets what could have been redone.
    m_base.Undo();
    m_base.Undo();
    EXPECT_EQ(Capture(), states[2]);
    Step([](CBaseManager& bm) { EXPECT_EQ(bm.Insert(new CTestZapis(8)), CId(6)); });
    EXPECT_FALSE(m_base.CanRedo());
}

TEST_F(UndoRedo, FrozenOpeningsJoinOneStep) {
    Step([](CBaseManager& bm) {
        bm.Insert(new CTestZapis(1));
        bm.Insert(new CTestZapis(2));
    });
    std::vector<State> states{Capture()};
    // While the counter is frozen, every opening joins the same step.
    m_base.FreezeUndoCounter();
    for (int i = 0; i < 3; ++i) {
        Step([i](CBaseManager& bm) {
            bm.Insert(new CTestZapis(10 + i));
            Zapis(bm, 1)->m_nVrednost += 100;
            if (i == 1)
                bm.Delete(CId(2));
        });
    }
    EXPECT_FALSE(m_base.CanUndo()) << "no undo while a step is in progress";
    m_base.UnfreezeUndoCounter();
    states.push_back(Capture());

    // A cascade: a view freezes inside an editor's writing opening, a second view writes and
    // closes, and the editor closes; the freeze left by the editor's view is undone at Close.
    {
        CBaseManager editor(CTestZapis::Type, &m_base);
        editor.Open(CBaseManager::Write);
        editor.FreezeUndoCounter();
        Zapis(editor, 3)->m_nVrednost = -3;
        Step([](CBaseManager& cascade) {
            cascade.FreezeUndoCounter();
            cascade.Delete(CId(4));
            cascade.UnfreezeUndoCounter();
        });
        editor.Close();
        EXPECT_FALSE(m_base.IsFrozen());
    }
    states.push_back(Capture());
    EXPECT_EQ(m_base.GetUndoCount(), 3);
    m_base.SetUndoLimit(2); // drops the oldest step, the first insertion
    ExpectUndoAndRedoExact(states);
}

TEST_F(UndoRedo, SmallOpeningsThatChangeNothingLeaveNoStep) {
    Step([](CBaseManager& bm) { bm.Insert(new CTestZapis(1)); });
    Step([](CBaseManager& bm) {
        Zapis(bm, 1); // taken for writing but left as it was
        bm.FreezeUndoCounter();
    });
    EXPECT_EQ(m_base.GetUndoCount(), 1);
    EXPECT_TRUE(m_base.Undo());
    Step([](CBaseManager&) {});
    EXPECT_TRUE(m_base.Redo()) << "a step that changed nothing keeps what can be redone";
    Step([](CBaseManager& bm) {
        bm.Insert(new CTestZapis(2));
        bm.Delete(CId(2)); // inserted and deleted: the next id still moved on
    });
    EXPECT_EQ(m_base.GetUndoCount(), 2);
    m_base.Undo();
    EXPECT_EQ(m_base.GetNextId(), 2);
    m_base.SetUndoLimit(0);
    EXPECT_FALSE(m_base.Undo());
}

TEST_F(UndoRedo, StepsOverManyObjectsAreUndoneAndRedoneExactly) {
    // Steps of 512, 513 and 2001 objects: around the size from which a step takes its after
    // images only when it is undone.
    for (const int n : {511, 512, 2000}) {
        SCOPED_TRACE(n);
        m_base.Clear();
        Step([n](CBaseManager& bm) {
            for (int v = 0; v < n; ++v)
                bm.Insert(new CTestZapis(v));
        });
        std::vector<State> states{Capture()};
        // Every object taken for writing, every other one changed, two deleted, one added.
        Step([n](CBaseManager& bm) {
            for (int id = 1; id <= n; ++id)
                if (CTestZapis* z = Zapis(bm, id); id % 2 == 0)
                    z->m_dFaktor = -id;
            bm.Delete(CId(3));
            bm.Delete(CId(n));
            bm.Insert(new CTestOznaka(-1));
        });
        states.push_back(Capture());
        // A later small step over objects of the large one.
        Step([](CBaseManager& bm) {
            Zapis(bm, 2)->m_nVrednost = 222;
            bm.Delete(CId(5));
        });
        states.push_back(Capture());
        ExpectUndoAndRedoExact(states, false);
    }
    // Taken for writing without a change: a small step is not kept, a large one is kept and
    // undoes to the same state.
    for (const int n : {100, 2000}) {
        m_base.Clear();
        const State empty = Capture();
        Step([n](CBaseManager& bm) {
            for (int v = 0; v < n; ++v)
                bm.Insert(new CTestZapis(v));
        });
        const State before = Capture();
        Step([n](CBaseManager& bm) {
            for (int id = 1; id <= n; ++id)
                Zapis(bm, id);
        });
        EXPECT_EQ(m_base.GetUndoCount(), n > 512 ? 2 : 1) << n;
        ASSERT_TRUE(m_base.Undo());
        EXPECT_EQ(Capture(), n > 512 ? before : empty) << n;
    }
}

TEST_F(UndoRedo, ReplacedAndDeletedObjectsAreKeptThemselvesAndComeBackExactly) {
    for (const int n : {20, 1500}) {
        SCOPED_TRACE(n);
        m_base.Clear();
        Step([n](CBaseManager& bm) {
            for (int v = 1; v <= n; ++v)
                bm.Insert(new CTestZapis(v, v * 0.25));
            bm.Insert(new CTestOznaka(-7));
        });
        std::vector<State> states{Capture()};
        const CObj* const original = m_base.Find(CId(2));
        // Every other object replaced by a changed copy, a replaced one then changed in place
        // and another one replaced twice; two deleted, one of them replaced first.
        Step([n](CBaseManager& bm) {
            for (int id = 2; id <= n; id += 2) {
                auto* kopija = new CTestZapis(-id, 1.5);
                kopija->SetAtribut(id);
                ASSERT_TRUE(bm.Replace(CId(id), kopija));
                EXPECT_EQ(bm.GetR(CId(id)), kopija);
                EXPECT_EQ(kopija->GetId(), CId(id));
            }
            Zapis(bm, 4)->m_nVrednost = 444;
            ASSERT_TRUE(bm.Replace(CId(6), new CTestZapis(66)));
            ASSERT_TRUE(bm.Replace(CId(8), new CTestZapis(88)));
            bm.Delete(CId(8));
            bm.Delete(CId(3));
            EXPECT_FALSE(bm.Replace(CId(3), new CTestZapis(33))) << "no object with that id";
        });
        states.push_back(Capture());
        ASSERT_TRUE(m_base.Undo());
        EXPECT_EQ(Capture(), states[0]);
        EXPECT_EQ(m_base.Find(CId(2)), original) << "the replaced object itself is back";
        ASSERT_TRUE(m_base.Redo());
        EXPECT_EQ(Capture(), states[1]);
        ExpectUndoAndRedoExact(states, false);
        // The store order holds across the swaps: a new object still comes last.
        Step([](CBaseManager& bm) { bm.Insert(new CTestZapis(1000)); });
        EXPECT_EQ(m_base.Ids(CTestZapis::Type).back(), CId(n + 2));
    }
}

TEST_F(UndoRedo, UnreachableStepsAreFreedWhenIdleOrAtTheNextStep) {
    const size_t inUse = CTestZapis::memPool.InUse();
    Step([](CBaseManager& bm) {
        for (int v = 0; v < 10; ++v)
            bm.Insert(new CTestZapis(v));
    });
    Step([](CBaseManager& bm) {
        for (int id = 1; id <= 10; ++id)
            bm.Delete(CId(id));
    });
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 10) << "the deleted objects are kept";
    ASSERT_TRUE(m_base.Undo());
    ASSERT_TRUE(m_base.Undo());
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 10);
    // A new step puts both steps that could have been redone out of reach; their objects are
    // freed when the host is idle, or else when the next step finishes.
    Step([](CBaseManager& bm) { bm.Insert(new CTestZapis(11)); });
    EXPECT_FALSE(m_base.CanRedo());
    EXPECT_TRUE(m_base.HasDiscarded());
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 11);
    m_base.ReleaseDiscarded();
    EXPECT_FALSE(m_base.HasDiscarded());
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 1);
    ASSERT_TRUE(m_base.Undo());
    Step([](CBaseManager& bm) { bm.Insert(new CTestZapis(12)); });
    Step([](CBaseManager& bm) { bm.Insert(new CTestZapis(13)); });
    EXPECT_FALSE(m_base.HasDiscarded());
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 2);

    // Steps beyond the limit are set aside too.
    m_base.SetUndoLimit(1);
    EXPECT_TRUE(m_base.HasDiscarded());
    Step([](CBaseManager& bm) { bm.Delete(CId(1)); });
    EXPECT_EQ(m_base.GetUndoCount(), 1);
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 2) << "the deleted object is kept";
    m_base.Clear();
    EXPECT_FALSE(m_base.HasDiscarded());
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse);
}

TEST_F(UndoRedo, ObjectsWithFarIdsAreRecordedOnceAndRestoredExactly) {
    const int32_t far[] = {5000000, 2000000000, 7, 131072};
    Step([&](CBaseManager&) {
        for (const int32_t id : far)
            ASSERT_TRUE(m_base.InsertLoaded(Loaded(id, id % 1000)));
    });
    const State before = Capture();
    for (const int n : {10, 1000}) {
        SCOPED_TRACE(n);
        // One step: the far objects changed several times, one deleted and loaded again under
        // the same id, and enough small ones to make the step large or not.
        Step([&](CBaseManager& bm) {
            for (int v = 0; v < n; ++v)
                bm.Insert(new CTestZapis(v));
            for (int pass = 1; pass <= 3; ++pass)
                for (const int32_t id : far)
                    Zapis(bm, id)->m_dFaktor += pass;
            ASSERT_TRUE(bm.Delete(CId(far[1])));
            ASSERT_TRUE(m_base.InsertLoaded(Loaded(far[1], -1)));
        });
        const State after = Capture();
        ASSERT_TRUE(m_base.Undo());
        EXPECT_EQ(Capture(), before);
        ASSERT_TRUE(m_base.Redo());
        EXPECT_EQ(Capture(), after);
        ASSERT_TRUE(m_base.Undo());
        EXPECT_EQ(Capture(), before);
    }
}

TEST_F(UndoRedo, AnIdKeptApartIsFoundAndDeletedOnceTheTableByIndexReachesIt) {
    // Alone, id 9000 lies beyond what the few objects justify; then 5000 objects make the
    // table by index reach past it.
    Step([&](CBaseManager& bm) {
        ASSERT_TRUE(m_base.InsertLoaded(Loaded(9000, 9)));
        for (int32_t id = 1; id <= 5000; ++id)
            ASSERT_TRUE(m_base.InsertLoaded(Loaded(id, id % 7)));
        ASSERT_NE(bm.GetR(CId(9000)), nullptr);
        EXPECT_EQ(static_cast<const CTestZapis*>(bm.GetR(CId(9000)))->m_nVrednost, 9);
        EXPECT_EQ(bm.GetR(CId(8999)), nullptr);
        EXPECT_FALSE(m_base.InsertLoaded(Loaded(9000, 1))) << "an id is taken once";
        ASSERT_TRUE(bm.Delete(CId(9000)));
        EXPECT_EQ(bm.GetR(CId(9000)), nullptr);
        ASSERT_TRUE(m_base.InsertLoaded(Loaded(9000, 3)));
        EXPECT_EQ(static_cast<const CTestZapis*>(bm.GetR(CId(9000)))->m_nVrednost, 3);
    });
    EXPECT_EQ(m_base.Count(CTestZapis::Type), 5001);
}
