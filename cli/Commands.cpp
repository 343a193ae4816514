// The demo and show commands: host set-up, the model file and the report.
#include "Commands.h"

#include "CliHost.h"
#include "ModelReport.h"
#include "host/LoadsServices.h"

#include <exception>

namespace {

const char* const kProgram = "vorta-cli: ";

bool LoadModule(CCliHost& host, const CCommandOptions& options, std::ostream& err) {
    std::string error;
    if (host.LoadModule(options.module, error))
        return true;
    err << kProgram << "cannot load the loads module " << options.module << ": " << error << '\n';
    return false;
}

/// One line on the error stream: the model file's own reason when it names the file already,
/// else what failed, the file and the reason.
void ReportFileError(std::ostream& err, const char* what, const std::filesystem::path& file,
                     const std::string& reason) {
    if (reason.find(file.string()) != std::string::npos)
        err << kProgram << reason << '\n';
    else
        err << kProgram << what << ' ' << file << ": " << reason << '\n';
}

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
        out << "Model file: " << options.file.string() << "\n\n";
        PrintModel(out, host.Frame());
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
