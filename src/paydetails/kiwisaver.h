#pragma once

#include <QLatin1String>
#include <QtGlobal>

class Database;

// Replaces the employee's KiwiSaver deduction row with one for the chosen rate (FixedAmount
// 0, SpecialRate the rate's whole percentage, TaxName "KiwiSaver"); removeOnly just
// removes it. One transaction, joining the caller's. A failure throws CvError, so that the
// caller's save rolls back whole and tells the user once.
void SaveKiwiSaverDeductions(Database &wage, qint32 employeeId, qint32 deductNameId,
                             bool removeOnly);

// The same for the employer contribution row in EmployerContributions.
void SaveKiwiSaverContributions(Database &wage, qint32 employeeId, qint32 contributionNameId,
                                bool removeOnly);

// The Percentage of a ContributionNames row rounded to a whole number (halves to even); 0
// when there is no such row. Throws CvError on a database failure.
qint32 contributionPercentageByQuery(Database &wage, qint32 contributionNameId);
