#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

// Reads a data file the tools wrote, on a read-only connection of its own.
// Failures throw CvError, which fails the test that asked.
class BookQuery
{
public:
    explicit BookQuery(const QString &path);
    ~BookQuery();
    BookQuery(const BookQuery &) = delete;
    BookQuery &operator=(const BookQuery &) = delete;

    QList<QVariantList> rows(const QString &sql) const;
    // The first column of the first row; an invalid QVariant when no row.
    QVariant value(const QString &sql) const;
    qint64 count(const QString &sql) const { return value(sql).toLongLong(); }
    QSet<qint64> keys(const QString &sql) const;
    // A hash of every row of every table, in key order.
    QByteArray digest() const;
    // Columns whose values break the storage contract for their declared Jet
    // type: money not an integer, yes/no not -1 or 0, a date not a serial
    // number between 1900 and 2100 (or the zero date), text not text.
    QStringList contractBreaches() const;

private:
    QString m_connection;
};

// Checks that the two data files of one suite agree: values kept by the storage contract,
// an employee row for exactly the wage book's entries, KiwiSaver rows for exactly the
// members, and every key pointing at a row that exists.
void expectConsistentBooks(const BookQuery &farm, const BookQuery &wage);
