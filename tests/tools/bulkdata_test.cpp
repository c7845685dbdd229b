#include "bookquery.h"
#include "data/cverror.h"
#include "suitefiles.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

SuiteFiles::BulkOptions options(int addresses, int employees)
{
    SuiteFiles::BulkOptions o;
    o.addresses = addresses;
    o.employees = employees;
    return o;
}

} // namespace

TEST(BulkBooks, MakesExactlyTheEntriesAndEmployeesAskedFor)
{
    QTemporaryDir dir;
    SuiteFiles::BulkOptions o = options(3000, 2100);
    o.notesBytes = 70000;
    SuiteFiles::bulkSuite(dir.path(), o);
    BookQuery farm(SuiteFiles::farmPath(dir.path()));
    BookQuery wage(SuiteFiles::wagePath(dir.path()));

    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses"), 3000);
    EXPECT_EQ(wage.count("SELECT COUNT(DISTINCT AddressID) FROM Employees"), 2100);
    EXPECT_EQ(wage.keys("SELECT AddressID FROM Employees"),
              farm.keys("SELECT AddressID FROM Addresses WHERE WageFlag = -1"));
    const qint64 finished = wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished > 0");
    EXPECT_GT(finished, 2100 / 10);
    EXPECT_LT(finished, 2100 / 2);

    // Employees 0, 1000 and 2000 carry the grown notes, to the byte.
    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses "
                         "WHERE length(CAST(notes AS BLOB)) = 70000 AND WageFlag = -1"),
              3);
    EXPECT_LT(farm.count("SELECT COUNT(*) FROM Addresses WHERE length(notes) > 20000"), 4);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Addresses WHERE notes IS NULL"), 0);

    // Names are spread over the letter strip, and KiwiSaver rows follow
    // membership as the demo's do.
    EXPECT_GE(farm.count("SELECT COUNT(DISTINCT upper(substr(BusName, 1, 1))) FROM Addresses"), 26);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE KiwiSaverEnrolled = -1"),
              wage.count("SELECT COUNT(*) FROM EmployerContributions WHERE TaxName = 'KiwiSaver'"));
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE KiwiSaverEnrolled = -1"),
              wage.count("SELECT COUNT(*) FROM EmployeeDeductions WHERE TaxName = 'KiwiSaver'"));
    EXPECT_EQ(farm.value("PRAGMA journal_mode").toString(), "delete");

    EXPECT_EQ(farm.contractBreaches().join(", ").toStdString(), "");
    EXPECT_EQ(wage.contractBreaches().join(", ").toStdString(), "");
    // Every key points at a row that exists.
    const QSet<qint64> addresses = farm.keys("SELECT AddressID FROM Addresses");
    EXPECT_TRUE(addresses.contains(farm.keys("SELECT AddressID FROM Transactions")));
    EXPECT_TRUE(farm.keys("SELECT \"Secondary Codes ID\" FROM \"Secondary Codes\"")
                    .contains(farm.keys("SELECT HeadingAccount FROM Addresses "
                                        "WHERE HeadingAccount IS NOT NULL")));
    EXPECT_TRUE(
        farm.keys("SELECT BanksID FROM Banks").contains(wage.keys("SELECT BankID FROM Employees")));
    const QSet<qint64> employees = wage.keys("SELECT EmployeeID FROM Employees");
    for (const char *table : {"Wages", "EmployeeDeductions", "EmployerContributions"})
        EXPECT_TRUE(employees.contains(wage.keys(QString("SELECT EmployeeID FROM %1").arg(table))))
            << table;
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM EmployeeDeductions WHERE DeductID NOT IN "
                         "(SELECT DeductNameID FROM DeductNames)"),
              0);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE EmployeeTypeID NOT IN "
                         "(SELECT EmployeeTypeID FROM EmployeeAwardType) OR TaxTypeID NOT IN "
                         "(SELECT TaxTypeID FROM TaxTypes) OR PayIntervalID NOT IN "
                         "(SELECT PayIntervalID FROM PayInterval) OR IFNULL(KiwiSaverEnrolID, 6) "
                         "NOT IN (SELECT KSEnrollTypeID FROM KiwiSaverEnrollType)"),
              0);
}

TEST(BulkBooks, SameOptionsGiveTheSameRows)
{
    QTemporaryDir first, second, third;
    SuiteFiles::bulkSuite(first.path(), options(800, 150));
    SuiteFiles::bulkSuite(second.path(), options(800, 150));
    SuiteFiles::BulkOptions reseeded = options(800, 150);
    reseeded.seed = 7;
    SuiteFiles::bulkSuite(third.path(), reseeded);

    for (auto path : {&SuiteFiles::farmPath, &SuiteFiles::wagePath}) {
        const QByteArray a = BookQuery(path(first.path())).digest();
        EXPECT_EQ(a, BookQuery(path(second.path())).digest());
        EXPECT_NE(a, BookQuery(path(third.path())).digest());
    }
}

TEST(BulkBooks, RefusesMoreEmployeesThanEntriesAndKeepsExistingFiles)
{
    QTemporaryDir dir;
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(10, 11)), CvError);
    EXPECT_TRUE(SuiteFiles::existingDataFiles(dir.path()).isEmpty());

    SuiteFiles::bulkSuite(dir.path(), options(10, 0));
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(20, 0)), CvError);
    EXPECT_EQ(BookQuery(SuiteFiles::farmPath(dir.path())).count("SELECT COUNT(*) FROM Addresses"),
              10);
}

TEST(BulkBooks, AFailedBuildLeavesNoFilesBehind)
{
    QTemporaryDir dir;
    // A folder where the wage file is built makes the build fail after the
    // main data file has been started.
    ASSERT_TRUE(QDir().mkpath(SuiteFiles::wagePath(dir.path()) + ".part"));
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(50, 5)), CvError);
    EXPECT_TRUE(SuiteFiles::existingDataFiles(dir.path()).isEmpty());
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::farmPath(dir.path()) + ".part"));
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::iniPath(dir.path())));
}
