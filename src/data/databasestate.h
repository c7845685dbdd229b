#pragma once

#include "data/fieldinfo.h"
#include "data/jetsql.h"

#include <functional>
#include <memory>
#include <QHash>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <vector>

struct sqlite3;
struct pg_conn;
struct pg_result;
class Cursor;
struct ServerParameters;

// The statement with each ? marker outside quotes and brackets replaced by what
// replace(n) gives for the n-th (from 0); *count, when given, receives how many there are.
QString replaceMarkers(const QString &sql, const std::function<QString(int)> &replace,
                       int *count = nullptr);

// What a Database shares with the recordsets opened on it, so that a recordset
// outliving its database fails cleanly instead of touching a closed connection.
// It speaks to one backend: the suite's SQLite files (handle, through Qt's driver
// and SQLite's own interface) or a PostgreSQL server (pg, through libpq).
class DatabaseState
{
public:
    struct Table
    {
        QString name;       // as the schema writes it
        QString rowidAlias; // the INTEGER PRIMARY KEY column, empty when there is none
        QString key;        // the primary key column (PostgreSQL rows are edited by it)
        QString qualified;  // schema.table on the server
        QHash<QString, FieldInfo> columns; // by case-folded name
    };

    JetSql::Dialect dialect = JetSql::Dialect::Sqlite;
    QString path;         // the main file, or the server's connection as the INI gives it
    QStringList attached; // the paths of files attached to this connection
    QString connectionName;
    QSqlDatabase db;
    sqlite3 *handle = nullptr;
    pg_conn *pg = nullptr;
    int busyTimeout = 0;
    int transactionDepth = 0;
    int lastFailure = 0; // SQLite's extended result code of the last failure

    bool isOpen() const { return handle != nullptr || pg != nullptr; }
    bool isServer() const { return dialect == JetSql::Dialect::Postgres; }
    void requireOpen(const char *source) const;
    QSqlQuery query() const;

    // Runs a statement with ? markers and its values bound in order, on either backend.
    // exec gives the number of rows changed; select the rows (also of INSERT ...
    // RETURNING). Both throw CvError on failure, rolling back any transaction.
    int exec(const QString &sql, const QVariantList &values, const char *source);
    std::unique_ptr<Cursor> select(const QString &sql, const QVariantList &values,
                                   const char *source);
    // The column a row of the table is edited by: SQLite's rowid, the server's key.
    QString rowid(const QString &table, const char *source);
    // The AutoNumber the next row added to the table will take.
    QVariant nextAutoNumber(const QString &table, const char *source);

    // Connects to a PostgreSQL server (libpq's URI or key=value form) and reads its
    // tables. Throws CvError naming what to fix when it cannot.
    void openServer(const QString &conninfo, bool requireBooks = true);
    void setLockTimeout(int ms);
    // BEGIN, SAVEPOINT, RELEASE and ROLLBACK TO: on a server sent with the next statement,
    // saving a round trip each.
    void transactionStatement(const QString &sql, const char *source);
    // True when the transaction has sent nothing to the server yet, and is now dropped:
    // its COMMIT or ROLLBACK need not be sent.
    bool endUnstarted();
    // The server's failure as a CvError (the result is freed).
    [[noreturn]] void failServer(pg_result *result, const char *source);
    // The server's table by its object id, for the origin of a result column.
    const Table *serverTable(unsigned oid) const;
    QString serverColumn(unsigned oid, int number) const;

    // Runs one statement with its values bound in order; throws on failure.
    void run(QSqlQuery &q, const QString &sql, const QVariantList &values, const char *source);
    void prepare(QSqlQuery &q, const QString &sql, const char *source);
    // Throws the failure as a CvError, first rolling back any transaction so that
    // the connection is in autocommit mode again.
    [[noreturn]] void fail(const QSqlError &error, const char *source);
    // The same for an SQLite result code and message.
    [[noreturn]] void fail(int code, const QString &message, const char *source);

    // Column types and keys by table, read once per table.
    const Table &table(const QString &name, const char *source);
    FieldInfo column(const QString &table, const QString &column, const char *source);

    void close();
    // Forgets what was read of the tables (a server reads them again at once).
    void reloadTables();

    // The connection's files, for messages: "main" or "main or attached".
    QString files() const;

private:
    int execServer(const QString &sql, const QVariantList &values, const char *source);
    std::unique_ptr<Cursor> selectServer(const QString &sql, const QVariantList &values,
                                         const char *source);
    void closeServer();
    const QByteArray *preparedName(const QByteArray &sql, const std::vector<unsigned> &types,
                                   const char *source);
    void forgetPrepared();
    pg_result *pipeline(const QByteArray &sql, const QByteArray *prepared,
                        const ServerParameters &p, const char *source);
    void setSearchPath();
    void loadServerTables(bool requireBooks);

    QHash<QString, Table> m_tables;
    bool m_resetting = false;                 // the lost server connection is being made again
    QHash<unsigned, QString> m_tableByOid;    // server only: oid -> folded name
    QHash<quint64, QString> m_columnByNumber; // server only: oid << 16 | attnum
    QHash<QByteArray, QByteArray> m_prepared; // server only: statement and types -> name
    QSet<QByteArray> m_seenOnce;              // server only: statements run once so far
    quint64 m_preparedCount = 0;
    QList<QByteArray> m_deferred; // server only: transaction statements not yet sent
};
