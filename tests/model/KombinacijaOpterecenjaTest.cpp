// The stored combination: its record byte for byte, version errors and damaged input, copies
// through the record, and its checksums.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

using loadrec::Bytes;
using loadrec::Reader;
using loadrec::Written;

namespace {

class KombinacijaRecordTest : public ModelTest {
protected:
    CKombinacijaOpterecenja* NewCombination() {
        auto* p = new CKombinacijaOpterecenja;
        p->SetAtribut(9);
        p->Item().SetNaziv(L"Ž1");
        p->Item().SetRedniBroj(2);
        p->Item().DodajOsnOpt(1.35, CId(5));
        p->Item().DodajOsnOpt(0.0, CId(6));
        return p;
    }
    std::vector<uint8_t> Expected(int32_t id) const {
        return Bytes()
            .base(id, 9)
            .i32(1)
            .str(L"Ž1")
            .i32(0)
            .i32(2)
            .i32(2)
            .i32(5)
            .f64(1.35)
            .i32(6)
            .f64(0.0)
            .get();
    }
    void AddModel(int analiza) {
        auto* model = new CModel;
        model->SetAnaliza(analiza);
        m_model = Insert(model);
    }
    CId m_model;
};

} // namespace

TEST_F(KombinacijaRecordTest, WritesBaseVersionOneAndItemAndReadsItBack) {
    const CId id = Insert(NewCombination());
    const auto* stored = Get<CKombinacijaOpterecenja>(id);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(Written(*stored), Expected(id.GetValue()));

    Reader r(Expected(31));
    CKombinacijaOpterecenja back;
    EXPECT_EQ(back.FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(back.GetId(), CId(31));
    EXPECT_EQ(back.GetAtribut(), 9);
    EXPECT_EQ(back.Item().GetNaziv(), L"Ž1");
    EXPECT_EQ(back.Item().GetRedniBroj(), 2);
    EXPECT_EQ(back.Item().GetBrojOsnOpt(), 2);
    EXPECT_EQ(Written(back), Expected(31));
}

TEST_F(KombinacijaRecordTest, CopiesCarryWhatTheRecordCarriesAndNotTheItemId) {
    const CId g = AddLoadCase(L"G", 1);
    CKombinacijaOpterecenja* original = NewCombination();
    original->Item().Obrisi();
    original->Item().DodajOsnOpt(1.5, g);
    original->Item().SetGenericName(nullptr, 0);
    ASSERT_EQ(original->Item().GetNaziv(), L"1.50xI");
    original->Item().SetId(CId(77));
    CObj* made = original->MakeNew();
    auto* copy = dynamic_cast<CKombinacijaOpterecenja*>(made);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Written(*copy), Written(*original));
    EXPECT_EQ(copy->Item().IsGenericName(), 1);
    EXPECT_FALSE(copy->Item().GetId().Valid());
    CKombinacijaOpterecenja assigned;
    assigned = *original;
    EXPECT_EQ(Written(assigned), Written(*original));
    made->Destroy(1);
    original->Destroy(1);

    // The copy constructor may only build the object the pool has just given out.
    const CKombinacijaOpterecenja source;
    EXPECT_EXIT({ CKombinacijaOpterecenja onStack(source); }, ::testing::ExitedWithCode(0),
                "ASSERT\\(this == validAdr\\)");
    EXPECT_NE(ErrorLog().find("ASSERT(this == validAdr)\nFILE: KombinacijaOpterecenja\n"),
              std::string::npos);
}

TEST_F(KombinacijaRecordTest, UnknownVersionDamagedInputAndAbsurdCountsAreRefused) {
    const std::vector<uint8_t> good = Expected(3);
    for (const int32_t version : {0, 2, 255}) {
        std::vector<uint8_t> bytes = good;
        bytes[12] = static_cast<uint8_t>(version);
        Reader r(bytes);
        CKombinacijaOpterecenja k;
        EXPECT_EQ(k.FromFiller(r.f()), 0);
        EXPECT_EQ(r->GetErrorSource(), "KombinacijaOpterecenja");
        EXPECT_EQ(r->GetErrorMessage(),
                  CString::Formatted(L"Object version error! Version: %d", version));
        EXPECT_EQ(k.Item().GetBrojOsnOpt(), 0);
    }
    for (size_t n = 0; n < good.size(); ++n) {
        Reader r(loadrec::Prefix(good, n));
        CKombinacijaOpterecenja k;
        EXPECT_EQ(k.FromFiller(r.f()), 0) << n;
        EXPECT_TRUE(r->IsError()) << n;
    }
    // Entry count (after base, version, the name of two units, flag and ordinal) made huge.
    std::vector<uint8_t> absurd = good;
    absurd[32] = absurd[33] = absurd[34] = 0xFF;
    absurd[35] = 0x7F;
    Reader r(absurd);
    CKombinacijaOpterecenja k;
    EXPECT_EQ(k.FromFiller(r.f()), 0);
    EXPECT_TRUE(r->IsError());
    EXPECT_EQ(k.Item().GetBrojOsnOpt(), 0);

    Reader inError(good);
    inError->SetError();
    EXPECT_EQ(k.FromFiller(inError.f()), 0);
}

TEST_F(KombinacijaRecordTest, ChecksumsCountTheItemAndSecondOrderOnlyFromAnalysisTwo) {
    AddModel(1);
    CKombinacijaOpterecenja* k = NewCombination();
    const CId id = Insert(k);
    const auto* stored = Get<CKombinacijaOpterecenja>(id);
    const uint32_t itemCrc =
        Bytes().str(L"Ž1").i32(0).i32(2).i32(2).i32(5).f64(1.35).i32(6).f64(0.0).crc();
    const uint32_t secondOrder = Bytes().i32(2).i32(1).i32(5).f64(1.35).crc();
    EXPECT_EQ(stored->GetCRCBitanZaTeorijuII(), secondOrder);

    uint32_t c1 = 100, c2 = 200, c3 = 300;
    stored->UpdateCRC(c1, c2, c3);
    EXPECT_EQ(c1, 100u + itemCrc);
    EXPECT_EQ(c2, 200u);
    EXPECT_EQ(c3, 300u);

    for (const int analiza : {2, 3}) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        dynamic_cast<CModel*>(bm.GetW(m_model))->SetAnaliza(analiza);
        // The attribute word of the base record does not count.
        dynamic_cast<CKombinacijaOpterecenja*>(bm.GetW(id))->SetAtribut(analiza * 11);
        bm.Close();
        c1 = 100, c2 = 200, c3 = 300;
        stored = Get<CKombinacijaOpterecenja>(id);
        stored->UpdateCRC(c1, c2, c3);
        EXPECT_EQ(c1, 100u + itemCrc) << analiza;
        EXPECT_EQ(c2, 200u) << analiza;
        EXPECT_EQ(c3, 300u + secondOrder) << analiza;
    }
}

TEST_F(KombinacijaRecordTest, ChecksumWithoutTheModelObjectAsserts) {
    const CId id = Insert(NewCombination());
    uint32_t c1 = 0, c2 = 0, c3 = 0;
    EXPECT_EXIT(Get<CKombinacijaOpterecenja>(id)->UpdateCRC(c1, c2, c3),
                ::testing::ExitedWithCode(0), "ASSERT\\(pModel\\)");
    EXPECT_NE(ErrorLog().find("ASSERT(pModel)\nFILE: KombinacijaOpterecenja\n"), std::string::npos);
}
