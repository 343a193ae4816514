// Load case list items and their list: defaults, positional adding and inserting, and the
// records of both, byte by byte.
#include "model/SlOptItem.h"
#include "LoadRecordBytes.h"

#include <gtest/gtest.h>

using loadrec::Bytes;
using loadrec::Reader;
using loadrec::Written;

namespace {

OCArray<CId> Ids(std::initializer_list<int32_t> values) {
    OCArray<CId> ids;
    for (const int32_t v : values)
        ids.Add(CId(v));
    return ids;
}

CSlOptItem FullItem() {
    return CSlOptItem(L"Vetar \u0161", 4, 1, 1, CId(12), 1.35, 1, 1, Ids({3, 4}), Ids({5}), 2);
}

// The record of FullItem, field by field.
const std::vector<uint8_t> kFullItem = {
    0x01, 0x00, 0x00, 0x00,                         // version 1
    0x0C, 0x00, 0x00, 0x00,                         // id 12
    0x07, 0x00, 0x00, 0x00,                         // name: 7 UTF-16 units
    'V',  0x00, 'e',  0x00, 't',  0x00, 'a',  0x00, //
    'r',  0x00, ' ',  0x00, 0x61, 0x01,             //   "Vetar š"
    0x04, 0x00, 0x00, 0x00,                         // item value 1
    0x01, 0x00, 0x00, 0x00,                         // g marker
    0x01, 0x00, 0x00, 0x00,                         // influence-line flag
    0x01, 0x00, 0x00, 0x00,                         // alternating flag
    0xFF, 0xFF, 0xFF, 0xFF,                         // item value 3: -1
    0x02, 0x00, 0x00, 0x00,                         // enters seismic analysis
    0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xF5, 0x3F, // coefficient 1.35
    0x01, 0x00, 0x00, 0x00,                         // permanent flag
    0x02, 0x00, 0x00, 0x00,                         // never-combine: 2 ids
    0x03, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, //   3, 4
    0x01, 0x00, 0x00, 0x00,                         // always-combine: 1 id
    0x05, 0x00, 0x00, 0x00,                         //   5
};

void ExpectFullItem(const CSlOptItem& item) {
    EXPECT_EQ(item.m_Id, CId(12));
    EXPECT_EQ(item.m_strNaziv, CString(L"Vetar \u0161"));
    EXPECT_EQ(item.m_nVrednost1, 4);
    EXPECT_EQ(item.m_ngMarker, 1);
    EXPECT_EQ(item.m_bUticajnaLinija, 1);
    EXPECT_EQ(item.m_bAlternativno, 1);
    EXPECT_EQ(item.m_nVrednost3, -1);
    EXPECT_EQ(item.m_nUlaziUSeizmickiProracun, 2);
    EXPECT_EQ(item.m_dKoeficijent, 1.35);
    EXPECT_EQ(item.m_bStalno, 1);
    EXPECT_EQ(item.m_arrNeKombinujSa, Ids({3, 4}));
    EXPECT_EQ(item.m_arrUvekKombinujSa, Ids({5}));
}

void ExpectDefaultItem(const CSlOptItem& item) {
    EXPECT_FALSE(item.m_Id.Valid());
    EXPECT_EQ(item.m_Id.GetValue(), -1);
    EXPECT_TRUE(item.m_strNaziv.IsEmpty());
    EXPECT_EQ(item.m_nVrednost1, 0);
    EXPECT_EQ(item.m_ngMarker, 0);
    EXPECT_EQ(item.m_bUticajnaLinija, 0);
    EXPECT_EQ(item.m_bAlternativno, 0);
    EXPECT_EQ(item.m_nVrednost3, -1);
    EXPECT_EQ(item.m_nUlaziUSeizmickiProracun, 0);
    EXPECT_EQ(item.m_dKoeficijent, 1.0);
    EXPECT_EQ(item.m_bStalno, 0);
    EXPECT_TRUE(item.m_arrNeKombinujSa.IsEmpty());
    EXPECT_TRUE(item.m_arrUvekKombinujSa.IsEmpty());
}

} // namespace

TEST(SlOptItem, DefaultsAndFullConstructionAndCopies) {
    ExpectDefaultItem(CSlOptItem());
    ExpectFullItem(FullItem());

    CSlOptItem copy(FullItem());
    ExpectFullItem(copy);
    CSlOptItem assigned;
    assigned.m_nVrednost3 = 8;
    assigned = copy;
    ExpectFullItem(assigned);
    assigned = assigned;
    ExpectFullItem(assigned);
}

TEST(SlOptItem, RecordHasTheLayoutOfVersionOneBothWays) {
    EXPECT_EQ(Written(FullItem()), kFullItem);
    Reader r(kFullItem);
    CSlOptItem item;
    EXPECT_EQ(item.FromFiller(r.f()), 1);
    ExpectFullItem(item);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_FALSE(r->IsError());

    // The version field is read and not judged.
    std::vector<uint8_t> v7 = kFullItem;
    v7[0] = 7;
    Reader r7(v7);
    CSlOptItem item7;
    EXPECT_EQ(item7.FromFiller(r7.f()), 1);
    ExpectFullItem(item7);
    EXPECT_FALSE(r7->IsError());
}

TEST(SlOptItem, DamagedItemRecordsEndInTheErrorFlag) {
    for (size_t n = 0; n < kFullItem.size(); ++n) {
        Reader r(loadrec::Prefix(kFullItem, n));
        CSlOptItem item;
        EXPECT_EQ(item.FromFiller(r.f()), 1);
        EXPECT_TRUE(r->IsError()) << "prefix " << n;
    }
    // Absurd counts of the name and of both id lists allocate nothing.
    const auto corrupt = [](size_t offset, int32_t count) {
        std::vector<uint8_t> bytes = kFullItem;
        for (int i = 0; i < 4; ++i)
            bytes[offset + static_cast<size_t>(i)] = static_cast<uint8_t>(count >> (8 * i));
        Reader r(bytes);
        CSlOptItem item;
        item.FromFiller(r.f());
        EXPECT_TRUE(r->IsError()) << offset << " " << count;
        return item;
    };
    const size_t nameCount = 8;
    const size_t neverCount = 8 + 4 + 14 + 6 * 4 + 8 + 4;
    const size_t alwaysCount = neverCount + 12;
    ASSERT_EQ(kFullItem[neverCount], 0x02);
    ASSERT_EQ(kFullItem[alwaysCount], 0x01);
    for (const int32_t count : {0x7FFFFFFF, -1, 1000}) {
        EXPECT_TRUE(corrupt(nameCount, count).m_strNaziv.IsEmpty());
        EXPECT_TRUE(corrupt(neverCount, count).m_arrNeKombinujSa.IsEmpty());
        EXPECT_TRUE(corrupt(alwaysCount, count).m_arrUvekKombinujSa.IsEmpty());
    }

    // A stream already in error leaves the item as it was.
    Reader r(kFullItem);
    r->SetError();
    CSlOptItem item = FullItem();
    item.m_arrNeKombinujSa = Ids({9});
    EXPECT_EQ(item.FromFiller(r.f()), 1);
    EXPECT_EQ(item.m_arrNeKombinujSa, Ids({9}));
    EXPECT_EQ(item.m_strNaziv, CString(L"Vetar \u0161"));
}

TEST(SlOptItemArray, AddNewPlacesItemsAtOneBasedPositions) {
    CSlOptItemArray arr;
    arr.AddNew(L"G", 5, 3, 1, 1, CId(40));
    ASSERT_EQ(arr.GetSize(), 5);
    for (int i = 0; i < 4; ++i)
        ExpectDefaultItem(arr[i]);
    EXPECT_EQ(arr[4].m_strNaziv, CString(L"G"));
    EXPECT_EQ(arr[4].m_nVrednost1, 3);
    EXPECT_EQ(arr[4].m_ngMarker, 1);
    EXPECT_EQ(arr[4].m_bUticajnaLinija, 1);
    EXPECT_EQ(arr[4].m_Id, CId(40));
    EXPECT_EQ(arr[4].m_dKoeficijent, 1.0);
    EXPECT_EQ(arr[4].m_nVrednost3, -1);
    EXPECT_EQ(arr[4].m_bStalno, 0);

    // An item already at the position is overwritten; the full form takes every value.
    arr.AddNew(L"Vetar \u0161", 2, 4, 1, 1, CId(12), 1.35, 1, 1, Ids({3, 4}), Ids({5}), 2);
    ASSERT_EQ(arr.GetSize(), 5);
    ExpectFullItem(arr.GetAt(1));

    arr.AddNew();
    ASSERT_EQ(arr.GetSize(), 6);
    ExpectDefaultItem(arr[5]);

    arr.InsertNewAt(1, FullItem());
    ASSERT_EQ(arr.GetSize(), 7);
    ExpectFullItem(arr[0]);
    ExpectDefaultItem(arr[1]);
    ExpectFullItem(arr[2]);
    EXPECT_EQ(arr[5].m_Id, CId(40));

    CSlOptItemArray copy(arr);
    arr.RemoveAt(0);
    EXPECT_EQ(copy.GetSize(), 7);
    ExpectFullItem(copy[0]);
    copy = arr;
    EXPECT_EQ(copy.GetSize(), 6);
    EXPECT_THROW(arr.AddNew(L"x", 0, 0, 0, 0, CId()), CInvalidArgException);
}

TEST(SlOptItemArray, RecordHasTheLayoutOfVersionOneBothWays) {
    CSlOptItemArray arr;
    EXPECT_EQ(Written(arr), (std::vector<uint8_t>{1, 0, 0, 0, 0, 0, 0, 0}));
    Reader empty(Written(arr));
    CSlOptItemArray back;
    back.AddNew();
    EXPECT_EQ(back.FromFiller(empty.f()), 1);
    EXPECT_EQ(back.GetSize(), 0);

    arr.InsertNewAt(1, FullItem());
    arr.AddNew();
    const std::vector<uint8_t> expected = Bytes()
                                              .i32(1)
                                              .i32(2)
                                              .raw(kFullItem)
                                              .i32(1)  // default item: version
                                              .i32(-1) // no id
                                              .str(L"")
                                              .i32(0)
                                              .i32(0)
                                              .i32(0)
                                              .i32(0)
                                              .i32(-1)
                                              .i32(0)
                                              .f64(1.0)
                                              .i32(0)
                                              .ids({})
                                              .ids({})
                                              .get();
    EXPECT_EQ(Written(arr), expected);
    Reader r(expected);
    EXPECT_EQ(back.FromFiller(r.f()), 1);
    ASSERT_EQ(back.GetSize(), 2);
    ExpectFullItem(back[0]);
    ExpectDefaultItem(back[1]);
    EXPECT_EQ(r->Remaining(), 0u);

    for (size_t n = 0; n < expected.size(); ++n) {
        Reader rn(loadrec::Prefix(expected, n));
        CSlOptItemArray part;
        part.FromFiller(rn.f());
        EXPECT_TRUE(rn->IsError()) << "prefix " << n;
    }
    for (const int32_t count : {0x7FFFFFFF, -5, 3}) {
        Reader rc(Bytes().i32(1).i32(count).raw(kFullItem).get());
        CSlOptItemArray part;
        part.AddNew();
        EXPECT_EQ(part.FromFiller(rc.f()), 1);
        EXPECT_TRUE(rc->IsError()) << count;
        EXPECT_EQ(part.GetSize(), 0) << count;
    }
}
