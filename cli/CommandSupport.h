#pragma once
// What the commands of vorta-cli share: loading the module, reading a model file and writing
// it back, running a command of the module with the user's part played from a script, and
// finding the load or envelope a command names.
#include "CliHost.h"
#include "Commands.h"
#include "dialog/ScriptedRunner.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

inline constexpr const char* kProgram = "vorta-cli: ";

/// Loads the module into the host; false after one line on `err` when it cannot be loaded.
bool LoadModule(CCliHost& host, const CCommandOptions& options, std::ostream& err);

/// One line on the error stream: the model file's own reason when it names the file already,
/// else what failed, the file and the reason.
void ReportFileError(std::ostream& err, const char* what, const std::filesystem::path& file,
                     const std::string& reason);

/// A change of a model file: it returns how it ended and sets `changed` when it changed the
/// model.
using ModelChange = std::function<ExitCode(CCliHost& host, bool& changed)>;

/// Loads the module, reads the model file, makes the change and, when it succeeded and
/// changed the model, replaces the file atomically. A failed change writes nothing.
ExitCode ChangeModelFile(const CCommandOptions& options, std::ostream& err,
                         const ModelChange& change);

/// Loads the module and reads the model file for a command that only reads it.
ExitCode ReadModelFile(const CCommandOptions& options, std::ostream& err,
                       const std::function<ExitCode(CCliHost& host)>& use);

/// Runs the module's command `id` (as the host's menu does) with the scripted runner
/// installed; false, after a line on `err`, when the module has no such command or the
/// script did not go as written.
bool RunScripted(CCliHost& host, int id, CScriptedRunner& runner, std::ostream& err);

/// Prints the message boxes the runner showed from `first` on as lines on `err`.
void ReportMessages(const CScriptedRunner& runner, size_t first, std::ostream& err);

/// A load named on the command line: its number, or its name.
struct CNamedItem {
    std::optional<int> number;
    std::string name;
    static CNamedItem Parse(const std::string& text);
    std::string Describe() const;
};

/// The row of a grid (below its fixed rows) whose text in `numberColumn` is the item's number
/// or whose text in `nameColumn` is its name; 0 with the reason when there is none, or when
/// several rows bear the name.
int FindRow(const CGridModel& grid, int numberColumn, int nameColumn, const CNamedItem& item,
            std::string& error);
