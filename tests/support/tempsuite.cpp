#include "support/tempsuite.h"

#include "config/suitedatabase.h"
#include "core/cverror.h"
#include "data/database.h"
#include "serverbooks.h"
#include "suitefiles.h"
#include "support/tempserver.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

QString testServer()
{
    const QString file = qEnvironmentVariable("CV_TEST_SERVER_FILE");
    if (file.isEmpty())
        return QString();
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        throw CvError(CvError::FileNotFound, "TempSuite",
                      "the test server is not running: no " + file);
    return QString::fromUtf8(f.readAll()).trimmed();
}

TempSuite::TempSuite(bool withDataFiles)
    : m_oldShared(qgetenv("CORVANE_SHARED_DOCUMENTS")),
      m_hadShared(qEnvironmentVariableIsSet("CORVANE_SHARED_DOCUMENTS"))
{
    const QString server = testServer();
    if (withDataFiles && !server.isEmpty()) {
        static int counter = 0;
        m_serverDatabase =
            QString("cvt_%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
        TempServer::admin(server + " dbname=postgres",
                          "CREATE DATABASE " + m_serverDatabase + " TEMPLATE corvane");
        m_server = server + " dbname=" + m_serverDatabase;
        // No data files: a test that opens them by path fails instead of testing them.
        QDir().mkpath(commonDir());
        SuiteFiles::writeIni(iniPath());
        QByteArray ini = readIni();
        ini.replace("DatabaseServer=\r\n", QByteArray());
        writeIni(ini);
    } else if (withDataFiles) {
        SuiteFiles::initSuite(dir());
    } else {
        QDir().mkpath(commonDir());
        writeIni("[CORVANE]\r\n");
    }
    qputenv("CORVANE_SHARED_DOCUMENTS", dir().toUtf8());
}

TempSuite::~TempSuite()
{
    if (!m_serverDatabase.isEmpty()) {
        try {
            TempServer::admin(testServer() + " dbname=postgres",
                              "DROP DATABASE " + m_serverDatabase + " WITH (FORCE)");
        } catch (const CvError &) {
            // the cluster goes with the run
        }
    }
    if (m_hadShared)
        qputenv("CORVANE_SHARED_DOCUMENTS", m_oldShared);
    else
        qunsetenv("CORVANE_SHARED_DOCUMENTS");
}

void TempSuite::writeIni(const QByteArray &given) const
{
    // On the server the INI file always names it, whatever a test writes.
    QByteArray bytes = given;
    if (onServer() && !bytes.contains("DatabaseServer=")) {
        const QByteArray line = "DatabaseServer=" + m_server.toUtf8() + "\r\n";
        const qsizetype section = bytes.toUpper().indexOf("[CORVANE]");
        const qsizetype lineEnd = section < 0 ? -1 : bytes.indexOf('\n', section);
        if (lineEnd < 0)
            bytes = "[CORVANE]\r\n" + line + bytes;
        else
            bytes.insert(lineEnd + 1, line);
    }
    QFile f(iniPath());
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw CvError(CvError::PermissionDenied, "TempSuite", "cannot write " + iniPath());
    f.write(bytes);
}

QByteArray TempSuite::readIni() const
{
    QFile f(iniPath());
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void TempSuite::removeIni() const
{
    QFile::remove(iniPath());
}

QByteArray TempSuite::readErrorLog() const
{
    QFile f(errorLogPath());
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

namespace {

// Runs statements on a connection of its own, in one transaction; the first row's first
// column of the last one.
QVariant runOnFile(const QString &path, const QStringList &statements)
{
    const QString name = "tempsuite-" + QUuid::createUuid().toString();
    QString failure;
    QVariant value;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            QSqlQuery q(db);
            q.exec("BEGIN");
            for (const QString &statement : statements) {
                if (failure.isEmpty() && !statement.trimmed().isEmpty() && !q.exec(statement))
                    failure = q.lastError().text() + ": " + statement;
            }
            if (failure.isEmpty() && q.isSelect() && q.next() && !q.isNull(0))
                value = q.value(0);
            q.finish();
            q.exec(failure.isEmpty() ? "COMMIT" : "ROLLBACK");
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty())
        throw CvError(CvError::SqlError, "TempSuite", path + ": " + failure);
    return value;
}

} // namespace

std::unique_ptr<Database> TempSuite::openBooks() const
{
    return openSuiteDatabase();
}

void TempSuite::exec(const QString &path, const QString &sql) const
{
    if (!onServer())
        return execOnFile(path, sql);
    TempServer::run(m_server, sql.split(u';'));
    ServerBooks::resetSequences(m_server);
}

QVariant TempSuite::value(const QString &path, const QString &sql) const
{
    return onServer() ? TempServer::run(m_server, {sql}) : valueOnFile(path, sql);
}

void execOnFile(const QString &path, const QString &script)
{
    runOnFile(path, script.split(u';'));
}

QVariant valueOnFile(const QString &path, const QString &sql)
{
    return runOnFile(path, {sql});
}
