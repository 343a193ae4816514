// The per-class pools and the base record that every persistent record starts with.
#include "platform/objbase/TestRecords.h"

#include <gtest/gtest.h>
#include <set>
#include <zlib.h>

namespace {

/// A record class derived from a pooled one without a pool of its own: larger than a slot.
class CVeciZapis : public CTestZapis {
public:
    double m_dodatak[8] = {};
};

std::vector<uint8_t> RecordBytes(const CObj& obj) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    obj.ToFiller(f);
    f.Close();
    return f.Buffer();
}

} // namespace

TEST(Pool, ReusesFreedSlotsAndCountsThoseInUse) {
    CPool pool(24, 4);
    std::set<void*> given;
    std::vector<void*> slots;
    for (int i = 0; i < 10; ++i) { // more than two blocks
        void* p = pool.Alloc(24);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % alignof(std::max_align_t), 0u);
        EXPECT_TRUE(given.insert(p).second) << "a slot was given out twice";
        slots.push_back(p);
    }
    EXPECT_EQ(pool.InUse(), 10u);
    pool.Free(slots[3], 24);
    EXPECT_EQ(pool.InUse(), 9u);
#if !defined(__SANITIZE_ADDRESS__)
    // Without the sanitizer the freed slot is the next one given out.
    EXPECT_EQ(pool.Alloc(24), slots[3]);
#else
    slots[3] = pool.Alloc(24);
#endif
    EXPECT_EQ(pool.InUse(), 10u);
    // A request larger than a slot comes from the heap and is not counted.
    void* big = pool.Alloc(200);
    EXPECT_EQ(pool.InUse(), 10u);
    pool.Free(big, 200);
    for (void* p : slots)
        pool.Free(p, 24);
    EXPECT_EQ(pool.InUse(), 0u);
}

TEST(PooledObj, ClassNewTakesFromThePoolAndRemembersTheAddress) {
    const size_t before = CTestZapis::memPool.InUse();
    CObj* a = new CTestZapis(1);
    EXPECT_EQ(CTestZapis::validAdr, a);
    CObj* b = new CTestZapis(2);
    EXPECT_EQ(CTestZapis::validAdr, b);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before + 2);
    // MakeNew allocates in the pool too, so it is the last address given out.
    CObj* c = a->MakeNew();
    EXPECT_EQ(CTestZapis::validAdr, c);
    EXPECT_EQ(static_cast<CTestZapis*>(c)->m_nVrednost, 1);
    // A derived class without a pool of its own is too big for a slot.
    CObj* big = new CVeciZapis;
    EXPECT_EQ(CTestZapis::memPool.InUse(), before + 3);
    for (CObj* p : {a, b, c, big})
        p->Destroy(1);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before);
}

TEST(PooledObj, DestroyReleasesAndDeletesOnlyWhenAskedAndNotProtected) {
    const size_t before = CTestZapis::memPool.InUse();
    const int released = CTestZapis::s_nReleased;
    CObj* obj = new CTestZapis(5);
    obj->Destroy(0);
    EXPECT_EQ(CTestZapis::s_nReleased, released + 1);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before + 1);

    obj->SetProtected(true);
    obj->Destroy(1);
    EXPECT_EQ(CTestZapis::s_nReleased, released + 1);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before + 1);

    obj->SetProtected(false);
    obj->Destroy(1);
    EXPECT_EQ(CTestZapis::s_nReleased, released + 2);
    EXPECT_EQ(CTestZapis::memPool.InUse(), before);
}

TEST(ObjRecord, BaseRecordIsVersionIdAndAttributeLittleEndian) {
    CTestZapis obj(-2, 0.5);
    obj.SetId(CId(7));
    obj.SetAtribut(0x01020304);
    const std::vector<uint8_t> bytes = RecordBytes(obj);
    ASSERT_EQ(bytes.size(), 12u + 4u + 4u + 8u);
    const std::vector<uint8_t> base(bytes.begin(), bytes.begin() + 12);
    EXPECT_EQ(base, (std::vector<uint8_t>{1, 0, 0, 0, 7, 0, 0, 0, 4, 3, 2, 1}));

    // A copy goes through the record and carries id, attribute and fields.
    CTestZapis copy;
    copy.Copy(obj);
    EXPECT_EQ(copy.GetId(), CId(7));
    EXPECT_EQ(copy.GetAtribut(), 0x01020304);
    EXPECT_EQ(copy.m_nVrednost, -2);
    EXPECT_EQ(copy.m_dFaktor, 0.5);
    EXPECT_EQ(RecordBytes(copy), bytes);
}

TEST(ObjRecord, UnknownBaseVersionIsAVersionErrorOfObj) {
    CTestZapis obj(3);
    std::vector<uint8_t> bytes = RecordBytes(obj);
    bytes[0] = 2;
    CFiller f;
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    CTestZapis read(9);
    EXPECT_EQ(read.FromFiller(f), 0);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.GetErrorMessage(), CString(L"Object version error! Version: 2"));
    EXPECT_EQ(f.GetErrorSource(), "Obj");
    EXPECT_EQ(read.m_nVrednost, 9);

    // A stream already in error is not read at all.
    CFiller bad;
    bad.SetBuffer(RecordBytes(obj));
    bad.Open(CFiller::Mode::Read);
    bad.SetError();
    EXPECT_EQ(read.FromFiller(bad), 0);
    EXPECT_EQ(bad.Remaining(), RecordBytes(obj).size());
}

TEST(ObjRecord, ChecksumAddsTheCrcOfTheAttributeWordToEachSum) {
    CTestZapis obj(1);
    obj.SetAtribut(0x11223344);
    const uint8_t word[4] = {0x44, 0x33, 0x22, 0x11};
    const auto expected = static_cast<uint32_t>(crc32(crc32(0L, Z_NULL, 0), word, 4));
    uint32_t c1 = 10;
    uint32_t c2 = 20;
    uint32_t c3 = 0xFFFFFFFFu;
    obj.UpdateCRC(c1, c2, c3);
    EXPECT_EQ(c1, 10u + expected);
    EXPECT_EQ(c2, 20u + expected);
    EXPECT_EQ(c3, 0xFFFFFFFFu + expected);
    // The fields of the derived record do not enter the base's checksum.
    obj.m_nVrednost = 99;
    uint32_t d1 = 10, d2 = 20, d3 = 0xFFFFFFFFu;
    obj.UpdateCRC(d1, d2, d3);
    EXPECT_EQ(d1, c1);
}
