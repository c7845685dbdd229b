#pragma once

#include "controls/gridcolumns.h"

#include <optional>
#include <QString>
#include <QVariant>
#include <vector>

// One entry of the deduction percentage table: a deduction name and its default rate.
struct DeductionPercentage
{
    qint32 deductNameId = 0;
    float percentage = 0.0f;
};

// The employee's standing deductions as the deductions grid edits them, in memory.
//
// Rows 0..rowCount()-1, columns 0..4 in the order of the rows query. Cells hold what the
// loader stores, so the view shows them as they are:
//   0 EmployeeID   qint64 (the employee; invalid in a row the user added)
//   1 DeductID     qint64 (a DeductNames key); displayText() gives the deduction's name
//   2 FixedAmount  QString in the locale's currency format ("$25.00")
//   3 SpecialRate  QString with two decimals ("12.50")
//   4 TaxName      QString, or an invalid QVariant for an ordinary deduction
// An invalid QVariant or empty text is an empty cell. The view writes what the user
// entered through setValue(): an id for column 1, typed text for columns 2 and 3; the
// save and ChangeRate read currency or plain numbers alike.
class DeductionGrid
{
public:
    static constexpr int ColumnCount = 5;
    enum Column {
        EmployeeIdColumn,
        DeductIdColumn,
        FixedAmountColumn,
        SpecialRateColumn,
        TaxNameColumn
    };

    DeductionGrid();

    int rowCount() const { return int(m_rows.size()); }
    int columnCount() const { return ColumnCount; }

    // Throws CvError 9 outside the rows and columns.
    QVariant value(int row, int column) const;
    // The grid's edit of one cell.
    void setValue(int row, int column, const QVariant &value);
    // A new blank row at the end, as the grid's add-new row gives; returns its index.
    int addRow();
    void removeRow(int row);
    // Replaces every row (the loader's "new array").
    void setRows(std::vector<std::vector<QVariant>> rows);
    void clear();

    // The text the grid shows: the deduction's name for column 1 (the stored value when it
    // is not in the list), the cell's own text elsewhere.
    QString displayText(int row, int column) const;
    // A cell read as a number: currency or plain text, or a number; nullopt when empty or
    // not a number.
    static std::optional<double> number(const QVariant &cell);
    static bool isEmptyCell(const QVariant &cell);

    // Column captions and column 1's drop-down list (value = DeductNameID, name =
    // DeductionName), set by FillDeductGrid.
    GridColumns &columns() { return m_columns; }
    const GridColumns &columns() const { return m_columns; }
    QString caption(int column) const;
    const std::vector<GridValueItem> &deductionList() const;

    // Default rates of every deduction name; one slot more than there are names, the last
    // one zero. Empty when none are loaded.
    std::vector<DeductionPercentage> &percentages() { return m_percentages; }
    const std::vector<DeductionPercentage> &percentages() const { return m_percentages; }

    // The rows query of the last load; the save opens it to learn the fields it writes.
    QString baseQuery() const { return m_baseQuery; }
    void setBaseQuery(const QString &query) { m_baseQuery = query; }

    // Goes up on every change of rows, cells, columns or list, so a view can tell it is
    // stale.
    quint64 revision() const { return m_revision; }
    void markChanged() { ++m_revision; }

private:
    void checkCell(int row, int column) const;

    std::vector<std::vector<QVariant>> m_rows;
    GridColumns m_columns;
    std::vector<DeductionPercentage> m_percentages;
    QString m_baseQuery;
    quint64 m_revision = 0;
};
