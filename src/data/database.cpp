#include "data/database.h"

#include "core/cverror.h"
#include "data/databasestate.h"
#include "data/jetlike.h"
#include "data/jetsql.h"
#include "data/jetvalue.h"

#include <QAtomicInteger>
#include <QFile>
#include <QFileInfo>
#include <QSqlDriver>
#include <QUrl>
#include <sqlite3.h>
#include <utility>

namespace {

const char *const Source = "Database";

// Without any write bit the file is read-only even for root, whom access() lets
// write anything.
bool writable(const QFileInfo &fi)
{
    constexpr auto anyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return fi.isWritable() && (fi.permissions() & anyWrite);
}

void checkFile(const QFileInfo &fi)
{
    const QString path = fi.absoluteFilePath();
    if (!fi.exists() || fi.isDir())
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Could not find file '%1'.").arg(path));
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Could not read file '%1' (%2).").arg(path, f.errorString()));
    static const QByteArray header("SQLite format 3\0", 16);
    if (f.read(header.size()) != header)
        throw CvError(CvError::UnrecognizedFormat, Source,
                      QStringLiteral("Unrecognized database format '%1': the file is not a "
                                     "data file of the suite.")
                          .arg(path));
    if (!writable(fi))
        throw CvError(CvError::FileReadOnly, Source,
                      QStringLiteral("The data file '%1' is read-only, so changes could not be "
                                     "saved. Make it writable and try again.")
                          .arg(path));
    const QFileInfo folder(fi.absolutePath());
    if (!writable(folder))
        throw CvError(CvError::FileReadOnly, Source,
                      QStringLiteral("The folder '%1' is read-only, so changes to '%2' could not "
                                     "be saved. Make the folder writable and try again.")
                          .arg(folder.absoluteFilePath(), path));
}

// mode=rw: SQLite opens the file or fails; it never creates one.
QString fileUri(const QString &absolutePath)
{
    return QStringLiteral("file:%1?mode=rw")
        .arg(QString::fromLatin1(QUrl::toPercentEncoding(absolutePath, "/")));
}

// Both files of a save commit together only in a rollback journal: SQLite's
// write-ahead log commits each attached file on its own. The suite's files are made
// in rollback mode; one switched by another program is switched back while nobody
// else has it open, or refused, rather than saved half at a time.
void requireRollbackJournal(DatabaseState &s, const QString &schema, const QString &path)
{
    QSqlQuery q = s.query();
    const QString pragma = QStringLiteral("PRAGMA %1.journal_mode").arg(schema);
    s.run(q, pragma, {}, Source);
    const QString mode = q.next() ? q.value(0).toString().toLower() : QString();
    q.finish();
    if (mode != u"wal")
        return;
    s.run(q, pragma + QStringLiteral(" = DELETE"), {}, Source);
    const QString now = q.next() ? q.value(0).toString().toLower() : QString();
    q.finish();
    if (now == u"wal")
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("The data file '%1' is in write-ahead-log mode, in which the "
                                     "suite's two data files cannot be saved together. Close the "
                                     "other suite programs and start again.")
                          .arg(path));
}

} // namespace

Database::Database(const QString &path, int busyTimeoutMs)
    : m_state(std::make_shared<DatabaseState>())
{
    const QFileInfo fi(path);
    checkFile(fi);

    static QAtomicInteger<quint64> counter;
    DatabaseState &s = *m_state;
    s.path = fi.absoluteFilePath();
    s.busyTimeout = busyTimeoutMs;
    s.connectionName = QStringLiteral("cv_data_%1").arg(counter.fetchAndAddRelaxed(1) + 1);
    s.db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), s.connectionName);
    if (!s.db.isValid()) {
        s.close();
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Qt's SQLite driver (QSQLITE) is not installed."));
    }
    s.db.setDatabaseName(fileUri(s.path));
    s.db.setConnectOptions(
        QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!s.db.open()) {
        const QSqlError error = s.db.lastError();
        s.close();
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Could not open '%1' (%2).")
                          .arg(fi.absoluteFilePath(), error.databaseText()));
    }
    const QVariant handle = s.db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") == 0)
        s.handle = *static_cast<sqlite3 *const *>(handle.constData());
    if (!s.handle) {
        s.close();
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Could not open '%1'.").arg(fi.absoluteFilePath()));
    }
    JetLike::registerMatch(s.handle);
    // A damaged file passes the header test; reading the schema finds it out.
    try {
        QSqlQuery q = s.query();
        s.run(q, QStringLiteral("SELECT count(*) FROM sqlite_master"), {}, Source);
        q.finish();
        requireRollbackJournal(s, QStringLiteral("main"), s.path);
    } catch (...) {
        s.close();
        throw;
    }
}

Database::Database(const Server &server, int busyTimeoutMs)
    : m_state(std::make_shared<DatabaseState>())
{
    m_state->busyTimeout = busyTimeoutMs;
    m_state->openServer(server.connection, !server.withoutBooks);
}

Database::~Database()
{
    m_state->close();
}

void Database::attach(const QString &path, const QString &schema)
{
    DatabaseState &s = *m_state;
    s.requireOpen(Source);
    if (s.isServer())
        throw CvError(CvError::SqlError, Source,
                      QStringLiteral("Both data sets are on the server already; nothing to "
                                     "attach."));
    const QFileInfo fi(path);
    checkFile(fi);
    const QString absolute = fi.absoluteFilePath();
    const QString quoted = JetSql::quoteIdentifier(schema);
    // A failure here is the attached file's own: its messages name it alone.
    const QString mainPath = std::exchange(s.path, absolute);
    const QStringList others = std::exchange(s.attached, {});
    QSqlQuery q = s.query();
    try {
        s.run(q, QStringLiteral("ATTACH DATABASE ? AS %1").arg(quoted), {fileUri(absolute)},
              Source);
        try {
            s.run(q, QStringLiteral("SELECT count(*) FROM %1.sqlite_master").arg(quoted), {},
                  Source);
            q.finish();
            requireRollbackJournal(s, quoted, absolute);
        } catch (...) {
            QSqlQuery detach = s.query();
            detach.exec(QStringLiteral("DETACH DATABASE %1").arg(quoted));
            throw;
        }
    } catch (...) {
        s.path = mainPath;
        s.attached = others;
        throw;
    }
    s.path = mainPath;
    s.attached = others;
    s.attached << absolute;
}

QString Database::path() const
{
    return m_state->path;
}

bool Database::isServer() const
{
    return m_state->isServer();
}

bool Database::isOpen() const
{
    return m_state->isOpen();
}

void Database::close()
{
    m_state->close();
}

void Database::setBusyTimeout(int ms)
{
    m_state->requireOpen(Source);
    m_state->busyTimeout = ms;
    if (m_state->isServer())
        m_state->setLockTimeout(ms);
    else
        sqlite3_busy_timeout(m_state->handle, ms);
}

int Database::busyTimeout() const
{
    return m_state->busyTimeout;
}

int Database::execute(const QString &jetSql)
{
    return execute(jetSql, {});
}

int Database::execute(const QString &jetSql, const QVariantList &values)
{
    m_state->requireOpen(Source);
    QVariantList bound;
    bound.reserve(values.size());
    for (const QVariant &v : values)
        bound << JetValue::toParameter(v);
    const QString sql = JetSql::bind(*JetSql::translation(jetSql, m_state->dialect), bound);
    return m_state->exec(sql, bound, Source);
}

int Database::executeNative(const QString &sql, const QVariantList &values)
{
    m_state->requireOpen(Source);
    return m_state->exec(sql, values, Source);
}

void Database::reloadSchema()
{
    m_state->requireOpen(Source);
    m_state->reloadTables();
}

void Database::beginTransaction()
{
    DatabaseState &s = *m_state;
    s.requireOpen(Source);
    // Nested transactions are savepoints inside the outer one.
    const QString begin =
        s.isServer() ? QStringLiteral("BEGIN") : QStringLiteral("BEGIN IMMEDIATE");
    s.transactionStatement(
        s.transactionDepth == 0 ? begin : QStringLiteral("SAVEPOINT cv_%1").arg(s.transactionDepth),
        Source);
    ++s.transactionDepth;
}

void Database::commit()
{
    DatabaseState &s = *m_state;
    s.requireOpen(Source);
    if (s.transactionDepth == 0)
        throw CvError(CvError::NoTransaction, Source,
                      QStringLiteral("Commit without a transaction: it was rolled back after an "
                                     "earlier failure, or never begun."));
    const int level = s.transactionDepth - 1;
    try {
        if (level > 0)
            s.transactionStatement(QStringLiteral("RELEASE cv_%1").arg(level), Source);
        else if (!s.endUnstarted())
            s.exec(QStringLiteral("COMMIT"), {}, Source);
    } catch (const CvError &) {
        // Syncing the folder after the super-journal of a save across both files has
        // gone: both files hold the save already (with the super-journal gone their
        // journals no longer roll anything back). Reporting it as not saved would have
        // the user save it twice.
        if (level != 0 || s.isServer() || s.lastFailure != SQLITE_IOERR_DIR_FSYNC)
            throw;
    }
    s.transactionDepth = level;
}

void Database::rollback()
{
    DatabaseState &s = *m_state;
    s.requireOpen(Source);
    if (s.transactionDepth == 0)
        throw CvError(CvError::NoTransaction, Source,
                      QStringLiteral("Rollback without a transaction."));
    const int level = s.transactionDepth - 1;
    if (level == 0) {
        if (!s.endUnstarted())
            s.exec(QStringLiteral("ROLLBACK"), {}, Source);
    } else {
        s.transactionStatement(QStringLiteral("ROLLBACK TO cv_%1").arg(level), Source);
        s.transactionStatement(QStringLiteral("RELEASE cv_%1").arg(level), Source);
    }
    s.transactionDepth = level;
}

bool Database::inTransaction() const
{
    return m_state->transactionDepth > 0;
}

void Database::transaction(const std::function<void()> &work)
{
    beginTransaction();
    const int level = m_state->transactionDepth;
    try {
        work();
    } catch (...) {
        // A failing statement may have rolled everything back already.
        if (m_state->isOpen() && m_state->transactionDepth >= level) {
            try {
                rollback();
            } catch (const CvError &) {
                // the original error is the one worth reporting
            }
        }
        throw;
    }
    commit();
}

QSqlDatabase Database::connection() const
{
    return m_state->db;
}

Database &requireDatabase(Database *db, const QString &source)
{
    if (!db)
        throw CvError(CvError::ObjectVariableNotSet, source,
                      QStringLiteral("Object variable or With block variable not set"));
    return *db;
}
