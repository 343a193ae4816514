// Generated combination names: the plain rule over the item's own entries, through the store
// and through a table of ordinals, and the paired rule for SRSS units whose linked entries the
// application's hook names.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/KombOptItem.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <vector>

using loadrec::Unit;

namespace {

/// What the pairing hook is told and what it answers.
struct HookState {
    std::vector<int> first;
    std::vector<int> second;
    int calls = 0;
    CId lastId;
    const CLoadCaseUnit* lastUnit = nullptr;
};
HookState g_hook;

void TestHook(const CId& id, const CLoadCaseUnit* unit, CArray<int, int>& first,
              CArray<int, int>& second) {
    ++g_hook.calls;
    g_hook.lastId = id;
    g_hook.lastUnit = unit;
    for (const int v : g_hook.first)
        first.Add(v);
    for (const int v : g_hook.second)
        second.Add(v);
}

class KombOptItemNameTest : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        g_hook = HookState();
        // Stored in another order than their ordinals: names follow the ordinals.
        m_lc[3] = AddLoadCase(L"W", 3);
        m_lc[1] = AddLoadCase(L"G", 1);
        m_lc[2] = AddLoadCase(L"P", 2);
        m_lc[4] = AddLoadCase(L"S", 4);
        m_lc[12] = AddLoadCase(L"T", 12);
        for (const int r : {12, 3, 1, 4, 2})
            m_ordinals.Postavi(m_lc[r], r);
    }
    void TearDown() override {
        CKombOptItem::fnVratiParovePovezanih = nullptr;
        ModelTest::TearDown();
    }
    CString Name(std::initializer_list<std::pair<int, double>> entries,
                 const CLoadCaseUnit* unit = nullptr, int bKorijen = 0) {
        CKombOptItem item;
        for (const auto& [ordinal, koef] : entries)
            item.DodajOsnOpt(koef, m_lc[ordinal]);
        item.SetGenericName(unit, bKorijen);
        EXPECT_EQ(item.IsGenericName(), 1);
        if (unit == nullptr && bKorijen == 0) {
            // The same rule over a table of ordinals instead of the store.
            CKombOptItem fromTable = item;
            fromTable.SetNaziv(CString());
            fromTable.SetGenericNamePoRednimBrojevima(m_ordinals);
            EXPECT_EQ(fromTable.GetNaziv(), item.GetNaziv());
            EXPECT_EQ(fromTable.IsGenericName(), 1);
        }
        return item.GetNaziv();
    }
    CId m_lc[13];
    CRedniBrojeviSlOpt m_ordinals;
};

} // namespace

TEST_F(KombOptItemNameTest, PlainNameListsTermsByAscendingOrdinalOnBothPaths) {
    EXPECT_EQ(Name({{1, 1.35}, {3, 1.5}}), L"1.35xI+1.50xIII");
    EXPECT_EQ(Name({{3, 1.0}, {1, 1.5}}), L"1.50xI+III");
    EXPECT_EQ(Name({{1, 1.0}, {2, -1.5}}), L"I-1.50xII");
    EXPECT_EQ(Name({{2, -1.0}, {3, 1.0}}), L"-1.00xII+III");
    EXPECT_EQ(Name({{4, 0.8}, {2, 1.0}}), L"II+0.80xIV");
    EXPECT_EQ(Name({{12, 1.5}, {2, 1.0}, {3, 0.0}, {4, -0.7}}), L"II-0.70xIV+1.50xXII");
    EXPECT_EQ(Name({{12, 1.0}, {4, 1.0}, {2, 1.0 + 1e-12}}), L"II+IV+XII");
    // A zero coefficient neither takes part nor decides which term comes first.
    EXPECT_EQ(Name({{1, 1e-12}, {2, 1.5}, {3, 1.0}}), L"1.50xII+III");
    // A later entry of the same load case replaces the earlier term.
    EXPECT_EQ(Name({{1, 1.5}, {2, 1.0}, {1, 2.0}}), L"2.00xI+II");
    EXPECT_EQ(Name({{1, 0.0}, {2, 0.0}}), L"");
    EXPECT_EQ(Name({}), L"");

    // Entries without an id are skipped; a name the user gives clears the generated mark.
    CKombOptItem item;
    item.DodajOsnOpt(5.0, CId());
    item.DodajOsnOpt(1.0, m_lc[2]);
    item.SetGenericName(nullptr, 1);
    EXPECT_EQ(item.GetNaziv(), L"II");
    EXPECT_EQ(CKombOptItem(item).IsGenericName(), 1);
    item.SetNaziv(L"Korisnik");
    EXPECT_EQ(item.IsGenericName(), 0);
}

TEST(KombOptItemNameText, LongCoefficientsLargeOrdinalsAndLongNamesAreWrittenWhole) {
    // Ordinals by id straight from a table: the store plays no part.
    CRedniBrojeviSlOpt ordinals;
    for (int r = 1; r <= 300; ++r)
        ordinals.Postavi(CId(r), r);
    ordinals.Postavi(CId(3888), 3888);
    ordinals.Postavi(CId(4000), 4000);
    auto name = [&ordinals](std::initializer_list<std::pair<int, double>> entries) {
        CKombOptItem item;
        for (const auto& [id, koef] : entries)
            item.DodajOsnOpt(koef, CId(id));
        return item.NapraviGenerickiNaziv(ordinals);
    };
    // Coefficient texts and numerals around and beyond the size kept ready; the same long
    // coefficient twice, so that it is also taken from what was kept.
    EXPECT_EQ(name({{1, 123456789012.0}, {2, 123456789012345.0}, {3, 123456789012345.0}}),
              L"123456789012.00xI+123456789012345.00xII+123456789012345.00xIII");
    EXPECT_EQ(name({{3888, 2.5}, {4000, -1.0}, {7, 1.0}}), L"VII+2.50xMMMDCCCLXXXVIII-1.00x4000");
    EXPECT_EQ(name({{4000, 1.0}, {3888, 1.0}}), L"MMMDCCCLXXXVIII+4000");
    // A name longer than the buffer on the stack: 300 terms.
    CKombOptItem item;
    CString expected;
    for (int r = 1; r <= 300; ++r) {
        item.DodajOsnOpt(1.25, CId(r));
        expected += CString(r == 1 ? L"" : L"+") + L"1.25x" + CRomanNumber::GetRomanValue(r);
    }
    EXPECT_GT(expected.size(), 1024u);
    EXPECT_EQ(item.NapraviGenerickiNaziv(ordinals), expected);
}

TEST_F(KombOptItemNameTest, RootsOnlyWhenTheHookWasAskedAndGaveNoPairs) {
    const CLoadCaseUnit unit = Unit({{1, 2.25}, {2, 4.0}});
    EXPECT_EQ(Name({{1, 2.25}, {2, 4.0}}, &unit, 1), L"2.25xI+4.00xII"); // no hook set

    CKombOptItem::fnVratiParovePovezanih = &TestHook;
    EXPECT_EQ(Name({{1, 2.25}, {2, 4.0}}, &unit, 1), L"1.50xI+2.00xII");
    EXPECT_EQ(g_hook.calls, 1);
    EXPECT_EQ(g_hook.lastUnit, &unit);
    EXPECT_FALSE(g_hook.lastId.Valid());
    EXPECT_EQ(Name({{1, 2.25}, {2, -4.0}}, &unit, 0), L"2.25xI-4.00xII");
    // A coefficient of 1 stays a bare numeral; others are their roots.
    EXPECT_EQ(Name({{1, 1.0}, {3, 0.25}}, &unit, 1), L"I+0.50xIII");
    // Without a unit and without an id the hook is not asked.
    EXPECT_EQ(Name({{1, 2.25}}, nullptr, 1), L"2.25xI");
    EXPECT_EQ(g_hook.calls, 3);
}

TEST_F(KombOptItemNameTest, PairedNameWritesMaxTermsAndSkipsTheEntryAfterEachPair) {
    CKombOptItem::fnVratiParovePovezanih = &TestHook;
    CKombOptItem item;
    item.DodajOsnOpt(1.0, m_lc[1]); // the paired rule names the unit, not these entries
    auto named = [&](const CLoadCaseUnit& unit, std::vector<int> first, std::vector<int> second,
                     int bKorijen = 0) {
        g_hook.first = std::move(first);
        g_hook.second = std::move(second);
        item.SetGenericName(&unit, bKorijen);
        EXPECT_EQ(item.IsGenericName(), 1);
        return item.GetNaziv();
    };
    const CLoadCaseUnit threeOnes = Unit({{1, 1.0}, {2, 1.0}, {3, 1.0}});
    EXPECT_EQ(named(Unit({{1, 1.0}, {2, 0.5}, {3, 1.0}}), {0}, {1}), L"MAX(I,0.50xII)+III");
    // The entry after a pair is skipped whoever the partner is.
    EXPECT_EQ(named(threeOnes, {0}, {2}), L"MAX(I,III)+III");
    EXPECT_EQ(named(Unit({{1, 1.0}, {2, 1.0}, {3, 1.0}, {4, 1.0}}), {2}, {3}), L"I+II+MAX(III,IV)");
    // Coefficients other than 1 are written without a sign and without a "+" before them.
    EXPECT_EQ(named(Unit({{1, 1.0}, {2, 0.5}, {3, 2.0}}), {0}, {1}), L"MAX(I,0.50xII)2.00xIII");
    EXPECT_EQ(named(Unit({{1, 4.0}, {2, 0.25}, {3, 9.0}}), {0}, {1}, 1),
              L"MAX(2.00xI,0.50xII)3.00xIII");
    EXPECT_EQ(named(Unit({{2, 1.0}, {5, 1.0}, {4, 1.0}, {1, 1.0}}), {0, 2}, {1, 3}),
              L"MAX(II,V)+MAX(IV,I)");

    // Every first index needs its second.
    g_hook.first = {0, 1};
    g_hook.second = {1};
    EXPECT_THROW(item.SetGenericName(&threeOnes, 0), CInvalidArgException);
}

TEST_F(KombOptItemNameTest, ItemOfAnSrssLoadCaseIsNamedFromThatCasesUnit) {
    auto* srss = new CSlucajOpterecenja;
    srss->SetNaziv(L"SRSS");
    srss->PostaviRedniBroj(5);
    srss->PostaviSRSS(Unit({{1, 1.0}, {2, 1.0}, {3, 1.0}}));
    const CId srssId = Insert(srss);

    CKombOptItem item;
    item.SetId(srssId);
    item.DodajOsnOpt(1.0, m_lc[4]);
    // Without the hook the item's own entries name it.
    item.SetGenericName(nullptr, 0);
    EXPECT_EQ(item.GetNaziv(), L"IV");

    CKombOptItem::fnVratiParovePovezanih = &TestHook;
    g_hook.first = {1};
    g_hook.second = {2};
    const CLoadCaseUnit other = Unit({{4, 1.0}});
    item.SetGenericName(&other, 0); // the case's own unit wins over the one passed
    EXPECT_EQ(item.GetNaziv(), L"I+MAX(II,III)");
    EXPECT_EQ(g_hook.lastId, srssId);
    EXPECT_EQ(g_hook.lastUnit, nullptr);

    // An id that is not an SRSS load case leaves the hook alone.
    item.SetId(m_lc[2]);
    const int calls = g_hook.calls;
    item.SetGenericName(nullptr, 0);
    EXPECT_EQ(item.GetNaziv(), L"IV");
    EXPECT_EQ(g_hook.calls, calls);
}
