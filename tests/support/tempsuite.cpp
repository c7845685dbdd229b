#include "support/tempsuite.h"

#include "core/cverror.h"
#include "suitefiles.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

TempSuite::TempSuite(bool withDataFiles)
    : m_oldShared(qgetenv("CORVANE_SHARED_DOCUMENTS")),
      m_hadShared(qEnvironmentVariableIsSet("CORVANE_SHARED_DOCUMENTS"))
{
    if (withDataFiles) {
        SuiteFiles::initSuite(dir());
    } else {
        QDir().mkpath(commonDir());
        writeIni("[CORVANE]\r\n");
    }
    qputenv("CORVANE_SHARED_DOCUMENTS", dir().toUtf8());
}

TempSuite::~TempSuite()
{
    if (m_hadShared)
        qputenv("CORVANE_SHARED_DOCUMENTS", m_oldShared);
    else
        qunsetenv("CORVANE_SHARED_DOCUMENTS");
}

QString TempSuite::commonDir() const
{
    return dir() + "/Corvane/Common";
}
QString TempSuite::iniPath() const
{
    return commonDir() + "/Corvane.ini";
}
QString TempSuite::farmPath() const
{
    return SuiteFiles::farmPath(dir());
}
QString TempSuite::wagePath() const
{
    return SuiteFiles::wagePath(dir());
}
QString TempSuite::errorLogPath() const
{
    return commonDir() + "/CvErrors.log";
}

void TempSuite::writeIni(const QByteArray &bytes) const
{
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

void execOnFile(const QString &path, const QString &script)
{
    const QString name = "tempsuite-" + QUuid::createUuid().toString();
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            QSqlQuery q(db);
            q.exec("BEGIN");
            for (const QString &statement : script.split(u';')) {
                if (failure.isEmpty() && !statement.trimmed().isEmpty() && !q.exec(statement))
                    failure = q.lastError().text() + ": " + statement;
            }
            q.exec(failure.isEmpty() ? "COMMIT" : "ROLLBACK");
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty())
        throw CvError(CvError::SqlError, "TempSuite", path + ": " + failure);
}

void TempSuite::execFarm(const QString &sql) const
{
    execOnFile(farmPath(), sql);
}
void TempSuite::execWage(const QString &sql) const
{
    execOnFile(wagePath(), sql);
}
