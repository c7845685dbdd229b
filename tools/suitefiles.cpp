#include "suitefiles.h"

#include "bookwriter.h"
#include "core/cverror.h"
#include "suitedata.h"
#include "suiteswitch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace SuiteFiles {

static const char *kSource = "cvsuite";

QString farmPath(const QString &dir)
{
    return dir + "/data/Farm32.mdb";
}
QString wagePath(const QString &dir)
{
    return dir + "/data/Wage32.mdb";
}
QString iniPath(const QString &dir)
{
    return dir + "/Corvane/Common/Corvane.ini";
}

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

// Every key the module reads is there, so that no start logs a missing one.
// An empty value keeps the default (the data folder and files under the shared
// folder, the program's own folder), so the folder can be moved.
void writeIni(const QString &ini)
{
    QFile f(ini);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw CvError(CvError::PermissionDenied, kSource, "cannot write " + ini);
    f.write("[CORVANE]\r\n"
            "DataRoot=\r\n"
            "DataFileName=\r\n"
            "WageFileName=\r\n"
            "DatabaseServer=\r\n"
            "ProgramDirectory=\r\n"
            "ModuleFileName=\r\n"
            "UserName=\r\n"
            "[START]\r\n"
            "Firm=Corvane\r\n"
            "[WAGE]\r\n"
            "AllEmployees=N\r\n"
            "[TAX]\r\n"
            "WageAccount=401001\r\n"
            "TaxNumberName=GST\r\n"
            "TaxName=GST\r\n"
            "[WINDOWS]\r\n"
            "Country=64\r\n"
            "[HELPCONTEXTIDS]\r\n"
            "AddressBook=1001\r\n"
            "PayDetails=1002\r\n"
            "[COLOURS]\r\n"
            "CvHeader=0,51,102\r\n");
    if (!f.flush())
        throw CvError(CvError::PermissionDenied, kSource, "cannot write " + ini);
}

void initSuite(const QString &dir, bool force)
{
    QStringList keep;
    if (!force) {
        for (const QString &path : {farmPath(dir), wagePath(dir), iniPath(dir)}) {
            if (QFileInfo::exists(path))
                keep << QFileInfo(path).fileName();
        }
    }
    if (keep.size() == kSuiteFileNames.size())
        return;
    switchSuite(dir, keep, [&keep](const QString &folder) {
        if (!keep.contains(kSuiteFileNames[0]))
            createDataFile(folder + '/' + kSuiteFileNames[0], DataFile::Farm);
        if (!keep.contains(kSuiteFileNames[1]))
            createDataFile(folder + '/' + kSuiteFileNames[1], DataFile::Wage);
        if (!keep.contains(kSuiteFileNames[2]))
            writeIni(folder + '/' + kSuiteFileNames[2]);
    });
}

QStringList existingDataFiles(const QString &dir)
{
    QStringList out;
    for (const QString &path : {farmPath(dir), wagePath(dir)}) {
        if (QFileInfo::exists(path))
            out << path;
    }
    return out;
}

void refuseExistingDataFiles(const QString &dir)
{
    const QStringList existing = existingDataFiles(dir);
    if (existing.size() == 1)
        throw CvError(CvError::PermissionDenied, kSource,
                      existing[0] + " exists already; use --force to replace it");
    if (!existing.isEmpty())
        throw CvError(CvError::PermissionDenied, kSource,
                      existing.join(" and ") + " exist already; use --force to replace them");
}

// Both data files are filled in a generation of their own and switched to
// with the INI file only when complete (suiteswitch.cpp), so a failure, a
// refusal or a crash leaves what was there.
template <typename Fill> static void buildSuite(const QString &dir, bool force, Fill fill)
{
    if (!force)
        refuseExistingDataFiles(dir);
    const bool keepIni = !force && QFileInfo::exists(iniPath(dir));
    switchSuite(dir, keepIni ? QStringList{kSuiteFileNames[2]} : QStringList(),
                [&](const QString &folder) {
                    const QString farmFile = folder + '/' + kSuiteFileNames[0];
                    const QString wageFile = folder + '/' + kSuiteFileNames[1];
                    createDataFile(farmFile, DataFile::Farm);
                    createDataFile(wageFile, DataFile::Wage);
                    {
                        BookWriter farm(farmFile);
                        BookWriter wage(wageFile);
                        fill(farm, wage);
                        farm.commit();
                        wage.commit();
                    }
                    if (!keepIni)
                        writeIni(folder + '/' + kSuiteFileNames[2]);
                });
}

void demoSuite(const QString &dir, bool force)
{
    buildSuite(dir, force, [](BookWriter &farm, BookWriter &wage) { writeDemoBooks(farm, wage); });
}

void bulkSuite(const QString &dir, const BulkOptions &options)
{
    if (options.addresses < 0 || options.employees < 0 || options.notesBytes < 0 ||
        options.employees > options.addresses)
        throw CvError(CvError::InvalidProcedureCall, kSource,
                      QString("cannot make %1 employees among %2 entries")
                          .arg(options.employees)
                          .arg(options.addresses));
    buildSuite(dir, options.force, [&options](BookWriter &farm, BookWriter &wage) {
        writeBulkBooks(farm, wage, options);
    });
}

void bulkSuite(const QString &dir, int addresses, int employees, bool force)
{
    BulkOptions options;
    options.addresses = addresses;
    options.employees = employees;
    options.force = force;
    bulkSuite(dir, options);
}

QList<QPair<QString, qint64>> rowCounts(const QString &path)
{
    if (!QFileInfo::exists(path))
        throw CvError(CvError::FileNotFound, kSource, path + " does not exist");
    const QString name = "suitefiles-" + QUuid::createUuid().toString();
    QList<QPair<QString, qint64>> out;
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        db.setConnectOptions("QSQLITE_OPEN_READONLY");
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            QSqlQuery tables(db);
            tables.exec("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE "
                        "'sqlite%' ORDER BY rowid");
            while (tables.next()) {
                const QString table = tables.value(0).toString();
                QSqlQuery count(db);
                if (!count.exec("SELECT COUNT(*) FROM \"" + table + "\"") || !count.next()) {
                    failure = count.lastError().text();
                    break;
                }
                out.append({table, count.value(0).toLongLong()});
            }
            if (failure.isEmpty() && tables.lastError().isValid())
                failure = tables.lastError().text();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty())
        throw CvError(CvError::CannotOpenDatabase, kSource, "cannot read " + path + ": " + failure);
    return out;
}

} // namespace SuiteFiles
