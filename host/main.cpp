// vorta: the desktop host of the loads module. It loads the module at run time, like every
// host, and shows the model with the module's commands, selector and editors.
#include "HostText.h"
#include "Languages.h"
#include "MainWindow.h"
#include "Screenshots.h"
#include "diag/Assert.h"
#include "host/ModuleLoader.h"
#include "host/ProcessSetUp.h"
#include "text/Translator.h"
#include "ui/QtText.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QSettings>

#include <cstdlib>

int main(int argc, char** argv) {
    vhost::HeapInHugePages(argv);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Vorta"));
    QApplication::setApplicationName(QStringLiteral("vorta"));
    // A failed check logs into the temporary directory when there is one, as the program
    // changes into it anyway.
    if (const char* tmp = std::getenv("TMP"); tmp != nullptr && *tmp != '\0')
        vdiag::SetLogRoot(tmp);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The desktop host of the loads module: load cases, combinations, "
                       "envelopes and their editors."));
    parser.addHelpOption();
    QCommandLineOption moduleOption(
        QStringLiteral("module"), QStringLiteral("The loads module to load."),
        QStringLiteral("PATH"), QString::fromStdString(CModuleLoader::DefaultPath().string()));
    parser.addOption(moduleOption);
    QCommandLineOption screenshotsOption(
        QStringLiteral("screenshots"),
        QStringLiteral("Renders the main window and every editor on the example model into "
                       "DIR and ends."),
        QStringLiteral("DIR"));
    parser.addOption(screenshotsOption);
    QCommandLineOption pdfOption(
        QStringLiteral("pdf"),
        QStringLiteral("Writes the load tables of FILE (or of an empty model) to the PDF file "
                       "OUT and ends."),
        QStringLiteral("OUT"));
    parser.addOption(pdfOption);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A model file to open."),
                                 QStringLiteral("[FILE]"));
    parser.process(app);

    Languages::LoadCatalogs(Languages::CatalogDirectory());
    const QVariant saved = QSettings().value(QStringLiteral("language"));
    if (saved.isValid()) {
        ClTranslator::SetLanguage(saved.toInt() / 16, saved.toInt() % 16);
    } else {
        const auto [language, sub] = Languages::FromLocale(QLocale::system());
        ClTranslator::SetLanguage(language, sub);
    }

    CModuleLoader loader;
    COptionInfoList commands;
    std::string error;
    const std::filesystem::path module = parser.value(moduleOption).toStdString();
    if (!loader.Load(module, commands, error)) {
        QMessageBox::critical(nullptr, QStringLiteral("Vorta"),
                              T(L"Modul opterecenja ne moze da se ucita.") + QStringLiteral("\n") +
                                  QString::fromStdString(module.string()) + QStringLiteral("\n") +
                                  QString::fromStdString(error));
        return 3;
    }
    CMainWindow window(commands);
    if (parser.isSet(screenshotsOption))
        return RenderScreenshots(window, parser.value(screenshotsOption)) > 0 ? 0 : 1;
    if (parser.isSet(pdfOption)) {
        if (!parser.positionalArguments().isEmpty() &&
            !window.OpenFile(parser.positionalArguments().front()))
            return 2;
        return window.ExportPdf(parser.value(pdfOption)) ? 0 : 1;
    }
    window.show();
    if (!parser.positionalArguments().isEmpty())
        window.OpenFile(parser.positionalArguments().front());
    return QApplication::exec();
}
