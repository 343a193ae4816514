// Stability parameters: records written byte by byte, damaged input, items built from a model,
// the distinct stability combinations, their text and their checksum.
#include "model/StabilnostParams.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace loadrec;

namespace {

/// A parameters record of the given version, laid out field by field: torsion switch 1,
/// checksum 0x12345678, fixed unit 1.35 I + II, variable unit III - 2 IV, range 500,
/// accuracy 0.05, one critical value 2.5, four load case items and two combination items.
std::vector<uint8_t> ParamsRecord(int version) {
    Bytes b;
    b.i32(version);
    if (version >= 5)
        b.i32(1);
    if (version >= 4)
        b.i32(0x12345678);
    if (version >= 3) {
        b.i32(1).unit(0, {{1, 1.35}, {2, 1.0}});
        b.i32(1).unit(0, {{3, 1.0}, {4, -2.0}});
    }
    if (version >= 2)
        b.f64(500.0).f64(0.05).i32(1).f64(2.5);
    // Load case items: version, allowed, fixed, factor.
    b.i32(4);
    b.i32(1).i32(1).i32(1).f64(1.35).i32(1).i32(1).i32(1).f64(1.0);
    b.i32(1).i32(1).i32(0).f64(1.0).i32(1).i32(0).i32(0).f64(1.0);
    // Combination items: version 2, approved, selected, count, indices (sign bit: negative).
    b.i32(2).i32(2).i32(1).i32(1).i32(4).i32(0).i32(1).i32(2).i32(INT32_MIN | 3);
    b.i32(2).i32(0).i32(0).i32(0);
    return b.get();
}

const wchar_t* const kDelta = L"\u03b4";

/// Per load case item: allowed, fixed.
std::vector<std::pair<int, int>> Allowed(const CStabilnostParams& p) {
    std::vector<std::pair<int, int>> v;
    for (int i = 0; i < p.BrojSloptItema(); ++i)
        v.emplace_back(p.GetSloptItem(i).IsDozvoljen(), p.GetSloptItem(i).IsFiksan());
    return v;
}
/// Per combination item: approved, selected, and its signed 1-based load case indices.
std::vector<std::vector<int>> Items(const CStabilnostParams& p) {
    std::vector<std::vector<int>> v;
    for (int i = 0; i < p.BrojKombItema(); ++i) {
        const CStabilnostKombItem& k = p.GetKombItem(i);
        v.push_back({k.IsOdobren(), k.IsIzabran()});
        for (int j = 0; j < k.GetSize(); ++j)
            v.back().push_back((k.GetSloptIndex(j) + 1) * (k.IsSloptNegative(j) ? -1 : 1));
    }
    return v;
}

} // namespace

TEST(StabilnostParamsRecord, CurrentVersionIsExactBothWays) {
    // The items alone; an index keeps its sign in the top bit.
    CStabilnostSloptItem slopt;
    slopt.SetDozvoljen(1);
    slopt.SetFaktor(1.5);
    EXPECT_EQ(Written(slopt), Bytes().i32(1).i32(1).i32(0).f64(1.5).get());
    CStabilnostKombItem komb;
    komb.SetIzabran(1);
    komb.AddSloptIndex(2, 0);
    komb.AddSloptIndex(0x7FFFFFFF, 7);
    EXPECT_EQ(Written(komb), Bytes().i32(2).i32(0).i32(1).i32(2).i32(2).i32(-1).get());

    const std::vector<uint8_t> golden = ParamsRecord(5);
    CStabilnostParams params;
    Reader r(golden);
    EXPECT_EQ(params.FromFiller(r.f()), 0); // 0 by design, even after a good read
    EXPECT_FALSE(r->IsError());
    EXPECT_EQ(r->Remaining(), 0u);
    // Every field read into its place: written back (the writer's own layout is held to the
    // bytes after a reset below), the record is the same bytes.
    EXPECT_EQ(Written(params), golden);
    EXPECT_EQ(params.GetKombinacijaString(0), CString(L"1.4xI+II + ") + kDelta + L" x (III-2xIV)");
}

TEST(StabilnostParamsRecord, OlderVersionsReadOnlyTheirFields) {
    for (int version = 1; version <= 4; ++version) {
        SCOPED_TRACE(version);
        CStabilnostParams params;
        Reader r(ParamsRecord(version));
        params.FromFiller(r.f());
        EXPECT_FALSE(r->IsError());
        EXPECT_EQ(r->Remaining(), 0u);
        EXPECT_EQ(params.GetIskljucTorzGreda(), 0);
        EXPECT_EQ(params.GetCRCkombinacija(), version >= 4 ? 0x12345678u : 0u);
        EXPECT_EQ(params.GetFixLCUArray().GetSize(), version >= 3 ? 1 : 0);
        EXPECT_EQ(params.GetVarLCUArray().GetSize(), version >= 3 ? 1 : 0);
        EXPECT_EQ(params.GetOpsegZaDelta(), version >= 2 ? 500.0 : 1000.0);
        EXPECT_EQ(params.GetTacnostZaDelta(), version >= 2 ? 0.05 : 0.1);
        EXPECT_EQ(params.GetKritDeltaArray().GetSize(), version >= 2 ? 1 : 0);
        EXPECT_EQ(params.BrojSloptItema(), 4);
        EXPECT_EQ(params.BrojKombItema(), 2);
        EXPECT_EQ(params.GetKombItem(0).GetSize(), 4);
    }
}

TEST(StabilnostParamsRecord, UnknownVersionsAndDamagedInputEndInTheErrorFlag) {
    for (const int32_t version : {0, 6, -1})
        ExpectVersionError<CStabilnostParams>(Bytes().i32(version).get(), version,
                                              "LoadCaseDescriptions");
    const std::vector<uint8_t> komb = Bytes().i32(2).i32(1).i32(0).i32(1).i32(INT32_MIN).get();
    ExpectVersionError<CStabilnostSloptItem>(Bytes().i32(2).i32(1).i32(0).f64(1.0).get(), 2,
                                             "LoadCaseDescriptions");
    ExpectVersionError<CStabilnostKombItem>(With32(komb, 0, 1), 1, "LoadCaseDescriptions");
    ExpectDamagedInputFails<CStabilnostKombItem>(komb, {12});
    // Counts of the fixed units and of their factors, the variable units, the critical
    // values, the load case items, the combination items and the indices of one of them.
    ExpectDamagedInputFails<CStabilnostParams>(ParamsRecord(5), {12, 24, 60, 124, 136, 220, 236});
}

class StabilnostModelTest : public ModelTest {
protected:
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
    const std::vector<std::pair<int, int>> allowed = {{1, 0}, {0, 0}, {0, 0}, {0, 0},
                                                      {0, 0}, {0, 0}, {1, 0}};
    EXPECT_EQ(Allowed(params), allowed);
    EXPECT_EQ(params.GetSloptItem(6).GetFaktor(), 1.0);
    // 1.5 I with the seismic case at 0.0: only I enters; -VII + 1.2 I with the NDA case below
    // the tolerance: indices in the combination's order.
    const std::vector<std::vector<int>> items = {{1, 0, 1}, {0, 0}, {1, 0, -7, 1},
                                                 {0, 0},    {0, 0}, {0, 0}};
    EXPECT_EQ(Items(params), items);
    EXPECT_EQ(params.BrojOdobrenihKombItema(), 2);
    EXPECT_EQ(params.GetIskljucTorzGreda(), 0);
    EXPECT_NE(params.GetCRCkombinacija(), 0u);
    EXPECT_EQ(params.GetCRCkombinacija(), ExpectedChecksum());

    // Building again starts from the model, not from the previous choices.
    params.GetKombItem(0).SetIzabran(1);
    params.GetSloptItem(0).SetFiksan(1);
    params.InitDefault();
    EXPECT_EQ(Allowed(params), allowed);
    EXPECT_EQ(Items(params), items);
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

    EXPECT_EQ(params.GetFixLCUArray().Vector(),
              (Units{Unit({{1, 1.35}}), Unit({{1, 1.35}}), Unit({})}));
    EXPECT_EQ(params.GetVarLCUArray().Vector(),
              (Units{Unit({{2, 1.0}}), Unit({{3, -1.0}}), Unit({{2, -1.0}, {3, 1.0}})}));
    EXPECT_EQ(params.GetKritDeltaArray().Vector(), std::vector<double>(3, -1.0));
    // The empty combination keeps its own entry while the pairs below it move down, so it
    // ends up naming the pair that slid into its place.
    std::vector<int> index;
    for (int ordinal = 1; ordinal <= 7; ++ordinal)
        index.push_back(params.KombinacijaRbrToStabilnostIndex(ordinal));
    EXPECT_EQ(index, (std::vector<int>{0, 0, 1, -1, 2, 0, 2}));
    EXPECT_EQ(params.GetKombinacijaString(0), CString(L"1.4xI + ") + kDelta + L" x II");
    EXPECT_EQ(params.GetKombinacijaString(1), CString(L"1.4xI + ") + kDelta + L" x -III");
    EXPECT_EQ(params.GetKombinacijaString(2), CString(kDelta) + L" x (-II+III)");

    // Deselecting everything leaves no stability combination.
    for (int i = 0; i < params.BrojKombItema(); ++i)
        params.GetKombItem(i).SetIzabran(0);
    params.Update();
    EXPECT_EQ(params.GetBrojRazlicitihKombinacijaStabilnosti(), 0);
    EXPECT_EQ(params.GetKritDeltaArray().GetSize(), 0);
    EXPECT_EQ(params.KombinacijaRbrToStabilnostIndex(1), -1);
}

TEST_F(StabilnostModelTest, CopiesCarryEverythingAndResetKeepsTheStabilityCombinations) {
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
    CStabilnostParams other;
    other = copy;
    EXPECT_EQ(Written(other), Written(params));
    EXPECT_EQ(other.KombinacijaRbrToStabilnostIndex(1), -1);
    EXPECT_EQ(other.KombinacijaRbrToStabilnostIndex(2), 0);

    // Only the checksum and the numbers of items are compared.
    other.SetOpsegZaDelta(20.0);
    other.GetKombItem(0).SetIzabran(1);
    EXPECT_TRUE(CStabilnostParams::JednakiStabilnostParams(params, other));
    Reader r(With32(Written(params), 8, static_cast<int32_t>(params.GetCRCkombinacija() + 1)));
    CStabilnostParams otherChecksum;
    otherChecksum.FromFiller(r.f());
    EXPECT_FALSE(CStabilnostParams::JednakiStabilnostParams(params, otherChecksum));

    // Reset empties the items, the checksum and the delta settings; the stability
    // combinations, their critical values and the switch stay.
    other.Reset();
    EXPECT_FALSE(CStabilnostParams::JednakiStabilnostParams(params, other));
    Bytes reset;
    reset.i32(5).i32(1).i32(0).i32(1).unit(0, {}).i32(1).unit(0, {{1, 1.0}, {2, -1.0}});
    EXPECT_EQ(Written(other), reset.f64(1000.0).f64(0.1).i32(1).f64(4.25).i32(0).i32(0).get());
    EXPECT_EQ(other.KombinacijaRbrToStabilnostIndex(2), 0);
}

TEST(StabilnostParamsUpdate, AgreesWithComparingEveryTwoSelectedCombinations) {
    // Random load cases (some fixed, with a few distinct factors) and combinations (some
    // repeating others' load cases and signs), against the merge read literally: each selected
    // combination compared with every later one, emptied pairs dropped from the back.
    std::mt19937 rng(7);
    for (int model = 0; model < 30; ++model) {
        CStabilnostParams params;
        const int nSlopt = 1 + static_cast<int>(rng() % 6);
        const int nKomb = static_cast<int>(rng() % 40);
        CFiller f;
        f.Open(CFiller::Mode::Write);
        f.WriteInt32(1); // version 1: load case and combination items only
        f.WriteInt32(nSlopt);
        for (int s = 0; s < nSlopt; ++s) {
            CStabilnostSloptItem item;
            item.SetDozvoljen(1);
            item.SetFiksan(rng() % 2 == 0);
            item.SetFaktor(rng() % 3 == 0 ? 1.35 : 1.0);
            item.ToFiller(f);
        }
        f.WriteInt32(nKomb);
        for (int k = 0; k < nKomb; ++k) {
            CStabilnostKombItem item;
            item.SetOdobren(1);
            item.SetIzabran(rng() % 4 != 0);
            for (int s = 0; s < nSlopt; ++s)
                if (rng() % 3 == 0)
                    item.AddSloptIndex(s, rng() % 4 == 0);
            item.ToFiller(f);
        }
        f.Close();
        f.Open(CFiller::Mode::Read);
        params.FromFiller(f);
        f.Close();
        ASSERT_EQ(params.BrojKombItema(), nKomb);

        // The literal merge.
        Units fix, var;
        std::vector<int> map;
        for (int i = 0; i < nKomb; ++i) {
            const CStabilnostKombItem& komb = params.GetKombItem(i);
            if (!komb.IsIzabran()) {
                map.push_back(-1);
                continue;
            }
            Pairs pf, pv;
            for (int k = 0; k < komb.GetSize(); ++k) {
                const int s = komb.GetSloptIndex(k);
                if (params.GetSloptItem(s).IsFiksan())
                    pf.emplace_back(s + 1, params.GetSloptItem(s).GetFaktor());
                else
                    pv.emplace_back(s + 1, komb.IsSloptNegative(k) ? -1.0 : 1.0);
            }
            fix.push_back(Unit(pf));
            var.push_back(Unit(pv));
            map.push_back(static_cast<int>(fix.size()) - 1);
        }
        for (int i = 0; i < nKomb; ++i)
            for (int j = i + 1; j < nKomb && map[i] != -1; ++j)
                if (map[j] != -1 && map[j] != map[i] && fix[map[j]] == fix[map[i]] &&
                    var[map[j]] == var[map[i]]) {
                    fix[map[j]].RemoveAll();
                    var[map[j]].RemoveAll();
                    map[j] = map[i];
                }
        for (int t = static_cast<int>(fix.size()) - 1; t >= 0; --t) {
            if (!fix[t].IsEmpty() || !var[t].IsEmpty())
                continue;
            for (int& s : map)
                if (s > t)
                    --s;
            fix.erase(fix.begin() + t);
            var.erase(var.begin() + t);
        }

        params.Update();
        EXPECT_EQ(params.GetFixLCUArray().Vector(), fix) << "model " << model;
        EXPECT_EQ(params.GetVarLCUArray().Vector(), var) << "model " << model;
        for (int i = 0; i < nKomb; ++i)
            EXPECT_EQ(params.KombinacijaRbrToStabilnostIndex(i + 1), map[i]) << "model " << model;
    }
}
