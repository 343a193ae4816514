#pragma once
// What the combination editor and its import dialogs read the same way: a model's load cases
// as an editable list, and coefficients as text.
#include "model/SlOptItem.h"
#include "objbase/ObjBase.h"

namespace kombpodaci {

/// The load cases of the base as an editable list, each at the slot of its ordinal, with
/// name, id, coefficient, permanent, alternating and influence-line flags and both rule
/// lists. A load case whose ordinal lies outside 1..N (a damaged model) comes after the rest.
CSlOptItemArray SlucajeviModela(CObjBase& base);

/// A coefficient as the grids show it: "%4.2f" of the value rounded to two decimals.
CString TekstKoeficijenta(double koef);

/// A number typed into a grid: the whole text (blanks around it aside) must be a finite
/// number. False, and broj unchanged, otherwise.
bool ProcitajBroj(const CString& tekst, double& broj);

} // namespace kombpodaci
