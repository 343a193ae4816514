#pragma once
// Model-wide operations on the load cases, for the load case list editor and for any host: the
// load cases as an editable list, written back in one undo step with every consequence, and
// the single operations built on it (delete, move, copy one load case).
//
// Writing a list back:
// - stored load cases the list lacks are deleted, and with them every combination that
//   contains them and every SRSS case that combines them (again with its combinations), as
//   the removal of SRSS cases does; the surviving combinations are numbered 1..M again;
// - new cases are inserted; a copy starts from the stored case it copies (SRSS unit and
//   influence line included) and the host is asked to copy that case's individual loads;
// - the cases are numbered 1..N in list order, and every ordinal that refers to a load case
//   follows: SRSS units, envelope selections (which also follow the combinations, whose
//   global ordinals move with the number of load cases), the multimodal tone map, and the
//   generated names of combinations. Envelopes whose loads are all gone, or whose selection no
//   longer fit the loads, are deleted.
//
// SRSS cases stay after all other load cases (the SRSS editor numbers them so): the single
// operations keep a case within its block.
#include "framework/String.h"
#include "model/LoadCaseDescriptions.h"
#include "model/SlOptItem.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/Id.h"

#include <optional>
#include <vector>

namespace opterecenje {

/// One load case as the list editor holds it.
struct CSlucajListe {
    /// The stored load case; invalid for a new one.
    CId id;
    /// For a new case that copies a stored one: that case.
    CId kopijaOd;
    /// The case's ordinal when the list was read (0 for a case the store does not hold); the
    /// SRSS unit names load cases by these ordinals.
    int nStariRedniBroj = 0;
    /// What the user sets (name, g marker, coefficient, enters seismic analysis) and what the
    /// combination editor sets (permanent, alternating, rule lists), carried unchanged.
    CSlOptItem item;
    int nSeizmicki = 0;
    int nNDA = 0;
    int nBrojMultimodalnih = 0;
    /// Shown only.
    eUticajUticajneLin eUticaj = UL_NIJEDNA;
    /// The SRSS unit of an SRSS case, over the ordinals as read; shown only.
    std::optional<CLoadCaseUnit> srss;

    bool JeSRSS() const { return srss.has_value() && !srss->IsEmpty(); }
};

/// The model's load cases in ordinal order.
std::vector<CSlucajListe> DajSlucajeveOpterecenja();

/// What deleting load cases takes along.
struct CPosledice {
    /// SRSS cases that combine a deleted case (directly or through another SRSS case).
    std::vector<CId> srss;
    /// Combinations that contain a deleted case or one of those SRSS cases.
    int nKombinacija = 0;
    /// Envelopes left with nothing.
    int nAnvelopa = 0;
};
CPosledice PosledicaBrisanja(const std::vector<CId>& slucajevi);

/// Makes the model's load cases what the list says (see above), in one undo step made only
/// when something changes. noviIdovi, when given, receives the id of every entry of the list
/// (of the inserted ones too). True when anything was written.
bool PrimeniSlucajeveOpterecenja(const std::vector<CSlucajListe>& lista,
                                 std::vector<CId>* noviIdovi = nullptr);

/// Deletes a load case with its consequences; false when there is no such case.
bool BrisiSlucajOpterecenja(const CId& id);
/// Moves a load case to the ordinal, the cases between moving by one; false when there is no
/// such case or the ordinal lies outside its block (ordinary cases, then SRSS cases).
bool PremestiSlucajOpterecenja(const CId& id, int noviRedniBroj);
/// A copy of a load case under a new name, just after it (an SRSS case at the end); the host
/// copies its individual loads. Returns the copy's id, invalid when there is no such case.
CId KopirajSlucajOpterecenja(const CId& id, const CString& naziv);

} // namespace opterecenje
