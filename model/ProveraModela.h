#pragma once
// The check of a model read from a file against the invariants that the loads module keeps.
#include "framework/String.h"

class CObjBase;

/// Checks the loads of a model that was just read into base (which need not be the current
/// document):
/// - the N load cases carry the ordinals 1..N, each once, and finite coefficients; an SRSS
///   unit names load cases 1..N, each at most once, with finite factors;
/// - the M combinations carry the ordinals 1..M, each once, and finite coefficients;
/// - the E envelopes carry the numbers 1..E, each once.
/// Entries of combinations that name a load case that does not exist, or one named before in
/// the same combination, are removed by the consistency repair of combinations, generated
/// names are made anew, and one warning in the host's message box lists the combinations that
/// were repaired; the repair cannot be undone. Anything else that is wrong gives false and
/// what is wrong.
bool ProveriUcitaniModel(CObjBase& base, CString& greska);
