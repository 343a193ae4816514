// case, envelope and srss: single changes of load cases, envelopes and SRSS cases, each made
// by its editor (the load case list, the envelope dialog, the SRSS editor) with the user's part
// played from a script.
#include "CommandSupport.h"
#include "ModelCommands.h"
#include "dialogs/EditoriResursi.h"
#include "host/LoadsServices.h"

using namespace edres;

namespace {

/// The module's commands that open the load case list and the envelope dialog.
constexpr int kSlucajevi = 3517;
constexpr int kAnvelope = 3519;

std::string Counts() {
    int nSlOpt = 0;
    int nKomb = 0;
    int nAnv = 0;
    CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
    return std::to_string(nSlOpt) + " load cases, " + std::to_string(nKomb) + " combinations, " +
           std::to_string(nAnv) + " envelopes";
}

/// Runs the editor of the command with the scene, which returns how it ended; the editor is
/// cancelled unless the scene confirmed it.
ExitCode InEditor(CCliHost& host, int command, int dialog, std::ostream& err,
                  const std::function<ExitCode(CDialogPresenter&, CScriptedRunner&)>& scene) {
    CScriptedRunner runner;
    ExitCode code = ExitCode::Service;
    runner.Expect(dialog, [&](CDialogPresenter& editor) { code = scene(editor, runner); });
    if (!RunScripted(host, command, runner, err))
        return ExitCode::Service;
    return code;
}

/// Presses OK; false after the messages the dialog showed when it stays open.
bool Confirm(CDialogPresenter& dialog, const CScriptedRunner& runner, std::ostream& err) {
    const size_t shown = runner.Messages().size();
    dialog.Dialog().UserClick(IDOK);
    if (dialog.Dialog().IsEnded() && dialog.Dialog().GetResult() == IDOK)
        return true;
    ReportMessages(runner, shown, err);
    return false;
}

/// The row of the load case in the list editor's grid; 0 after a line on `err`.
int CaseRow(const CGridModel& grid, const std::string& text, std::ostream& err) {
    std::string error;
    const int row = FindRow(grid, kRedniBroj, kNaziv, CNamedItem::Parse(text), error);
    if (row == 0)
        err << kProgram << "load case " << CNamedItem::Parse(text).Describe() << ": " << error
            << '\n';
    return row;
}

/// Names must stay unique: they are how the interchange names load cases.
bool NameIsFree(const CGridModel& grid, const std::string& name, std::ostream& err) {
    for (int r = 1; r < grid.GetRowCount(); ++r)
        if (grid.GetItemText(r, kNaziv).ToUtf8() == name) {
            err << kProgram << "load case " << r << " is named \"" << name << "\" already\n";
            return false;
        }
    return true;
}

/// The envelope dialog's list item of an envelope: "N. [name] selection".
int EnvelopeIndex(const CDialogModel& d, const CNamedItem& item) {
    int found = -1;
    for (int i = 0; i < d.GetItemCount(IDC_ANVELOPE); ++i) {
        const std::string text = d.GetItemText(IDC_ANVELOPE, i).ToUtf8();
        const std::string prefix = std::to_string(i + 1) + ". [";
        const bool match =
            item.number ? *item.number == i + 1 : text.starts_with(prefix + item.name + "] ");
        if (match) {
            if (found >= 0)
                return -2;
            found = i;
        }
    }
    return found;
}

} // namespace

ExitCode RunCaseAdd(const CCommandOptions& options, const std::string& name,
                    const CCaseValues& values, std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int added = 0;
        const ExitCode code = InEditor(
            host, kSlucajevi, IDD_SLUCAJEVI, err,
            [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                CDialogModel& d = editor.Dialog();
                CGridModel& grid = d.Grid(IDC_GRID1);
                if (!NameIsFree(grid, name, err))
                    return ExitCode::Usage;
                if (!values.after.empty()) {
                    const int row = CaseRow(grid, values.after, err);
                    if (row == 0)
                        return ExitCode::Usage;
                    grid.UserClick(row, kNaziv);
                }
                d.UserClick(IDC_DODAJ);
                added = grid.GetSelectedRows().empty() ? 0 : grid.GetSelectedRows().front();
                if (added == 0 || !grid.UserEndEdit(added, kNaziv, CString::FromUtf8(name))) {
                    err << kProgram << "\"" << name << "\" cannot be the name of a load case\n";
                    return ExitCode::Usage;
                }
                if (values.coefficient &&
                    !grid.UserEndEdit(added, kKoeficijent,
                                      CString::FromUtf8(*values.coefficient))) {
                    err << kProgram << "\"" << *values.coefficient
                        << "\" cannot be a coefficient (a number of 0 or more)\n";
                    return ExitCode::Usage;
                }
                if (values.modes &&
                    !grid.UserEndEdit(added, kTonovi, CString::FromUtf8(*values.modes))) {
                    err << kProgram << "\"" << *values.modes
                        << "\" cannot be the number of modes (a whole number from 0 to 999)\n";
                    return ExitCode::Usage;
                }
                const std::pair<bool, int> checks[] = {{values.g, kG},
                                                       {values.seismic, kSeizmicki},
                                                       {values.seismicAnalysis, kSeizmickiProracun},
                                                       {values.nda, kNDA}};
                for (const auto& [set, column] : checks)
                    if (set)
                        grid.UserClickCheck(added, column);
                changed = Confirm(editor, runner, err);
                return changed ? ExitCode::Ok : ExitCode::Service;
            });
        if (code == ExitCode::Ok)
            out << "Added load case " << added << " \"" << name << "\"; " << options.file.string()
                << " has " << Counts() << ".\n";
        return code;
    });
}

ExitCode RunCaseRename(const CCommandOptions& options, const std::string& item,
                       const std::string& name, std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int row = 0;
        const ExitCode code =
            InEditor(host, kSlucajevi, IDD_SLUCAJEVI, err,
                     [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                         CDialogModel& d = editor.Dialog();
                         CGridModel& grid = d.Grid(IDC_GRID1);
                         row = CaseRow(grid, item, err);
                         if (row == 0)
                             return ExitCode::Usage;
                         if (grid.GetItemText(row, kNaziv).ToUtf8() == name)
                             return ExitCode::Ok;
                         if (!NameIsFree(grid, name, err))
                             return ExitCode::Usage;
                         bool named = false;
                         runner.Expect(IDD_NAZIV_SLUCAJA, [&](CDialogPresenter& dialog) {
                             dialog.Dialog().UserSetText(IDC_NAZIV, CString::FromUtf8(name));
                             dialog.Dialog().UserClick(IDOK);
                             named = dialog.Dialog().IsEnded();
                         });
                         grid.UserClick(row, kNaziv);
                         d.UserClick(IDC_PREIMENUJ);
                         if (!named) {
                             err << kProgram << "\"" << name
                                 << "\" cannot be the name of a load case\n";
                             return ExitCode::Usage;
                         }
                         changed = Confirm(editor, runner, err);
                         return changed ? ExitCode::Ok : ExitCode::Service;
                     });
        if (code == ExitCode::Ok)
            out << "Load case " << row << " is named \"" << name << "\".\n";
        return code;
    });
}

ExitCode RunCaseDelete(const CCommandOptions& options, const std::string& item, std::ostream& out,
                       std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        std::string deleted;
        const ExitCode code = InEditor(host, kSlucajevi, IDD_SLUCAJEVI, err,
                                       [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                                           CDialogModel& d = editor.Dialog();
                                           CGridModel& grid = d.Grid(IDC_GRID1);
                                           const int row = CaseRow(grid, item, err);
                                           if (row == 0)
                                               return ExitCode::Usage;
                                           deleted = std::to_string(row) + " \"" +
                                                     grid.GetItemText(row, kNaziv).ToUtf8() + "\"";
                                           grid.UserClick(row, kNaziv);
                                           // Yes to the question that names what goes along.
                                           runner.AnswerMessageBox(CVortaMessageBox::IDYES);
                                           d.UserClick(IDC_BRISI);
                                           changed = Confirm(editor, runner, err);
                                           return changed ? ExitCode::Ok : ExitCode::Service;
                                       });
        if (code == ExitCode::Ok)
            out << "Deleted load case " << deleted << " with what went along; "
                << options.file.string() << " has " << Counts() << ".\n";
        return code;
    });
}

ExitCode RunCaseMove(const CCommandOptions& options, const std::string& item, int to,
                     std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        std::string moved;
        const ExitCode code = InEditor(
            host, kSlucajevi, IDD_SLUCAJEVI, err,
            [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                CDialogModel& d = editor.Dialog();
                CGridModel& grid = d.Grid(IDC_GRID1);
                int row = CaseRow(grid, item, err);
                if (row == 0)
                    return ExitCode::Usage;
                moved = "\"" + grid.GetItemText(row, kNaziv).ToUtf8() + "\"";
                const int count = grid.GetRowCount() - 1;
                if (to < 1 || to > count) {
                    err << kProgram << "load case " << moved << " cannot move to " << to
                        << ": the model has load cases 1 to " << count << '\n';
                    return ExitCode::Usage;
                }
                grid.UserClick(row, kNaziv);
                while (row != to) {
                    d.UserClick(row < to ? IDC_DOLE : IDC_GORE);
                    const int now =
                        grid.GetSelectedRows().empty() ? 0 : grid.GetSelectedRows().front();
                    if (now == row) {
                        err << kProgram << "load case " << moved << " cannot move to " << to
                            << ": ordinary load cases and SRSS cases each keep to their block\n";
                        return ExitCode::Usage;
                    }
                    row = now;
                }
                changed = Confirm(editor, runner, err);
                return changed ? ExitCode::Ok : ExitCode::Service;
            });
        if (code == ExitCode::Ok)
            out << "Load case " << moved << " is load case " << to << ".\n";
        return code;
    });
}

ExitCode RunEnvelopeAdd(const CCommandOptions& options, const std::string& name,
                        const std::string& selection, int mode, bool replace, std::ostream& out,
                        std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        const ExitCode code =
            InEditor(host, kAnvelope, IDD_ANVELOPE, err,
                     [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                         CDialogModel& d = editor.Dialog();
                         const bool exists = EnvelopeIndex(d, CNamedItem{std::nullopt, name}) != -1;
                         if (exists && !replace) {
                             err << kProgram << "there is an envelope \"" << name
                                 << "\" already; --replace replaces it\n";
                             return ExitCode::Usage;
                         }
                         d.UserSetText(IDC_IZBOR, CString::FromUtf8(selection));
                         d.UserSelect(IDC_MOD, mode);
                         runner.Expect(IDD_SNIMI, [&](CDialogPresenter& dialog) {
                             dialog.Dialog().UserSetText(IDC_NAZIV, CString::FromUtf8(name));
                             dialog.Dialog().UserClick(IDOK);
                         });
                         const size_t shown = runner.Messages().size();
                         if (exists)
                             runner.AnswerMessageBox(CVortaMessageBox::IDYES);
                         d.UserClick(IDC_SNIMI);
                         if (runner.Messages().size() > shown + (exists ? 1 : 0) ||
                             EnvelopeIndex(d, CNamedItem{std::nullopt, name}) < 0) {
                             ReportMessages(runner, shown + (exists ? 1 : 0), err);
                             return ExitCode::Usage;
                         }
                         changed = Confirm(editor, runner, err);
                         return changed ? ExitCode::Ok : ExitCode::Service;
                     });
        if (code == ExitCode::Ok)
            out << "Saved envelope \"" << name << "\"; " << options.file.string() << " has "
                << Counts() << ".\n";
        return code;
    });
}

ExitCode RunEnvelopeDelete(const CCommandOptions& options, const std::string& item,
                           std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        const CNamedItem envelope = CNamedItem::Parse(item);
        const ExitCode code =
            InEditor(host, kAnvelope, IDD_ANVELOPE, err,
                     [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                         CDialogModel& d = editor.Dialog();
                         const int i = EnvelopeIndex(d, envelope);
                         if (i < 0) {
                             err << kProgram << "envelope " << envelope.Describe() << ": "
                                 << (i == -1 ? "there is none numbered or named so"
                                             : "several are named so; give the number")
                                 << '\n';
                             return ExitCode::Usage;
                         }
                         d.UserSelect(IDC_ANVELOPE, i);
                         d.UserClick(IDC_BRISI);
                         changed = Confirm(editor, runner, err);
                         return changed ? ExitCode::Ok : ExitCode::Service;
                     });
        if (code == ExitCode::Ok)
            out << "Deleted envelope " << envelope.Describe() << "; " << options.file.string()
                << " has " << Counts() << ".\n";
        return code;
    });
}
