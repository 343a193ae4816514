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
};

/// Writes the example model to the file and shows it as `show` does.
ExitCode RunDemo(const CCommandOptions& options, std::ostream& out, std::ostream& err);

/// Reads the model file and prints its loads.
ExitCode RunShow(const CCommandOptions& options, std::ostream& out, std::ostream& err);
