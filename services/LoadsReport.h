#pragma once
// The loads of the current document read for the report tables: the objects in the order of
// the global scale, the load cases' ordinals by id and the checksums. Both ways of handing
// the tables to a host (walked row by row, or rows made when asked for) start from it.
#include "host/LoadsServices.h"

#include <cstdint>
#include <map>
#include <vector>

class CBaseManager;
class CSlucajOpterecenja;
class CKombinacijaOpterecenja;
class CAnvelopaOpterecenja;

namespace opterecenje {

struct CUcitaniIzvestaj {
    std::vector<const CSlucajOpterecenja*> slucajevi;
    std::vector<const CKombinacijaOpterecenja*> kombinacije;
    std::vector<const CAnvelopaOpterecenja*> anvelope;
    /// The ordinal of each load case by its id.
    std::map<int32_t, int> rbPoId;
    /// Whether the document has its model object (the combinations' checksums need it).
    bool bImaModel = false;
};

/// Reads the loads through the open view; the pointers live while it stays open.
CUcitaniIzvestaj UcitajIzvestaj(CBaseManager& bm);
/// The tables walked row by row; they are walked while `u` and its view live.
std::vector<CLoadsReport::TableSource> TabeleIzvestaja(const CUcitaniIzvestaj& u);

/// The rows of the checksums table: the sums of the checksums of the objects given.
std::vector<CLoadsReport::Row> Sume(const std::vector<const CSlucajOpterecenja*>& slucajevi,
                                    const std::vector<const CKombinacijaOpterecenja*>& kombinacije,
                                    const std::vector<const CAnvelopaOpterecenja*>& anvelope,
                                    bool bImaModel);

/// The rows of a load case and of an envelope as the report shows them.
CLoadsReport::Row RedSlucaja(const CSlucajOpterecenja& s, const std::map<int32_t, int>& rbPoId);
CLoadsReport::Row RedAnvelope(const CAnvelopaOpterecenja& a);

} // namespace opterecenje
