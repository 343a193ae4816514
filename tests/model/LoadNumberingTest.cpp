// The common scale of loads: counts, the factor vectors for analysis and for printing under
// both theories, and loads as units.
#include "model/LoadNumbering.h"
#include "LoadRecordBytes.h"
#include "ModelFixture.h"

#include <random>
#include <vector>

using namespace loadrec;

namespace {

std::vector<double> Proracun(int zerobased) {
    CArray<double> f;
    f.SetSize(4); // whatever the vector held is replaced
    LoadNumbering::FaktoriZaProracun(zerobased, f);
    return f.Vector();
}

std::vector<double> Ispis(int zerobased) {
    CArray<double> f;
    LoadNumbering::FaktoriZaIspis(zerobased, f);
    return f.Vector();
}

CLoadCaseUnit UnitOf(int zerobased) {
    CLoadCaseUnit unit;
    unit.SetKarakter(LCU_ANVELOPA);
    unit.Factors().Add(CLoadCaseFactor(99, 3.0));
    LoadNumbering::ZerobasedToLoadCaseUnit(zerobased, unit);
    return unit;
}

class LoadNumberingTest : public ModelTest {
protected:
    /// Load cases stored out of their order (2, 3, 1), two combinations stored as 2, 1 and one
    /// envelope: combination 1 is 1.35 G + 1.5 P, combination 2 is W with a zero G.
    void NapraviModel() {
        m_p = AddLoadCase(L"P", 2);
        m_w = AddLoadCase(L"W", 3);
        m_g = AddLoadCase(L"G", 1);
        AddCombination(2, {{m_g, 0.0}, {m_w, 1.0}});
        AddCombination(1, {{m_p, 1.5}, {m_g, 1.35}});
        AddEnvelope(1, L"1-4");
    }
    CId m_g, m_p, m_w;
};

TEST_F(LoadNumberingTest, EmptyModelGivesEmptyVectorsAndRejectsNegativeNumbers) {
    TeorijaGuard guard;
    for (int teorija : {1, 2}) {
        CModelGlobals::nTeorija = teorija;
        EXPECT_EQ(Proracun(0), std::vector<double>{});
        EXPECT_EQ(Ispis(3), std::vector<double>{});
        EXPECT_THROW(Proracun(-1), CInvalidArgException);
        EXPECT_THROW(Ispis(-1), CInvalidArgException);
        EXPECT_EQ(UnitOf(0), Unit({}));
        OCArray<CLoadCaseUnit> all;
        all.SetSize(3);
        LoadNumbering::SviZerobasedLoadCaseUnits(all);
        EXPECT_EQ(all.GetSize(), 0);
    }
}

TEST_F(LoadNumberingTest, AnalysisExpandsCombinationsAndPrintingOnlyUnderSuperposition) {
    TeorijaGuard guard;
    NapraviModel();
    const LoadNumbering::Counts c = LoadNumbering::Count();
    EXPECT_EQ(std::vector<int>({c.nSlOpt, c.nKomb, c.nAnv}), std::vector<int>({3, 2, 1}));
    using V = std::vector<double>;
    // Per load: the vector for analysis under either theory, and under the other theory the
    // vector for printing and the unit (under superposition both follow the analysis).
    const struct {
        int z;
        V proracun, ispis2;
        Pairs unit1, unit2;
    } rows[] = {
        {0, {1, 0, 0}, {1, 0, 0, 0, 0}, {{1, 1.0}}, {{1, 1.0}}},
        {3, {1.35, 1.5, 0}, {0, 0, 0, 1, 0}, {{1, 1.35}, {2, 1.5}}, {{4, 1.0}}},
        {4, {0, 0, 1}, {0, 0, 0, 0, 1}, {{3, 1.0}}, {{5, 1.0}}}, // the zero member is left out
        {5, {0, 0, 0}, {0, 0, 0, 0, 0}, {}, {}},                 // an envelope
        {40, {0, 0, 0}, {0, 0, 0, 0, 0}, {}, {}},
    };
    // Any value other than 1 is the other theory.
    for (const int teorija : {1, 2, 0}) {
        CModelGlobals::nTeorija = teorija;
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::Message() << "theory " << teorija << ", load " << row.z);
            EXPECT_EQ(Proracun(row.z), row.proracun);
            EXPECT_EQ(Ispis(row.z), teorija == 1 ? row.proracun : row.ispis2);
            if (row.z < 6) {
                EXPECT_EQ(UnitOf(row.z), Unit(teorija == 1 ? row.unit1 : row.unit2));
            }
        }
    }
}

TEST_F(LoadNumberingTest, AllUnitsAtOnceAgreeWithTheUnitsOneByOne) {
    TeorijaGuard guard;
    NapraviModel();
    // A member named twice: the later coefficient is the one in the vector.
    AddCombination(3, {{m_w, 2.0}, {m_p, 1.0}, {m_w, -0.5}});
    // A combination numbered beyond the others is no load of the scale.
    AddCombination(9, {{m_p, 7.0}});
    for (int teorija : {1, 2}) {
        CModelGlobals::nTeorija = teorija;
        OCArray<CLoadCaseUnit> all;
        LoadNumbering::SviZerobasedLoadCaseUnits(all);
        ASSERT_EQ(all.GetSize(), 7);
        for (int z = 0; z < all.GetSize(); ++z) {
            EXPECT_EQ(all[z], UnitOf(z)) << "theory " << teorija << ", load " << z;
        }
    }
    CModelGlobals::nTeorija = 1;
    EXPECT_EQ(Proracun(5), (std::vector<double>{0.0, 1.0, -0.5}));
    EXPECT_EQ(UnitOf(5), Unit({{2, 1.0}, {3, -0.5}}));
}

/// The vectors of every load one by one, as far as the single calls go: the rows before the
/// first call that fails, and whether one failed.
struct Redovi {
    std::vector<std::vector<double>> redovi;
    bool bGreska = false;
};

Redovi JedanPoJedan(bool zaIspis) {
    Redovi r;
    const LoadNumbering::Counts c = LoadNumbering::Count();
    try {
        for (int z = 0; z < c.nSlOpt + c.nKomb + c.nAnv; ++z) {
            CArray<double> f;
            if (zaIspis)
                LoadNumbering::FaktoriZaIspis(z, f);
            else
                LoadNumbering::FaktoriZaProracun(z, f);
            r.redovi.push_back(f.Vector());
        }
    } catch (const CInvalidArgException&) {
        r.bGreska = true;
    }
    return r;
}

Redovi Svi(bool zaIspis) {
    Redovi r;
    try {
        LoadNumbering::SviFaktori(zaIspis, [&r](int z, const CArray<double>& f) {
            EXPECT_EQ(z, static_cast<int>(r.redovi.size()));
            r.redovi.push_back(f.Vector());
        });
    } catch (const CInvalidArgException&) {
        r.bGreska = true;
    }
    return r;
}

TEST_F(LoadNumberingTest, VectorsOfAllLoadsAtOnceAreTheVectorsOneByOne) {
    TeorijaGuard guard;
    // Random models: repeated and stray combination ordinals, members named twice, zero
    // coefficients, members whose load case is numbered beyond the scale, and envelopes.
    std::mt19937 rng(11);
    const double koef[] = {1.0, 1.35, 0.0, -0.5, 1.5};
    for (int round = 0; round < 60; ++round) {
        m_base = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(m_base.get());
        const int nSlOpt = static_cast<int>(rng() % 5);
        std::vector<CId> slucajevi;
        for (int k = 1; k <= nSlOpt; ++k)
            // now and then an ordinal the scale does not have
            slucajevi.push_back(AddLoadCase(L"S", rng() % 25 == 0 ? nSlOpt + 3 : k));
        // now and then enough combinations that the walk reads ahead of the one it is at
        const int nKomb = round % 10 == 0 ? 40 : static_cast<int>(rng() % 8);
        for (int j = 1; j <= nKomb && nSlOpt > 0; ++j) {
            auto* p = new CKombinacijaOpterecenja;
            p->Item().SetRedniBroj(rng() % 6 == 0 ? static_cast<int>(rng() % (nKomb + 3)) : j);
            const int clanova = static_cast<int>(rng() % 4);
            for (int m = 0; m < clanova; ++m)
                p->Item().DodajOsnOpt(koef[rng() % std::size(koef)],
                                      slucajevi[rng() % slucajevi.size()]);
            Insert(p);
        }
        const int nAnv = static_cast<int>(rng() % 3);
        for (int e = 1; e <= nAnv; ++e)
            AddEnvelope(e, L"1");
        for (const int teorija : {1, 2}) {
            CModelGlobals::nTeorija = teorija;
            for (const bool zaIspis : {false, true}) {
                const Redovi literal = JedanPoJedan(zaIspis);
                const Redovi svi = Svi(zaIspis);
                EXPECT_EQ(svi.bGreska, literal.bGreska) << round;
                EXPECT_EQ(svi.redovi, literal.redovi) << round << " " << teorija << " " << zaIspis;
            }
        }
    }
}

TEST_F(LoadNumberingTest, MemberOutsideTheLoadCasesIsAnInvalidArgument) {
    TeorijaGuard guard;
    CModelGlobals::nTeorija = 1;
    const CId a = AddLoadCase(L"A", 1);
    const CId far = AddLoadCase(L"B", 5); // an ordinal the scale does not have
    AddCombination(1, {{a, 1.0}, {far, 2.0}});
    CArray<double> f;
    EXPECT_THROW(LoadNumbering::FaktoriZaProracun(2, f), CInvalidArgException);
    EXPECT_THROW(LoadNumbering::FaktoriZaIspis(2, f), CInvalidArgException);
    OCArray<CLoadCaseUnit> all;
    EXPECT_THROW(LoadNumbering::SviZerobasedLoadCaseUnits(all), CInvalidArgException);
    // Under the other theory the combination is not expanded for printing.
    CModelGlobals::nTeorija = 2;
    EXPECT_NO_THROW(LoadNumbering::SviZerobasedLoadCaseUnits(all));
    EXPECT_THROW(LoadNumbering::FaktoriZaProracun(2, f), CInvalidArgException);
}

} // namespace
