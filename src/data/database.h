#pragma once

#include <functional>
#include <memory>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

class DatabaseState;
class Recordset;

// The suite's data: one open data file (with the wage file attached to it), or both
// data sets on a PostgreSQL server. A file must exist, be an SQLite database and be
// writable: opening never creates a file, nor anything on a server. Each object has its
// own connection, closed with the object. Statements are written in the Jet dialect
// and translated (JetSql) before they run; every failure is a CvError carrying
// the database's own message.
class Database
{
public:
    // How long a statement waits for another suite program's lock before it fails. A
    // window waits no longer than this, frozen, before it tells the user and offers to
    // retry; the suite's other programs hold the files for milliseconds at a time.
    static constexpr int DefaultBusyTimeoutMs = 1000;

    // Opens the file at path. Throws CvError: 3024 when it is missing, 3343 when
    // it is not a database, 3051 when it is read-only, 3260 when another program
    // keeps it locked for longer than the busy timeout.
    explicit Database(const QString &path, int busyTimeoutMs = DefaultBusyTimeoutMs);

    // A PostgreSQL server, as libpq's URI (postgresql://host/database) or key=value
    // form (service=name), holding the suite's two data sets in the schemas farm and
    // wage of one database. Credentials come from libpq's own files and environment.
    // Throws CvError 3024 with a message naming what to fix when the server cannot be
    // reached, refuses the login, or has no books.
    struct Server
    {
        QString connection;
        // For cvsuite, which makes the books: a database without them opens too.
        bool withoutBooks = false;
    };
    explicit Database(const Server &server, int busyTimeoutMs = DefaultBusyTimeoutMs);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    // Opens a second data file on this connection under the schema name. Statements
    // then reach the tables of both files (their names differ), and one transaction
    // commits both files together or neither: that is how a save that changes both
    // the main and the wage file stays whole. Throws as the constructor does.
    void attach(const QString &path, const QString &schema);

    // The main file's path, or the server's connection as given.
    QString path() const;
    bool isServer() const;
    bool isOpen() const;
    void close();

    // How long a statement waits for another program's lock before it fails.
    void setBusyTimeout(int ms);
    int busyTimeout() const;

    // Runs an action statement (INSERT, UPDATE, DELETE) and returns the number of
    // rows it changed. Throws CvError when it fails; a transaction in progress is
    // then rolled back.
    int execute(const QString &jetSql);
    // The same with values bound in order to the statement's ? markers, as the
    // columns store them (JetValue::toParameter); a value bound to a LIKE is a Jet
    // pattern.
    int execute(const QString &jetSql, const QVariantList &values);

    // Runs a statement in the backend's own SQL, untranslated, with ? markers: for
    // making, copying and upgrading books, never for the module's own statements.
    int executeNative(const QString &sql, const QVariantList &values = {});
    // Reads the tables' columns afresh, after an upgrade changed them.
    void reloadSchema();

    // Write transactions take the write lock at once (BEGIN IMMEDIATE), so they
    // wait for another writer up to the busy timeout instead of failing midway. On a
    // server each row lock is waited for up to the same time.
    void beginTransaction();
    void commit();
    void rollback();
    bool inTransaction() const;

    // Runs work in one transaction: commits when it returns, rolls back and
    // rethrows when it throws. Nested calls join the outer transaction.
    void transaction(const std::function<void()> &work);

    // The Qt connection, for code that needs the driver itself (files only).
    QSqlDatabase connection() const;

private:
    friend class Recordset;
    friend class RowReader;
    std::shared_ptr<DatabaseState> m_state;
};

// The database a window's logic works on. A window whose data file could not be opened
// has none; every procedure that reaches for it then fails with the same error, whichever
// window it is (error 91, source names the window).
Database &requireDatabase(Database *db, const QString &source);
