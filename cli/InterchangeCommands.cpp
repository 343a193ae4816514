// new, export and import: empty model files, and the loads of a model as JSON or as the CSV
// table of its combinations, both ways.
#include "CommandSupport.h"
#include "DataFiles.h"
#include "ModelCommands.h"
#include "host/LoadsServices.h"
#include "host/Model.h"
#include "objbase/BaseManager.h"

#include <memory>

namespace {

enum class EFormat { Json, Csv };

/// The format asked for, else the one the file's extension names (JSON without one); false
/// after a line on `err` for a format that is neither.
bool Format(const CInterchangeOptions& interchange, EFormat& format, std::ostream& err) {
    std::string name = interchange.format;
    if (name.empty()) {
        const std::string extension = interchange.data.extension().string();
        name = extension == ".csv" || extension == ".CSV" ? "csv" : "json";
    }
    if (name == "json" || name == "csv") {
        format = name == "json" ? EFormat::Json : EFormat::Csv;
        return true;
    }
    err << kProgram << "unknown format \"" << name << "\" (json or csv)\n";
    return false;
}

std::string DataName(const std::filesystem::path& data, bool input) {
    return IsStandardStream(data) ? (input ? "standard input" : "standard output") : data.string();
}

/// The counts of the document's loads as a sentence's part.
std::string Counts() {
    int nSlOpt = 0;
    int nKomb = 0;
    int nAnv = 0;
    CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
    return std::to_string(nSlOpt) + " load cases, " + std::to_string(nKomb) + " combinations, " +
           std::to_string(nAnv) + " envelopes";
}

bool HasServices(std::ostream& err) {
    if (CLoadsServices::IzveziJson != nullptr && CLoadsServices::IzveziCsv != nullptr &&
        CLoadsServices::UveziJson != nullptr && CLoadsServices::UveziCsv != nullptr)
        return true;
    err << kProgram << "the loads module does not offer the interchange of loads\n";
    return false;
}

} // namespace

ExitCode RunNew(const CCommandOptions& options, bool force, std::ostream& out, std::ostream& err) {
    std::error_code ec;
    if (!force && std::filesystem::exists(options.file, ec)) {
        err << kProgram << options.file << " exists already; --force replaces it\n";
        return ExitCode::Usage;
    }
    CCliHost host;
    if (!LoadModule(host, options, err))
        return ExitCode::Module;
    host.NewDocument();
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.Insert(std::make_unique<CModel>().release());
        bm.Close();
    }
    std::string error;
    if (!host.SaveDocument(options.file, error)) {
        ReportFileError(err, "cannot write the model file", options.file, error);
        return ExitCode::File;
    }
    out << "Wrote the empty model " << options.file.string() << "\n";
    return ExitCode::Ok;
}

ExitCode RunExport(const CCommandOptions& options, const CInterchangeOptions& interchange,
                   std::ostream& out, std::ostream& err) {
    EFormat format = EFormat::Json;
    if (!Format(interchange, format, err))
        return ExitCode::Usage;
    return ReadModelFile(options, err, [&](CCliHost&) {
        if (!HasServices(err))
            return ExitCode::Module;
        std::string text;
        if (format == EFormat::Json)
            CLoadsServices::IzveziJson(text);
        else
            CLoadsServices::IzveziCsv(text);
        std::string error;
        if (!WriteDataFile(interchange.data, text, out, error)) {
            err << kProgram << "cannot write " << DataName(interchange.data, false) << ": " << error
                << '\n';
            return ExitCode::File;
        }
        if (!IsStandardStream(interchange.data))
            out << "Wrote " << interchange.data.string() << " from " << options.file.string()
                << ": " << Counts() << "\n";
        if (options.leaveAtOnce)
            LeaveAtOnce(ExitCode::Ok, out, err);
        return ExitCode::Ok;
    });
}

ExitCode RunImport(const CCommandOptions& options, const CInterchangeOptions& interchange,
                   std::ostream& out, std::ostream& err) {
    EFormat format = EFormat::Json;
    if (!Format(interchange, format, err))
        return ExitCode::Usage;
    if (format == EFormat::Json && (interchange.replace || interchange.append)) {
        err << kProgram
            << "--replace and --append are for a CSV table of combinations; a JSON description "
               "holds a whole model's loads\n";
        return ExitCode::Usage;
    }
    if (format == EFormat::Csv && !interchange.combinations) {
        err << kProgram << "a CSV table holds combinations: give --combinations\n";
        return ExitCode::Usage;
    }
    std::string text;
    std::string error;
    if (!ReadDataFile(interchange.data, text, error)) {
        err << kProgram << "cannot read " << DataName(interchange.data, true) << ": " << error
            << '\n';
        return ExitCode::File;
    }
    const std::string source = DataName(interchange.data, true);
    return ChangeModelFile(options, err, [&](CCliHost&, bool& changed) {
        if (!HasServices(err))
            return ExitCode::Module;
        CString reason;
        if (format == EFormat::Json) {
            if (!CLoadsServices::UveziJson(text, reason)) {
                err << kProgram << source << ": " << reason.ToUtf8() << '\n';
                return ExitCode::Usage;
            }
            changed = true;
            out << "Imported " << source << " into " << options.file.string() << ": " << Counts()
                << "\n";
            return ExitCode::Ok;
        }
        int nSlOpt = 0;
        int nKomb = 0;
        int nAnv = 0;
        CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
        if (nKomb > 0 && !interchange.replace && !interchange.append) {
            err << kProgram << options.file.string() << " has " << nKomb
                << " combinations already: --replace replaces them, --append adds the table's "
                   "after them\n";
            return ExitCode::Usage;
        }
        int count = 0;
        if (!CLoadsServices::UveziCsv(text, interchange.replace, count, reason)) {
            err << kProgram << source << ": " << reason.ToUtf8() << '\n';
            return ExitCode::Usage;
        }
        changed = true;
        out << "Imported " << count << " combinations from " << source << " into "
            << options.file.string() << ": " << Counts() << "\n";
        return ExitCode::Ok;
    });
}
