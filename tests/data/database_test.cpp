#include "fixture.h"
#include "support/qtprinters.h"

#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

namespace {

int openError(const QString &path, QString *description = nullptr)
{
    try {
        Database db(path);
    } catch (const CvError &e) {
        if (description)
            *description = e.description();
        return e.number();
    }
    return 0;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

int count(Database &db, const QString &jet)
{
    return Recordset(db, jet, Recordset::Snapshot).recordCount();
}

} // namespace

TEST(DatabaseTest, RefusesWhatIsNotAWritableDataFileAndCreatesNothing)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath("Farm32.mdb");
    QString why;
    EXPECT_EQ(openError(missing, &why), CvError::CannotOpenDatabase);
    EXPECT_TRUE(why.contains(missing)) << why.toStdString();
    EXPECT_EQ(openError(dir.filePath("no folder/Wage32.mdb")), CvError::CannotOpenDatabase);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());

    const QString text = dir.filePath("text/Farm32.mdb");
    QDir().mkpath(dir.filePath("text"));
    writeFile(text, "This is not a database, just a file named like one.\n");
    EXPECT_EQ(openError(text, &why), CvError::UnrecognizedFormat);
    EXPECT_TRUE(why.contains(text));

    const QString empty = dir.filePath("empty/Farm32.mdb");
    QDir().mkpath(dir.filePath("empty"));
    writeFile(empty, QByteArray());
    EXPECT_EQ(openError(empty), CvError::UnrecognizedFormat);
    EXPECT_EQ(QFileInfo(empty).size(), 0);
    EXPECT_EQ(QDir(dir.filePath("empty")).entryList(QDir::Files), QStringList({"Farm32.mdb"}));
}

TEST(DatabaseTest, RefusesAReadOnlyFileEvenForRoot)
{
    TempSuite suite;
    const QString path = suite.farmPath();
    ASSERT_TRUE(
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    QString why;
    EXPECT_EQ(openError(path, &why), CvError::FileReadOnly);
    EXPECT_TRUE(why.contains("read-only")) << why.toStdString();
    EXPECT_EQ(QDir(QFileInfo(path).absolutePath()).entryList(QDir::Files),
              QStringList({"Farm32.mdb", "Wage32.mdb"}));

    // SQLite writes its journal beside the file, so the folder must be writable too.
    const QString folder = QFileInfo(suite.wagePath()).absolutePath();
    const auto folderPermissions = QFile::permissions(folder);
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(openError(suite.wagePath(), &why), CvError::FileReadOnly);
    EXPECT_TRUE(why.contains(folder)) << why.toStdString();
    QFile::setPermissions(folder, folderPermissions);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

TEST(DatabaseTest, ActionStatementsReportRowsAndFailWithTheDatabaseMessage)
{
    TempSuite suite;
    Fixture::fill(suite);
    Database db(suite.farmPath());
    EXPECT_EQ(db.execute("UPDATE Addresses SET Addresses.BusFax = \"x\" WHERE WageFlag = True"), 3);
    try {
        db.execute("UPDATE Addresses SET Nonsense = 1");
        FAIL() << "no error";
    } catch (const CvError &e) {
        EXPECT_EQ(e.number(), CvError::SqlError);
        EXPECT_TRUE(e.description().contains("Nonsense")) << e.description().toStdString();
    }
    db.close();
    EXPECT_THROW(db.execute("DELETE * FROM Banks"), CvError);
}

TEST(DatabaseTest, AFailureInsideATransactionLeavesAutocommitSoLaterWritesPersist)
{
    TempSuite suite;
    Fixture::fill(suite);
    {
        Database db(suite.farmPath());
        db.beginTransaction();
        db.execute("INSERT INTO Banks VALUES (10, \"Lost\", 0)");
        // A duplicate key fails without SQLite ending the transaction by itself.
        EXPECT_THROW(db.execute("INSERT INTO Banks VALUES (1, \"Duplicate\", 0)"), CvError);
        EXPECT_FALSE(db.inTransaction());
        EXPECT_THROW(db.commit(), CvError);
        db.execute("INSERT INTO Banks VALUES (11, \"Kept\", 0)");
    }
    Database reader(suite.farmPath());
    EXPECT_EQ(count(reader, "SELECT * FROM Banks WHERE BanksID = 11"), 1);
    EXPECT_EQ(count(reader, "SELECT * FROM Banks WHERE BanksID = 10"), 0);
}

TEST(DatabaseTest, ChildRowsAreReplacedInOneTransactionOrNotAtAll)
{
    TempSuite suite;
    Fixture::fill(suite);
    Database db(suite.wagePath());
    const QString rows = "SELECT DeductID FROM EmployeeDeductions WHERE EmployeeID = 5 AND "
                         "TaxName Is Null ORDER BY DeductID";
    auto replace = [&](const QVariant &amount) {
        db.transaction([&] {
            db.execute("Delete * FROM EmployeeDeductions Where EmployeeID=5 AND TaxName is null");
            Recordset rs(db, "EmployeeDeductions");
            rs.addNew();
            rs.setValue("EmployeeID", 5);
            rs.setValue("DeductID", 5);
            rs.update();
            rs.addNew();
            rs.setValue("EmployeeID", 5);
            rs.setValue("DeductID", 3);
            rs.setValue("FixedAmount", amount); // "abc" throws here, midway
            rs.update();
        });
    };
    EXPECT_THROW(replace("abc"), CvError);
    EXPECT_FALSE(db.inTransaction());
    EXPECT_EQ(count(db, rows), 2);
    EXPECT_EQ(Recordset(db, rows).value(0).toInt(), 3);

    replace("7.5");
    EXPECT_EQ(count(db, rows), 2);
    EXPECT_EQ(Recordset(db, rows).value(0).toInt(), 3);
    Recordset last(db, "SELECT FixedAmount FROM EmployeeDeductions WHERE DeductID = 3 AND "
                       "EmployeeID = 5");
    EXPECT_EQ(last.value(0).value<Money>(), Money::fromScaled(75000));
}

TEST(DatabaseTest, NestedTransactionsRollBackOnlyTheirOwnPart)
{
    TempSuite suite;
    Database db(suite.farmPath());
    db.transaction([&] {
        db.execute("INSERT INTO Banks VALUES (1, \"Outer\", 0)");
        EXPECT_THROW(db.transaction([&] {
            db.execute("INSERT INTO Banks VALUES (2, \"Inner\", 0)");
            throw CvError(CvError::InvalidProcedureCall, "test", "inner work failed");
        }),
                     CvError);
        EXPECT_TRUE(db.inTransaction());
    });
    EXPECT_EQ(count(db, "Banks"), 1);
    EXPECT_EQ(Recordset(db, "Banks").value("Name").toString(), "Outer");
}

TEST(DatabaseTest, AnotherWriterMakesUsWaitThenFailCleanly)
{
    TempSuite suite;
    Fixture::fill(suite);
    Database holder(suite.farmPath());
    Database waiter(suite.farmPath(), 300);
    holder.beginTransaction();
    holder.execute("INSERT INTO Banks VALUES (20, \"Holder\", 0)");

    QElapsedTimer timer;
    timer.start();
    try {
        waiter.execute("INSERT INTO Banks VALUES (21, \"Waiter\", 0)");
        FAIL() << "the write went through a held lock";
    } catch (const CvError &e) {
        EXPECT_EQ(e.number(), CvError::DatabaseLocked);
        EXPECT_TRUE(e.description().contains("locked")) << e.description().toStdString();
    }
    EXPECT_GE(timer.elapsed(), 250);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_THROW(waiter.beginTransaction(), CvError);
    EXPECT_FALSE(waiter.inTransaction());
    // Readers still see the last committed rows meanwhile.
    EXPECT_EQ(count(waiter, "SELECT * FROM Banks WHERE BanksID BETWEEN 20 AND 30"), 0);

    holder.commit();
    waiter.execute("INSERT INTO Banks VALUES (21, \"Waiter\", 0)");
    EXPECT_EQ(count(holder, "SELECT * FROM Banks WHERE BanksID BETWEEN 20 AND 30"), 2);
}
