#pragma once
// The command line of the commands that build and change model files (ModelCommands.h): their
// arguments, options and help texts. Parsing one of them chooses what runs.
#include "Commands.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>

class CModelCommandLine {
public:
    /// Adds the commands to the program's command line; `options` is read when the chosen
    /// command runs (after parsing, once the module's path is known).
    CModelCommandLine(CLI::App& app, const CCommandOptions& options);
    ~CModelCommandLine();
    CModelCommandLine(const CModelCommandLine&) = delete;
    CModelCommandLine& operator=(const CModelCommandLine&) = delete;

    /// The command that was parsed, empty when none of these was.
    const std::function<ExitCode()>& Chosen() const;

private:
    struct Values;
    std::unique_ptr<Values> m_values;
};
