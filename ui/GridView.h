#pragma once
// CQtGridView: the view of a grid model of the platform, a QTableView over its table model.
// Clicks, keys, typing, check and combo changes and popup menus become the grid's user
// actions; what the grid announces (cells, selection, focus, a request to start editing) is
// drawn. The grid is the only keeper of the selection: the view draws the grid's selected rows
// and never selects by itself.
#include "grid/GridModel.h"
#include "ui/GridTableModel.h"

#include <QTableView>

class CQtGridView : public QTableView {
    Q_OBJECT
public:
    explicit CQtGridView(CGridModel& grid, QWidget* parent = nullptr);

    CGridModel& Grid() { return m_model.Grid(); }
    CQtGridTableModel& TableModel() { return m_model; }
    /// Applies waiting structural changes now (sizes, widths, headers).
    void Sync();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void ApplyStructure();
    void StartEdit(int gridRow, int gridCol);
    void ShowFocus(int gridRow, int gridCol);
    static CGridModel::Click ClickOf(Qt::KeyboardModifiers modifiers);

    CQtGridTableModel m_model;
};
