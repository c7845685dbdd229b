#include "paydetails/ui/deductiongridmodel.h"

#include "data/money.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"

#include <QLocale>

namespace {

// What a money or rate cell shows: a number in the column's format, anything
// else (a text the user typed that is not a number) as it stands.
QString formatCell(const QVariant &cell, int column)
{
    if (DeductionGrid::isEmptyCell(cell))
        return QString();
    const std::optional<double> number = DeductionGrid::number(cell);
    if (!number)
        return cell.toString();
    if (column == DeductionGrid::FixedAmountColumn) {
        if (const std::optional<Money> money = Money::fromDouble(*number))
            return money->toString();
    }
    return QLocale().toString(*number, 'f', 2);
}

} // namespace

DeductionGridModel::DeductionGridModel(PayDetailsEditor &editor, QObject *parent)
    : QAbstractTableModel(parent), m_editor(editor)
{
    refresh();
}

const DeductionGrid &DeductionGridModel::grid() const
{
    return m_editor.deductionGrid();
}

void DeductionGridModel::refresh()
{
    const DeductionGrid &rows = grid();
    if (rows.revision() == m_revision && rows.rowCount() == m_rows)
        return;
    // Rows come and go with a load; a cell edit keeps the shape. Either way
    // the whole grid is a handful of rows.
    if (rows.rowCount() != m_rows) {
        beginResetModel();
        m_rows = rows.rowCount();
        m_revision = rows.revision();
        endResetModel();
    } else {
        m_revision = rows.revision();
        if (m_rows > 0)
            emit dataChanged(index(0, 0), index(m_rows - 1, ColumnCount - 1));
        emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    }
}

int DeductionGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows + 1;
}

int DeductionGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DeductionGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int column = index.column();
    const bool money =
        column == DeductionGrid::FixedAmountColumn || column == DeductionGrid::SpecialRateColumn;
    if (role == Qt::TextAlignmentRole) {
        return money ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                     : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    // The add-new row is empty until something is typed into it.
    if (index.row() >= m_rows)
        return {};
    const QVariant cell = grid().value(index.row(), column);
    // The deduction column keeps the identifier for its delegate to name.
    if (!money || role == Qt::EditRole)
        return DeductionGrid::isEmptyCell(cell) ? QVariant() : cell;
    return formatCell(cell, column);
}

bool DeductionGridModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole || index.column() == 0)
        return false;
    int row = index.row();
    DeductionGrid &rows = m_editor.deductionGrid();
    if (row >= m_rows) {
        // Nothing typed into the add-new row leaves it as it is.
        if (DeductionGrid::isEmptyCell(value))
            return false;
        beginInsertRows({}, m_rows, m_rows);
        row = rows.addRow();
        m_rows = rows.rowCount();
        endInsertRows();
    }
    rows.setValue(row, index.column(), value);
    m_editor.gridCellEdited(row, index.column(), value);
    // The editor may have changed the row's other cells: show them all.
    m_revision = ~quint64(0);
    refresh();
    emit dataChanged(this->index(row, 0), this->index(row, ColumnCount - 1));
    return true;
}

Qt::ItemFlags DeductionGridModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags result = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() > 0)
        result |= Qt::ItemIsEditable;
    return result;
}

QVariant DeductionGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        // The add-new row is marked as the grid marked it.
        if (role == Qt::DisplayRole)
            return section >= m_rows ? QStringLiteral("*") : QString();
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return section >= DeductionGrid::FixedAmountColumn
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole)
        return {};
    return grid().caption(section);
}
