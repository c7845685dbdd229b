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

void execOnFile(const QString &path, const QString &script)
{
    runOnFile(path, script.split(u';'));
}

QVariant valueOnFile(const QString &path, const QString &sql)
{
    return runOnFile(path, {sql});
}
