// vorta-cli: the headless host of the loads module. It loads the module at run time and
// builds, changes, shows and exchanges model files.
#include "Commands.h"
#include "Subcommands.h"
#include "diag/Assert.h"
#include "host/ModuleLoader.h"
#include "host/ProcessSetUp.h"
#include "text/Catalogs.h"
#include "text/Translator.h"

#include <CLI/CLI.hpp>

#include <iostream>

int main(int argc, char** argv) {
    vhost::HeapInHugePages(argv);
    vhost::KeepFreedMemory();
    // A check of the program that fails must never look like success to a script.
    vdiag::SetFatalExitCode(static_cast<int>(ExitCode::Internal));
    // The module's tables and messages come in the language of the locale, as in the desktop
    // host: English under C and POSIX.
    vtext::LoadCatalogs(vtext::CatalogDirectory());
    const auto [language, subLanguage] = vtext::LanguageOfEnvironment();
    ClTranslator::SetLanguage(language, subLanguage);
    CLI::App app{"The headless host of the loads module: builds, changes, shows and exchanges the "
                 "loads of model files."};
    app.name("vorta-cli");
    app.require_subcommand(1);
    // Options of the program may also follow the command: `vorta-cli show FILE --module PATH`.
    app.fallthrough();
    app.footer(
        "The module is libopterecenje.so beside the program or in its ../lib directory; the\n"
        "environment variable VORTA_OPTERECENJE_MODULE or --module names another file.\n"
        "Exit codes: 0 done, 1 model file missing, unreadable, damaged or not writable,\n"
        "2 bad arguments or input refused, 3 module not loadable, 4 a service of the module\n"
        "failed, 5 internal error (a check of the program failed; see vmerror.log).\n"
        "Every command has --help.");

    CCommandOptions options;
    std::string module = CModuleLoader::DefaultPath().string();
    app.add_option("--module", module, "The loads module to load")
        ->type_name("PATH")
        ->capture_default_str();

    CLI::App* demo = app.add_subcommand("demo", "Writes the example model to FILE and shows it");
    demo->footer("The example has a few storeys: self-weight, added dead load, imposed loads per\n"
                 "storey, snow, wind in two directions, two seismic directions with their SRSS\n"
                 "case, combinations and an envelope. It is then shown as `show` shows a file.");
    std::string demoFile;
    demo->add_option("FILE", demoFile, "The model file to write (replaced if it exists)")
        ->type_name("")
        ->required();

    CLI::App* show = app.add_subcommand("show", "Prints the loads of the model FILE");
    show->footer(
        "Prints the module's tables of load cases, combinations and envelopes, the global\n"
        "scale of loads, the factor vectors for analysis and for printing of every load,\n"
        "the load selector in input and in results mode, and the checksums.");
    std::string showFile;
    int teorija = 1;
    show->add_option("FILE", showFile, "The model file to read")->type_name("")->required();
    CLI::Option* teorijaOption =
        show->add_option("--teorija", teorija,
                         "The analysis theory: 1 superposes the results of the load cases; any "
                         "other value analyses every combination by itself")
            ->type_name("N");
    std::string showFormat = "text";
    show->add_option("--format", showFormat, "text (tables) or json (for scripts)")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();

    const CModelCommandLine modelCommands(app, options);

    ExitCode result = ExitCode::Ok;
    try {
        app.parse(argc, argv);
        options.module = module;
        if (modelCommands.Chosen()) {
            result = modelCommands.Chosen()();
        } else if (demo->parsed()) {
            options.file = demoFile;
            result = RunDemo(options, std::cout, std::cerr);
        } else {
            options.file = showFile;
            if (teorijaOption->count() > 0)
                options.teorija = teorija;
            options.json = showFormat == "json";
            options.leaveAtOnce = true;
            result = RunShow(options, std::cout, std::cerr);
        }
    } catch (const CLI::ParseError& e) {
        result = app.exit(e) == 0 ? ExitCode::Ok : ExitCode::Usage;
    }
    // Output that did not reach its destination (a full disk, a closed pipe) is not success.
    return static_cast<int>(FlushOutput(result, std::cout, std::cerr));
}
