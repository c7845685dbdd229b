#include "core/numerictext.h"

#include <cmath>
#include <limits>

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

int digitIn(QChar c, int base)
{
    int digit = -1;
    const QChar upper = c.toUpper();
    if (c >= u'0' && c <= u'9')
        digit = c.unicode() - u'0';
    else if (upper >= u'A' && upper <= u'F')
        digit = upper.unicode() - u'A' + 10;
    return digit < base ? digit : -1;
}

// &Hxx or &Oxx: the radix forms. Returns nothing for any other text.
std::optional<double> radixValue(const QString &text, bool wholeText)
{
    if (text.size() < 2 || text[0] != u'&')
        return std::nullopt;
    const QChar kind = text[1].toUpper();
    const int base = kind == u'H' ? 16 : kind == u'O' ? 8 : 0;
    if (base == 0)
        return std::nullopt;
    qint64 value = 0;
    qsizetype i = 2;
    for (; i < text.size(); ++i) {
        const int digit = digitIn(text[i], base);
        if (digit < 0)
            break;
        value = value * base + digit;
        if (value > 0xFFFFFFFFLL)
            return std::nullopt;
    }
    if (i == 2 || (wholeText && i != text.size()))
        return wholeText ? std::nullopt : std::optional<double>(0.0);
    // Like the 16- and 32-bit radix literals, the top bit makes it negative.
    if ((base == 16 ? i - 2 <= 4 : value <= 0xFFFF) && value > 0x7FFF)
        value -= 0x10000;
    else if (value > 0x7FFFFFFF)
        value -= 0x100000000LL;
    return double(value);
}

// Reads digits (with grouping commas when allowed), a decimal part and an
// exponent from pos; returns the plain-C text of the number read.
QString readMantissa(const QString &text, qsizetype &pos, bool allowGrouping)
{
    QString out;
    bool digits = false;
    while (pos < text.size()) {
        const QChar c = text[pos];
        if (c.isDigit() && c.unicode() < 128) {
            out += c;
            digits = true;
        } else if (c == u',' && allowGrouping && digits) {
            // grouping comma: dropped
        } else {
            break;
        }
        ++pos;
    }
    if (pos < text.size() && text[pos] == u'.') {
        ++pos;
        out += u'.';
        while (pos < text.size() && text[pos].isDigit() && text[pos].unicode() < 128) {
            out += text[pos++];
            digits = true;
        }
    }
    if (!digits)
        return QString();
    if (pos < text.size() && (text[pos].toUpper() == u'E' || text[pos].toUpper() == u'D')) {
        qsizetype p = pos + 1;
        QString exponent = "e";
        if (p < text.size() && (text[p] == u'+' || text[p] == u'-'))
            exponent += text[p++];
        const qsizetype start = p;
        while (p < text.size() && text[p].isDigit() && text[p].unicode() < 128)
            exponent += text[p++];
        if (p > start) {
            out += exponent;
            pos = p;
        }
    }
    return out;
}

} // namespace

std::optional<double> numericValue(const QString &input)
{
    QString text = input;
    while (!text.isEmpty() && isBlank(text.front()))
        text.remove(0, 1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    if (text.isEmpty())
        return std::nullopt;
    if (text[0] == u'&')
        return radixValue(text, true);

    bool negative = false;
    bool parenthesised = false;
    bool signSeen = false;
    bool currencySeen = false;
    qsizetype pos = 0;
    auto skipBlanks = [&] {
        while (pos < text.size() && isBlank(text[pos]))
            ++pos;
    };
    // Leading "(", sign and currency symbol, in any order, each at most once.
    for (bool more = true; more && pos < text.size();) {
        const QChar c = text[pos];
        if (c == u'(' && !parenthesised && !signSeen) {
            parenthesised = true;
        } else if ((c == u'-' || c == u'+') && !signSeen) {
            signSeen = true;
            negative = c == u'-';
        } else if (c == u'$' && !currencySeen) {
            currencySeen = true;
        } else {
            more = false;
            continue;
        }
        ++pos;
        skipBlanks();
    }
    const QString mantissa = readMantissa(text, pos, true);
    if (mantissa.isEmpty())
        return std::nullopt;
    skipBlanks();
    if (pos < text.size() && text[pos] == u'$' && !currencySeen) {
        currencySeen = true;
        ++pos;
        skipBlanks();
    }
    if (pos < text.size() && (text[pos] == u'-' || text[pos] == u'+') && !signSeen) {
        signSeen = true;
        negative = text[pos] == u'-';
        ++pos;
        skipBlanks();
    }
    if (parenthesised) {
        if (pos >= text.size() || text[pos] != u')' || signSeen)
            return std::nullopt;
        negative = true;
        ++pos;
    }
    if (pos != text.size())
        return std::nullopt;
    bool ok = false;
    const double value = mantissa.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return negative ? -value : value;
}

double leadingNumber(const QString &input)
{
    QString text;
    text.reserve(input.size());
    for (QChar c : input) {
        if (c != u' ' && c != u'\t' && c != u'\n')
            text += c;
    }
    if (text.startsWith(u'&'))
        return radixValue(text, false).value_or(0.0);
    qsizetype pos = 0;
    bool negative = false;
    if (pos < text.size() && (text[pos] == u'-' || text[pos] == u'+'))
        negative = text[pos++] == u'-';
    const QString mantissa = readMantissa(text, pos, false);
    const double value = mantissa.isEmpty() ? 0.0 : mantissa.toDouble();
    return negative ? -value : value;
}

std::optional<qint16> roundToInt16(double value)
{
    const double r = std::nearbyint(value); // the default rounding mode is half to even
    if (!(r >= std::numeric_limits<qint16>::min() && r <= std::numeric_limits<qint16>::max()))
        return std::nullopt;
    return qint16(r);
}

std::optional<qint32> roundToInt32(double value)
{
    const double r = std::nearbyint(value);
    if (!(r >= std::numeric_limits<qint32>::min() && r <= std::numeric_limits<qint32>::max()))
        return std::nullopt;
    return qint32(r);
}

std::optional<qint32> numericTextToInt32(const QString &text)
{
    const std::optional<double> value = numericValue(text);
    return value ? roundToInt32(*value) : std::nullopt;
}
