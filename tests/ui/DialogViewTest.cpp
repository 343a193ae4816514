// The views draw any presenter's dialog from its template and models, and hand the user's
// actions back: tested with a small presenter of the test's own.
#include "QtTestApp.h"

#include "dialog/DialogPresenter.h"
#include "host/MessageBox.h"
#include "text/Translator.h"
#include "ui/DialogView.h"
#include "ui/GridView.h"
#include "ui/QtModalRunner.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleValidator>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

enum : int { kAdd = 100, kCheck = 101, kEdit = 102, kCombo = 103, kGrid = 104, kCount = 105 };

CDialogTemplate Template() {
    CDialogTemplate t;
    t.id = 4711;
    t.caption = L"Proba";
    t.width = 420;
    t.height = 300;
    t.controls = {
        {IDOK, EControlKind::Button, L"OK", 330, 8, 80, 24, true, true, true},
        {IDCANCEL, EControlKind::Button, L"Cancel", 330, 40, 80, 24},
        {kAdd, EControlKind::Button, L"Dodaj", 330, 72, 80, 24},
        {kCheck, EControlKind::CheckBox, L"Sa kopiranjem", 8, 8, 150, 24},
        {kEdit, EControlKind::NumberEdit, L"", 8, 40, 100, 24},
        {kCombo, EControlKind::ComboBox, L"", 120, 40, 100, 24},
        {CDialogModel::kStaticId, EControlKind::Static, L"Broj", 8, 72, 60, 24},
        {kCount, EControlKind::Static, L"0", 70, 72, 60, 24},
        {kGrid, EControlKind::Static, L"Grid", 8, 104, 310, 180},
    };
    return t;
}

/// A presenter that counts rows: "Dodaj" adds a row to its grid, enabled only while the check
/// box is checked; the number edit must hold 1..10.
class CProbaPresenter : public CDialogPresenter {
public:
    CProbaPresenter() : CDialogPresenter(Template()) {}

    int m_nAdded = 0;
    CString m_strEdited;

protected:
    void OnInitDialog() override {
        Dialog().Translate();
        Dialog().SetRange(kEdit, 1.0, 10.0);
        Dialog().SetDecimals(kEdit, 2);
        Dialog().SetValue(kEdit, 2.5);
        Dialog().AddString(kCombo, L"prvi");
        Dialog().AddString(kCombo, L"drugi");
        Dialog().SetCurSel(kCombo, 1);
        Dialog().Enable(kAdd, false);
        CGridModel& grid = CreateGrid(kGrid);
        grid.SetRedraw(false);
        grid.SetColumnCount(3);
        grid.SetRowCount(1);
        grid.SetFixedRowCount(1);
        grid.SetFixedColumnCount(1);
        grid.SetColumnWidth(0, 30);
        grid.SetColumnWidth(1, 150);
        grid.SetColumnWidth(2, 60);
        grid.SetItemText(0, 1, L"Naziv");
        grid.SetItemText(0, 2, L"St.");
        grid.SetListMode(true);
        grid.SetRedraw(true);
    }
    void OnButton(int id) override {
        if (id == kCheck) {
            Dialog().Enable(kAdd, Dialog().IsChecked(kCheck));
        } else if (id == kAdd) {
            CGridModel& grid = Dialog().Grid(kGrid);
            const int row = grid.GetRowCount();
            grid.SetRowCount(row + 1);
            grid.SetItemText(row, 0, CString::Formatted(L"%d", row));
            grid.SetItemText(row, 1, CString::Formatted(L"Red %d", row));
            grid.SetCheckCell(row, 2, false);
            Dialog().SetText(kCount, CString::Formatted(L"%d", ++m_nAdded));
        }
    }
    void OnEditChange(int id) override { m_strEdited = Dialog().GetText(id); }
    void OnOK() override {
        if (Dialog().ValidateNumberEdits())
            EndDialog(IDOK);
    }
};

template <class T> T* Find(CQtDialogView& view, int id) {
    return qobject_cast<T*>(view.Widget(id));
}

} // namespace

TEST(DialogView, DrawsTheTemplateAndHandsClicksTypingAndGridEditsToThePresenter) {
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Dodaj", L"Add");
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Proba", L"Trial");
    CProbaPresenter presenter;
    presenter.Start();
    CQtDialogView view(presenter.Dialog());
    view.show();
    view.SyncGrids();

    // Texts as the presenter translated them, states as it set them.
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Trial"));
    ASSERT_NE(Find<QPushButton>(view, kAdd), nullptr);
    EXPECT_EQ(Find<QPushButton>(view, kAdd)->text(), QStringLiteral("Add"));
    EXPECT_FALSE(Find<QPushButton>(view, kAdd)->isEnabled());
    EXPECT_TRUE(Find<QPushButton>(view, IDOK)->isDefault());
    EXPECT_EQ(Find<QLineEdit>(view, kEdit)->text(), QStringLiteral("2.50"));
    const auto* validator =
        qobject_cast<const QDoubleValidator*>(Find<QLineEdit>(view, kEdit)->validator());
    ASSERT_NE(validator, nullptr);
    EXPECT_EQ(validator->top(), 10.0);
    EXPECT_EQ(validator->decimals(), 2);
    EXPECT_EQ(Find<QComboBox>(view, kCombo)->currentText(), QStringLiteral("drugi"));
    EXPECT_FALSE(view.Widget(kGrid)->isVisible()) << "the placeholder gives way to its grid";
    CQtGridView* grid = view.GridView(kGrid);
    ASSERT_NE(grid, nullptr);
    const CGridModel& model = presenter.Dialog().Grid(kGrid);
    EXPECT_EQ(grid->geometry(), QRect(8, 104, 310, model.GetHeight()));
    EXPECT_EQ(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Naziv"));

    // The check box enables "Dodaj"; pressing it adds grid rows.
    QTest::mouseClick(Find<QCheckBox>(view, kCheck), Qt::LeftButton);
    EXPECT_TRUE(presenter.Dialog().IsChecked(kCheck));
    EXPECT_TRUE(Find<QCheckBox>(view, kCheck)->isChecked());
    ASSERT_TRUE(Find<QPushButton>(view, kAdd)->isEnabled());
    QTest::mouseClick(Find<QPushButton>(view, kAdd), Qt::LeftButton);
    QTest::mouseClick(Find<QPushButton>(view, kAdd), Qt::LeftButton);
    grid->Sync();
    EXPECT_EQ(grid->model()->rowCount(), 2);
    EXPECT_EQ(Find<QLabel>(view, kCount)->text(), QStringLiteral("2"));
    EXPECT_EQ(grid->model()->headerData(1, Qt::Vertical).toString(), QStringLiteral("2"));

    // A click selects the row in the grid, which the view draws; a check cell toggles.
    const QModelIndex name = grid->model()->index(1, 0);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(name).center());
    EXPECT_EQ(presenter.Dialog().Grid(kGrid).GetSelectedRows(), std::vector<int>{2});
    EXPECT_TRUE(name.data(CQtGridTableModel::RowSelectedRole).toBool());
    EXPECT_TRUE(
        grid->model()->setData(grid->model()->index(0, 1), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(presenter.Dialog().Grid(kGrid).GetCheck(1, 2));

    // Editing asked by the presenter opens the editor; what is typed reaches the grid.
    presenter.Dialog().Grid(kGrid).EditCell(1, 1);
    auto* editor = grid->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), QStringLiteral("Red 1"));
    editor->setText(QStringLiteral("Novi naziv"));
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents(); // the editor commits once the event loop runs
    EXPECT_EQ(presenter.Dialog().Grid(kGrid).GetItemText(1, 1), CString(L"Novi naziv"));

    // Typing reaches the model.
    QLineEdit* number = Find<QLineEdit>(view, kEdit);
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("12"));
    EXPECT_EQ(presenter.m_strEdited, CString(L"12"));
    ClTranslator::SetLanguage(ClTranslator::Srpski);
}

TEST(QtModalRunner, RunsPresentersModallyWithMessageBoxesAndProgress) {
    CQtModalRunner runner;
    runner.Install();

    // OK with a number out of range gives the model's message in a real box and stays open;
    // a number in range ends the dialog.
    CProbaPresenter presenter;
    QStringList boxes;
    runner.SetShownHandler([&boxes](CQtDialogView& view, CDialogPresenter&) {
        QLineEdit* number = Find<QLineEdit>(view, kEdit);
        number->selectAll();
        QTest::keyClicks(number, QStringLiteral("12"));
        WhenModal<QMessageBox>([&boxes](QMessageBox* box) {
            boxes << box->windowTitle() + QStringLiteral(": ") + box->text();
            box->buttons().front()->click();
        });
        QTest::mouseClick(Find<QPushButton>(view, IDOK), Qt::LeftButton);
        EXPECT_TRUE(view.isVisible());
        number->selectAll();
        QTest::keyClicks(number, QStringLiteral("3"));
        QTest::mouseClick(Find<QPushButton>(view, IDOK), Qt::LeftButton);
    });
    EXPECT_EQ(presenter.DoModal(), IDOK);
    EXPECT_EQ(boxes, QStringList{QStringLiteral("Greska: Unesite broj izmedju 1.00 i 10.00.")});
    EXPECT_EQ(presenter.Dialog().GetText(kEdit), CString(L"3"));

    // The close box is Cancel.
    CProbaPresenter closed;
    runner.SetShownHandler([](CQtDialogView& view, CDialogPresenter&) { view.close(); });
    EXPECT_EQ(closed.DoModal(), IDCANCEL);
    runner.SetShownHandler(nullptr);

    // Custom captions answer with the 1-based index of the pressed button.
    WhenModal<QMessageBox>([](QMessageBox* box) {
        ASSERT_EQ(box->buttons().size(), 3);
        for (QAbstractButton* button : box->buttons())
            if (button->text() == QStringLiteral("Dodaj"))
                button->click();
    });
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Vec postoje kreirane kombinacije!", L"Upozorenje",
                                            CVortaMessageBox::MB_ICONQUESTION,
                                            {L"Zameni", L"Dodaj", L"Cancel"}),
              2);
    WhenModal<QMessageBox>([](QMessageBox* box) {
        for (QAbstractButton* button : box->buttons())
            if (box->buttonRole(button) == QMessageBox::RejectRole)
                button->click();
    });
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Da li zelite da obrisete sve kombinacije?",
                                            L"Upozorenje", CVortaMessageBox::MB_YESNO),
              CVortaMessageBox::IDNO);

    // Long work shows progress, and Cancel stops it.
    int64_t done = 0;
    {
        CWaitProgress progress(L"Generisanje kombinacija", 1 << 20);
        for (; done < (1 << 20) && progress.Step(done); ++done) {
            if (done == 4096)
                for (QWidget* w : QApplication::topLevelWidgets())
                    if (auto* dialog = qobject_cast<QProgressDialog*>(w))
                        dialog->cancel();
        }
    }
    EXPECT_GT(done, 4096);
    EXPECT_LT(done, 8192);
}
