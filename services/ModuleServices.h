#pragma once
// Services of the module that a host reaches through CLoadsServices: the loads of the current
// document as tables, and an example model.
struct CLoadsReport;

namespace opterecenje {

/// Load cases, combinations, envelopes, the global scale and the checksums of the current
/// document as tables.
void Izvestaj(CLoadsReport& report);

/// Fills the current document with an example model of a three-storey building: permanent,
/// imposed, snow, wind and seismic load cases with an SRSS case, generated combinations and an
/// envelope over all combinations. A document that already holds loads is left as it is.
void NapraviPrimer();

} // namespace opterecenje
