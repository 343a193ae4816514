// Load case list items and their list: the records of both byte by byte, damaged input, and
// positional adding and inserting.
#include "model/SlOptItem.h"
#include "LoadRecordBytes.h"

#include <gtest/gtest.h>

using namespace loadrec;

namespace {

CSlOptItem FullItem() {
    return CSlOptItem(L"Vetar \u0161", 4, 1, 1, CId(12), 1.35, 1, 1, Ids({3, 4}), Ids({5}), 2);
}

// The record of FullItem, field by field: version 1, id, name, item value 1, g marker,
// influence-line flag, alternating flag, item value 3 (-1), enters seismic analysis,
// coefficient, permanent flag, never-combine ids, always-combine ids.
std::vector<uint8_t> FullItemRecord() {
    Bytes b;
    b.i32(1).i32(12).str(L"Vetar \u0161").i32(4).i32(1).i32(1).i32(1).i32(-1).i32(2);
    return b.f64(1.35).i32(1).ids({3, 4}).ids({5}).get();
}
const std::vector<uint8_t> kFullItem = FullItemRecord();
constexpr size_t kNeverCount = 62;
constexpr size_t kAlwaysCount = 74;

/// The record of a default item.
const std::vector<uint8_t> kDefaultItem =
    Bytes().i32(1).i32(-1).str(L"").i32(0).i32(0).i32(0).i32(0).i32(-1).i32(0).f64(1.0).get();

} // namespace

TEST(SlOptItem, RecordHasTheLayoutOfVersionOneBothWaysAndRefusesDamagedInput) {
    EXPECT_EQ(Written(FullItem()), kFullItem);
    EXPECT_EQ(Written(CSlOptItem()), Bytes().raw(kDefaultItem).i32(0).i32(0).i32(0).get());
    // The version field is read and not judged.
    for (const int32_t version : {1, 7}) {
        Reader r(With32(kFullItem, 0, version));
        CSlOptItem item;
        item.m_nVrednost3 = 9; // what the record holds replaces what the item held
        EXPECT_EQ(item.FromFiller(r.f()), 1);
        EXPECT_EQ(Written(item), kFullItem);
        EXPECT_FALSE(r->IsError());
        EXPECT_EQ(r->Remaining(), 0u);
    }
    ASSERT_EQ(kFullItem[kNeverCount], 0x02);
    ASSERT_EQ(kFullItem[kAlwaysCount], 0x01);
    ExpectDamagedInputFails<CSlOptItem>(kFullItem, {8, kNeverCount, kAlwaysCount});
}

TEST(SlOptItemArray, RecordHasTheLayoutOfVersionOneBothWaysAndRefusesDamagedInput) {
    CSlOptItemArray arr;
    EXPECT_EQ(Written(arr), Bytes().i32(1).i32(0).get());
    arr.InsertNewAt(1, FullItem());
    arr.AddNew();
    Bytes expected;
    expected.i32(1).i32(2).raw(kFullItem).raw(kDefaultItem).i32(0).ids({}).ids({});
    EXPECT_EQ(Written(arr), expected.get());

    Reader r(expected.get());
    CSlOptItemArray back;
    back.AddNew();
    EXPECT_EQ(back.FromFiller(r.f()), 1);
    ASSERT_EQ(back.GetSize(), 2);
    EXPECT_EQ(Written(back[0]), kFullItem);
    EXPECT_EQ(Written(back[1]), Written(CSlOptItem()));
    EXPECT_EQ(r->Remaining(), 0u);
    ExpectDamagedInputFails<CSlOptItemArray>(expected.get(), {4});
}

TEST(SlOptItemArray, AddNewPlacesItemsAtOneBasedPositionsAndInsertPutsBefore) {
    CSlOptItemArray arr;
    arr.AddNew(L"G", 3, 3, 1, 1, CId(40)); // grows the list with default items
    EXPECT_EQ(Written(arr[0]), Written(CSlOptItem()));
    EXPECT_EQ(Written(arr[2]), Written(CSlOptItem(L"G", 3, 1, 1, CId(40), 1.0, 0, 0, {}, {}, 0)));
    // An item already at the position is overwritten; the full form takes every value.
    arr.AddNew(L"Vetar \u0161", 2, 4, 1, 1, CId(12), 1.35, 1, 1, Ids({3, 4}), Ids({5}), 2);
    arr.InsertNewAt(1, FullItem());
    ASSERT_EQ(arr.GetSize(), 4);
    EXPECT_EQ(Written(arr[0]), kFullItem);
    EXPECT_EQ(Written(arr[2]), kFullItem);
    EXPECT_EQ(arr[3].m_Id, CId(40));
    EXPECT_THROW(arr.AddNew(L"x", 0, 0, 0, 0, CId()), CInvalidArgException);
}
