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
    const int32_t far[] = {5000000, 2000000000, 7};
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
