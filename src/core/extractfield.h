#pragma once

#include <QString>

// The index-th field (from 1) of text split on delimiter. An empty delimiter stands for the
// four characters blank, CR, LF, tab matched as one unit. Adjacent delimiters give an empty
// field; an index of 0 or less, or past the last field, gives an empty string. Nothing is
// trimmed. Positions are 16-bit, so a text longer than 32,767 characters raises Overflow.
QString ExtractField(const QString &text, const QString &delimiter, qint16 index);
