// A model's life in the desktop host: built from an empty file with the editors through their
// views, seen in the tables, undone and saved; two models opened in turn without leftovers;
// the question before a changed model is closed, recent files, idle release of undo steps and
// the PDF of the load tables.
#include "HostFixture.h"

#include "LoadTables.h"
#include "host/LoadsServices.h"
#include "ui/DialogView.h"
#include "ui/GridView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <fstream>

namespace {

void Press(CQtDialogView& view, int id) {
    auto* button = qobject_cast<QPushButton*>(view.Widget(id));
    ASSERT_NE(button, nullptr) << id;
    ASSERT_TRUE(button->isEnabled()) << id;
    QTest::mouseClick(button, Qt::LeftButton);
}

/// The table column of a grid view whose header reads `header` (-1 when none does).
int Column(CQtGridView& grid, const QString& header) {
    for (int c = 0; c < grid.model()->columnCount(); ++c)
        if (grid.model()->headerData(c, Qt::Horizontal).toString() == header)
            return c;
    return -1;
}

/// The cell editor the grid view has open (null when none is).
QLineEdit* OpenEditor(CQtGridView& grid) {
    for (QLineEdit* editor : grid.viewport()->findChildren<QLineEdit*>())
        if (editor->isVisible())
            return editor;
    return nullptr;
}

/// Types `text` into a cell of the grid view as the user does: an editor still open elsewhere
/// is committed, the cell's editor opens, takes the text and commits it with Enter.
void Type(CQtGridView& grid, int row, const QString& header, const QString& text) {
    const int col = Column(grid, header);
    ASSERT_GE(col, 0) << header.toStdString();
    const QModelIndex index = grid.model()->index(row, col);
    if (grid.currentIndex() != index) {
        if (QLineEdit* open = OpenEditor(grid)) {
            QTest::keyClick(open, Qt::Key_Return);
            QApplication::processEvents();
        }
        grid.setCurrentIndex(index);
        grid.edit(index);
    }
    QLineEdit* editor = OpenEditor(grid);
    ASSERT_NE(editor, nullptr) << header.toStdString();
    editor->setText(text);
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
}

void Check(CQtGridView& grid, int row, const QString& header) {
    const int col = Column(grid, header);
    ASSERT_GE(col, 0) << header.toStdString();
    EXPECT_TRUE(
        grid.model()->setData(grid.model()->index(row, col), Qt::Checked, Qt::CheckStateRole));
}

/// Answers every message box with the button of that text until the returned guard goes.
class CAnswerBoxes {
public:
    explicit CAnswerBoxes(const QString& button) {
        QObject::connect(&m_timer, &QTimer::timeout, [this, button] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m_texts << box->text();
                for (QAbstractButton* b : box->buttons())
                    if (b->text() == button) {
                        b->click();
                        return;
                    }
                box->reject();
            }
        });
        m_timer.start(10);
    }
    const QStringList& Texts() const { return m_texts; }

private:
    QTimer m_timer;
    QStringList m_texts;
};

int Rows(CMainWindow& window, int table) {
    return window.Tables().Table(table)->model()->rowCount();
}

QString Cell(CMainWindow& window, int table, int row, int col) {
    return window.Tables().Table(table)->model()->index(row, col).data().toString();
}

constexpr int kLoadCases = 3517;
constexpr int kCombinations = 3518;
constexpr int kEnvelopes = 3519;

} // namespace

TEST_F(HostTest, BuildsAModelFromAnEmptyFileWithTheEditorsThenUndoesAndSavesIt) {
    CMainWindow& w = *m_window;
    const QString empty = QString::fromStdString((m_dir / "prazan.vld").string());
    ASSERT_TRUE(w.SaveFile(empty));
    ASSERT_TRUE(w.OpenFile(empty));
    EXPECT_EQ(Rows(w, 0), 0);

    // Three load cases typed into the list editor, the first one the self-weight.
    w.Runner().SetShownHandler([](CQtDialogView& view, CDialogPresenter&) {
        CQtGridView* grid = view.GridView(1017);
        ASSERT_NE(grid, nullptr);
        const QString names[] = {QStringLiteral("Sopstvena tezina"), QStringLiteral("Korisno"),
                                 QStringLiteral("Sneg")};
        for (const QString& name : names) {
            Press(view, 1007);
            view.SyncGrids();
            const int row = grid->model()->rowCount() - 1;
            Type(*grid, row, QStringLiteral("Naziv"), name);
            Type(*grid, row, QStringLiteral("Koef."), QStringLiteral("1.5"));
        }
        Check(*grid, 0, QStringLiteral("g"));
        Press(view, IDOK);
    });
    w.RunCommand(kLoadCases);
    ASSERT_EQ(Rows(w, 0), 3);
    EXPECT_EQ(Cell(w, 0, 2, 1), QStringLiteral("Sneg"));
    EXPECT_EQ(Cell(w, 0, 0, 2), QStringLiteral("1"));
    EXPECT_EQ(w.Selector().count(), 4) << "the total load and three load cases";

    // Combinations generated with the self-weight permanent.
    w.Runner().SetShownHandler([](CQtDialogView& view, CDialogPresenter&) {
        CQtGridView* cases = view.GridView(1017);
        ASSERT_NE(cases, nullptr);
        Check(*cases, 0, QStringLiteral("St."));
        Press(view, 1008);
        Press(view, IDOK);
    });
    w.RunCommand(kCombinations);
    w.Runner().SetShownHandler(nullptr);
    ASSERT_EQ(Rows(w, 1), 4) << "I with any of II and III";
    EXPECT_EQ(Cell(w, 1, 3, 1), QStringLiteral("1.50xI+1.50xII+1.50xIII"));
    EXPECT_TRUE(w.isWindowModified());

    // Undo takes back the named step, redo brings it again, and the model is saved.
    EXPECT_EQ(w.Document().UndoName(), CString(L"Kombinacije opterecenja"));
    w.UndoStep();
    EXPECT_EQ(Rows(w, 1), 0);
    EXPECT_EQ(Rows(w, 0), 3);
    w.RedoStep();
    EXPECT_EQ(Rows(w, 1), 4);
    ASSERT_TRUE(w.SaveFile(empty));
    EXPECT_FALSE(w.isWindowModified());
    w.NewModel();
    ASSERT_TRUE(w.OpenFile(empty));
    EXPECT_EQ(Rows(w, 0), 3);
    EXPECT_EQ(Rows(w, 1), 4);
    EXPECT_FALSE(w.isWindowModified());
}

TEST_F(HostTest, OpensTwoDifferentModelsInTurnWithoutLeftovers) {
    CMainWindow& w = *m_window;
    const auto second = ExampleFile("drugi.vld");
    // The first model: the example with its combinations generated anew (more of them).
    {
        const CAnswerBoxes replace(QStringLiteral("Zameni"));
        w.Runner().SetShownHandler([](CQtDialogView& view, CDialogPresenter&) {
            Press(view, 1008);
            Press(view, IDOK);
        });
        w.RunCommand(kCombinations);
    }
    const QString first = QString::fromStdString((m_dir / "prvi.vld").string());
    w.SetTeorija(2);
    ASSERT_TRUE(w.SaveFile(first));
    const int firstCombinations = Rows(w, 1);
    ASSERT_GT(firstCombinations, 6);

    // In the first model: an active envelope and a load picked in the results.
    ASSERT_TRUE(w.OpenFile(first));
    w.SetResultsMode(true);
    const int firstLoads = w.Selector().count();
    QString shown;
    w.Runner().SetShownHandler([&shown](CQtDialogView& view, CDialogPresenter&) {
        auto* list = qobject_cast<QListWidget*>(view.Widget(1036));
        ASSERT_NE(list, nullptr);
        ASSERT_GT(list->count(), 0);
        list->setCurrentRow(0);
        Press(view, 1040);
        shown = qobject_cast<QLabel*>(view.Widget(1043))->text();
        Press(view, IDOK);
    });
    w.RunCommand(kEnvelopes);
    EXPECT_TRUE(shown.startsWith(QStringLiteral("Aktivna anvelopa"))) << shown.toStdString();
    w.SelectLoad(firstLoads - 2);
    EXPECT_NE(w.StatusText(), QStringLiteral("Opterecenje 1: Sopstvena tezina"));

    // The second model shows only its own loads, no active envelope and its own theory.
    ASSERT_TRUE(w.OpenFile(QString::fromStdString(second.string())));
    EXPECT_EQ(w.Selector().currentIndex(), 0);
    EXPECT_EQ(w.StatusText(), QStringLiteral("Opterecenje 1: Sopstvena tezina"));
    EXPECT_EQ(CLoadsServices::GetTeorija(), 1);
    EXPECT_EQ(Rows(w, 1), 6);
    EXPECT_EQ(w.Selector().count(), firstLoads - (firstCombinations - 6));
    w.Runner().SetShownHandler([&shown](CQtDialogView& view, CDialogPresenter&) {
        shown = qobject_cast<QLabel*>(view.Widget(1043))->text();
        Press(view, IDCANCEL);
    });
    w.RunCommand(kEnvelopes);
    w.Runner().SetShownHandler(nullptr);
    EXPECT_EQ(shown, QStringLiteral("Nema aktivne anvelope."));

    // And back: the first model as it was saved.
    ASSERT_TRUE(w.OpenFile(first));
    EXPECT_EQ(w.Selector().count(), firstLoads);
    EXPECT_EQ(CLoadsServices::GetTeorija(), 2);
}

TEST_F(HostTest, AsksBeforeClosingAChangedModelAndOffersRecentFiles) {
    CMainWindow& w = *m_window;
    const auto file = ExampleFile("primer.vld");
    w.SetTeorija(2);
    ASSERT_TRUE(w.isWindowModified());
    w.UndoStep();
    EXPECT_FALSE(w.isWindowModified()) << "back to the saved model";
    w.RedoStep();
    ASSERT_TRUE(w.isWindowModified());
    {
        const CAnswerBoxes cancel(QStringLiteral("Cancel"));
        EXPECT_FALSE(w.close());
        ASSERT_EQ(cancel.Texts().size(), 1);
        EXPECT_TRUE(cancel.Texts().front().startsWith(QStringLiteral("Model je izmenjen")));
    }
    EXPECT_TRUE(w.isVisible());
    {
        // The question before New: "Ne" drops the change.
        const CAnswerBoxes no(QStringLiteral("Ne"));
        w.NewModel();
        EXPECT_EQ(no.Texts().size(), 1);
    }
    EXPECT_EQ(Rows(w, 0), 0);
    EXPECT_TRUE(w.close()) << "an unchanged model closes without a question";

    // The saved file heads the recent files and opens from there.
    QMenu* recent = nullptr;
    for (QMenu* menu : w.menuBar()->findChildren<QMenu*>())
        if (menu->title() == QStringLiteral("Skoro otvarani modeli"))
            recent = menu;
    ASSERT_NE(recent, nullptr);
    ASSERT_FALSE(recent->actions().isEmpty());
    EXPECT_TRUE(recent->actions().front()->text().endsWith(QString::fromStdString(file.string())));
    recent->actions().front()->trigger();
    EXPECT_EQ(Rows(w, 0), 11);
}

TEST_F(HostTest, GivesBackUnreachableUndoStepsWhenIdleAndPrintsTheTablesToPdf) {
    CMainWindow& w = *m_window;
    ExampleFile("primer.vld");
    w.SetTeorija(2);
    w.UndoStep();
    w.SetTeorija(2); // the undone step can no longer be redone
    ASSERT_FALSE(w.Document().CanRedo());
    for (int i = 0; i < 200 && w.Document().Base().HasDiscarded(); ++i)
        QTest::qWait(20);
    EXPECT_FALSE(w.Document().Base().HasDiscarded());

    const QString pdf = QString::fromStdString((m_dir / "tabele.pdf").string());
    ASSERT_TRUE(w.ExportPdf(pdf));
    std::ifstream in(pdf.toStdString(), std::ios::binary);
    std::string head(5, '\0');
    in.read(head.data(), 5);
    EXPECT_EQ(head, "%PDF-");
    in.seekg(0, std::ios::end);
    EXPECT_GT(in.tellg(), 4000) << "five tables of the example model";
}

TEST_F(HostTest, KeepsTheStabilityParametersWithTheModel) {
    CMainWindow& w = *m_window;
    const auto file = ExampleFile("primer.vld");
    ASSERT_TRUE(w.Document().Stabilnost().empty());

    // The first combination chosen for the analysis in the stability editor's view.
    w.Runner().SetShownHandler([](CQtDialogView& view, CDialogPresenter&) {
        CQtGridView* combinations = view.GridView(1018);
        ASSERT_NE(combinations, nullptr);
        const QModelIndex first = combinations->model()->index(0, 1);
        ASSERT_EQ(first.data(Qt::CheckStateRole), Qt::Unchecked);
        EXPECT_TRUE(combinations->model()->setData(first, Qt::Checked, Qt::CheckStateRole));
        Press(view, IDOK);
    });
    w.EditStabilnost();
    const std::vector<uint8_t> record = w.Document().Stabilnost();
    ASSERT_FALSE(record.empty());
    EXPECT_EQ(w.Document().UndoName(), CString(L"Parametri stabilnosti"));
    w.UndoStep();
    EXPECT_TRUE(w.Document().Stabilnost().empty());
    w.RedoStep();
    EXPECT_EQ(w.Document().Stabilnost(), record);

    // Saved and read back, the editor shows them again.
    ASSERT_TRUE(w.SaveFile(QString::fromStdString(file.string())));
    w.NewModel();
    ASSERT_TRUE(w.OpenFile(QString::fromStdString(file.string())));
    EXPECT_EQ(w.Document().Stabilnost(), record);
    bool chosen = false;
    w.Runner().SetShownHandler([&chosen](CQtDialogView& view, CDialogPresenter&) {
        chosen = view.GridView(1018)->model()->index(0, 1).data(Qt::CheckStateRole) == Qt::Checked;
        Press(view, IDCANCEL);
    });
    w.EditStabilnost();
    w.Runner().SetShownHandler(nullptr);
    EXPECT_TRUE(chosen);
    EXPECT_FALSE(w.isWindowModified()) << "Cancel changes nothing";
}
