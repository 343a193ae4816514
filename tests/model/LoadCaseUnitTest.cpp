// Normalization, ordinal sort, ordering and equality of load case units, and the fatal error
// on a load named twice in one unit.
#include "ModelFixture.h"
#include "model/LoadCaseDescriptions.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<int, double>>;

OCArray<CLoadCaseFactor> Array(const Pairs& pairs) {
    OCArray<CLoadCaseFactor> arr;
    for (const auto& [ordinal, factor] : pairs)
        arr.Add(CLoadCaseFactor(ordinal, factor));
    return arr;
}

CLoadCaseUnit Unit(const Pairs& pairs, eKarakter karakter = LCU_LINEARNA) {
    CLoadCaseUnit unit;
    unit.SetKarakter(karakter);
    for (const auto& [ordinal, factor] : pairs)
        unit.Factors().Add(CLoadCaseFactor(ordinal, factor));
    return unit;
}

Pairs PairsOf(const CLoadCaseUnit& unit) {
    Pairs pairs;
    for (int i = 0; i < unit.GetSize(); ++i)
        pairs.emplace_back(unit.GetLoadCaseFactor(i).GetLCRedniBroj(),
                           unit.GetLoadCaseFactor(i).GetFaktor());
    return pairs;
}

Pairs PairsOf(const OCArray<CLoadCaseFactor>& arr) {
    Pairs pairs;
    for (const CLoadCaseFactor& f : arr)
        pairs.emplace_back(f.GetLCRedniBroj(), f.GetFaktor());
    return pairs;
}

} // namespace

TEST(LoadCaseUnitNormalization, DropsFactorsZeroWithinToleranceAndSortsByOrdinal) {
    OCArray<CLoadCaseFactor> arr = Array({{3, 0.5}, {1, 2.0}, {2, 0.0}});
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    EXPECT_EQ(PairsOf(arr), (Pairs{{1, 2.0}, {3, 0.5}}));

    // Consecutive zeros: the walk stays where the next pair moved up.
    arr = Array({{4, 0.0}, {2, 1e-12}, {9, -1e-10}, {1, 0.001}, {5, 0.0}});
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    EXPECT_EQ(PairsOf(arr), (Pairs{{1, 0.001}}));

    arr = Array({{1, 0.0}, {2, 1e-12}});
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    EXPECT_TRUE(arr.IsEmpty());

    arr = Array({{6, -1.0}, {5, 1.0}, {4, 2e-9}, {3, 1.0}, {2, 1.0}, {1, 1.0}});
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    EXPECT_EQ(PairsOf(arr), (Pairs{{1, 1.0}, {2, 1.0}, {3, 1.0}, {4, 2e-9}, {5, 1.0}, {6, -1.0}}));

    // Set normalizes, also when given the unit's own list, and then sets the character.
    CLoadCaseUnit unit = Unit({{2, 1.0}, {1, 0.0}, {0, 3.0}});
    unit.Set(unit.GetFactors(), LCU_ANVELOPA);
    EXPECT_EQ(PairsOf(unit), (Pairs{{0, 3.0}, {2, 1.0}}));
    EXPECT_EQ(unit.GetKarakter(), LCU_ANVELOPA);
}

TEST(LoadCaseUnitNormalization, SetFaktorRemovesOnlyAnExactZero) {
    CLoadCaseUnit unit = Unit({{1, 1.0}, {2, 2.0}, {3, 3.0}});
    unit.SetFaktor(1, 1e-12);
    EXPECT_EQ(PairsOf(unit), (Pairs{{1, 1.0}, {2, 1e-12}, {3, 3.0}}));
    unit.SetFaktor(0, 0.0);
    EXPECT_EQ(PairsOf(unit), (Pairs{{2, 1e-12}, {3, 3.0}}));
    unit.SetFaktor(1, -0.0); // negative zero is exactly zero too
    EXPECT_EQ(PairsOf(unit), (Pairs{{2, 1e-12}}));
    EXPECT_THROW(unit.SetFaktor(1, 1.0), CInvalidArgException);

    unit.RemoveAll();
    EXPECT_TRUE(unit.IsEmpty());
    EXPECT_EQ(unit.GetKarakter(), LCU_LINEARNA);
}

TEST(LoadCaseUnitNormalization, OrdinalSortIsASelectionSortKeepingZerosAndEqualOrdinals) {
    CLoadCaseUnit unit = Unit({{2, 1.0}, {1, 0.0}, {2, 3.0}});
    unit.SortirajPoRednomBroju();
    EXPECT_EQ(PairsOf(unit), (Pairs{{1, 0.0}, {2, 1.0}, {2, 3.0}}));

    // A selection sort: among equal ordinals the first one found wins a position, and a swap
    // may carry an equal ordinal past its twin.
    unit = Unit({{3, 1.0}, {2, 2.0}, {2, 3.0}, {1, 4.0}});
    unit.SortirajPoRednomBroju();
    EXPECT_EQ(PairsOf(unit), (Pairs{{1, 4.0}, {2, 2.0}, {2, 3.0}, {3, 1.0}}));
    unit = Unit({{2, 1.0}, {2, 2.0}, {1, 3.0}});
    unit.SortirajPoRednomBroju();
    EXPECT_EQ(PairsOf(unit), (Pairs{{1, 3.0}, {2, 2.0}, {2, 1.0}}));

    unit = Unit({});
    unit.SortirajPoRednomBroju();
    EXPECT_TRUE(unit.IsEmpty());
}

TEST(LoadCaseUnitOrdering, ComparesCharacterThenSizeThenPairsWithTolerance) {
    const CLoadCaseUnit linear = Unit({{9, 100.0}});
    EXPECT_TRUE(linear < Unit({{1, 0.001}, {2, 1.0}}, LCU_ANVELOPA));
    EXPECT_TRUE(linear < Unit({}, LCU_ANVELOPA));
    EXPECT_FALSE(Unit({}, LCU_ANVELOPA) < linear);

    EXPECT_TRUE(Unit({{9, 1.0}}) < Unit({{1, 1.0}, {2, 1.0}}));
    EXPECT_FALSE(Unit({{1, 1.0}, {2, 1.0}}) < Unit({{9, 1.0}}));

    // The first differing position decides, the ordinal before the factor.
    EXPECT_TRUE(Unit({{1, 5.0}, {2, 1.0}}) < Unit({{1, 5.0}, {3, 0.0}}));
    EXPECT_FALSE(Unit({{1, 5.0}, {3, 0.0}}) < Unit({{1, 5.0}, {2, 1.0}}));
    EXPECT_TRUE(Unit({{1, 1.0}, {2, 9.0}}) < Unit({{1, 2.0}, {2, 0.0}}));
    EXPECT_FALSE(Unit({{1, 2.0}, {2, 0.0}}) < Unit({{1, 1.0}, {2, 9.0}}));

    // Factors within the tolerance are equal; then the next position decides.
    EXPECT_TRUE(Unit({{1, 1.0 + 1e-12}, {2, 1.0}}) < Unit({{1, 1.0}, {2, 2.0}}));
    EXPECT_FALSE(Unit({{1, 1.0}, {2, 2.0}}) < Unit({{1, 1.0 + 1e-12}, {2, 1.0}}));
    EXPECT_FALSE(Unit({{1, 1.0}}) < Unit({{1, 1.0 + 1e-12}}));
    EXPECT_FALSE(Unit({{1, 1.0 + 1e-12}}) < Unit({{1, 1.0}}));
    EXPECT_TRUE(Unit({{1, 1.0}}) < Unit({{1, 1.0 + 1e-6}}));
}

TEST(LoadCaseUnitOrdering, EqualityIsPositionalWithinTolerance) {
    EXPECT_TRUE(Unit({{1, 1.0}}) == Unit({{1, 1.0 + 1e-12}}));
    EXPECT_FALSE(Unit({{1, 1.0}}) != Unit({{1, 1.0 + 1e-12}}));
    EXPECT_TRUE(Unit({{1, 1.0}}) != Unit({{1, 1.0 + 1e-6}}));
    EXPECT_TRUE(Unit({{1, 1.0}, {2, 1.0}}) != Unit({{2, 1.0}, {1, 1.0}}));
    EXPECT_TRUE(Unit({{1, 1.0}}) != Unit({{1, 1.0}}, LCU_ANVELOPA));
    EXPECT_TRUE(Unit({{1, 1.0}}) != Unit({{1, 1.0}, {2, 0.0}}));
    EXPECT_TRUE(Unit({}, LCU_ANVELOPA) == Unit({}, LCU_ANVELOPA));

    EXPECT_TRUE(CLoadCaseFactor::EqualLoadCaseFactorArray(Array({{1, 1.0}, {4, -2.0}}),
                                                          Array({{1, 1.0}, {4, -2.0 + 1e-11}})));
    EXPECT_FALSE(
        CLoadCaseFactor::EqualLoadCaseFactorArray(Array({{1, 1.0}}), Array({{1, 1.0}, {2, 1.0}})));
    EXPECT_FALSE(CLoadCaseFactor::EqualLoadCaseFactorArray(Array({{1, 1.0}}), Array({{2, 1.0}})));
    EXPECT_TRUE(CLoadCaseFactor::EqualLoadCaseFactorArray(Array({}), Array({})));

    // Copies are independent values.
    CLoadCaseUnit a = Unit({{1, 1.0}}, LCU_ANVELOPA);
    CLoadCaseUnit b(a);
    b.SetFaktor(0, 2.0);
    EXPECT_EQ(a.GetLoadCaseFactor(0).GetFaktor(), 1.0);
    a = b;
    EXPECT_TRUE(a == b);
}

using LoadCaseFactorFatal = ModelTest;

TEST_F(LoadCaseFactorFatal, LoadNamedTwiceInOneUnitEndsTheProgram) {
    EXPECT_EXIT(
        {
            OCArray<CLoadCaseFactor> arr = Array({{3, 1.0}, {2, 1.0}, {2, 1.0}});
            CLoadCaseFactor::SortLoadCaseFactorArray(arr);
        },
        ::testing::ExitedWithCode(0),
        "INTERNAL ERROR - PROGRAM TERMINATES\n\\[LoadCaseDescriptions : 81\\]\n"
        "arrLoadCaseFactors \\[i\\]\\.m_lcId == arrLoadCaseFactors \\[j\\]\\.m_lcId");
    const std::string log = ErrorLog();
    EXPECT_NE(log.find("##### BEGINING OF STACK DUMP\n\n"), std::string::npos) << log;
    EXPECT_NE(log.find("ASSERT(arrLoadCaseFactors [i].m_lcId == arrLoadCaseFactors [j].m_lcId)\n"
                       "FILE: LoadCaseDescriptions\nLINE: 81\n\n"),
              std::string::npos)
        << log;

    // A duplicate whose partner is zero is dropped first and is no error; Set normalizes too.
    OCArray<CLoadCaseFactor> arr = Array({{2, 1.0}, {2, 0.0}});
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    EXPECT_EQ(arr.GetSize(), 1);
    EXPECT_EXIT(
        {
            CLoadCaseUnit unit;
            unit.Set(Array({{2, 1.0}, {2, 1.0}}), LCU_LINEARNA);
        },
        ::testing::ExitedWithCode(0), "INTERNAL ERROR - PROGRAM TERMINATES");
}
