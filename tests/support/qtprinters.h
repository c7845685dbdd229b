#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

// Lets GoogleTest show Qt strings as text in failure messages.
void PrintTo(const QString &text, std::ostream *out);
void PrintTo(const QByteArray &bytes, std::ostream *out);
