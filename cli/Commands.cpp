// The demo and show commands: host set-up, the model file and the report.
#include "Commands.h"

#include "CliHost.h"
#include "CommandSupport.h"
#include "ModelReport.h"
#include "ModelReportJson.h"
#include "host/LoadsServices.h"

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

ExitCode RunShow(const CCommandOptions& options, std::ostream& out, std::ostream& err) {
    CCliHost host;
    if (!LoadModule(host, options, err))
        return ExitCode::Module;
    return Show(host, options, out, err);
}
