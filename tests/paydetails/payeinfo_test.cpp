// PAYE settings from a real main data file.
#include "config/errorlog.h"
#include "data/database.h"
#include "paydetails/payeinfo.h"
#include "support/confighome.h"
#include "support/errorof.h"
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
    const auto books = m_suite.openBooks();
    Database &db = *books;
    EXPECT_EQ(PayeInfo(db, "WageAccount", 1).toLongLong(), 402005);
    EXPECT_EQ(wageAccount(db), 402005);
    EXPECT_TRUE(m_recorder.requests.empty());
}

TEST_F(PayeInfoTest, NullOrEmptyGivesTheDefaultSilently)
{
    m_suite.execFarm("INSERT INTO PayeInfo (WageAccount, EmployerName) VALUES (NULL, '')");
    const auto books = m_suite.openBooks();
    Database &db = *books;
    EXPECT_EQ(PayeInfo(db, "EmployerName", "none").toString(), "none");
    m_suite.writeIni("[TAX]\r\nWageAccount=403000\r\n");
    EXPECT_EQ(wageAccount(db), 403000);
    m_suite.removeIni();
    EXPECT_EQ(wageAccount(db), 401001);
    EXPECT_TRUE(m_recorder.requests.empty());
}

TEST_F(PayeInfoTest, FailuresThrowForTheProcedureToTell)
{
    const auto books = m_suite.openBooks();
    Database &db = *books;
    // No record: reading the column fails even though the table is empty.
    EXPECT_EQ(errorOf([&] { wageAccount(db); }), CvError::NoCurrentRecord);
    m_suite.execFarm("INSERT INTO PayeInfo (WageAccount) VALUES (402005)");
    EXPECT_EQ(errorOf([&] { PayeInfo(db, "NoSuchSetting", "d"); }), CvError::ItemNotFound);
    EXPECT_TRUE(m_recorder.requests.empty());
}

} // namespace
