#include "fixture.h"
#include "support/errorof.h"
#include "support/qtprinters.h"
#include "support/tempserver.h"

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
    TempSuite suite;
    if (suite.onServer())
        GTEST_SKIP() << "data files only";
    QTemporaryDir dir;
    QDir().mkpath(dir.filePath("text"));
    QDir().mkpath(dir.filePath("empty"));
    writeFile(dir.filePath("text/Farm32.mdb"), "This is not a database, just a named file.\n");
    writeFile(dir.filePath("empty/Farm32.mdb"), QByteArray());
    const QString readOnly = suite.farmPath();
    ASSERT_TRUE(QFile::setPermissions(readOnly, QFile::ReadOwner | QFile::ReadGroup));
    // SQLite writes its journal beside the file, so the folder must be writable too.
    const QString folder = QFileInfo(suite.wagePath()).absolutePath();
    const auto folderPermissions = QFile::permissions(folder);
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));

    const struct
    {
        QString path, named; // the description names the file or its folder
        int error;
    } cases[] = {
        {dir.filePath("Farm32.mdb"), dir.filePath("Farm32.mdb"), CvError::CannotOpenDatabase},
        {dir.filePath("no folder/Wage32.mdb"), "no folder", CvError::CannotOpenDatabase},
        {dir.filePath("text/Farm32.mdb"), "text/Farm32.mdb", CvError::UnrecognizedFormat},
        {dir.filePath("empty/Farm32.mdb"), "empty", CvError::UnrecognizedFormat},
        {readOnly, "read-only", CvError::FileReadOnly}, // even for root
        {suite.wagePath(), folder, CvError::FileReadOnly}};
    for (const auto &c : cases) {
        QString why;
        EXPECT_EQ(openError(c.path, &why), c.error) << c.path.toStdString();
        EXPECT_TRUE(why.contains(c.named)) << why.toStdString();
    }
    QFile::setPermissions(folder, folderPermissions);
    QFile::setPermissions(readOnly, QFile::ReadOwner | QFile::WriteOwner);
    // Nothing was made: no file, no journal, and the empty file stays empty.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
              QStringList({"empty", "text"}));
    EXPECT_EQ(QFileInfo(dir.filePath("empty/Farm32.mdb")).size(), 0);
    EXPECT_EQ(QDir(QFileInfo(readOnly).absolutePath()).entryList(QDir::Files),
              QStringList({"Farm32.mdb", "Wage32.mdb"}));
}

// Each gets one message naming what to fix, and nothing is made on the server.
TEST(DatabaseTest, ServerSettingsThatCannotWorkAreNamed)
{
    const QString server = testServer();
    if (server.isEmpty())
        GTEST_SKIP() << "server only";
    const struct
    {
        QString connection, says;
    } cases[] = {
        {"host=/nonexistent user=corvane dbname=corvane", "could not be reached"},
        {server + " dbname=no_such_books", "does not exist on the server"},
        {"host=" + server.section(' ', 0, 0).mid(5) + " user=no_such_clerk dbname=corvane",
         "refused the login"},
        {server + " dbname=postgres", "holds no books"},
        {server + " dbname=corvane password=secret", "holds a password"},
        {"postgresql://[bad", "cannot be read"},
    };
    for (const auto &c : cases) {
        QString why;
        try {
            Database db(Database::Server{c.connection});
        } catch (const CvError &e) {
            EXPECT_EQ(e.number(), CvError::CannotOpenDatabase);
            why = e.description();
        }
        EXPECT_TRUE(why.contains(c.says))
            << c.connection.toStdString() << ": " << why.toStdString();
    }
    Database admin(Database::Server{server + " dbname=postgres", true});
    EXPECT_EQ(count(admin, "SELECT * FROM pg_namespace WHERE nspname IN (\"farm\", \"wage\")"), 0);
}

TEST(DatabaseTest, ActionStatementsReportRowsAndFailOnceClosed)
{
    TempSuite suite;
    Fixture::fill(suite);
    const auto books = suite.openBooks();
    Database &db = *books;
    EXPECT_EQ(db.execute("UPDATE Addresses SET Addresses.BusFax = \"x\" WHERE WageFlag = True"), 3);
    EXPECT_THROW(db.execute("UPDATE Addresses SET Nonsense = 1"), CvError);
    db.close();
    EXPECT_THROW(db.execute("DELETE * FROM Banks"), CvError);
}

// A failed statement ends the transaction at once, so that later writes are not lost
// in one left open; a nested transaction() undoes only its own part.
TEST(DatabaseTest, TransactionsKeepAllOrNothing)
{
    TempSuite suite;
    Fixture::fill(suite);
    const auto books = suite.openBooks();
    Database &db = *books;
    db.beginTransaction();
    db.execute("INSERT INTO Banks VALUES (10, \"Lost\", 0)");
    // A duplicate key fails without SQLite ending the transaction by itself.
    EXPECT_THROW(db.execute("INSERT INTO Banks VALUES (1, \"Duplicate\", 0)"), CvError);
    EXPECT_FALSE(db.inTransaction());
    EXPECT_THROW(db.commit(), CvError);
    // The same when it is the first statement of a nested transaction (on a server
    // sent together with the BEGIN and SAVEPOINT before it).
    db.beginTransaction();
    db.beginTransaction();
    EXPECT_THROW(db.execute("INSERT INTO Banks VALUES (1, \"Duplicate\", 0)"), CvError);
    EXPECT_FALSE(db.inTransaction());
    db.execute("INSERT INTO Banks VALUES (11, \"Kept\", 0)");
    db.transaction([&] {
        db.execute("INSERT INTO Banks VALUES (12, \"Outer\", 0)");
        EXPECT_THROW(db.transaction([&] {
            db.execute("INSERT INTO Banks VALUES (13, \"Inner\", 0)");
            throw CvError(CvError::InvalidProcedureCall, "test", "inner work failed");
        }),
                     CvError);
        EXPECT_TRUE(db.inTransaction());
    });
    const auto other = suite.openBooks();
    Database &reader = *other;
    EXPECT_EQ(count(reader, "SELECT * FROM Banks WHERE BanksID BETWEEN 10 AND 13"), 2);
    EXPECT_EQ(count(reader, "SELECT * FROM Banks WHERE BanksID IN (11, 12)"), 2);
}

TEST(DatabaseTest, AnotherWriterMakesUsWaitThenFailCleanly)
{
    TempSuite suite;
    Fixture::fill(suite);
    const auto holder = suite.openBooks(), waiter = suite.openBooks();
    waiter->setBusyTimeout(300);
    // The same row: a file is locked whole, a server locks the rows written.
    holder->beginTransaction();
    holder->execute("UPDATE Banks SET Name = \"Holder\" WHERE BanksID = 1");

    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(
        errorOf([&] { waiter->execute("UPDATE Banks SET Name = \"Waiter\" WHERE BanksID = 1"); }),
        CvError::DatabaseLocked);
    EXPECT_GE(timer.elapsed(), 250);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_FALSE(waiter->inTransaction());
    holder->commit();
    EXPECT_EQ(waiter->execute("UPDATE Banks SET Name = \"Waiter\" WHERE BanksID = 1"), 1);
}

// A server keeps statements it has seen twice prepared; a table altered under them
// (an upgrade while clerks work) must not leave a statement failing.
TEST(DatabaseTest, KeptStatementsFollowATableAlteredUnderThem)
{
    TempSuite suite;
    if (!suite.onServer())
        GTEST_SKIP() << "server only";
    Fixture::fill(suite);
    const auto books = suite.openBooks();
    Database &db = *books;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Recordset(db, "SELECT * FROM Banks WHERE BanksID = 1", Recordset::Snapshot)
                      .fieldCount(),
                  3);
    TempServer::run(suite.serverConnection(), {"ALTER TABLE farm.banks ADD COLUMN extra integer"});
    EXPECT_EQ(
        Recordset(db, "SELECT * FROM Banks WHERE BanksID = 1", Recordset::Snapshot).fieldCount(),
        4);
    // Inside a save it cannot be run again: the save is rolled back whole, with a
    // message saying to try again, and the next try works.
    EXPECT_EQ(
        Recordset(db, "SELECT * FROM Banks WHERE BanksID = 1", Recordset::Snapshot).fieldCount(),
        4); // kept again
    TempServer::run(suite.serverConnection(), {"ALTER TABLE farm.banks DROP COLUMN extra"});
    db.beginTransaction();
    db.execute("INSERT INTO Banks VALUES (20, \"Lost\", 0)");
    QString why;
    EXPECT_EQ(
        errorOf(
            [&] { Recordset(db, "SELECT * FROM Banks WHERE BanksID = 1", Recordset::Snapshot); },
            &why),
        CvError::SqlError);
    EXPECT_TRUE(why.contains("try again")) << why.toStdString();
    EXPECT_FALSE(db.inTransaction());
    EXPECT_EQ(count(db, "SELECT * FROM Banks WHERE BanksID = 20"), 0);
    EXPECT_EQ(
        Recordset(db, "SELECT * FROM Banks WHERE BanksID = 1", Recordset::Snapshot).fieldCount(),
        3);
}
