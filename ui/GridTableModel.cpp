// The grid model of the platform as a Qt table model.
#include "ui/GridTableModel.h"

#include "ui/ImageSet.h"
#include "ui/QtText.h"

#include <QApplication>
#include <QMetaObject>
#include <QPalette>
#include <QStringList>

CQtGridTableModel::CQtGridTableModel(CGridModel& grid, QObject* parent)
    : QAbstractTableModel(parent), m_grid(grid) {
    m_fixedRows = grid.GetFixedRowCount();
    m_fixedCols = grid.GetFixedColumnCount();
    m_rows = std::max(0, grid.GetRowCount() - m_fixedRows);
    m_cols = std::max(0, grid.GetColumnCount() - m_fixedCols);
    m_grid.AddObserver(this);
}

CQtGridTableModel::~CQtGridTableModel() {
    m_grid.RemoveObserver(this);
}

QModelIndex CQtGridTableModel::IndexOf(int gridRow, int gridCol) const {
    return index(gridRow - m_fixedRows, gridCol - m_fixedCols);
}

void CQtGridTableModel::Sync() {
    if (!m_bStructurePending)
        return;
    m_bStructurePending = false;
    beginResetModel();
    m_fixedRows = m_grid.GetFixedRowCount();
    m_fixedCols = m_grid.GetFixedColumnCount();
    m_rows = std::max(0, m_grid.GetRowCount() - m_fixedRows);
    m_cols = std::max(0, m_grid.GetColumnCount() - m_fixedCols);
    endResetModel();
    emit StructureApplied();
}

int CQtGridTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int CQtGridTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_cols;
}

QVariant CQtGridTableModel::CellData(const CGridCell& cell, int gridRow, int role) const {
    switch (role) {
    case Qt::DisplayRole:
        if (cell.kind == CGridCell::Kind::Combo) {
            if (cell.options && cell.comboSel >= 0 &&
                cell.comboSel < static_cast<int>(cell.options->size()))
                return ToQ((*cell.options)[static_cast<size_t>(cell.comboSel)]);
            return QString();
        }
        return cell.kind == CGridCell::Kind::Check ? QVariant() : QVariant(ToQ(cell.text));
    case Qt::EditRole:
        return ToQ(cell.text);
    case Qt::CheckStateRole:
        if (cell.kind != CGridCell::Kind::Check)
            return {};
        return cell.checked ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
        return cell.image >= 0 ? QVariant(ImageSet::Grid(cell.image)) : QVariant();
    case Qt::ForegroundRole:
        if (m_grid.IsRowSelected(gridRow))
            return QApplication::palette().highlightedText();
        if (QColor c = ToQColor(cell.foreground); c.isValid())
            return c;
        return {};
    case Qt::BackgroundRole:
        if (m_grid.IsRowSelected(gridRow))
            return QApplication::palette().highlight();
        if (QColor c = ToQColor(cell.background); c.isValid())
            return c;
        if (cell.readOnly && cell.kind == CGridCell::Kind::Text)
            return QApplication::palette().alternateBase();
        return {};
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter | Qt::AlignLeft);
    case OptionsRole: {
        QStringList options;
        if (cell.options)
            for (const CString& option : *cell.options)
                options << ToQ(option);
        return options;
    }
    case ComboSelRole:
        return cell.comboSel;
    case RowSelectedRole:
        return m_grid.IsRowSelected(gridRow);
    default:
        return {};
    }
}

QVariant CQtGridTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const int row = GridRow(index);
    return CellData(m_grid.GetCell(row, GridCol(index)), row, role);
}

QVariant CQtGridTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    // A header joins the fixed cells of its column (or row): texts one under (beside) the
    // other, the image of the last fixed cell that has one.
    const bool horizontal = orientation == Qt::Horizontal;
    const int fixed = horizontal ? m_fixedRows : m_fixedCols;
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        QStringList parts;
        for (int i = 0; i < fixed; ++i) {
            const CString text = horizontal ? m_grid.GetItemText(i, section + m_fixedCols)
                                            : m_grid.GetItemText(section + m_fixedRows, i);
            if (!text.IsEmpty())
                parts << ToQ(text);
        }
        return parts.join(horizontal ? QStringLiteral("\n") : QStringLiteral("  "));
    }
    if (role == Qt::DecorationRole) {
        for (int i = fixed - 1; i >= 0; --i) {
            const int image = horizontal ? m_grid.GetItemImage(i, section + m_fixedCols)
                                         : m_grid.GetItemImage(section + m_fixedRows, i);
            if (image >= 0)
                return ImageSet::Grid(image);
        }
        return {};
    }
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(horizontal ? Qt::AlignCenter
                                              : (Qt::AlignVCenter | Qt::AlignRight));
    return {};
}

Qt::ItemFlags CQtGridTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const CGridCell cell = m_grid.GetCell(GridRow(index), GridCol(index));
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (cell.readOnly)
        return f;
    if (cell.kind == CGridCell::Kind::Check)
        f |= Qt::ItemIsUserCheckable;
    else
        f |= Qt::ItemIsEditable;
    return f;
}

bool CQtGridTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid())
        return false;
    const int row = GridRow(index);
    const int col = GridCol(index);
    if (role == Qt::CheckStateRole)
        return m_grid.UserClickCheck(row, col);
    if (role == ComboSelRole)
        return m_grid.UserSelectCombo(row, col, value.toInt());
    if (role == Qt::EditRole)
        return m_grid.UserEndEdit(row, col, FromQ(value.toString()));
    return false;
}

void CQtGridTableModel::GridChanged(const CGridModel&, Change change) {
    switch (change) {
    case Change::Structure:
        if (!m_bStructurePending) {
            m_bStructurePending = true;
            QMetaObject::invokeMethod(this, &CQtGridTableModel::Sync, Qt::QueuedConnection);
        }
        break;
    case Change::Cells:
    case Change::Selection:
        if (m_rows > 0 && m_cols > 0)
            emit dataChanged(index(0, 0), index(m_rows - 1, m_cols - 1));
        emit headerDataChanged(Qt::Horizontal, 0, std::max(0, m_cols - 1));
        emit headerDataChanged(Qt::Vertical, 0, std::max(0, m_rows - 1));
        if (change == Change::Selection)
            emit SelectionChanged();
        break;
    case Change::Focus:
        emit FocusChanged(m_grid.GetFocusRow(), m_grid.GetFocusCol());
        break;
    case Change::Edit:
        Sync();
        emit EditRequested(m_grid.GetEditRow(), m_grid.GetEditCol());
        break;
    }
}
