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
    // A model with the default analysis settings keeps the first version's record.
    const bool podrazumevano = m_nTeorija == 1 && m_stabilnost.empty();
    f.WriteInt32(podrazumevano ? 1 : 2);
    f.WriteInt32(m_nAnaliza);
    if (podrazumevano)
        return 1;
    f.WriteInt32(m_nTeorija);
    f.WriteInt32(static_cast<int32_t>(m_stabilnost.size()));
    if (!m_stabilnost.empty())
        f.Write(m_stabilnost.data(), 1, m_stabilnost.size());
    return 1;
}

int CModel::FromFiller(CFiller& f) {
    if (!CObj::FromFiller(f))
        return 0;
    int32_t version = 0;
    if (!f.ReadInt32(version))
        return 0;
    if (version != 1 && version != 2) {
        CTrFiller::SetObjVerErr(f, "Model", version);
        return 0;
    }
    int32_t analiza = 0;
    if (!f.ReadInt32(analiza))
        return 0;
    int32_t teorija = 1;
    std::vector<uint8_t> stabilnost;
    if (version >= 2) {
        int32_t n = 0;
        if (!f.ReadInt32(teorija) || !f.ReadInt32(n) || !f.CheckCount(n, 1))
            return 0;
        stabilnost.resize(static_cast<size_t>(n));
        if (n > 0 && !f.Read(stabilnost.data(), 1, stabilnost.size()))
            return 0;
    }
    m_nAnaliza = analiza;
    m_nTeorija = teorija;
    m_stabilnost = std::move(stabilnost);
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
