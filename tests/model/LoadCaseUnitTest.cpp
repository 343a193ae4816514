// Factors, factors for masses and load case units: their records byte for byte, damaged input,
// normalization, sorting, ordering and equality.
#include "LoadRecordBytes.h"

#include <gtest/gtest.h>

#include <vector>

using namespace loadrec;

namespace {

// Factor: version 1, ordinal, factor. Unit: version 1, character (envelope), count, factors.
const std::vector<uint8_t> kFactor3Half = Bytes().i32(1).i32(3).f64(0.5).get();
const std::vector<uint8_t> kUnitEnvelope =
    Bytes().i32(1).i32(1).i32(2).i32(1).i32(1).f64(2.0).i32(1).i32(4).f64(-1.0).get();

/// The pairs left after SortLoadCaseFactorArray.
Pairs Normalized(const Pairs& pairs) {
    OCArray<CLoadCaseFactor> arr = Unit(pairs).GetFactors();
    CLoadCaseFactor::SortLoadCaseFactorArray(arr);
    CLoadCaseUnit unit;
    unit.Factors() = arr;
    return PairsOf(&unit);
}

Pairs SortedByOrdinal(const Pairs& pairs) {
    CLoadCaseUnit unit = Unit(pairs);
    unit.SortirajPoRednomBroju();
    return PairsOf(&unit);
}

} // namespace

TEST(LoadCaseUnitRecord, FactorMassFactorAndUnitHaveTheLayoutOfVersionOneBothWays) {
    EXPECT_EQ(Written(CLoadCaseFactor(3, 0.5)), kFactor3Half);
    Reader rf(kFactor3Half);
    CLoadCaseFactor factor;
    EXPECT_EQ(factor.FromFiller(rf.f()), 1);
    EXPECT_EQ(Written(factor), kFactor3Half);

    // The factor for masses is written whole, without nesting the factor record.
    const std::vector<uint8_t> mass = Bytes().raw(kFactor3Half).i32(-2).get();
    EXPECT_EQ(Written(CLoadCaseFactorZaMase(3, 0.5, -2)), mass);
    Reader rm(mass);
    CLoadCaseFactorZaMase massFactor;
    EXPECT_EQ(massFactor.FromFiller(rm.f()), 1);
    EXPECT_EQ(Written(massFactor), mass);

    EXPECT_EQ(Written(Unit({{1, 2.0}, {4, -1.0}}, LCU_ANVELOPA)), kUnitEnvelope);
    Reader ru(kUnitEnvelope);
    CLoadCaseUnit unit = Unit({{9, 9.0}});
    EXPECT_EQ(unit.FromFiller(ru.f()), 1);
    EXPECT_TRUE(unit == Unit({{1, 2.0}, {4, -1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(ru->Remaining(), 0u);

    // Pairs are taken as they stand in the stream: neither sorted nor cleared of zeros.
    Reader rs(Bytes().unit(0, {{5, 1.0}, {2, 0.0}}).get());
    EXPECT_EQ(unit.FromFiller(rs.f()), 1);
    EXPECT_EQ(unit.GetKarakter(), LCU_LINEARNA);
    EXPECT_EQ(PairsOf(&unit), (Pairs{{5, 1.0}, {2, 0.0}}));
}

TEST(LoadCaseUnitRecord, BadInputEndsInTheErrorFlag) {
    ExpectVersionError<CLoadCaseFactor>(Bytes().i32(2).i32(3).f64(0.5).get(), 2,
                                        "LoadCaseDescriptions");
    ExpectVersionError<CLoadCaseFactorZaMase>(Bytes().i32(0).get(), 0, "LoadCaseDescriptions");
    ExpectVersionError<CLoadCaseUnit>(Bytes().i32(-1).i32(0).i32(0).get(), -1,
                                      "LoadCaseDescriptions");
    ExpectDamagedInputFails<CLoadCaseFactorZaMase>(Written(CLoadCaseFactorZaMase(3, 0.5, -2)));
    ExpectDamagedInputFails<CLoadCaseUnit>(kUnitEnvelope, {8});

    // A factor of a wrong version inside the unit stops the rest of the unit.
    Reader r(Bytes().i32(1).i32(0).i32(2).factor(1, 1.0).i32(5).i32(2).f64(1.0).get());
    CLoadCaseUnit unit;
    unit.FromFiller(r.f());
    EXPECT_EQ(r->GetErrorMessage(), CString(L"Object version error! Version: 5"));
    EXPECT_EQ(PairsOf(&unit), (Pairs{{1, 1.0}, {0, 0.0}}));
}

TEST(LoadCaseUnitNormalization, DropsZerosWithinToleranceSortsAndSetKeepsTheRule) {
    EXPECT_EQ(Normalized({{3, 0.5}, {1, 2.0}, {2, 0.0}}), (Pairs{{1, 2.0}, {3, 0.5}}));
    // Consecutive zeros: the walk stays where the next pair moved up.
    EXPECT_EQ(Normalized({{4, 0.0}, {2, 1e-12}, {9, -1e-10}, {1, 0.001}, {5, 0.0}}),
              (Pairs{{1, 0.001}}));
    EXPECT_EQ(Normalized({{6, -1.0}, {5, 1.0}, {4, 2e-9}, {3, 1.0}, {2, 1.0}, {1, 1.0}}),
              (Pairs{{1, 1.0}, {2, 1.0}, {3, 1.0}, {4, 2e-9}, {5, 1.0}, {6, -1.0}}));
    // A duplicate whose partner is zero is dropped first and is no error.
    EXPECT_EQ(Normalized({{2, 1.0}, {2, 0.0}}), (Pairs{{2, 1.0}}));

    // Set normalizes, also when given the unit's own list, and then sets the character.
    CLoadCaseUnit unit = Unit({{2, 1.0}, {1, 0.0}, {0, 3.0}});
    unit.Set(unit.GetFactors(), LCU_ANVELOPA);
    EXPECT_EQ(PairsOf(&unit), (Pairs{{0, 3.0}, {2, 1.0}}));
    EXPECT_EQ(unit.GetKarakter(), LCU_ANVELOPA);

    // SetFaktor removes a pair only for an exact zero, negative zero included.
    unit = Unit({{1, 1.0}, {2, 2.0}, {3, 3.0}});
    unit.SetFaktor(1, 1e-12);
    unit.SetFaktor(0, 0.0);
    EXPECT_EQ(PairsOf(&unit), (Pairs{{2, 1e-12}, {3, 3.0}}));
    unit.SetFaktor(1, -0.0);
    EXPECT_EQ(PairsOf(&unit), (Pairs{{2, 1e-12}}));
    EXPECT_THROW(unit.SetFaktor(1, 1.0), CInvalidArgException);
}

TEST(LoadCaseUnitNormalization, OrdinalSortIsASelectionSortKeepingZerosAndEqualOrdinals) {
    EXPECT_EQ(SortedByOrdinal({{2, 1.0}, {1, 0.0}, {2, 3.0}}),
              (Pairs{{1, 0.0}, {2, 1.0}, {2, 3.0}}));
    // Among equal ordinals the first one found wins a position, and a swap may carry an equal
    // ordinal past its twin.
    EXPECT_EQ(SortedByOrdinal({{3, 1.0}, {2, 2.0}, {2, 3.0}, {1, 4.0}}),
              (Pairs{{1, 4.0}, {2, 2.0}, {2, 3.0}, {3, 1.0}}));
    EXPECT_EQ(SortedByOrdinal({{2, 1.0}, {2, 2.0}, {1, 3.0}}),
              (Pairs{{1, 3.0}, {2, 2.0}, {2, 1.0}}));
    EXPECT_EQ(SortedByOrdinal({}), Pairs{});
}

TEST(LoadCaseUnitOrdering, ComparesCharacterThenSizeThenPairsAndEqualityIsPositional) {
    const CLoadCaseUnit linear = Unit({{9, 100.0}});
    const CLoadCaseUnit emptyEnvelope = Unit({}, LCU_ANVELOPA);
    const struct {
        CLoadCaseUnit a, b;
        bool less, greater, equal;
    } rows[] = {
        // The character first, then the size.
        {linear, Unit({{1, 0.001}, {2, 1.0}}, LCU_ANVELOPA), true, false, false},
        {linear, emptyEnvelope, true, false, false},
        {Unit({{9, 1.0}}), Unit({{1, 1.0}, {2, 1.0}}), true, false, false},
        // The first differing position decides, the ordinal before the factor.
        {Unit({{1, 5.0}, {2, 1.0}}), Unit({{1, 5.0}, {3, 0.0}}), true, false, false},
        {Unit({{1, 1.0}, {2, 9.0}}), Unit({{1, 2.0}, {2, 0.0}}), true, false, false},
        {Unit({{1, 1.0}, {2, 1.0}}), Unit({{2, 1.0}, {1, 1.0}}), true, false, false},
        // Factors within the tolerance are equal; then the next position decides.
        {Unit({{1, 1.0 + 1e-12}, {2, 1.0}}), Unit({{1, 1.0}, {2, 2.0}}), true, false, false},
        {Unit({{1, 1.0}}), Unit({{1, 1.0 + 1e-12}}), false, false, true},
        {Unit({{1, 1.0}}), Unit({{1, 1.0 + 1e-6}}), true, false, false},
        {Unit({{1, 1.0}}), Unit({{1, 1.0}}, LCU_ANVELOPA), true, false, false},
        {emptyEnvelope, emptyEnvelope, false, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << (&row - rows));
        EXPECT_EQ(row.a < row.b, row.less);
        EXPECT_EQ(row.b < row.a, row.greater);
        EXPECT_EQ(row.a == row.b, row.equal);
        EXPECT_EQ(row.a != row.b, !row.equal);
    }
    // The factor lists alone compare the same way.
    EXPECT_TRUE(CLoadCaseFactor::EqualLoadCaseFactorArray(
        Unit({{1, 1.0}, {4, -2.0}}).GetFactors(),
        Unit({{1, 1.0}, {4, -2.0 + 1e-11}}).GetFactors()));
    EXPECT_FALSE(CLoadCaseFactor::EqualLoadCaseFactorArray(Unit({{1, 1.0}}).GetFactors(),
                                                           Unit({{2, 1.0}}).GetFactors()));
}
