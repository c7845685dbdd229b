#include "paydetails/deductiongrid.h"

#include "core/cverror.h"
#include "core/numerictext.h"
#include "data/money.h"

#include <QLocale>

DeductionGrid::DeductionGrid() : m_columns(ColumnCount) {}

void DeductionGrid::checkCell(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= ColumnCount)
        throw CvError(CvError::SubscriptOutOfRange, QStringLiteral("DeductionGrid"),
                      QStringLiteral("Subscript out of range"));
}

QVariant DeductionGrid::value(int row, int column) const
{
    checkCell(row, column);
    return m_rows[std::size_t(row)][std::size_t(column)];
}

void DeductionGrid::setValue(int row, int column, const QVariant &value)
{
    checkCell(row, column);
    QVariant stored = value;
    // The drop-down list keeps its ids as 64-bit integers; store the same type so the
    // name lookup and the save see one kind of value whatever the view hands over.
    if (column == DeductIdColumn && !isEmptyCell(value)) {
        if (const auto n = number(value); n && *n == qint64(*n))
            stored = QVariant(qint64(*n));
    }
    m_rows[std::size_t(row)][std::size_t(column)] = stored;
    markChanged();
}

int DeductionGrid::addRow()
{
    m_rows.emplace_back(std::size_t(ColumnCount));
    markChanged();
    return rowCount() - 1;
}

void DeductionGrid::removeRow(int row)
{
    checkCell(row, 0);
    m_rows.erase(m_rows.begin() + row);
    markChanged();
}

void DeductionGrid::setRows(std::vector<std::vector<QVariant>> rows)
{
    for (auto &row : rows)
        row.resize(std::size_t(ColumnCount));
    m_rows = std::move(rows);
    markChanged();
}

void DeductionGrid::clear()
{
    m_rows.clear();
    markChanged();
}

QString DeductionGrid::displayText(int row, int column) const
{
    const QVariant cell = value(row, column);
    if (column == DeductIdColumn)
        return m_columns.column(DeductIdColumn).displayText(cell);
    return cell.toString();
}

bool DeductionGrid::isEmptyCell(const QVariant &cell)
{
    return !cell.isValid() || cell.isNull() || cell.toString().isEmpty();
}

std::optional<double> DeductionGrid::number(const QVariant &cell)
{
    if (isEmptyCell(cell))
        return std::nullopt;
    switch (cell.typeId()) {
    case QMetaType::QString:
        if (const auto money = Money::parse(cell.toString()))
            return money->toDouble();
        return numericValue(cell.toString());
    default:
        if (cell.typeId() == qMetaTypeId<Money>())
            return cell.value<Money>().toDouble();
        bool ok = false;
        const double d = cell.toDouble(&ok);
        return ok ? std::optional<double>(d) : std::nullopt;
    }
}

QString DeductionGrid::caption(int column) const
{
    return m_columns.column(column).caption;
}

const std::vector<GridValueItem> &DeductionGrid::deductionList() const
{
    return m_columns.column(DeductIdColumn).valueItems;
}
