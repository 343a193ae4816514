// Undo of steps whose objects carry ids far beyond the store's own numbering (as a model file
// may give them): each object is recorded once per step however often it is changed, and
// undo and redo bring back the exact state.
#include "objbase/BaseManager.h"
#include "platform/objbase/TestRecords.h"

#include <gtest/gtest.h>

namespace {

CTestZapis* Loaded(int32_t id, int32_t value) {
    auto* z = new CTestZapis(value);
    z->SetId(CId(id));
    return z;
}

} // namespace

TEST(UndoFarIds, ObjectsWithFarIdsAreRecordedOnceAndRestoredExactly) {
    RegisterTestRecords();
    CObjBase base;
    using State = std::pair<std::vector<std::pair<int, std::vector<uint8_t>>>, int32_t>;
    auto capture = [&base] { return State{Contents(base), base.GetNextId()}; };
    const int32_t far[] = {5000000, 2000000000, 7, 131072};
    {
        CBaseManager bm(CTestZapis::Type, &base);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        for (const int32_t id : far)
            ASSERT_TRUE(base.InsertLoaded(Loaded(id, id % 1000)));
    }
    const State before = capture();
    for (const int n : {10, 1000}) {
        SCOPED_TRACE(n);
        // One step: the far objects changed several times, one deleted and loaded again under
        // the same id, and enough small ones to make the step large or not.
        {
            CBaseManager bm(CTestZapis::Type, &base);
            CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
            for (int v = 0; v < n; ++v)
                bm.Insert(new CTestZapis(v));
            for (int pass = 1; pass <= 3; ++pass)
                for (const int32_t id : far)
                    static_cast<CTestZapis*>(bm.GetW(CId(id)))->m_dFaktor += pass;
            ASSERT_TRUE(bm.Delete(CId(far[1])));
            ASSERT_TRUE(base.InsertLoaded(Loaded(far[1], -1)));
        }
        const State after = capture();
        ASSERT_TRUE(base.Undo());
        EXPECT_EQ(capture(), before);
        ASSERT_TRUE(base.Redo());
        EXPECT_EQ(capture(), after);
        ASSERT_TRUE(base.Undo());
        EXPECT_EQ(capture(), before);
    }
}

TEST(UndoFarIds, AnIdKeptApartIsFoundAndDeletedOnceTheTableByIndexReachesIt) {
    RegisterTestRecords();
    CObjBase base;
    CBaseManager bm(CTestZapis::Type, &base);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    // Alone, id 9000 lies beyond what the few objects justify; then 5000 objects make the
    // table by index reach past it.
    ASSERT_TRUE(base.InsertLoaded(Loaded(9000, 9)));
    for (int32_t id = 1; id <= 5000; ++id)
        ASSERT_TRUE(base.InsertLoaded(Loaded(id, id % 7)));
    ASSERT_NE(bm.GetR(CId(9000)), nullptr);
    EXPECT_EQ(static_cast<const CTestZapis*>(bm.GetR(CId(9000)))->m_nVrednost, 9);
    EXPECT_EQ(bm.GetR(CId(8999)), nullptr);
    EXPECT_FALSE(base.InsertLoaded(Loaded(9000, 1))) << "an id is taken once";
    ASSERT_TRUE(bm.Delete(CId(9000)));
    EXPECT_EQ(bm.GetR(CId(9000)), nullptr);
    ASSERT_TRUE(base.InsertLoaded(Loaded(9000, 3)));
    EXPECT_EQ(static_cast<const CTestZapis*>(bm.GetR(CId(9000)))->m_nVrednost, 3);
    EXPECT_EQ(base.Count(CTestZapis::Type), 5001);
}
