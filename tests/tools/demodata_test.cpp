#include "bookquery.h"
#include "suitefiles.h"

#include <gtest/gtest.h>
#include <QDate>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

// The demo books are what the window, the pay editor and the delete rules are
// tried on by hand; these checks hold the facts those features rely on.
class DemoBooks : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_dir = std::make_unique<QTemporaryDir>();
        SuiteFiles::demoSuite(s_dir->path());
    }
    static void TearDownTestSuite() { s_dir.reset(); }

    DemoBooks()
        : farm(SuiteFiles::farmPath(s_dir->path())), wage(SuiteFiles::wagePath(s_dir->path()))
    {
    }

    static std::unique_ptr<QTemporaryDir> s_dir;
    BookQuery farm;
    BookQuery wage;
};

std::unique_ptr<QTemporaryDir> DemoBooks::s_dir;

TEST_F(DemoBooks, BooksAgreeAndHoldEveryKindOfEmployee)
{
    expectConsistentBooks(farm, wage);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees"), 8);
    EXPECT_GE(farm.count("SELECT COUNT(*) FROM Addresses"), 35);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Addresses WHERE BusinessFlag = -1"), 10);
    // Current employees by the name list's own condition, finished ones, and
    // the one whose finish date was cleared to the zero date.
    EXPECT_GE(wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished > 0"), 2);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished = 0"), 1);
    EXPECT_GE(wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished IS NULL "
                         "OR Datefinished = 0"),
              4);
}

TEST_F(DemoBooks, EntriesCoverEveryDeleteCase)
{
    const QSet<qint64> withWages =
        wage.keys("SELECT DISTINCT Employees.AddressID FROM Employees JOIN Wages "
                  "ON Employees.EmployeeID = Wages.EmployeeID");
    const QSet<qint64> withTransactions = farm.keys("SELECT DISTINCT AddressID FROM Transactions");
    const QSet<qint64> employees = wage.keys("SELECT AddressID FROM Employees");

    EXPECT_FALSE(QSet(withWages).intersect(withTransactions).isEmpty()) << "no entry has both";
    EXPECT_FALSE(QSet(withWages).subtract(withTransactions).isEmpty());
    EXPECT_FALSE(QSet(withTransactions).subtract(withWages).subtract(employees).isEmpty());
    EXPECT_FALSE(QSet(employees).subtract(withWages).intersect(withTransactions).isEmpty())
        << "no employee with cashbook entries only";
    EXPECT_FALSE(QSet(employees).subtract(withWages).subtract(withTransactions).isEmpty())
        << "no employee that can be deleted";
}

TEST_F(DemoBooks, KiwiSaverRowsAgreeWithEnrolment)
{
    EXPECT_EQ(wage.value("SELECT KSMember FROM KiwiSaverEnrollType WHERE KSEnrollTypeID = 6"), 0);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM ContributionNames WHERE ContributionName = "
                         "'<Please Select>' AND TaxName = 'KiwiSaver' AND Percentage = 0"),
              1);

    // Membership follows the enrolment type (a missing type reads as 6).
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees e JOIN KiwiSaverEnrollType k "
                         "ON k.KSEnrollTypeID = IFNULL(e.KiwiSaverEnrolID, 6) "
                         "WHERE e.KiwiSaverEnrolled <> k.KSMember"),
              0);
    EXPECT_GE(wage.count("SELECT COUNT(*) FROM Employees WHERE KiwiSaverEnrolled = -1"), 3);
    EXPECT_GE(wage.count("SELECT COUNT(*) FROM Employees WHERE KiwiSaverEnrolled = 0"), 2);

    // Each member has one deduction and one contribution row at the rates of
    // the names they point at; non-members have none.
    for (const QVariantList &e : wage.rows("SELECT EmployeeID, KiwiSaverEnrolled, "
                                           "KiwiSaverEmployerRateID FROM Employees")) {
        const QString id = e[0].toString();
        const bool member = e[1].toInt() != 0;
        SCOPED_TRACE("employee " + id.toStdString());
        const QList<QVariantList> deduction =
            wage.rows("SELECT d.SpecialRate, n.Percentage, n.TaxName FROM EmployeeDeductions d "
                      "JOIN DeductNames n ON n.DeductNameID = d.DeductID "
                      "WHERE d.TaxName = 'kiwisaver' AND d.EmployeeID = " +
                      id);
        const QList<QVariantList> contribution = wage.rows(
            "SELECT c.SpecialRate, n.Percentage, c.ContributionID FROM EmployerContributions c "
            "JOIN ContributionNames n ON n.ContributionNameID = c.ContributionID "
            "WHERE c.TaxName = 'KiwiSaver' AND c.EmployeeID = " +
            id);
        ASSERT_EQ(deduction.size(), member ? 1 : 0);
        ASSERT_EQ(contribution.size(), member ? 1 : 0);
        if (member) {
            EXPECT_EQ(deduction[0][0].toDouble(), deduction[0][1].toDouble());
            EXPECT_EQ(deduction[0][2].toString(), "KiwiSaver");
            EXPECT_EQ(contribution[0][0].toDouble(), contribution[0][1].toDouble());
            EXPECT_EQ(contribution[0][2], e[2]);
        }
    }
    // Ordinary deductions sit beside the KiwiSaver rows.
    EXPECT_GE(wage.count("SELECT COUNT(*) FROM EmployeeDeductions WHERE TaxName IS NULL"), 3);
}

TEST_F(DemoBooks, ValuesAreStoredByTheStorageContract)
{
    // Money in ten-thousandths, dates as serial days, names with macrons exact.
    const QString aroha =
        farm.value("SELECT AddressID FROM Addresses WHERE BusName = 'Aroha Tāwhiri'").toString();
    ASSERT_FALSE(aroha.isEmpty()) << "macrons did not round-trip";
    EXPECT_EQ(wage.rows("SELECT PayRate, Datehired FROM Employees WHERE AddressID = " + aroha),
              (QList<QVariantList>{{275000, QDate(1899, 12, 30).daysTo(QDate(2019, 7, 15))}}));
    EXPECT_EQ(
        farm.value("SELECT BusName FROM Addresses WHERE BusName LIKE 'ngāti kahu%'").toString(),
        QString::fromUtf8("Ngāti Kahu Fencing"));
    // Notes hold change-log lines separated by CR LF.
    const QString notes =
        farm.value("SELECT notes FROM Addresses WHERE AddressID = " + aroha).toString();
    EXPECT_TRUE(notes.endsWith("\r\n[1/04/2024] Pay rate amended to $27.50 Hour"))
        << notes.toStdString();
    EXPECT_FALSE(notes.contains(QRegularExpression("[^\r]\n")));
}

TEST_F(DemoBooks, ReferenceTablesGiveThePayEditorItsDefaults)
{
    // The wage account shows in the cash book; ordinary banks and batch accounts both exist.
    EXPECT_EQ(farm.rows("SELECT p.WageAccount, a.\"Show In CashBk\" FROM PayeInfo p "
                        "JOIN \"Secondary Codes\" s ON s.\"Secondary Codes ID\" = p.WageAccount "
                        "JOIN \"Account Codes\" a ON a.\"Account Code\" = s.\"Main Code ID\""),
              (QList<QVariantList>{{401001, -1}}));
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM \"Account Codes\" WHERE \"Show In CashBk\" = 0"), 0);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Banks WHERE BanksID < 995 AND AccountType = 0"), 0);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Banks WHERE BanksID >= 995 AND AccountType = 1"), 0);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM EmployeeAwardType WHERE Unitofpay IS NULL"), 1);
    EXPECT_GT(wage.count("SELECT COUNT(*) FROM TaxTypes WHERE CountryPhone = 61"), 0);
    EXPECT_GT(wage.count("SELECT COUNT(*) FROM DeductNames WHERE CountryPhone = 61"), 0);
}
