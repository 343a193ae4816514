// generate, sort, dedupe, store and restore: the combination editor's work, done by the editor
// itself with the user's part played from a script.
#include "CommandSupport.h"
#include "ModelCommands.h"
#include "TerminalProgress.h"
#include "dialogs/DlgKombOptResursi.h"
#include "host/LoadsServices.h"

#include <charconv>

using namespace kombres;

namespace {

/// The module's command that opens the combination editor.
constexpr int kKombinacije = 3518;

int Combinations(CDialogPresenter& editor) {
    return editor.Dialog().Grid(IDC_GRID2).GetRowCount() - 1;
}

/// Combinations are made of load cases: a model without any has nothing to edit.
bool HasLoadCases(const CCommandOptions& options, std::ostream& err) {
    int nSlOpt = 0;
    int nKomb = 0;
    int nAnv = 0;
    CLoadsServices::Brojevi(nSlOpt, nKomb, nAnv);
    if (nSlOpt > 0)
        return true;
    err << kProgram << options.file.string() << " has no load cases\n";
    return false;
}

/// Runs the combination editor with the scene, which sets `code` when it refuses to go on;
/// the editor is cancelled unless the scene confirmed it. Messages the editor showed beyond
/// the `expected` ones are reported as its refusal.
ExitCode
InEditor(CCliHost& host, const CCommandOptions& options, std::ostream& err,
         const std::function<ExitCode(CDialogPresenter& editor, CScriptedRunner& runner)>& scene) {
    if (!HasLoadCases(options, err))
        return ExitCode::Usage;
    CTerminalProgress progress;
    CProgressInstallation installed(progress);
    CScriptedRunner runner;
    ExitCode code = ExitCode::Service;
    runner.Expect(IDD_KOMBINACIJE, [&](CDialogPresenter& editor) { code = scene(editor, runner); });
    if (!RunScripted(host, kKombinacije, runner, err))
        return ExitCode::Service;
    return code;
}

/// Confirms the editor; false after its messages when it refuses.
bool Confirm(CDialogPresenter& editor, const CScriptedRunner& runner, std::ostream& err) {
    const size_t shown = runner.Messages().size();
    editor.Dialog().UserClick(IDOK);
    if (editor.Dialog().IsEnded() && editor.Dialog().GetResult() == IDOK)
        return true;
    ReportMessages(runner, shown, err);
    return false;
}

/// "12. Name" as the mapping dialog shows a load case: its number and name.
bool SplitNumbered(const std::string& text, int& number, std::string& name) {
    const size_t dot = text.find(". ");
    if (dot == std::string::npos)
        return false;
    const auto result = std::from_chars(text.data(), text.data() + dot, number);
    if (result.ec != std::errc() || result.ptr != text.data() + dot)
        return false;
    name = text.substr(dot + 2);
    return true;
}

/// The index among texts "k. name" (k from `first`) that the item names; -1 with the reason
/// when none or several do.
int FindNumbered(const std::vector<std::string>& texts, const CNamedItem& item,
                 std::string& error) {
    int found = -1;
    int count = 0;
    for (size_t i = 0; i < texts.size(); ++i) {
        int number = 0;
        std::string name;
        if (!SplitNumbered(texts[i], number, name))
            continue;
        if (item.number ? number == *item.number : name == item.name) {
            found = found < 0 ? static_cast<int>(i) : found;
            ++count;
        }
    }
    if (count == 1)
        return found;
    error = count == 0
                ? "there is none numbered or named " + item.Describe()
                : std::to_string(count) + " are named " + item.Describe() + "; give the number";
    return -1;
}

/// Sets the mapping grid of the restore by "SNAPSHOT=CURRENT" pairs; false after a line on
/// `err` for a pair it cannot follow.
bool Map(CGridModel& grid, const std::vector<std::string>& map, std::ostream& err) {
    std::vector<std::string> rows;
    for (int r = 1; r < grid.GetRowCount(); ++r)
        rows.push_back(grid.GetItemText(r, 0).ToUtf8());
    std::vector<std::string> options;
    if (grid.GetRowCount() > 1)
        if (const auto list = grid.GetCell(1, 1).options)
            for (const CString& option : *list)
                options.push_back(option.ToUtf8());
    for (const std::string& pair : map) {
        const size_t eq = pair.rfind('=');
        if (eq == std::string::npos) {
            err << kProgram << "--map takes pairs SNAPSHOT=CURRENT, not \"" << pair << "\"\n";
            return false;
        }
        std::string error;
        const CNamedItem from = CNamedItem::Parse(pair.substr(0, eq));
        const int row = FindNumbered(rows, from, error);
        if (row < 0) {
            err << kProgram << "load case " << from.Describe() << " of the stored set: " << error
                << '\n';
            return false;
        }
        const std::string target = pair.substr(eq + 1);
        int option = 0;
        if (target != "none" && target != "0") {
            const CNamedItem to = CNamedItem::Parse(target);
            option = FindNumbered(options, to, error);
            if (option < 0) {
                err << kProgram << "load case " << to.Describe() << " of the model: " << error
                    << '\n';
                return false;
            }
        }
        grid.UserSelectCombo(row + 1, 1, option);
    }
    return true;
}

} // namespace

ExitCode RunGenerate(const CCommandOptions& options, EAddMode mode, std::ostream& out,
                     std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int before = 0;
        int after = 0;
        const ExitCode code =
            InEditor(host, options, err, [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                CDialogModel& d = editor.Dialog();
                out << "Possible combinations: " << d.GetText(IDC_BROJ_KOMBINACIJA).ToUtf8()
                    << std::endl;
                before = Combinations(editor);
                size_t expected = runner.Messages().size();
                if (before > 0) {
                    if (mode == EAddMode::Ask) {
                        err << kProgram << options.file.string() << " has " << before
                            << " combinations already: --replace replaces them, --append adds the "
                               "generated ones after them\n";
                        return ExitCode::Usage;
                    }
                    // "Zameni" or "Dodaj" in the editor's question.
                    runner.AnswerMessageBox(mode == EAddMode::Replace ? 1 : 2);
                    ++expected;
                }
                d.UserClick(IDC_GENERISI);
                if (runner.Messages().size() > expected) {
                    ReportMessages(runner, expected, err);
                    return ExitCode::Usage;
                }
                after = Combinations(editor);
                return Confirm(editor, runner, err) ? ExitCode::Ok : ExitCode::Service;
            });
        if (code != ExitCode::Ok)
            return code;
        changed = true;
        const int made = mode == EAddMode::Append ? after - before : after;
        out << "Generated " << made << " combinations; " << options.file.string() << " has "
            << after << ".\n";
        return ExitCode::Ok;
    });
}

ExitCode RunSort(const CCommandOptions& options, bool ascending, std::ostream& out,
                 std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int n = 0;
        const ExitCode code =
            InEditor(host, options, err, [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                n = Combinations(editor);
                if (n < 2)
                    return ExitCode::Ok;
                runner.AnswerPopup(ascending ? ID_SORT_RASTUCE : ID_SORT_OPADAJUCE);
                editor.Dialog().UserClick(IDC_SORTIRANJE);
                changed = Confirm(editor, runner, err);
                return changed ? ExitCode::Ok : ExitCode::Service;
            });
        if (code == ExitCode::Ok)
            out << (n < 2 ? "Nothing to sort: " + std::to_string(n) + " combination(s).\n"
                          : "Sorted " + std::to_string(n) + " combinations in " +
                                (ascending ? "ascending" : "descending") + " order.\n");
        return code;
    });
}

ExitCode RunDedupe(const CCommandOptions& options, std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int before = 0;
        int after = 0;
        const ExitCode code =
            InEditor(host, options, err, [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                before = after = Combinations(editor);
                if (before < 2)
                    return ExitCode::Ok;
                runner.AnswerPopup(ID_IZBACI_DUPLIKATE);
                editor.Dialog().UserClick(IDC_SORTIRANJE);
                after = Combinations(editor);
                if (after == before)
                    return ExitCode::Ok;
                changed = Confirm(editor, runner, err);
                return changed ? ExitCode::Ok : ExitCode::Service;
            });
        if (code == ExitCode::Ok)
            out << "Removed " << before - after << " duplicate combinations; "
                << options.file.string() << " has " << after << ".\n";
        return code;
    });
}

ExitCode RunStore(const CCommandOptions& options, bool replace, std::ostream& out,
                  std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int n = 0;
        const ExitCode code =
            InEditor(host, options, err, [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                n = Combinations(editor);
                if (n == 0) {
                    err << kProgram << options.file.string() << " has no combinations to store\n";
                    return ExitCode::Usage;
                }
                const size_t shown = runner.Messages().size();
                // The answer to the question whether the stored set there is goes (asked only
                // when there is one).
                runner.AnswerMessageBox(replace ? CVortaMessageBox::IDOK
                                                : CVortaMessageBox::IDCANCEL);
                editor.Dialog().UserClick(IDC_SNIMI_SKLADISTE);
                if (runner.Messages().size() > shown && !replace) {
                    err << kProgram << options.file.string()
                        << " holds a stored combination set already; --replace replaces it\n";
                    return ExitCode::Usage;
                }
                changed = true;
                return ExitCode::Ok;
            });
        if (code == ExitCode::Ok)
            out << "Stored the " << n << " combinations of " << options.file.string() << ".\n";
        return code;
    });
}

ExitCode RunRestore(const CCommandOptions& options, const std::vector<std::string>& map,
                    std::ostream& out, std::ostream& err) {
    return ChangeModelFile(options, err, [&](CCliHost& host, bool& changed) {
        int before = 0;
        int after = 0;
        const ExitCode code =
            InEditor(host, options, err, [&](CDialogPresenter& editor, CScriptedRunner& runner) {
                CDialogModel& d = editor.Dialog();
                before = Combinations(editor);
                if (!d.IsEnabled(IDC_UCITAJ_SKLADISTE)) {
                    err << kProgram << options.file.string()
                        << " holds no stored combination set to restore\n";
                    return ExitCode::Usage;
                }
                ExitCode mapped = ExitCode::Service;
                runner.Expect(IDD_MAPIRANJE, [&](CDialogPresenter& mapping) {
                    if (!Map(mapping.Dialog().Grid(IDC_MAPIRANJE_GRID), map, err)) {
                        mapped = ExitCode::Usage;
                        return;
                    }
                    const size_t shown = runner.Messages().size();
                    mapping.Dialog().UserClick(IDOK);
                    if (mapping.Dialog().IsEnded()) {
                        mapped = ExitCode::Ok;
                        return;
                    }
                    ReportMessages(runner, shown, err);
                    mapped = ExitCode::Usage;
                });
                d.UserClick(IDC_UCITAJ_SKLADISTE);
                if (mapped != ExitCode::Ok)
                    return mapped;
                after = Combinations(editor);
                changed = after != before && Confirm(editor, runner, err);
                return after == before || changed ? ExitCode::Ok : ExitCode::Service;
            });
        if (code == ExitCode::Ok)
            out << "Restored " << after - before << " combinations from the stored set; "
                << options.file.string() << " has " << after << ".\n";
        return code;
    });
}
