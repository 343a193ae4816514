#pragma once
// The commands of vorta-cli that build and change model files: a new empty model, the export
// and import of its loads (JSON, or the CSV table of combinations), the combination editor's
// work (generate, sort, remove duplicates, store and restore the stored set), and the load
// case, envelope and SRSS editors' single changes. Each change runs the module's own code,
// the editors through their presenters with the user's part played from a script, makes one
// undo step and replaces the file atomically; a change that is refused writes nothing.
#include "Commands.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

/// Writes an empty model file; an existing file is replaced only with `force`.
ExitCode RunNew(const CCommandOptions& options, bool force, std::ostream& out, std::ostream& err);

struct CInterchangeOptions {
    /// The JSON or CSV file read or written; "-" or empty for the standard streams.
    std::filesystem::path data;
    /// "json" or "csv"; empty: by the data file's extension (JSON when there is none).
    std::string format;
    bool combinations = false;
    bool replace = false;
    bool append = false;
};
ExitCode RunExport(const CCommandOptions& options, const CInterchangeOptions& interchange,
                   std::ostream& out, std::ostream& err);
ExitCode RunImport(const CCommandOptions& options, const CInterchangeOptions& interchange,
                   std::ostream& out, std::ostream& err);

// ---- the combination editor
enum class EAddMode { Ask, Replace, Append };
ExitCode RunGenerate(const CCommandOptions& options, EAddMode mode, std::ostream& out,
                     std::ostream& err);
ExitCode RunSort(const CCommandOptions& options, bool ascending, std::ostream& out,
                 std::ostream& err);
ExitCode RunDedupe(const CCommandOptions& options, std::ostream& out, std::ostream& err);
ExitCode RunStore(const CCommandOptions& options, bool replace, std::ostream& out,
                  std::ostream& err);
/// `map` pairs a load case of the stored set's snapshot with one of the model ("none" for
/// none), each by number or name: "1=2,Sneg=none".
ExitCode RunRestore(const CCommandOptions& options, const std::vector<std::string>& map,
                    std::ostream& out, std::ostream& err);

// ---- the load case list, envelope and SRSS editors
/// The values of a new load case as typed (the editor reads them).
struct CCaseValues {
    std::optional<std::string> coefficient;
    bool g = false;
    bool seismic = false;
    bool seismicAnalysis = false;
    bool nda = false;
    std::optional<std::string> modes;
    /// The case after which the new one goes; after the last ordinary case when empty.
    std::string after;
};
ExitCode RunCaseAdd(const CCommandOptions& options, const std::string& name,
                    const CCaseValues& values, std::ostream& out, std::ostream& err);
ExitCode RunCaseRename(const CCommandOptions& options, const std::string& item,
                       const std::string& name, std::ostream& out, std::ostream& err);
ExitCode RunCaseDelete(const CCommandOptions& options, const std::string& item, std::ostream& out,
                       std::ostream& err);
ExitCode RunCaseMove(const CCommandOptions& options, const std::string& item, int to,
                     std::ostream& out, std::ostream& err);
ExitCode RunEnvelopeAdd(const CCommandOptions& options, const std::string& name,
                        const std::string& selection, int mode, bool replace, std::ostream& out,
                        std::ostream& err);
ExitCode RunEnvelopeDelete(const CCommandOptions& options, const std::string& item,
                           std::ostream& out, std::ostream& err);
/// Sets the SRSS case (made when there is none of that name) to the weights, each
/// "CASE=WEIGHT" with the case by number or name; the cases not named get none.
ExitCode RunSrssSet(const CCommandOptions& options, const std::string& item,
                    const std::vector<std::string>& weights, std::ostream& out, std::ostream& err);
