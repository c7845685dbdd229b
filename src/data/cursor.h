#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

// The rows of one statement, read front to back, whichever backend runs it. Recordsets
// and row readers read through it, so that nothing above the data layer knows the
// backend.
class Cursor
{
public:
    virtual ~Cursor() = default;

    virtual int columnCount() const = 0;
    virtual QString name(int column) const = 0;
    // The table and column a result column reads, empty for an expression.
    virtual QString originTable(int column) const = 0;
    virtual QString originColumn(int column) const = 0;

    // Moves to the next row; false past the last. Throws CvError on failure.
    virtual bool next() = 0;

    // A column of the current row read as one type, Null as 0 or empty text.
    virtual bool isNull(int column) const = 0;
    virtual qint64 integer(int column) const = 0;
    virtual QString text(int column) const = 0;
    // The text as UTF-8, good until the next row: without a copy where the backend holds
    // it so (for lists that read text they do not keep).
    virtual QByteArray utf8(int column) const { return text(column).toUtf8(); }
    // The value as the backend holds it: qint64, double, QString, QByteArray, or an
    // invalid QVariant for Null.
    virtual QVariant value(int column) const = 0;
};
