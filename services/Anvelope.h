#pragma once
// The model's envelopes as an editable list written back in one undo step, the selection
// texts of envelopes, and the rewriting of every envelope when the global scale of loads
// changes under it (load cases or combinations renumbered, added or deleted).
#include "framework/String.h"
#include "objbase/Id.h"

#include <vector>

class CBaseManager;

namespace opterecenje {

/// One envelope as the envelope dialog edits it; its number is its place in the list.
struct CAnvelopaListe {
    CId id; // the stored envelope; invalid for a new one
    CString naziv;
    CString izbor; // global ordinals, as in 1,3-5,12
    int nMod = 0;
};

/// The model's envelopes in number order.
std::vector<CAnvelopaListe> DajAnvelope();

/// Makes the model's envelopes what the list says, numbered 1..E in list order: stored
/// envelopes the list lacks are deleted, new ones inserted, changed ones rewritten; all in one
/// undo step, which is made only when something changes. True when anything was written.
bool PrimeniAnvelope(const std::vector<CAnvelopaListe>& lista);

/// The ordinals (ascending, without repeats) that a selection names on a scale of n loads;
/// false when the text is not a valid selection there.
bool ProcitajIzbor(const CString& izbor, int n, std::vector<int>& redniBrojevi);
/// The selection text of ordinals: ascending, runs written as first-last ("1-3,5").
CString NapisiIzbor(const std::vector<int>& redniBrojevi);

/// Rewrites the envelopes for a new global scale: novi[g - 1] is the new ordinal of the old
/// ordinal g (0: the load is gone), over the old scale of novi.size() loads. An envelope whose
/// selection does not fit the old scale, or whose loads are all gone, is deleted and the rest
/// are numbered 1..E again. With bPisi false nothing is written and the count tells what would
/// go; otherwise bm must be open for writing (the change joins the caller's undo step).
/// Returns the number of envelopes deleted.
int PreslikajAnvelope(CBaseManager& bm, const std::vector<int>& novi, bool bPisi);

} // namespace opterecenje
