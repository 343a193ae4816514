// Catalogs, the current language and integer lists as text.
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

class Translation : public ::testing::Test {
protected:
    void TearDown() override {
        ClTranslator::ClearCatalogs();
        ClTranslator::SetLanguage(ClTranslator::Srpski);
    }
};

CArray<int> Ints(std::initializer_list<int> values) {
    CArray<int> a;
    for (int v : values)
        a.Add(v);
    return a;
}

} // namespace

TEST_F(Translation, CurrentLanguageCatalogTranslatesAndUnknownTextsStay) {
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Upozorenje", L"Warning");
    ClTranslator::AddTranslation(ClTranslator::Ruski, L"Upozorenje", L"Предупреждение");
    const ClTranslator tr;
    EXPECT_EQ(tr.Do(L"Upozorenje"), L"Upozorenje"); // Serbian is the source language

    ClTranslator::SetLanguage(ClTranslator::Engleski, 2);
    EXPECT_EQ(ClTranslator::GetLanguage(), ClTranslator::Engleski);
    EXPECT_EQ(ClTranslator::GetSubLanguage(), 2);
    EXPECT_FALSE(ClTranslator::bugarskiJezik());
    EXPECT_EQ(tr.Do(L"Upozorenje"), L"Warning");
    EXPECT_EQ(tr.Do(L"Snimi"), L"Snimi");
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Upozorenje", L"Caution");
    EXPECT_EQ(ClTranslator::Translate(L"Upozorenje"), L"Caution");

    ClTranslator::SetLanguage(ClTranslator::Ruski);
    EXPECT_EQ(ClTranslator::GetSubLanguage(), 0);
    EXPECT_EQ(tr.Do(L"Upozorenje"), L"Предупреждение");

    ClTranslator::SetLanguage(ClTranslator::Bugarski);
    EXPECT_TRUE(ClTranslator::bugarskiJezik());
    EXPECT_EQ(tr.Do(L"Upozorenje"), L"Upozorenje"); // no catalog

    ClTranslator::SetLanguage(ClTranslator::Ruski);
    ClTranslator::ClearCatalogs();
    EXPECT_EQ(tr.Do(L"Upozorenje"), L"Upozorenje");
}

TEST(IntArrayText, WritesAscendingItemsWithRunsAsRanges) {
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({5, 1, 2, 3, 3})), L"1-3,5");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({})), L"");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({4})), L"4");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({2, 1})), L"1-2");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({1, 3, 5})), L"1,3,5");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({9, 8, 7, 1, 12, 11})), L"1,7-9,11-12");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({INT_MAX, INT_MAX - 1, INT_MIN})),
              L"-2147483648,2147483646-2147483647");
}

TEST(IntArrayText, ReadsListsBackAndRoundTrips) {
    CArray<int> values;
    ASSERT_TRUE(ClTranslator::String2IntArray(L" 5 , 1 - 3 ", values));
    EXPECT_EQ(values, Ints({1, 2, 3, 5}));
    ASSERT_TRUE(ClTranslator::String2IntArray(L"7,2,7,1-2", values));
    EXPECT_EQ(values, Ints({1, 2, 7}));
    ASSERT_TRUE(ClTranslator::String2IntArray(L"", values));
    EXPECT_TRUE(values.IsEmpty());
    ASSERT_TRUE(ClTranslator::String2IntArray(L"-3--1,1", values));
    EXPECT_EQ(values, Ints({-3, -2, -1, 1}));

    const CArray<int> lists[] = {Ints({}),           Ints({1}),
                                 Ints({1, 2}),       Ints({1, 2, 4}),
                                 Ints({3, 5, 6, 7}), Ints({-2, 0, 1, 2, 40}),
                                 Ints({INT_MAX}),    Ints({INT_MIN, INT_MIN + 1})};
    for (const CArray<int>& list : lists) {
        const CString text = ClTranslator::IntArray2String(list);
        CArray<int> back = Ints({99});
        ASSERT_TRUE(ClTranslator::String2IntArray(text, back)) << text.ToUtf8();
        EXPECT_EQ(back, list) << text.ToUtf8();
    }
}

TEST(IntArrayText, RejectsAnythingElseAndLeavesTheListEmpty) {
    const wchar_t* invalid[] = {L"1,",         L",1",          L"1,,2", L"a",        L"1;2",
                                L"3-1",        L"1-",          L"-",    L"1-2-3",    L"1 2",
                                L"2147483648", L"-2147483649", L"1.5",  L"0-2000000"};
    for (const wchar_t* text : invalid) {
        CArray<int> values = Ints({1, 2});
        EXPECT_FALSE(ClTranslator::String2IntArray(text, values)) << CString(text).ToUtf8();
        EXPECT_TRUE(values.IsEmpty()) << CString(text).ToUtf8();
    }
}
