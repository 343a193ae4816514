// srss set: an SRSS case and its weights, made by the SRSS editor, which the load case list
// opens, with the user's part played from a script.
#include "CommandSupport.h"
#include "ModelCommands.h"
#include "dialogs/EditoriResursi.h"

#include <map>

using namespace edres;

namespace {

constexpr int kSlucajevi = 3517;

/// The weights by column of the SRSS grid: "CASE=WEIGHT" items, the case by number or name
/// (names looked up in the editor's list of the offered load cases); false after a line on
/// `err`.
bool Weights(const CGridModel& srss, const CGridModel& names, const std::vector<std::string>& items,
             std::map<int, std::string>& byColumn, std::ostream& err) {
    for (const std::string& item : items) {
        const size_t eq = item.rfind('=');
        if (eq == std::string::npos) {
            err << kProgram << "--weights takes CASE=WEIGHT, not \"" << item << "\"\n";
            return false;
        }
        const CNamedItem named = CNamedItem::Parse(item.substr(0, eq));
        std::string error;
        const int row = FindRow(names, 0, 1, named, error);
        int column = 0;
        for (int c = 2; row > 0 && c < srss.GetColumnCount(); ++c)
            if (srss.GetItemText(0, c) == names.GetItemText(row, 0))
                column = c;
        if (column == 0) {
            err << kProgram << "load case " << named.Describe()
                << " cannot take part in an SRSS case"
                << (row == 0 ? " (" + error + " among those that can)" : "") << '\n';
            return false;
        }
        if (!byColumn.emplace(column, item.substr(eq + 1)).second) {
            err << kProgram << "load case " << named.Describe() << " is weighted twice\n";
            return false;
        }
    }
    return true;
}

/// Plays the SRSS editor: the entry of the case (a new one when no entry bears the name), its
/// weights, OK.
ExitCode SetEntry(CDialogPresenter& editor, CScriptedRunner& runner, const std::string& item,
                  const std::vector<std::string>& weights, std::string& entry, std::ostream& err) {
    CDialogModel& d = editor.Dialog();
    CGridModel& grid = d.Grid(IDC_GRID2);
    const CNamedItem named = CNamedItem::Parse(item);
    std::string error;
    int row = FindRow(grid, 0, 1, named, error);
    if (row == 0 && (named.number || error.find("are named") != std::string::npos)) {
        err << kProgram << "SRSS case " << named.Describe() << ": " << error << '\n';
        return ExitCode::Usage;
    }
    std::map<int, std::string> byColumn;
    if (!Weights(grid, d.Grid(IDC_GRID1), weights, byColumn, err))
        return ExitCode::Usage;
    if (row == 0) {
        // A new entry after the last one, under the name given.
        if (grid.GetRowCount() > 1)
            grid.UserClick(grid.GetRowCount() - 1, 1);
        d.UserClick(IDC_DODAJ);
        row = grid.GetFocusRow();
        grid.UserEndEdit(row, 1, CString::FromUtf8(item));
    }
    for (int c = 2; c < grid.GetColumnCount(); ++c) {
        const auto it = byColumn.find(c);
        const std::string weight = it != byColumn.end() ? it->second : "0";
        if (it == byColumn.end() && grid.GetItemText(row, c) == L"0.00")
            continue;
        if (!grid.UserEndEdit(row, c, CString::FromUtf8(weight))) {
            err << kProgram << "\"" << weight << "\" cannot be the weight of load case "
                << grid.GetItemText(0, c).ToUtf8() << " (a number of 0.01 or more)\n";
            return ExitCode::Usage;
        }
    }
    entry = grid.GetItemText(row, 0).ToUtf8() + " \"" + grid.GetItemText(row, 1).ToUtf8() + "\"";
    const size_t shown = runner.Messages().size();
    d.UserClick(IDOK);
    if (d.IsEnded())
        return ExitCode::Ok;
    ReportMessages(runner, shown, err);
    return ExitCode::Usage;
}

} // namespace

ExitCode RunSrssSet(const CCommandOptions& options, const std::string& item,
                    const std::vector<std::string>& weights, std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        CScriptedRunner runner;
        ExitCode code = ExitCode::Service;
        std::string entry;
        runner.Expect(IDD_SLUCAJEVI, [&](CDialogPresenter& list) {
            runner.Expect(IDD_SRSS, [&](CDialogPresenter& editor) {
                code = SetEntry(editor, runner, item, weights, entry, err);
            });
            list.Dialog().UserClick(IDC_SRSS);
            // The SRSS editor wrote its cases; the list has nothing of its own to write.
            if (code == ExitCode::Ok)
                list.Dialog().UserClick(IDOK);
        });
        if (!RunScripted(host, kSlucajevi, runner, err))
            return ExitCode::Service;
        changed = code == ExitCode::Ok;
        if (changed)
            out << "SRSS case " << entry << " is set.\n";
        return code;
    });
}
