// The demo and show commands: host set-up, the model file and the report.
#include "Commands.h"

#include "CliHost.h"
#include "CommandSupport.h"
#include "ModelReport.h"
#include "ModelReportJson.h"
#include "host/LoadsServices.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// Reads the file into the host and prints its report.
ExitCode Show(CCliHost& host, const CCommandOptions& options, std::ostream& out,
              std::ostream& err) {
    std::string error;
    if (!host.OpenDocument(options.file, error)) {
        ReportFileError(err, "cannot read the model file", options.file, error);
        return ExitCode::File;
    }
    if (options.teorija)
        CLoadsServices::SetTeorija(*options.teorija);
    try {
        if (options.json) {
            PrintModelJson(out, options.file.string(), host.Frame());
        } else {
            out << "Model file: " << options.file.string() << "\n\n";
            PrintModel(out, host.Frame());
        }
    } catch (const std::exception& e) {
        out.flush();
        err << kProgram << "the loads of " << options.file << " cannot be shown: " << e.what()
            << '\n';
        return ExitCode::Service;
    }
    return ExitCode::Ok;
}

} // namespace

ExitCode RunDemo(const CCommandOptions& options, std::ostream& out, std::ostream& err) {
    CCliHost host;
    if (!LoadModule(host, options, err))
        return ExitCode::Module;
    host.NewDocument();
    CLoadsServices::NapraviPrimer();
    std::string error;
    if (!host.SaveDocument(options.file, error)) {
        ReportFileError(err, "cannot write the model file", options.file, error);
        return ExitCode::File;
    }
    // What was written is read back, so the demo shows exactly what `show` will.
    return Show(host, options, out, err);
}

ExitCode FlushOutput(ExitCode result, std::ostream& out, std::ostream& err) {
    out.flush();
    if (!out && result == ExitCode::Ok) {
        const int error = errno;
        err << "vorta-cli: cannot write the output: " << std::strerror(error) << '\n';
        return ExitCode::File;
    }
    return result;
}

void LeaveAtOnce(ExitCode result, std::ostream& out, std::ostream& err) {
    // Nothing is lost by leaving the model of a large file to the system at once rather than
    // freeing its objects one by one: every file the command wrote is complete and closed.
    err.flush();
    std::quick_exit(static_cast<int>(FlushOutput(result, out, err)));
}

ExitCode RunShow(const CCommandOptions& options, std::ostream& out, std::ostream& err) {
    CCliHost host;
    if (!LoadModule(host, options, err))
        return ExitCode::Module;
    const ExitCode result = Show(host, options, out, err);
    if (options.leaveAtOnce)
        LeaveAtOnce(result, out, err);
    return result;
}
