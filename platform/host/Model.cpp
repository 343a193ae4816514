// The host's model record and the registration of the host's persistent classes.
#include "host/Model.h"

CModel::CModel(const CModel& src) : CPooledObj() {
    Copy(src);
}

CModel& CModel::operator=(const CModel& src) {
    if (this != &src)
        Copy(src);
    return *this;
}

int CModel::ToFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(1);
    f.WriteInt32(m_nAnaliza);
    return 1;
}

int CModel::FromFiller(CFiller& f) {
    if (!CObj::FromFiller(f))
        return 0;
    int32_t version = 0;
    if (!f.ReadInt32(version))
        return 0;
    if (version != 1) {
        CTrFiller::SetObjVerErr(f, "Model", version);
        return 0;
    }
    int32_t analiza = 0;
    if (!f.ReadInt32(analiza))
        return 0;
    m_nAnaliza = analiza;
    return 1;
}

namespace {

/// Registers one class unless it is registered already, so no prototype is made in vain.
template <class T> void Register() {
    if (!CObjBase::IsRegistered(T::Type))
        CObjBase::RegisterSubBase(new T, 1);
}

} // namespace

void RegisterHostClasses() {
    Register<CModel>();
    Register<CTackastoOpterecenje>();
    Register<CLinijskoOpterecenje>();
    Register<CPovrsinskoOpterecenje>();
    Register<CPrednaprezanje>();
    Register<CPokretnoOpterecenje>();
    Register<CPomeranjeCvora>();
    Register<CTempUticajUGredi>();
    Register<CTempUticajUPloci>();
    Register<CAksijalnoNaprezanje>();
    Register<CUticajnaLinijaLinijska>();
    Register<CUticajnaLinijaTackasta>();
}
