#pragma once

#include "suitefiles.h"

#include <memory>
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

class Database;

// Runs statements separated by semicolons (none inside a literal) on a data file, in one
// transaction on a connection of its own. Failures throw CvError.
void execOnFile(const QString &path, const QString &script);
QVariant valueOnFile(const QString &path, const QString &sql);

// The test server's connection (libpq key=value, no database) when this run's books are
// on a PostgreSQL server: the tests registered as "server." read it from the file that
// CV_TEST_SERVER_FILE names, which the test server fixture writes. Empty otherwise.
QString testServer();

// A shared documents folder laid out as the suite does, in a temporary folder
// that goes with the object: Corvane/Common/Corvane.ini and data/Farm32.mdb and
// data/Wage32.mdb built from schema/. CORVANE_SHARED_DOCUMENTS points at it for
// the object's lifetime. On a test server the books are instead a database of their
// own, made from the server's empty books and dropped with the object, and the INI
// file names it; the same tests then run on both backends.
class TempSuite
{
public:
    explicit TempSuite(bool withDataFiles = true);
    ~TempSuite();
    TempSuite(const TempSuite &) = delete;
    TempSuite &operator=(const TempSuite &) = delete;

    QString dir() const { return m_dir.path(); }
    QString commonDir() const { return dir() + "/Corvane/Common"; }
    QString iniPath() const { return commonDir() + "/Corvane.ini"; }
    QString farmPath() const { return SuiteFiles::farmPath(dir()); }
    QString wagePath() const { return SuiteFiles::wagePath(dir()); }
    QString errorLogPath() const { return commonDir() + "/CvErrors.log"; }

    // Whether the books are on the test server (tests of the files themselves skip).
    bool onServer() const { return !m_server.isEmpty(); }
    // The server's connection to this suite's database.
    QString serverConnection() const { return m_server; }
    // Both data sets on one connection, as the module opens them.
    std::unique_ptr<Database> openBooks() const;

    // Replaces the INI file with these bytes, exactly as given (on the server with the
    // line naming it added when they lack one).
    void writeIni(const QByteArray &bytes) const;
    QByteArray readIni() const;
    void removeIni() const;
    QByteArray readErrorLog() const;

    // Run SQL straight on a data file (no translation), for arranging fixtures: see
    // execOnFile. On the server, "quoted" names are folded to its lower case and the
    // AutoNumbers are moved past the keys written.
    void execFarm(const QString &sql) const { exec(farmPath(), sql); }
    void execWage(const QString &sql) const { exec(wagePath(), sql); }
    // The first column of the first row of a query run straight on a data file, as stored;
    // an invalid value when there is no row or it is Null.
    QVariant farmValue(const QString &sql) const { return value(farmPath(), sql); }
    QVariant wageValue(const QString &sql) const { return value(wagePath(), sql); }

private:
    void exec(const QString &path, const QString &sql) const;
    QVariant value(const QString &path, const QString &sql) const;

    QString m_server;
    QString m_serverDatabase;
    QTemporaryDir m_dir;
    QByteArray m_oldShared;
    bool m_hadShared;
};
