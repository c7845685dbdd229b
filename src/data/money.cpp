#include "data/money.h"

#include <cmath>
#include <limits>

namespace {

// Reads "1,234.5678" (grouping allowed before the decimal point only) as a count of
// ten-thousandths, rounding half away from zero at the fourth decimal.
std::optional<quint64> readScaled(QStringView s, QChar point, QChar group)
{
    constexpr quint64 limit = quint64(std::numeric_limits<qint64>::max());
    quint64 whole = 0;
    quint64 fraction = 0;
    int fractionDigits = 0;
    bool roundUp = false;
    bool inFraction = false;
    bool anyDigit = false;
    for (qsizetype i = 0; i < s.size(); ++i) {
        const QChar c = s.at(i);
        if (c >= u'0' && c <= u'9') {
            const int d = c.unicode() - u'0';
            anyDigit = true;
            if (!inFraction) {
                if (whole > (limit / Money::Scale - d) / 10)
                    return std::nullopt;
                whole = whole * 10 + d;
            } else if (fractionDigits < 4) {
                fraction = fraction * 10 + d;
                ++fractionDigits;
            } else if (fractionDigits == 4) {
                roundUp = d >= 5; // only the first dropped digit decides
                ++fractionDigits;
            }
        } else if (c == point && !inFraction) {
            inFraction = true;
        } else if (c == group && !inFraction && anyDigit) {
            continue;
        } else {
            return std::nullopt;
        }
    }
    if (!anyDigit)
        return std::nullopt;
    for (int i = fractionDigits; i < 4; ++i)
        fraction *= 10;
    quint64 scaled = whole * Money::Scale + fraction + (roundUp ? 1 : 0);
    if (scaled > limit)
        return std::nullopt;
    return scaled;
}

quint64 magnitude(qint64 v)
{
    return v < 0 ? quint64(0) - quint64(v) : quint64(v);
}

// Removes one occurrence of any of the given marks from the start (or end) of s,
// skipping blanks; returns which mark was removed, or -1.
int takeMark(QString &s, const QStringList &marks, bool atEnd)
{
    s = s.trimmed();
    for (int i = 0; i < marks.size(); ++i) {
        const QString &m = marks.at(i);
        if (m.isEmpty())
            continue;
        if (!atEnd && s.startsWith(m)) {
            s.remove(0, m.size());
            return i;
        }
        if (atEnd && s.endsWith(m)) {
            s.chop(m.size());
            return i;
        }
    }
    return -1;
}

} // namespace

std::optional<Money> Money::fromDouble(double value)
{
    if (!std::isfinite(value) || std::fabs(value) >= 9.2e14)
        return std::nullopt;
    // Through decimal text, so that 1.00005 rounds as written rather than as stored.
    const QString text = QString::number(std::fabs(value), 'f', 6);
    const auto scaled = readScaled(text, u'.', u',');
    if (!scaled)
        return std::nullopt;
    return Money(value < 0 ? -qint64(*scaled) : qint64(*scaled));
}

std::optional<Money> Money::parse(const QString &text, const QLocale &locale)
{
    QString s = text.trimmed();
    bool negative = false;
    if (s.startsWith(u'(') && s.endsWith(u')')) {
        negative = true;
        s = s.mid(1, s.size() - 2);
    }
    const QStringList signs{locale.negativeSign(), QStringLiteral("-"), locale.positiveSign(),
                            QStringLiteral("+")};
    const QStringList symbols{locale.currencySymbol(QLocale::CurrencySymbol), QStringLiteral("$")};
    int sign = -1;
    bool symbol = false;
    // Sign and symbol may come in either order, before or after the number.
    for (bool atEnd : {false, true}) {
        for (int round = 0; round < 2; ++round) {
            if (sign < 0) {
                sign = takeMark(s, signs, atEnd);
                if (sign >= 0)
                    continue;
            }
            if (!symbol)
                symbol = takeMark(s, symbols, atEnd) >= 0;
        }
    }
    if (sign >= 0 && sign < 2) {
        if (negative)
            return std::nullopt;
        negative = true;
    }
    const QString point = locale.decimalPoint();
    const QString group = locale.groupSeparator();
    const auto scaled = readScaled(s.trimmed(), point.isEmpty() ? u'.' : point.at(0),
                                   group.isEmpty() ? u',' : group.at(0));
    if (!scaled)
        return std::nullopt;
    return Money(negative ? -qint64(*scaled) : qint64(*scaled));
}

double Money::toDouble() const
{
    return double(m_scaled) / double(Scale);
}

QString Money::toString(const QLocale &locale) const
{
    // The locale's own currency layout, taken from how it writes one unit.
    const QString point = locale.decimalPoint();
    auto layout = [&](double unit, QString *prefix, QString *suffix) {
        const QString t = locale.toCurrencyString(unit);
        qsizetype first = -1, last = -1;
        for (qsizetype i = 0; i < t.size(); ++i) {
            if (t.at(i).isDigit()) {
                if (first < 0)
                    first = i;
                last = i;
            }
        }
        if (first < 0)
            return 2;
        *prefix = t.left(first);
        *suffix = t.mid(last + 1);
        const QString number = t.mid(first, last - first + 1);
        const qsizetype p = number.indexOf(point);
        return p < 0 ? 0 : int(number.size() - p - point.size());
    };
    QString prefix, suffix;
    const int decimals = qBound(0, layout(m_scaled < 0 ? -1.0 : 1.0, &prefix, &suffix), 4);

    quint64 unit = 1;
    for (int i = decimals; i < 4; ++i)
        unit *= 10;
    const quint64 m = magnitude(m_scaled);
    quint64 q = m / unit;
    if ((m % unit) * 2 >= unit)
        ++q;
    quint64 pow10 = 1;
    for (int i = 0; i < decimals; ++i)
        pow10 *= 10;
    QString number = locale.toString(qulonglong(q / pow10));
    if (decimals > 0)
        number += point + QString::number(q % pow10).rightJustified(decimals, u'0');
    return prefix + number + suffix;
}

QString Money::toPlainString(const QLocale &locale) const
{
    const quint64 m = magnitude(m_scaled);
    QString text = QString::number(m / Scale);
    QString fraction = QString::number(m % Scale).rightJustified(4, u'0');
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    if (!fraction.isEmpty())
        text += locale.decimalPoint() + fraction;
    return m_scaled < 0 ? locale.negativeSign() + text : text;
}
