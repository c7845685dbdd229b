#pragma once

#include <optional>
#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QString>

// The data files' dates: days since 30 December 1899, the fraction of a day being
// the time. Day 0 is the zero date. Before day 0 the fraction still counts
// forward from midnight (-1.25 is 29 December 1899, 06:00).
class SerialDate
{
public:
    static QDate epoch() { return QDate(1899, 12, 30); }

    static double fromDate(QDate date);
    // The date and the wall-clock time of dateTime, whatever its time zone;
    // seconds resolution.
    static double fromDateTime(const QDateTime &dateTime);
    static QDate toDate(double serial);
    // Local wall-clock time, to the nearest second.
    static QDateTime toDateTime(double serial);

    // Reads a typed date the way the platform's date test does: day, month and
    // year in the locale's order separated by -, / or . (or blanks), two- or
    // four-digit years (00-29 are 2000s, 30-99 1900s), month names or their
    // abbreviations, ISO yyyy-mm-dd, optionally followed by a time (hh:mm[:ss],
    // with AM/PM). nullopt when it is not a valid date.
    static std::optional<QDateTime> parse(const QString &text, const QLocale &locale = QLocale());

    // The locale's short date with a four-digit year: a two-digit birth year is
    // a trap, and the suite has always shown four (en_NZ: 1/04/2010).
    static QString shortDateFormat(const QLocale &locale = QLocale());
    static QString toShortText(QDate date, const QLocale &locale = QLocale());
};
