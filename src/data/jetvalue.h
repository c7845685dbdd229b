#pragma once

#include "data/fieldinfo.h"

#include <QLocale>
#include <QVariant>

// Conversions between what the program handles and what a column stores, by the
// column's Jet type.
class JetValue
{
public:
    // What the program reads from a stored value: Money for Currency, QDateTime
    // for Date/Time, bool for Yes/No (any non-zero is true); others unchanged.
    static QVariant fromStorage(const QVariant &stored, JetType type);

    // The value to store for a field, converted the way Jet converts on
    // assignment: numbers and numeric text into the number types, amounts into
    // Currency, dates and date text into Date/Time, booleans as -1/0. Throws
    // CvError 13 (type mismatch), 6 (overflow) or 3163 (text longer than the
    // field).
    static QVariant toStorage(const QVariant &value, const FieldInfo &field,
                              const QLocale &locale = QLocale());

    // A value bound to a statement's ? marker as the columns store it: True -1,
    // Money its scaled integer, a date its serial number; others unchanged.
    static QVariant toParameter(const QVariant &value);

    // The value's type is one of the integer types (char types too) / a real.
    static bool isInteger(const QVariant &value);
    static bool isReal(const QVariant &value);

    static int yesNo(bool value) { return value ? -1 : 0; }
    static bool isTrue(const QVariant &stored);
};
