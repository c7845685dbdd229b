#include "data/serialdate.h"

#include <cmath>
#include <QRegularExpression>
#include <QStringList>
#include <QTime>

namespace {

constexpr qint64 SecondsPerDay = 86400;

// The serial number's whole days and the seconds into that day.
void split(double serial, qint64 *days, qint64 *seconds)
{
    double whole = std::trunc(serial);
    qint64 secs = qint64(std::llround(std::fabs(serial - whole) * SecondsPerDay));
    if (secs >= SecondsPerDay) { // rounding reached the next midnight
        secs -= SecondsPerDay;
        whole += serial < 0 ? -1 : 1;
    }
    *days = qint64(whole);
    *seconds = secs;
}

int monthFromName(const QString &word, const QLocale &locale)
{
    const QString w = word.toCaseFolded();
    for (int m = 1; m <= 12; ++m) {
        for (const QString &name :
             {locale.monthName(m, QLocale::LongFormat), locale.monthName(m, QLocale::ShortFormat),
              QLocale::c().monthName(m, QLocale::LongFormat),
              QLocale::c().monthName(m, QLocale::ShortFormat)}) {
            QString n = name.toCaseFolded();
            if (n.endsWith(u'.'))
                n.chop(1);
            if (!n.isEmpty() && w == n)
                return m;
        }
    }
    return 0;
}

int expandYear(const QString &digits)
{
    const int y = digits.toInt();
    if (digits.size() <= 2)
        return y < 30 ? 2000 + y : 1900 + y;
    return y;
}

// Order of day, month and year in the locale's short date: "dmy", "mdy" or "ymd".
QString dateOrder(const QLocale &locale)
{
    const QString f = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype d = f.indexOf(u'd'), m = f.indexOf(u'M'), y = f.indexOf(u'y');
    if (d < 0 || m < 0 || y < 0)
        return QStringLiteral("dmy");
    if (y < m && y < d)
        return QStringLiteral("ymd");
    return m < d ? QStringLiteral("mdy") : QStringLiteral("dmy");
}

std::optional<QTime> parseTime(QString t)
{
    t = t.trimmed().toUpper();
    if (t.isEmpty())
        return QTime(0, 0);
    int offset = -1;
    if (t.endsWith(u"AM") || t.endsWith(u"PM")) {
        offset = t.endsWith(u"PM") ? 12 : 0;
        t.chop(2);
        t = t.trimmed();
    }
    const QStringList parts = t.split(u':');
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    int values[3] = {0, 0, 0};
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        values[i] = parts.at(i).toInt(&ok);
        if (!ok || parts.at(i).size() > 2)
            return std::nullopt;
    }
    int h = values[0];
    if (offset >= 0) {
        if (h < 1 || h > 12)
            return std::nullopt;
        h = h % 12 + offset;
    }
    const QTime time(h, values[1], values[2]);
    return time.isValid() ? std::optional<QTime>(time) : std::nullopt;
}

} // namespace

double SerialDate::fromDate(QDate date)
{
    return double(epoch().daysTo(date));
}

double SerialDate::fromDateTime(const QDateTime &dateTime)
{
    const qint64 days = epoch().daysTo(dateTime.date());
    const QTime t = dateTime.time();
    const double fraction = double(t.hour() * 3600 + t.minute() * 60 + t.second()) / SecondsPerDay;
    // Before day 0 the time still counts forward from midnight.
    return days < 0 ? double(days) - fraction : double(days) + fraction;
}

QDate SerialDate::toDate(double serial)
{
    qint64 days = 0, seconds = 0;
    split(serial, &days, &seconds);
    return epoch().addDays(days);
}

QDateTime SerialDate::toDateTime(double serial)
{
    qint64 days = 0, seconds = 0;
    split(serial, &days, &seconds);
    return QDateTime(epoch().addDays(days), QTime(0, 0).addSecs(int(seconds)));
}

std::optional<QDateTime> SerialDate::parse(const QString &text, const QLocale &locale)
{
    QString s = text.trimmed();
    if (s.isEmpty())
        return std::nullopt;
    // A time, when there is one, starts at the first word holding a colon.
    QString timeText;
    const qsizetype colon = s.indexOf(u':');
    if (colon >= 0) {
        qsizetype start = s.lastIndexOf(u' ', colon);
        if (start < 0)
            return std::nullopt; // a time alone is not a date
        timeText = s.mid(start + 1);
        s = s.left(start).trimmed();
    } else {
        static const QRegularExpression ampm(QStringLiteral("\\s+[AaPp][Mm]$"));
        if (ampm.match(s).hasMatch())
            return std::nullopt;
    }
    const auto time = parseTime(timeText);
    if (!time)
        return std::nullopt;

    static const QRegularExpression separators(QStringLiteral("[-/.,\\s]+"));
    const QStringList parts = s.split(separators, Qt::SkipEmptyParts);
    if (parts.size() != 3)
        return std::nullopt;
    int month = 0;
    QStringList numbers;
    for (const QString &p : parts) {
        bool digits = !p.isEmpty();
        for (QChar c : p)
            digits = digits && c.isDigit();
        if (digits) {
            if (p.size() > 4)
                return std::nullopt;
            numbers << p;
        } else if (month == 0) {
            month = monthFromName(p, locale);
            if (month == 0)
                return std::nullopt;
        } else {
            return std::nullopt;
        }
    }

    int day = 0, year = 0;
    if (month != 0) {
        // With a month name the remaining numbers are day then year, unless the
        // first is plainly a year.
        if (numbers.size() != 2)
            return std::nullopt;
        const bool firstIsYear = numbers.at(0).size() > 2;
        day = numbers.at(firstIsYear ? 1 : 0).toInt();
        year = expandYear(numbers.at(firstIsYear ? 0 : 1));
    } else {
        QString order = dateOrder(locale);
        if (numbers.at(0).size() > 2)
            order = QStringLiteral("ymd"); // ISO 2010-04-01
        for (int i = 0; i < 3; ++i) {
            const QString &n = numbers.at(i);
            switch (order.at(i).unicode()) {
            case 'd':
                day = n.toInt();
                break;
            case 'm':
                month = n.toInt();
                break;
            default:
                year = expandYear(n);
                break;
            }
        }
        if (numbers.at(order.indexOf(u'y')).size() == 3)
            return std::nullopt;
    }
    const QDate date(year, month, day);
    if (!date.isValid())
        return std::nullopt;
    return QDateTime(date, *time);
}

QString SerialDate::shortDateFormat(const QLocale &locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1String("yyyy")))
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    return format;
}

QString SerialDate::toShortText(QDate date, const QLocale &locale)
{
    return locale.toString(date, shortDateFormat(locale));
}
