// The host's services for the loads module: the selector list and the headless message box.
// (The services tests use both, with a presenter of their own, and the load interface.)
#include "host/MainFrame.h"
#include "host/MessageBox.h"

#include <gtest/gtest.h>

TEST(SelectorList, KeepsTextsAndClearsASelectionOutsideTheList) {
    CSelectorList list;
    EXPECT_EQ(list.AddString(L"I"), 0);
    EXPECT_EQ(list.AddString(L"II"), 1);
    EXPECT_EQ(list.SetCurSel(1), 1);
    EXPECT_EQ(list.GetText(2), CString());
    EXPECT_EQ(list.SetCurSel(2), -1);
    EXPECT_EQ(list.GetCurSel(), -1);
    list.SetCurSel(0);
    list.ResetContent();
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetCurSel(), -1);
}

TEST(VortaMessageBox, HeadlessBoxWritesToStandardErrorAndAnswersOk) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Brisanje šablona", L"Upozorenje",
                                            CVortaMessageBox::MB_YESNO),
              CVortaMessageBox::IDOK);
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Tekst", L"Pitanje", 0, {L"Prvo", L"Drugo"}), 1);
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Upozorenje\nBrisanje šablona\n"), std::string::npos);
    EXPECT_NE(err.find("Pitanje\nTekst\n"), std::string::npos);
}
