// The desktop host as a user drives it: the example model, both load selectors, the
// combination editor through its view, undo and redo, files, and the language.
#include "HostFixture.h"

#include "Languages.h"
#include "LoadTables.h"
#include "host/LoadsServices.h"
#include "ui/DialogView.h"
#include "ui/GridView.h"

#include <QAction>
#include <QComboBox>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <fstream>

namespace {

/// Answers the next message box with the button of that text; records its text.
void Answer(const QString& button, QString* text = nullptr) {
    WhenModal<QMessageBox>([button, text](QMessageBox* box) {
        if (text != nullptr)
            *text = box->text();
        for (QAbstractButton* b : box->buttons())
            if (b->text() == button) {
                b->click();
                return;
            }
        box->reject();
    });
}

int Rows(CMainWindow& window, int table) {
    return window.Tables().Table(table)->model()->rowCount();
}

} // namespace

TEST_F(HostTest, PicksLoadsInBothSelectorsAndKeepsTheTheoryWithTheModel) {
    const auto file = ExampleFile("primer.vld");
    CMainWindow& w = *m_window;
    EXPECT_EQ(w.Selector().count(), 9) << "total load and the eight ordinary load cases";
    w.SelectLoad(3);
    EXPECT_EQ(w.StatusText(), QStringLiteral("Opterecenje 3: Korisno opterecenje - 1. sprat"));

    w.SetResultsMode(true);
    EXPECT_EQ(w.Selector().count(), 18);
    w.SelectLoad(12);
    EXPECT_EQ(w.Selector().currentIndex(), 12);
    EXPECT_TRUE(w.StatusText().startsWith(QStringLiteral("Opterecenje 13: 1.35xI+1.35xII")));
    EXPECT_FALSE(w.CommandAction(3518)->isVisible()) << "the editor belongs to the input";

    w.SetTeorija(2);
    EXPECT_EQ(CLoadsServices::GetTeorija(), 2);
    EXPECT_TRUE(w.isWindowModified());
    ASSERT_TRUE(w.SaveFile(QString::fromStdString(file.string())));

    // A new model leaves nothing of the old one in the module.
    w.NewModel();
    EXPECT_EQ(w.Selector().count(), 0);
    EXPECT_EQ(CLoadsServices::GetTeorija(), 1);
    EXPECT_EQ(Rows(w, 0), 0);
    EXPECT_TRUE(w.StatusText().isEmpty());

    // A file that cannot be read is refused with a message, and the open model stays.
    ASSERT_TRUE(w.OpenFile(QString::fromStdString(file.string())));
    EXPECT_EQ(CLoadsServices::GetTeorija(), 2);
    EXPECT_EQ(Rows(w, 0), 11);
    std::ofstream(m_dir / "bad.vld") << "not a model";
    QString message;
    Answer(QStringLiteral("OK"), &message);
    EXPECT_FALSE(w.OpenFile(QString::fromStdString((m_dir / "bad.vld").string())));
    EXPECT_TRUE(message.contains(QStringLiteral("bad.vld"))) << message.toStdString();
    EXPECT_EQ(Rows(w, 0), 11);
    EXPECT_EQ(w.Selector().count(), 18);
}

TEST_F(HostTest, RunsTheCombinationEditorThroughItsViewWithUndoAndRedo) {
    ExampleFile("primer.vld");
    CMainWindow& w = *m_window;
    ASSERT_EQ(Rows(w, 1), 6);
    int generated = 0;
    w.Runner().SetShownHandler([&generated](CQtDialogView& view, CDialogPresenter&) {
        ASSERT_EQ(view.Dialog().GetTemplateId(), 1002);
        // Generation asks what to do with the combinations there are: replace them.
        Answer(QStringLiteral("Zameni"));
        QTest::mouseClick(qobject_cast<QPushButton*>(view.Widget(1008)), Qt::LeftButton);
        view.SyncGrids();
        CQtGridView* grid = view.GridView(1018);
        ASSERT_NE(grid, nullptr);
        generated = grid->model()->rowCount();
        const QModelIndex name = grid->model()->index(0, 0);
        EXPECT_TRUE(grid->model()->setData(name, QStringLiteral("Moja kombinacija")));
        QTest::mouseClick(qobject_cast<QPushButton*>(view.Widget(1)), Qt::LeftButton);
    });
    w.RunCommand(3518);
    w.Runner().SetShownHandler(nullptr);
    ASSERT_GT(generated, 6);
    EXPECT_EQ(Rows(w, 1), generated);
    EXPECT_EQ(w.Tables().Table(1)->model()->index(0, 1).data().toString(),
              QStringLiteral("Moja kombinacija"));
    EXPECT_TRUE(w.findChild<QAction*>() != nullptr);

    w.UndoStep();
    EXPECT_EQ(Rows(w, 1), 6);
    w.RedoStep();
    EXPECT_EQ(Rows(w, 1), generated);
}

TEST_F(HostTest, SwitchesTheLanguageOfMenusCommandsAndTables) {
    ExampleFile("primer.vld");
    CMainWindow& w = *m_window;
    w.SetLanguage(ClTranslator::Engleski, ClTranslator::Latinica);
    EXPECT_EQ(w.menuBar()->actions().front()->text(), QStringLiteral("&File"));
    EXPECT_EQ(w.CommandAction(3518)->text(), QStringLiteral("Load combinations"));
    EXPECT_EQ(w.Tables().tabText(0), QStringLiteral("Load cases"));
    EXPECT_EQ(w.Selector().itemText(0), QStringLiteral("0. Total load"));

    w.SetLanguage(ClTranslator::Srpski, ClTranslator::Cirilica);
    EXPECT_EQ(w.CommandAction(3518)->text(), QStringLiteral("Комбинације оптерећења"));

    w.SetLanguage(ClTranslator::Bugarski, ClTranslator::Latinica);
    EXPECT_TRUE(ClTranslator::bugarskiJezik());

    // The first start takes the language of the system's locale.
    const struct {
        const char* locale;
        std::pair<int, int> language;
    } locales[] = {
        {"sr_RS", {ClTranslator::Srpski, ClTranslator::Cirilica}},
        {"sr_Latn_RS", {ClTranslator::Srpski, ClTranslator::Latinica}},
        {"hr_HR", {ClTranslator::Srpski, ClTranslator::Latinica}},
        {"bg_BG", {ClTranslator::Bugarski, ClTranslator::Latinica}},
        {"de_DE", {ClTranslator::Engleski, ClTranslator::Latinica}},
    };
    for (const auto& [locale, language] : locales)
        EXPECT_EQ(Languages::FromLocale(QLocale(QString::fromLatin1(locale))), language) << locale;
}
