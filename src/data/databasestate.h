#pragma once

#include "data/fieldinfo.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>

struct sqlite3;

// What a Database shares with the recordsets opened on it, so that a recordset
// outliving its database fails cleanly instead of touching a closed connection.
class DatabaseState
{
public:
    struct Table
    {
        QString rowidAlias; // the INTEGER PRIMARY KEY column, empty when there is none
        QHash<QString, FieldInfo> columns; // by case-folded name
    };

    QString path;
    QStringList attached; // the paths of files attached to this connection
    QString connectionName;
    QSqlDatabase db;
    sqlite3 *handle = nullptr;
    int busyTimeout = 0;
    int transactionDepth = 0;
    int lastFailure = 0; // SQLite's extended result code of the last failure

    bool isOpen() const { return handle != nullptr; }
    void requireOpen(const char *source) const;
    QSqlQuery query() const;

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

    // The connection's files, for messages: "main" or "main or attached".
    QString files() const;

private:
    QHash<QString, Table> m_tables;
};
