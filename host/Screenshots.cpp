// Pictures of the main window and of the editors, rendered without a display.
#include "Screenshots.h"

#include "MainWindow.h"
#include "host/LoadsServices.h"
#include "text/Translator.h"
#include "ui/DialogView.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QPainter>
#include <QPixmap>

namespace {

bool Save(QWidget& widget, const QString& file) {
    QApplication::processEvents();
    return widget.grab().save(file);
}

} // namespace

int RenderScreenshots(CMainWindow& window, const QString& directory) {
    QDir().mkpath(directory);
    const QDir dir(directory);
    int written = 0;
    // The pictures show the program's own texts, whatever language the user chose.
    window.SetLanguage(ClTranslator::Srpski, ClTranslator::Latinica, false);
    window.resize(1200, 760);
    window.show();
    window.NewModel();
    window.RunCommandWork([] {
        if (CLoadsServices::NapraviPrimer != nullptr)
            CLoadsServices::NapraviPrimer();
        if (CMainFrame::UpdateCombo != nullptr)
            CMainFrame::UpdateCombo(-1);
    });
    window.Selector().setCurrentIndex(window.Selector().currentIndex());
    written += Save(window, dir.filePath(QStringLiteral("main-window.png")));

    // Every editor the module's commands open, as it opens.
    window.Runner().SetShownHandler([&](CQtDialogView& view, CDialogPresenter&) {
        view.SyncGrids();
        written += Save(
            view, dir.filePath(QStringLiteral("editor-%1.png").arg(view.Dialog().GetTemplateId())));
        view.reject();
    });
    for (const int command : window.EditorCommands())
        window.RunCommand(command);
    window.EditStabilnost();
    window.Runner().SetShownHandler(nullptr);

    window.SetResultsMode(true);
    window.SelectLoad(window.Selector().count() > 12 ? 12 : 0);
    written += Save(window, dir.filePath(QStringLiteral("main-window-results.png")));
    window.SetResultsMode(false);
    return written;
}
