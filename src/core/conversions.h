#pragma once

#include <QString>

// Text to number and boolean as the platform converts a string (its CInt, CLng, CBool):
// numeric text as numerictext.h reads it (blanks around it, sign, digit grouping, decimal
// point, exponent, ...), fractions rounded half to even (2.5 gives 2, 3.5 gives 4).
// Empty or non-numeric text raises Type mismatch (13), a value out of range Overflow (6).
// A boolean is "True" or "False" in any case, or a number: 0 is false, any other true.
qint16 textToInt16(const QString &text);
qint32 textToInt32(const QString &text);
bool textToBool(const QString &text);
