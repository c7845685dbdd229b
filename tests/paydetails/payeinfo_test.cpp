// PAYE settings from a real main data file.
#include "config/errorlog.h"
#include "data/database.h"
#include "paydetails/payeinfo.h"
#include "support/confighome.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>

namespace {

class PayeInfoTest : public ::testing::Test
{
protected:
    PayeInfoTest() { resetErrorLogState(); }
    ~PayeInfoTest() override { resetErrorLogState(); }

    ScopedConfigHome m_home;
    TempSuite m_suite;
    MessageRecorder m_recorder;
};

TEST_F(PayeInfoTest, StoredValueWins)
{
    m_suite.writeIni("[TAX]\r\nWageAccount=403000\r\n");
    m_suite.execFarm("INSERT INTO PayeInfo (WageAccount, EmployerName) VALUES (402005, 'Acme')");
    Database db(m_suite.farmPath());
    EXPECT_EQ(PayeInfo(db, "WageAccount", 1).toLongLong(), 402005);
    EXPECT_EQ(PayeInfo(db, "employername").toString(), "Acme");
    EXPECT_EQ(wageAccount(db), 402005);
    EXPECT_TRUE(m_recorder.requests.empty());
}

TEST_F(PayeInfoTest, NullOrEmptyGivesTheDefaultSilently)
{
    m_suite.execFarm("INSERT INTO PayeInfo (WageAccount, EmployerName) VALUES (NULL, '')");
    Database db(m_suite.farmPath());
    EXPECT_EQ(PayeInfo(db, "EmployerName", "none").toString(), "none");
    m_suite.writeIni("[TAX]\r\nWageAccount=403000\r\n");
    EXPECT_EQ(wageAccount(db), 403000);
    m_suite.writeIni("[TAX]\r\nWageAccount=abc\r\n");
    EXPECT_EQ(wageAccount(db), 401001);
    m_suite.removeIni();
    EXPECT_EQ(wageAccount(db), 401001);
    EXPECT_TRUE(m_recorder.requests.empty());
}

TEST_F(PayeInfoTest, FailuresAreReportedAndTheDefaultReturned)
{
    m_suite.writeIni("[START]\r\nFirm=Acme\r\n");
    Database db(m_suite.farmPath());
    // No record: reading the column fails even though the table is empty.
    EXPECT_EQ(wageAccount(db), 401001);
    m_suite.execFarm("INSERT INTO PayeInfo (WageAccount) VALUES (402005)");
    EXPECT_EQ(PayeInfo(db, "NoSuchSetting", "d").toString(), "d");

    ASSERT_EQ(m_recorder.requests.size(), 2u);
    const MessageRequest &empty = m_recorder.requests[0];
    EXPECT_TRUE(empty.prompt.startsWith("Description - "));
    EXPECT_TRUE(empty.prompt.endsWith("(3021) was generated in commoncode.payeinfo"));
    EXPECT_EQ(empty.heading, "Error 3021 WageAccount");
    EXPECT_EQ(empty.caption, "Acme Error");
    EXPECT_EQ(empty.title, "An Error has Occurred");
    EXPECT_EQ(m_recorder.requests[1].heading, "Error 3265 NoSuchSetting");
}

} // namespace
