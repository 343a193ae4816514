// Model-wide maintenance: removing seismic and SRSS load cases with their combinations, the
// influence-line load case, and activating envelopes in the results selector.
#include "RecordingHost.h"

#include "host/Model.h"

#include <map>

namespace {

class MaintenanceTest : public ServicesTest {
protected:
    /// Load cases and combinations by ordinal -> name.
    std::pair<std::map<int, CString>, std::map<int, CString>> Sadrzaj() const {
        std::pair<std::map<int, CString>, std::map<int, CString>> m;
        for (const CId& id : m_base->Ids(CBaseManager::SlucajOpterecenjaType))
            m.first[Get<CSlucajOpterecenja>(id)->DajRedniBroj()] =
                Get<CSlucajOpterecenja>(id)->GetNaziv();
        for (const CId& id : m_base->Ids(CBaseManager::KombinacijaOpterecenjaType))
            m.second[Get<CKombinacijaOpterecenja>(id)->Item().GetRedniBroj()] =
                Get<CKombinacijaOpterecenja>(id)->Item().GetNaziv();
        return m;
    }
    void TackastoOpterecenje(const CId& slucaj) {
        auto* p = new CTackastoOpterecenje;
        p->SetSlOptId(slucaj);
        Insert(p);
    }
    using Mapa = std::map<int, CString>;
};

} // namespace

TEST_F(MaintenanceTest, DeletingSeismicOrSrssCasesRemovesEveryCombinationThatUsesThem) {
    const CId g = Slucaj(L"G", 1);
    const CId sx = Slucaj(L"Sx", 2, Seizmicki);
    const CId q = Slucaj(L"Q", 3);
    const CId sy = Slucaj(L"Sy", 4, Nda);
    const CId w = Slucaj(L"W", 5);
    const CId srss = Slucaj(L"SRSS", 6, Srss({2, 4}));
    Slucaj(L"E", 7, [](CSlucajOpterecenja& s) { s.PostaviSRSS(CLoadCaseUnit()); });
    AddGenerated(1, {{g, 1.0}, {q, 1.5}});
    AddGenerated(2, {{g, 1.0}, {sx, 0.0}}); // a member with coefficient 0 still counts
    AddGenerated(3, {{sy, 1.0}, {g, 1.0}});
    AddGenerated(4, {{q, 1.0}, {w, 1.5}});
    AddGenerated(5, {{g, 1.0}, {srss, 1.0}});
    AddCombination(6, {{w, 2.0}}, L"Rucno W");
    const int koraci = m_base->GetUndoCount();

    // The SRSS case goes; the seismic cases it combines stay. Ordinals of load cases are left
    // as they are; combinations are renumbered and their generated names rebuilt.
    COpterecenjeApp::BrisanjeSrssSlOpt();
    EXPECT_EQ(Sadrzaj().first,
              (Mapa{{1, L"G"}, {2, L"Sx"}, {3, L"Q"}, {4, L"Sy"}, {5, L"W"}, {7, L"E"}}));
    EXPECT_EQ(Sadrzaj().second.size(), 5u);
    COpterecenjeApp::BrisanjeSeizmickihSlOpt();
    EXPECT_EQ(Sadrzaj(),
              std::make_pair(Mapa{{1, L"G"}, {3, L"Q"}, {5, L"W"}, {7, L"E"}},
                             Mapa{{1, L"I+1.50xIII"}, {2, L"III+1.50xV"}, {3, L"Rucno W"}}));
    EXPECT_EQ(m_base->GetUndoCount(), koraci + 2); // one undo step each
}

TEST_F(MaintenanceTest, InfluenceLineCaseTakesOverTheOnlyCaseOfAnEmptyModel) {
    const CId prazan = Slucaj(L"Opterecenje 1", 1, [](CSlucajOpterecenja& s) { s.SetStalno(1); });
    const CId id = COpterecenjeApp::DodajSlOptUticajneLinije(L"UL Mx", UL_MOMENT);
    EXPECT_EQ(id, prazan);
    ASSERT_EQ(m_base->Count(CBaseManager::SlucajOpterecenjaType), 1);
    const auto* p = Get<CSlucajOpterecenja>(id);
    EXPECT_EQ(p->GetNaziv(), CString(L"UL Mx"));
    EXPECT_EQ(p->GetKoeficijent(), 0.0);
    EXPECT_EQ(p->GetStalno(), 0);
    EXPECT_EQ(p->GetgMarker(), 0);
    EXPECT_EQ(p->GetUticajUticajneLinije(), UL_MOMENT);
    // The standard selector is refilled at position 1.
    EXPECT_EQ(m_host.Izbor(), 1);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 1: UL Mx"));
    EXPECT_TRUE(CVortaUtils::g_bAktivanSlOptUticajneLinije);
    COpterecenjeApp::IzmeniSlOptUticajneLinije(L"UL Tz", id);
    EXPECT_EQ(Get<CSlucajOpterecenja>(id)->GetNaziv(), CString(L"UL Tz"));
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 1: UL Tz"));
    // In results mode the refill passes 0 for the first case.
    m_host.m_bRezultati = true;
    COpterecenjeApp::IzmeniSlOptUticajneLinije(L"UL N", id);
    EXPECT_EQ(m_host.Lista(), std::vector<CString>{L"1. UL N"});
    EXPECT_EQ(m_host.Izbor(), 0);
}

TEST_F(MaintenanceTest, InfluenceLineCaseIsAppendedOtherwise) {
    // After the seismic and SRSS cases (and their combinations) are gone.
    const CId g = Slucaj(L"G", 1);
    const CId sx = Slucaj(L"Sx", 2, Seizmicki);
    Slucaj(L"SRSS", 3, Srss({2}));
    AddGenerated(1, {{g, 1.0}, {sx, 1.0}});
    AddGenerated(2, {{g, 1.35}});
    TackastoOpterecenje(g);
    const CId id = COpterecenjeApp::DodajSlOptUticajneLinije(L"UL", UL_POMERANJE);
    EXPECT_EQ(Sadrzaj(), std::make_pair(Mapa{{1, L"G"}, {2, L"UL"}}, Mapa{{1, L"1.35xI"}}));
    EXPECT_EQ(Get<CSlucajOpterecenja>(id)->GetKoeficijent(), 0.0);
    EXPECT_EQ(Get<CSlucajOpterecenja>(id)->GetUticajUticajneLinije(), UL_POMERANJE);
    EXPECT_EQ(m_host.Izbor(), 2);
    EXPECT_EQ(m_host.PoslednjaNajava(), CString(L"Opterecenje 2: UL"));
}

TEST_F(MaintenanceTest, InfluenceLineCaseIsAppendedBesideAMarkedOrSecondCase) {
    Slucaj(L"G", 1, [](CSlucajOpterecenja& s) { s.SetgMarker(1); });
    const CId id = COpterecenjeApp::DodajSlOptUticajneLinije(L"UL", UL_MOMENT);
    EXPECT_EQ(Get<CSlucajOpterecenja>(id)->DajRedniBroj(), 2);
    m_host.m_bRezultati = true;
    const CId drugi = COpterecenjeApp::DodajSlOptUticajneLinije(L"UL2", UL_MOMENT);
    EXPECT_EQ(Get<CSlucajOpterecenja>(drugi)->DajRedniBroj(), 3);
    EXPECT_EQ(m_host.Lista().size(), 3u);
    EXPECT_EQ(m_host.Izbor(), -1); // n + 1 = 3 is beyond the results list
}

TEST_F(MaintenanceTest, OrdinalCheckAfterDeletingACaseBeforeOthersEndsTheProgram) {
    Slucaj(L"Sx", 1, Seizmicki);
    TackastoOpterecenje(Slucaj(L"G", 2));
    EXPECT_EXIT(COpterecenjeApp::DodajSlOptUticajneLinije(L"UL", UL_MOMENT),
                ::testing::ExitedWithCode(0), "nIndex >= 0 && nIndex < nOsnovnihOpt");
}

TEST_F(MaintenanceTest, EnvelopeActivationFollowsTheResultsSelector) {
    const CId a = Slucaj(L"A", 1);
    AddCombination(1, {{a, 1.0}});
    const CId e1 = AddEnvelope(1, L"1-2", L"E1");
    const CId e2 = AddEnvelope(2, L"2", L"E2");
    m_host.m_bRezultati = true;
    COpterecenjeApp::UpdateComboResults(0);
    COpterecenjeApp::AktivirajAnvelopu(2);
    EXPECT_EQ(COpterecenjeApp::DajAktivnuAnvelopu(), 2);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, e2);
    COpterecenjeApp::AktivirajAnvelopu(1);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_Id, e1);
    // Envelope 0 activates the item before the first envelope.
    COpterecenjeApp::AktivirajAnvelopu(0);
    EXPECT_EQ(CComboItemArray::GetActiveItem().m_nTip, CComboItem::KOMBINACIJA);
    COpterecenjeApp::ResetAnvelope();
    EXPECT_EQ(COpterecenjeApp::DajAktivnuAnvelopu(), 0);
    EXPECT_FALSE(CComboItemArray::GetActiveItem().m_Id.Valid());

    EXPECT_EXIT(COpterecenjeApp::AktivirajAnvelopu(3), ::testing::ExitedWithCode(0),
                "rbrAnvelope >= 0 && rbrAnvelope <= nAnv");
    Slucaj(L"B", 2); // the selector is now out of step with the store
    EXPECT_EXIT(COpterecenjeApp::AktivirajAnvelopu(1), ::testing::ExitedWithCode(0),
                "nUkupno == nSlopt \\+ nKomb \\+ nAnv\\)\n\\[OpterecenjeMaintenance : ");
}
