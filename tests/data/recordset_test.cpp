#include "fixture.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"

#include <gtest/gtest.h>
#include <QDateTime>

namespace {

class RecordsetTest : public ::testing::Test
{
protected:
    void SetUp() override { Fixture::fill(m_suite); }

    TempSuite m_suite;
    Database m_farm{m_suite.farmPath()};
    Database m_wage{m_suite.wagePath()};
};

} // namespace

TEST_F(RecordsetTest, FieldsCarryTheirJetTypesByNameOrPosition)
{
    Recordset rs(m_wage, "Select Distinctrow * from Employees where AddressID = 37");
    EXPECT_EQ(rs.field("employeeid").type, JetType::AutoNumber);
    EXPECT_EQ(rs.field("AddressID").type, JetType::Long);
    EXPECT_EQ(rs.field("TaxCode").type, JetType::Text);
    EXPECT_EQ(rs.field("TaxCode").size, 10);
    EXPECT_EQ(rs.field("PayRate").type, JetType::Currency);
    EXPECT_EQ(rs.field("Birthdate").type, JetType::DateTime);
    EXPECT_EQ(rs.field("KiwiSaverEnrolled").type, JetType::YesNo);
    EXPECT_EQ(rs.field(0).name, "EmployeeID");
    EXPECT_EQ(rs.fieldIndex("Employees.PayRate"), rs.fieldIndex("payrate"));
    EXPECT_EQ(rs.fieldIndex("NoSuchColumn"), -1);
    EXPECT_EQ(errorOf([&] { rs.value("NoSuchColumn"); }), CvError::ItemNotFound);
    EXPECT_EQ(errorOf([&] { rs.value(99); }), CvError::SubscriptOutOfRange);

    // Values by type: Money, the date with its time, booleans, Null.
    EXPECT_EQ(rs.value("PayRate").value<Money>(), Money::fromScaled(251000));
    EXPECT_EQ(rs.value("Birthdate").toDateTime(), QDateTime(QDate(1968, 6, 11), QTime(12, 0)));
    EXPECT_EQ(rs.value("KiwiSaverEnrolled"), QVariant(true));
    EXPECT_FALSE(rs.value("Datefinished").isValid());
    EXPECT_TRUE(rs.isNull("Datefinished"));
    EXPECT_EQ(rs.storedValue(rs.fieldIndex("PayRate")), QVariant(qint64(251000)));

    Recordset other(m_wage, "PayInterval");
    EXPECT_EQ(other.field("PaysPerYear").type, JetType::Double);
    EXPECT_EQ(other.field("NumberOfDays").type, JetType::Short);
    Recordset notes(m_farm, "SELECT notes, AddressID * 2 AS Twice FROM Addresses");
    EXPECT_EQ(notes.field("notes").type, JetType::Memo);
    EXPECT_EQ(notes.field("Twice").type, JetType::Long);
    EXPECT_TRUE(notes.field("Twice").isExpression());
}

TEST_F(RecordsetTest, MovesBetweenBeginningAndEnd)
{
    Recordset none(m_farm, "SELECT * FROM Addresses WHERE AddressID = 0");
    EXPECT_TRUE(none.eof());
    EXPECT_TRUE(none.bof());
    EXPECT_EQ(none.recordCount(), 0);
    EXPECT_EQ(errorOf([&] { none.value(0); }), CvError::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { none.moveNext(); }), CvError::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { none.moveFirst(); }), CvError::NoCurrentRecord);

    Recordset rs(m_farm, "SELECT AddressID FROM Addresses WHERE AddressID < 40 ORDER BY AddressID");
    EXPECT_EQ(rs.recordCount(), 3);
    EXPECT_FALSE(rs.bof());
    EXPECT_EQ(rs.value(0).toInt(), 37);
    rs.movePrevious();
    EXPECT_TRUE(rs.bof());
    EXPECT_FALSE(rs.eof());
    EXPECT_EQ(errorOf([&] { rs.movePrevious(); }), CvError::NoCurrentRecord);
    rs.moveLast();
    EXPECT_EQ(rs.value(0).toInt(), 39);
    rs.moveNext();
    EXPECT_TRUE(rs.eof());
    EXPECT_EQ(errorOf([&] { rs.moveNext(); }), CvError::NoCurrentRecord);
    rs.movePrevious();
    EXPECT_EQ(rs.value(0).toInt(), 39);
    rs.moveFirst();
    EXPECT_EQ(rs.value(0).toInt(), 37);
}

TEST_F(RecordsetTest, FindsBySimpleCriteria)
{
    Recordset rs(m_farm, "select * from Addresses order by busname");
    EXPECT_TRUE(rs.findFirst("AddressID = 37"));
    EXPECT_FALSE(rs.noMatch());
    EXPECT_EQ(rs.value("BusName").toString(), "Brown Farms");
    // No match: the position stays.
    EXPECT_FALSE(rs.findFirst("AddressID = 999"));
    EXPECT_TRUE(rs.noMatch());
    EXPECT_EQ(rs.value("AddressID").toInt(), 37);

    EXPECT_TRUE(rs.findFirst("BusName = 'BAILEY, SAM'"));
    EXPECT_EQ(rs.value("AddressID").toInt(), 38);
    EXPECT_TRUE(rs.findFirst("[BusName] Like \"*Ltd\" AND WageFlag = False"));
    EXPECT_EQ(rs.value("AddressID").toInt(), 39);
    EXPECT_TRUE(rs.findNext("BusName Like \"*Ltd\""));
    EXPECT_EQ(rs.value("AddressID").toInt(), 41);
    EXPECT_FALSE(rs.findNext("BusName Like \"*Ltd\""));
    EXPECT_TRUE(rs.findFirst("BusName Is Null"));
    EXPECT_EQ(rs.value("AddressID").toInt(), 40);
    EXPECT_TRUE(rs.findFirst("HeadingAccount >= 401001"));
    EXPECT_EQ(rs.value("AddressID").toInt(), 37);
    EXPECT_EQ(errorOf([&] { rs.findFirst("AddressID == 37"); }), CvError::ExpressionError);

    // Keys found after rows are added and deleted.
    rs.addNew();
    rs.setValue("BusName", "Zed");
    rs.update();
    const int added = int(rs.lastInsertId());
    EXPECT_TRUE(rs.findFirst(QString("AddressID = %1").arg(added)));
    rs.remove();
    EXPECT_FALSE(rs.findFirst(QString("AddressID = %1").arg(added)));
}

TEST_F(RecordsetTest, AddsRowsKnowingTheirKeyFromTheStart)
{
    Recordset rs(m_wage, "Select Distinctrow * from Employees where AddressID = 50");
    ASSERT_TRUE(rs.eof());
    rs.addNew();
    const int reserved = rs.value("EmployeeID").toInt();
    EXPECT_EQ(reserved, 8);
    rs.setValue("AddressID", 50);
    rs.update();
    EXPECT_EQ(rs.lastInsertId(), reserved);
    EXPECT_TRUE(rs.eof()); // the position stays where it was before the add
    rs.setBookmark(rs.lastModified());
    EXPECT_EQ(rs.value("EmployeeID").toInt(), reserved);
    EXPECT_EQ(rs.value("KiwiSaverEnrolled"), QVariant(false)); // read back: the default
    EXPECT_EQ(errorOf([&] { rs.setValue("EmployeeID", 3); }), CvError::UpdateWithoutEdit);
    rs.edit();
    EXPECT_EQ(errorOf([&] { rs.setValue("EmployeeID", 3); }), CvError::FieldNotUpdatable);
}

TEST_F(RecordsetTest, EditsAndDeletesTheRowTheyCameFrom)
{
    // Banks has a key of its own, not SQLite's rowid.
    Recordset banks(m_farm, "SELECT Name FROM Banks WHERE AccountType = 1 ORDER BY BanksID DESC");
    banks.edit();
    banks.setValue("Name", "Batch payments (old)");
    banks.update();
    EXPECT_EQ(Recordset(m_farm, "SELECT Name FROM Banks WHERE BanksID = 996").value(0).toString(),
              "Batch payments (old)");
    EXPECT_EQ(Recordset(m_farm, "SELECT Name FROM Banks WHERE BanksID = 995").value(0).toString(),
              "Direct credit");

    Recordset rs(m_farm, "SELECT AddressID, BusName FROM Addresses ORDER BY AddressID");
    rs.moveNext(); // 38
    rs.remove();
    EXPECT_EQ(rs.recordCount(), 6);
    EXPECT_EQ(errorOf([&] { rs.value(0); }), CvError::RecordDeleted);
    rs.moveNext();
    EXPECT_EQ(rs.value(0).toInt(), 39);
    rs.movePrevious();
    EXPECT_EQ(rs.value(0).toInt(), 37);
    EXPECT_TRUE(Recordset(m_farm, "SELECT * FROM Addresses WHERE AddressID = 38").eof());
    EXPECT_EQ(Recordset(m_farm, "Addresses").recordCount(), 6);

    Recordset snapshot(m_farm, "Addresses", Recordset::Snapshot);
    EXPECT_EQ(errorOf([&] { snapshot.edit(); }), CvError::NotUpdatable);
    Recordset grouped(m_farm, "SELECT WageFlag, Count(*) FROM Addresses GROUP BY WageFlag");
    EXPECT_EQ(errorOf([&] { grouped.addNew(); }), CvError::NotUpdatable);
}

TEST_F(RecordsetTest, WritesEnforceTheFieldTypeAndLeaveRejectedFieldsUnchanged)
{
    Recordset rs(m_wage, "Select Distinctrow * from Employees where AddressID = 37");
    rs.edit();
    for (const char *field : {"PayRate", "EmployeeTypeID", "Birthdate", "KiwiSaverEnrolled"}) {
        SCOPED_TRACE(field);
        EXPECT_EQ(errorOf([&] { rs.setValue(field, "abc"); }), CvError::TypeMismatch);
    }
    EXPECT_EQ(errorOf([&] { rs.setValue("TaxCode", "ME SL 12345"); }), CvError::FieldTooSmall);
    EXPECT_EQ(errorOf([&] { rs.setValue("EmployeeTypeID", 3000000000LL); }), CvError::Overflow);
    EXPECT_EQ(rs.value("PayRate").value<Money>(), Money::fromScaled(251000));
    EXPECT_EQ(rs.value("TaxCode").toString(), "M");

    rs.setValue("Yearlytotal", "$52,000.50");
    rs.setValue("TaxTypeID", " 2 ");
    rs.setValue("PayIntervalID", 1.5); // halves go to even, as Jet rounds
    rs.setValue("Datehired", "1/04/2010");
    rs.setValue("Datefinished", QDate(2011, 6, 30));
    rs.setValue("ExcludeIR348", true);
    rs.setValue("IRDnumber", "");
    rs.setValue("TaxCode", QVariant());
    rs.update();

    Recordset check(m_wage, "SELECT * FROM Employees WHERE EmployeeID = 5");
    auto stored = [&](const char *f) { return check.storedValue(check.fieldIndex(f)); };
    EXPECT_EQ(stored("Yearlytotal"), QVariant(qint64(520005000)));
    EXPECT_EQ(stored("PayRate"), QVariant(qint64(251000)));
    EXPECT_EQ(stored("TaxTypeID"), QVariant(qint64(2)));
    EXPECT_EQ(stored("PayIntervalID"), QVariant(qint64(2)));
    EXPECT_EQ(stored("Datehired").toDouble(), 40269.0);
    EXPECT_EQ(check.value("Datefinished").toDateTime().date(), QDate(2011, 6, 30));
    EXPECT_EQ(stored("ExcludeIR348"), QVariant(qint64(-1)));
    EXPECT_EQ(stored("IRDnumber"), QVariant(QString("")));
    EXPECT_TRUE(check.isNull("TaxCode"));
    EXPECT_FALSE(check.isNull("IRDnumber")); // an empty text is not Null
}

TEST_F(RecordsetTest, OutlivingItsDatabaseFailsCleanly)
{
    auto db = std::make_unique<Database>(m_suite.farmPath());
    Recordset rs(*db, "Addresses");
    db.reset();
    EXPECT_EQ(rs.value("AddressID").toInt(), 37); // what was read stays readable
    EXPECT_EQ(errorOf([&] { rs.edit(); }), CvError::ObjectInvalid);
}
