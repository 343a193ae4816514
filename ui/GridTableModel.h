#pragma once
// CQtGridTableModel: a grid model of the platform as a Qt table model. The scrollable cells
// are the table's cells; the fixed rows and columns are its headers (several fixed rows or
// columns are joined into one header). The table asks the grid only for the cells a view
// shows, so a grid with a cell source of any size costs only what is visible.
//
// Edits, checks and combo choices made in the table go to the grid as the user's actions;
// what the grid announces comes back as the table's signals. Structural changes are gathered
// and applied once the event loop runs (or at Sync), so that a presenter setting up a grid
// column by column resets the view once.
#include "grid/GridModel.h"

#include <QAbstractTableModel>

class CQtGridTableModel : public QAbstractTableModel, public IGridObserver {
    Q_OBJECT
public:
    /// Role of a combo cell's options (a QStringList) and of its selected option.
    static constexpr int OptionsRole = Qt::UserRole + 1;
    static constexpr int ComboSelRole = Qt::UserRole + 2;
    /// Role telling whether the cell's row is selected in the grid.
    static constexpr int RowSelectedRole = Qt::UserRole + 3;

    explicit CQtGridTableModel(CGridModel& grid, QObject* parent = nullptr);
    ~CQtGridTableModel() override;

    CGridModel& Grid() { return m_grid; }
    /// Grid row and column of a table index, and back.
    int GridRow(const QModelIndex& index) const { return index.row() + m_fixedRows; }
    int GridCol(const QModelIndex& index) const { return index.column() + m_fixedCols; }
    QModelIndex IndexOf(int gridRow, int gridCol) const;
    int FixedRows() const { return m_fixedRows; }
    int FixedCols() const { return m_fixedCols; }

    /// Applies a structural change that is still waiting.
    void Sync();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    void GridChanged(const CGridModel& grid, Change change) override;

signals:
    /// The structure was applied (sizes, widths): views lay themselves out again.
    void StructureApplied();
    void SelectionChanged();
    void FocusChanged(int gridRow, int gridCol);
    void EditRequested(int gridRow, int gridCol);

private:
    QVariant CellData(const CGridCell& cell, int gridRow, int role) const;

    CGridModel& m_grid;
    int m_rows = 0, m_cols = 0, m_fixedRows = 0, m_fixedCols = 0;
    bool m_bStructurePending = false;
};
