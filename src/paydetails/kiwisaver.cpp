#include "paydetails/kiwisaver.h"

#include "core/cverror.h"
#include "data/database.h"
#include "messages/errorreport.h"
#include "paydetails/deductions.h"

namespace {

// Replaces the employee's KiwiSaver row of one table with a row for the chosen rate.
void saveKiwiSaverRow(Database &wage, const QString &table, const QString &idField,
                      qint32 employeeId, qint32 rateId, qint32 percentage, bool removeOnly)
{
    wage.transaction([&] {
        // Text compares without regard to case, so this also removes "KiwiSaver" rows.
        wage.execute("Delete * FROM " + table + " Where EmployeeID=? AND TaxName=\"kiwisaver\"",
                     {employeeId});
        if (removeOnly)
            return;
        wage.execute("INSERT INTO " + table + " (EmployeeID, " + idField +
                         ", FixedAmount, SpecialRate, TaxName) VALUES (?, ?, 0, ?, \"KiwiSaver\")",
                     {employeeId, rateId, percentage});
    });
}

} // namespace

void SaveKiwiSaverDeductions(Database &wage, qint32 employeeId, qint32 deductNameId,
                             bool removeOnly)
{
    const qint32 rate = removeOnly ? 0 : deductionPercentageByQuery(wage, deductNameId);
    saveKiwiSaverRow(wage, QStringLiteral("EmployeeDeductions"), QStringLiteral("DeductID"),
                     employeeId, deductNameId, rate, removeOnly);
}

void SaveKiwiSaverContributions(Database &wage, qint32 employeeId, qint32 contributionNameId,
                                bool removeOnly)
{
    const qint32 rate = removeOnly ? 0 : contributionPercentageByQuery(wage, contributionNameId);
    saveKiwiSaverRow(wage, QStringLiteral("EmployerContributions"),
                     QStringLiteral("ContributionID"), employeeId, contributionNameId, rate,
                     removeOnly);
}

qint32 contributionPercentageByQuery(Database &wage, qint32 contributionNameId)
{
    return wholePercentageByQuery(
        wage,
        QStringLiteral("SELECT ContributionNames.* From ContributionNames "
                       "WHERE ContributionNames.ContributionNameID=?"),
        {contributionNameId});
}
