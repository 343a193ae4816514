// The command line of new, export, import, generate, sort, dedupe, store, restore, case,
// envelope and srss.
#include "Subcommands.h"

#include "ModelCommands.h"

#include <iostream>

namespace {

const char* const kExitCodes =
    "Exit codes: 0 done, 1 a file missing, unreadable, damaged or not writable, 2 bad\n"
    "arguments or input refused (nothing is written then), 3 module not loadable,\n"
    "4 a service of the module failed, 5 internal error (see vmerror.log).";

} // namespace

struct CModelCommandLine::Values {
    const CCommandOptions& options;
    std::function<ExitCode()> chosen;

    std::string file;
    bool force = false;
    CInterchangeOptions interchange;
    std::string data;
    bool replace = false;
    bool append = false;
    bool ascending = false;
    bool descending = false;
    std::vector<std::string> map;
    std::string item;
    std::string name;
    CCaseValues caseValues;
    std::string coefficient;
    std::string modes;
    int to = 0;
    std::string selection;
    int mode = 0;
    std::vector<std::string> weights;

    explicit Values(const CCommandOptions& o) : options(o) {}

    /// The options of the run with the model file given.
    CCommandOptions Options() const {
        CCommandOptions o = options;
        o.file = file;
        return o;
    }
    /// Chooses the command when its part of the command line was parsed.
    void Choose(CLI::App* command, std::function<ExitCode()> run) {
        command->callback([this, run = std::move(run)] { chosen = run; });
    }
};

namespace {

CLI::App* Command(CLI::App& parent, const char* name, const char* description, const char* footer) {
    CLI::App* command = parent.add_subcommand(name, description);
    command->footer(std::string(footer) + (*footer != '\0' ? "\n" : "") + kExitCodes);
    return command;
}

void FileArgument(CLI::App* command, std::string& file) {
    command->add_option("FILE", file, "The model file")->type_name("")->required();
}

} // namespace

CModelCommandLine::CModelCommandLine(CLI::App& app, const CCommandOptions& options)
    : m_values(std::make_unique<Values>(options)) {
    Values& v = *m_values;
    std::ostream& out = std::cout;
    std::ostream& err = std::cerr;

    CLI::App* create = Command(app, "new", "Writes an empty model file", "");
    FileArgument(create, v.file);
    create->add_flag("--force", v.force, "Replace the file when it exists");
    v.Choose(create, [&v, &out, &err] { return RunNew(v.Options(), v.force, out, err); });

    CLI::App* exportCommand =
        Command(app, "export", "Writes the loads of the model as JSON, or its combinations as CSV",
                "JSON (docs/json-format.md) holds every load case with the values a user sets,\n"
                "the combinations, envelopes, SRSS cases, the stored combination set and the\n"
                "stability parameters; CSV holds the combinations, one row each, with a column\n"
                "per load case.");
    FileArgument(exportCommand, v.file);
    exportCommand
        ->add_option("--format", v.interchange.format,
                     "json or csv (default: by the "
                     "extension of OUT, else json)")
        ->check(CLI::IsMember({"json", "csv"}));
    exportCommand
        ->add_option("-o,--output", v.data,
                     "The file to write (default: standard "
                     "output)")
        ->type_name("OUT");
    v.Choose(exportCommand, [&v, &out, &err] {
        v.interchange.data = v.data;
        CCommandOptions options = v.Options();
        options.leaveAtOnce = true;
        return RunExport(options, v.interchange, out, err);
    });

    CLI::App* importCommand = Command(
        app, "import",
        "Reads loads into the model: a JSON description, or a CSV table of "
        "combinations",
        "A JSON description makes the model's loads those it describes: load cases of the\n"
        "same name keep their identity, all else is replaced. A CSV table (--combinations)\n"
        "replaces the model's combinations (--replace) or adds to them (--append). Input\n"
        "that is refused is named by its line and column, and the model stays as it was.");
    FileArgument(importCommand, v.file);
    importCommand->add_option("IN", v.data, "The JSON or CSV file (- for standard input)")
        ->type_name("")
        ->required();
    importCommand
        ->add_option("--format", v.interchange.format,
                     "json or csv (default: by the extension of IN, else json)")
        ->check(CLI::IsMember({"json", "csv"}));
    importCommand->add_flag("--combinations", v.interchange.combinations,
                            "IN is a CSV table of combinations");
    CLI::Option* replace = importCommand->add_flag("--replace", v.interchange.replace,
                                                   "The table's combinations replace the model's");
    importCommand
        ->add_flag("--append", v.interchange.append,
                   "The table's combinations come after the model's")
        ->excludes(replace);
    v.Choose(importCommand, [&v, &out, &err] {
        v.interchange.data = v.data;
        return RunImport(v.Options(), v.interchange, out, err);
    });

    CLI::App* generate = Command(
        app, "generate", "Generates the combinations of the model by its rules",
        "The combination editor's generator: every admissible set of load cases (permanent\n"
        "cases always, the never- and always-combine rules kept) with the sign variants of\n"
        "its alternating cases. The count of possible combinations is printed first.");
    FileArgument(generate, v.file);
    CLI::Option* generateReplace =
        generate->add_flag("--replace", v.replace, "Generated combinations replace the model's");
    generate->add_flag("--append", v.append, "Generated combinations come after the model's")
        ->excludes(generateReplace);
    v.Choose(generate, [&v, &out, &err] {
        const EAddMode mode =
            v.replace ? EAddMode::Replace : (v.append ? EAddMode::Append : EAddMode::Ask);
        return RunGenerate(v.Options(), mode, out, err);
    });

    CLI::App* sort = Command(app, "sort", "Sorts the combinations of the model",
                             "The combination editor's order: fewer load cases first, then by "
                             "the load cases'\nordinals and coefficients.");
    FileArgument(sort, v.file);
    CLI::Option* ascending = sort->add_flag("--ascending", v.ascending, "Ascending order");
    CLI::Option* descending = sort->add_flag("--descending", v.descending, "Descending order");
    ascending->excludes(descending);
    v.Choose(sort, [&v, &out, &err] {
        if (!v.ascending && !v.descending) {
            err << "vorta-cli: sort: give --ascending or --descending\n";
            return ExitCode::Usage;
        }
        return RunSort(v.Options(), v.ascending, out, err);
    });

    CLI::App* dedupe = Command(app, "dedupe", "Removes repeated combinations",
                               "Of equal combinations, one with a name a user gave stays (the "
                               "longer name of two),\nelse the earlier one.");
    FileArgument(dedupe, v.file);
    v.Choose(dedupe, [&v, &out, &err] { return RunDedupe(v.Options(), out, err); });

    CLI::App* store = Command(app, "store", "Keeps the combinations as the stored set",
                              "The stored set keeps the combinations with the load cases they "
                              "were made for.");
    FileArgument(store, v.file);
    store->add_flag("--replace", v.replace, "Replace the stored set there is");
    v.Choose(store, [&v, &out, &err] { return RunStore(v.Options(), v.replace, out, err); });

    CLI::App* restore =
        Command(app, "restore", "Adds the combinations of the stored set to the model's",
                "Load case N of the stored set goes to load case N of the model unless --map says\n"
                "otherwise: SNAPSHOT=CURRENT pairs, each by number or name, CURRENT \"none\" to\n"
                "leave the case out, e.g. --map \"1=2,Snow=none\".");
    FileArgument(restore, v.file);
    restore->add_option("--map", v.map, "Load cases of the stored set mapped onto the model's")
        ->delimiter(',')
        ->type_name("SNAPSHOT=CURRENT,...");
    v.Choose(restore, [&v, &out, &err] { return RunRestore(v.Options(), v.map, out, err); });

    CLI::App* cases = Command(app, "case", "Adds, renames, deletes or moves a load case",
                              "A load case is given by its number or its name.");
    cases->require_subcommand(1);
    CLI::App* add = Command(*cases, "add", "Adds a load case",
                            "It goes after the case --after names, else after the last "
                            "ordinary case.");
    FileArgument(add, v.file);
    add->add_option("NAME", v.name, "Its name")->type_name("")->required();
    add->add_option("--coefficient", v.coefficient, "Its coefficient (default 1)")->type_name("K");
    add->add_flag("--g", v.caseValues.g, "Marked (g)");
    add->add_flag("--seismic", v.caseValues.seismic, "Seismic");
    add->add_flag("--seismic-analysis", v.caseValues.seismicAnalysis,
                  "Enters the seismic analysis");
    add->add_flag("--nda", v.caseValues.nda, "Marked NDA");
    add->add_option("--modes", v.modes, "Number of multimodal tones")->type_name("N");
    add->add_option("--after", v.caseValues.after, "The case it follows")->type_name("CASE");
    v.Choose(add, [&v, &out, &err] {
        if (!v.coefficient.empty())
            v.caseValues.coefficient = v.coefficient;
        if (!v.modes.empty())
            v.caseValues.modes = v.modes;
        return RunCaseAdd(v.Options(), v.name, v.caseValues, out, err);
    });
    CLI::App* rename = Command(*cases, "rename", "Renames a load case", "");
    FileArgument(rename, v.file);
    rename->add_option("CASE", v.item, "The load case")->type_name("")->required();
    rename->add_option("NAME", v.name, "Its new name")->type_name("")->required();
    v.Choose(rename,
             [&v, &out, &err] { return RunCaseRename(v.Options(), v.item, v.name, out, err); });
    CLI::App* remove = Command(*cases, "delete", "Deletes a load case",
                               "The combinations that hold it, the SRSS cases that combine it "
                               "and envelopes left\nwithout loads go with it.");
    FileArgument(remove, v.file);
    remove->add_option("CASE", v.item, "The load case")->type_name("")->required();
    v.Choose(remove, [&v, &out, &err] { return RunCaseDelete(v.Options(), v.item, out, err); });
    CLI::App* move = Command(*cases, "move", "Moves a load case to another number",
                             "Ordinary load cases move among themselves, SRSS cases too.");
    FileArgument(move, v.file);
    move->add_option("CASE", v.item, "The load case")->type_name("")->required();
    move->add_option("--to", v.to, "Its new number")->type_name("N")->required();
    v.Choose(move, [&v, &out, &err] { return RunCaseMove(v.Options(), v.item, v.to, out, err); });

    CLI::App* envelopes = Command(app, "envelope", "Saves or deletes an envelope", "");
    envelopes->require_subcommand(1);
    CLI::App* envelopeAdd =
        Command(*envelopes, "add", "Saves an envelope of the selected loads",
                "The selection names loads on the global scale: load cases 1..N, then the\n"
                "combinations, e.g. \"1,3-5,12\".");
    FileArgument(envelopeAdd, v.file);
    envelopeAdd->add_option("NAME", v.name, "Its name")->type_name("")->required();
    envelopeAdd->add_option("--select", v.selection, "The loads it envelopes")
        ->type_name("LIST")
        ->required();
    envelopeAdd
        ->add_option("--mode", v.mode,
                     "0: extreme values, 1: with the values that go "
                     "with them")
        ->check(CLI::Range(0, 1));
    envelopeAdd->add_flag("--replace", v.replace, "Replace an envelope of the same name");
    v.Choose(envelopeAdd, [&v, &out, &err] {
        return RunEnvelopeAdd(v.Options(), v.name, v.selection, v.mode, v.replace, out, err);
    });
    CLI::App* envelopeDelete = Command(*envelopes, "delete", "Deletes an envelope",
                                       "The envelope is given by its number or its name.");
    FileArgument(envelopeDelete, v.file);
    envelopeDelete->add_option("ENVELOPE", v.item, "The envelope")->type_name("")->required();
    v.Choose(envelopeDelete,
             [&v, &out, &err] { return RunEnvelopeDelete(v.Options(), v.item, out, err); });

    CLI::App* srss = Command(app, "srss", "Sets an SRSS load case", "");
    srss->require_subcommand(1);
    CLI::App* srssSet =
        Command(*srss, "set", "Sets the weights of an SRSS case (made when there is none)",
                "The SRSS case combines the load cases given with their weights (0.01 or more,\n"
                "two at least) as the square root of the sum of the squares of their results.\n"
                "CASE is an SRSS case by number or name; a new name makes a new SRSS case.");
    FileArgument(srssSet, v.file);
    srssSet->add_option("CASE", v.item, "The SRSS case")->type_name("")->required();
    srssSet->add_option("--weights", v.weights, "The load cases with their weights")
        ->delimiter(',')
        ->type_name("CASE=WEIGHT,...")
        ->required();
    v.Choose(srssSet,
             [&v, &out, &err] { return RunSrssSet(v.Options(), v.item, v.weights, out, err); });
}

CModelCommandLine::~CModelCommandLine() = default;

const std::function<ExitCode()>& CModelCommandLine::Chosen() const {
    return m_values->chosen;
}
