#pragma once
// Running the programs of the build in a fresh process for the benchmarks that time what a
// user waits for: the helper (vorta-bench-helper) and vorta-cli, found beside the benchmark.
#include <map>
#include <string>
#include <vector>

namespace benchmodel {

/// What a finished child process reports: its "name=value" lines, and from the system its CPU
/// time (user and system), its wall time and its peak resident memory.
struct Izvestaj {
    std::map<std::string, double> vrednosti;
    double cpuMs = 0.0;
    double wallMs = 0.0;
    double maxRssKb = 0.0;
    bool ok = false;
    std::string greska;
};

/// The directory of the running program.
std::string DirektorijumPrograma();

/// Runs the program with the arguments; its standard output goes to `izlaz` when given (the
/// lines are then not read), otherwise it is read as "name=value" lines.
Izvestaj Pokreni(const std::vector<std::string>& argumenti, const std::string& izlaz = {});

/// A temporary directory for the benchmark's files, removed at the end of the process.
const std::string& PrivremeniDirektorijum();

/// The realistic large model saved in the temporary directory (made once per process).
const std::string& VelikaDatoteka();

} // namespace benchmodel
