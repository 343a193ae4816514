// The stored combination set (its record and the load case snapshot taken when storing) and
// the stored-combinations section of the model file, which is written empty and read away.
#include "model/Skladiste.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/ModelGlobals.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using loadrec::Bytes;
using loadrec::Reader;
using loadrec::Written;

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
    return b.i32(1)
        .i32(id)
        .str(naziv)
        .i32(0)
        .i32(g)
        .i32(ul)
        .i32(0)
        .i32(-1)
        .i32(0)
        .f64(1.0)
        .i32(0)
        .i32(0)
        .i32(0);
}

void AddNdaSuffix(CString& naziv) {
    naziv += L" [NDA]";
}

class SkladisteTest : public ModelTest {
protected:
    void TearDown() override {
        CModelGlobals::pfnNapraviImeDDASlOpt = nullptr;
        ModelTest::TearDown();
    }
};

} // namespace

TEST_F(SkladisteTest, SnapshotTakesLoadCasesAtTheirOrdinalsWithNdaNamesRewritten) {
    auto* nda = new CSlucajOpterecenja;
    nda->SetNaziv(L"DDA");
    nda->PostaviRedniBroj(3);
    nda->PostaviNDA(1);
    nda->SetgMarker(1);
    const CId ndaId = Insert(nda);
    const CId g = AddLoadCase(L"G", 1);
    auto* ul = new CSlucajOpterecenja;
    ul->SetNaziv(L"UL");
    ul->PostaviRedniBroj(2);
    ul->SetUticajUticajneLinije(UL_MOMENT);
    const CId ulId = Insert(ul);

    CKombOptItemArray list;
    list.AddNew(Item(L"K1", 1, {{g.GetValue(), 1.35}}));
    CSkladiste set;
    set.Set(list);
    ASSERT_EQ(set.GetKombOptArr().GetSize(), 1);
    EXPECT_EQ(set.GetKombOptArr()[0].GetNaziv(), L"K1");
    const CSlOptItemArray& snap = set.GetSlOptArr();
    ASSERT_EQ(snap.GetSize(), 3);
    EXPECT_EQ(snap[0].m_Id, g);
    EXPECT_EQ(snap[1].m_Id, ulId);
    EXPECT_EQ(snap[1].m_bUticajnaLinija, 1);
    EXPECT_EQ(snap[2].m_Id, ndaId);
    EXPECT_EQ(snap[2].m_strNaziv, L"DDA"); // no hook: the name as it is, without " (g)"
    EXPECT_EQ(snap[2].m_ngMarker, 1);
    EXPECT_EQ(snap[2].m_nVrednost1, 0);
    EXPECT_EQ(snap[0].m_bUticajnaLinija, 0);

    // With the host's hook only NDA cases are renamed; a fresh snapshot replaces the old one,
    // and the set's own list passed back stays as it is.
    CModelGlobals::pfnNapraviImeDDASlOpt = &AddNdaSuffix;
    set.Set(set.GetKombOptArr());
    ASSERT_EQ(set.GetSlOptArr().GetSize(), 3);
    EXPECT_EQ(set.GetSlOptArr()[2].m_strNaziv, L"DDA [NDA]");
    EXPECT_EQ(set.GetSlOptArr()[0].m_strNaziv, L"G");
    ASSERT_EQ(set.GetKombOptArr().GetSize(), 1);
    EXPECT_EQ(set.GetKombOptArr()[0].GetRedniBroj(), 1);
}

TEST_F(SkladisteTest, RecordIsBaseVersionOneCombinationListAndLoadCaseSnapshot) {
    const CId g = AddLoadCase(L"G", 1);
    CKombOptItemArray list;
    list.AddNew(Item(L"K", 2, {{g.GetValue(), 1.5}}));
    auto* set = new CSkladiste;
    set->Set(list);
    set->SetAtribut(4);
    const CId setId = Insert(set);

    Bytes expected;
    expected.base(setId.GetValue(), 4).i32(1);
    expected.i32(1).i32(1).str(L"K").i32(0).i32(2).i32(1).i32(g.GetValue()).f64(1.5);
    expected.i32(1).i32(1);
    SnapshotItem(expected, g.GetValue(), L"G", 0, 0);
    const CSkladiste* stored = Get<CSkladiste>(setId);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(Written(*stored), expected.get());

    Reader r(expected.get());
    CObj* created = CObjBase::CreateObject(CSkladiste::Type);
    auto* back = dynamic_cast<CSkladiste*>(created);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(back->GetId(), setId);
    EXPECT_EQ(Written(*back), expected.get());

    // Copies go through the record.
    CObj* made = stored->MakeNew();
    EXPECT_EQ(Written(*made), expected.get());
    created->Destroy(1);
    made->Destroy(1);
}

TEST_F(SkladisteTest, UnknownVersionAndDamagedRecordsAreRefused) {
    const std::vector<uint8_t> good = Bytes()
                                          .base(7)
                                          .i32(1)
                                          .i32(1)
                                          .i32(1)
                                          .raw(Written(Item(L"K", 1, {{3, 1.0}})))
                                          .i32(1)
                                          .i32(0)
                                          .get();
    {
        Reader r(good);
        CSkladiste set;
        EXPECT_EQ(set.FromFiller(r.f()), 1);
        EXPECT_EQ(r->Remaining(), 0u);
    }
    for (const int32_t version : {0, 2, -1}) {
        std::vector<uint8_t> bytes = good;
        bytes[12] = static_cast<uint8_t>(version);
        bytes[13] = bytes[14] = bytes[15] = version < 0 ? 0xFF : 0;
        Reader r(bytes);
        CSkladiste set;
        EXPECT_EQ(set.FromFiller(r.f()), 0);
        EXPECT_TRUE(r->IsError());
        EXPECT_EQ(r->GetErrorSource(), "Skladiste");
        EXPECT_EQ(r->GetErrorMessage(),
                  CString::Formatted(L"Object version error! Version: %d", version));
    }
    for (size_t n = 0; n < good.size(); ++n) {
        Reader r(loadrec::Prefix(good, n));
        CSkladiste set;
        EXPECT_EQ(set.FromFiller(r.f()), 0) << n;
        EXPECT_TRUE(r->IsError()) << n;
    }
    // A stream already in error is not read at all.
    Reader r(good);
    r->SetError();
    CSkladiste set;
    EXPECT_EQ(set.FromFiller(r.f()), 0);
}

TEST(StoredCombinationsSection, IsWrittenAsFiveIntegersTwoOneZeroOneZero) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    CKombOptItemArray::SnimiUskladisteneKombinacije(f);
    f.Close();
    const std::vector<uint8_t> expected = {
        0x02, 0x00, 0x00, 0x00, // section version 2
        0x01, 0x00, 0x00, 0x00, // load case list version 1
        0x00, 0x00, 0x00, 0x00, //   no load cases
        0x01, 0x00, 0x00, 0x00, // combination list version 1
        0x00, 0x00, 0x00, 0x00, //   no combinations
    };
    EXPECT_EQ(f.Buffer(), expected);
}

TEST(StoredCombinationsSection, IsReadAwayInBothVersionsWithoutTouchingTheFollowingBytes) {
    const std::vector<uint8_t> combinations = Bytes()
                                                  .i32(1)
                                                  .i32(2)
                                                  .raw(Written(Item(L"A", 1, {{4, 1.0}})))
                                                  .raw(Written(Item(L"", 2, {})))
                                                  .get();
    Bytes v2;
    v2.i32(2).i32(1).i32(1);
    SnapshotItem(v2, 4, L"G", 1, 0);
    v2.raw(combinations).i32(0x5A5A5A5A);
    Bytes v1;
    v1.i32(1).raw(combinations).i32(0x5A5A5A5A);
    // Version 1 has no load case list: a reader expecting one would swallow the marker.
    for (const Bytes* b : {&v1, &v2}) {
        Reader r(b->get());
        CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 17);
        EXPECT_FALSE(r->IsError());
        EXPECT_EQ(r->Remaining(), 4u);
        int32_t marker = 0;
        r->ReadInt32(marker);
        EXPECT_EQ(marker, 0x5A5A5A5A);
    }
    // Damaged sections end in the error flag, never in a crash.
    for (size_t n = 0; n < v2.size() - 4; ++n) {
        Reader r(loadrec::Prefix(v2.get(), n));
        CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 0);
        EXPECT_TRUE(r->IsError()) << n;
    }
    Reader absurd(Bytes().i32(1).i32(1).i32(0x7FFFFFF0).get());
    CKombOptItemArray::UcitajUskladisteneKombinacije(absurd.f(), 0);
    EXPECT_TRUE(absurd->IsError());
}

TEST(StoredCombinationsSection, UnknownSectionVersionIsAFatalInternalError) {
    const std::filesystem::path tmp =
        std::filesystem::temp_directory_path() / ("vorta-section-" + std::to_string(::getpid()));
    std::filesystem::create_directories(tmp);
    const char* oldTmp = std::getenv("TMP");
    const std::string savedTmp = oldTmp != nullptr ? oldTmp : "";
    vdiag::SetLogRoot(tmp.string() + "/");
    ::setenv("TMP", tmp.c_str(), 1);
    for (const int32_t version : {3, 0}) {
        Reader r(Bytes().i32(version).i32(1).i32(0).get());
        EXPECT_EXIT(CKombOptItemArray::UcitajUskladisteneKombinacije(r.f(), 0),
                    ::testing::ExitedWithCode(0),
                    "INTERNAL ERROR - PROGRAM TERMINATES.*Version error in "
                    "CKombOptItemArray::UcitajUskladisteneKombinacije");
    }
    std::ifstream log(tmp / "vmerror.log");
    const std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("FILE: KombOptItem\n"), std::string::npos);
    if (oldTmp != nullptr)
        ::setenv("TMP", savedTmp.c_str(), 1);
    else
        ::unsetenv("TMP");
    std::error_code ec;
    std::filesystem::remove_all(tmp, ec);
}
