// The base record of every persistent object: version, id and attribute word.
#include "objbase/Obj.h"

void CObj::Copy(const CObj& src) {
    // The base record carries the id and the attribute word; nothing else is copied.
    m_Id = src.m_Id;
    m_nAtribut = src.m_nAtribut;
}

void CObj::Destroy(int bDelete) {
    if (m_bProtected)
        return;
    if (bDelete)
        delete this;
}

int CObj::ToFiller(CFiller& f) const {
    f.WriteInt32(BaseVersion);
    f.WriteInt32(m_Id.GetValue());
    f.WriteInt32(m_nAtribut);
    return 1;
}

int CObj::FromFiller(CFiller& f) {
    if (f.IsError())
        return 0;
    int32_t version = 0;
    if (!f.ReadInt32(version))
        return 0;
    if (version != BaseVersion) {
        CTrFiller::SetObjVerErr(f, "Obj", version);
        return 0;
    }
    int32_t id = -1;
    int32_t atribut = 0;
    if (!f.ReadInt32(id) || !f.ReadInt32(atribut))
        return 0;
    m_Id = CId(id);
    m_nAtribut = atribut;
    return 1;
}

void CObj::UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const {
    CCrcFiller crc;
    crc.WriteInt32(m_nAtribut);
    const uint32_t sum = crc.GetCRC();
    crc1 += sum;
    crc2 += sum;
    crc3 += sum;
}
