// The seismic-containment test over the load cases and combinations of a model: direct marks,
// SRSS chains through load cases and combinations, cycles, and exact-zero coefficients.
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

using namespace loadrec;

namespace {

class SeismicContainment : public ModelTest {
protected:
    CId AddCase(int ordinal, const std::function<void(CSlucajOpterecenja&)>& setup = {}) {
        auto* p = new CSlucajOpterecenja;
        p->PostaviRedniBroj(ordinal);
        p->SetNaziv(L"LC");
        if (setup)
            setup(*p);
        return Insert(p);
    }
    /// A load case whose SRSS unit names these (ordinal, factor) pairs as given.
    CId AddSrss(int ordinal, const Pairs& refs) {
        return AddCase(ordinal, [&](CSlucajOpterecenja& s) { s.PostaviSRSS(Unit(refs)); });
    }
    static void Seismic(CSlucajOpterecenja& s) { s.SetSeizmicki(1); }

    /// Statuses of all load cases and combinations, as one list: load cases first.
    std::vector<int> Statuses() {
        CArray<int> sl;
        CArray<int> komb;
        CLoadCaseUnit().SadrziLiSeizmickiSlopt(&sl, nullptr, &komb, nullptr, -1);
        std::vector<int> all(sl.begin(), sl.end());
        all.insert(all.end(), komb.begin(), komb.end());
        return all;
    }
    /// What asking about each of the first n ordinals answers.
    std::vector<int> Answers(int n) {
        std::vector<int> answers;
        for (int k = 1; k <= n; ++k)
            answers.push_back(
                CLoadCaseUnit().SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, k));
        return answers;
    }
};

} // namespace

TEST_F(SeismicContainment, DirectMarksAndSrssChainsResolveOverSeveralPasses) {
    // 1 -> 2 -> 3 (seismic): only the third pass settles load case 1.
    AddSrss(1, {{2, 1.0}});
    AddSrss(2, {{3, 1.0}});
    AddCase(3, Seismic);
    AddCase(4, [](CSlucajOpterecenja& s) { s.PostaviNDA(1); });
    AddCase(5, [](CSlucajOpterecenja& s) { s.PostaviUlaziUSeizmickiProracun(2); });
    AddCase(6);
    AddSrss(7, {}); // an empty SRSS unit is no reference
    AddSrss(8, {{6, 1.0}, {7, 0.5}});
    EXPECT_EQ(Statuses(), (std::vector<int>{1, 1, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(Answers(8), (std::vector<int>{1, 1, 1, 1, 1, 0, 0, 0}));
}

TEST_F(SeismicContainment, CyclesStayUndeterminedUnlessASeismicCaseBreaksThem) {
    AddSrss(1, {{2, 1.0}});
    AddSrss(2, {{1, 1.0}, {5, 1.0}}); // the plain case 5 does not settle the cycle
    AddSrss(3, {{4, 1.0}});
    AddSrss(4, {{3, 1.0}, {6, 1.0}}); // the seismic case 6 does
    AddCase(5);
    AddCase(6, Seismic);
    AddSrss(7, {{7, 1.0}}); // a case that names itself
    AddSrss(8, {{1, 1.0}, {6, 1.0}});
    EXPECT_EQ(Statuses(), (std::vector<int>{-1, -1, 1, 1, 0, 1, -1, 1}));
    EXPECT_EQ(Answers(8), (std::vector<int>{0, 0, 1, 1, 0, 1, 0, 1}));
}

TEST_F(SeismicContainment, CombinationsFollowTheirNonZeroComponents) {
    const CId seismic = AddCase(1, Seismic);
    const CId plain = AddCase(2);
    const CId cyclic = AddSrss(3, {{3, 1.0}});
    const std::vector<CId> kombIds = {
        AddCombination(1, {{plain, 1.0}, {seismic, 0.0}}),   // exact zero: left out
        AddCombination(2, {{plain, 1.0}, {seismic, 1e-12}}), // tiny but not zero: counts
        AddCombination(3, {{plain, 1.5}, {CId(999), 1.0}}),  // unknown load case: ignored
        AddCombination(4, {{plain, 1.0}, {cyclic, 1.0}}),    // an undetermined component
        AddCombination(5, {})};
    // SRSS over combination 2, settled only in the second pass.
    const std::vector<CId> slIds = {seismic, plain, cyclic, AddSrss(4, {{5 + 2, 1.0}}),
                                    AddSrss(5, {{5 + 2, 0.0}, {5 + 3, 1.0}})};

    CArray<int> sl, komb;
    CArray<CId> slFound, kombFound;
    EXPECT_EQ(CLoadCaseUnit().SadrziLiSeizmickiSlopt(&sl, &slFound, &komb, &kombFound, 5 + 2), 1);
    EXPECT_EQ(sl.Vector(), (std::vector<int>{1, 0, -1, 1, 0}));
    EXPECT_EQ(komb.Vector(), (std::vector<int>{0, 1, 0, -1, 0}));
    EXPECT_EQ(slFound.Vector(), slIds);
    EXPECT_EQ(kombFound.Vector(), kombIds);
    EXPECT_EQ(Answers(10), (std::vector<int>{1, 0, 0, 1, 0, 0, 1, 0, 0, 0}));
}

TEST_F(SeismicContainment, UnitItselfIsAskedWithoutAnOrdinalAndAnEmptyModelHasNoStatuses) {
    CArray<int> sl;
    sl.Add(5);
    CArray<CId> kombIds;
    kombIds.Add(CId(4));
    EXPECT_EQ(CLoadCaseUnit().SadrziLiSeizmickiSlopt(&sl, nullptr, nullptr, &kombIds, -1), 0);
    EXPECT_TRUE(sl.IsEmpty());
    EXPECT_TRUE(kombIds.IsEmpty());

    AddCase(1, Seismic);
    AddCase(2);
    CLoadCaseUnit unit = Unit({{2, 1.0}, {1, 0.0}});
    EXPECT_EQ(unit.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, 0), 0);
    unit.SetFaktor(1, -0.5);
    EXPECT_EQ(unit.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, -1), 1);
}

TEST_F(SeismicContainment, OrdinalsOutsideTheModelAreInvalidArguments) {
    AddCase(1);
    const CId other = AddCase(3); // two load cases, so ordinal 3 has no place
    EXPECT_THROW(Statuses(), CInvalidArgException);
    EXPECT_THROW(Answers(1), CInvalidArgException);
    Change<CSlucajOpterecenja>(other, [](CSlucajOpterecenja& s) { s.PostaviRedniBroj(2); });
    EXPECT_NO_THROW(Statuses());
    AddSrss(3, {{-2, 1.0}}); // an SRSS reference below one
    EXPECT_THROW(Statuses(), CInvalidArgException);

    EXPECT_THROW(Unit({{0, 1.0}}).SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, -1),
                 CInvalidArgException);
    EXPECT_THROW(CLoadCaseUnit().SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, 3),
                 CInvalidArgException);
}
