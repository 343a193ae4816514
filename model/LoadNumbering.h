#pragma once
// The common scale of loads: load cases 1..N by their ordinals, combinations N+1..N+M,
// envelopes after them; and the factor vectors over that scale. The module's application
// object offers these as its services; the records use them directly.
#include "framework/Array.h"
#include "model/LoadCaseDescriptions.h"

#include <functional>

namespace LoadNumbering {

struct Counts {
    int nSlOpt = 0;
    int nKomb = 0;
    int nAnv = 0;
};
/// Numbers of stored load cases, combinations and envelopes.
Counts Count();

/// Factor vector for analysis: load cases, and combinations expanded into load cases.
void FaktoriZaProracun(int zerobased, CArray<double>& f);
/// Factor vector for printing: under theory 1 as for analysis; under any other theory over
/// load cases and combinations, a combination standing for its own results.
void FaktoriZaIspis(int zerobased, CArray<double>& f);
/// The vector of every load, zero-based 0 .. nSlOpt+nKomb+nAnv-1 in order, as FaktoriZaProracun
/// (zaIspis false) or FaktoriZaIspis (true) gives it, handed to `red` (the vector is reused
/// from one load to the next). The combinations are read once for all loads, so the time
/// grows with the model's size and the vectors' length; a model whose combinations cannot all
/// be read or name load cases outside the vector is served load by load, failing where the
/// single calls fail.
using RedFaktora = std::function<void(int zerobased, const CArray<double>& f)>;
void SviFaktori(bool zaIspis, const RedFaktora& red);
/// The load with that zero-based number as a linear unit (from the printing vector).
void ZerobasedToLoadCaseUnit(int zerobased, CLoadCaseUnit& unit);
/// The units of every load case and combination: units[z] is what ZerobasedToLoadCaseUnit
/// gives for z = 0 .. nSlOpt+nKomb-1, made in one walk of the store for callers that need
/// them all.
void SviZerobasedLoadCaseUnits(OCArray<CLoadCaseUnit>& units);

} // namespace LoadNumbering
