#pragma once
// CSkladiste: a stored combination set, the combinations kept together with a snapshot of the
// model's load cases at the moment of storing.
#include "model/KombOptItem.h"
#include "model/SlOptItem.h"
#include "objbase/BaseManager.h"

/// Record: the base record, int32 version = 1, the combination list record, the load case
/// list record.
class CSkladiste : public CPooledObj<CSkladiste, CBaseManager::SkladisteType> {
public:
    CSkladiste() = default;
    /// Only for the object that the pool has just given out (MakeNew).
    CSkladiste(const CSkladiste& src);
    CSkladiste& operator=(const CSkladiste& src);

    const CKombOptItemArray& GetKombOptArr() const { return m_arrKombinacije; }
    const CSlOptItemArray& GetSlOptArr() const { return m_arrSlOpt; }

    /// Stores the combinations and takes a fresh snapshot of the model's load cases.
    void Set(const CKombOptItemArray& kombinacije);

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    CKombOptItemArray m_arrKombinacije;
    CSlOptItemArray m_arrSlOpt;
};
