// The global scale of loads: counts, factor vectors under both theories, units and ordinals
// in both directions, the texts of units, the unstable-load list and the current load's name.
#include "RecordingHost.h"

#include "framework/Exceptions.h"
#include "services/OpterecenjeIndeks.h"
#include "text/Translator.h"

#include <cmath>
#include <random>

namespace {

using Vektor = std::vector<double>;

class NumberingTest : public ServicesTest {
protected:
    /// Load cases I G, II Q, III W; combination 1 = 1.35 I + 1.50 II, combination 2 =
    /// 1.00 I + 0 II - 1.00 III (stored first); envelope 1 over everything.
    void Model() {
        m_g = Slucaj(L"G", 1);
        m_q = Slucaj(L"Q", 2);
        m_w = Slucaj(L"W", 3);
        AddCombination(2, {{m_g, 1.0}, {m_q, 0.0}, {m_w, -1.0}}, L"K2");
        AddCombination(1, {{m_g, 1.35}, {m_q, 1.5}}, L"K1");
        AddEnvelope(1, L"1-5", L"Sve");
    }
    static Vektor Faktori(int zerobased, bool zaIspis) {
        CArray<double> f;
        f.SetSize(4);
        if (zaIspis)
            COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(zerobased, f);
        else
            COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(zerobased, f);
        return f.Vector();
    }
    static int RedniBroj(const CLoadCaseUnit& u) {
        return COpterecenjeApp::LoadCaseUnitToRedniBroj(u);
    }
    static CString Tekst(const CLoadCaseUnit& u, const OCArray<int>& brojevi, int jedinicni = 0) {
        return COpterecenjeApp::LoadCaseUnitToString(u, brojevi, jedinicni);
    }
    CId m_g, m_q, m_w;
};

} // namespace

TEST_F(NumberingTest, CountsSeparateSeismicAndNdaCasesFromTheOthers) {
    Slucaj(L"G", 1);
    Slucaj(L"Sx", 2, Seizmicki);
    Slucaj(L"DDA", 3, Nda);
    Slucaj(L"Q", 4, UticajnaLinija);
    AddCombination(1, {});
    int a = -5, b = -5;
    COpterecenjeApp::GetBrojOpt(a, b);
    EXPECT_EQ(std::make_pair(a, b), std::make_pair(2, 2));
    EXPECT_EQ(COpterecenjeApp::UkupanBrojSloptOKombinacija(), 5);
}

TEST_F(NumberingTest, TheHostsTheoryDecidesVectorsAndUnitsWhichRoundTripToTheirOrdinals) {
    // (The vectors themselves are the model's; here the services pass the host's theory on.)
    CLoadCaseUnit u = Unit({{1, 2.0}});
    COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(0, u); // an empty model
    EXPECT_TRUE(u.IsEmpty());
    EXPECT_EQ(RedniBroj(u), 0);
    Model();
    EXPECT_EQ(Faktori(3, true), (Vektor{1.35, 1.5, 0}));
    for (int teorija : {1, 2}) {
        COpterecenjeApp::SetTeorija(teorija);
        for (int z = 0; z < 5; ++z) {
            COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(z, u);
            EXPECT_EQ(u.GetKarakter(), LCU_LINEARNA);
            EXPECT_EQ(RedniBroj(u), z + 1) << "theory " << teorija << ", zero-based " << z;
        }
        COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(5, u); // the envelope
        EXPECT_TRUE(u.IsEmpty());
    }
    // The other theory prints a combination as itself; the analysis still receives it expanded.
    EXPECT_EQ(Faktori(3, true), (Vektor{0, 0, 0, 1, 0}));
    EXPECT_EQ(Faktori(3, false), (Vektor{1.35, 1.5, 0}));
    COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(4, u);
    EXPECT_EQ(u, Unit({{5, 1.0}}));
}

TEST_F(NumberingTest, UnitToOrdinalFindsTheFirstCombinationInStoreOrder) {
    // A single whole load names itself without the store being read.
    EXPECT_EQ(RedniBroj(Unit({{5, 1.0 + 1e-12}})), 5);
    CId a = Slucaj(L"A", 1), b = Slucaj(L"B", 2), c = Slucaj(L"C", 3);
    AddCombination(3, {{b, 1.0}, {c, 1.0}});
    AddCombination(1, {{c, 1.0}, {a, 0.0}, {b, 1.0}}); // same loads, stored later
    AddCombination(2, {{a, 2.0}});
    EXPECT_EQ(RedniBroj(Unit({}, {2, 3})), 3 + 3);
    EXPECT_EQ(RedniBroj(Unit({{2, 1.0}, {3, 1.0 + 5e-10}})), 6);
    EXPECT_EQ(RedniBroj(Unit({{2, 1.0}, {3, 1.0 + 2e-9}})), 0);
    EXPECT_EQ(RedniBroj(Unit({{1, 2.0}})), 3 + 2);
    // Compared position by position as the unit holds its factors.
    EXPECT_EQ(RedniBroj(Unit({}, {3, 2})), 0);
    EXPECT_EQ(RedniBroj(Unit({}, {1, 2})), 0);
}

TEST_F(NumberingTest, UnitToOrdinalAgreesWithThePlainWalkOnManyUnits) {
    // Coefficients close to each other within and beyond the tolerance, and close to the
    // steps by which combinations are filed (1.0000005 lies on a boundary between steps; so do
    // the large ones, where rounding errors are larger).
    const Vektor koeficijenti = {1.35,   1.5,  0.3,        -1.0, 1.0000005,       1.0000005 + 8e-10,
                                 2.5e-6, 1e-3, -0.7000005, 1.0,  3000000.0000005, -1234567.8900005};
    std::vector<CId> ids;
    for (int k = 1; k <= 6; ++k)
        ids.push_back(Slucaj(CString::Formatted(L"S%d", k), k));
    std::mt19937 rng(12345);
    std::vector<int> rb(200);
    for (size_t j = 0; j < rb.size(); ++j)
        rb[j] = static_cast<int>(j) + 1;
    std::shuffle(rb.begin(), rb.end(), rng); // store order differs from ordinal order
    std::vector<CLoadCaseUnit> upiti = {Unit({}), Unit({{2, 1.0}, {1, 1.35}}),
                                        Unit({{1, std::nan("")}, {2, 1.5}})};
    for (const int r : rb) {
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(r);
        OCArray<CLoadCaseFactor> faktori;
        for (int k = 0; k < 6; ++k) {
            if (rng() % 3 == 0)
                continue;
            const double c = koeficijenti[rng() % koeficijenti.size()];
            p->Item().DodajOsnOpt(c, ids[k]);
            faktori.Add(CLoadCaseFactor(k + 1, c));
        }
        Insert(p);
        // The unit itself, and with its first or every factor moved by a little less or a
        // little more than the tolerance.
        for (double d : {0.0, 9e-10, -9e-10, 1.1e-9, -1.1e-9}) {
            for (bool svi : {false, true}) {
                CLoadCaseUnit v;
                v.Set(faktori, LCU_LINEARNA);
                for (int i = 0; i < v.GetSize() && (svi || i == 0); ++i)
                    v.Factors()[i].SetFaktor(v.GetLoadCaseFactor(i).GetFaktor() + d);
                upiti.push_back(v);
            }
        }
    }
    // One index answers every question, in an order that makes it find most candidates among
    // the combinations it has read already.
    std::vector<int> doslovno;
    for (const CLoadCaseUnit& u : upiti)
        doslovno.push_back(RedniBrojDoslovno(u));
    std::vector<size_t> redosled(upiti.size());
    for (size_t i = 0; i < redosled.size(); ++i)
        redosled[i] = i;
    std::shuffle(redosled.begin(), redosled.end(), rng);
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const opterecenje::CRedniBrojeviSlucajeva slucajevi(bm);
    opterecenje::CIndeksKombinacija indeks(bm, 6, slucajevi);
    for (const size_t i : redosled)
        ASSERT_EQ(indeks.RedniBroj(upiti[i]), doslovno[i]) << i;
    bm.Close();
    // The service itself, which builds its index per call.
    for (size_t i = 0; i < upiti.size(); i += 25)
        ASSERT_EQ(RedniBroj(upiti[i]), doslovno[i]) << i;
}

TEST_F(NumberingTest, FiledCombinationsAreFoundAcrossAStepBoundaryAtLargeCoefficients) {
    // The two coefficients agree within the tolerance but were filed on either side of a
    // rounding boundary, where the position within the step carries a sizeable rounding error.
    AddCombination(1, {{Slucaj(L"S", 1), 508151.03519649996}});
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const opterecenje::CRedniBrojeviSlucajeva slucajevi(bm);
    opterecenje::CIndeksKombinacija indeks(bm, 1, slucajevi);
    EXPECT_EQ(indeks.RedniBroj(Unit({{1, 7.0}})), 0); // every combination has been read
    EXPECT_EQ(indeks.RedniBroj(Unit({{1, 508151.03519649897}})), 2);
    EXPECT_EQ(indeks.RedniBroj(Unit({{1, 508151.03519649996 + 2e-9}})), 0);
    bm.Close();
}

TEST_F(NumberingTest, UnitTextsKeepTheirAsymmetries) {
    const CLoadCaseUnit u = Unit({{1, 1.0}, {2, 1.5}, {3, -1.0}});
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(u, 0), CString(L"I+1.50xII-1.00xIII"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(u, 1), CString(L"1.00xI+1.50xII-1.00xIII"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{2, -1.0}, {4, 0.0}, {4, 1.0}}), 0),
              CString(L"-1.00xII+IV"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{1, 1e-12}}), 0), CString());
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{14, -0.5}}), 0), CString(L"-0.50xXIV"));

    // With counts: the suffix gives count - 1 when the count is above 1.
    OCArray<int> brojevi;
    for (int n : {1, 3, 2})
        brojevi.Add(n);
    EXPECT_EQ(Tekst(u, brojevi), CString(L"I+1.50xII(2)-1.00xIII(1)"));
    EXPECT_THROW(Tekst(Unit({{5, 2.0}}), brojevi), CInvalidArgException);
    // A unit of one whole combination is written as its load cases, without counts.
    Model();
    brojevi[0] = 2;
    EXPECT_EQ(Tekst(Unit({}, {4}), brojevi), CString(L"1.35xI+1.50xII"));
    EXPECT_EQ(Tekst(Unit({}, {4}), brojevi, 1), CString(L"1.35xI+1.50xII"));
    EXPECT_EQ(Tekst(Unit({}, {5}), brojevi, 1), CString(L"1.00xI-1.00xIII"));
    EXPECT_EQ(Tekst(Unit({}, {2}), brojevi), CString(L"II(2)"));
    // Under the other theory a combination's unit is the combination itself.
    COpterecenjeApp::SetTeorija(2);
    EXPECT_EQ(Tekst(Unit({}, {4}), brojevi), CString(L"IV"));
}

TEST_F(NumberingTest, UnstableLoadsAreMarkedUntilReset) {
    for (const int rb : {3, 3, 7})
        COpterecenjeApp::MarkAsLabilanSlOpt(rb);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(3), 1);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(7), 1);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(4), 0);
    COpterecenjeApp::gnLastGoodStabile = 5;
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, -1);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(3), 0);
}

TEST_F(NumberingTest, NameOfTheCurrentLoadByItsGlobalOrdinal) {
    Model();
    m_host.m_bRezultati = true;
    COpterecenjeApp::UpdateComboResults(0);
    ClTranslator tr;
    m_host.m_nTekuciBroj = 2;
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(1, tr), CString(L"Opt. 2"));
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(0, tr), CString(L"Opt. 2: Q"));
    EXPECT_EQ(COpterecenjeApp::gTekuciComboItem.m_Id, m_q);
    // A multimodal tone of a load case shows after its position.
    CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(2, 3);
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(1, tr), CString(L"Opt. 2/3"));
    // Combination 2 has the tone map entry of ordinal 2 as its own number, but is no load case.
    m_host.m_nTekuciBroj = 5;
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(0, tr), CString(L"Opt. 5: K2"));
    m_host.m_nTekuciBroj = 6;
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(0, tr), CString(L"Opt. 6: [Sve] 1-5"));
    m_host.m_nTekuciBroj = 7;
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(0, tr), CString());
    EXPECT_EQ(COpterecenjeApp::gTekuciComboItem.m_nBroj, 1); // the last one found stays

    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Opt.", L"LC");
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    m_host.m_nTekuciBroj = 1;
    EXPECT_EQ(COpterecenjeApp::NazivTekucegOpterecenja(1, tr), CString(L"LC 1"));
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();
}
