// Setting the module up: the commands and the selector it registers, the host pointers it
// fills, the load interface of the assembly library, the services a host calls through
// CLoadsServices, the report tables and the example model.
#include "RecordingHost.h"

#include "assembly/Opterecenje.h"
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/ModuleLoader.h"
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
        COpterecenjeApp::gfnOdradiSlucajeviOpterecenjaDlg = nullptr;
        COpterecenjeApp::gfnOdradiOdabirOpterecenjaDlg = nullptr;
        COpterecenjeApp::gfnOdradiKombinacijeOpterecenjaDlg = nullptr;
        COpterecenjeApp::gfnOdradiStabilnostDlg = nullptr;
        ServicesTest::TearDown();
    }
};

int g_nPozvan = 0;
int Dijalog() {
    ++g_nPozvan;
    return 1;
}

/// The rows of the table with that title.
const CLoadsReport::Table& Tabela(const CLoadsReport& r, const CString& naslov) {
    auto it = std::find_if(r.tables.begin(), r.tables.end(),
                           [&](const CLoadsReport::Table& t) { return t.title == naslov; });
    if (it == r.tables.end())
        throw std::runtime_error("no table " + naslov.ToUtf8());
    return *it;
}

} // namespace

TEST_F(SetUpTest, RegistersTheEightCommandsInOrder) {
    COptionInfoList list;
    COpterecenjeApp::SetUp(list);
    ASSERT_EQ(list.GetSize(), 8);

    struct Ocekivano {
        int id;
        const wchar_t* naziv;
        const wchar_t* savet;
        int mode;
        OptionFunction function;
        OptionUpdateFunction update;
        int icon;
        int priority;
        const wchar_t* parent;
        bool separator;
    };
    const Ocekivano ocekivano[] = {
        {3517, L"Slucajevi opterecenja", L"", 1, &COpterecenjeApp::OnSlucajeviOpterecenja,
         &COpterecenjeApp::UpdateEnabled, CButtonST::h24IconSlOpt, 3000, L"Opterecenje", false},
        {3703, L"", L"Prethodni slucaj opterecenja", 7, &COpterecenjeApp::OnPrethodniSlOpt,
         &COpterecenjeApp::UpdatePrevSlOpt, CButtonST::h24IconPrevSlOpt, 3004, L"Opterecenje",
         false},
        {3704, L"", L"Sledeci slucaj opterecenja", 7, &COpterecenjeApp::OnSledeciSlOpt,
         &COpterecenjeApp::UpdateNextSlOpt, CButtonST::h24IconNextSlOpt, 3008, L"Opterecenje",
         false},
        {3518, L"Kombinacije opterecenja", L"", 1, &COpterecenjeApp::OnKombinacijeOpterecenja,
         &COpterecenjeApp::UpdateEnabled, CButtonST::h24IconSlOptKomb, 3100, L"Opterecenje", false},
        {0, L"", L"", 1, nullptr, nullptr, 0, 3200, L"Opterecenje", true},
        {3403, L"", L"", 7, &COpterecenjeApp::OnCombo, &COpterecenjeApp::UpdateComboCtrl, 0, 6215,
         L"", false},
        {3519, L"Slucajevi opterecenja", L"", 4, &COpterecenjeApp::OnSlucajeviOpterecenja2,
         &COpterecenjeApp::UpdateEnabled, CButtonST::h24IconSlOpt, 1990, L"Uticaji", false},
        {0, L"", L"", 4, nullptr, nullptr, 0, 1995, L"Uticaji", true},
    };
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(i + 1);
        const COptionInfo& info = list.GetAt(i);
        const Ocekivano& o = ocekivano[i];
        EXPECT_EQ(info.m_nId, o.id);
        EXPECT_EQ(info.m_strName, CString(o.naziv));
        EXPECT_EQ(info.m_strTip, CString(o.savet));
        EXPECT_EQ(info.m_nMode, o.mode);
        EXPECT_EQ(info.m_pFunction, o.function);
        EXPECT_EQ(info.m_pUpdate, o.update);
        EXPECT_EQ(info.m_nIcon, o.icon);
        EXPECT_EQ(info.m_nPriority, o.priority);
        EXPECT_EQ(info.m_strParent, CString(o.parent));
        EXPECT_EQ(info.m_bSeparator, o.separator);
        EXPECT_EQ(info.m_bCombo, i == 5);
    }
    EXPECT_EQ(list.GetAt(5).m_nComboWidth, 210);

    EXPECT_EQ(CMainFrame::UpdateCombo, &COpterecenjeApp::UpdateCombo);
    EXPECT_EQ(CModel::SnimiUskladisteneKombinacije,
              &CKombOptItemArray::SnimiUskladisteneKombinacije);
    EXPECT_EQ(CModel::UcitajUskladisteneKombinacije,
              &CKombOptItemArray::UcitajUskladisteneKombinacije);
    for (int tip : {CBaseManager::SlucajOpterecenjaType, CBaseManager::KombinacijaOpterecenjaType,
                    CBaseManager::SkladisteType, CBaseManager::AnvelopaOpterecenjaType}) {
        EXPECT_TRUE(CObjBase::IsRegistered(tip));
        EXPECT_TRUE(CObjBase::IsPersistent(tip));
    }
}

TEST_F(SetUpTest, EditorCommandsRunTheirEditorsOnceTheyAreThere) {
    EXPECT_EQ(COpterecenjeApp::OnSlucajeviOpterecenja(), 0);
    EXPECT_EQ(COpterecenjeApp::OnSlucajeviOpterecenja2(), 0);
    EXPECT_EQ(COpterecenjeApp::OnKombinacijeOpterecenja(), 0);
    COpterecenjeApp::gfnOdradiSlucajeviOpterecenjaDlg = &Dijalog;
    COpterecenjeApp::gfnOdradiOdabirOpterecenjaDlg = &Dijalog;
    COpterecenjeApp::gfnOdradiKombinacijeOpterecenjaDlg = &Dijalog;
    g_nPozvan = 0;
    EXPECT_EQ(COpterecenjeApp::OnSlucajeviOpterecenja(), 0);
    EXPECT_EQ(COpterecenjeApp::OnSlucajeviOpterecenja2(), 0);
    EXPECT_EQ(COpterecenjeApp::OnKombinacijeOpterecenja(), 0);
    EXPECT_EQ(g_nPozvan, 3);
}

TEST_F(SetUpTest, StabilityParametersChangeOnlyWhenTheDialogIsConfirmed) {
    CStabilnostParams params;
    params.SetOpsegZaDelta(50.0);
    EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), 0);

    COpterecenjeApp::gfnOdradiStabilnostDlg = [](void*, CStabilnostParams& p) {
        p.SetOpsegZaDelta(7.0);
        return 0; // cancelled
    };
    EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), 0);
    EXPECT_EQ(params.GetOpsegZaDelta(), 50.0);

    COpterecenjeApp::gfnOdradiStabilnostDlg = [](void*, CStabilnostParams& p) {
        p.SetOpsegZaDelta(7.0);
        return 1;
    };
    EXPECT_EQ(COpterecenjeApp::OnStabilnost(nullptr, params), 1);
    EXPECT_EQ(params.GetOpsegZaDelta(), 7.0);
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

    EXPECT_EQ(iface->OdbijaSlucajOpterecenja(obican.GetValue()), 0);
    EXPECT_EQ(iface->OdbijaSlucajOpterecenja(ul.GetValue()), 1);
    EXPECT_EQ(iface->OdbijaSlucajOpterecenja(999), 1);
    EXPECT_EQ(iface->OdbijaSlucajOpterecenja(-1), 1);
}

TEST_F(SetUpTest, ModuleEntryFillsTheHostsLoadServices) {
    EXPECT_EQ(VortaModuleSetUp(nullptr), 0);
    COptionInfoList list;
    ASSERT_EQ(VortaModuleSetUp(&list), 1);
    EXPECT_EQ(list.GetSize(), 8);
    ASSERT_NE(CLoadsServices::Brojevi, nullptr);
    ASSERT_NE(CLoadsServices::Izvestaj, nullptr);
    ASSERT_NE(CLoadsServices::NapraviPrimer, nullptr);

    CLoadsServices::NapraviPrimer();
    int nSlOpt = 0, nKomb = 0, nAnv = 0;
    CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
    EXPECT_EQ(nSlOpt, 11);
    EXPECT_EQ(nKomb, 6);
    EXPECT_EQ(nAnv, 1);
    EXPECT_EQ(CLoadsServices::UkupanBrojSloptOKombinacija(), 17);
    CLoadsServices::SetTeorija(2);
    EXPECT_EQ(CLoadsServices::GetTeorija(), 2);
    EXPECT_EQ(COpterecenjeApp::gbTeorija, 2);
    CArray<double> f;
    CLoadsServices::FaktoriZaIspis(11, f);
    EXPECT_EQ(f.GetSize(), 17);
    CLoadsServices::FaktoriZaProracun(11, f);
    ASSERT_EQ(f.GetSize(), 11);
    EXPECT_EQ(f[0], 1.35);
    EXPECT_EQ(f[2], 1.5);
}

TEST_F(SetUpTest, ExampleModelIsConsistentAndReportedInTables) {
    opterecenje::NapraviPrimer();
    CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva();
    EXPECT_EQ(m_base->Count(CBaseManager::ModelType), 1);
    // A document that holds loads is left as it is.
    opterecenje::NapraviPrimer();
    EXPECT_EQ(m_base->Count(CBaseManager::SlucajOpterecenjaType), 11);

    CLoadsReport r;
    opterecenje::Izvestaj(r);
    ASSERT_EQ(r.tables.size(), 5u);

    const auto& slucajevi = Tabela(r, L"Slucajevi opterecenja");
    ASSERT_EQ(slucajevi.rows.size(), 11u);
    EXPECT_EQ(slucajevi.header.size(), slucajevi.rows[0].size());
    EXPECT_EQ(slucajevi.rows[0][0], CString(L"1"));
    EXPECT_EQ(slucajevi.rows[0][1], CString(L"Sopstvena tezina"));
    EXPECT_EQ(slucajevi.rows[0][2], CString(L"1")); // g marker
    EXPECT_EQ(slucajevi.rows[0][3], CString(L"1.35"));
    EXPECT_EQ(slucajevi.rows[0][4], CString(L"da")); // permanent
    EXPECT_EQ(slucajevi.rows[6][1], CString(L"Vetar X"));
    EXPECT_EQ(slucajevi.rows[6][5], CString(L"da")); // alternating
    EXPECT_EQ(slucajevi.rows[6][10], CString(L"8")); // never with wind Y
    EXPECT_EQ(slucajevi.rows[7][10], CString(L"7"));
    EXPECT_EQ(slucajevi.rows[8][6], CString(L"da"));    // seismic X
    EXPECT_EQ(slucajevi.rows[10][8], CString(L"IX+X")); // the SRSS case
    EXPECT_EQ(slucajevi.rows[10][6], CString());

    const auto& kombinacije = Tabela(r, L"Kombinacije opterecenja");
    ASSERT_EQ(kombinacije.rows.size(), 6u);
    EXPECT_EQ(kombinacije.header.size(), 3u + 11u);
    EXPECT_EQ(kombinacije.header[3], CString(L"I"));
    EXPECT_EQ(kombinacije.rows[0][1], CString(L"1.35xI+1.35xII+1.50xIII"));
    EXPECT_EQ(kombinacije.rows[0][2], CString(L"da"));
    EXPECT_EQ(kombinacije.rows[0][5], CString(L"1.50"));
    EXPECT_EQ(kombinacije.rows[0][6], CString());
    EXPECT_EQ(kombinacije.rows[5][1], CString(L"I+II+0.30xIII+0.30xIV+0.30xV+XI"));

    const auto& anvelope = Tabela(r, L"Anvelope");
    ASSERT_EQ(anvelope.rows.size(), 1u);
    EXPECT_EQ(anvelope.rows[0], (std::vector<CString>{L"1", L"Sve kombinacije", L"12-17", L"0"}));

    const auto& skala = Tabela(r, L"Globalna skala opterecenja");
    ASSERT_EQ(skala.rows.size(), 18u);
    EXPECT_EQ(skala.rows[11], (std::vector<CString>{L"kombinacija", L"1",
                                                    L"1.35xI+1.35xII+1.50xIII", L"11", L"12"}));
    EXPECT_EQ(skala.rows[17][4], CString(L"18"));

    const auto& sume = Tabela(r, L"Kontrolne sume");
    ASSERT_GE(sume.rows.size(), 3u);
    EXPECT_EQ(sume.rows[2][1],
              CString::Formatted(L"%08X", CSlucajOpterecenja::GetCRCsvihSRSSopt()));
    // A change that matters to results changes the first sum.
    {
        CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
        bm.Open(CBaseManager::Write);
        bm.Select();
        dynamic_cast<CSlucajOpterecenja*>(bm.GetW(bm.GetFirst()))->SetKoeficijent(1.0);
        bm.Close();
    }
    CLoadsReport posle;
    opterecenje::Izvestaj(posle);
    EXPECT_NE(Tabela(posle, L"Kontrolne sume").rows[0][1], sume.rows[0][1]);
}
