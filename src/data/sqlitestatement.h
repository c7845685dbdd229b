#pragma once

#include "data/cursor.h"

#include <QByteArray>
#include <QString>
#include <QVariantList>
#include <sqlite3.h>

class DatabaseState;

// A statement prepared on a connection's SQLite handle with its values bound,
// finalized when it goes. Recordsets read their rows through it, straight from
// SQLite: Qt's result cache would copy every value once more, and name lists run to
// 100,000 rows. Values bind as Qt's driver binds them for Database::execute, text as
// UTF-8 (so that a column holds exactly what QString::toUtf8 makes of it).
class SqliteStatement final : public Cursor
{
public:
    SqliteStatement(DatabaseState &state, const QString &sql, const QVariantList &values,
                    const char *source);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    int columnCount() const override { return sqlite3_column_count(m_stmt); }
    QString name(int column) const override;
    QString originTable(int column) const override;
    QString originColumn(int column) const override;

    bool next() override;

    bool isNull(int column) const override
    {
        return sqlite3_column_type(m_stmt, column) == SQLITE_NULL;
    }
    qint64 integer(int column) const override { return sqlite3_column_int64(m_stmt, column); }
    QString text(int column) const override
    {
        return QString::fromUtf8(
            reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column)),
            sqlite3_column_bytes(m_stmt, column));
    }

    QByteArray utf8(int column) const override
    {
        return QByteArray::fromRawData(
            reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column)),
            sqlite3_column_bytes(m_stmt, column));
    }

    QVariant value(int column) const override;

private:
    // Throws CvError when the statement cannot be prepared or the number of values
    // differs from the number of ? markers.
    void prepare(const QString &sql, const QVariantList &values);
    int bind(int index, const QVariant &value);
    [[noreturn]] void fail(int rc);

    DatabaseState &m_state;
    const char *m_source;
    sqlite3_stmt *m_stmt = nullptr;
};
