#pragma once

#include <ostream>
#include <QString>
#include <QStringList>

// Readable GoogleTest failure messages for the Qt types the data tests compare.
inline void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList &l, std::ostream *os)
{
    *os << '[' << l.join(u"|").toStdString() << ']';
}
