// The grid control as data: structure, cells, selection, focus and the user's actions.
#include "grid/GridModel.h"

#include "framework/Exceptions.h"

#include <algorithm>
#include <utility>

bool IGridHandler::OnGridEndEdit(CGridModel&, int, int, const CString&) {
    return true;
}
bool IGridHandler::OnGridSetCheck(CGridModel&, int, int, bool) {
    return false;
}
void IGridHandler::OnGridCheckChanged(CGridModel&, int, int) {}
void IGridHandler::OnGridComboChanged(CGridModel&, int, int) {}
void IGridHandler::OnGridSelChanged(CGridModel&) {}
void IGridHandler::OnGridClick(CGridModel&, int, int) {}
void IGridHandler::OnGridPopupCommand(CGridModel&, int, int, int) {}

CGridModel::CGridModel(int id) : m_nId(id) {}

void CGridModel::AddObserver(IGridObserver* observer) {
    if (observer != nullptr &&
        std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void CGridModel::RemoveObserver(IGridObserver* observer) {
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer),
                      m_observers.end());
}

void CGridModel::Notify(IGridObserver::Change change) {
    if (m_redrawOff > 0) {
        m_pending |= 1u << static_cast<unsigned>(change);
        return;
    }
    // An observer may remove itself while hearing the change.
    const std::vector<IGridObserver*> observers = m_observers;
    for (IGridObserver* observer : observers)
        observer->GridChanged(*this, change);
}

void CGridModel::SetRedraw(bool on) {
    if (!on) {
        ++m_redrawOff;
        return;
    }
    if (m_redrawOff == 0 || --m_redrawOff > 0)
        return;
    const unsigned pending = std::exchange(m_pending, 0u);
    const auto bit = [](IGridObserver::Change c) { return 1u << static_cast<unsigned>(c); };
    if (pending & bit(IGridObserver::Change::Structure))
        Notify(IGridObserver::Change::Structure);
    else if (pending & bit(IGridObserver::Change::Cells))
        Notify(IGridObserver::Change::Cells);
    for (const auto c : {IGridObserver::Change::Selection, IGridObserver::Change::Focus,
                         IGridObserver::Change::Edit})
        if (pending & bit(c))
            Notify(c);
}

// ------------------------------------------------------------------------ structure

void CGridModel::SetRect(int x, int y, int width, int height) {
    m_x = x;
    m_y = y;
    m_width = std::max(0, width);
    m_height = std::max(0, height);
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::Resize(int rows, int cols) {
    rows = std::max(0, rows);
    cols = std::max(0, cols);
    if (!m_source && (rows != m_rows || cols != m_cols)) {
        std::vector<CGridCell> cells(static_cast<size_t>(rows) * static_cast<size_t>(cols));
        const int keepRows = std::min(rows, m_rows);
        const int keepCols = std::min(cols, m_cols);
        for (int r = 0; r < keepRows; ++r)
            for (int c = 0; c < keepCols; ++c)
                cells[static_cast<size_t>(r) * static_cast<size_t>(cols) + static_cast<size_t>(c)] =
                    std::move(m_cells[static_cast<size_t>(r) * static_cast<size_t>(m_cols) +
                                      static_cast<size_t>(c)]);
        m_cells = std::move(cells);
    }
    m_rows = rows;
    m_cols = cols;
    m_widths.resize(static_cast<size_t>(cols), 0);
    std::erase_if(m_selected, [&](int r) { return r >= rows; });
    if (m_focusRow >= rows || m_focusCol >= cols)
        m_focusRow = m_focusCol = -1;
    if (m_editRow >= rows || m_editCol >= cols)
        m_editRow = m_editCol = -1;
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::SetRowCount(int rows) {
    Resize(rows, m_cols);
}

void CGridModel::SetColumnCount(int cols) {
    Resize(m_rows, cols);
}

void CGridModel::SetFixedRowCount(int rows) {
    m_fixedRows = std::max(0, rows);
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::SetFixedColumnCount(int cols) {
    m_fixedCols = std::max(0, cols);
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::SetColumnWidth(int col, int width) {
    if (col < 0 || col >= m_cols)
        return;
    m_widths[static_cast<size_t>(col)] = std::max(0, width);
    Notify(IGridObserver::Change::Structure);
}

int CGridModel::GetColumnWidth(int col) const {
    return col >= 0 && col < m_cols ? m_widths[static_cast<size_t>(col)] : 0;
}

void CGridModel::SetListMode(bool on) {
    m_bListMode = on;
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::EnableSelection(bool on) {
    m_bSelection = on;
    if (!on)
        m_selected.clear();
    Notify(IGridObserver::Change::Structure);
}

// ------------------------------------------------------------------------ cells

void CGridModel::SetCellSource(CellSource source) {
    m_source = std::move(source);
    m_cells.clear();
    if (!m_source)
        m_cells.resize(static_cast<size_t>(m_rows) * static_cast<size_t>(m_cols));
    Notify(IGridObserver::Change::Structure);
}

void CGridModel::Invalidate() {
    Notify(IGridObserver::Change::Cells);
}

bool CGridModel::IsValid(int row, int col) const {
    return row >= 0 && col >= 0 && row < m_rows && col < m_cols;
}

const CGridCell* CGridModel::HeldOrNull(int row, int col) const {
    if (m_source || !IsValid(row, col))
        return nullptr;
    return &m_cells[static_cast<size_t>(row) * static_cast<size_t>(m_cols) +
                    static_cast<size_t>(col)];
}

CGridCell& CGridModel::Held(int row, int col) {
    // Presenters address their own grids; a cell outside them, or a single cell of a grid
    // whose cells come from a source, is a fault of the presenter.
    if (m_source || !IsValid(row, col))
        throw CInvalidArgException("grid cell out of range");
    return m_cells[static_cast<size_t>(row) * static_cast<size_t>(m_cols) +
                   static_cast<size_t>(col)];
}

CGridCell CGridModel::GetCell(int row, int col) const {
    CGridCell cell;
    if (!IsValid(row, col))
        return cell;
    if (m_source)
        m_source(row, col, cell);
    else
        cell = *HeldOrNull(row, col);
    return cell;
}

CString CGridModel::GetItemText(int row, int col) const {
    if (const CGridCell* held = HeldOrNull(row, col))
        return held->text;
    return GetCell(row, col).text;
}

bool CGridModel::GetCheck(int row, int col) const {
    const CGridCell cell = GetCell(row, col);
    return cell.kind == CGridCell::Kind::Check && cell.checked;
}

bool CGridModel::IsReadOnly(int row, int col) const {
    return GetCell(row, col).readOnly;
}

int CGridModel::GetItemImage(int row, int col) const {
    return GetCell(row, col).image;
}

bool CGridModel::IsCheckCell(int row, int col) const {
    return GetCell(row, col).kind == CGridCell::Kind::Check;
}

void CGridModel::SetCell(int row, int col, const CGridCell& cell) {
    Held(row, col) = cell;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetItemText(int row, int col, const CString& text) {
    Held(row, col).text = text;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetTextCell(int row, int col) {
    CGridCell& cell = Held(row, col);
    cell.kind = CGridCell::Kind::Text;
    cell.checked = false;
    cell.options.reset();
    cell.comboSel = -1;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetCheckCell(int row, int col, bool checked) {
    CGridCell& cell = Held(row, col);
    cell.kind = CGridCell::Kind::Check;
    cell.checked = checked;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetCheck(int row, int col, bool checked) {
    Held(row, col).checked = checked;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetComboCell(int row, int col, std::shared_ptr<const std::vector<CString>> options,
                              int selected) {
    CGridCell& cell = Held(row, col);
    cell.kind = CGridCell::Kind::Combo;
    cell.options = std::move(options);
    const int count = cell.options ? static_cast<int>(cell.options->size()) : 0;
    cell.comboSel = selected >= 0 && selected < count ? selected : -1;
    cell.text =
        cell.comboSel >= 0 ? (*cell.options)[static_cast<size_t>(cell.comboSel)] : CString();
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetComboSel(int row, int col, int selected) {
    CGridCell& cell = Held(row, col);
    SetComboCell(row, col, cell.options, selected);
}

int CGridModel::GetComboSel(int row, int col) const {
    const CGridCell cell = GetCell(row, col);
    return cell.kind == CGridCell::Kind::Combo ? cell.comboSel : -1;
}

void CGridModel::SetReadOnly(int row, int col, bool readOnly) {
    Held(row, col).readOnly = readOnly;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetItemImage(int row, int col, int image) {
    Held(row, col).image = static_cast<int16_t>(image < 0 ? -1 : image);
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetItemFgColour(int row, int col, uint32_t colour) {
    Held(row, col).foreground = colour;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetItemBkColour(int row, int col, uint32_t colour) {
    Held(row, col).background = colour;
    Notify(IGridObserver::Change::Cells);
}

void CGridModel::SetCellPopupMenu(int row, int col, int menu) {
    Held(row, col).popupMenu = static_cast<int16_t>(menu < 0 ? -1 : menu);
    Notify(IGridObserver::Change::Cells);
}

int CGridModel::AddPopupMenu(CPopupMenu menu) {
    m_menus.push_back(std::move(menu));
    return static_cast<int>(m_menus.size()) - 1;
}

const CPopupMenu& CGridModel::GetPopupMenu(int index) const {
    static const CPopupMenu none;
    return index >= 0 && index < GetPopupMenuCount() ? m_menus[static_cast<size_t>(index)] : none;
}

// ------------------------------------------------------------------------ selection and focus

bool CGridModel::IsRowSelected(int row) const {
    return std::binary_search(m_selected.begin(), m_selected.end(), row);
}

void CGridModel::SetSelectedRows(std::vector<int> rows) {
    std::erase_if(rows, [&](int r) { return r < m_fixedRows || r >= m_rows; });
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    m_selected = std::move(rows);
    Notify(IGridObserver::Change::Selection);
}

void CGridModel::SetFocusCell(int row, int col) {
    if (IsValid(row, col)) {
        m_focusRow = row;
        m_focusCol = col;
    } else {
        m_focusRow = m_focusCol = -1;
    }
    Notify(IGridObserver::Change::Focus);
}

void CGridModel::EnsureVisible(int row, int col) {
    m_visibleRow = row;
    m_visibleCol = col;
    Notify(IGridObserver::Change::Focus);
}

void CGridModel::EditCell(int row, int col) {
    if (!IsValid(row, col))
        return;
    SetFocusCell(row, col);
    EnsureVisible(row, col);
    m_editRow = row;
    m_editCol = col;
    Notify(IGridObserver::Change::Edit);
}

// ------------------------------------------------------------------------ the user's actions

bool CGridModel::UserEndEdit(int row, int col, const CString& text) {
    if (row == m_editRow && col == m_editCol)
        m_editRow = m_editCol = -1;
    if (!IsValid(row, col) || IsFixed(row, col))
        return false;
    CGridCell cell = GetCell(row, col);
    if (cell.readOnly || cell.kind != CGridCell::Kind::Text)
        return false;
    const CString old = cell.text;
    if (!m_source)
        SetItemText(row, col, text);
    const bool kept = m_pHandler == nullptr || m_pHandler->OnGridEndEdit(*this, row, col, text);
    if (!kept && !m_source)
        SetItemText(row, col, old);
    if (m_source)
        Invalidate();
    return kept;
}

bool CGridModel::UserClickCheck(int row, int col) {
    if (!IsValid(row, col))
        return false;
    const CGridCell cell = GetCell(row, col);
    if (cell.kind != CGridCell::Kind::Check || cell.readOnly)
        return false;
    if (m_source) {
        // The source's owner keeps the check; the grid only asks it to change.
        if (m_pHandler == nullptr || !m_pHandler->OnGridSetCheck(*this, row, col, !cell.checked))
            return false;
        Invalidate();
    } else {
        SetCheck(row, col, !cell.checked);
    }
    if (m_pHandler != nullptr)
        m_pHandler->OnGridCheckChanged(*this, row, col);
    return true;
}

bool CGridModel::UserSelectCombo(int row, int col, int option) {
    if (!IsValid(row, col) || m_source)
        return false;
    const CGridCell cell = GetCell(row, col);
    const int count = cell.options ? static_cast<int>(cell.options->size()) : 0;
    if (cell.kind != CGridCell::Kind::Combo || cell.readOnly || option < 0 || option >= count ||
        option == cell.comboSel)
        return false;
    SetComboSel(row, col, option);
    if (m_pHandler != nullptr)
        m_pHandler->OnGridComboChanged(*this, row, col);
    return true;
}

void CGridModel::UserClick(int row, int col, Click how) {
    if (!IsValid(row, col))
        return;
    SetFocusCell(row, col);
    if (m_bSelection && m_bListMode && row >= m_fixedRows) {
        std::vector<int> rows;
        switch (how) {
        case Click::Plain:
            rows = {row};
            m_anchorRow = row;
            break;
        case Click::Toggle:
            rows = m_selected;
            if (IsRowSelected(row))
                std::erase(rows, row);
            else
                rows.push_back(row);
            m_anchorRow = row;
            break;
        case Click::Extend: {
            const int from = m_anchorRow >= m_fixedRows ? m_anchorRow : row;
            for (int r = std::min(from, row); r <= std::max(from, row); ++r)
                rows.push_back(r);
            break;
        }
        }
        SetSelectedRows(std::move(rows));
        if (m_pHandler != nullptr)
            m_pHandler->OnGridSelChanged(*this);
    }
    if (m_pHandler != nullptr)
        m_pHandler->OnGridClick(*this, row, col);
}

void CGridModel::UserSelectRows(std::vector<int> rows) {
    if (!m_bSelection)
        return;
    SetSelectedRows(std::move(rows));
    m_anchorRow = m_selected.empty() ? -1 : m_selected.front();
    if (m_pHandler != nullptr)
        m_pHandler->OnGridSelChanged(*this);
}

void CGridModel::UserPopupCommand(int row, int col, int command) {
    if (!IsValid(row, col) || command == 0)
        return;
    const CPopupMenu& menu = GetPopupMenu(GetCell(row, col).popupMenu);
    const bool offered = std::any_of(menu.begin(), menu.end(), [&](const CMenuItem& item) {
        return item.command == command && item.enabled;
    });
    if (offered && m_pHandler != nullptr)
        m_pHandler->OnGridPopupCommand(*this, row, col, command);
}
