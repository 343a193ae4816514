// Setting the module up: the commands and the selector it registers, the host pointers it
// fills, the load interface, the services a host calls through CLoadsServices, the report
// tables and the example model.
#include "RecordingHost.h"

#include "assembly/Opterecenje.h"
#include "host/LoadsServices.h"
#include "host/OptionInfo.h"
#include "model/StabilnostParams.h"
#include "services/ModuleServices.h"

#include <algorithm>
#include <stdexcept>

extern "C" int VortaModuleSetUp(COptionInfoList* list);

namespace {

class SetUpTest : public ServicesTest {
protected:
    void TearDown() override {
        CLoadsServices::Reset();
        COpterecenjeApp::gfnOdradiStabilnostDlg = nullptr;
        ServicesTest::TearDown();
    }
};

int g_nPotvrdjen = 0;

/// The rows of the table with that title.
const std::vector<std::vector<CString>>& Redovi(const CLoadsReport& r, const CString& naslov) {
    for (const CLoadsReport::Table& t : r.tables)
        if (t.title == naslov)
            return t.rows;
    throw std::runtime_error("no table " + naslov.ToUtf8());
}

} // namespace

TEST_F(SetUpTest, StabilityParametersChangeOnlyWhenTheDialogIsConfirmed) {
    CStabilnostParams params;
    params.SetOpsegZaDelta(50.0);
    EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), 0); // no dialog
    for (const int potvrdjen : {0, 1}) {
        g_nPotvrdjen = potvrdjen;
        COpterecenjeApp::gfnOdradiStabilnostDlg = [](void*, CStabilnostParams& p) {
            p.SetOpsegZaDelta(7.0);
            return g_nPotvrdjen;
        };
        EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), potvrdjen);
        EXPECT_EQ(params.GetOpsegZaDelta(), potvrdjen ? 7.0 : 50.0);
    }
}

TEST_F(SetUpTest, LoadInterfaceReadsAndMovesTheElementsLoadCase) {
    COptionInfoList list;
    COpterecenjeApp::SetUp(list);
    const CId obican = Slucaj(L"A", 1);
    const CId ul = Slucaj(L"UL", 2, UticajnaLinija);
    CGraficki graficki;
    EXPECT_EQ(AOpterecenjeInterface::Create(&graficki), nullptr);
    COpterecenje element;
    element.SetSlOptId(obican);
    auto iface = AOpterecenjeInterface::Create(&element);
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->GetSlucajOpterecenja(), obican);
    iface->SetSlucajOpterecenja(ul);
    EXPECT_EQ(element.GetSlOptId(), ul);
    // Only an ordinary stored load case can carry the element.
    EXPECT_EQ(iface->OdbijaSlucajOpterecenja(obican.GetValue()), 0);
    for (const int id : {ul.GetValue(), 999, -1})
        EXPECT_EQ(iface->OdbijaSlucajOpterecenja(id), 1) << id;
}

TEST_F(SetUpTest, ModuleEntryRefusesAMissingListAndLetsTheHostsTheoryAndHandlerThrough) {
    // (The hosts' own tests find every command and service of the loaded module.)
    EXPECT_EQ(VortaModuleSetUp(nullptr), 0);
    COptionInfoList list;
    ASSERT_EQ(VortaModuleSetUp(&list), 1);
    CLoadsServices::SetTeorija(2);
    EXPECT_EQ(COpterecenjeApp::gbTeorija, 2);
    const ChangeLoadCaseHandler handler = [](const CGeneralizedLoadCase&, int) { return 7; };
    CLoadsServices::PostaviChangeLoadCaseTo(handler);
    EXPECT_EQ(COpterecenjeApp::ChangeLoadCaseTo, handler);
}

TEST_F(SetUpTest, ExampleModelIsConsistentAndReportedInTables) {
    opterecenje::NapraviPrimer();
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();
    EXPECT_EQ(m_base->Count(CBaseManager::ModelType), 1);
    opterecenje::NapraviPrimer(); // a document that holds loads is left as it is
    EXPECT_EQ(m_base->Count(CBaseManager::SlucajOpterecenjaType), 11);

    CLoadsReport r;
    opterecenje::Izvestaj(r);
    ASSERT_EQ(r.tables.size(), 5u);
    const auto& slucajevi = Redovi(r, L"Slucajevi opterecenja");
    ASSERT_EQ(slucajevi.size(), 11u);
    EXPECT_EQ(r.tables[0].header.size(), slucajevi[0].size());
    // Permanent load case 1 with its g marker and factor, alternating wind X that never goes
    // with wind Y, seismic X, and the SRSS case.
    EXPECT_EQ(std::vector<CString>(slucajevi[0].begin(), slucajevi[0].begin() + 5),
              (std::vector<CString>{L"1", L"Sopstvena tezina", L"1", L"1.35", L"da"}));
    EXPECT_EQ((std::vector<CString>{slucajevi[6][1], slucajevi[6][5], slucajevi[6][10],
                                    slucajevi[8][6], slucajevi[10][8]}),
              (std::vector<CString>{L"Vetar X", L"da", L"8", L"da", L"IX+X"}));
    const auto& kombinacije = Redovi(r, L"Kombinacije opterecenja");
    ASSERT_EQ(kombinacije.size(), 6u);
    EXPECT_EQ(
        std::vector<CString>(kombinacije[0].begin() + 1, kombinacije[0].begin() + 7),
        (std::vector<CString>{L"1.35xI+1.35xII+1.50xIII", L"da", L"1.35", L"1.35", L"1.50", L""}));
    EXPECT_EQ(kombinacije[5][1], CString(L"I+II+0.30xIII+0.30xIV+0.30xV+XI"));
    EXPECT_EQ(Redovi(r, L"Anvelope"),
              (std::vector<std::vector<CString>>{{L"1", L"Sve kombinacije", L"12-17", L"0"}}));
    const auto& skala = Redovi(r, L"Globalna skala opterecenja");
    ASSERT_EQ(skala.size(), 18u);
    EXPECT_EQ(skala[11], (std::vector<CString>{L"kombinacija", L"1", L"1.35xI+1.35xII+1.50xIII",
                                               L"11", L"12"}));
    const auto sume = Redovi(r, L"Kontrolne sume");
    ASSERT_GE(sume.size(), 3u);
    EXPECT_EQ(sume[2][1], CString::Formatted(L"%08X", CSlucajOpterecenja::GetCRCsvihSRSSopt()));
    // A change that matters to results changes the first sum.
    Change<CSlucajOpterecenja>(m_base->Ids(CBaseManager::SlucajOpterecenjaType)[0],
                               [](CSlucajOpterecenja& s) { s.SetKoeficijent(1.0); });
    CLoadsReport posle;
    opterecenje::Izvestaj(posle);
    EXPECT_NE(Redovi(posle, L"Kontrolne sume")[0][1], sume[0][1]);
}
