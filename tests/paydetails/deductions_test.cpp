// The standing deductions grid: loading, the drop-down's country filter, the rate rules of
// an edit, and the delete-then-insert save that must leave KiwiSaver rows alone.
#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/deductions.h"
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
            " (3, 'Child Support', 'Child Support', 64, 0),"
            " (4, 'KiwiSaver 3%', 'KiwiSaver', 64, 3), (5, 'Local Levy', NULL, 64, 2)");
        suite.execWage("INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                       "SpecialRate, TaxName) VALUES (7, 1, 100000, 0, NULL),"
                       " (7, 4, 0, 3, 'KiwiSaver'), (7, 3, 250000, 0, NULL), (8, 1, 0, 5, NULL)");
    }

    // The employee's rows as "DeductID Fixed Rate TaxName", in key order.
    QStringList storedRows(qint32 employeeId)
    {
        QStringList rows;
        Recordset rs(wage,
                     "SELECT DeductID, FixedAmount, SpecialRate, TaxName FROM "
                     "EmployeeDeductions WHERE EmployeeID=" +
                         QString::number(employeeId),
                     Recordset::Snapshot);
        for (; !rs.eof(); rs.moveNext())
            rows << QStringLiteral("%1 %2 %3 %4")
                        .arg(rs.value(0).toLongLong())
                        .arg(rs.value(1).value<Money>().toPlainString())
                        .arg(rs.value(2).toDouble())
                        .arg(rs.isNull("TaxName") ? "-" : rs.value(3).toString());
        return rows;
    }

    QStringList listedNames(const DeductionGrid &grid)
    {
        QStringList names;
        for (const GridValueItem &item : grid.deductionList())
            names << item.displayName;
        return names;
    }

    TempSuite suite;
    Database wage{suite.wagePath()};
    MessageRecorder messages;
};

TEST_F(DeductionsTest, LoadsOrdinaryRowsFormattedForTheGrid)
{
    DeductionGrid grid;
    FillDeductGrid(wage, 7, grid, 64);
    ASSERT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.displayText(0, 1), "Union Fees");
    EXPECT_EQ(grid.value(0, 2).toString(), "$10.00");
    EXPECT_EQ(grid.value(0, 3).toString(), "0.00");
    EXPECT_FALSE(grid.value(0, 4).isValid());
    EXPECT_EQ(grid.displayText(1, 1), "Child Support");
    EXPECT_EQ(grid.caption(3), "Percent");
    EXPECT_TRUE(messages.requests.empty());

    // No deductions: an empty grid, but the percentage table still loads.
    FillDeductGrid(wage, 99, grid, 64);
    EXPECT_EQ(grid.rowCount(), 0);
    EXPECT_EQ(grid.percentages().size(), 6u);
    EXPECT_FLOAT_EQ(percentageLookup(grid, 1), 1.5f);
    EXPECT_FLOAT_EQ(percentageLookup(grid, 42), 0.0f);
}

TEST_F(DeductionsTest, DropDownFollowsTheCountry)
{
    DeductionGrid grid;
    FillDeductGrid(wage, 7, grid, 64);
    EXPECT_EQ(listedNames(grid), QStringList({"Child Support", "Local Levy", "Union Fees"}));
    FillDeductGrid(wage, 7, grid, 61);
    EXPECT_EQ(listedNames(grid), QStringList({"Child Support", "Union Fees", "Ward Levy"}));
}

TEST_F(DeductionsTest, RowCarriesAFixedAmountOrAPercentage)
{
    DeductionGrid grid;
    FillDeductGrid(wage, 99, grid, 64);
    const int row = grid.addRow();
    grid.setValue(row, 1, 1);
    ChangeRate(grid, row, 1);
    EXPECT_EQ(grid.value(row, 3).toString(), "1.50");

    grid.setValue(row, 2, "$25.00");
    ChangeRate(grid, row, 2);
    EXPECT_EQ(grid.value(row, 3).toString(), "0.00");

    grid.setValue(row, 3, "4");
    ChangeRate(grid, row, 3);
    EXPECT_EQ(grid.value(row, 2).toString(), "$0.00");

    // Zero or negative entries clear nothing.
    grid.setValue(row, 2, "0");
    ChangeRate(grid, row, 2);
    grid.setValue(row, 3, "-1");
    ChangeRate(grid, row, 3);
    EXPECT_EQ(grid.value(row, 3).toString(), "-1");
    EXPECT_EQ(grid.value(row, 2).toString(), "0");
}

TEST_F(DeductionsTest, SaveRewritesOnlyOrdinaryRows)
{
    DeductionGrid grid;
    FillDeductGrid(wage, 7, grid, 64);
    grid.removeRow(0);
    grid.addRow(); // no deduction: dropped
    const int row = grid.addRow();
    grid.setValue(row, 1, 5);
    grid.setValue(row, 3, "2.00");
    SaveDeductXArray(grid, wage, 7);
    const QStringList expected{"4 0 3 KiwiSaver", "3 25 0 -", "5 0 2 -"};
    EXPECT_EQ(storedRows(7), expected);
    EXPECT_EQ(storedRows(8), QStringList({"1 0 5 -"}));

    // A deduction whose name carries a tax name is still an ordinary row: saving twice
    // must not pile up copies of it.
    FillDeductGrid(wage, 7, grid, 64);
    SaveDeductXArray(grid, wage, 7);
    EXPECT_EQ(storedRows(7), expected);
}

TEST_F(DeductionsTest, FailedSaveRollsBackTheCallersTransaction)
{
    DeductionGrid grid;
    FillDeductGrid(wage, 7, grid, 64);
    grid.setValue(0, 2, "lots");
    EXPECT_THROW(wage.transaction([&] {
        wage.execute("DELETE FROM EmployeeDeductions WHERE EmployeeID=8");
        SaveDeductXArray(grid, wage, 7);
    }),
                 CvError);
    EXPECT_FALSE(wage.inTransaction());
    EXPECT_EQ(storedRows(7), QStringList({"1 10 0 -", "4 0 3 KiwiSaver", "3 25 0 -"}));
    EXPECT_EQ(storedRows(8).size(), 1);
    EXPECT_TRUE(messages.requests.empty()) << "the caller's save tells the user, once";
}

} // namespace
