// The generalized load case: sorted insertion, equality, its record and its list of ordinals.
#include "model/GeneralizedLoadCase.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"
#include "model/LoadNumbering.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace loadrec;

namespace {

using GeneralizedLoadCaseTest = ModelTest;

TEST_F(GeneralizedLoadCaseTest, UnitsAreInsertedInOrderAndEqualityIsWithinTheTolerance) {
    CGeneralizedLoadCase glc;
    glc.AddLoadCaseUnit(Unit({{1, 1.0}}, LCU_ANVELOPA)); // linear units first
    glc.AddLoadCaseUnit(Unit({{3, 2.0}}));
    glc.AddLoadCaseUnit(Unit({{3, 2.0 + 1e-12}}));
    glc.AddLoadCaseUnit(Unit({{1, 5.0}, {2, 1.0}})); // more pairs sort later
    glc.AddLoadCaseUnit(Unit({{2, 1.0}}));           // smaller ordinal first
    glc.AddLoadCaseUnit(glc.GetLoadCaseUnit(0));     // a unit of its own
    EXPECT_TRUE(glc.IsAnvelopeType());
    EXPECT_EQ(UnitsOf(glc),
              (Units{Unit({{2, 1.0}}), Unit({{2, 1.0}}), Unit({{3, 2.0}}), Unit({{3, 2.0}}),
                     Unit({{1, 5.0}, {2, 1.0}}), Unit({{1, 1.0}}, LCU_ANVELOPA)}));
    // Equal within the tolerance but told apart by the exact value: arrival order is kept.
    EXPECT_EQ(glc.GetLoadCaseUnit(2).GetLoadCaseFactor(0).GetFaktor(), 2.0);
    EXPECT_EQ(glc.GetLoadCaseUnit(3).GetLoadCaseFactor(0).GetFaktor(), 2.0 + 1e-12);
    glc.Reset();
    EXPECT_FALSE(glc.IsAnvelopeType());

    CGeneralizedLoadCase a;
    a.SetRbrFaze(3);
    a.AddLoadCaseUnit(Unit({{1, 1.0}, {2, 1.5}}));
    a.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_ANVELOPA));
    CGeneralizedLoadCase other(a);
    EXPECT_TRUE(other == a);
    EXPECT_FALSE(other != a);
    other.SetRbrFaze(2);
    EXPECT_TRUE(other != a) << "another phase";
    other = a;
    other.Reset();
    other.AddLoadCaseUnit(Unit({{1, 1.0 + 1e-12}, {2, 1.5}}));
    EXPECT_NE(other, a) << "fewer units";
    other.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_LINEARNA));
    EXPECT_NE(other, a) << "a unit of another character";
    other = a;
    other.Reset();
    other.AddLoadCaseUnit(Unit({{1, 1.0 + 1e-12}, {2, 1.5}}));
    other.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(other, a) << "factors within the tolerance";
}

/// Every unit as its exact bits: character, then each ordinal with the bits of its factor.
std::vector<std::vector<uint64_t>> Bits(const CGeneralizedLoadCase& glc) {
    std::vector<std::vector<uint64_t>> bits;
    for (const CLoadCaseUnit& unit : UnitsOf(glc)) {
        std::vector<uint64_t>& b = bits.emplace_back();
        b.push_back(static_cast<uint64_t>(unit.GetKarakter()));
        for (const CLoadCaseFactor& f : unit.GetFactors()) {
            b.push_back(static_cast<uint64_t>(f.GetLCRedniBroj()));
            b.push_back(std::bit_cast<uint64_t>(f.GetFaktor()));
        }
    }
    return bits;
}

TEST_F(GeneralizedLoadCaseTest, UnitsAddedTogetherStandExactlyAsInsertedOneByOne) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    struct Case {
        const char* what;
        std::vector<double> factors; // drawn from these, so that ties abound
        int initial;                 // units added one by one first
        bool shuffleInitial;         // read in stream order rather than inserted
    };
    const Case cases[] = {
        {"exact ties", {1.0, 1.5, -1.0, 0.75, -0.0, 0.0}, 0, false},
        {"exact ties after units inserted before", {1.0, 1.35, 1.5}, 7, false},
        {"after units read unsorted", {1.0, 1.35, 1.5}, 7, true},
        {"apart by more than the tolerance",
         {1.0, 1.0 + 3e-9, 1.0 - 3e-9, 2.0, kInf, -kInf},
         0,
         false},
        {"within the tolerance", {1.0, 1.0 + 4e-10, 1.0 + 8e-10, 1.0 + 1.2e-9, 1.5}, 0, false},
        {"rounding at the tolerance", {0.1, 0.1 + 1e-9, 0.1 - 1e-9, 3.0, 3.0 + 1e-9}, 0, false},
        {"not a number", {1.0, 1.5, kNaN}, 0, false},
    };
    std::mt19937 rng(20240611);
    for (const Case& c : cases) {
        for (int round = 0; round < 60; ++round) {
            const auto draw = [&] {
                CLoadCaseUnit unit;
                const int karakter = static_cast<int>(rng() % 5);
                unit.SetKarakter(karakter < 2   ? LCU_LINEARNA
                                 : karakter < 4 ? LCU_ANVELOPA
                                                : static_cast<eKarakter>(7));
                const int size = static_cast<int>(rng() % 4);
                for (int i = 0; i < size; ++i)
                    unit.Factors().Add(CLoadCaseFactor(1 + static_cast<int>(rng() % 3),
                                                       c.factors[rng() % c.factors.size()]));
                return unit;
            };
            const int n = static_cast<int>(rng() % 300);
            std::vector<CLoadCaseUnit> units;
            for (int i = 0; i < n; ++i)
                units.push_back(draw());
            // Some units twice, the same value arriving again later.
            for (int i = 0; i < n / 10; ++i)
                units.push_back(units[rng() % units.size()]);

            CGeneralizedLoadCase literal;
            CGeneralizedLoadCase together;
            if (c.shuffleInitial) {
                // A list out of order, as a file may hold it: sorted units written backwards.
                CGeneralizedLoadCase sorted;
                for (int i = 0; i < c.initial; ++i)
                    sorted.AddLoadCaseUnit(draw());
                CFiller f;
                f.Open(CFiller::Mode::Write);
                f.WriteInt32(2);
                f.WriteInt32(0);
                f.WriteInt32(1);
                f.WriteInt32(sorted.GetSize());
                for (int i = sorted.GetSize() - 1; i >= 0; --i)
                    sorted.GetLoadCaseUnit(i).ToFiller(f);
                Reader r(f.Buffer());
                ASSERT_EQ(literal.FromFiller(r.f()), 1);
                together = literal;
            } else {
                for (int i = 0; i < c.initial; ++i) {
                    const CLoadCaseUnit unit = draw();
                    literal.AddLoadCaseUnit(unit);
                    together.AddLoadCaseUnit(unit);
                }
            }
            for (const CLoadCaseUnit& unit : units)
                literal.AddLoadCaseUnit(unit);
            together.AddLoadCaseUnits(std::vector<CLoadCaseUnit>(units));
            ASSERT_EQ(Bits(together), Bits(literal)) << c.what << ", round " << round;
        }
    }
}

TEST_F(GeneralizedLoadCaseTest, RecordVersion2IsExactBothWaysAndVersion1IsRead) {
    CGeneralizedLoadCase glc;
    glc.SetRbrFaze(2);
    glc.AddLoadCaseUnit(Unit({{3, -1.0}}, LCU_ANVELOPA));
    glc.AddLoadCaseUnit(Unit({{1, 1.0}, {2, 1.5}}));
    // Version, spare value 0, phase, count, then the units in their sorted order.
    Bytes golden;
    golden.i32(2).i32(0).i32(2).i32(2).unit(0, {{1, 1.0}, {2, 1.5}}).unit(1, {{3, -1.0}});
    EXPECT_EQ(Written(glc), golden.get());

    CGeneralizedLoadCase read;
    read.SetRbrFaze(9);
    read.AddLoadCaseUnit(Unit({{8, 1.0}}));
    Reader r(golden.get());
    ASSERT_EQ(read.FromFiller(r.f()), 1);
    EXPECT_EQ(r->Remaining(), 0u);
    EXPECT_EQ(read, glc);
    EXPECT_TRUE(read.IsAnvelopeType());

    // A spare value of 7 reads into the same value, which writes 0 again.
    Reader r7(With32(golden.get(), 4, 7));
    ASSERT_EQ(read.FromFiller(r7.f()), 1);
    EXPECT_EQ(Written(read), golden.get());
    EXPECT_EQ(Written(CGeneralizedLoadCase(read)), golden.get());

    // Version 1 has no spare value, and its units stay in stream order.
    Reader r1(Bytes().i32(1).i32(4).i32(2).unit(1, {{5, 1.0}}).unit(0, {{2, 1.0}}).get());
    ASSERT_EQ(read.FromFiller(r1.f()), 1);
    EXPECT_EQ(r1->Remaining(), 0u);
    EXPECT_EQ(Written(read),
              Bytes().i32(2).i32(0).i32(4).i32(2).unit(1, {{5, 1.0}}).unit(0, {{2, 1.0}}).get());
}

TEST_F(GeneralizedLoadCaseTest, BadRecordsEndInTheErrorFlag) {
    ExpectVersionError<CGeneralizedLoadCase>(Bytes().i32(3).i32(0).i32(1).i32(0).get(), 3,
                                             "LoadCaseDescriptions");
    Bytes good;
    good.i32(2).i32(0).i32(1).i32(2).unit(0, {{1, 1.0}, {2, 1.5}}).unit(1, {{3, 1.0}});
    ExpectDamagedInputFails<CGeneralizedLoadCase>(good.get(), {12, 24});
}

TEST_F(GeneralizedLoadCaseTest, OrdinalListNamesTheLoadsThatTheUnitsStandFor) {
    TeorijaGuard guard;
    CModelGlobals::nTeorija = 1;
    const CId lc1 = AddLoadCase(L"G", 1);
    const CId lc2 = AddLoadCase(L"P", 2);
    const CId lc3 = AddLoadCase(L"W", 3);
    AddCombination(1, {{lc1, 1.35}, {lc2, 1.5}});
    AddCombination(2, {{lc1, 1.0}, {lc3, 0.0}});
    const auto unitOf = [](int zerobased) {
        CLoadCaseUnit unit;
        LoadNumbering::ZerobasedToLoadCaseUnit(zerobased, unit);
        return unit;
    };

    CGeneralizedLoadCase glc;
    EXPECT_EQ(glc.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"");
    glc.AddLoadCaseUnit(unitOf(2));
    glc.AddLoadCaseUnit(unitOf(0));
    EXPECT_EQ(glc.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"1,3");
    // A unit equal to no load adds nothing; the same unit twice is listed once; the
    // characters play no part.
    glc.AddLoadCaseUnit(Unit({{1, 2.0}}));
    glc.AddLoadCaseUnit(unitOf(2));
    CLoadCaseUnit envelope = unitOf(1);
    envelope.SetKarakter(LCU_ANVELOPA);
    glc.AddLoadCaseUnit(envelope);
    EXPECT_EQ(glc.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"1-3");

    // Combinations: under superposition by their coefficients (combination 2's zero member
    // leaves it equal to load case 1, which takes the unit first).
    CGeneralizedLoadCase komb;
    komb.AddLoadCaseUnit(Unit({{1, 1.35}, {2, 1.5 + 1e-12}}));
    komb.AddLoadCaseUnit(Unit({{1, 1.0}}));
    komb.AddLoadCaseUnit(Unit({{1, 1.0}}));
    EXPECT_EQ(komb.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"1,4-5");

    // Under the other theory a combination stands for itself.
    CModelGlobals::nTeorija = 2;
    EXPECT_EQ(komb.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"1");
    CGeneralizedLoadCase own;
    own.AddLoadCaseUnit(Unit({{5, 1.0}}));
    own.AddLoadCaseUnit(Unit({{6, 1.0}})); // an envelope's number: no load of the list
    EXPECT_EQ(own.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"5");
}

} // namespace
