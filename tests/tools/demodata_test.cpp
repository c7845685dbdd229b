// The demo books are what the window, the pay editor and the delete rules are tried on by
// hand and by the widget tests; these checks hold the facts those rely on.
#include "bookquery.h"
#include "suitefiles.h"

#include <gtest/gtest.h>
#include <QDate>
#include <QTemporaryDir>

TEST(DemoBooks, AgreeAndHoldEveryCaseTheFeaturesNeed)
{
    QTemporaryDir dir;
    SuiteFiles::demoSuite(dir.path());
    const BookQuery farm(SuiteFiles::farmPath(dir.path())), wage(SuiteFiles::wagePath(dir.path()));
    expectConsistentBooks(farm, wage);
    // Membership follows the enrolment type (a missing type reads as 6), and each member's
    // KiwiSaver rows carry the rates of the names they point at.
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees e JOIN KiwiSaverEnrollType k "
                         "ON k.KSEnrollTypeID = IFNULL(e.KiwiSaverEnrolID, 6) "
                         "WHERE e.KiwiSaverEnrolled <> k.KSMember"),
              0);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM EmployeeDeductions d JOIN DeductNames n ON "
                         "n.DeductNameID = d.DeductID WHERE d.TaxName = 'KiwiSaver' AND "
                         "d.SpecialRate <> n.Percentage"),
              0);
    // Every delete case: wages and cashbook entries, wages only, cashbook only (an employee
    // among them), and an employee with neither.
    const QSet<qint64> wages = wage.keys("SELECT DISTINCT e.AddressID FROM Employees e JOIN "
                                         "Wages w ON e.EmployeeID = w.EmployeeID");
    const QSet<qint64> cashbook = farm.keys("SELECT DISTINCT AddressID FROM Transactions");
    const QSet<qint64> employees = wage.keys("SELECT AddressID FROM Employees");
    EXPECT_FALSE(QSet(wages).intersect(cashbook).isEmpty());
    EXPECT_FALSE(QSet(wages).subtract(cashbook).isEmpty());
    EXPECT_FALSE(QSet(employees).subtract(wages).intersect(cashbook).isEmpty());
    EXPECT_FALSE(QSet(employees).subtract(wages).subtract(cashbook).isEmpty());
    // Current, finished and cleared (the zero date) employees.
    EXPECT_EQ(
        wage.rows("SELECT IFNULL(Datefinished, 0) > 0, COUNT(*) > 0 FROM Employees GROUP BY 1"),
        (QList<QVariantList>{{0, 1}, {1, 1}}));
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished = 0"), 1);
    // Values by the storage contract: money in ten-thousandths, dates as serial days,
    // macrons exact, notes lines separated by CR LF.
    const QString aroha =
        farm.value("SELECT AddressID FROM Addresses WHERE BusName = 'Aroha Tāwhiri'").toString();
    ASSERT_FALSE(aroha.isEmpty()) << "macrons did not round-trip";
    EXPECT_EQ(wage.rows("SELECT PayRate, Datehired FROM Employees WHERE AddressID = " + aroha),
              (QList<QVariantList>{{275000, QDate(1899, 12, 30).daysTo(QDate(2019, 7, 15))}}));
    EXPECT_TRUE(farm.value("SELECT notes FROM Addresses WHERE AddressID = " + aroha)
                    .toString()
                    .endsWith("\r\n[1/04/2024] Pay rate amended to $27.50 Hour"));
    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses WHERE notes GLOB '*[^\r]\n*'"), 0);
}
