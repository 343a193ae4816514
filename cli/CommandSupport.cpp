// What the commands of vorta-cli share.
#include "CommandSupport.h"

#include "grid/GridModel.h"
#include "host/ModelFile.h"

#include <charconv>

bool LoadModule(CCliHost& host, const CCommandOptions& options, std::ostream& err) {
    std::string error;
    if (host.LoadModule(options.module, error))
        return true;
    err << kProgram << "cannot load the loads module " << options.module << ": " << error << '\n';
    return false;
}

void ReportFileError(std::ostream& err, const char* what, const std::filesystem::path& file,
                     const std::string& reason) {
    if (reason.find(file.string()) != std::string::npos)
        err << kProgram << reason << '\n';
    else
        err << kProgram << what << ' ' << file << ": " << reason << '\n';
}

ExitCode ReadModelFile(const CCommandOptions& options, std::ostream& err,
                       const std::function<ExitCode(CCliHost& host)>& use) {
    CCliHost host;
    if (!LoadModule(host, options, err))
        return ExitCode::Module;
    std::string error;
    if (!host.OpenDocument(options.file, error)) {
        ReportFileError(err, "cannot read the model file", options.file, error);
        return ExitCode::File;
    }
    return use(host);
}

ExitCode ChangeModelFile(const CCommandOptions& options, std::ostream& err,
                         const ModelChange& change) {
    return ReadModelFile(options, err, [&](CCliHost& host) {
        bool changed = false;
        const ExitCode code = change(host, changed);
        if (code != ExitCode::Ok || !changed)
            return code;
        std::string error;
        if (!host.SaveDocument(options.file, error)) {
            ReportFileError(err, "cannot write the model file", options.file, error);
            return ExitCode::File;
        }
        return ExitCode::Ok;
    });
}

bool RunScripted(CCliHost& host, int id, CScriptedRunner& runner, std::ostream& err) {
    const COptionInfoList& commands = host.Commands();
    OptionFunction function = nullptr;
    for (int i = 0; i < commands.GetSize(); ++i)
        if (commands.GetAt(i).m_nId == id)
            function = commands.GetAt(i).m_pFunction;
    if (function == nullptr) {
        err << kProgram << "the loads module has no command " << id << '\n';
        return false;
    }
    runner.Install();
    function();
    for (const std::string& error : runner.Errors())
        err << kProgram << "the editor did not go as expected: " << error << '\n';
    return runner.Errors().empty();
}

void ReportMessages(const CScriptedRunner& runner, size_t first, std::ostream& err) {
    const auto& messages = runner.Messages();
    for (size_t i = first; i < messages.size(); ++i) {
        std::string line = messages[i].caption.ToUtf8() + ": " + messages[i].text.ToUtf8();
        for (char& c : line)
            if (c == '\n' || c == '\r')
                c = ' ';
        err << kProgram << line << '\n';
    }
}

CNamedItem CNamedItem::Parse(const std::string& text) {
    CNamedItem item;
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (!text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size())
        item.number = number;
    else
        item.name = text;
    return item;
}

std::string CNamedItem::Describe() const {
    return number ? std::to_string(*number) : "\"" + name + "\"";
}

int FindRow(const CGridModel& grid, int numberColumn, int nameColumn, const CNamedItem& item,
            std::string& error) {
    int found = 0;
    int count = 0;
    for (int r = grid.GetFixedRowCount(); r < grid.GetRowCount(); ++r) {
        const bool match = item.number
                               ? grid.GetItemText(r, numberColumn) == std::to_wstring(*item.number)
                               : grid.GetItemText(r, nameColumn).ToUtf8() == item.name;
        if (match) {
            found = found == 0 ? r : found;
            ++count;
        }
    }
    if (count == 1)
        return found;
    error = count == 0
                ? "there is none numbered or named " + item.Describe()
                : std::to_string(count) + " are named " + item.Describe() + "; give the number";
    return 0;
}
