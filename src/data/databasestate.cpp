#include "data/databasestate.h"

#include "core/cverror.h"
#include "data/jetsql.h"
#include "data/sqlitestatement.h"

#include <QFileInfo>
#include <QSqlRecord>
#include <sqlite3.h>
#include <vector>

void DatabaseState::requireOpen(const char *source) const
{
    if (!isOpen())
        throw CvError(CvError::ObjectInvalid, source,
                      QStringLiteral("Object invalid or no longer set: the database is closed."));
}

QSqlQuery DatabaseState::query() const
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    return q;
}

void DatabaseState::prepare(QSqlQuery &q, const QString &sql, const char *source)
{
    if (!q.prepare(sql))
        fail(q.lastError(), source);
}

namespace {

// Text that the driver's UTF-16 binding would not store as it is: SQLite takes a leading
// U+FEFF for a byte-order mark and drops it, and a lone surrogate has no UTF-16 form.
bool needsUtf8(const QVariant &value)
{
    if (value.metaType().id() != QMetaType::QString)
        return false;
    const QString text = value.toString();
    if (text.startsWith(QChar(0xfeff)))
        return true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            return true;
    }
    return false;
}

} // namespace

QString replaceMarkers(const QString &sql, const std::function<QString(int)> &replace, int *count)
{
    QString out;
    out.reserve(sql.size() + 32);
    int marker = 0;
    QChar quote;
    for (const QChar c : sql) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'\'' || c == u'"') {
            quote = c;
        } else if (c == u'[') {
            quote = u']';
        } else if (c == u'?') {
            out += replace(marker++);
            continue;
        }
        out += c;
    }
    if (count)
        *count = marker;
    return out;
}

void DatabaseState::run(QSqlQuery &q, const QString &sql, const QVariantList &values,
                        const char *source)
{
    std::vector<bool> cast(std::size_t(values.size()), false);
    bool anyCast = false;
    for (qsizetype i = 0; i < values.size(); ++i)
        anyCast |= cast[std::size_t(i)] = needsUtf8(values.at(i));
    // The markers of such values cast from their UTF-8 bytes: the column then holds
    // exactly what QString::toUtf8 makes of the text.
    const auto marker = [&cast](int n) {
        return cast[std::size_t(n)] ? QStringLiteral("CAST(? AS TEXT)") : QStringLiteral("?");
    };
    prepare(q, anyCast ? replaceMarkers(sql, marker) : sql, source);
    for (qsizetype i = 0; i < values.size(); ++i)
        q.bindValue(int(i), cast[std::size_t(i)] ? QVariant(values.at(i).toString().toUtf8())
                                                 : values.at(i));
    if (!q.exec())
        fail(q.lastError(), source);
}

void DatabaseState::fail(const QSqlError &error, const char *source)
{
    int code = error.nativeErrorCode().toInt();
    if (code == 0 && handle)
        code = sqlite3_errcode(handle);
    fail(code, error.databaseText().isEmpty() ? error.text() : error.databaseText(), source);
}

void DatabaseState::fail(int code, const QString &message, const char *source)
{
    lastFailure = handle ? sqlite3_extended_errcode(handle) : code;
    // A transaction left open would silently swallow every later write.
    if (handle && !sqlite3_get_autocommit(handle)) {
        QSqlQuery rollback(db);
        rollback.exec(QStringLiteral("ROLLBACK"));
    }
    transactionDepth = 0;

    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw CvError(CvError::DatabaseLocked, source,
                      QStringLiteral("Another program is using %1 and kept it locked longer "
                                     "than this program waits (%2 s: %3).")
                          .arg(files(), QString::number(busyTimeout / 1000.0), message));
    case SQLITE_FULL:
        throw CvError(CvError::DiskFull, source,
                      QStringLiteral("The disk holding %1 is full (%2).").arg(files(), message));
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
    case SQLITE_PROTOCOL:
        throw CvError(CvError::DiskOrNetworkError, source,
                      QStringLiteral("The disk or network holding %1 failed while it was written "
                                     "(%2).")
                          .arg(files(), message));
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        throw CvError(CvError::UnrecognizedFormat, source,
                      QStringLiteral("%1 is damaged, or is not a data file of the suite (%2).")
                          .arg(files(), message));
    case SQLITE_READONLY:
        throw CvError(
            CvError::FileReadOnly, source,
            QStringLiteral("The data file %1 cannot be written (%2).").arg(files(), message));
    default:
        throw CvError(CvError::SqlError, source, message);
    }
}

int DatabaseState::exec(const QString &sql, const QVariantList &values, const char *source)
{
    if (isServer())
        return execServer(sql, values, source);
    QSqlQuery q = query();
    run(q, sql, values, source);
    return q.numRowsAffected();
}

std::unique_ptr<Cursor> DatabaseState::select(const QString &sql, const QVariantList &values,
                                              const char *source)
{
    if (isServer())
        return selectServer(sql, values, source);
    return std::make_unique<SqliteStatement>(*this, sql, values, source);
}

QString DatabaseState::rowid(const QString &tableName, const char *source)
{
    if (!isServer())
        return QStringLiteral("_rowid_");
    const Table &t = table(tableName, source);
    if (t.key.isEmpty())
        throw CvError(
            CvError::NotUpdatable, source,
            QStringLiteral("Cannot update: the table '%1' has no primary key.").arg(tableName));
    return JetSql::quoteIdentifier(t.key, dialect);
}

QVariant DatabaseState::nextAutoNumber(const QString &tableName, const char *source)
{
    if (isServer()) {
        const Table &t = table(tableName, source);
        // Taken from the key's sequence now, as Jet numbers a row when it is begun; a
        // row never added leaves a gap, as it does in Jet.
        std::unique_ptr<Cursor> rows =
            select(QStringLiteral("SELECT nextval(pg_get_serial_sequence(?, ?))"),
                   {t.qualified, t.key.toLower()}, source);
        return rows->next() ? rows->value(0) : QVariant();
    }
    std::unique_ptr<Cursor> rows =
        select(QStringLiteral("SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ? "
                              "COLLATE NOCASE), 0), coalesce((SELECT max(_rowid_) FROM %1), 0)) "
                              "+ 1")
                   .arg(JetSql::quoteIdentifier(tableName)),
               {tableName}, source);
    return rows->next() ? rows->value(0) : QVariant();
}

QString DatabaseState::files() const
{
    if (isServer())
        return QStringLiteral("the books on the server (%1)").arg(path);
    const QFileInfo main(path);
    QStringList names{main.fileName()};
    bool oneFolder = true;
    for (const QString &other : attached) {
        const QFileInfo file(other);
        names << file.fileName();
        oneFolder = oneFolder && file.absolutePath() == main.absolutePath();
    }
    // "Farm32.mdb or Wage32.mdb in /data": a clerk reads the names, not the paths.
    if (oneFolder)
        return names.join(QStringLiteral(" or ")) + QStringLiteral(" in ") + main.absolutePath();
    names = QStringList{path} + attached;
    return names.join(QStringLiteral(" or "));
}

const DatabaseState::Table &DatabaseState::table(const QString &name, const char *source)
{
    const QString key = name.toCaseFolded();
    auto it = m_tables.constFind(key);
    if (it != m_tables.constEnd())
        return it.value();

    Table t;
    t.name = name;
    if (isServer()) // every table was read on connecting
        return m_tables.insert(key, t).value();
    QSqlQuery q = query();
    run(q, QStringLiteral("PRAGMA table_info(%1)").arg(JetSql::quoteIdentifier(name)), {}, source);
    QString keyColumn, keyType;
    int keyColumns = 0;
    const QByteArray table = name.toUtf8();
    while (q.next()) {
        const QString column = q.value(1).toString();
        const QString declared = q.value(2).toString();
        if (q.value(5).toInt() > 0) {
            ++keyColumns;
            keyColumn = column;
            keyType = declared;
        }
        FieldInfo f;
        f.name = column;
        f.table = name;
        f.column = column;
        f.type = jetTypeFromDeclared(declared, &f.size);
        f.required = q.value(3).toInt() != 0;
        int autoIncrement = 0;
        if (sqlite3_table_column_metadata(handle, nullptr, table.constData(),
                                          column.toUtf8().constData(), nullptr, nullptr, nullptr,
                                          nullptr, &autoIncrement) == SQLITE_OK &&
            autoIncrement) {
            f.type = JetType::AutoNumber;
            f.autoNumber = true;
        }
        t.columns.insert(column.toCaseFolded(), f);
    }
    q.finish();
    if (keyColumns == 1 && keyType.compare(u"INTEGER", Qt::CaseInsensitive) == 0)
        t.rowidAlias = keyColumn;
    if (keyColumns == 1)
        t.key = keyColumn;
    return m_tables.insert(key, t).value();
}

FieldInfo DatabaseState::column(const QString &tableName, const QString &column, const char *source)
{
    const Table &t = table(tableName, source);
    return t.columns.value(column.toCaseFolded());
}

void DatabaseState::close()
{
    if (pg)
        closeServer();
    if (!handle && connectionName.isEmpty())
        return;
    if (handle && !sqlite3_get_autocommit(handle)) {
        QSqlQuery rollback(db);
        rollback.exec(QStringLiteral("ROLLBACK"));
    }
    handle = nullptr;
    transactionDepth = 0;
    m_tables.clear();
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
    connectionName.clear();
}
