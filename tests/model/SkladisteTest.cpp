// The stored combination set (its record and the load case snapshot taken when storing) and
// the stored-combinations section of the model file, which is written empty and read away.
#include "model/Skladiste.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/ModelGlobals.h"

#include <gtest/gtest.h>

using namespace loadrec;

namespace {

CKombOptItem Item(const CString& naziv, int ordinal,
                  std::initializer_list<std::pair<int, double>> e) {
    CKombOptItem item;
    item.SetNaziv(naziv);
    item.SetRedniBroj(ordinal);
    for (const auto& [id, koef] : e)
        item.DodajOsnOpt(koef, CId(id));
    return item;
}

/// A load case list item as the snapshot makes it: value 1 is 0, value 3 keeps -1, coefficient
/// 1.0, no flags and no rules.
Bytes& SnapshotItem(Bytes& b, int32_t id, const std::wstring& naziv, int32_t g, int32_t ul) {
    b.i32(1).i32(id).str(naziv).i32(0).i32(g).i32(ul).i32(0).i32(-1).i32(0).f64(1.0);
    return b.i32(0).i32(0).i32(0);
}

class SkladisteTest : public ModelTest {
protected:
    void TearDown() override {
        CModelGlobals::pfnNapraviImeDDASlOpt = nullptr;
        ModelTest::TearDown();
    }
};

} // namespace

TEST_F(SkladisteTest, RecordIsTheCombinationListAndASnapshotOfTheLoadCasesBothWays) {
    const CId nda = AddLoadCase(L"DDA", 3);
    Change<CSlucajOpterecenja>(nda, [](CSlucajOpterecenja& s) {
        s.PostaviNDA(1);
        s.SetgMarker(1);
    });
    const CId g = AddLoadCase(L"G", 1);
    const CId ul = AddLoadCase(L"UL", 2);
    Change<CSlucajOpterecenja>(ul,
                               [](CSlucajOpterecenja& s) { s.SetUticajUticajneLinije(UL_MOMENT); });
    CKombOptItemArray list;
    list.AddNew(Item(L"K", 2, {{g.GetValue(), 1.5}}));
    auto* set = new CSkladiste;
    set->Set(list);
    set->SetAtribut(4);
    const CId setId = Insert(set);

    // Base, version 1, the list, then the load cases at their ordinals, named as they are
    // (without " (g)") when the host gives no hook.
    Bytes expected;
    expected.base(setId.GetValue(), 4).i32(1).raw(Written(list)).i32(1).i32(3);
    SnapshotItem(expected, g.GetValue(), L"G", 0, 0);
    SnapshotItem(expected, ul.GetValue(), L"UL", 0, 1);
    SnapshotItem(expected, nda.GetValue(), L"DDA", 1, 0);
    const CSkladiste* stored = Get<CSkladiste>(setId);
    EXPECT_EQ(Written(*stored), expected.get());

    Reader r(expected.get());
    CObj* created = CObjBase::CreateObject(CSkladiste::Type);
    auto* back = dynamic_cast<CSkladiste*>(created);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(Written(*back), expected.get());
    CObj* made = stored->MakeNew();
    EXPECT_EQ(Written(*made), expected.get());
    created->Destroy(1);
    made->Destroy(1);

    // With the hook only NDA cases are renamed; a fresh snapshot replaces the old one, and the
    // set's own list passed back stays as it is.
    CModelGlobals::pfnNapraviImeDDASlOpt = [](CString& naziv) { naziv += L" [NDA]"; };
    CSkladiste fresh;
    fresh.Set(list);
    fresh.Set(fresh.GetKombOptArr());
    ASSERT_EQ(fresh.GetSlOptArr().GetSize(), 3);
    EXPECT_EQ(fresh.GetSlOptArr()[2].m_strNaziv, L"DDA [NDA]");
    EXPECT_EQ(fresh.GetSlOptArr()[0].m_strNaziv, L"G");
    EXPECT_EQ(Written(fresh.GetKombOptArr()), Written(list));
}

TEST_F(SkladisteTest, UnknownVersionsAndDamagedRecordsAreRefused) {
    Bytes good;
    good.base(7).i32(1).i32(1).i32(1).raw(Written(Item(L"K", 1, {{3, 1.0}})));
    SnapshotItem(good.i32(1).i32(1), 3, L"G", 0, 0);
    for (const int32_t version : {0, 2, -1})
        ExpectVersionError<CSkladiste>(With32(good.get(), 12, version), version, "Skladiste");
    ExpectDamagedInputFails<CSkladiste>(good.get(), {20, 38, 58});
}

TEST(StoredCombinationsSection, IsWrittenEmptyAndReadAwayInBothVersions) {
    // Written: section version 2, an empty load case list, an empty combination list.
    CFiller f;
    f.Open(CFiller::Mode::Write);
    CKombOptItemArray::SnimiUskladisteneKombinacije(f);
    EXPECT_EQ(f.Buffer(), Bytes().i32(2).i32(1).i32(0).i32(1).i32(0).get());

    Bytes combinations;
    combinations.i32(1).i32(2).raw(Written(Item(L"A", 1, {{4, 1.0}})));
    combinations.raw(Written(Item(L"", 2, {})));
    Bytes v2;
    SnapshotItem(v2.i32(2).i32(1).i32(1), 4, L"G", 1, 0).raw(combinations.get());
    Bytes v1;
    v1.i32(1).raw(combinations.get());
    // Version 1 has no load case list: a reader expecting one would swallow the marker.
    for (const Bytes* b : {&v1, &v2}) {
        Reader r(Bytes().raw(b->get()).i32(0x5A5A5A5A).get());
        CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 17);
        EXPECT_FALSE(r->IsError());
        EXPECT_EQ(r->Remaining(), 4u);
    }
    // Damaged sections end in the error flag, never in a crash.
    for (size_t n = 0; n < v2.size(); ++n) {
        Reader r(Prefix(v2.get(), n));
        CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 0);
        EXPECT_TRUE(r->IsError()) << n;
    }
    for (const size_t at : {8, 74}) {
        Reader r(With32(v2.get(), at, 0x7FFFFFF0));
        CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 0);
        EXPECT_TRUE(r->IsError()) << at;
    }
}
