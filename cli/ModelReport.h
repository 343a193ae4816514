#pragma once
// What `show` prints about the current document: the loads module's report tables, the
// global scale of loads, the factor vectors of every load and the load selector in both of
// the host's modes.
#include "HeadlessFrame.h"
#include "TablePrinter.h"
#include "host/LoadsServices.h"

#include <optional>
#include <ostream>

/// The numbers of loads on the global scale of the current document.
struct CLoadCounts {
    int nSlOpt = 0;
    int nKomb = 0;
    int nAnv = 0;
    int Total() const { return nSlOpt + nKomb + nAnv; }
};

CLoadCounts CountLoads();

/// The ranges of the global scale: load cases, combinations, envelopes.
CTextTable ScaleTable(const CLoadCounts& counts);

/// One row per load (zero-based 0 .. total - 1, envelopes included) with the factor vector
/// the service gives for it.
using FactorService = void (*)(int zerobased, CArray<double>& f);
CTextTable FactorTable(const std::string& title, const CLoadCounts& counts, FactorService service);

/// The same table with its rows in one buffer, from the module's vectors of every load when it
/// offers them (one walk for all loads), otherwise load by load through `service`.
using AllFactorsService = void (*)(const CLoadsServices::FactorRowVisitor& visit);
CRowsTable FactorRows(const std::string& title, const CLoadCounts& counts, FactorService service,
                      AllFactorsService all);

/// The same table with each distinct factor formatted once and the cells kept as its number;
/// nothing when the model has too many distinct factors for that.
std::optional<CCodedTable> CodedFactorRows(const std::string& title, const CLoadCounts& counts,
                                           FactorService service, AllFactorsService all);
/// Prints the table of factors, kept as numbers of distinct factors where it can be.
void PrintFactors(std::ostream& out, const std::string& title, const CLoadCounts& counts,
                  FactorService service, AllFactorsService all);

/// A factor as the tables show it: at least two decimals, more only when the value has them.
std::string FormatFactor(double value);

/// Fills the selector in the given mode as the host does (UpdateCombo(-1)) and prints it with
/// what was announced for the status pane.
void PrintSelector(std::ostream& out, CHeadlessFrame& frame, bool resultsMode);

/// Everything `show` prints, in order.
void PrintModel(std::ostream& out, CHeadlessFrame& frame);
