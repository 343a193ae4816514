// Integer lists as text, and the test for Bulgarian. (Catalogs are used, and tested, by the
// services.)
#include "text/Translator.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

CArray<int> Ints(std::initializer_list<int> values) {
    CArray<int> a;
    for (int v : values)
        a.Add(v);
    return a;
}

} // namespace

TEST(IntArrayText, WritesAscendingRunsAsRangesAndReadsThemBack) {
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({5, 1, 2, 3, 3})), L"1-3,5");
    EXPECT_EQ(ClTranslator::IntArray2String(Ints({9, 8, 7, 1, 12, 11})), L"1,7-9,11-12");
    CArray<int> values;
    ASSERT_TRUE(ClTranslator::String2IntArray(L" 5 , 1 - 3 ", values));
    EXPECT_EQ(values, Ints({1, 2, 3, 5}));
    ASSERT_TRUE(ClTranslator::String2IntArray(L"7,2,7,1-2", values));
    EXPECT_EQ(values, Ints({1, 2, 7}));
    const CArray<int> lists[] = {Ints({}), Ints({-3, -2, -1, 1, 40}), Ints({INT_MAX}),
                                 Ints({INT_MIN, INT_MIN + 1})};
    for (const CArray<int>& list : lists) {
        const CString text = ClTranslator::IntArray2String(list);
        CArray<int> back = Ints({99});
        ASSERT_TRUE(ClTranslator::String2IntArray(text, back)) << text.ToUtf8();
        EXPECT_EQ(back, list) << text.ToUtf8();
    }
    // Anything else is refused and leaves the list empty.
    for (const wchar_t* text : {L"1,", L",1", L"1,,2", L"a", L"1;2", L"3-1", L"1-", L"-", L"1-2-3",
                                L"1 2", L"2147483648", L"-2147483649", L"1.5", L"0-2000000"}) {
        values = Ints({1, 2});
        EXPECT_FALSE(ClTranslator::String2IntArray(text, values)) << CString(text).ToUtf8();
        EXPECT_TRUE(values.IsEmpty()) << CString(text).ToUtf8();
    }
}

TEST(Translator, BulgarianIsTheLanguageOrTheSubLanguage) {
    const std::pair<int, int> jezici[] = {{ClTranslator::Srpski, 0},
                                          {ClTranslator::Bugarski, 0},
                                          {ClTranslator::Ruski, ClTranslator::Bugarski},
                                          {ClTranslator::Ruski, ClTranslator::Engleski}};
    for (const auto& [jezik, podjezik] : jezici) {
        ClTranslator::SetLanguage(jezik, podjezik);
        EXPECT_EQ(ClTranslator::bugarskiJezik(),
                  jezik == ClTranslator::Bugarski || podjezik == ClTranslator::Bugarski);
    }
    ClTranslator::SetLanguage(ClTranslator::Srpski);
}
