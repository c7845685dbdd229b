// Change-log lines appended to an entry's notes, dated with the pinned day.
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/changelog.h"
#include "startup/clock.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QFile>

namespace {

class ChangeLogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        suite.execFarm("INSERT INTO Addresses (AddressID, BusName) VALUES (5, 'Ann Hay')");
        setToday(QDate(2026, 11, 22));
        setCurrentUnitOfPay("Head");
    }
    void TearDown() override { setToday(QDate()); }

    QString notes()
    {
        Database farm(suite.farmPath());
        Recordset rs(farm, "SELECT notes FROM Addresses WHERE AddressID=5", Recordset::Snapshot);
        return rs.value(0).toString();
    }

    TempSuite suite;
    MessageRecorder messages;
};

TEST_F(ChangeLogTest, PayRateAndFinishDateLogOldestFirst)
{
    logValueChange(2, "25", "20", 5);
    logValueChange(2, "25", "25", 5); // re-entered: nothing
    logValueChange(5, "3/12/2026", "", 5);
    EXPECT_EQ(notes(), "[22/11/2026] Pay rate amended to $25.00 Head\r\n"
                       "[22/11/2026] Finished on 3/12/2026");
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(ChangeLogTest, EmptiedOrZeroDateLogsNothing)
{
    logValueChange(4, "", "1/04/2010", 5);
    logValueChange(5, "30/12/1899", "", 5);
    EXPECT_EQ(notes(), "");
}

TEST_F(ChangeLogTest, NamedFieldsCompareCaseSensitively)
{
    logNamedFieldChange("Shepherd", "shepherd", 0, 5);
    logNamedFieldChange("Fortnightly", "Fortnightly", 2, 5);
    logNamedFieldChange("x", "", 12, 5);
    logNamedFieldChange("Shepherd", "shepherd", 0, 404); // no such entry: nothing, no error
    EXPECT_EQ(notes(), "[22/11/2026] Occupation changed to Shepherd\r\n"
                       "[22/11/2026]  changed to x");
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(ChangeLogTest, AppendsAfterExistingNotesOrReportsAFailure)
{
    suite.execFarm("UPDATE Addresses SET notes = 'Started on the Tāwhiti block' "
                   "WHERE AddressID = 5");
    logNamedFieldChange("Herd Manager", "", 0, 5);
    EXPECT_EQ(notes(), "Started on the Tāwhiti block\r\n"
                       "[22/11/2026] Occupation changed to Herd Manager");

    // A data file that cannot be written: the error is reported and the notes stay.
    QFile::setPermissions(suite.farmPath(), QFile::ReadOwner | QFile::ReadUser);
    logNamedFieldChange("Shepherd", "Herd Manager", 0, 5);
    QFile::setPermissions(suite.farmPath(), QFile::ReadOwner | QFile::WriteOwner);
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_TRUE(messages.requests[0].prompt.contains("AppendToNotes"));
    EXPECT_EQ(notes(), "Started on the Tāwhiti block\r\n"
                       "[22/11/2026] Occupation changed to Herd Manager");
}

} // namespace
