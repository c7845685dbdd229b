#include "fixture.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

#include "core/cverror.h"
#include "data/database.h"
#include "data/jetsql.h"
#include "data/money.h"
#include "data/recordset.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <tuple>

namespace {

class RecordsetTest : public ::testing::Test
{
protected:
    void SetUp() override { Fixture::fill(m_suite); }

    TempSuite m_suite;
    // Both data sets on one connection, as the module opens them.
    std::unique_ptr<Database> m_books{m_suite.openBooks()};
    Database &m_farm{*m_books};
    Database &m_wage{*m_books};
};

} // namespace

TEST_F(RecordsetTest, FieldsCarryTheirJetTypesByNameOrPosition)
{
    Recordset rs(m_wage, "Select Distinctrow * from Employees where AddressID = 37");
    Recordset pay(m_wage, "PayInterval");
    Recordset notes(m_farm, "SELECT notes, AddressID * 2 AS Twice FROM Addresses");
    const struct
    {
        Recordset &rs;
        const char *name;
        JetType type;
    } types[] = {{rs, "employeeid", JetType::AutoNumber}, {rs, "PayRate", JetType::Currency},
                 {rs, "Birthdate", JetType::DateTime},    {rs, "KiwiSaverEnrolled", JetType::YesNo},
                 {pay, "NumberOfDays", JetType::Short},   {notes, "notes", JetType::Memo},
                 {notes, "Twice", JetType::Long}};
    for (const auto &t : types)
        EXPECT_EQ(t.rs.field(t.name).type, t.type) << t.name;
    EXPECT_EQ(rs.field("TaxCode").size, 10);
    EXPECT_TRUE(notes.field("Twice").isExpression());
    EXPECT_EQ(rs.fieldIndex("Employees.PayRate"), rs.fieldIndex("payrate"));
    EXPECT_EQ(errorOf([&] { rs.value("NoSuchColumn"); }), CvError::ItemNotFound);
    EXPECT_EQ(errorOf([&] { rs.value(99); }), CvError::SubscriptOutOfRange);

    // Values by type: Money, the date with its time, booleans, Null.
    EXPECT_EQ(rs.value("PayRate").value<Money>(), Money::fromScaled(251000));
    EXPECT_EQ(rs.value("Birthdate").toDateTime(), QDateTime(QDate(1968, 6, 11), QTime(12, 0)));
    EXPECT_EQ(rs.value("KiwiSaverEnrolled"), QVariant(true));
    EXPECT_FALSE(rs.value("Datefinished").isValid());
    EXPECT_EQ(rs.storedValue(rs.fieldIndex("PayRate")), QVariant(qint64(251000)));
}

TEST_F(RecordsetTest, MovesBetweenBeginningAndEnd)
{
    Recordset none(m_farm, "SELECT * FROM Addresses WHERE AddressID = 0");
    EXPECT_TRUE(none.eof() && none.bof());
    EXPECT_EQ(none.recordCount(), 0);
    EXPECT_EQ(errorOf([&] { none.moveFirst(); }), CvError::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { none.value(0); }), CvError::NoCurrentRecord);

    // Each step, the row it reaches (0: before the first, 1: past the last), and
    // whether it fails (staying there).
    Recordset rs(m_farm, "SELECT AddressID FROM Addresses WHERE AddressID < 40 ORDER BY AddressID");
    EXPECT_EQ(rs.recordCount(), 3);
    using R = Recordset;
    const std::tuple<void (R::*)(), int, bool> steps[] = {
        {&R::moveNext, 38, false},   {&R::movePrevious, 37, false}, {&R::movePrevious, 0, false},
        {&R::movePrevious, 0, true}, {&R::moveLast, 39, false},     {&R::moveNext, 1, false},
        {&R::moveNext, 1, true},     {&R::movePrevious, 39, false}, {&R::moveFirst, 37, false}};
    for (const auto &[step, row, fails] : steps) {
        EXPECT_EQ(errorOf([&] { (rs.*step)(); }), fails ? CvError::NoCurrentRecord : 0);
        EXPECT_EQ(rs.bof(), row == 0);
        EXPECT_EQ(rs.eof(), row == 1);
        if (row > 1) {
            EXPECT_EQ(rs.value(0).toInt(), row);
        }
    }
}

TEST_F(RecordsetTest, FindsBySimpleCriteria)
{
    // Addresses in name order: 40 (Null), 42, 43, 39, 38, 37, 41. Found: the field's value
    // at the first match; invalid: none; error: the error raised.
    const QString byName = "select * from Addresses order by busname";
    const struct
    {
        QString source;
        const char *criterion, *field;
        QVariant found;
        int error = 0;
    } cases[] = {
        {byName, "AddressID = 37", "BusName", "Brown Farms"},
        {byName, "BusName = 'BAILEY, SAM'", "AddressID", 38},
        {byName, "BusName Is Null", "AddressID", 40},
        {byName, "AddressID > 40.5 AND AddressID <> 42", "AddressID", 43},
        {byName, "AddressID = '38'", "AddressID", 38},
        {byName, "WageFlag = True AND Addresses.BusName <> \"bailey, sam\"", "AddressID", 37},
        {"Transactions", "Date = #4/2/2010#", "Amount", "-100000"},
        {"Transactions", "Amount = 25.1", "Date", 40269},
        {byName, "AddressID = 999", "AddressID", {}},
        {byName, "AddressID == 37", "", {}, CvError::ExpressionError},
        {byName, "BusName Like '[a'", "", {}, CvError::ExpressionError},
        {byName, "Nonsense = 1", "", {}, CvError::ItemNotFound}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.criterion);
        Recordset rs(m_farm, c.source);
        rs.moveLast();
        const QVariant before = rs.storedValue(0);
        bool found = false;
        EXPECT_EQ(errorOf([&] { found = rs.findFirst(c.criterion); }), c.error);
        EXPECT_EQ(found, c.found.isValid());
        EXPECT_EQ(rs.noMatch(), !c.found.isValid() && !c.error);
        EXPECT_EQ(found ? rs.storedValue(rs.fieldIndex(c.field)).toString() : rs.storedValue(0),
                  found ? c.found.toString() : before); // else the position stays
    }

    // Keys are found after adds and deletes.
    Recordset rs(m_farm, byName);
    rs.addNew();
    rs.setValue("BusName", "Zed");
    rs.update();
    const QString added = QString("AddressID = %1").arg(rs.lastInsertId());
    EXPECT_TRUE(rs.findFirst(added));
    rs.remove();
    EXPECT_FALSE(rs.findFirst(added));
}

// Jet's LIKE runs in FindFirst's criteria and in statements (SQLite's LIKE or the
// registered MATCH, the pattern written or bound): every path gives the same rows.
TEST_F(RecordsetTest, LikeAnswersAlikeInCriteriaAndStatements)
{
    m_farm.execute("INSERT INTO Addresses (AddressID, BusName) VALUES (44, ?), (45, ?), (46, ?), "
                   "(47, ?)",
                   {u"Ōtorohanga Motors"_qs, u"ōhope Beach"_qs, u"\u212Aelvin"_qs, u"😀 Cafe"_qs});
    using Ids = QList<int>;
    const struct
    {
        QString pattern;
        Ids ids;
    } cases[] = {{"b*", {37, 38}},
                 {"100% W*", {42}}, // % and _ are no wildcards in Jet
                 {"*[_]*", {42}},
                 {"#*", {42, 43}},
                 {"[!a-c]*", {41, 42, 43, 44, 45, 46, 47}},
                 {u"Ō*"_qs, {44, 45}}, // case folds beyond ASCII...
                 {"o*", {41}},         // ...but a macron is no base letter
                 {"k*", {}},           // nor the Kelvin sign a K
                 {"? Cafe", {47}},     // one character, outside the 16-bit plane
                 {"O'Brien \"Big\"*", {41}}};
    const Ids named{37, 38, 39, 41, 42, 43, 44, 45, 46, 47};
    auto ids = [](Recordset &&rs) {
        Ids out;
        for (; !rs.eof(); rs.moveNext())
            out << rs.value(0).toInt();
        return out;
    };
    for (const auto &c : cases) {
        for (const bool like : {true, false}) {
            const QString op = like ? " LIKE " : " NOT LIKE ";
            const QString criterion = "BusName" + op + JetSql::quote(c.pattern);
            SCOPED_TRACE(criterion.toStdString());
            Ids expected, found;
            for (int id : named) {
                if (c.ids.contains(id) == like)
                    expected << id;
            }
            Recordset all(m_farm, "SELECT AddressID, BusName FROM Addresses ORDER BY AddressID");
            for (bool f = all.findFirst(criterion); f; f = all.findNext(criterion))
                found << all.value(0).toInt();
            EXPECT_EQ(found, expected);
            const QString select = "SELECT AddressID FROM Addresses WHERE ";
            EXPECT_EQ(ids(Recordset(m_farm, select + criterion + " ORDER BY 1")), expected);
            EXPECT_EQ(ids(Recordset(m_farm, select + "BusName" + op + "? ORDER BY 1", {c.pattern})),
                      expected);
        }
    }
}

TEST_F(RecordsetTest, BindsValuesToMarkers)
{
    Recordset rs(m_wage,
                 "SELECT EmployeeID, PayRate FROM Employees WHERE AddressID = ? AND "
                 "KiwiSaverEnrolled = ? AND PayRate = ? AND Birthdate < ?",
                 {37, true, QVariant::fromValue(Money::fromScaled(251000)), QDate(1970, 1, 1)});
    EXPECT_EQ(rs.recordCount(), 1);
    EXPECT_EQ(errorOf([&] { Recordset(m_farm, "SELECT * FROM Addresses WHERE AddressID = ?"); }),
              CvError::SqlError);
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
    rs.setValue("PayIntervalID", 1.5); // halves go to even, as Jet rounds
    rs.setValue("Datehired", "1/04/2010");
    rs.setValue("ExcludeIR348", true);
    rs.setValue("IRDnumber", "");
    rs.setValue("TaxCode", QVariant());
    rs.update();

    Recordset check(m_wage, "SELECT * FROM Employees WHERE EmployeeID = 5");
    auto stored = [&](const char *f) { return check.storedValue(check.fieldIndex(f)); };
    EXPECT_EQ(stored("Yearlytotal"), QVariant(qint64(520005000)));
    EXPECT_EQ(stored("PayRate"), QVariant(qint64(251000)));
    EXPECT_EQ(stored("PayIntervalID"), QVariant(qint64(2)));
    EXPECT_EQ(stored("Datehired").toDouble(), 40269.0);
    EXPECT_EQ(stored("ExcludeIR348"), QVariant(qint64(-1)));
    EXPECT_TRUE(check.isNull("TaxCode"));
    EXPECT_FALSE(check.isNull("IRDnumber")); // an empty text is not Null
}

TEST_F(RecordsetTest, OutlivingItsDatabaseFailsCleanly)
{
    auto db = m_suite.openBooks();
    Recordset rs(*db, "Addresses");
    db.reset();
    EXPECT_EQ(rs.value("AddressID").toInt(), 37); // what was read stays readable
    EXPECT_EQ(errorOf([&] { rs.edit(); }), CvError::ObjectInvalid);
}
