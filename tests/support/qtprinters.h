#pragma once

#include <ostream>
#include <QByteArray>
#include <QString>
#include <QStringList>

// Lets GoogleTest show Qt strings as text in failure messages.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *out)
{
    *out << '[' << list.join(u"|").toStdString() << ']';
}
