// The combination item and list: their records byte for byte, the entry operations, the
// ordering, the checksum for second-order analysis and the clean-up of entries.
#include "model/KombOptItem.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

using loadrec::Bytes;
using loadrec::Reader;
using loadrec::Written;

namespace {

// Doubles are little-endian IEEE: 1.35 is 3FF5 9999 9999 999A, 1.5 is 3FF8 0000 0000 0000.
const std::vector<uint8_t> kItemK1 = {
    0x02, 0x00, 0x00, 0x00,                         // name: two UTF-16 units
    0x4B, 0x00, 0x31, 0x00,                         //   "K1"
    0x00, 0x00, 0x00, 0x00,                         // generic-name flag 0
    0x03, 0x00, 0x00, 0x00,                         // ordinal 3
    0x02, 0x00, 0x00, 0x00,                         // two entries
    0x05, 0x00, 0x00, 0x00,                         //   load case 5
    0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xF5, 0x3F, //   1.35
    0x07, 0x00, 0x00, 0x00,                         //   load case 7
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF8, 0x3F, //   1.5
};

CKombOptItem ItemK1() {
    CKombOptItem item;
    item.SetId(CId(40)); // not part of the record
    item.SetNaziv(L"K1");
    item.SetRedniBroj(3);
    item.DodajOsnOpt(1.35, CId(5));
    item.DodajOsnOpt(1.5, CId(7));
    return item;
}

void ExpectSameEntries(const CKombOptItem& a, const CKombOptItem& b) {
    ASSERT_EQ(a.GetBrojOsnOpt(), b.GetBrojOsnOpt());
    for (int i = 0; i < a.GetBrojOsnOpt(); ++i) {
        double ka = 0, kb = 0;
        CId ia, ib;
        a.GetOsnOptByIndex(i, ka, ia);
        b.GetOsnOptByIndex(i, kb, ib);
        EXPECT_EQ(ka, kb) << i;
        EXPECT_EQ(ia, ib) << i;
    }
}

} // namespace

TEST(KombOptItemRecord, DefaultItemIsEmptyAndWritesEmptyNameFlagZeroOrdinalMinusOneNoEntries) {
    const CKombOptItem item;
    EXPECT_FALSE(item.GetId().Valid());
    EXPECT_TRUE(item.GetNaziv().empty());
    EXPECT_EQ(item.IsGenericName(), 0);
    EXPECT_EQ(item.GetRedniBroj(), -1);
    EXPECT_EQ(item.GetBrojOsnOpt(), 0);
    EXPECT_EQ(Written(item), Bytes().i32(0).i32(0).i32(-1).i32(0).get());
}

TEST(KombOptItemRecord, WritesAndReadsTheItemLayoutWithoutTheId) {
    EXPECT_EQ(Written(ItemK1()), kItemK1);

    Reader r(kItemK1);
    CKombOptItem item;
    item.DodajOsnOpt(9.0, CId(99)); // replaced by what the record holds
    EXPECT_EQ(item.FromFiller(r.f()), 1);
    EXPECT_FALSE(r->IsError());
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_FALSE(item.GetId().Valid());
    EXPECT_EQ(item.GetNaziv(), L"K1");
    EXPECT_EQ(item.IsGenericName(), 0);
    EXPECT_EQ(item.GetRedniBroj(), 3);
    ExpectSameEntries(item, ItemK1());

    // A long combination crosses the blocks in which entries are packed.
    CKombOptItem big;
    Bytes expected;
    expected.str(L"").i32(0).i32(7).i32(150);
    for (int i = 0; i < 150; ++i) {
        big.DodajOsnOpt(0.25 * i - 3.0, CId(1000 + i));
        expected.i32(1000 + i).f64(0.25 * i - 3.0);
    }
    big.SetRedniBroj(7);
    EXPECT_EQ(Written(big), expected.get());
    Reader rb(expected.get());
    CKombOptItem back;
    EXPECT_EQ(back.FromFiller(rb.f()), 1);
    ExpectSameEntries(back, big);
}

TEST(KombOptItemRecord, DamagedRecordsEndInTheErrorFlag) {
    // Cut anywhere: the reader stops with the error flag, whatever it had read.
    for (size_t n = 0; n < kItemK1.size(); ++n) {
        Reader r(loadrec::Prefix(kItemK1, n));
        CKombOptItem item;
        item.FromFiller(r.f());
        EXPECT_TRUE(r->IsError()) << n;
        EXPECT_EQ(item.GetBrojOsnOpt(), 0) << n;
    }
    // Counts no stream could hold are refused before anything is allocated.
    for (const int32_t count : {-1, 3, 0x7FFFFFFF, static_cast<int32_t>(0x80000000)}) {
        Reader r(Bytes().str(L"").i32(1).i32(1).i32(count).i32(5).f64(1.0).get());
        CKombOptItem item;
        EXPECT_EQ(item.FromFiller(r.f()), 0) << count;
        EXPECT_TRUE(r->IsError()) << count;
        EXPECT_EQ(item.GetBrojOsnOpt(), 0) << count;
    }
    Reader name(Bytes().i32(0x40000000).get());
    CKombOptItem item;
    EXPECT_EQ(item.FromFiller(name.f()), 0);
    EXPECT_TRUE(name->IsError());
}

TEST(KombOptItemArrayRecord, WritesVersionOneCountAndItemsAndReadsAnyVersion) {
    CKombOptItemArray list;
    list.AddNew(ItemK1());
    list.AddNew();
    const std::vector<uint8_t> expected =
        Bytes().i32(1).i32(2).raw(kItemK1).i32(0).i32(0).i32(-1).i32(0).get();
    EXPECT_EQ(Written(list), expected);

    // The list version is not looked at when reading.
    std::vector<uint8_t> version7 = expected;
    version7[0] = 7;
    for (const auto& bytes : {expected, version7}) {
        Reader r(bytes);
        CKombOptItemArray back;
        back.AddNew();
        back.AddNew();
        back.AddNew();
        EXPECT_EQ(back.FromFiller(r.f()), 1);
        EXPECT_EQ(r->Remaining(), 0u);
        ASSERT_EQ(back.GetSize(), 2);
        EXPECT_EQ(back[0].GetNaziv(), L"K1");
        ExpectSameEntries(back[0], ItemK1());
        EXPECT_EQ(back[1].GetRedniBroj(), -1);
        EXPECT_EQ(back[1].GetBrojOsnOpt(), 0);
    }

    for (size_t n = 0; n < expected.size(); ++n) {
        Reader r(loadrec::Prefix(expected, n));
        CKombOptItemArray back;
        back.FromFiller(r.f());
        EXPECT_TRUE(r->IsError()) << n;
    }
    for (const int32_t count : {-5, 2, 1 << 30}) {
        Reader r(Bytes().i32(1).i32(count).i32(0).i32(0).i32(-1).i32(0).get());
        CKombOptItemArray back;
        EXPECT_EQ(back.FromFiller(r.f()), 0) << count;
        EXPECT_TRUE(r->IsError()) << count;
        EXPECT_EQ(back.GetSize(), 0) << count;
    }
}

TEST(KombOptItemEntries, OutOfRangeChangesNothingAndIdLookupsFindTheFirstEntry) {
    CKombOptItem item;
    item.DodajOsnOpt(1.2, CId(3));
    item.DodajOsnOpt(0.0, CId(4));
    item.DodajOsnOpt(0.8, CId(3));
    double koef = -7.0;
    CId id(77);
    EXPECT_EQ(item.GetOsnOptByIndex(3, koef, id) + item.GetOsnOptByIndex(-1, koef, id), 0);
    EXPECT_EQ(item.SetOsnOptKoef(3, 5.0) + item.SetOsnOptId(-1, CId(9)), 0);
    EXPECT_EQ(koef, -7.0);
    EXPECT_EQ(id, CId(77));

    int i = -1;
    EXPECT_EQ(item.SetOsnOptKoef(CId(3), 2.0), 1);
    EXPECT_EQ(item.GetOsnOptById(i, koef, CId(3)), 1);
    EXPECT_EQ(i, 0);
    EXPECT_EQ(item.GetOsnOptKoefByIndex(2), 0.8);
    EXPECT_EQ(item.SetOsnOptKoef(CId(8), 2.0) + item.GetOsnOptById(i, koef, CId(8)), 0);
    // The index guard of GetOsnOptKoefByIndex never fires; only the array refuses.
    EXPECT_THROW(item.GetOsnOptKoefByIndex(-1), CInvalidArgException);

    // Containing means an entry whose coefficient is not exactly zero.
    EXPECT_EQ(item.DaLiSadrziSloptId(CId(4)), 0);
    item.SetOsnOptKoef(1, 1e-300);
    EXPECT_EQ(item.DaLiSadrziSloptId(CId(4)), 1);

    item.SetNaziv(L"N");
    item.SetId(CId(12));
    item.Obrisi();
    EXPECT_EQ(item.GetBrojOsnOpt(), 0);
    EXPECT_EQ(item.GetNaziv(), L"N");
    EXPECT_EQ(item.GetId(), CId(12));
}

TEST(KombOptItemEntries, SeismicMembershipLooksAtNonZeroEntriesInBothTables) {
    CKombOptItem item;
    item.DodajOsnOpt(0.0, CId(1));
    item.DodajOsnOpt(1.0, CId(2));
    CArray<int> flags1, flags2;
    CArray<CId> ids1, ids2;
    ids1.Add(CId(1));
    flags1.Add(1); // seismic, but its entry has coefficient 0
    ids1.Add(CId(2));
    flags1.Add(2); // only 1 counts
    EXPECT_EQ(item.SadrziSeizmickiSlopt(flags1, ids1, flags2, ids2), 0);
    ids2.Add(CId(2));
    flags2.Add(1);
    EXPECT_EQ(item.SadrziSeizmickiSlopt(flags1, ids1, flags2, ids2), 1);
    // A flag table shorter than its id table at a found place is an invalid argument.
    flags1.RemoveAt(1);
    EXPECT_THROW(item.SadrziSeizmickiSlopt(flags1, ids1, flags2, ids2), CInvalidArgException);
}

TEST(KombOptItemEntries, ZeroRemovalDropsZerosWithinToleranceAndKeepsOrder) {
    CKombOptItem item;
    CBaseManager unused;
    EXPECT_EQ(item.IzbaciNepotrebneNule(unused), 0);
    for (const double koef : {0.0, 1.5, 1e-12, -0.001, 0.0})
        item.DodajOsnOpt(koef, CId(item.GetBrojOsnOpt() + 1));
    EXPECT_EQ(item.IzbaciNepotrebneNule(unused), 1);
    ASSERT_EQ(item.GetBrojOsnOpt(), 2);
    double koef = 0;
    CId id;
    item.GetOsnOptByIndex(1, koef, id);
    EXPECT_EQ(id, CId(4));
    EXPECT_EQ(koef, -0.001);
    EXPECT_EQ(item.IzbaciNepotrebneNule(unused), 0);
}

TEST(KombOptItemArray, AddNewAtPositionGrowsOrOverwritesAndInsertPutsBefore) {
    CKombOptItem item = ItemK1();
    CKombOptItemArray list;
    list.AddNew(5, item);
    ASSERT_EQ(list.GetSize(), 5);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(list[i].GetRedniBroj(), -1) << i;
        EXPECT_EQ(list[i].GetBrojOsnOpt(), 0) << i;
    }
    EXPECT_EQ(list[4].GetNaziv(), L"K1");
    const CKombOptItemArray copy(list); // items are copied whole, their ids too
    EXPECT_EQ(copy[4].GetId(), CId(40));
    ExpectSameEntries(copy[4], item);

    item.SetNaziv(L"K2");
    list.AddNew(2, item);
    EXPECT_EQ(list.GetSize(), 5);
    EXPECT_EQ(list[1].GetNaziv(), L"K2");

    list.InsertNewAt(2);
    ASSERT_EQ(list.GetSize(), 6);
    EXPECT_TRUE(list[1].GetNaziv().empty());
    EXPECT_EQ(list[2].GetNaziv(), L"K2");
    list.InsertNewAt(7); // just after the end
    EXPECT_EQ(list.GetSize(), 7);
    list.AddNew();
    EXPECT_EQ(list.GetSize(), 8);

    EXPECT_THROW(list.AddNew(0, item), CInvalidArgException);
    EXPECT_THROW(list.InsertNewAt(0), CInvalidArgException);
    EXPECT_EQ(list.GetSize(), 8);
}

TEST(KombOptItemChecksum, SecondOrderChecksumCoversOrdinalAndNonZeroEntriesOnly) {
    CKombOptItem item;
    item.SetRedniBroj(2);
    item.DodajOsnOpt(1.35, CId(5));
    item.DodajOsnOpt(0.0, CId(6));
    item.DodajOsnOpt(1.5, CId(7));
    const Bytes expected = Bytes().i32(2).i32(2).i32(5).f64(1.35).i32(7).f64(1.5);
    EXPECT_EQ(item.CRC_BitanZaTeorijuII(), expected.crc());

    // Neither the name nor near-zero entries matter; the ordinal and coefficients do.
    CKombOptItem renamed = item;
    renamed.SetNaziv(L"Drugo ime");
    renamed.DodajOsnOpt(1e-13, CId(8));
    EXPECT_EQ(renamed.CRC_BitanZaTeorijuII(), expected.crc());
    renamed.SetRedniBroj(3);
    EXPECT_NE(renamed.CRC_BitanZaTeorijuII(), expected.crc());
    CKombOptItem changed = item;
    changed.SetOsnOptKoef(2, 1.6);
    EXPECT_NE(changed.CRC_BitanZaTeorijuII(), expected.crc());
}

// --- operations that read the store ---

class KombOptItemStoreTest : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        m_lc1 = AddLoadCase(L"G", 1);
        m_lc2 = AddLoadCase(L"P", 2);
        m_lc3 = AddLoadCase(L"W", 3);
    }
    CId m_lc1, m_lc2, m_lc3;
};

TEST_F(KombOptItemStoreTest, OrderingByCountThenOrdinalThenExactCoefficient) {
    CKombOptItem a, b;
    a.DodajOsnOpt(1.0, m_lc1);
    a.DodajOsnOpt(1.0, m_lc2);
    b = a;
    EXPECT_EQ(a.Uporedi(b), 0);
    EXPECT_EQ(CKombOptItem().Uporedi(CKombOptItem()), 0);

    b.SetOsnOptId(1, m_lc3); // II before III
    EXPECT_EQ(a.Uporedi(b), 1);
    EXPECT_EQ(b.Uporedi(a), -1);

    b = a;
    b.SetOsnOptKoef(1, 1.0 + 1e-12); // no tolerance here
    EXPECT_EQ(a.Uporedi(b), 1);
    EXPECT_EQ(b.Uporedi(a), -1);

    // At one position the ordinal decides before the coefficient; an earlier position
    // decides before a later one.
    b = a;
    b.SetOsnOptId(0, m_lc2);
    b.SetOsnOptKoef(0, 0.5);
    EXPECT_EQ(a.Uporedi(b), 1);
    b = a;
    b.SetOsnOptKoef(0, 0.5);
    b.SetOsnOptId(1, m_lc3);
    EXPECT_EQ(a.Uporedi(b), -1);
    CKombOptItem swapped;
    swapped.DodajOsnOpt(1.0, m_lc2);
    swapped.DodajOsnOpt(1.0, m_lc1);
    EXPECT_EQ(a.Uporedi(swapped), 1);

    // Fewer entries first, decided without any store at all.
    CKombOptItem three = a;
    three.DodajOsnOpt(1.0, CId(999));
    CObjBase::SetCurrent(nullptr);
    EXPECT_EQ(a.Uporedi(three), 1);
    EXPECT_EQ(three.Uporedi(a), -1);
    CObjBase::SetCurrent(m_base.get());
}

TEST_F(KombOptItemStoreTest, OrderingOfAMissingLoadCaseAssertsWhichSide) {
    CKombOptItem a, b;
    a.DodajOsnOpt(1.0, m_lc1);
    b.DodajOsnOpt(1.0, CId(500));
    EXPECT_EXIT(a.Uporedi(b), ::testing::ExitedWithCode(0), "ASSERT\\(pSlOpt2\\)");
    EXPECT_NE(ErrorLog().find("ASSERT(pSlOpt2)\nFILE: KombOptItem\n"), std::string::npos);
    EXPECT_EXIT(b.Uporedi(a), ::testing::ExitedWithCode(0), "ASSERT\\(pSlOpt1\\)");
}

TEST_F(KombOptItemStoreTest, ConsistencyRepairDropsMissingOutOfRangeAndRepeatedLoadCases) {
    const CId lc7 = AddLoadCase(L"X", 7); // four load cases: 7 lies outside 1..4
    CKombOptItem item;
    item.DodajOsnOpt(1.0, m_lc2);
    item.DodajOsnOpt(2.0, CId(500)); // missing
    item.DodajOsnOpt(3.0, m_lc1);
    item.DodajOsnOpt(4.0, lc7);
    item.DodajOsnOpt(5.0, m_lc2); // repeated: the later one goes
    item.DodajOsnOpt(6.0, CId());
    item.DodajOsnOpt(0.0, m_lc3); // zero coefficients are not the concern here

    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    EXPECT_EQ(item.NarusenaKonzistencija(bm), 1);
    ASSERT_EQ(item.GetBrojOsnOpt(), 3);
    const CId expected[] = {m_lc2, m_lc1, m_lc3};
    const double koef[] = {1.0, 3.0, 0.0};
    for (int i = 0; i < 3; ++i) {
        double k = -1;
        CId id;
        item.GetOsnOptByIndex(i, k, id);
        EXPECT_EQ(id, expected[i]) << i;
        EXPECT_EQ(k, koef[i]) << i;
    }
    EXPECT_EQ(item.NarusenaKonzistencija(bm), 0);
    bm.Close();
}
