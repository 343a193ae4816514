// The load interface of the assembly library over one load element.
#include "services/OpterecenjeInterfaceImp.h"

#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <memory>

CId COpterecenjeInterfaceImp::GetSlucajOpterecenja() const {
    return m_pOpterecenje->GetSlOptId();
}

void COpterecenjeInterfaceImp::SetSlucajOpterecenja(const CId& id) {
    m_pOpterecenje->SetSlOptId(id);
}

int COpterecenjeInterfaceImp::OdbijaSlucajOpterecenja(int loadCaseId) const {
    CBaseManager bm(CBaseManager::SlucajOpterecenjaType);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(CId(loadCaseId)));
    const int odbija = pSlOpt == nullptr || pSlOpt->IsUticajnaLinija() ? 1 : 0;
    bm.Close();
    return odbija;
}

AOpterecenjeInterface* OpterecenjeInterfaceFactory(CGraficki* object) {
    auto* element = dynamic_cast<COpterecenje*>(object);
    if (element == nullptr)
        return nullptr;
    return std::make_unique<COpterecenjeInterfaceImp>(element).release();
}
