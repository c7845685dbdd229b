#pragma once

#include <limits>
#include <optional>
#include <QLocale>
#include <QMetaType>
#include <QString>
#include <QtGlobal>

// An amount of money as a whole number of ten-thousandths, the way the data files
// store a currency column: 25.10 is 251000. No floating point in the arithmetic.
class Money
{
public:
    static constexpr qint64 Scale = 10000;

    constexpr Money() = default;
    static constexpr Money fromScaled(qint64 tenThousandths) { return Money(tenThousandths); }
    static constexpr Money fromUnits(qint64 units) { return Money(units * Scale); }
    // The same for a whole number that may be out of range (nullopt then).
    static constexpr std::optional<Money> fromWholeUnits(qint64 units)
    {
        constexpr qint64 limit = std::numeric_limits<qint64>::max() / Scale;
        return units > limit || units < -limit ? std::nullopt
                                               : std::optional<Money>(Money(units * Scale));
    }
    // Rounds half away from zero at the fourth decimal; nullopt when out of range.
    static std::optional<Money> fromDouble(double value);

    // Reads a plain or currency-formatted amount in the locale's conventions:
    // "25", " 25.5", "1,234.50", "$1,234.50", "-$1,234.50", "($1,234.50)".
    // Digits beyond the fourth decimal round half away from zero. nullopt when
    // the text is not an amount or is out of range.
    static std::optional<Money> parse(const QString &text, const QLocale &locale = QLocale());

    constexpr qint64 scaled() const { return m_scaled; }
    double toDouble() const;

    // The locale's currency format with its usual number of decimals ("$25.00",
    // "-$1,234.50"); the cents round half away from zero.
    QString toString(const QLocale &locale = QLocale()) const;
    // A plain number with as many decimals as needed and no grouping ("25.1").
    QString toPlainString(const QLocale &locale = QLocale()) const;

    constexpr bool operator==(const Money &) const = default;
    constexpr auto operator<=>(const Money &) const = default;
    constexpr Money operator+(Money o) const { return Money(m_scaled + o.m_scaled); }
    constexpr Money operator-(Money o) const { return Money(m_scaled - o.m_scaled); }
    constexpr Money operator-() const { return Money(-m_scaled); }

private:
    constexpr explicit Money(qint64 scaled) : m_scaled(scaled) {}
    qint64 m_scaled = 0;
};

Q_DECLARE_METATYPE(Money)
