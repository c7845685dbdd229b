#pragma once

#include <memory>
#include <QByteArray>
#include <QString>
#include <QVariantList>

class Database;
class DatabaseState;
class Cursor;

// Reads the rows of a Jet SELECT once, front to back, keeping none of them: for lists
// that run to 100,000 rows, where a Recordset's cells (a QVariant each, kept for moving
// back and for editing) cost more than the query itself. Values bind as for a Recordset.
class RowReader
{
public:
    RowReader(Database &db, const QString &jetSql, const QVariantList &values = {});
    ~RowReader();
    RowReader(const RowReader &) = delete;
    RowReader &operator=(const RowReader &) = delete;

    // Moves to the next row; false past the last. Throws CvError on failure.
    bool next();

    bool isNull(int column) const;
    // A Null reads as 0 or as empty text.
    qint64 integer(int column) const;
    QString text(int column) const;
    // The text as UTF-8, good until next(): no copy on SQLite.
    QByteArray utf8(int column) const;

private:
    std::shared_ptr<DatabaseState> m_state; // the connection stays open while reading
    std::unique_ptr<Cursor> m_statement;
};
