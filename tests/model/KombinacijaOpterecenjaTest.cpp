// The stored combination: its record byte for byte, version errors and damaged input, copies
// through the record, and its checksums.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <memory>

#include <gtest/gtest.h>

using namespace loadrec;

namespace {

class KombinacijaRecordTest : public ModelTest {
protected:
    static CKombinacijaOpterecenja* NewCombination() {
        auto* p = new CKombinacijaOpterecenja;
        p->SetAtribut(9);
        p->Item().SetNaziv(L"Ž1");
        p->Item().SetRedniBroj(2);
        p->Item().DodajOsnOpt(1.35, CId(5));
        p->Item().DodajOsnOpt(0.0, CId(6));
        return p;
    }
    /// Base record, version 1, then the item: name, generic-name flag, ordinal, entries.
    static std::vector<uint8_t> Expected(int32_t id) {
        Bytes b;
        b.base(id, 9).i32(1).str(L"Ž1").i32(0).i32(2);
        return b.i32(2).i32(5).f64(1.35).i32(6).f64(0.0).get();
    }
};

} // namespace

TEST_F(KombinacijaRecordTest, RecordIsExactBothWaysAndCopiesLeaveTheItemIdBehind) {
    const CId id = Insert(NewCombination());
    EXPECT_EQ(Written(*Get<CKombinacijaOpterecenja>(id)), Expected(id.GetValue()));
    Reader r(Expected(31));
    CKombinacijaOpterecenja back;
    EXPECT_EQ(back.FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(Written(back), Expected(31));

    // A copy carries the generated-name flag but not the item's id, which no record holds.
    Reader rg(With32(Expected(31), 24, 1));
    back.FromFiller(rg.f());
    back.Item().SetId(CId(77));
    std::unique_ptr<CObj> made(back.MakeNew());
    EXPECT_EQ(Written(*made), Written(back));
    EXPECT_EQ(dynamic_cast<CKombinacijaOpterecenja&>(*made).Item().IsGenericName(), 1);
    EXPECT_FALSE(dynamic_cast<CKombinacijaOpterecenja&>(*made).Item().GetId().Valid());
    CKombinacijaOpterecenja assigned;
    assigned = back;
    EXPECT_EQ(Written(assigned), Written(back));
}

TEST_F(KombinacijaRecordTest, UnknownVersionsAndDamagedInputAreRefused) {
    for (const int32_t version : {0, 2, 255})
        ExpectVersionError<CKombinacijaOpterecenja>(With32(Expected(3), 12, version), version,
                                                    "KombinacijaOpterecenja");
    // The entry count follows base, version, the name of two units, flag and ordinal.
    ExpectDamagedInputFails<CKombinacijaOpterecenja>(Expected(3), {16, 32});
}

TEST_F(KombinacijaRecordTest, ChecksumsCountTheItemAndSecondOrderOnlyFromAnalysisTwo) {
    auto* model = new CModel;
    model->SetAnaliza(1);
    const CId modelId = Insert(model);
    const CId id = Insert(NewCombination());
    const std::vector<uint8_t> record = Expected(0);
    const uint32_t itemCrc = Bytes().raw({record.begin() + 16, record.end()}).crc();
    const uint32_t secondOrder = Bytes().i32(2).i32(1).i32(5).f64(1.35).crc();
    EXPECT_EQ(Get<CKombinacijaOpterecenja>(id)->GetCRCBitanZaTeorijuII(), secondOrder);

    for (const int analiza : {1, 2, 3}) {
        Change<CModel>(modelId, [&](CModel& m) { m.SetAnaliza(analiza); });
        // The attribute word of the base record does not count.
        Change<CKombinacijaOpterecenja>(id, [&](CObj& k) { k.SetAtribut(analiza * 11); });
        uint32_t c1 = 100, c2 = 200, c3 = 300;
        Get<CKombinacijaOpterecenja>(id)->UpdateCRC(c1, c2, c3);
        EXPECT_EQ(c1, 100u + itemCrc) << analiza;
        EXPECT_EQ(c2, 200u) << analiza;
        EXPECT_EQ(c3, 300u + (analiza >= 2 ? secondOrder : 0u)) << analiza;
    }
}
