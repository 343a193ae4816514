// Pictures of the main window and of the editors, rendered without a display.
#include "Screenshots.h"

#include "MainWindow.h"
#include "dialog/DialogPresenter.h"
#include "host/LoadsServices.h"
#include "text/Translator.h"
#include "ui/DialogView.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QPainter>
#include <QPixmap>

namespace {

/// A dialog an editor opens from one of its buttons, with what the user chose before: a row
/// of a grid, a text typed into a control.
struct CNestedDialog {
    int parent;
    int button;
    int grid = 0;
    int row = 0;
    int textControl = 0;
    const wchar_t* text = nullptr;
};
constexpr CNestedDialog kNested[] = {
    {1000, 1010, 1017, 3},              // the load case's name, from "Preimenuj"
    {1000, 1011},                       // the SRSS combinations
    {1002, 1010, 1017, 7},              // "Ne kombinuj sa" of a wind load
    {1002, 1014, 1017, 3},              // "Uvek kombinuj sa"
    {1001, 1041},                       // the choice of loads
    {1001, 1042, 0, 0, 1037, L"12-17"}, // saving an envelope
};

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

    // Every editor the module's commands open, as it opens, and the dialogs it opens in turn:
    // each is pictured once and closed.
    window.Runner().SetShownHandler([&](CQtDialogView& view, CDialogPresenter&) {
        view.SyncGrids();
        CDialogModel& dialog = view.Dialog();
        const int id = dialog.GetTemplateId();
        written += Save(view, dir.filePath(QStringLiteral("editor-%1.png").arg(id)));
        for (const CNestedDialog& nested : kNested) {
            if (nested.parent != id || !dialog.HasControl(nested.button))
                continue;
            if (nested.grid != 0 && dialog.HasGrid(nested.grid))
                dialog.Grid(nested.grid).UserClick(nested.row, 1);
            if (nested.text != nullptr)
                dialog.UserSetText(nested.textControl, nested.text);
            if (dialog.IsEnabled(nested.button))
                dialog.UserClick(nested.button);
        }
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
