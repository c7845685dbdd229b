#include "suitefiles.h"

#include "data/cverror.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace SuiteFiles {

static const char *kSource = "cvsuite";

QString farmPath(const QString &dir) { return dir + "/data/Farm32.mdb"; }
QString wagePath(const QString &dir) { return dir + "/data/Wage32.mdb"; }
QString iniPath(const QString &dir) { return dir + "/Corvane/Common/Corvane.ini"; }

QString schemaText(DataFile which)
{
    QFile f(which == DataFile::Farm ? ":/schema/farm.sql" : ":/schema/wage.sql");
    if (!f.open(QIODevice::ReadOnly))
        throw CvError(CvError::FileNotFound, kSource, "the schema is missing from this build");
    return QString::fromUtf8(f.readAll());
}

// Splits a schema file into statements; the schema holds no semicolons inside
// literals, and comments run from "--" to the end of the line.
static QStringList statements(const QString &script)
{
    QString text;
    for (const QString &line : script.split('\n')) {
        const qsizetype dash = line.indexOf("--");
        text += (dash >= 0 ? line.left(dash) : line) + '\n';
    }
    QStringList out;
    for (const QString &s : text.split(';')) {
        if (!s.trimmed().isEmpty())
            out << s.trimmed();
    }
    return out;
}

void createDataFile(const QString &path, DataFile which, bool overwrite)
{
    if (QFileInfo::exists(path)) {
        if (!overwrite)
            throw CvError(CvError::PermissionDenied, kSource,
                          path + " exists already; use --force to replace it");
        if (!QFile::remove(path))
            throw CvError(CvError::PermissionDenied, kSource, "cannot replace " + path);
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    const QStringList sql = statements(schemaText(which));
    const QString name = "suitefiles-" + QUuid::createUuid().toString();
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            QSqlQuery q(db);
            q.exec("BEGIN");
            for (const QString &s : sql) {
                if (!q.exec(s)) {
                    failure = q.lastError().text() + ": " + s;
                    break;
                }
            }
            q.exec(failure.isEmpty() ? "COMMIT" : "ROLLBACK");
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty()) {
        QFile::remove(path);
        throw CvError(CvError::CannotOpenDatabase, kSource,
                      "cannot create " + path + ": " + failure);
    }
}

void initSuite(const QString &dir, bool force)
{
    const QString ini = iniPath(dir);
    QDir().mkpath(QFileInfo(ini).absolutePath());
    if (force || !QFileInfo::exists(ini)) {
        QFile f(ini);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw CvError(CvError::PermissionDenied, kSource, "cannot write " + ini);
        // The data paths are left to their defaults under the shared folder.
        f.write("[CORVANE]\r\n"
                "[START]\r\n"
                "Firm=Corvane\r\n"
                "[WAGE]\r\n"
                "AllEmployees=N\r\n"
                "[TAX]\r\n"
                "WageAccount=401001\r\n"
                "[WINDOWS]\r\n"
                "Country=64\r\n");
    }
    if (force || !QFileInfo::exists(farmPath(dir)))
        createDataFile(farmPath(dir), DataFile::Farm, force);
    if (force || !QFileInfo::exists(wagePath(dir)))
        createDataFile(wagePath(dir), DataFile::Wage, force);
}

} // namespace SuiteFiles
