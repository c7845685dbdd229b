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

    // Throws CvError when the statement cannot be prepared or the number of values
    // differs from the number of ? markers.
    void prepare(const QString &sql, const QVariantList &values);

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

    QVariant value(int column) const override
    {
        QVariant v;
        read(column, [&v](auto &&...x) {
            if constexpr (sizeof...(x) > 0)
                v = QVariant::fromValue(x...);
        });
        return v;
    }

    // Passes the value of a column of the current row to take, as SQLite holds it:
    // qint64, double, QString, QByteArray, or nothing for Null.
    template <typename Take> void read(int column, Take &&take) const
    {
        switch (sqlite3_column_type(m_stmt, column)) {
        case SQLITE_INTEGER:
            return take(qint64(sqlite3_column_int64(m_stmt, column)));
        case SQLITE_FLOAT:
            return take(sqlite3_column_double(m_stmt, column));
        case SQLITE_TEXT:
            return take(QString(static_cast<const QChar *>(sqlite3_column_text16(m_stmt, column)),
                                sqlite3_column_bytes16(m_stmt, column) / 2));
        case SQLITE_BLOB:
            return take(QByteArray(static_cast<const char *>(sqlite3_column_blob(m_stmt, column)),
                                   sqlite3_column_bytes(m_stmt, column)));
        default:
            return take();
        }
    }

private:
    int bind(int index, const QVariant &value);
    [[noreturn]] void fail(int rc);

    DatabaseState &m_state;
    const char *m_source;
    sqlite3_stmt *m_stmt = nullptr;
};
