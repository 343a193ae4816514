// Stability parameters: records written byte by byte, items built from a model, the distinct
// stability combinations, their text, and damaged input.
#include "model/StabilnostParams.h"

#include "ModelFixture.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

/// Little-endian bytes of an int32 (given as its unsigned bit pattern).
void I32(Bytes& b, uint32_t v) {
    for (int k = 0; k < 4; ++k)
        b.push_back(static_cast<uint8_t>(v >> (8 * k)));
}
/// Little-endian bytes of a float64 given by its IEEE bit pattern.
void F64(Bytes& b, uint64_t bits) {
    for (int k = 0; k < 8; ++k)
        b.push_back(static_cast<uint8_t>(bits >> (8 * k)));
}

constexpr uint64_t k1_0 = 0x3FF0000000000000;
constexpr uint64_t kMinus1_0 = 0xBFF0000000000000;
constexpr uint64_t kMinus2_0 = 0xC000000000000000;
constexpr uint64_t k1_35 = 0x3FF599999999999A;
constexpr uint64_t k500_0 = 0x407F400000000000;
constexpr uint64_t k0_05 = 0x3FA999999999999A;
constexpr uint64_t k2_5 = 0x4004000000000000;

/// A parameters record of the given version, laid out field by field: torsion switch 1,
/// checksum 0x12345678, fixed unit 1.35 I + II, variable unit III - 2 IV, range 500,
/// accuracy 0.05, one critical value 2.5, four load case items and two combination items.
Bytes ParamsRecord(int version) {
    Bytes b;
    I32(b, static_cast<uint32_t>(version));
    if (version >= 5)
        I32(b, 1);
    if (version >= 4)
        I32(b, 0x12345678);
    if (version >= 3) {
        I32(b, 1); // one fixed unit: version, character, two factors
        I32(b, 1), I32(b, 0), I32(b, 2);
        I32(b, 1), I32(b, 1), F64(b, k1_35);
        I32(b, 1), I32(b, 2), F64(b, k1_0);
        I32(b, 1); // one variable unit
        I32(b, 1), I32(b, 0), I32(b, 2);
        I32(b, 1), I32(b, 3), F64(b, k1_0);
        I32(b, 1), I32(b, 4), F64(b, kMinus2_0);
    }
    if (version >= 2) {
        F64(b, k500_0);
        F64(b, k0_05);
        I32(b, 1), F64(b, k2_5);
    }
    I32(b, 4); // load case items: version, allowed, fixed, factor
    I32(b, 1), I32(b, 1), I32(b, 1), F64(b, k1_35);
    I32(b, 1), I32(b, 1), I32(b, 1), F64(b, k1_0);
    I32(b, 1), I32(b, 1), I32(b, 0), F64(b, k1_0);
    I32(b, 1), I32(b, 0), I32(b, 0), F64(b, k1_0);
    I32(b, 2); // combination items: version, approved, selected, n, indices
    I32(b, 2), I32(b, 1), I32(b, 1), I32(b, 4);
    I32(b, 0), I32(b, 1), I32(b, 2), I32(b, 0x80000003);
    I32(b, 2), I32(b, 0), I32(b, 0), I32(b, 0);
    return b;
}

Bytes Record(const CFillerUser& user) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    user.ToFiller(f);
    f.Close();
    return f.Buffer();
}

/// Reads the bytes into the record user; the stream is left open so its state can be seen.
int ReadInto(CFiller& f, const Bytes& bytes, CFillerUser& user) {
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    return user.FromFiller(f);
}

CLoadCaseUnit Unit(std::initializer_list<std::pair<int, double>> pairs) {
    OCArray<CLoadCaseFactor> arr;
    for (const auto& [ordinal, factor] : pairs)
        arr.Add(CLoadCaseFactor(ordinal, factor));
    CLoadCaseUnit unit;
    unit.Set(arr, LCU_LINEARNA);
    return unit;
}

const wchar_t* const kDelta = L"\u03b4";

} // namespace

TEST(StabilnostItems, DefaultsAndSignBitOfIndices) {
    const CStabilnostParams params;
    EXPECT_EQ(1000.0, params.GetOpsegZaDelta());
    EXPECT_EQ(0.1, params.GetTacnostZaDelta());
    EXPECT_EQ(0u, params.GetCRCkombinacija());
    EXPECT_EQ(0, params.BrojSloptItema());
    EXPECT_EQ(0, params.BrojKombItema());
    EXPECT_EQ(0, params.GetBrojRazlicitihKombinacijaStabilnosti());
    EXPECT_EQ(0, params.GetIskljucTorzGreda());

    const CStabilnostSloptItem slopt;
    EXPECT_EQ(0, slopt.IsDozvoljen());
    EXPECT_EQ(0, slopt.IsFiksan());
    EXPECT_EQ(0.0, slopt.GetFaktor());

    CStabilnostKombItem komb;
    EXPECT_EQ(0, komb.IsOdobren());
    EXPECT_EQ(0, komb.IsIzabran());
    EXPECT_EQ(0, komb.GetSize());
    komb.AddSloptIndex(5, 1);
    komb.AddSloptIndex(5, 0);
    komb.AddSloptIndex(0x7FFFFFFF, 7);
    ASSERT_EQ(3, komb.GetSize());
    EXPECT_EQ(5, komb.GetSloptIndex(0));
    EXPECT_EQ(1, komb.IsSloptNegative(0));
    EXPECT_EQ(5, komb.GetSloptIndex(1));
    EXPECT_EQ(0, komb.IsSloptNegative(1));
    EXPECT_EQ(0x7FFFFFFF, komb.GetSloptIndex(2));
    EXPECT_EQ(1, komb.IsSloptNegative(2));
    komb.RemoveAll();
    EXPECT_EQ(0, komb.GetSize());
}

TEST(StabilnostItems, ItemRecordsAreExactAndReadBack) {
    CStabilnostSloptItem slopt;
    slopt.SetDozvoljen(1);
    slopt.SetFiksan(1);
    slopt.SetFaktor(1.5);
    const Bytes sloptBytes = {0x01, 0, 0, 0, 0x01, 0, 0, 0, 0x01, 0,
                              0,    0, 0, 0, 0,    0, 0, 0, 0xF8, 0x3F};
    EXPECT_EQ(sloptBytes, Record(slopt));
    CStabilnostSloptItem sloptRead;
    CFiller f1;
    EXPECT_EQ(1, ReadInto(f1, sloptBytes, sloptRead));
    EXPECT_FALSE(f1.IsError());
    EXPECT_EQ(0u, f1.Remaining());
    EXPECT_EQ(1, sloptRead.IsDozvoljen());
    EXPECT_EQ(1, sloptRead.IsFiksan());
    EXPECT_EQ(1.5, sloptRead.GetFaktor());

    CStabilnostKombItem komb;
    komb.SetOdobren(1);
    komb.AddSloptIndex(2, 0);
    komb.AddSloptIndex(0, 1);
    const Bytes kombBytes = {0x02, 0, 0, 0, 0x01, 0, 0, 0, 0x00, 0, 0, 0,
                             0x02, 0, 0, 0, 0x02, 0, 0, 0, 0x00, 0, 0, 0x80};
    EXPECT_EQ(kombBytes, Record(komb));
    CStabilnostKombItem kombRead;
    kombRead.AddSloptIndex(9, 0); // replaced by what the record holds
    CFiller f2;
    EXPECT_EQ(1, ReadInto(f2, kombBytes, kombRead));
    EXPECT_FALSE(f2.IsError());
    EXPECT_EQ(1, kombRead.IsOdobren());
    EXPECT_EQ(0, kombRead.IsIzabran());
    ASSERT_EQ(2, kombRead.GetSize());
    EXPECT_EQ(2, kombRead.GetSloptIndex(0));
    EXPECT_EQ(0, kombRead.IsSloptNegative(0));
    EXPECT_EQ(0, kombRead.GetSloptIndex(1));
    EXPECT_EQ(1, kombRead.IsSloptNegative(1));
}

TEST(StabilnostItems, OtherItemVersionsAreVersionErrors) {
    Bytes slopt = {0x02, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F};
    CStabilnostSloptItem sloptRead;
    CFiller f1;
    EXPECT_EQ(0, ReadInto(f1, slopt, sloptRead));
    EXPECT_TRUE(f1.IsError());
    EXPECT_EQ(CString(L"Object version error! Version: 2"), f1.GetErrorMessage());
    EXPECT_EQ("LoadCaseDescriptions", f1.GetErrorSource());
    EXPECT_EQ(0, sloptRead.IsDozvoljen());

    for (uint8_t version : {uint8_t{1}, uint8_t{3}}) {
        Bytes komb = {version, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
        CStabilnostKombItem kombRead;
        CFiller f2;
        EXPECT_EQ(0, ReadInto(f2, komb, kombRead));
        EXPECT_TRUE(f2.IsError());
        EXPECT_EQ(CString::Formatted(L"Object version error! Version: %d", version),
                  f2.GetErrorMessage());
        EXPECT_EQ("LoadCaseDescriptions", f2.GetErrorSource());
        EXPECT_EQ(0, kombRead.IsOdobren());
    }
}

TEST(StabilnostParamsRecord, CurrentVersionIsExactBothWays) {
    const Bytes golden = ParamsRecord(5);
    CStabilnostParams params;
    CFiller f;
    EXPECT_EQ(0, ReadInto(f, golden, params)); // 0 by design, even after a good read
    EXPECT_FALSE(f.IsError());
    EXPECT_EQ(0u, f.Remaining());

    EXPECT_EQ(1, params.GetIskljucTorzGreda());
    EXPECT_EQ(0x12345678u, params.GetCRCkombinacija());
    ASSERT_EQ(1, params.GetBrojRazlicitihKombinacijaStabilnosti());
    CLoadCaseUnit fix, var;
    params.GetKombinacijuStabilnosti(0, fix, var);
    EXPECT_EQ(Unit({{1, 1.35}, {2, 1.0}}), fix);
    EXPECT_EQ(Unit({{3, 1.0}, {4, -2.0}}), var);
    EXPECT_EQ(500.0, params.GetOpsegZaDelta());
    EXPECT_EQ(0.05, params.GetTacnostZaDelta());
    ASSERT_EQ(1, params.GetKritDeltaArray().GetSize());
    EXPECT_EQ(2.5, params.GetKritDeltaArray()[0]);
    ASSERT_EQ(4, params.BrojSloptItema());
    EXPECT_EQ(1, params.GetSloptItem(0).IsFiksan());
    EXPECT_EQ(1.35, params.GetSloptItem(0).GetFaktor());
    EXPECT_EQ(0, params.GetSloptItem(3).IsDozvoljen());
    ASSERT_EQ(2, params.BrojKombItema());
    EXPECT_EQ(1, params.BrojIzabranihKombItema());
    EXPECT_EQ(1, params.BrojOdobrenihKombItema());
    EXPECT_EQ(3, params.GetKombItem(0).GetSloptIndex(3));
    EXPECT_EQ(1, params.GetKombItem(0).IsSloptNegative(3));
    EXPECT_EQ(CString(L"1.4xI+II + ") + kDelta + L" x (III-2xIV)", params.GetKombinacijaString(0));

    EXPECT_EQ(golden, Record(params));
}

TEST(StabilnostParamsRecord, OlderVersionsReadOnlyTheirFields) {
    for (int version = 1; version <= 4; ++version) {
        SCOPED_TRACE(version);
        CStabilnostParams params;
        CFiller f;
        EXPECT_EQ(0, ReadInto(f, ParamsRecord(version), params));
        EXPECT_FALSE(f.IsError());
        EXPECT_EQ(0u, f.Remaining());

        EXPECT_EQ(0, params.GetIskljucTorzGreda());
        EXPECT_EQ(version >= 4 ? 0x12345678u : 0u, params.GetCRCkombinacija());
        EXPECT_EQ(version >= 3 ? 1 : 0, params.GetFixLCUArray().GetSize());
        EXPECT_EQ(version >= 3 ? 1 : 0, params.GetVarLCUArray().GetSize());
        EXPECT_EQ(version >= 2 ? 500.0 : 1000.0, params.GetOpsegZaDelta());
        EXPECT_EQ(version >= 2 ? 0.05 : 0.1, params.GetTacnostZaDelta());
        EXPECT_EQ(version >= 2 ? 1 : 0, params.GetKritDeltaArray().GetSize());
        EXPECT_EQ(4, params.BrojSloptItema());
        EXPECT_EQ(2, params.BrojKombItema());
        EXPECT_EQ(4, params.GetKombItem(0).GetSize());
    }
}

TEST(StabilnostParamsRecord, DamagedInputEndsInTheErrorFlag) {
    const Bytes golden = ParamsRecord(5);
    for (size_t n = 0; n < golden.size(); ++n) {
        CStabilnostParams params;
        CFiller f;
        EXPECT_EQ(0, ReadInto(f, Bytes(golden.begin(), golden.begin() + n), params));
        EXPECT_TRUE(f.IsError()) << "record cut after " << n << " bytes";
    }

    for (uint32_t version : {0u, 6u, 0xFFFFFFFFu}) {
        Bytes b;
        I32(b, version);
        CStabilnostParams params;
        CFiller f;
        EXPECT_EQ(0, ReadInto(f, b, params));
        EXPECT_TRUE(f.IsError());
        EXPECT_EQ(
            CString::Formatted(L"Object version error! Version: %d", static_cast<int32_t>(version)),
            f.GetErrorMessage());
        EXPECT_EQ("LoadCaseDescriptions", f.GetErrorSource());
    }

    // Counts that the rest of the stream cannot hold, in each counted list.
    const auto absurd = [](uint32_t count, int where) {
        Bytes b;
        I32(b, 5), I32(b, 0), I32(b, 0);
        I32(b, where == 0 ? count : 0);                                // fixed units
        I32(b, where == 1 ? count : 0);                                // variable units
        F64(b, k500_0), F64(b, k0_05), I32(b, where == 2 ? count : 0); // critical values
        I32(b, where == 3 ? count : 0);                                // load case items
        I32(b, where == 4 ? count : 1);                                // combination items
        if (where == 5)
            I32(b, 2), I32(b, 1), I32(b, 0), I32(b, count), I32(b, 0);
        else if (where != 4)
            I32(b, 2), I32(b, 1), I32(b, 0), I32(b, 0);
        return b;
    };
    for (int where = 0; where <= 5; ++where) {
        for (uint32_t count : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 1000u}) {
            SCOPED_TRACE(testing::Message() << "list " << where << " count " << count);
            CStabilnostParams params;
            CFiller f;
            f.SetBuffer(absurd(count, where));
            f.Open(CFiller::Mode::Read);
            EXPECT_EQ(0, params.FromFiller(f));
            EXPECT_TRUE(f.IsError());
        }
    }
    {
        // The same frame with sane counts reads cleanly, so the errors above come from the counts.
        CStabilnostParams params;
        CFiller f;
        ReadInto(f, absurd(0, 0), params);
        EXPECT_FALSE(f.IsError());
        EXPECT_EQ(1, params.BrojKombItema());
    }
    {
        // A stream already in error is not read at all.
        CStabilnostParams params;
        CFiller f;
        f.SetBuffer(golden);
        f.Open(CFiller::Mode::Read);
        f.SetError();
        EXPECT_EQ(0, params.FromFiller(f));
        EXPECT_EQ(0u, f.Position());
        EXPECT_EQ(0, params.BrojSloptItema());
    }
}

// ------------------------------------------------------------------------------------------

class StabilnostModelTest : public ModelTest {
protected:
    // The fixture points TMP at its own directory and removes that directory afterwards;
    // TMP is put back so that the next test can find the system's temporary directory.
    void SetUp() override {
        if (const char* tmp = std::getenv("TMP"))
            m_oldTmp = tmp;
        ModelTest::SetUp();
    }
    void TearDown() override {
        ModelTest::TearDown();
        if (m_oldTmp)
            ::setenv("TMP", m_oldTmp->c_str(), 1);
        else
            ::unsetenv("TMP");
    }

    template <class T, class F> void Change(const CId& id, F change) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        auto* obj = dynamic_cast<T*>(bm.GetW(id));
        ASSERT_NE(nullptr, obj);
        change(*obj);
        bm.Close();
    }
    /// The checksum a second-order analysis depends on, summed here independently: the third
    /// sum of every load case and the second-order checksum of every combination.
    uint32_t ExpectedChecksum() {
        uint32_t total = 0;
        for (const CId& id : m_base->Ids(CBaseManager::SlucajOpterecenjaType)) {
            uint32_t c1 = 0, c2 = 0, c3 = 0;
            m_base->Find(id)->UpdateCRC(c1, c2, c3);
            total += c3;
        }
        for (const CId& id : m_base->Ids(CBaseManager::KombinacijaOpterecenjaType))
            total += Get<CKombinacijaOpterecenja>(id)->Item().CRC_BitanZaTeorijuII();
        return total;
    }

    std::optional<std::string> m_oldTmp;
};

TEST_F(StabilnostModelTest, InitDefaultExcludesCasesThatCannotTakePart) {
    // Inserted out of ordinal order: items are placed by ordinal, not by store order.
    const CId c7 = AddLoadCase(L"Korisno", 7);
    const CId c1 = AddLoadCase(L"Stalno", 1);
    const CId c2 = AddLoadCase(L"Seizmika", 2);
    const CId c3 = AddLoadCase(L"SRSS", 3);
    const CId c4 = AddLoadCase(L"NDA", 4);
    const CId c5 = AddLoadCase(L"Uticajna linija", 5);
    const CId c6 = AddLoadCase(L"Pokretno", 6);
    Change<CSlucajOpterecenja>(c2, [](CSlucajOpterecenja& s) { s.SetSeizmicki(1); });
    Change<CSlucajOpterecenja>(c3, [](CSlucajOpterecenja& s) { s.PostaviSRSS(Unit({{2, 1.0}})); });
    Change<CSlucajOpterecenja>(c4, [](CSlucajOpterecenja& s) { s.PostaviNDA(1); });
    Change<CSlucajOpterecenja>(c5,
                               [](CSlucajOpterecenja& s) { s.SetUticajUticajneLinije(UL_MOMENT); });
    auto* moving = new CPokretnoOpterecenje;
    moving->SetSlOptId(c6);
    Insert(moving);

    AddCombination(3, {{c7, -1.0}, {c1, 1.2}, {c4, 1e-12}});
    AddCombination(1, {{c1, 1.5}, {c2, 0.0}});
    AddCombination(2, {{c1, 1.0}, {c2, 1.5}});
    AddCombination(4, {{c1, 1.0}, {c3, 2.0}});
    AddCombination(5, {{c5, 1.0}});
    AddCombination(6, {{c6, -0.5}, {c7, 1.0}});

    CStabilnostParams params;
    params.SetIskljucTorzGreda(1);
    params.InitDefault();

    ASSERT_EQ(7, params.BrojSloptItema());
    const int allowed[] = {1, 0, 0, 0, 0, 0, 1};
    for (int i = 0; i < 7; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(allowed[i], params.GetSloptItem(i).IsDozvoljen());
        EXPECT_EQ(0, params.GetSloptItem(i).IsFiksan());
        EXPECT_EQ(1.0, params.GetSloptItem(i).GetFaktor());
    }

    ASSERT_EQ(6, params.BrojKombItema());
    const int approved[] = {1, 0, 1, 0, 0, 0};
    for (int i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(approved[i], params.GetKombItem(i).IsOdobren());
        EXPECT_EQ(0, params.GetKombItem(i).IsIzabran());
        if (!approved[i]) {
            EXPECT_EQ(0, params.GetKombItem(i).GetSize());
        }
    }
    EXPECT_EQ(2, params.BrojOdobrenihKombItema());
    EXPECT_EQ(0, params.BrojIzabranihKombItema());
    // 1.5 I with the seismic case at 0.0: only I enters.
    const CStabilnostKombItem& k1 = params.GetKombItem(0);
    ASSERT_EQ(1, k1.GetSize());
    EXPECT_EQ(0, k1.GetSloptIndex(0));
    EXPECT_EQ(0, k1.IsSloptNegative(0));
    // -VII + 1.2 I, the NDA case below the tolerance: indices in the combination's order.
    const CStabilnostKombItem& k3 = params.GetKombItem(2);
    ASSERT_EQ(2, k3.GetSize());
    EXPECT_EQ(6, k3.GetSloptIndex(0));
    EXPECT_EQ(1, k3.IsSloptNegative(0));
    EXPECT_EQ(0, k3.GetSloptIndex(1));
    EXPECT_EQ(0, k3.IsSloptNegative(1));

    EXPECT_EQ(0, params.GetIskljucTorzGreda());
    EXPECT_NE(0u, params.GetCRCkombinacija());
    EXPECT_EQ(ExpectedChecksum(), params.GetCRCkombinacija());

    // Building again starts from the model, not from the previous choices.
    params.GetKombItem(0).SetIzabran(1);
    params.GetSloptItem(0).SetFiksan(1);
    params.InitDefault();
    EXPECT_EQ(0, params.GetKombItem(0).IsIzabran());
    EXPECT_EQ(0, params.GetSloptItem(0).IsFiksan());
    EXPECT_EQ(1, params.GetKombItem(0).GetSize());
}

TEST_F(StabilnostModelTest, ChecksumFollowsOnlyWhatSecondOrderAnalysisUses) {
    const CId c1 = AddLoadCase(L"G", 1);
    const CId c2 = AddLoadCase(L"Q", 2);
    const CId k1 = AddCombination(1, {{c1, 1.35}, {c2, 1.5}}, L"K1");

    CStabilnostParams before;
    before.InitDefault();

    Change<CKombinacijaOpterecenja>(
        k1, [](CKombinacijaOpterecenja& k) { k.Item().SetNaziv(L"Drugo ime"); });
    Change<CSlucajOpterecenja>(c2, [](CSlucajOpterecenja& s) { s.SetNaziv(L"Sneg"); });
    CStabilnostParams renamed;
    renamed.InitDefault();
    EXPECT_EQ(before.GetCRCkombinacija(), renamed.GetCRCkombinacija());
    EXPECT_TRUE(CStabilnostParams::JednakiStabilnostParams(before, renamed));

    Change<CKombinacijaOpterecenja>(
        k1, [](CKombinacijaOpterecenja& k) { k.Item().SetOsnOptKoef(1, 1.6); });
    CStabilnostParams changed;
    changed.InitDefault();
    EXPECT_NE(before.GetCRCkombinacija(), changed.GetCRCkombinacija());
    EXPECT_EQ(ExpectedChecksum(), changed.GetCRCkombinacija());
    // Same numbers of items, another checksum: not the same parameters.
    EXPECT_FALSE(CStabilnostParams::JednakiStabilnostParams(before, changed));
}

TEST_F(StabilnostModelTest, UpdateMergesEqualCombinationsAndCompacts) {
    const CId c1 = AddLoadCase(L"G", 1);
    const CId c2 = AddLoadCase(L"Q", 2);
    const CId c3 = AddLoadCase(L"W", 3);
    AddCombination(1, {{c1, 1.0}, {c2, 1.0}});
    AddCombination(2, {{c1, 1.35}, {c2, 1.5}}); // I fixed, II +: the same as 1
    AddCombination(3, {{c1, 1.0}, {c3, -1.5}});
    AddCombination(4, {{c1, 1.0}});            // not selected
    AddCombination(5, {{c1, 0.0}});            // selected, but nothing enters
    AddCombination(6, {{c2, 1.0}, {c1, 1.0}}); // the same as 1 in another order
    AddCombination(7, {{c2, -1.0}, {c3, 1.0}});

    CStabilnostParams params;
    params.InitDefault();
    params.GetSloptItem(0).SetFiksan(1);
    params.GetSloptItem(0).SetFaktor(1.35);
    for (int i : {0, 1, 2, 4, 5, 6})
        params.GetKombItem(i).SetIzabran(1);
    params.GetKritDeltaArray().Add(7.0);
    params.Update();

    ASSERT_EQ(3, params.GetBrojRazlicitihKombinacijaStabilnosti());
    ASSERT_EQ(3, params.GetVarLCUArray().GetSize());
    EXPECT_EQ(Unit({{1, 1.35}}), params.GetFixLCUArray()[0]);
    EXPECT_EQ(Unit({{2, 1.0}}), params.GetVarLCUArray()[0]);
    EXPECT_EQ(Unit({{1, 1.35}}), params.GetFixLCUArray()[1]);
    EXPECT_EQ(Unit({{3, -1.0}}), params.GetVarLCUArray()[1]);
    EXPECT_TRUE(params.GetFixLCUArray()[2].IsEmpty());
    EXPECT_EQ(Unit({{2, -1.0}, {3, 1.0}}), params.GetVarLCUArray()[2]);
    for (const CLoadCaseUnit& u : params.GetFixLCUArray())
        EXPECT_EQ(LCU_LINEARNA, u.GetKarakter());

    EXPECT_EQ(0, params.KombinacijaRbrToStabilnostIndex(1));
    EXPECT_EQ(0, params.KombinacijaRbrToStabilnostIndex(2));
    EXPECT_EQ(1, params.KombinacijaRbrToStabilnostIndex(3));
    EXPECT_EQ(-1, params.KombinacijaRbrToStabilnostIndex(4));
    // The empty combination keeps its own entry while the pairs below it move down, so it
    // ends up naming the pair that slid into its place.
    EXPECT_EQ(2, params.KombinacijaRbrToStabilnostIndex(5));
    EXPECT_EQ(0, params.KombinacijaRbrToStabilnostIndex(6));
    EXPECT_EQ(2, params.KombinacijaRbrToStabilnostIndex(7));

    ASSERT_EQ(3, params.GetKritDeltaArray().GetSize());
    for (double d : params.GetKritDeltaArray())
        EXPECT_EQ(-1.0, d);

    CLoadCaseUnit fix, var;
    params.GetKombinacijuStabilnosti(1, fix, var);
    EXPECT_EQ(params.GetFixLCUArray()[1], fix);
    EXPECT_EQ(params.GetVarLCUArray()[1], var);

    EXPECT_EQ(CString(L"1.4xI + ") + kDelta + L" x II", params.GetKombinacijaString(0));
    EXPECT_EQ(CString(L"1.4xI + ") + kDelta + L" x -III", params.GetKombinacijaString(1));
    EXPECT_EQ(CString(kDelta) + L" x (-II+III)", params.GetKombinacijaString(2));

    // Deselecting everything leaves no stability combination.
    for (int i = 0; i < params.BrojKombItema(); ++i)
        params.GetKombItem(i).SetIzabran(0);
    params.Update();
    EXPECT_EQ(0, params.GetBrojRazlicitihKombinacijaStabilnosti());
    EXPECT_EQ(0, params.GetKritDeltaArray().GetSize());
    EXPECT_EQ(-1, params.KombinacijaRbrToStabilnostIndex(1));
}

TEST_F(StabilnostModelTest, CopyResetAndComparison) {
    const CId c1 = AddLoadCase(L"G", 1);
    const CId c2 = AddLoadCase(L"Q", 2);
    AddCombination(1, {{c1, 1.0}, {c2, 1.0}});
    AddCombination(2, {{c1, 1.0}, {c2, -1.0}});

    CStabilnostParams params;
    params.InitDefault();
    params.GetKombItem(1).SetIzabran(1);
    params.Update();
    params.GetKritDeltaArray()[0] = 4.25;
    params.SetIskljucTorzGreda(1);

    const CStabilnostParams copy(params);
    CStabilnostParams assigned;
    assigned = params;
    for (const CStabilnostParams* p :
         std::initializer_list<const CStabilnostParams*>{&copy, &assigned}) {
        EXPECT_EQ(Record(params), Record(*p));
        EXPECT_EQ(-1, p->KombinacijaRbrToStabilnostIndex(1));
        EXPECT_EQ(0, p->KombinacijaRbrToStabilnostIndex(2));
        EXPECT_TRUE(CStabilnostParams::JednakiStabilnostParams(params, *p));
    }

    // Only the checksum and the numbers of items are compared.
    CStabilnostParams other(params);
    other.SetOpsegZaDelta(20.0);
    other.SetTacnostZaDelta(0.5);
    other.GetKombItem(0).SetIzabran(1);
    other.GetSloptItem(1).SetFiksan(1);
    EXPECT_TRUE(CStabilnostParams::JednakiStabilnostParams(params, other));

    other.Reset();
    EXPECT_EQ(0, other.BrojSloptItema());
    EXPECT_EQ(0, other.BrojKombItema());
    EXPECT_EQ(1000.0, other.GetOpsegZaDelta());
    EXPECT_EQ(0.1, other.GetTacnostZaDelta());
    EXPECT_EQ(0u, other.GetCRCkombinacija());
    // The stability combinations, their critical values and the switch stay.
    EXPECT_EQ(1, other.GetBrojRazlicitihKombinacijaStabilnosti());
    EXPECT_EQ(0, other.KombinacijaRbrToStabilnostIndex(2));
    EXPECT_EQ(4.25, other.GetKritDeltaArray()[0]);
    EXPECT_EQ(1, other.GetIskljucTorzGreda());
    EXPECT_FALSE(CStabilnostParams::JednakiStabilnostParams(params, other));

    // A record written from the model reads back to parameters that compare equal.
    CStabilnostParams read;
    CFiller f;
    ReadInto(f, Record(params), read);
    EXPECT_FALSE(f.IsError());
    EXPECT_TRUE(CStabilnostParams::JednakiStabilnostParams(params, read));
    EXPECT_EQ(Record(params), Record(read));
}
