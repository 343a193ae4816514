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
    /// Stores the combinations with a snapshot taken elsewhere (a stored set brought from
    /// another file): the combinations name the snapshot's load cases by their ids.
    void Postavi(const CKombOptItemArray& kombinacije, const CSlOptItemArray& slucajevi) {
        m_arrKombinacije = kombinacije;
        m_arrSlOpt = slucajevi;
    }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

private:
    CKombOptItemArray m_arrKombinacije;
    CSlOptItemArray m_arrSlOpt;
};
