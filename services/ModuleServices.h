#pragma once
// Services of the module that a host reaches through CLoadsServices: the loads of the current
// document as tables, and an example model.
#include <cstdint>
#include <vector>

#include "host/LoadsServices.h"

namespace opterecenje {

/// Load cases, combinations, envelopes, the global scale and the checksums of the current
/// document as tables.
void Izvestaj(CLoadsReport& report);
/// The same tables, each handed to the visitor as it is made, their rows made as they are
/// walked.
void IzvestajPoTabelama(const CLoadsReport::TableVisitor& visit);
/// The same tables, each able to make any of its rows in UTF-8 when asked for.
CReportTables IzvestajNaZahtev();

/// Fills the current document with an example model of a three-storey building: permanent,
/// imposed, snow, wind and seismic load cases with an SRSS case, generated combinations and an
/// envelope over all combinations. A document that already holds loads is left as it is.
void NapraviPrimer();

/// Forgets the state the module keeps of the open document (selector items, loads marked
/// unstable, the active envelope, the tone map, the theory) before another one opens.
void ZaboraviDokument();

/// Runs the stability dialog over the stability parameters record the host keeps (built
/// afresh when empty, unreadable or made from other loads); true when confirmed, and the
/// record is then replaced.
bool UrediStabilnost(std::vector<uint8_t>& zapis, void* roditelj);

} // namespace opterecenje
