#pragma once
// Small persistent records for the object store tests, and the store's contents as records.
#include "objbase/ObjBase.h"

#include <utility>
#include <vector>

/// A record with a value and a factor; counts notifications and releases.
template <int TypeNumber>
class CTestRecord : public CPooledObj<CTestRecord<TypeNumber>, TypeNumber> {
public:
    CTestRecord() = default;
    explicit CTestRecord(int32_t value, double factor = 1.0)
        : m_nVrednost(value), m_dFaktor(factor) {}

    int ToFiller(CFiller& f) const override {
        CObj::ToFiller(f);
        f.WriteInt32(1);
        f.WriteInt32(m_nVrednost);
        f.WriteFloat64(m_dFaktor);
        return 1;
    }
    int FromFiller(CFiller& f) override {
        int32_t version = 0;
        if (!CObj::FromFiller(f) || !f.ReadInt32(version))
            return 0;
        if (version != 1) {
            CTrFiller::SetObjVerErr(f, "TestRecord", version);
            return 0;
        }
        return f.ReadInt32(m_nVrednost) && f.ReadFloat64(m_dFaktor) ? 1 : 0;
    }
    void NotifyInsert() override { ++s_nInserted; }
    void NotifyDelete() override { ++s_nDeleted; }
    void DestroyMe() { ++s_nReleased; }

    int32_t m_nVrednost = 0;
    double m_dFaktor = 1.0;

    inline static int s_nInserted = 0;
    inline static int s_nDeleted = 0;
    inline static int s_nReleased = 0;
};
using CTestZapis = CTestRecord<501>;
using CTestOznaka = CTestRecord<502>; // a second type, so that stores hold several

inline void RegisterTestRecords() {
    CObjBase::RegisterSubBase(new CTestZapis, 1);
    CObjBase::RegisterSubBase(new CTestOznaka, 1);
}

inline std::vector<uint8_t> RecordBytes(const CObj& obj) {
    CFiller f;
    f.Open(CFiller::Mode::Write);
    obj.ToFiller(f);
    f.Close();
    return f.Buffer();
}

/// Every object of a store as its type and the bytes of its record (id and fields), per type
/// in store order.
inline std::vector<std::pair<int, std::vector<uint8_t>>> Contents(const CObjBase& base) {
    std::vector<std::pair<int, std::vector<uint8_t>>> all;
    for (const int type : CObjBase::GetRegisteredTypes())
        for (const CId& id : base.Ids(type))
            all.emplace_back(type, RecordBytes(*base.Find(id)));
    return all;
}
