// A stored combination set: the combinations with a snapshot of the load cases they were made
// for, so that they can be taken back into a model whose load cases have changed since.
#include "model/Skladiste.h"

#include "diag/Assert.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"

namespace {

const char* const kSource = "Skladiste";

} // namespace

CSkladiste::CSkladiste(const CSkladiste& src) : CPooledObj() {
    gfnAssert(this == validAdr, "this == validAdr", kSource, __LINE__);
    Copy(src);
}

CSkladiste& CSkladiste::operator=(const CSkladiste& src) {
    Copy(src);
    return *this;
}

void CSkladiste::Set(const CKombOptItemArray& kombinacije) {
    if (&kombinacije != &m_arrKombinacije)
        m_arrKombinacije = kombinacije;
    m_arrSlOpt.RemoveAll();

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    bm.Select(CSlucajOpterecenja::Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        gfnAssert(pSlOpt != nullptr, "pSlOpt", kSource, __LINE__);
        CString naziv = pSlOpt->GetNaziv(0);
        if (pSlOpt->JeLiNDA() && CModelGlobals::pfnNapraviImeDDASlOpt != nullptr)
            CModelGlobals::pfnNapraviImeDDASlOpt(naziv);
        m_arrSlOpt.AddNew(naziv, pSlOpt->DajRedniBroj(), 0, pSlOpt->GetgMarker(),
                          pSlOpt->IsUticajnaLinija() ? 1 : 0, pSlOpt->GetId());
    }
    bm.Close();
}

int CSkladiste::ToFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(1);
    m_arrKombinacije.ToFiller(f);
    m_arrSlOpt.ToFiller(f);
    return 1;
}

int CSkladiste::FromFiller(CFiller& f) {
    if (!CObj::FromFiller(f) || f.IsError())
        return 0;
    if (CTrFiller::ReadVersion(f, kSource, 1, 1) == 0)
        return 0;
    m_arrKombinacije.FromFiller(f);
    m_arrSlOpt.FromFiller(f);
    return f.IsError() ? 0 : 1;
}
