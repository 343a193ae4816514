#pragma once
// The commands of vorta-cli: `demo` writes the example model and shows it, `show` reads a
// model file and prints its loads.
#include <filesystem>
#include <optional>
#include <ostream>

/// The program's exit codes.
enum class ExitCode : int {
    Ok = 0,
    File = 1,     // the model file is missing, unreadable or damaged, or cannot be written
    Usage = 2,    // bad arguments
    Module = 3,   // the loads module cannot be loaded or lacks a service
    Service = 4,  // a service failed while the model was shown
    Internal = 5, // a check of the program failed (an internal error; see vmerror.log)
};

struct CCommandOptions {
    std::filesystem::path file;
    std::filesystem::path module;
    std::optional<int> teorija;
    /// `show` prints JSON for scripts instead of text tables.
    bool json = false;
    /// The process ends as soon as the command is done, leaving the model to the system rather
    /// than freeing it piece by piece: for the program's own `show` and `export`, which change
    /// no model file.
    bool leaveAtOnce = false;
};

/// Flushes the output and gives the exit code: output that did not reach its destination (a
/// full disk, a closed pipe) turns success into ExitCode::File, with a message.
ExitCode FlushOutput(ExitCode result, std::ostream& out, std::ostream& err);
/// Ends the process with the exit code FlushOutput gives, without freeing anything; for a
/// command whose files are all written and closed.
[[noreturn]] void LeaveAtOnce(ExitCode result, std::ostream& out, std::ostream& err);

/// Writes the example model to the file and shows it as `show` does.
ExitCode RunDemo(const CCommandOptions& options, std::ostream& out, std::ostream& err);

/// Reads the model file and prints its loads.
ExitCode RunShow(const CCommandOptions& options, std::ostream& out, std::ostream& err);
