#pragma once
// CModel: the host's model object in the object store (one per document), and the host's
// records of individual loads, which the loads module only counts and reads.
//
// CModel record: the CObj base record, int32 version = 2, int32 analysis setting, int32 analysis
// theory, int32 n and n bytes: the loads module's record of the stability parameters (n = 0
// when there are none yet). Version 1 ends after the analysis setting (theory 1, no stability
// parameters); a model with those settings is written as version 1.
// Individual load record: the CObj base record, int32 version = 1, int32 id of its load case,
// float64 intensity.
#include "objbase/BaseManager.h"

#include <cstdint>
#include <vector>

class CModel : public CPooledObj<CModel, CBaseManager::ModelType> {
public:
    CModel() = default;
    CModel(const CModel& src);
    CModel& operator=(const CModel& src);

    /// The analysis setting of the model (the kind of analysis chosen by the user).
    int GetAnaliza() const { return m_nAnaliza; }
    void SetAnaliza(int value) { m_nAnaliza = value; }
    /// The analysis theory the host chose for the model (the loads module's theory switch).
    int GetTeorija() const { return m_nTeorija; }
    void SetTeorija(int value) { m_nTeorija = value; }
    /// The stability parameters as the loads module's record; empty when none were set.
    const std::vector<uint8_t>& GetStabilnost() const { return m_stabilnost; }
    void SetStabilnost(std::vector<uint8_t> record) { m_stabilnost = std::move(record); }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

    /// The stored-combinations section of the model file, filled by the loads module.
    static inline void (*SnimiUskladisteneKombinacije)(CFiller& f) = nullptr;
    static inline void (*UcitajUskladisteneKombinacije)(CFiller& f, int version) = nullptr;

private:
    int32_t m_nAnaliza = 1;
    int32_t m_nTeorija = 1;
    std::vector<uint8_t> m_stabilnost;
};

/// An individual load of the host (point, line, surface load, prestressing, moving load, ...):
/// it belongs to one load case.
template <int TypeNumber>
class CPojedinacnoOpterecenje : public CPooledObj<CPojedinacnoOpterecenje<TypeNumber>, TypeNumber> {
public:
    CPojedinacnoOpterecenje() = default;
    CPojedinacnoOpterecenje(const CPojedinacnoOpterecenje& src)
        : CPooledObj<CPojedinacnoOpterecenje<TypeNumber>, TypeNumber>() {
        this->Copy(src);
    }
    CPojedinacnoOpterecenje& operator=(const CPojedinacnoOpterecenje& src) {
        this->Copy(src);
        return *this;
    }

    const CId& GetSlOptId() const { return m_slOptId; }
    void SetSlOptId(const CId& id) { m_slOptId = id; }
    double GetIntenzitet() const { return m_dIntenzitet; }
    void SetIntenzitet(double value) { m_dIntenzitet = value; }

    int ToFiller(CFiller& f) const override {
        CObj::ToFiller(f);
        f.WriteInt32(1);
        f.WriteInt32(m_slOptId.GetValue());
        f.WriteFloat64(m_dIntenzitet);
        return 1;
    }
    int FromFiller(CFiller& f) override {
        if (!CObj::FromFiller(f))
            return 0;
        int32_t version = 0;
        if (!f.ReadInt32(version))
            return 0;
        if (version != 1) {
            CTrFiller::SetObjVerErr(f, "Model", version);
            return 0;
        }
        int32_t id = -1;
        f.ReadInt32(id);
        m_slOptId = CId(id);
        f.ReadFloat64(m_dIntenzitet);
        return f.IsError() ? 0 : 1;
    }

private:
    CId m_slOptId;
    double m_dIntenzitet = 0.0;
};

using CTackastoOpterecenje = CPojedinacnoOpterecenje<CBaseManager::TackastoOpterecenjeType>;
using CLinijskoOpterecenje = CPojedinacnoOpterecenje<CBaseManager::LinijskoOpterecenjeType>;
using CPovrsinskoOpterecenje = CPojedinacnoOpterecenje<CBaseManager::PovrsinskoOpterecenjeType>;
using CPrednaprezanje = CPojedinacnoOpterecenje<CBaseManager::PrednaprezanjeType>;
using CPokretnoOpterecenje = CPojedinacnoOpterecenje<CBaseManager::PokretnoOpterecenjeType>;
using CPomeranjeCvora = CPojedinacnoOpterecenje<CBaseManager::PomeranjeCvoraType>;
using CTempUticajUGredi = CPojedinacnoOpterecenje<CBaseManager::TempUticajUGredi>;
using CTempUticajUPloci = CPojedinacnoOpterecenje<CBaseManager::TempUticajUPloci>;
using CAksijalnoNaprezanje = CPojedinacnoOpterecenje<CBaseManager::AksijalnoNaprezanjeType>;
using CUticajnaLinijaLinijska = CPojedinacnoOpterecenje<CBaseManager::UticajnaLinijaLinijskaType>;
using CUticajnaLinijaTackasta = CPojedinacnoOpterecenje<CBaseManager::UticajnaLinijaTackastaType>;

/// Registers the host's own persistent classes (the model and the individual loads) with the
/// object base; idempotent.
void RegisterHostClasses();
