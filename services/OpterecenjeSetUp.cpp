// The module's application object, its set-up (host pointers, persistent classes, the load
// interface factory, the commands and the load selector) and the commands that open editors.
#include "services/Opterecenje.h"

#include "assembly/Opterecenje.h"
#include "host/MainFrame.h"
#include "host/Model.h"
#include "host/OptionInfo.h"
#include "model/KombOptItem.h"
#include "model/ModelRegistration.h"
#include "services/OpterecenjeInterfaceImp.h"
#include "text/Translator.h"

namespace {

/// The one application object of the module, alive as long as the module is loaded.
COpterecenjeApp theApp;

COptionInfo& Komanda(COptionInfoList& list, int id, int mode, OptionFunction function,
                     OptionUpdateFunction update, int icon, int priority, const wchar_t* parent) {
    COptionInfo& info = list.AddNew();
    info.m_nId = id;
    info.m_nMode = mode;
    info.m_pFunction = function;
    info.m_pUpdate = update;
    info.m_nIcon = icon;
    info.m_nPriority = priority;
    if (parent != nullptr)
        info.m_strParent = parent;
    return info;
}

void Separator(COptionInfoList& list, int mode, int priority, const wchar_t* parent) {
    COptionInfo& info = list.AddNew();
    info.m_bSeparator = true;
    info.m_nMode = mode;
    info.m_nPriority = priority;
    info.m_strParent = parent;
}

} // namespace

void COpterecenjeApp::SetUp(COptionInfoList& list) {
    CMainFrame::UpdateCombo = &COpterecenjeApp::UpdateCombo;
    CModel::SnimiUskladisteneKombinacije = &CKombOptItemArray::SnimiUskladisteneKombinacije;
    CModel::UcitajUskladisteneKombinacije = &CKombOptItemArray::UcitajUskladisteneKombinacije;
    RegisterLoadClasses();
    AOpterecenjeInterface::RegisterFactory(&OpterecenjeInterfaceFactory);

    Komanda(list, 3517, 1, &OnSlucajeviOpterecenja, &UpdateEnabled, CButtonST::h24IconSlOpt, 3000,
            Tr(L"Opterecenje"))
        .m_strName = Tr(L"Slucajevi opterecenja");
    Komanda(list, 3703, 7, &OnPrethodniSlOpt, &UpdatePrevSlOpt, CButtonST::h24IconPrevSlOpt, 3004,
            Tr(L"Opterecenje"))
        .m_strTip = Tr(L"Prethodni slucaj opterecenja");
    Komanda(list, 3704, 7, &OnSledeciSlOpt, &UpdateNextSlOpt, CButtonST::h24IconNextSlOpt, 3008,
            Tr(L"Opterecenje"))
        .m_strTip = Tr(L"Sledeci slucaj opterecenja");
    Komanda(list, 3518, 1, &OnKombinacijeOpterecenja, &UpdateEnabled, CButtonST::h24IconSlOptKomb,
            3100, L"Opterecenje")
        .m_strName = Tr(L"Kombinacije opterecenja");
    Separator(list, 1, 3200, Tr(L"Opterecenje"));
    Komanda(list, 3403, 7, &OnCombo, &UpdateComboCtrl, 0, 6215, nullptr).SetCombo(210);
    Komanda(list, 3519, 4, &OnSlucajeviOpterecenja2, &UpdateEnabled, CButtonST::h24IconSlOpt, 1990,
            Tr(L"Uticaji"))
        .m_strName = Tr(L"Slucajevi opterecenja");
    Separator(list, 4, 1995, Tr(L"Uticaji"));
}

int COpterecenjeApp::OnSlucajeviOpterecenja() {
    if (gfnOdradiSlucajeviOpterecenjaDlg != nullptr)
        gfnOdradiSlucajeviOpterecenjaDlg();
    return 0;
}

int COpterecenjeApp::OnSlucajeviOpterecenja2() {
    if (gfnOdradiOdabirOpterecenjaDlg != nullptr)
        gfnOdradiOdabirOpterecenjaDlg();
    return 0;
}

int COpterecenjeApp::OnKombinacijeOpterecenja() {
    if (gfnOdradiKombinacijeOpterecenjaDlg != nullptr)
        gfnOdradiKombinacijeOpterecenjaDlg();
    return 0;
}
