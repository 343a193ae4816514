// The object base and its views: registry, store order, selections and the write checks.
#include "objbase/BaseManager.h"
#include "platform/objbase/TestRecords.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

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

    /// The values of the records of a type as the view walks them.
    std::vector<int> Walk(bool sorted = false) {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Read);
        sorted ? bm.SelectSorted(CTestZapis::Type) : bm.Select();
        std::vector<int> values;
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
            values.push_back(static_cast<const CTestZapis*>(bm.GetR(id))->m_nVrednost);
        return values;
    }

    CObjBase m_base;
};

/// A class without a type number of its own: the registry gives it one.
class CBezBroja : public CPooledObj<CBezBroja, 0> {
public:
    int ToFiller(CFiller& f) const override { return CObj::ToFiller(f); }
    int FromFiller(CFiller& f) override { return CObj::FromFiller(f); }
};

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

} // namespace

TEST_F(ObjectStore, RegistryGivesFreeNumbersAndKeepsTheFirstPrototype) {
    const int type = CObjBase::RegisterSubBase(new CBezBroja, 0);
    EXPECT_GE(type, 1000);
    EXPECT_EQ(CBezBroja::Type, type);
    EXPECT_TRUE(CObjBase::IsRegistered(type));
    EXPECT_FALSE(CObjBase::IsPersistent(type));
    EXPECT_TRUE(CObjBase::IsPersistent(CTestZapis::Type));

    // Registering again destroys the new prototype and answers the same number.
    const size_t inUse = CBezBroja::memPool.InUse();
    EXPECT_EQ(CObjBase::RegisterSubBase(new CBezBroja, 1), type);
    EXPECT_EQ(CBezBroja::memPool.InUse(), inUse);
    EXPECT_FALSE(CObjBase::IsPersistent(type));

    const std::vector<int> types = CObjBase::GetRegisteredTypes();
    EXPECT_TRUE(std::is_sorted(types.begin(), types.end()));
    EXPECT_EQ(CObjBase::CreateObject(987654), nullptr);
    CObj* made = CObjBase::CreateObject(CTestZapis::Type);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetType(), CTestZapis::Type);
    EXPECT_FALSE(made->GetId().Valid());
    EXPECT_FALSE(made->IsProtected());
    made->Destroy(1);
}

TEST_F(ObjectStore, StoreOrderIsInsertionOrderAndSortedOrderIsById) {
    const std::vector<CId> ids = Fill({30, 10, 20});
    EXPECT_EQ(ids, (std::vector<CId>{CId(1), CId(2), CId(3)}));
    EXPECT_EQ(m_base.GetNextId(), 4);
    EXPECT_EQ(Walk(), (std::vector<int>{30, 10, 20}));

    // Objects loaded under their own ids keep the order in which they came.
    CObjBase loaded;
    for (const int id : {7, 3, 5}) {
        auto* obj = new CTestZapis(id * 10);
        obj->SetId(CId(id));
        EXPECT_TRUE(loaded.InsertLoaded(obj));
    }
    EXPECT_EQ(loaded.Ids(CTestZapis::Type), (std::vector<CId>{CId(7), CId(3), CId(5)}));
    EXPECT_EQ(loaded.Ids(CTestZapis::Type, true), (std::vector<CId>{CId(3), CId(5), CId(7)}));
    EXPECT_EQ(loaded.GetNextId(), 8);
    CBaseManager bm(CTestZapis::Type, &loaded);
    bm.Open(CBaseManager::Read);
    EXPECT_EQ(bm.SelectSorted(CTestZapis::Type), 3);
    EXPECT_EQ(bm.GetFirst(), CId(3));
    EXPECT_EQ(bm.GetNext(), CId(5));
    EXPECT_EQ(bm.GetNext(), CId(7));
    EXPECT_FALSE(bm.GetNext().Valid());

    // A taken or invalid id is refused and the object is not kept.
    const size_t inUse = CTestZapis::memPool.InUse();
    auto* twin = new CTestZapis(1);
    twin->SetId(CId(3));
    EXPECT_FALSE(loaded.InsertLoaded(twin));
    EXPECT_FALSE(loaded.InsertLoaded(new CTestZapis(2)));
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse);
    EXPECT_EQ(loaded.CountAll(), 3);
}

TEST_F(ObjectStore, WalkSkipsObjectsDeletedSinceTheSelection) {
    const std::vector<CId> ids = Fill({1, 2, 3, 4});
    {
        CBaseManager other(0, &m_base);
        other.Open(CBaseManager::Write);
        auto* oznaka = new CTestOznaka;
        oznaka->m_kodovi = {5, 6};
        other.Insert(oznaka);
    }
    CBaseManager bm(CTestZapis::Type, &m_base);
    ASSERT_EQ(bm.Open(CBaseManager::Write), 1);
    EXPECT_EQ(bm.Open(CBaseManager::Read), 0) << "an open view cannot be opened again";
    EXPECT_EQ(bm.Select(), 4);
    EXPECT_EQ(bm.Count(), 4);
    EXPECT_EQ(bm.Count(CTestOznaka::Type), 1);
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
    EXPECT_EQ(bm.GetR(ids[1]), nullptr);
    EXPECT_EQ(bm.GetW(ids[1]), nullptr);
    EXPECT_EQ(bm.DeleteAll(CTestZapis::Type), 2);
    EXPECT_EQ(bm.Count(), 0);
    EXPECT_EQ(m_base.CountAll(), 1);
}

TEST_F(ObjectStore, InsertAndDeleteNotifyAndDestroyTheObject) {
    const int inserted = CTestZapis::s_nInserted;
    const int deleted = CTestZapis::s_nDeleted;
    const int released = CTestZapis::s_nReleased;
    const size_t inUse = CTestZapis::memPool.InUse();
    const std::vector<CId> ids = Fill({1, 2});
    EXPECT_EQ(CTestZapis::s_nInserted, inserted + 2);
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 2);
    {
        CBaseManager bm(CTestZapis::Type, &m_base);
        bm.Open(CBaseManager::Write);
        bm.Delete(ids[0]);
    }
    EXPECT_EQ(CTestZapis::s_nDeleted, deleted + 1);
    EXPECT_EQ(CTestZapis::s_nReleased, released + 1);
    // The undo history keeps records, not objects.
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse + 1);
    m_base.Clear();
    EXPECT_EQ(CTestZapis::memPool.InUse(), inUse);
    EXPECT_EQ(m_base.GetNextId(), 1);
    EXPECT_FALSE(m_base.CanUndo());
}

TEST_F(ObjectStore, ViewsUseTheCurrentBaseAndNeedOne) {
    CBaseManager none(CTestZapis::Type);
    if (CObjBase::GetCurrent() == nullptr) {
        EXPECT_EQ(none.Open(CBaseManager::Read), 0);
    }
    CObjBase::SetCurrent(&m_base);
    Fill({4});
    {
        CBaseManager bm(CTestZapis::Type);
        EXPECT_EQ(bm.Base(), &m_base);
        EXPECT_EQ(bm.Count(), 1);
    }
    {
        auto temporary = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(temporary.get());
    }
    EXPECT_EQ(CObjBase::GetCurrent(), nullptr) << "a destroyed base is no longer current";
}

TEST_F(ObjectStore, ChangesOutsideAWritingViewEndTheProgram) {
    const std::vector<CId> ids = Fill({1});
    CTempDir temp;
    temp.CatchErrorLog();
    EXPECT_EXIT(
        {
            CBaseManager bm(CTestZapis::Type, &m_base);
            bm.Open(CBaseManager::Read);
            bm.GetW(ids[0]);
        },
        ::testing::ExitedWithCode(0), "ASSERT\\(IsWrite \\(\\)\\)");
    const std::string log = ReadFile(temp.Path() / "vmerror.log");
    EXPECT_NE(log.find("##### BEGINING OF STACK DUMP"), std::string::npos);
    EXPECT_NE(log.find("ASSERT(IsWrite ())\nFILE: BaseManager\nLINE: "), std::string::npos);

    EXPECT_EXIT(
        {
            CBaseManager bm(CTestZapis::Type, &m_base);
            bm.Insert(new CTestZapis(2));
        },
        ::testing::ExitedWithCode(0), "ASSERT\\(IsWrite \\(\\)\\)");
    EXPECT_EXIT(CBaseManager::AssertOpenOK(0), ::testing::ExitedWithCode(0), "ASSERT\\(bOpenOK\\)");
    EXPECT_EQ(m_base.CountAll(), 1);
}
