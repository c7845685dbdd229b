// The KiwiSaver deduction and contribution rows: one per member, whole-number rates, and
// removal that spares the ordinary deductions.
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/deductions.h"
#include "paydetails/kiwisaver.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QStringList>

namespace {

class KiwiSaverTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        suite.execWage("INSERT INTO DeductNames (DeductNameID, DeductionName, TaxName, "
                       "Percentage) VALUES (4, 'KS 2.5%', 'KiwiSaver', 2.5),"
                       " (6, 'KS 3.5%', 'KiwiSaver', 3.5), (1, 'Union Fees', NULL, 0)");
        suite.execWage("INSERT INTO ContributionNames (ContributionNameID, ContributionName, "
                       "TaxName, Percentage) VALUES (2, 'Employer 3%', 'KiwiSaver', 3)");
        suite.execWage("INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                       "SpecialRate, TaxName) VALUES (7, 1, 50000, 0, NULL),"
                       " (7, 6, 0, 4, 'KiwiSaver'), (8, 6, 0, 4, 'KiwiSaver')");
        suite.execWage("INSERT INTO EmployerContributions (EmployeeID, ContributionID, "
                       "FixedAmount, SpecialRate, TaxName) VALUES (7, 2, 0, 3, 'KiwiSaver')");
    }

    // "ID Fixed Rate TaxName" for the employee's rows of a table.
    QStringList rows(const QString &table, const QString &idField, qint32 employeeId)
    {
        QStringList out;
        Recordset rs(wage,
                     "SELECT " + idField + ", FixedAmount, SpecialRate, TaxName FROM " + table +
                         " WHERE EmployeeID=" + QString::number(employeeId),
                     Recordset::Snapshot);
        for (; !rs.eof(); rs.moveNext())
            out << QStringLiteral("%1 %2 %3 %4")
                       .arg(rs.value(0).toLongLong())
                       .arg(rs.storedValue(1).toLongLong())
                       .arg(rs.value(2).toDouble())
                       .arg(rs.value(3).toString());
        return out;
    }

    TempSuite suite;
    Database wage{suite.wagePath()};
    MessageRecorder messages;
};

TEST_F(KiwiSaverTest, MemberGetsOneRowPerTableWithWholeRates)
{
    SaveKiwiSaverDeductions(wage, 7, 4, false);
    SaveKiwiSaverContributions(wage, 7, 2, false);
    // 2.5 rounds half to even.
    EXPECT_EQ(rows("EmployeeDeductions", "DeductID", 7),
              QStringList({"1 50000 0 ", "4 0 2 KiwiSaver"}));
    EXPECT_EQ(rows("EmployerContributions", "ContributionID", 7), QStringList({"2 0 3 KiwiSaver"}));
    EXPECT_EQ(rows("EmployeeDeductions", "DeductID", 8), QStringList({"6 0 4 KiwiSaver"}));
    EXPECT_EQ(deductionPercentageByQuery(wage, 6), 4);

    // A rate that no longer exists stores 0.
    SaveKiwiSaverDeductions(wage, 7, 99, false);
    SaveKiwiSaverContributions(wage, 7, 98, false);
    EXPECT_EQ(rows("EmployeeDeductions", "DeductID", 7).last(), "99 0 0 KiwiSaver");
    EXPECT_EQ(rows("EmployerContributions", "ContributionID", 7),
              QStringList({"98 0 0 KiwiSaver"}));
}

TEST_F(KiwiSaverTest, LeavingTheSchemeKeepsOrdinaryDeductions)
{
    SaveKiwiSaverDeductions(wage, 7, 4, true);
    SaveKiwiSaverContributions(wage, 7, 2, true);
    EXPECT_EQ(rows("EmployeeDeductions", "DeductID", 7), QStringList({"1 50000 0 "}));
    EXPECT_TRUE(rows("EmployerContributions", "ContributionID", 7).isEmpty());
    EXPECT_TRUE(messages.requests.empty());
}

} // namespace
