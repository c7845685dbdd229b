// SerialDate::parse on any text, in locales of each date order. Properties: a
// date read shows as short text that reads back as the same date, and goes
// through a serial number and back unchanged (time to the second).
#include "data/serialdate.h"
#include "fuzzcheck.h"

#include <cstdlib>
#include <ctime>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // The round trip through local time is about the arithmetic, not about
    // clocks that skip an hour.
    setenv("TZ", "UTC", 1);
    tzset();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QLocale locales[] = {QLocale(QLocale::English, QLocale::NewZealand),   // d/MM/yy
                                      QLocale(QLocale::English, QLocale::UnitedStates), // M/d/yy
                                      QLocale(QLocale::German, QLocale::Germany),       // dd.MM.yy
                                      QLocale(QLocale::Japanese, QLocale::Japan)}; // yyyy/MM/dd
    if (size == 0)
        return 0;
    const QLocale &locale = locales[data[0] % std::size(locales)];
    const QString text = fuzzText(data + 1, size - 1);

    const auto parsed = SerialDate::parse(text, locale);
    if (!parsed)
        return 0;
    fuzzCheck(parsed->isValid(), "valid", text);
    const QDate date = parsed->date();
    const QString shown = SerialDate::toShortText(date, locale);
    const auto again = SerialDate::parse(shown, locale);
    fuzzCheck(again && again->date() == date, "short text round trip", text + " -> " + shown);

    fuzzCheck(SerialDate::toDate(SerialDate::fromDate(date)) == date, "serial date round trip",
              text);
    const QDateTime back = SerialDate::toDateTime(SerialDate::fromDateTime(*parsed));
    fuzzCheck(back.date() == date && back.time() == parsed->time(), "serial time round trip",
              text + " -> " + back.toString(Qt::ISODate));
    return 0;
}
