// The object base and its views: registry, store order, selections and the write checks; the
// per-class pools and the base record every persistent record starts with.
#include "objbase/BaseManager.h"
#include "platform/ErrorLogDir.h"
#include "platform/objbase/TestRecords.h"

#include <gtest/gtest.h>
#include <set>
#include <zlib.h>

namespace {

class ObjectStore : public ::testing::Test {
protected:
    void SetUp() override { RegisterTestRecords(); }

    /// Inserts records with the given values in one writing opening; returns their ids.
    std::vector<CId> Fill(std::initializer_list<int> values) {
        CBaseManager bm(CTestZapis::Type, &m_base);
        CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
        std::vector<CId> ids;
        for (const int v : values)
            ids.push_back(bm.Insert(new CTestZapis(v)));
        return ids;
    }

    CObjBase m_base;
};

/// A record class derived from a pooled one without a pool of its own: larger than a slot.
class CVeciZapis : public CTestZapis {
public:
    double m_dodatak[8] = {};
};

} // namespace

TEST_F(ObjectStore, RegisteringAgainKeepsTheFirstPrototype) {
    const size_t inUse = CTestZapis::memPool.InUse();
    EXPECT_EQ(CObjBase::RegisterSubBase(new CTestZapis, 0), CTestZapis::Type);
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse); // the new prototype was destroyed
    EXPECT_TRUE(CObjBase::IsPersistent(CTestZapis::Type));
}

TEST_F(ObjectStore, StoreOrderIsInsertionOrderAndSortedOrderIsById) {
    EXPECT_EQ(Fill({30, 10, 20}), (std::vector<CId>{CId(1), CId(2), CId(3)}));
    EXPECT_EQ(m_base.GetNextId(), 4);

    // Objects loaded under their own ids keep the order in which they came.
    CObjBase loaded;
    for (const int id : {7, 3, 5}) {
        auto* obj = new CTestZapis(id * 10);
        obj->SetId(CId(id));
        EXPECT_TRUE(loaded.InsertLoaded(obj));
    }
    EXPECT_EQ(loaded.GetNextId(), 8);
    for (const bool sorted : {false, true}) {
        CBaseManager bm(CTestZapis::Type, &loaded);
        bm.Open(CBaseManager::Read);
        EXPECT_EQ(sorted ? bm.SelectSorted(CTestZapis::Type) : bm.Select(), 3);
        std::vector<int> values;
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
            values.push_back(static_cast<const CTestZapis*>(bm.GetR(id))->m_nVrednost);
        EXPECT_EQ(values, sorted ? (std::vector<int>{30, 50, 70}) : (std::vector<int>{70, 30, 50}));
    }

    // A taken or invalid id is refused and the object is not kept.
    const size_t inUse = CTestZapis::memPool.InUse();
    auto* twin = new CTestZapis(1);
    twin->SetId(CId(3));
    EXPECT_FALSE(loaded.InsertLoaded(twin));
    EXPECT_FALSE(loaded.InsertLoaded(new CTestZapis(2)));
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse);
    EXPECT_EQ(loaded.CountAll(), 3);
}

TEST_F(ObjectStore, WalkSkipsObjectsDeletedSinceTheSelectionAndDeleteNotifies) {
    const int inserted = CTestZapis::s_nInserted;
    const int deleted = CTestZapis::s_nDeleted;
    const int released = CTestZapis::s_nReleased;
    const size_t inUse = CTestZapis::memPool.InUse();
    const std::vector<CId> ids = Fill({1, 2, 3, 4});
    CBaseManager bm(CTestZapis::Type, &m_base);
    ASSERT_EQ(bm.Open(CBaseManager::Write), 1);
    EXPECT_EQ(bm.Open(CBaseManager::Read), 0) << "an open view cannot be opened again";
    bm.Insert(new CTestOznaka);
    EXPECT_EQ(bm.Select(), 4);
    std::vector<CId> seen;
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        seen.push_back(id);
        if (id == ids[0]) {
            EXPECT_TRUE(bm.Delete(ids[1]));
            EXPECT_TRUE(bm.Delete(ids[3]));
            EXPECT_FALSE(bm.Delete(ids[3]));
        }
    }
    EXPECT_EQ(seen, (std::vector<CId>{ids[0], ids[2]}));
    EXPECT_EQ(bm.GetW(ids[1]), nullptr);
    EXPECT_EQ(CTestZapis::s_nInserted, inserted + 4);
    EXPECT_EQ(CTestZapis::s_nDeleted, deleted + 2);
    // The undo step keeps the deleted objects themselves; they go when the history does.
    EXPECT_EQ(CTestZapis::s_nReleased, released);
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 4);
    EXPECT_EQ(bm.DeleteAll(CTestZapis::Type), 2);
    EXPECT_EQ(m_base.CountAll(), 1);
    bm.Close();
    m_base.Clear();
    EXPECT_EQ(CTestZapis::s_nReleased, released + 4);
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse);
    EXPECT_EQ(m_base.GetNextId(), 1);
    EXPECT_FALSE(m_base.CanUndo());
}

TEST_F(ObjectStore, ViewsUseTheCurrentBaseWhileItLives) {
    CObjBase::SetCurrent(&m_base);
    Fill({4});
    EXPECT_EQ(CBaseManager(CTestZapis::Type).Count(), 1);
    {
        auto temporary = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(temporary.get());
    }
    EXPECT_EQ(CObjBase::GetCurrent(), nullptr) << "a destroyed base is no longer current";
    EXPECT_EQ(CBaseManager(CTestZapis::Type).Open(CBaseManager::Read), 0);
}

TEST_F(ObjectStore, ChangesOutsideAWritingViewEndTheProgram) {
    const std::vector<CId> ids = Fill({1});
    CErrorLogDir temp;
    EXPECT_EXIT(
        {
            CBaseManager bm(CTestZapis::Type, &m_base);
            bm.Open(CBaseManager::Read);
            bm.GetW(ids[0]);
        },
        ::testing::ExitedWithCode(0), "ASSERT\\(IsWrite \\(\\)\\)");
    EXPECT_NE(temp.Log().find("ASSERT(IsWrite ())\nFILE: BaseManager\nLINE: "), std::string::npos);
    EXPECT_EXIT(CBaseManager(CTestZapis::Type, &m_base).Insert(new CTestZapis(2)),
                ::testing::ExitedWithCode(0), "ASSERT\\(IsWrite \\(\\)\\)");
    EXPECT_EXIT(CBaseManager::AssertOpenOK(0), ::testing::ExitedWithCode(0), "ASSERT\\(bOpenOK\\)");
    // An object can only be replaced by one of its own type.
    EXPECT_EXIT(
        {
            CBaseManager bm(CTestZapis::Type, &m_base);
            bm.Open(CBaseManager::Write);
            bm.Replace(ids[0], new CTestOznaka(3));
        },
        ::testing::ExitedWithCode(0), "ASSERT\\(pObj->GetType \\(\\) == pOld->GetType \\(\\)\\)");
    EXPECT_EQ(m_base.CountAll(), 1);
}

TEST(Pool, ReusesFreedSlotsAndClassNewTakesFromIt) {
    CPool pool(24, 4);
    std::set<void*> slots;
    for (int i = 0; i < 10; ++i) { // more than two blocks
        void* p = pool.Alloc(24);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % alignof(std::max_align_t), 0u);
        EXPECT_TRUE(slots.insert(p).second) << "a slot was given out twice";
    }
    void* big = pool.Alloc(200); // larger than a slot: from the heap, not counted
    EXPECT_EQ(pool.InUse(), 10u);
    pool.Free(big, 200);
    for (void* p : slots)
        pool.Free(p, 24);
    EXPECT_EQ(pool.InUse(), 0u);

    const size_t before = CTestZapis::memPool.InUse();
    const int released = CTestZapis::s_nReleased;
    CObj* a = new CTestZapis(1);
    CObj* c = a->MakeNew(); // allocates in the pool too: the last address given out
    EXPECT_EQ(CTestZapis::validAdr, c);
    CObj* big2 = new CVeciZapis; // too big for a slot
    EXPECT_EQ(CTestZapis::memPool.InUse(), before + 2);
    a->SetProtected(true);
    a->Destroy(1); // a protected object is not destroyed
    EXPECT_EQ(CTestZapis::s_nReleased, released);
    a->SetProtected(false);
    for (CObj* p : {a, c, big2})
        p->Destroy(1);
    EXPECT_EQ(CTestZapis::s_nReleased, released + 3);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before);
}

TEST(ObjRecord, BaseRecordIsVersionIdAndAttributeAndOtherVersionsAreRefused) {
    CTestZapis obj(-2, 0.5);
    obj.SetId(CId(7));
    obj.SetAtribut(0x01020304);
    const std::vector<uint8_t> bytes = RecordBytes(obj);
    ASSERT_EQ(bytes.size(), 12u + 4u + 4u + 8u);
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 12),
              (std::vector<uint8_t>{1, 0, 0, 0, 7, 0, 0, 0, 4, 3, 2, 1}));
    // A copy goes through the record and carries id, attribute and fields.
    CTestZapis copy;
    copy.Copy(obj);
    EXPECT_EQ(RecordBytes(copy), bytes);

    std::vector<uint8_t> other = bytes;
    other[0] = 2;
    CFiller f;
    f.SetBuffer(other);
    f.Open(CFiller::Mode::Read);
    CTestZapis read(9);
    EXPECT_EQ(read.FromFiller(f), 0);
    EXPECT_EQ(f.GetErrorMessage(), CString(L"Object version error! Version: 2"));
    EXPECT_EQ(f.GetErrorSource(), "Obj");
    EXPECT_EQ(read.m_nVrednost, 9);
    // A stream already in error is not read at all.
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    f.SetError();
    EXPECT_EQ(read.FromFiller(f), 0);
    EXPECT_EQ(f.Remaining(), bytes.size());

    // The checksum adds the CRC of the attribute word (not of the fields) to each sum.
    const uint8_t word[4] = {4, 3, 2, 1};
    const auto crc = static_cast<uint32_t>(crc32(0L, word, 4));
    uint32_t c1 = 10, c2 = 20, c3 = 0xFFFFFFFFu;
    obj.UpdateCRC(c1, c2, c3);
    EXPECT_EQ(std::make_tuple(c1, c2, c3), std::make_tuple(10u + crc, 20u + crc, crc - 1u));
}
