#pragma once

#include <QLatin1String>
#include <QtGlobal>

class Database;

namespace ErrorOrigin {
inline constexpr QLatin1String
    SaveKiwiSaverDeductions(") was generated in basDeductions.SaveKiwiSaverDeductions");
inline constexpr QLatin1String
    SaveKiwiSaverContributions(") was generated in basDeductions.SaveKiwiSaverContributions");
} // namespace ErrorOrigin

// Replaces the employee's KiwiSaver deduction row with one for the chosen rate (FixedAmount
// 0, SpecialRate the rate's whole percentage, TaxName "KiwiSaver"); removeOnly just
// removes it. One transaction, joining the caller's. A failure is reported to the user and
// rethrown so the caller's transaction rolls back; the caller must not report it again.
void SaveKiwiSaverDeductions(Database &wage, qint32 employeeId, qint32 deductNameId,
                             bool removeOnly);

// The same for the employer contribution row in EmployerContributions.
void SaveKiwiSaverContributions(Database &wage, qint32 employeeId, qint32 contributionNameId,
                                bool removeOnly);

// The Percentage of a ContributionNames row rounded to a whole number (halves to even); 0
// when there is no such row. Throws CvError on a database failure.
qint32 contributionPercentageByQuery(Database &wage, qint32 contributionNameId);
