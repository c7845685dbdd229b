#include "data/jetliteral.h"

#include "data/serialdate.h"

#include <QLocale>

namespace JetLiteral {

std::optional<QString> readString(QStringView text, qsizetype *pos)
{
    const QChar quote = text.at(*pos);
    QString value;
    for (qsizetype i = *pos + 1; i < text.size(); ++i) {
        if (text.at(i) != quote) {
            value += text.at(i);
        } else if (i + 1 < text.size() && text.at(i + 1) == quote) {
            value += quote;
            ++i;
        } else {
            *pos = i + 1;
            return value;
        }
    }
    return std::nullopt;
}

std::optional<double> readDate(QStringView text, qsizetype *pos)
{
    const qsizetype close = text.indexOf(u'#', *pos + 1);
    if (close < 0)
        return std::nullopt;
    const QStringView content = text.mid(*pos + 1, close - *pos - 1);
    *pos = close + 1;
    static const QLocale us(QLocale::English, QLocale::UnitedStates);
    const auto dt = SerialDate::parse(content.toString(), us);
    if (!dt)
        return std::nullopt;
    return SerialDate::fromDateTime(*dt);
}

qsizetype numberEnd(QStringView text, qsizetype i)
{
    const qsizetype n = text.size();
    while (i < n && (text.at(i).isDigit() || text.at(i) == u'.'))
        ++i;
    if (i < n && (text.at(i) == u'e' || text.at(i) == u'E')) {
        qsizetype j = i + 1;
        if (j < n && (text.at(j) == u'+' || text.at(j) == u'-'))
            ++j;
        if (j < n && text.at(j).isDigit()) {
            i = j;
            while (i < n && text.at(i).isDigit())
                ++i;
        }
    }
    return i;
}

QVariant numberValue(QStringView number)
{
    bool ok = false;
    const qint64 whole = number.toLongLong(&ok);
    if (ok)
        return whole;
    const double real = number.toDouble(&ok);
    return ok ? QVariant(real) : QVariant();
}

} // namespace JetLiteral
