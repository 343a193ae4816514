// The grid control as data: what the user's actions may change and what the presenter and the
// views hear of them.
#include "grid/GridModel.h"

#include <gtest/gtest.h>

namespace {

/// Records what a presenter hears; refuses edits whose text is "x".
struct Handler : IGridHandler {
    std::vector<std::string> heard;
    bool OnGridEndEdit(CGridModel&, int row, int col, const CString& text) override {
        heard.push_back("edit " + std::to_string(row) + "," + std::to_string(col) + " " +
                        text.ToUtf8());
        return text != L"x";
    }
    void OnGridCheckChanged(CGridModel&, int row, int col) override {
        heard.push_back("check " + std::to_string(row) + "," + std::to_string(col));
    }
    void OnGridComboChanged(CGridModel& g, int row, int col) override {
        heard.push_back("combo " + std::to_string(g.GetComboSel(row, col)));
    }
    void OnGridSelChanged(CGridModel& g) override {
        std::string rows;
        for (int r : g.GetSelectedRows())
            rows += std::to_string(r) + ";";
        heard.push_back("sel " + rows);
    }
    void OnGridClick(CGridModel&, int row, int col) override {
        heard.push_back("click " + std::to_string(row) + "," + std::to_string(col));
    }
    void OnGridPopupCommand(CGridModel&, int, int, int command) override {
        heard.push_back("popup " + std::to_string(command));
    }
};

struct Observer : IGridObserver {
    std::vector<Change> changes;
    void GridChanged(const CGridModel&, Change change) override { changes.push_back(change); }
};

class GridModelTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_grid.SetHandler(&m_handler);
        m_grid.SetRowCount(5);
        m_grid.SetColumnCount(3);
        m_grid.SetFixedRowCount(1);
        m_grid.SetFixedColumnCount(1);
        m_grid.SetListMode(true);
    }
    CGridModel m_grid{1018};
    Handler m_handler;
};

} // namespace

TEST_F(GridModelTest, OnlyEditableCellsTakeTypedTextAndARefusedTextIsTakenBack) {
    m_grid.SetItemText(1, 1, L"old");
    EXPECT_TRUE(m_grid.UserEndEdit(1, 1, L"new"));
    EXPECT_EQ(m_grid.GetItemText(1, 1), L"new");
    EXPECT_FALSE(m_grid.UserEndEdit(1, 1, L"x"));
    EXPECT_EQ(m_grid.GetItemText(1, 1), L"new");

    m_grid.SetReadOnly(2, 1, true);
    m_grid.SetCheckCell(3, 1, true);
    for (const auto& [row, col] : {std::pair{0, 1}, {1, 0}, {2, 1}, {3, 1}, {9, 9}, {-1, 1}})
        EXPECT_FALSE(m_grid.UserEndEdit(row, col, L"t")) << row << "," << col;
    EXPECT_EQ(m_handler.heard, (std::vector<std::string>{"edit 1,1 new", "edit 1,1 x"}));
    EXPECT_TRUE(m_grid.GetCheck(3, 1));

    // An edit the presenter asked for is over once the user ends it.
    m_grid.EditCell(4, 2);
    EXPECT_EQ(m_grid.GetEditRow(), 4);
    EXPECT_EQ(m_grid.GetFocusRow(), 4);
    m_grid.UserEndEdit(4, 2, L"1.5");
    EXPECT_EQ(m_grid.GetEditRow(), -1);
}

TEST_F(GridModelTest, ChecksAndCombosChangeOnlyWhereTheUserMay) {
    m_grid.SetCheckCell(1, 2, false);
    m_grid.SetCheckCell(2, 2, true);
    m_grid.SetReadOnly(2, 2, true);
    EXPECT_TRUE(m_grid.UserClickCheck(1, 2));
    EXPECT_TRUE(m_grid.GetCheck(1, 2));
    EXPECT_FALSE(m_grid.UserClickCheck(2, 2)); // read-only
    EXPECT_FALSE(m_grid.UserClickCheck(3, 2)); // a text cell
    EXPECT_TRUE(m_grid.GetCheck(2, 2));

    auto options = std::make_shared<const std::vector<CString>>(
        std::vector<CString>{L"Nijedan", L"1. Stalno", L"2. Sneg"});
    m_grid.SetComboCell(3, 1, options, 7); // beyond the options: nothing selected
    EXPECT_EQ(m_grid.GetComboSel(3, 1), -1);
    EXPECT_TRUE(m_grid.UserSelectCombo(3, 1, 2));
    EXPECT_EQ(m_grid.GetItemText(3, 1), L"2. Sneg");
    EXPECT_FALSE(m_grid.UserSelectCombo(3, 1, 2)); // no change
    EXPECT_FALSE(m_grid.UserSelectCombo(3, 1, 3));
    EXPECT_EQ(m_handler.heard, (std::vector<std::string>{"check 1,2", "combo 2"}));
}

TEST_F(GridModelTest, ClicksSelectRowsInListModeAndThePresenterHearsSelectionThenClick) {
    m_grid.UserClick(2, 1);
    m_grid.UserClick(4, 1, CGridModel::Click::Extend);
    m_grid.UserClick(3, 2, CGridModel::Click::Toggle);
    m_grid.UserClick(0, 1); // the header row is never selected
    EXPECT_EQ(m_handler.heard,
              (std::vector<std::string>{"sel 2;", "click 2,1", "sel 2;3;4;", "click 4,1",
                                        "sel 2;4;", "click 3,2", "click 0,1"}));
    EXPECT_EQ(m_grid.GetFocusRow(), 0);

    m_grid.SetRowCount(4); // rows that go leave the selection
    EXPECT_EQ(m_grid.GetSelectedRows(), std::vector<int>{2});

    m_grid.EnableSelection(false);
    m_handler.heard.clear();
    m_grid.UserClick(1, 1);
    m_grid.UserSelectRows({1, 2});
    EXPECT_EQ(m_handler.heard, std::vector<std::string>{"click 1,1"});
    EXPECT_TRUE(m_grid.GetSelectedRows().empty());
}

TEST_F(GridModelTest, ResizingKeepsCellsAndRedrawOffGathersOneChange) {
    m_grid.SetItemText(1, 1, L"a");
    m_grid.SetItemImage(2, 2, 13);
    Observer view;
    m_grid.AddObserver(&view);
    m_grid.SetRedraw(false);
    m_grid.SetColumnCount(6);
    for (int r = 0; r < 5; ++r)
        m_grid.SetItemText(r, 5, L"n");
    m_grid.SetSelectedRows({1});
    m_grid.SetRedraw(true);
    EXPECT_EQ(view.changes, (std::vector<IGridObserver::Change>{IGridObserver::Change::Structure,
                                                                IGridObserver::Change::Selection}));
    EXPECT_EQ(m_grid.GetItemText(1, 1), L"a");
    EXPECT_EQ(m_grid.GetItemImage(2, 2), 13);
    EXPECT_EQ(m_grid.GetItemImage(1, 1), -1);
    EXPECT_THROW(m_grid.SetItemText(5, 0, L"out"), CInvalidArgException);
    m_grid.RemoveObserver(&view);
}

TEST_F(GridModelTest, PopupCommandsReachThePresenterOnlyWhenTheCellOffersThem) {
    const int menu = m_grid.AddPopupMenu({{1100, L"Ukljuci sve"}, {1101, L"Iskljuci sve", false}});
    m_grid.SetCellPopupMenu(1, 2, menu);
    m_grid.UserPopupCommand(1, 2, 1100);
    m_grid.UserPopupCommand(1, 2, 1101); // disabled
    m_grid.UserPopupCommand(2, 2, 1100); // the cell offers no menu
    EXPECT_EQ(m_handler.heard, std::vector<std::string>{"popup 1100"});
}

TEST_F(GridModelTest, ACellSourceAnswersForEveryCellAndEditsGoToThePresenter) {
    std::vector<CString> names = {L"", L"K1", L"K2", L"K3", L"K4"};
    m_grid.SetCellSource([&](int row, int col, CGridCell& cell) {
        cell.text = col == 1 ? names[static_cast<size_t>(row)] : CString(L"-");
        cell.readOnly = col == 2;
    });
    EXPECT_EQ(m_grid.GetItemText(3, 1), L"K3");
    EXPECT_TRUE(m_grid.IsReadOnly(3, 2));
    EXPECT_EQ(m_grid.GetItemText(7, 1), L""); // outside the grid
    EXPECT_TRUE(m_grid.UserEndEdit(3, 1, L"Novo"));
    EXPECT_FALSE(m_grid.UserEndEdit(3, 2, L"Novo"));
    EXPECT_EQ(m_handler.heard, std::vector<std::string>{"edit 3,1 Novo"});
    EXPECT_THROW(m_grid.SetItemText(1, 1, L"held"), CInvalidArgException);
}

TEST_F(GridModelTest, ChecksOfACellSourceChangeOnlyWhenThePresenterTakesTheClick) {
    struct SourceHandler : Handler {
        std::vector<bool> checks = {false, true, false, false, false};
        bool OnGridSetCheck(CGridModel&, int row, int, bool checked) override {
            if (row == 3)
                return false; // refused
            checks[static_cast<size_t>(row)] = checked;
            return true;
        }
    } handler;
    Observer observer;
    m_grid.SetHandler(&handler);
    m_grid.SetCellSource([&](int row, int col, CGridCell& cell) {
        cell.kind = col == 2 ? CGridCell::Kind::Check : CGridCell::Kind::Text;
        cell.checked = handler.checks[static_cast<size_t>(row)];
        cell.readOnly = row == 4;
    });
    m_grid.AddObserver(&observer);
    EXPECT_TRUE(m_grid.UserClickCheck(1, 2));
    EXPECT_FALSE(m_grid.GetCheck(1, 2));
    EXPECT_TRUE(m_grid.UserClickCheck(2, 2));
    EXPECT_TRUE(m_grid.GetCheck(2, 2));
    EXPECT_FALSE(m_grid.UserClickCheck(3, 2)); // the presenter refuses
    EXPECT_FALSE(m_grid.UserClickCheck(4, 2)); // read-only
    EXPECT_FALSE(m_grid.UserClickCheck(2, 1)); // no check cell
    EXPECT_EQ(handler.heard, (std::vector<std::string>{"check 1,2", "check 2,2"}));
    EXPECT_EQ(observer.changes, (std::vector<IGridObserver::Change>{IGridObserver::Change::Cells,
                                                                    IGridObserver::Change::Cells}));
}
