#include "paydetails/deductions.h"

#include "controls/filldaovbcombo.h"
#include "core/cverror.h"
#include "core/numerictext.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "paydetails/deductiongrid.h"

#include <algorithm>
#include <QLocale>

namespace {

const QString BaseQuery = QStringLiteral(
    "SELECT DISTINCTROW EmployeeDeductions.EmployeeID, EmployeeDeductions.DeductID, "
    "EmployeeDeductions.FixedAmount, EmployeeDeductions.SpecialRate, DeductNames.TaxName "
    "From EmployeeDeductions "
    "INNER JOIN DeductNames ON EmployeeDeductions.DeductID = DeductNames.DeductNameID ");

// The grid's "Fixed" number format: two decimals, no digit grouping.
QString fixedText(double value)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', 2);
}

// A field's value as the grid shows it, by the field's type.
QVariant gridCell(const QVariant &value, JetType type)
{
    if (value.isNull())
        return QVariant();
    switch (type) {
    case JetType::Currency:
        return value.value<Money>().toString();
    case JetType::Single:
        return fixedText(value.toDouble());
    case JetType::Long:
    case JetType::AutoNumber:
        return value;
    default:
        if (value.typeId() != QMetaType::QString && value.canConvert<double>())
            return fixedText(value.toDouble());
        return value;
    }
}

} // namespace

qint32 wholePercentageByQuery(Database &db, const QString &query, const QVariantList &values)
{
    // Read only: locking the shared name row would make every clerk's save wait on it.
    Recordset rs(db, query, values, Recordset::Snapshot);
    if (rs.eof())
        return 0;
    const auto rounded = roundToInt32(rs.value(QStringLiteral("percentage")).toDouble());
    if (!rounded)
        throw CvError(CvError::Overflow, QStringLiteral("basDeductions"),
                      QStringLiteral("Overflow"));
    return *rounded;
}

void fillDeductionRows(Database &wage, qint32 employeeId, DeductionGrid &grid)
{
    grid.setBaseQuery(BaseQuery);
    // AND binds tighter than OR: the employee's rows whose name is not KiwiSaver's, or has
    // no tax name at all (a Null never compares unequal).
    const QString rowsQuery =
        BaseQuery + "WHERE EmployeeID=? AND DeductID > 0 AND DeductNames.TaxName <> \"KiwiSaver\""
                    " OR EmployeeID=? AND DeductID > 0 AND DeductNames.TaxName is Null";
    grid.clear();
    Recordset rs(wage, rowsQuery, {employeeId, employeeId}, Recordset::Snapshot);
    std::vector<std::vector<QVariant>> rows;
    rows.reserve(std::size_t(rs.recordCount()));
    for (; !rs.eof(); rs.moveNext()) {
        std::vector<QVariant> row;
        for (int i = 0; i < rs.fieldCount(); ++i)
            row.push_back(gridCell(rs.value(i), rs.field(i).type));
        rows.push_back(std::move(row));
    }
    grid.setRows(std::move(rows));
}

void fillDeductionList(Database &wage, DeductionGrid &grid, qint32 countryCode)
{
    setGridColumnCaptions(grid.columns(),
                          {QStringLiteral("EmployeeDeductID"), QStringLiteral("Deduction"),
                           QStringLiteral("Fixed Amount"), QStringLiteral("Percent"), QVariant()});
    grid.markChanged();
    const QString listQuery = QStringLiteral(
        "select DeductNameID, DeductionName from DeductNames where "
        "DeductNames.TaxName <> \"KiwiSaver\" Or DeductNames.CountryPhone = 0 Or "
        "DeductNames.CountryPhone = ? And TaxName Is Null ORDER BY DeductNames.Deductionname");
    fillGridColumnValueList(grid.columns(), listQuery, {countryCode}, DeductionGrid::DeductIdColumn,
                            wage, QStringLiteral("DeductionName"), QStringLiteral("DeductNameID"));
    grid.markChanged();
}

void fillDeductionPercentages(Database &wage, DeductionGrid &grid)
{
    auto &table = grid.percentages();
    table.clear();
    grid.markChanged();
    Recordset rs(wage,
                 QStringLiteral("Select distinctrow DeductNameID, Percentage from DeductNames"),
                 Recordset::Snapshot);
    if (rs.eof())
        return;
    // One slot more than there are names; the last stays zero.
    table.assign(std::size_t(rs.recordCount()) + 1, DeductionPercentage{});
    for (std::size_t i = 0; !rs.eof(); ++i, rs.moveNext()) {
        table[i].deductNameId = qint32(rs.value(0).toLongLong());
        table[i].percentage = rs.value(1).toFloat();
    }
}

void FillDeductGrid(Database &wage, qint32 employeeId, DeductionGrid &grid, qint32 countryCode)
{
    fillDeductionRows(wage, employeeId, grid);
    fillDeductionList(wage, grid, countryCode);
    fillDeductionPercentages(wage, grid);
}

float percentageLookup(const DeductionGrid &grid, qint32 deductNameId)
{
    for (const DeductionPercentage &entry : grid.percentages()) {
        if (entry.deductNameId == deductNameId)
            return entry.percentage;
    }
    return 0.0f;
}

qint32 deductionPercentageByQuery(Database &wage, qint32 deductNameId)
{
    return wholePercentageByQuery(
        wage,
        QStringLiteral("SELECT DeductNames.* From DeductNames WHERE DeductNames.DeductNameID=?"),
        {deductNameId});
}

void ChangeRate(DeductionGrid &grid, int row, qint16 column)
{
    if (row < 0 || row >= grid.rowCount() || column < 0 || column >= grid.columnCount())
        return;
    const auto entered = DeductionGrid::number(grid.value(row, column));
    // A row carries a fixed amount or a percentage, never both; zero or less clears nothing.
    if (!entered || *entered <= 0)
        return;
    switch (column) {
    case DeductionGrid::DeductIdColumn:
        grid.setValue(row, DeductionGrid::SpecialRateColumn,
                      fixedText(percentageLookup(grid, qint32(*entered))));
        break;
    case DeductionGrid::FixedAmountColumn:
        grid.setValue(row, DeductionGrid::SpecialRateColumn, fixedText(0));
        break;
    case DeductionGrid::SpecialRateColumn:
        grid.setValue(row, DeductionGrid::FixedAmountColumn, Money().toString());
        break;
    default:
        break;
    }
}

void SaveDeductXArray(DeductionGrid &grid, Database &wage, qint32 employeeId)
{
    wage.transaction([&] {
        wage.execute(QStringLiteral(
                         "Delete * FROM EmployeeDeductions Where EmployeeID=? AND TaxName is null"),
                     {employeeId});
        // The rows query's fields decide what is written; reading only this employee's
        // rows keeps the open cheap on a large book.
        const QString base = grid.baseQuery().isEmpty() ? BaseQuery : grid.baseQuery();
        Recordset rs(wage, base + "WHERE EmployeeDeductions.EmployeeID=?", {employeeId});
        const int lastColumn = std::min(grid.columnCount(), rs.fieldCount()) - 1;
        for (int row = 0; row < grid.rowCount(); ++row) {
            if (DeductionGrid::isEmptyCell(grid.value(row, DeductionGrid::DeductIdColumn)))
                continue;
            rs.addNew();
            rs.setValue(QStringLiteral("EmployeeID"), employeeId);
            for (int column = 1; column <= lastColumn; ++column) {
                const QVariant cell = grid.value(row, column);
                const QString name = rs.field(column).name;
                const bool empty = DeductionGrid::isEmptyCell(cell);
                if (name.compare(u"FixedAmount", Qt::CaseInsensitive) == 0 ||
                    name.compare(u"SpecialRate", Qt::CaseInsensitive) == 0)
                    rs.setValue(column, empty ? QVariant(0) : cell);
                else if (!empty)
                    rs.setValue(column, cell);
            }
            rs.update();
        }
    });
}

QString storedDeductions(Database &wage, qint32 employeeId)
{
    Recordset rs(wage,
                 QStringLiteral("SELECT DeductID, FixedAmount, SpecialRate FROM EmployeeDeductions "
                                "WHERE EmployeeID = ? AND TaxName Is Null ORDER BY DeductID, "
                                "FixedAmount, SpecialRate"),
                 {employeeId}, Recordset::Snapshot);
    QStringList rows;
    for (; !rs.eof(); rs.moveNext())
        rows << QStringLiteral("%1|%2|%3")
                    .arg(rs.storedValue(0).toLongLong())
                    .arg(rs.storedValue(1).toLongLong())
                    .arg(rs.storedValue(2).toDouble());
    return rows.join(u'\n');
}

QString gridDeductions(const DeductionGrid &grid)
{
    QStringList rows;
    for (int row = 0; row < grid.rowCount(); ++row) {
        QStringList cells;
        for (const int column :
             {int(DeductionGrid::DeductIdColumn), int(DeductionGrid::FixedAmountColumn),
              int(DeductionGrid::SpecialRateColumn)})
            cells << grid.value(row, column).toString();
        rows << cells.join(u'|');
    }
    return rows.join(u'\n');
}
