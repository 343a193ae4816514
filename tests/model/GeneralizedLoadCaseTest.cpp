// The generalized load case: sorted insertion, equality, its record and its list of ordinals.
#include "ModelFixture.h"

#include "model/GeneralizedLoadCase.h"
#include "model/LoadNumbering.h"
#include "model/ModelGlobals.h"

#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

/// Little-endian bytes of a record, written field by field from the record table.
struct Bytes {
    std::vector<uint8_t> b;
    Bytes& I32(int32_t v) {
        for (int k = 0; k < 4; ++k)
            b.push_back(static_cast<uint8_t>(static_cast<uint32_t>(v) >> (8 * k)));
        return *this;
    }
    /// A float64 given by its bit pattern (1.0 is 0x3FF0000000000000).
    Bytes& F64Bits(uint64_t bits) {
        for (int k = 0; k < 8; ++k)
            b.push_back(static_cast<uint8_t>(bits >> (8 * k)));
        return *this;
    }
};

constexpr uint64_t kJedan = 0x3FF0000000000000;      // 1.0
constexpr uint64_t kJedanIPo = 0x3FF8000000000000;   // 1.5
constexpr uint64_t kMinusJedan = 0xBFF0000000000000; // -1.0

CLoadCaseUnit Unit(std::initializer_list<std::pair<int, double>> pairs,
                   eKarakter karakter = LCU_LINEARNA) {
    CLoadCaseUnit unit;
    for (const auto& [ordinal, factor] : pairs)
        unit.Factors().Add(CLoadCaseFactor(ordinal, factor));
    unit.SetKarakter(karakter);
    return unit;
}

std::vector<uint8_t> Written(const CFillerUser& value) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    value.ToFiller(f);
    f.Close();
    return f.Buffer();
}

/// Reads a value from the given bytes; the stream is left open for inspection.
int ReadFrom(CFiller& f, const std::vector<uint8_t>& bytes, CFillerUser& value) {
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    return value.FromFiller(f);
}

/// Restores the analysis theory that a test changes.
struct TeorijaGuard {
    int saved = CModelGlobals::nTeorija;
    ~TeorijaGuard() { CModelGlobals::nTeorija = saved; }
};

using GeneralizedLoadCaseTest = ModelTest;

TEST_F(GeneralizedLoadCaseTest, DefaultValueIsPhaseOneWithoutUnits) {
    const CGeneralizedLoadCase glc;
    EXPECT_EQ(glc.GetRbrFaze(), 1);
    EXPECT_EQ(glc.GetSize(), 0);
    EXPECT_FALSE(glc.IsAnvelopeType());
    EXPECT_EQ(glc.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja(), L"");
    EXPECT_THROW(glc.GetLoadCaseUnit(0), CInvalidArgException);
}

TEST_F(GeneralizedLoadCaseTest, UnitsAreInsertedInOrderWithEqualUnitsAfterEarlierOnes) {
    CGeneralizedLoadCase glc;
    glc.AddLoadCaseUnit(Unit({{1, 1.0}}, LCU_ANVELOPA));
    EXPECT_TRUE(glc.IsAnvelopeType());
    glc.AddLoadCaseUnit(Unit({{2, 1.0}}, LCU_LINEARNA));
    glc.AddLoadCaseUnit(Unit({{1, 1.0}}, LCU_ANVELOPA));
    ASSERT_EQ(glc.GetSize(), 3);
    EXPECT_EQ(glc.GetLoadCaseUnit(0).GetKarakter(), LCU_LINEARNA);
    EXPECT_EQ(glc.GetLoadCaseUnit(1).GetKarakter(), LCU_ANVELOPA);
    EXPECT_EQ(glc.GetLoadCaseUnit(2).GetKarakter(), LCU_ANVELOPA);

    // Equal within the tolerance but told apart by the exact value: arrival order is kept.
    CGeneralizedLoadCase eq;
    eq.AddLoadCaseUnit(Unit({{3, 2.0}}));
    eq.AddLoadCaseUnit(Unit({{3, 2.0 + 1e-12}}));
    eq.AddLoadCaseUnit(Unit({{1, 5.0}, {2, 1.0}})); // more pairs sort later
    eq.AddLoadCaseUnit(Unit({{2, 1.0}}));           // smaller ordinal first
    eq.AddLoadCaseUnit(eq.GetLoadCaseUnit(0));      // a unit of its own
    ASSERT_EQ(eq.GetSize(), 5);
    EXPECT_EQ(eq.GetLoadCaseUnit(0), Unit({{2, 1.0}}));
    EXPECT_EQ(eq.GetLoadCaseUnit(1), Unit({{2, 1.0}}));
    EXPECT_EQ(eq.GetLoadCaseUnit(2).GetLoadCaseFactor(0).GetFaktor(), 2.0);
    EXPECT_EQ(eq.GetLoadCaseUnit(3).GetLoadCaseFactor(0).GetFaktor(), 2.0 + 1e-12);
    EXPECT_EQ(eq.GetLoadCaseUnit(4).GetSize(), 2);

    glc.Reset();
    EXPECT_EQ(glc.GetSize(), 0);
    EXPECT_FALSE(glc.IsAnvelopeType());
}

TEST_F(GeneralizedLoadCaseTest, EqualityComparesPhaseAndUnitsAndCopiesCarryThem) {
    CGeneralizedLoadCase a;
    a.SetRbrFaze(3);
    a.AddLoadCaseUnit(Unit({{1, 1.0}, {2, 1.5}}));
    a.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_ANVELOPA));

    const CGeneralizedLoadCase copy(a);
    EXPECT_EQ(copy.GetRbrFaze(), 3);
    EXPECT_TRUE(copy == a);
    EXPECT_FALSE(copy != a);

    CGeneralizedLoadCase assigned;
    assigned = a;
    EXPECT_TRUE(assigned == a);

    CGeneralizedLoadCase phase(a);
    phase.SetRbrFaze(2);
    EXPECT_TRUE(phase != a);

    CGeneralizedLoadCase other(a);
    other.Reset();
    other.AddLoadCaseUnit(Unit({{1, 1.0 + 1e-12}, {2, 1.5}}));
    EXPECT_NE(other, a) << "fewer units";
    other.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_LINEARNA));
    EXPECT_NE(other, a) << "a unit of another character";
    other.Reset();
    other.AddLoadCaseUnit(Unit({{1, 1.0 + 1e-12}, {2, 1.5}}));
    other.AddLoadCaseUnit(Unit({{4, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(other, a) << "factors within the tolerance";

    // A record whose spare value is 7 reads into a value equal to one written with 0, and
    // writing it again gives 0.
    std::vector<uint8_t> bytes = Written(a);
    bytes[4] = 7;
    CGeneralizedLoadCase read;
    CFiller f;
    ASSERT_EQ(ReadFrom(f, bytes, read), 1);
    EXPECT_EQ(read, a);
    EXPECT_EQ(Written(read), Written(a));
    const CGeneralizedLoadCase copyOfRead(read);
    EXPECT_EQ(Written(copyOfRead)[4], 0);
}

TEST_F(GeneralizedLoadCaseTest, RecordVersion2IsWrittenAndReadAsTheTableSays) {
    CGeneralizedLoadCase glc;
    glc.SetRbrFaze(2);
    glc.AddLoadCaseUnit(Unit({{3, -1.0}}, LCU_ANVELOPA));
    glc.AddLoadCaseUnit(Unit({{1, 1.0}, {2, 1.5}}));

    Bytes golden;
    golden.I32(2).I32(0).I32(2).I32(2);
    // unit (1, 1.0), (2, 1.5), linear
    golden.I32(1).I32(0).I32(2);
    golden.I32(1).I32(1).F64Bits(kJedan);
    golden.I32(1).I32(2).F64Bits(kJedanIPo);
    // unit (3, -1.0), envelope
    golden.I32(1).I32(1).I32(1);
    golden.I32(1).I32(3).F64Bits(kMinusJedan);
    EXPECT_EQ(Written(glc), golden.b);

    CGeneralizedLoadCase read;
    read.SetRbrFaze(9);
    read.AddLoadCaseUnit(Unit({{8, 1.0}}));
    CFiller f;
    ASSERT_EQ(ReadFrom(f, golden.b, read), 1);
    EXPECT_FALSE(f.IsError());
    EXPECT_EQ(f.Remaining(), 0u);
    EXPECT_EQ(read, glc);
    EXPECT_TRUE(read.IsAnvelopeType());
}

TEST_F(GeneralizedLoadCaseTest, RecordVersion1HasNoSpareValueAndUnitsStayInStreamOrder) {
    Bytes v1;
    v1.I32(1).I32(4).I32(2);
    // (5, 1.0) envelope first, then (2, 1.0) linear: not the sorted order
    v1.I32(1).I32(1).I32(1).I32(1).I32(5).F64Bits(kJedan);
    v1.I32(1).I32(0).I32(1).I32(1).I32(2).F64Bits(kJedan);

    CGeneralizedLoadCase read;
    CFiller f;
    ASSERT_EQ(ReadFrom(f, v1.b, read), 1);
    EXPECT_FALSE(f.IsError());
    EXPECT_EQ(read.GetRbrFaze(), 4);
    ASSERT_EQ(read.GetSize(), 2);
    EXPECT_EQ(read.GetLoadCaseUnit(0), Unit({{5, 1.0}}, LCU_ANVELOPA));
    EXPECT_EQ(read.GetLoadCaseUnit(1), Unit({{2, 1.0}}));

    // Written back, it is a version 2 record with the spare value 0.
    Bytes v2;
    v2.I32(2).I32(0).I32(4).I32(2);
    v2.I32(1).I32(1).I32(1).I32(1).I32(5).F64Bits(kJedan);
    v2.I32(1).I32(0).I32(1).I32(1).I32(2).F64Bits(kJedan);
    EXPECT_EQ(Written(read), v2.b);

    // An empty list in either version.
    CGeneralizedLoadCase empty;
    CFiller g;
    ASSERT_EQ(ReadFrom(g, Bytes().I32(1).I32(1).I32(0).b, empty), 1);
    EXPECT_EQ(empty, CGeneralizedLoadCase());
}

TEST_F(GeneralizedLoadCaseTest, UnknownVersionTruncationAndAbsurdCountsEndInTheErrorFlag) {
    CGeneralizedLoadCase read;
    CFiller f;
    EXPECT_EQ(ReadFrom(f, Bytes().I32(3).I32(0).I32(1).I32(0).b, read), 0);
    EXPECT_TRUE(f.IsError());
    EXPECT_EQ(f.GetErrorSource(), "LoadCaseDescriptions");
    EXPECT_EQ(f.GetErrorMessage(), L"Object version error! Version: 3");

    // A stream already in error is not read.
    CFiller failed;
    failed.SetBuffer(Bytes().I32(2).I32(0).I32(1).I32(0).b);
    failed.Open(CFiller::Mode::Read);
    failed.SetError();
    EXPECT_EQ(read.FromFiller(failed), 0);
    EXPECT_EQ(failed.Remaining(), 16u);

    // A count that the stream cannot hold reads no unit.
    CGeneralizedLoadCase absurd;
    CFiller g;
    ReadFrom(g, Bytes().I32(2).I32(0).I32(1).I32(0x7FFFFFFF).I32(1).b, absurd);
    EXPECT_TRUE(g.IsError());
    EXPECT_EQ(absurd.GetSize(), 0);
    CFiller h;
    ReadFrom(h, Bytes().I32(2).I32(0).I32(1).I32(-5).b, absurd);
    EXPECT_TRUE(h.IsError());
    EXPECT_EQ(absurd.GetSize(), 0);

    // Every truncation of a valid record leaves the error flag set.
    CGeneralizedLoadCase glc;
    glc.AddLoadCaseUnit(Unit({{1, 1.0}, {2, 1.5}}));
    glc.AddLoadCaseUnit(Unit({{3, 1.0}}, LCU_ANVELOPA));
    const std::vector<uint8_t> full = Written(glc);
    for (size_t len = 0; len < full.size(); ++len) {
        CGeneralizedLoadCase part;
        CFiller t;
        ReadFrom(t, std::vector<uint8_t>(full.begin(), full.begin() + len), part);
        EXPECT_TRUE(t.IsError()) << "length " << len;
    }
}

TEST_F(GeneralizedLoadCaseTest, OrdinalListNamesTheLoadsThatTheUnitsStandFor) {
    TeorijaGuard guard;
    CModelGlobals::nTeorija = 1;
    const CId lc1 = AddLoadCase(L"G", 1);
    const CId lc2 = AddLoadCase(L"P", 2);
    const CId lc3 = AddLoadCase(L"W", 3);
    AddCombination(1, {{lc1, 1.35}, {lc2, 1.5}});
    AddCombination(2, {{lc1, 1.0}, {lc3, 0.0}});

    auto unitOf = [](int zerobased) {
        CLoadCaseUnit unit;
        LoadNumbering::ZerobasedToLoadCaseUnit(zerobased, unit);
        return unit;
    };

    CGeneralizedLoadCase glc;
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
