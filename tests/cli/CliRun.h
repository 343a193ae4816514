#pragma once
// Running the built vorta-cli in a temporary directory, for the end-to-end tests.
#include "platform/TempDir.h"

#include <cstdlib>
#include <sys/wait.h>

struct CRun {
    int code = -1;
    std::string out;
    std::string err;
};

/// Runs vorta-cli with the arguments in the directory, which also receives the error log
/// should an assertion fail; `environment` holds further variable assignments. The locale is
/// Serbian in Latin script, the module's own language, unless `environment` sets LC_ALL. A run
/// that takes longer than 20 seconds is ended (code -1).
inline CRun RunCli(const CTempDir& dir, const std::string& args,
                   const std::string& environment = "") {
    const std::string d = dir.Path().string();
    const std::string command = "cd '" + d + "' && TMP='" + d + "' LC_ALL=sr_RS@latin " +
                                environment + " timeout 20 '" VORTA_CLI_PATH "' " + args + " >'" +
                                d + "/stdout.txt' 2>'" + d + "/stderr.txt'";
    const int status = std::system(command.c_str());
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    CRun run{code == 124 ? -1 : code, ReadText(dir.Path() / "stdout.txt"),
             ReadText(dir.Path() / "stderr.txt")};
    std::filesystem::remove(dir.Path() / "stdout.txt");
    std::filesystem::remove(dir.Path() / "stderr.txt");
    return run;
}

inline void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}
