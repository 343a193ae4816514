// A grid with a cell source of 32768 combinations x 66 columns: the view asks only for what it
// shows, and draws fixed rows and columns as headers.
#include "QtTestApp.h"

#include "grid/GridImages.h"
#include "ui/GridView.h"

#include <QHeaderView>
#include <QTest>

#include <gtest/gtest.h>

TEST(GridView, AsksALargeCellSourceOnlyForVisibleCells) {
    CGridModel grid(7);
    int asked = 0;
    grid.SetRowCount(32769);
    grid.SetColumnCount(66);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    for (int c = 0; c < 66; ++c)
        grid.SetColumnWidth(c, c == 0 ? 35 : 55);
    grid.SetListMode(true);
    grid.SetCellSource([&asked](int row, int col, CGridCell& cell) {
        ++asked;
        if (row == 0 && col == 0)
            cell.image = GridImage::Zaglavlje;
        cell.text = CString::Formatted(L"%d/%d", row, col);
        cell.foreground = col == 2 ? 0x00000080u : CGridCell::kDefaultColour;
    });
    CQtGridView view(grid);
    view.resize(800, 400);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.Sync();
    EXPECT_EQ(view.model()->rowCount(), 32768);
    EXPECT_EQ(view.model()->columnCount(), 65);
    EXPECT_EQ(view.columnWidth(0), 55);
    EXPECT_EQ(view.verticalHeader()->width(), 35);
    EXPECT_EQ(view.model()->headerData(5, Qt::Vertical).toString(), QStringLiteral("6/0"));
    EXPECT_EQ(view.model()->index(3, 1).data(Qt::ForegroundRole).value<QColor>(),
              QColor(0x80, 0, 0));

    asked = 0;
    view.grab();
    EXPECT_GT(asked, 0);
    EXPECT_LT(asked, 20 * 40 * 4) << "a paint asks for the visible cells, not for 2 million";

    // Scrolling to the end and a selection reach the grid's last rows.
    view.scrollToBottom();
    grid.UserClick(32768, 1);
    EXPECT_TRUE(view.model()->index(32767, 0).data(CQtGridTableModel::RowSelectedRole).toBool());
}
