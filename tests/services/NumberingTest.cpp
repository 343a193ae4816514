// The global scale of loads: counts, factor vectors under both theories, units and ordinals
// in both directions, the texts of units, the unstable-load list and the current load's name.
#include "RecordingHost.h"

#include "framework/Exceptions.h"
#include "services/OpterecenjeIndeks.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <cmath>
#include <random>

namespace {

std::vector<double> V(const CArray<double>& a) {
    return a.Vector();
}

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
    EXPECT_EQ(a, 2);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(COpterecenjeApp::UkupanBrojSloptOKombinacija(), 5);
    COpterecenjeApp::SetTeorija(2);
    EXPECT_EQ(COpterecenjeApp::GetTeorija(), 2);
    EXPECT_EQ(COpterecenjeApp::gbTeorija, 2);
}

TEST_F(NumberingTest, FactorVectorsUnderSuperposition) {
    Model();
    CArray<double> f;
    for (auto zaIspis : {false, true}) {
        auto faktori = [&](int i) {
            if (zaIspis)
                COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(i, f);
            else
                COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(i, f);
            return V(f);
        };
        EXPECT_EQ(faktori(0), (std::vector<double>{1, 0, 0}));
        EXPECT_EQ(faktori(2), (std::vector<double>{0, 0, 1}));
        EXPECT_EQ(faktori(3), (std::vector<double>{1.35, 1.5, 0}));   // combination 1
        EXPECT_EQ(faktori(4), (std::vector<double>{1.0, 0.0, -1.0})); // combination 2
        EXPECT_EQ(faktori(5), (std::vector<double>{0, 0, 0}));        // the envelope
        EXPECT_EQ(faktori(9), (std::vector<double>{0, 0, 0}));        // beyond everything
        EXPECT_THROW(faktori(-1), CInvalidArgException);
    }
}

TEST_F(NumberingTest, PrintingVectorUnderTheOtherTheoryNamesTheCombinationItself) {
    Model();
    COpterecenjeApp::SetTeorija(2);
    CArray<double> f;
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(3, f);
    EXPECT_EQ(V(f), (std::vector<double>{0, 0, 0, 1, 0}));
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(1, f);
    EXPECT_EQ(V(f), (std::vector<double>{0, 1, 0, 0, 0}));
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(5, f);
    EXPECT_EQ(V(f), (std::vector<double>{0, 0, 0, 0, 0}));
    // The analysis still receives the combination expanded.
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(3, f);
    EXPECT_EQ(V(f), (std::vector<double>{1.35, 1.5, 0}));
}

TEST_F(NumberingTest, EmptyModelGivesEmptyVectorsAndUnits) {
    CArray<double> f;
    f.SetSize(4);
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(0, f);
    EXPECT_EQ(f.GetSize(), 0);
    EXPECT_THROW(f[0], CInvalidArgException);
    COpterecenjeApp::SetTeorija(2);
    COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaIspis(0, f);
    EXPECT_EQ(f.GetSize(), 0);
    EXPECT_THROW(COpterecenjeApp::ZerobasedRedniBrojToFaktori_ZaProracun(-1, f),
                 CInvalidArgException);
    CLoadCaseUnit u = Unit({{1, 2.0}});
    COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(0, u);
    EXPECT_TRUE(u.IsEmpty());
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(u), 0);
    EXPECT_EQ(COpterecenjeApp::UkupanBrojSloptOKombinacija(), 0);
}

TEST_F(NumberingTest, UnitsAndOrdinalsRoundTripUnderBothTheories) {
    Model();
    for (int teorija : {1, 2}) {
        COpterecenjeApp::SetTeorija(teorija);
        for (int z = 0; z < 5; ++z) {
            CLoadCaseUnit u;
            COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(z, u);
            EXPECT_EQ(u.GetKarakter(), LCU_LINEARNA);
            EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(u), z + 1)
                << "theory " << teorija << ", zero-based " << z;
        }
        CLoadCaseUnit anv;
        COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(5, anv);
        EXPECT_TRUE(anv.IsEmpty());
        EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(anv), 0);
    }
    CLoadCaseUnit u;
    COpterecenjeApp::SetTeorija(1);
    COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(4, u);
    ASSERT_EQ(u.GetSize(), 2); // the zero member is not in the unit
    EXPECT_EQ(u.GetLoadCaseFactor(1).GetLCRedniBroj(), 3);
    COpterecenjeApp::SetTeorija(2);
    COpterecenjeApp::ZerobasedRedniBrojToLoadCaseUnit(4, u);
    ASSERT_EQ(u.GetSize(), 1);
    EXPECT_EQ(u.GetLoadCaseFactor(0).GetLCRedniBroj(), 5);
}

TEST_F(NumberingTest, UnitToOrdinalFindsTheFirstCombinationInStoreOrder) {
    // A single whole load names itself without the store being read.
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{5, 1.0}})), 5);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{5, 1.0 + 1e-12}})), 5);

    CId a = Slucaj(L"A", 1), b = Slucaj(L"B", 2), c = Slucaj(L"C", 3);
    AddCombination(3, {{b, 1.0}, {c, 1.0}});
    AddCombination(1, {{c, 1.0}, {a, 0.0}, {b, 1.0}}); // same loads, stored later
    AddCombination(2, {{a, 2.0}});
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{2, 1.0}, {3, 1.0}})), 3 + 3);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{2, 1.0}, {3, 1.0 + 5e-10}})), 6);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{2, 1.0}, {3, 1.0 + 2e-9}})), 0);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{1, 2.0}})), 3 + 2);
    // Compared position by position as the unit holds its factors.
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{3, 1.0}, {2, 1.0}})), 0);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(Unit({{1, 1.0}, {2, 1.0}})), 0);
}

TEST_F(NumberingTest, UnitToOrdinalAgreesWithThePlainWalkOnManyUnits) {
    // Coefficients close to each other within and beyond the tolerance, and close to the
    // steps by which combinations are filed (1.0000005 lies on a boundary between steps; so do
    // the large ones, where rounding errors are larger).
    const std::vector<double> koeficijenti = {
        1.35,   1.5,  0.3,        -1.0, 1.0000005,       1.0000005 + 8e-10,
        2.5e-6, 1e-3, -0.7000005, 1.0,  3000000.0000005, -1234567.8900005};
    std::vector<CId> ids;
    for (int k = 1; k <= 6; ++k)
        ids.push_back(Slucaj(CString::Formatted(L"S%d", k), k));
    std::mt19937 rng(12345);
    const int nKomb = 300;
    std::vector<int> rb(nKomb);
    for (int j = 0; j < nKomb; ++j)
        rb[j] = j + 1;
    std::shuffle(rb.begin(), rb.end(), rng); // store order differs from ordinal order
    std::vector<CLoadCaseUnit> upiti;
    for (int j = 0; j < nKomb; ++j) {
        std::vector<std::pair<CId, double>> clanovi;
        OCArray<CLoadCaseFactor> faktori;
        for (int k = 0; k < 6; ++k) {
            if (rng() % 3 == 0)
                continue;
            const double c = koeficijenti[rng() % koeficijenti.size()];
            clanovi.emplace_back(ids[k], c);
            faktori.Add(CLoadCaseFactor(k + 1, c));
        }
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(rb[j]);
        for (auto& [id, c] : clanovi)
            p->Item().DodajOsnOpt(c, id);
        Insert(p);
        CLoadCaseUnit u;
        u.Set(faktori, LCU_LINEARNA);
        // The unit itself, and with its first or every factor moved by a little less or a
        // little more than the tolerance.
        for (double d : {0.0, 9e-10, -9e-10, 1.1e-9, -1.1e-9}) {
            for (bool svi : {false, true}) {
                CLoadCaseUnit v = u;
                for (int i = 0; i < v.GetSize() && (svi || i == 0); ++i)
                    v.Factors()[i].SetFaktor(v.GetLoadCaseFactor(i).GetFaktor() + d);
                upiti.push_back(v);
            }
        }
    }
    upiti.push_back(Unit({}));
    upiti.push_back(Unit({{2, 1.0}, {1, 1.35}}));
    upiti.push_back(Unit({{1, std::nan("")}, {2, 1.5}}));

    // The plain walk over a snapshot of the combinations in store order.
    std::vector<std::pair<int, OCArray<CLoadCaseFactor>>> snimak;
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Read);
        bm.Select(CBaseManager::KombinacijaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const auto& item = Get<CKombinacijaOpterecenja>(id)->Item();
            OCArray<CLoadCaseFactor> lista;
            for (int k = 0; k < item.GetBrojOsnOpt(); ++k) {
                double koef = 0.0;
                CId sl;
                item.GetOsnOptByIndex(k, koef, sl);
                if (!CToler::Jednaki(koef, 0.0))
                    lista.Add(CLoadCaseFactor(Get<CSlucajOpterecenja>(sl)->DajRedniBroj(), koef));
            }
            CLoadCaseFactor::SortLoadCaseFactorArray(lista);
            snimak.emplace_back(item.GetRedniBroj(), lista);
        }
        bm.Close();
    }
    auto doslovno = [&](const CLoadCaseUnit& u) {
        if (u.GetSize() == 1 && CToler::Jednaki(u.GetLoadCaseFactor(0).GetFaktor(), 1.0))
            return u.GetLoadCaseFactor(0).GetLCRedniBroj();
        for (const auto& [rb, lista] : snimak) {
            bool isti = lista.GetSize() == u.GetSize();
            for (int i = 0; i < lista.GetSize() && isti; ++i)
                isti = lista[i].GetLCRedniBroj() == u.GetLoadCaseFactor(i).GetLCRedniBroj() &&
                       !CToler::Razliciti(lista[i].GetFaktor(), u.GetLoadCaseFactor(i).GetFaktor());
            if (isti)
                return 6 + rb;
        }
        return 0;
    };

    // One index answers every question, in an order that makes it find most candidates among
    // the combinations it has read already.
    std::shuffle(upiti.begin(), upiti.end(), rng);
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    const opterecenje::CRedniBrojeviSlucajeva slucajevi(bm);
    opterecenje::CIndeksKombinacija indeks(bm, 6, slucajevi);
    for (const CLoadCaseUnit& u : upiti)
        ASSERT_EQ(indeks.RedniBroj(u), doslovno(u));
    bm.Close();
    // The service itself, which builds its index per call.
    for (size_t i = 0; i < upiti.size(); i += 25)
        ASSERT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(upiti[i]), doslovno(upiti[i]));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToRedniBroj(upiti[0]), RedniBrojDoslovno(upiti[0]));
}

TEST_F(NumberingTest, FiledCombinationsAreFoundAcrossAStepBoundaryAtLargeCoefficients) {
    // The two coefficients agree within the tolerance but were filed on either side of a
    // rounding boundary, where the position within the step carries a sizeable rounding error.
    const CId s = Slucaj(L"S", 1);
    AddCombination(1, {{s, 508151.03519649996}});
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
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(u, brojevi, 0),
              CString(L"I+1.50xII(2)-1.00xIII(1)"));
    EXPECT_THROW(COpterecenjeApp::LoadCaseUnitToString(Unit({{5, 2.0}}), brojevi, 0),
                 CInvalidArgException);
}

TEST_F(NumberingTest, UnitTextWithCountsExpandsAWholeCombination) {
    Model();
    OCArray<int> brojevi;
    for (int n : {2, 2, 2})
        brojevi.Add(n);
    // (4, 1.0) is combination 1: written as its load cases, without counts.
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{4, 1.0}}), brojevi, 0),
              CString(L"1.35xI+1.50xII"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{4, 1.0}}), brojevi, 1),
              CString(L"1.35xI+1.50xII"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{5, 1.0}}), brojevi, 1),
              CString(L"1.00xI-1.00xIII"));
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{2, 1.0}}), brojevi, 0),
              CString(L"II(1)"));
    // Under the other theory a combination's unit is the combination itself.
    COpterecenjeApp::SetTeorija(2);
    EXPECT_EQ(COpterecenjeApp::LoadCaseUnitToString(Unit({{4, 1.0}}), brojevi, 0), CString(L"IV"));
}

TEST_F(NumberingTest, UnstableLoadsAreMarkedUntilReset) {
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(3), 0);
    COpterecenjeApp::MarkAsLabilanSlOpt(3);
    COpterecenjeApp::MarkAsLabilanSlOpt(3);
    COpterecenjeApp::MarkAsLabilanSlOpt(7);
    EXPECT_EQ(COpterecenjeApp::gArrRedBrLabilnihSlOpt.GetSize(), 3); // duplicates are kept
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(3), 1);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(7), 1);
    EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(4), 0);
    COpterecenjeApp::gnLastGoodStabile = 5;
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    EXPECT_EQ(COpterecenjeApp::gnLastGoodStabile, -1);
    EXPECT_EQ(COpterecenjeApp::gArrRedBrLabilnihSlOpt.GetSize(), 0);
    EXPECT_EQ(COpterecenjeApp::gArrRedBrLabilnihSlOpt.Vector().capacity(), 0u);
    for (int rb : {0, 3, 7})
        EXPECT_EQ(COpterecenjeApp::IsMarkedAsLabilanSlOpt(rb), 0);
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
