// The seismic-containment test over the load cases and combinations of a model: direct marks,
// SRSS chains through load cases and combinations, cycles, and exact-zero coefficients.
#include "ModelFixture.h"
#include "model/LoadCaseDescriptions.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

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
    CId AddSrss(int ordinal, std::vector<std::pair<int, double>> refs) {
        return AddCase(ordinal, [&](CSlucajOpterecenja& s) {
            CLoadCaseUnit unit;
            unit.SetKarakter(LCU_LINEARNA);
            for (const auto& [k, f] : refs)
                unit.Factors().Add(CLoadCaseFactor(k, f));
            s.PostaviSRSS(unit);
        });
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
    int Ask(int ordinal) {
        return CLoadCaseUnit().SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, ordinal);
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
    for (int k = 1; k <= 5; ++k)
        EXPECT_EQ(Ask(k), 1) << k;
    for (int k = 6; k <= 8; ++k)
        EXPECT_EQ(Ask(k), 0) << k;
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
    EXPECT_EQ(Ask(1), 0);
    EXPECT_EQ(Ask(2), 0);
    EXPECT_EQ(Ask(7), 0);
    EXPECT_EQ(Ask(3), 1);
    EXPECT_EQ(Ask(8), 1);
}

TEST_F(SeismicContainment, CombinationsFollowTheirNonZeroComponents) {
    const CId seismic = AddCase(1, Seismic);
    const CId plain = AddCase(2);
    const CId cyclic = AddSrss(3, {{3, 1.0}});
    AddCombination(1, {{plain, 1.0}, {seismic, 0.0}});   // exact zero: left out
    AddCombination(2, {{plain, 1.0}, {seismic, 1e-12}}); // tiny but not zero: counts
    AddCombination(3, {{plain, 1.5}, {CId(999), 1.0}});  // unknown load case: ignored
    AddCombination(4, {{plain, 1.0}, {cyclic, 1.0}});    // an undetermined component
    AddCombination(5, {});
    AddSrss(4, {{5 + 2, 1.0}}); // SRSS over combination 2, settled only in the second pass
    AddSrss(5, {{5 + 2, 0.0}, {5 + 3, 1.0}});

    CArray<int> sl;
    CArray<CId> slIds;
    CArray<int> komb;
    CArray<CId> kombIds;
    const int answer = CLoadCaseUnit().SadrziLiSeizmickiSlopt(&sl, &slIds, &komb, &kombIds, 5 + 2);
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(std::vector<int>(sl.begin(), sl.end()), (std::vector<int>{1, 0, -1, 1, 0}));
    EXPECT_EQ(std::vector<int>(komb.begin(), komb.end()), (std::vector<int>{0, 1, 0, -1, 0}));
    ASSERT_EQ(slIds.GetSize(), 5);
    EXPECT_EQ(slIds[0], seismic);
    EXPECT_EQ(slIds[1], plain);
    EXPECT_EQ(slIds[2], cyclic);
    ASSERT_EQ(kombIds.GetSize(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(kombIds[i].Valid());
    EXPECT_EQ(Ask(5 + 1), 0);
    EXPECT_EQ(Ask(5 + 4), 0);
}

TEST_F(SeismicContainment, UnitItselfIsAskedWithoutAnOrdinal) {
    AddCase(1, Seismic);
    AddCase(2);
    CLoadCaseUnit unit;
    unit.Factors().Add(CLoadCaseFactor(2, 1.0));
    unit.Factors().Add(CLoadCaseFactor(1, 0.0));
    EXPECT_EQ(unit.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, 0), 0);
    unit.Factors()[1].SetFaktor(-0.5);
    EXPECT_EQ(unit.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, -1), 1);
    EXPECT_EQ(CLoadCaseUnit().SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, -1), 0);

    // Ordinals outside the model are invalid arguments.
    CLoadCaseUnit bad;
    bad.Factors().Add(CLoadCaseFactor(0, 1.0));
    EXPECT_THROW(bad.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, -1),
                 CInvalidArgException);
    EXPECT_THROW(unit.SadrziLiSeizmickiSlopt(nullptr, nullptr, nullptr, nullptr, 3),
                 CInvalidArgException);
}

TEST_F(SeismicContainment, OrdinalsOutsideTheModelAreInvalidArguments) {
    AddCase(1);
    AddCase(3); // two load cases, so ordinal 3 has no place
    EXPECT_THROW(Statuses(), CInvalidArgException);
    EXPECT_THROW(Ask(1), CInvalidArgException);
}

TEST_F(SeismicContainment, SrssReferenceBelowOneIsAnInvalidArgument) {
    AddSrss(1, {{-2, 1.0}});
    EXPECT_THROW(Statuses(), CInvalidArgException);
}

TEST_F(SeismicContainment, EmptyModelHasNoStatuses) {
    CArray<int> sl;
    sl.Add(5);
    CArray<CId> kombIds;
    kombIds.Add(CId(4));
    EXPECT_EQ(CLoadCaseUnit().SadrziLiSeizmickiSlopt(&sl, nullptr, nullptr, &kombIds, -1), 0);
    EXPECT_TRUE(sl.IsEmpty());
    EXPECT_TRUE(kombIds.IsEmpty());
}
