#pragma once

#include <QLatin1String>
#include <QString>
#include <QtGlobal>
#include <QVariantList>

class Database;
class DeductionGrid;

// The origins under which a procedure reports a part of the grid it could not load, before
// it goes on to the next part.
namespace ErrorOrigin {
inline constexpr QLatin1String FillGridArray(") was generated in basDeductions.fillgridarray");
inline constexpr QLatin1String
    FillPayInfoArray(") was generated in basDeductions.FillpayInfoArray");
} // namespace ErrorOrigin

// Loading the deductions grid, in three parts. Each throws CvError when its query cannot be
// read and leaves the grid with what was loaded, so that a procedure can report one part and
// go on to the next.
// The employee's ordinary deductions (KiwiSaver rows are kept out).
void fillDeductionRows(Database &wage, qint32 employeeId, DeductionGrid &grid);
// The captions and the deduction drop-down for the country; the drop-down is empty after a
// failure (msgDatabaseOutOfDate tells the user).
void fillDeductionList(Database &wage, DeductionGrid &grid, qint32 countryCode);
// The table of default percentages.
void fillDeductionPercentages(Database &wage, DeductionGrid &grid);
// All three; throws at the first failure.
void FillDeductGrid(Database &wage, qint32 employeeId, DeductionGrid &grid, qint32 countryCode);

// After the user edited (row, column): a chosen deduction brings its default percentage;
// a positive fixed amount clears the percentage and a positive percentage the fixed amount.
void ChangeRate(DeductionGrid &grid, int row, qint16 column);

// Rewrites the employee's ordinary deductions (TaxName null) from the grid; KiwiSaver rows
// are left alone, rows without a deduction dropped. Runs in one transaction, joining the
// caller's when there is one. A failure throws CvError, so that the caller's save rolls
// back whole instead of committing half of it, and tells the user once.
void SaveDeductXArray(DeductionGrid &grid, Database &wage, qint32 employeeId);

// The employee's ordinary deductions as stored, and the grid's rows, each as one text to
// compare with a later reading of the same.
QString storedDeductions(Database &wage, qint32 employeeId);
QString gridDeductions(const DeductionGrid &grid);

// The Percentage of a DeductNames row rounded to a whole number (halves to even); 0 when
// there is no such row. Throws CvError on a database failure.
qint32 deductionPercentageByQuery(Database &wage, qint32 deductNameId);

// The field "percentage" of the first row of a rate query (values bound in order to its ?
// markers), rounded to a whole number (halves to even); 0 when the query has no rows.
// Throws CvError 6 when it does not fit.
qint32 wholePercentageByQuery(Database &db, const QString &query, const QVariantList &values = {});

// The default rate of a deduction name from the grid's percentage table, 0 when unknown.
float percentageLookup(const DeductionGrid &grid, qint32 deductNameId);
