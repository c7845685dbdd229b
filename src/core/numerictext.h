#pragma once

#include <optional>
#include <QString>

// Numbers in text the way the suite's settings have always been read: in the
// New Zealand convention ("." decimal point, "," digit grouping).

// The number a whole text stands for, or nothing when the text is not
// numeric. Blanks around it, a sign (leading or trailing), a "$", enclosing
// parentheses for a negative amount, digit-grouping commas, an exponent, and
// &H / &O radix prefixes are accepted: "1,000" and " 44 " are numbers, "abc"
// and "" are not.
std::optional<double> numericValue(const QString &text);

inline bool isNumericText(const QString &text)
{
    return numericValue(text).has_value();
}

// The number at the start of a text, ignoring blanks anywhere in it and
// stopping at the first character that cannot continue it; 0 when there is
// none. "12abc" gives 12, "1 2|" gives 12.
double leadingNumber(const QString &text);

// Rounds half to even (the suite's integer conversion) and checks the range;
// nothing when the value does not fit.
std::optional<qint16> roundToInt16(double value);
std::optional<qint32> roundToInt32(double value);

// A numeric text converted to a 32-bit integer; nothing when the text is not
// numeric or the number does not fit.
std::optional<qint32> numericTextToInt32(const QString &text);
