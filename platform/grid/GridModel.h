#pragma once
// CGridModel: the grid control of the host's dialogs as data, neutral of any window toolkit.
//
// A grid is a table of cells with fixed (header) rows and columns at the top and left. A cell
// is a text, a check box or a combo box; it can be read-only, carry a foreground and a
// background colour and an image from the shared image list of grids (by number). A grid in
// list mode with selection enabled selects whole rows; the selection is the list of selected
// row numbers. The focus cell, the cell to scroll into view and a request to start editing a
// cell are kept for the view.
//
// Two kinds of listener meet here. The presenter that owns the grid is its handler: it hears
// what the user did (an edit ended, a check or combo changed, the selection changed, a cell
// was clicked, a popup command was chosen). A view is an observer: it hears what to redraw.
// The user actions (the User* functions) are what a view calls when the user acts, and what a
// scripted host or a test calls in its place; they change the grid the way the real control
// does and then tell the handler.
//
// Large grids need not hold their cells: a cell source computes any cell on demand, so a view
// asks only for the cells it shows.
//
// Colours are colour values 0x00BBGGRR (red in the lowest byte); kDefaultColour leaves the
// view's own colour.
#include "framework/Exceptions.h"
#include "framework/String.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class CGridModel;

/// One cell as the grid shows it.
struct CGridCell {
    enum class Kind : uint8_t { Text, Check, Combo };
    static constexpr uint32_t kDefaultColour = 0xFFFFFFFFu;

    Kind kind = Kind::Text;
    bool readOnly = false;
    bool checked = false;   // check cells
    int16_t image = -1;     // number in the shared image list; -1 none
    int16_t popupMenu = -1; // index of the grid's popup menu the cell offers; -1 none
    int comboSel = -1;      // combo cells: selected option; -1 none
    uint32_t foreground = kDefaultColour;
    uint32_t background = kDefaultColour;
    CString text;
    /// Combo cells: the options, usually shared by every cell of a column.
    std::shared_ptr<const std::vector<CString>> options;
};

/// A command of a popup menu; command 0 is a separator.
struct CMenuItem {
    int command = 0;
    CString text;
    bool enabled = true;
};
using CPopupMenu = std::vector<CMenuItem>;

/// What a presenter hears from its grids.
class IGridHandler {
public:
    virtual ~IGridHandler() = default;
    /// The user finished typing `text` into a cell, which already shows it; false refuses the
    /// text and the cell takes its old text back.
    virtual bool OnGridEndEdit(CGridModel& grid, int row, int col, const CString& text);
    /// A check cell of a grid whose cells come from a source was clicked: the grid cannot
    /// change the cell, so the handler sets its own data to `checked` (the grid then redraws and
    /// tells OnGridCheckChanged); false refuses the click.
    virtual bool OnGridSetCheck(CGridModel& grid, int row, int col, bool checked);
    virtual void OnGridCheckChanged(CGridModel& grid, int row, int col);
    virtual void OnGridComboChanged(CGridModel& grid, int row, int col);
    virtual void OnGridSelChanged(CGridModel& grid);
    virtual void OnGridClick(CGridModel& grid, int row, int col);
    virtual void OnGridPopupCommand(CGridModel& grid, int row, int col, int command);
};

/// What a view hears from a grid.
class IGridObserver {
public:
    enum class Change {
        Structure, // sizes, widths, modes or any number of cells: redraw everything
        Cells,     // cell contents within the same structure
        Selection,
        Focus, // focus cell or the cell to scroll into view
        Edit,  // a request to start editing the edit cell
    };
    virtual ~IGridObserver() = default;
    virtual void GridChanged(const CGridModel& grid, Change change) = 0;
};

class CGridModel {
public:
    /// A default row's height and the width of a vertical scroll bar, in pixels, by which
    /// presenters size grids and their columns.
    static constexpr int kDefaultRowHeight = 20;
    static constexpr int kScrollBarWidth = 17;

    enum class Click { Plain, Toggle, Extend };

    /// `id` is the control id of the dialog's placeholder the grid is created over.
    explicit CGridModel(int id = 0);
    CGridModel(const CGridModel&) = delete;
    CGridModel& operator=(const CGridModel&) = delete;

    int GetId() const { return m_nId; }
    void SetHandler(IGridHandler* handler) { m_pHandler = handler; }
    void AddObserver(IGridObserver* observer);
    void RemoveObserver(IGridObserver* observer);

    // ------------------------------------------------------------- geometry and structure
    /// The rectangle of the grid in its dialog, in pixels.
    void SetRect(int x, int y, int width, int height);
    int GetX() const { return m_x; }
    int GetY() const { return m_y; }
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }

    void SetRowCount(int rows);
    void SetColumnCount(int cols);
    int GetRowCount() const { return m_rows; }
    int GetColumnCount() const { return m_cols; }
    void SetFixedRowCount(int rows);
    void SetFixedColumnCount(int cols);
    int GetFixedRowCount() const { return m_fixedRows; }
    int GetFixedColumnCount() const { return m_fixedCols; }
    void SetColumnWidth(int col, int width);
    int GetColumnWidth(int col) const;
    /// List mode: a click selects whole rows.
    void SetListMode(bool on);
    bool GetListMode() const { return m_bListMode; }
    void EnableSelection(bool on);
    bool IsSelectionEnabled() const { return m_bSelection; }
    /// While off, changes are gathered and observers hear one change when it is switched on.
    void SetRedraw(bool on);

    // ------------------------------------------------------------- cells
    /// Makes the grid ask `source` for every cell instead of holding cells; an empty function
    /// goes back to held cells (all empty). The setters of single cells need held cells.
    using CellSource = std::function<void(int row, int col, CGridCell& cell)>;
    void SetCellSource(CellSource source);
    bool HasCellSource() const { return static_cast<bool>(m_source); }
    /// Tells the views that cells of the source changed.
    void Invalidate();

    /// The cell as shown; an empty text cell outside the grid.
    CGridCell GetCell(int row, int col) const;
    CString GetItemText(int row, int col) const;
    bool GetCheck(int row, int col) const;
    bool IsReadOnly(int row, int col) const;
    int GetItemImage(int row, int col) const;
    bool IsCheckCell(int row, int col) const;
    bool IsValid(int row, int col) const;
    bool IsFixed(int row, int col) const { return row < m_fixedRows || col < m_fixedCols; }

    void SetCell(int row, int col, const CGridCell& cell);
    void SetItemText(int row, int col, const CString& text);
    /// Makes the cell a text cell again, keeping its text and colours.
    void SetTextCell(int row, int col);
    void SetCheckCell(int row, int col, bool checked);
    void SetCheck(int row, int col, bool checked);
    void SetComboCell(int row, int col, std::shared_ptr<const std::vector<CString>> options,
                      int selected);
    void SetComboSel(int row, int col, int selected);
    int GetComboSel(int row, int col) const;
    void SetReadOnly(int row, int col, bool readOnly);
    void SetItemImage(int row, int col, int image);
    void SetItemFgColour(int row, int col, uint32_t colour);
    void SetItemBkColour(int row, int col, uint32_t colour);
    void SetCellPopupMenu(int row, int col, int menu);

    /// Popup menus that cells offer, by index.
    int AddPopupMenu(CPopupMenu menu);
    const CPopupMenu& GetPopupMenu(int index) const;
    int GetPopupMenuCount() const { return static_cast<int>(m_menus.size()); }

    // ------------------------------------------------------------- selection, focus, editing
    /// Selected rows, ascending and without duplicates.
    const std::vector<int>& GetSelectedRows() const { return m_selected; }
    int GetSelectedCount() const { return static_cast<int>(m_selected.size()); }
    bool IsRowSelected(int row) const;
    /// Sets the selection (rows outside the scrollable rows are dropped); no notification.
    void SetSelectedRows(std::vector<int> rows);
    void ClearSelection() { SetSelectedRows({}); }
    void SetFocusCell(int row, int col);
    int GetFocusRow() const { return m_focusRow; }
    int GetFocusCol() const { return m_focusCol; }
    void EnsureVisible(int row, int col);
    int GetVisibleRow() const { return m_visibleRow; }
    /// Asks the view to start editing the cell (it becomes the focus cell too).
    void EditCell(int row, int col);
    /// The cell whose editing was asked for and not yet ended; row -1 when none.
    int GetEditRow() const { return m_editRow; }
    int GetEditCol() const { return m_editCol; }

    // ------------------------------------------------------------- what the user does
    /// Typing into a cell ends: only editable cells (scrollable, text, not read-only) take
    /// it. True when the text stayed.
    bool UserEndEdit(int row, int col, const CString& text);
    /// A click on a check cell that is not read-only toggles it (with a cell source, through
    /// the handler's OnGridSetCheck). True when it changed.
    bool UserClickCheck(int row, int col);
    /// Chooses an option of a combo cell that is not read-only. True when it changed.
    bool UserSelectCombo(int row, int col, int option);
    /// A click on a cell: it becomes the focus cell and, with selection enabled in list mode,
    /// selects its row (Plain), toggles it (Toggle) or extends the selection from the last
    /// plain click (Extend). The handler hears the selection and then the click.
    void UserClick(int row, int col, Click how = Click::Plain);
    /// Selects exactly these rows, as a drag or keyboard selection would.
    void UserSelectRows(std::vector<int> rows);
    /// Chooses a command of the popup menu the cell offers.
    void UserPopupCommand(int row, int col, int command);

private:
    CGridCell& Held(int row, int col);
    const CGridCell* HeldOrNull(int row, int col) const;
    void Resize(int rows, int cols);
    void Notify(IGridObserver::Change change);

    int m_nId;
    IGridHandler* m_pHandler = nullptr;
    std::vector<IGridObserver*> m_observers;
    int m_x = 0, m_y = 0, m_width = 0, m_height = 0;
    int m_rows = 0, m_cols = 0, m_fixedRows = 0, m_fixedCols = 0;
    std::vector<int> m_widths;
    bool m_bListMode = false;
    bool m_bSelection = true;
    int m_redrawOff = 0;
    unsigned m_pending = 0;         // changes gathered while redraw is off, one bit per Change
    std::vector<CGridCell> m_cells; // row-major, rows x cols, when there is no cell source
    CellSource m_source;
    std::vector<CPopupMenu> m_menus;
    std::vector<int> m_selected;
    int m_anchorRow = -1;
    int m_focusRow = -1, m_focusCol = -1;
    int m_visibleRow = -1, m_visibleCol = -1;
    int m_editRow = -1, m_editCol = -1;
};
