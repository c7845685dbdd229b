// Books moved onto a PostgreSQL server and back (cvsuite to-server and from-server); run
// against the test server only.
#include "bookquery.h"
#include "core/cverror.h"
#include "data/database.h"
#include "data/recordset.h"
#include "serverbooks.h"
#include "suitefiles.h"
#include "support/errorof.h"
#include "support/tempserver.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTemporaryDir>

// The demo books go onto an empty server database and come back row for row, each value
// kept to its type; the copy refuses books already there, and a row added on the server
// takes the next key.
TEST(ServerBooks, ASuiteGoesOntoTheServerAndComesBackRowForRow)
{
    const QString server = testServer();
    if (server.isEmpty())
        GTEST_SKIP() << "server only";
    const QString name = QString("cvcopy_%1").arg(QCoreApplication::applicationPid());
    TempServer::admin(server + " dbname=postgres", "CREATE DATABASE " + name);
    const QString books = server + " dbname=" + name;

    QTemporaryDir demo, back;
    SuiteFiles::demoSuite(demo.path());
    QStringList tables;
    qint64 rows = 0;
    const ServerBooks::Progress progress = [&](const QString &table, qint64 done, qint64 total) {
        if (done == total)
            tables << table, rows += total;
    };
    const ServerBooks::Counts there =
        ServerBooks::copyToServer(demo.path(), books, false, progress);
    ASSERT_EQ(there, SuiteFiles::rowCounts(SuiteFiles::farmPath(demo.path())) +
                         SuiteFiles::rowCounts(SuiteFiles::wagePath(demo.path())));
    EXPECT_EQ(tables.size(), there.size());
    EXPECT_GT(rows, 100);
    EXPECT_EQ(errorOf([&] { ServerBooks::copyToServer(demo.path(), books, false); }),
              CvError::PermissionDenied);

    EXPECT_EQ(ServerBooks::copyFromServer(books, back.path(), false), there);
    for (const auto path : {&SuiteFiles::farmPath, &SuiteFiles::wagePath}) {
        const BookQuery original(path(demo.path())), copy(path(back.path()));
        EXPECT_EQ(copy.digest(), original.digest());
        EXPECT_EQ(copy.contractBreaches(), QStringList());
    }

    {
        Database db(Database::Server{books});
        const qint64 highest =
            Recordset(db, "SELECT max(AddressID) FROM Addresses").value(0).toLongLong();
        Recordset rs(db, "Addresses");
        rs.addNew();
        rs.setValue("BusName", "Added on the server");
        rs.update();
        EXPECT_EQ(rs.lastInsertId(), highest + 1);
    }
    TempServer::admin(server + " dbname=postgres", "DROP DATABASE " + name + " WITH (FORCE)");
}
