// The combination item and list: their records byte for byte, damaged input, the entry
// operations, the ordering, the checksum for second-order analysis and the clean-up of entries.
#include "model/KombOptItem.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace loadrec;

namespace {

// The record of ItemK1: name, generic-name flag, ordinal, count, then (load case, coefficient).
const std::vector<uint8_t> kItemK1 =
    Bytes().str(L"K1").i32(0).i32(3).i32(2).i32(5).f64(1.35).i32(7).f64(1.5).get();
const std::vector<uint8_t> kDefaultItem = Bytes().i32(0).i32(0).i32(-1).i32(0).get();

CKombOptItem Item(std::initializer_list<std::pair<CId, double>> entries, int ordinal = -1) {
    CKombOptItem item;
    item.SetRedniBroj(ordinal);
    for (const auto& [id, koef] : entries)
        item.DodajOsnOpt(koef, id);
    return item;
}

CKombOptItem ItemK1() {
    CKombOptItem item = Item({{CId(5), 1.35}, {CId(7), 1.5}}, 3);
    item.SetId(CId(40)); // not part of the record
    item.SetNaziv(L"K1");
    return item;
}

std::vector<std::pair<int32_t, double>> Entries(const CKombOptItem& item) {
    std::vector<std::pair<int32_t, double>> entries;
    for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
        double koef = 0;
        CId id;
        item.GetOsnOptByIndex(i, koef, id);
        entries.emplace_back(id.GetValue(), koef);
    }
    return entries;
}

} // namespace

TEST(KombOptItemRecord, ItemAndListHaveTheirLayoutBothWaysWithoutTheItemId) {
    EXPECT_EQ(Written(CKombOptItem()), kDefaultItem);
    EXPECT_EQ(Written(ItemK1()), kItemK1);
    Reader r(kItemK1);
    CKombOptItem item = Item({{CId(99), 9.0}}); // replaced by what the record holds
    EXPECT_EQ(item.FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(Written(item), kItemK1);

    // A long combination crosses the blocks in which entries are packed.
    CKombOptItem big = Item({}, 7);
    Bytes expected;
    expected.str(L"").i32(0).i32(7).i32(150);
    for (int i = 0; i < 150; ++i) {
        big.DodajOsnOpt(0.25 * i - 3.0, CId(1000 + i));
        expected.i32(1000 + i).f64(0.25 * i - 3.0);
    }
    EXPECT_EQ(Written(big), expected.get());
    Reader rb(expected.get());
    EXPECT_EQ(item.FromFiller(rb.f()), 1);
    EXPECT_EQ(Entries(item), Entries(big));

    // The list: version 1, count, items; its version is not looked at when reading.
    CKombOptItemArray list;
    list.AddNew(ItemK1());
    list.AddNew();
    const std::vector<uint8_t> listBytes =
        Bytes().i32(1).i32(2).raw(kItemK1).raw(kDefaultItem).get();
    EXPECT_EQ(Written(list), listBytes);
    for (const int32_t version : {1, 7}) {
        Reader rl(With32(listBytes, 0, version));
        CKombOptItemArray back = list;
        back.AddNew();
        EXPECT_EQ(back.FromFiller(rl.f()), 1);
        EXPECT_EQ(rl->Remaining(), 0u);
        EXPECT_EQ(Written(back), listBytes);
    }
}

TEST(KombOptItemRecord, DamagedItemsAndListsEndInTheErrorFlag) {
    ExpectDamagedInputFails<CKombOptItem>(kItemK1, {0, 16});
    ExpectDamagedInputFails<CKombOptItemArray>(Bytes().i32(1).i32(1).raw(kItemK1).get(), {4});
}

TEST(KombOptItemEntries, ContainingIsExactlyNonZeroAndZeroRemovalUsesTheTolerance) {
    CKombOptItem item = Item({{CId(3), 1.2}, {CId(4), 0.0}, {CId(3), 0.8}});
    EXPECT_EQ(item.DaLiSadrziSloptId(CId(4)), 0);
    EXPECT_EQ(item.SetOsnOptKoef(CId(4), 1e-300), 1);
    EXPECT_EQ(item.DaLiSadrziSloptId(CId(4)), 1);
    // Changing by id changes the first entry of that load case.
    EXPECT_EQ(item.SetOsnOptKoef(CId(3), 2.0), 1);
    EXPECT_EQ(Entries(item),
              (std::vector<std::pair<int32_t, double>>{{3, 2.0}, {4, 1e-300}, {3, 0.8}}));

    CBaseManager unused;
    item = Item({{CId(1), 0.0}, {CId(2), 1.5}, {CId(3), 1e-12}, {CId(4), -0.001}, {CId(5), 0.0}});
    EXPECT_EQ(item.IzbaciNepotrebneNule(unused), 1);
    EXPECT_EQ(Entries(item), (std::vector<std::pair<int32_t, double>>{{2, 1.5}, {4, -0.001}}));
    EXPECT_EQ(item.IzbaciNepotrebneNule(unused), 0);
}

TEST(KombOptItemEntries, SeismicMembershipLooksAtNonZeroEntriesInBothTables) {
    const CKombOptItem item = Item({{CId(1), 0.0}, {CId(2), 1.0}});
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

TEST(KombOptItemArray, AddNewAtPositionGrowsOrOverwritesAndInsertPutsBefore) {
    CKombOptItem item = ItemK1();
    CKombOptItemArray list;
    list.AddNew(5, item);
    ASSERT_EQ(list.GetSize(), 5);
    EXPECT_EQ(Written(list[3]), kDefaultItem);
    const CKombOptItemArray copy(list); // items are copied whole, their ids too
    EXPECT_EQ(copy[4].GetId(), CId(40));
    EXPECT_EQ(Written(copy[4]), kItemK1);

    item.SetNaziv(L"K2");
    list.AddNew(2, item);
    list.InsertNewAt(2);
    ASSERT_EQ(list.GetSize(), 6);
    EXPECT_EQ(Written(list[1]), kDefaultItem);
    EXPECT_EQ(list[2].GetNaziv(), L"K2");
    list.InsertNewAt(7); // just after the end
    EXPECT_THROW(list.AddNew(0, item), CInvalidArgException);
    EXPECT_THROW(list.InsertNewAt(0), CInvalidArgException);
    EXPECT_EQ(list.GetSize(), 7);
}

TEST(KombOptItemChecksum, SecondOrderChecksumCoversOrdinalAndNonZeroEntriesOnly) {
    const CKombOptItem item = Item({{CId(5), 1.35}, {CId(6), 0.0}, {CId(7), 1.5}}, 2);
    const uint32_t expected = Bytes().i32(2).i32(2).i32(5).f64(1.35).i32(7).f64(1.5).crc();
    EXPECT_EQ(item.CRC_BitanZaTeorijuII(), expected);

    // Neither the name nor near-zero entries matter; the ordinal and coefficients do.
    CKombOptItem changed = item;
    changed.SetNaziv(L"Drugo ime");
    changed.DodajOsnOpt(1e-13, CId(8));
    EXPECT_EQ(changed.CRC_BitanZaTeorijuII(), expected);
    changed.SetRedniBroj(3);
    EXPECT_NE(changed.CRC_BitanZaTeorijuII(), expected);
    changed = item;
    changed.SetOsnOptKoef(2, 1.6);
    EXPECT_NE(changed.CRC_BitanZaTeorijuII(), expected);
}

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
    const CKombOptItem a = Item({{m_lc1, 1.0}, {m_lc2, 1.0}});
    const struct {
        CKombOptItem b;
        int expected;
    } rows[] = {
        {a, 0},
        {Item({{m_lc1, 1.0}, {m_lc3, 1.0}}), 1},         // II before III
        {Item({{m_lc1, 1.0}, {m_lc2, 1.0 + 1e-12}}), 1}, // no tolerance here
        // At one position the ordinal decides before the coefficient; an earlier position
        // decides before a later one.
        {Item({{m_lc2, 0.5}, {m_lc2, 1.0}}), 1},
        {Item({{m_lc1, 0.5}, {m_lc3, 1.0}}), -1},
        {Item({{m_lc2, 1.0}, {m_lc1, 1.0}}), 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(a.Uporedi(row.b), row.expected) << (&row - rows);
        EXPECT_EQ(row.b.Uporedi(a), -row.expected) << (&row - rows);
    }
    EXPECT_EQ(CKombOptItem().Uporedi(CKombOptItem()), 0);

    // Fewer entries first, decided without any store at all.
    const CKombOptItem three = Item({{m_lc1, 1.0}, {m_lc2, 1.0}, {CId(999), 1.0}});
    CObjBase::SetCurrent(nullptr);
    EXPECT_EQ(a.Uporedi(three), 1);
    EXPECT_EQ(three.Uporedi(a), -1);
    CObjBase::SetCurrent(m_base.get());
}

TEST_F(KombOptItemStoreTest, ConsistencyRepairDropsMissingOutOfRangeAndRepeatedLoadCases) {
    const CId lc7 = AddLoadCase(L"X", 7); // four load cases: 7 lies outside 1..4
    CKombOptItem item = Item({{m_lc2, 1.0},
                              {CId(500), 2.0}, // missing
                              {m_lc1, 3.0},
                              {lc7, 4.0},
                              {m_lc2, 5.0}, // repeated: the later one goes
                              {CId(), 6.0},
                              {m_lc3, 0.0}}); // zero coefficients are not the concern here
    const CId komb = AddCombination(1, {{m_lc1, 1.0}});
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    // The check without the repair sees each fault alone (a combination is no load case),
    // and nothing in a sound item.
    CRedniBrojeviSlOpt redniBrojevi;
    bm.Select(CSlucajOpterecenja::Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        redniBrojevi.Postavi(id,
                             dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id))->DajRedniBroj());
    const int nSlOpt = bm.GetObjTypeCount(CSlucajOpterecenja::Type);
    for (const CId fault : {CId(500), lc7, m_lc2, CId(), komb}) {
        CKombOptItem one = Item({{m_lc2, 1.0}, {m_lc3, 0.0}, {fault, 2.0}, {m_lc1, 3.0}});
        EXPECT_TRUE(one.ImaNarusenuKonzistenciju(redniBrojevi, nSlOpt)) << fault.GetValue();
        EXPECT_EQ(one.NarusenaKonzistencija(bm), 1) << fault.GetValue();
        EXPECT_FALSE(one.ImaNarusenuKonzistenciju(redniBrojevi, nSlOpt)) << fault.GetValue();
    }
    EXPECT_TRUE(item.ImaNarusenuKonzistenciju(redniBrojevi, nSlOpt));
    EXPECT_EQ(item.NarusenaKonzistencija(bm), 1);
    EXPECT_EQ(Entries(item),
              (std::vector<std::pair<int32_t, double>>{
                  {m_lc2.GetValue(), 1.0}, {m_lc1.GetValue(), 3.0}, {m_lc3.GetValue(), 0.0}}));
    EXPECT_EQ(item.NarusenaKonzistencija(bm), 0);
    EXPECT_FALSE(item.ImaNarusenuKonzistenciju(redniBrojevi, nSlOpt));
    bm.Close();
}
