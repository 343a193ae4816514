// The host's services for the loads module: selector list and frame, message boxes, the
// model's records and the load interface factory.
#include "assembly/Opterecenje.h"
#include "host/MainFrame.h"
#include "host/MessageBox.h"
#include "host/Model.h"

#include <gtest/gtest.h>

namespace {

std::vector<uint8_t> RecordBytes(const CObj& obj) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    obj.ToFiller(f);
    f.Close();
    return f.Buffer();
}

class CTestFrame : public CMainFrame {
public:
    CId GetCurrentSloptId(int& number) const override {
        number = 3;
        return CId(12);
    }
    int GetBrojTekuceFazeGradjenja() const override { return 0; }
    bool IsCommandActive() const override { return false; }
    bool IsResultsMode() const override { return true; }
    void Pane0Event_SlucajOpterecenja(const CString&, const CId&, int) override {}
    void Pane2Event_UpdateUnit() override {}
    void Repaint() override {}
};

class CTestInterface : public AOpterecenjeInterface {
public:
    using AOpterecenjeInterface::AOpterecenjeInterface;
    CId GetSlucajOpterecenja() const override { return m_pOpterecenje->GetSlOptId(); }
    void SetSlucajOpterecenja(const CId& id) override { m_pOpterecenje->SetSlOptId(id); }
    int OdbijaSlucajOpterecenja(int) const override { return 0; }
};

AOpterecenjeInterface* MakeInterface(CGraficki* object) {
    return new CTestInterface(static_cast<COpterecenje*>(object));
}

} // namespace

TEST(SelectorList, KeepsTextsAndClearsASelectionOutsideTheList) {
    CSelectorList list;
    EXPECT_EQ(list.GetCurSel(), -1);
    EXPECT_EQ(list.AddString(L"I"), 0);
    EXPECT_EQ(list.AddString(L"II"), 1);
    EXPECT_EQ(list.SetCurSel(1), 1);
    EXPECT_EQ(list.GetText(1), CString(L"II"));
    EXPECT_EQ(list.GetText(2), CString());
    EXPECT_EQ(list.SetCurSel(2), -1);
    EXPECT_EQ(list.GetCurSel(), -1);
    list.SetCurSel(0);
    list.ResetContent();
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetCurSel(), -1);

    CTestFrame frame;
    CMainFrame::Install(&frame);
    ASSERT_EQ(CMainFrame::Get(), &frame);
    CMainFrame::Get()->Combo().AddString(L"G");
    EXPECT_EQ(frame.Combo().GetCount(), 1);
    CMainFrame::Install(nullptr);
    EXPECT_EQ(CMainFrame::Get(), nullptr);
}

TEST(VortaMessageBox, HeadlessBoxWritesToStandardErrorAndAnswersOk) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Brisanje šablona", L"Upozorenje",
                                            CVortaMessageBox::MB_YESNO),
              CVortaMessageBox::IDOK);
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Tekst", L"Pitanje", CVortaMessageBox::MB_OK,
                                            {L"Prvo", L"Drugo", L"Treće"}),
              1);
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Upozorenje\nBrisanje šablona\n"), std::string::npos);
    EXPECT_NE(err.find("Pitanje\nTekst\n"), std::string::npos);

    std::vector<CString> seen;
    CVortaMessageBox::SetPresenter([&](const CString& text, const CString& caption, unsigned type,
                                       const std::vector<CString>& buttons) {
        seen = {text, caption};
        seen.insert(seen.end(), buttons.begin(), buttons.end());
        return static_cast<int>(type) + static_cast<int>(buttons.size());
    });
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"a", L"b", CVortaMessageBox::MB_YESNOCANCEL), 3);
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"a", L"b", 0, {L"x", L"y"}), 2);
    EXPECT_EQ(seen, (std::vector<CString>{L"a", L"b", L"x", L"y"}));
    CVortaMessageBox::SetPresenter(nullptr);
}

TEST(ModelRecord, ModelAndLoadRecordsRoundTripAndRefuseOtherVersions) {
    RegisterHostClasses();
    RegisterHostClasses();
    for (int type = CBaseManager::ModelType; type <= CBaseManager::UticajnaLinijaTackastaType;
         ++type) {
        EXPECT_TRUE(CObjBase::IsPersistent(type)) << type;
        CObj* obj = CObjBase::CreateObject(type);
        ASSERT_NE(obj, nullptr);
        EXPECT_EQ(obj->GetType(), type);
        obj->Destroy(1);
    }

    CModel model;
    model.SetId(CId(1));
    model.SetAnaliza(2);
    EXPECT_EQ(RecordBytes(model),
              (std::vector<uint8_t>{1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0}));
    CModel copy(model);
    EXPECT_EQ(copy.GetAnaliza(), 2);
    EXPECT_EQ(copy.GetId(), CId(1));

    CPrednaprezanje load;
    load.SetSlOptId(CId(9));
    load.SetIntenzitet(-2.5);
    CPrednaprezanje loadCopy;
    loadCopy = load;
    EXPECT_EQ(loadCopy.GetSlOptId(), CId(9));
    EXPECT_EQ(loadCopy.GetIntenzitet(), -2.5);
    EXPECT_EQ(RecordBytes(loadCopy).size(), 12u + 4u + 4u + 8u);

    std::vector<uint8_t> bytes = RecordBytes(model);
    bytes[12] = 2;
    CFiller f;
    f.SetBuffer(bytes);
    f.Open(CFiller::Mode::Read);
    CModel read;
    EXPECT_EQ(read.FromFiller(f), 0);
    EXPECT_EQ(f.GetErrorMessage(), CString(L"Object version error! Version: 2"));
    EXPECT_EQ(f.GetErrorSource(), "Model");
    EXPECT_EQ(read.GetAnaliza(), 1);
}

TEST(LoadInterface, CreateUsesTheFactoryForLoadElementsOnly) {
    COpterecenje element;
    CGraficki other;
    AOpterecenjeInterface::RegisterFactory(nullptr);
    EXPECT_EQ(AOpterecenjeInterface::Create(&element), nullptr);
    AOpterecenjeInterface::RegisterFactory(&MakeInterface);
    EXPECT_EQ(AOpterecenjeInterface::GetFactory(), &MakeInterface);
    EXPECT_EQ(AOpterecenjeInterface::Create(&other), nullptr);
    EXPECT_EQ(AOpterecenjeInterface::Create(nullptr), nullptr);
    std::unique_ptr<AOpterecenjeInterface> iface = AOpterecenjeInterface::Create(&element);
    ASSERT_NE(iface, nullptr);
    iface->SetSlucajOpterecenja(CId(4));
    EXPECT_EQ(element.GetSlOptId(), CId(4));
    AOpterecenjeInterface::RegisterFactory(nullptr);
}
