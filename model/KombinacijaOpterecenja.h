#pragma once
// CKombinacijaOpterecenja: one load combination of the model as a stored object, and the two
// cascades that keep combinations consistent when load cases disappear.
#include "model/KombOptItem.h"
#include "objbase/BaseManager.h"

#include <vector>

/// Record: the base record, int32 version = 1, the item record.
class CKombinacijaOpterecenja
    : public CPooledObj<CKombinacijaOpterecenja, CBaseManager::KombinacijaOpterecenjaType> {
public:
    CKombinacijaOpterecenja() = default;
    /// Only for the object that the pool has just given out (MakeNew).
    CKombinacijaOpterecenja(const CKombinacijaOpterecenja& src);
    CKombinacijaOpterecenja& operator=(const CKombinacijaOpterecenja& src);

    CKombOptItem& Item() { return m_Item; }
    const CKombOptItem& Item() const { return m_Item; }
    uint32_t GetCRCBitanZaTeorijuII() const { return m_Item.CRC_BitanZaTeorijuII(); }

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;
    void UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const override;
    /// What UpdateCRC adds, with the model's analysis order already read (JeTeorijaII), so
    /// that the sums over many combinations read the model object once.
    void DodajCRC(uint32_t& crc1, uint32_t& crc3, bool bTeorijaII) const;
    /// Whether the model object of the open view asks for a second-order analysis, on which
    /// the combinations' third sum depends.
    static bool JeTeorijaII(CBaseManager& bm);

    /// While non-zero, neither cascade changes anything.
    static inline int bSacuvajKombinacije = 0;
    /// Deletes combinations that refer to missing load cases and renumbers the rest 1..M.
    static void BrisiKombOptKojeSadrzeNepostojeciSlOpt();
    /// Deletes every combination that contains the load case, renumbers the rest; returns
    /// how many were deleted.
    static int BrisiIzBazeSveKombOptKojeSadrzeSlOpt(CId slOpt);
    /// Rebuilds the generated names of the combinations that contain any of the load cases,
    /// after those were renumbered; combinations whose names stay are left untouched. Opens
    /// the store for writing, so it joins a step in progress.
    static void ObnoviGenerickeNazive(const std::vector<CId>& slucajevi);

private:
    CKombOptItem m_Item;
};
