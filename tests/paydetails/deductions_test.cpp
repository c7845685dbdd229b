// The standing deductions grid and the KiwiSaver rows: loading, the drop-down's country
// filter, the rate rules of an edit, and saves that each replace only their own rows.
#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/deductions.h"
#include "paydetails/kiwisaver.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QStringList>

namespace {

class DeductionsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        suite.execWage(
            "INSERT INTO DeductNames (DeductNameID, DeductionName, TaxName, CountryPhone, "
            "Percentage) VALUES (1, 'Union Fees', NULL, 0, 1.5), (2, 'Ward Levy', NULL, 61, 0),"
            " (3, 'Child Support', 'Child Support', 64, 0), (4, 'KiwiSaver 3%', 'KiwiSaver', 64, "
            "3), (5, 'Local Levy', NULL, 64, 2), (6, 'KS 2.5%', 'KiwiSaver', 64, 2.5);"
            "INSERT INTO ContributionNames (ContributionNameID, ContributionName, TaxName, "
            "Percentage) VALUES (2, 'Employer 3%', 'KiwiSaver', 3);"
            "INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, SpecialRate, "
            "TaxName) VALUES (7, 1, 100000, 0, NULL), (7, 4, 0, 3, 'KiwiSaver'), "
            "(7, 3, 250000, 0, NULL), (8, 1, 0, 5, NULL), (8, 4, 0, 3, 'KiwiSaver');"
            "INSERT INTO EmployerContributions (EmployeeID, ContributionID, FixedAmount, "
            "SpecialRate, TaxName) VALUES (7, 2, 0, 3, 'KiwiSaver')");
    }

    // The employee's rows of a table as "ID Fixed Rate TaxName", in key order.
    QStringList rows(qint32 employeeId, const QString &table = "EmployeeDeductions")
    {
        QStringList out;
        Recordset rs(wage,
                     "SELECT * FROM " + table + " WHERE EmployeeID=" + QString::number(employeeId),
                     Recordset::Snapshot);
        for (; !rs.eof(); rs.moveNext())
            out << QStringLiteral("%1 %2 %3 %4")
                       .arg(rs.value(table == "EmployeeDeductions" ? "DeductID" : "ContributionID")
                                .toLongLong())
                       .arg(rs.value("FixedAmount").value<Money>().toPlainString())
                       .arg(rs.value("SpecialRate").toDouble())
                       .arg(rs.isNull("TaxName") ? "-" : rs.value("TaxName").toString());
        return out;
    }

    TempSuite suite;
    std::unique_ptr<Database> books{suite.openBooks()};
    Database &wage{*books};
    MessageRecorder messages;
    DeductionGrid grid;
};

TEST_F(DeductionsTest, LoadsOrdinaryRowsAndTheCountrysNames)
{
    FillDeductGrid(wage, 7, grid, 64);
    ASSERT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.displayText(0, 1), "Union Fees");
    EXPECT_EQ(grid.value(0, 2).toString(), "$10.00");
    EXPECT_EQ(grid.value(0, 3).toString(), "0.00");
    const auto listed = [this] {
        QStringList names;
        for (const GridValueItem &item : grid.deductionList())
            names << item.displayName;
        return names;
    };
    EXPECT_EQ(listed(), QStringList({"Child Support", "Local Levy", "Union Fees"}));
    FillDeductGrid(wage, 7, grid, 61);
    EXPECT_EQ(listed(), QStringList({"Child Support", "Union Fees", "Ward Levy"}));

    // No deductions: an empty grid, but the percentage table still loads.
    FillDeductGrid(wage, 99, grid, 64);
    EXPECT_EQ(grid.rowCount(), 0);
    EXPECT_FLOAT_EQ(percentageLookup(grid, 1), 1.5f);
    EXPECT_FLOAT_EQ(percentageLookup(grid, 42), 0.0f);
    EXPECT_TRUE(messages.requests.empty());
}

// Each step edits one cell of a new row; a positive amount clears the rate and a positive
// rate the amount; a new deduction brings its percentage.
TEST_F(DeductionsTest, RowCarriesAFixedAmountOrAPercentage)
{
    FillDeductGrid(wage, 99, grid, 64);
    const int row = grid.addRow();
    const struct
    {
        int column;
        QVariant value;
        const char *fixed, *rate;
    } steps[] = {{1, 1, "", "1.50"},
                 {2, "$25.00", "$25.00", "0.00"},
                 {3, "4", "$0.00", "4"},
                 {2, "0", "0", "4"},
                 {3, "-1", "0", "-1"}};
    for (const auto &s : steps) {
        grid.setValue(row, s.column, s.value);
        ChangeRate(grid, row, qint16(s.column));
        SCOPED_TRACE(s.value.toString().toStdString());
        if (*s.fixed) {
            EXPECT_EQ(grid.value(row, 2).toString(), s.fixed);
        }
        EXPECT_EQ(grid.value(row, 3).toString(), s.rate);
    }
}

TEST_F(DeductionsTest, SavesReplaceOnlyTheirOwnRows)
{
    FillDeductGrid(wage, 7, grid, 64);
    grid.removeRow(0);
    grid.addRow(); // no deduction: dropped
    const int row = grid.addRow();
    grid.setValue(row, 1, 5);
    grid.setValue(row, 3, "2.00");
    SaveDeductXArray(grid, wage, 7);
    const QStringList expected{"4 0 3 KiwiSaver", "3 25 0 -", "5 0 2 -"};
    EXPECT_EQ(rows(7), expected);
    EXPECT_EQ(rows(8), QStringList({"1 0 5 -", "4 0 3 KiwiSaver"}));
    // A deduction whose name carries a tax name is still an ordinary row: saving twice
    // must not pile up copies of it.
    FillDeductGrid(wage, 7, grid, 64);
    SaveDeductXArray(grid, wage, 7);
    EXPECT_EQ(rows(7), expected);

    // A member has one KiwiSaver row in each table, at a whole rate (2.5 rounds half to
    // even); a rate that no longer exists stores 0; leaving removes both rows.
    SaveKiwiSaverDeductions(wage, 7, 6, false);
    SaveKiwiSaverContributions(wage, 7, 2, false);
    EXPECT_EQ(rows(7), QStringList({"3 25 0 -", "5 0 2 -", "6 0 2 KiwiSaver"}));
    EXPECT_EQ(rows(7, "EmployerContributions"), QStringList({"2 0 3 KiwiSaver"}));
    EXPECT_EQ(deductionPercentageByQuery(wage, 4), 3);
    SaveKiwiSaverContributions(wage, 7, 98, false);
    EXPECT_EQ(rows(7, "EmployerContributions"), QStringList({"98 0 0 KiwiSaver"}));
    SaveKiwiSaverDeductions(wage, 7, 6, true);
    SaveKiwiSaverContributions(wage, 7, 2, true);
    EXPECT_EQ(rows(7), QStringList({"3 25 0 -", "5 0 2 -"}));
    EXPECT_TRUE(rows(7, "EmployerContributions").isEmpty());
    EXPECT_EQ(rows(8), QStringList({"1 0 5 -", "4 0 3 KiwiSaver"}));
    EXPECT_TRUE(messages.requests.empty());
}

} // namespace
