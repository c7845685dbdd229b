// Money::parse on any text, in locales with either decimal convention.
// Properties: what parses formats and parses back; the plain form exactly,
// the currency form within the half cent it rounds.
#include "data/money.h"
#include "fuzzcheck.h"

#include <limits>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QLocale locales[] = {QLocale(QLocale::English, QLocale::NewZealand),
                                      QLocale(QLocale::English, QLocale::Australia),
                                      QLocale(QLocale::German, QLocale::Germany),
                                      QLocale(QLocale::French, QLocale::France)};
    if (size == 0)
        return 0;
    const QLocale &locale = locales[data[0] % std::size(locales)];
    const QString text = fuzzText(data + 1, size - 1);

    const auto money = Money::parse(text, locale);
    if (!money)
        return 0;
    const qint64 v = money->scaled();
    const QString plain = money->toPlainString(locale);
    fuzzCheck(Money::parse(plain, locale) == money, "plain round trip", text + " -> " + plain);

    // Rounding to cents can step past the largest amount; below that it must read back.
    constexpr qint64 halfCent = Money::Scale / 200;
    if (v > std::numeric_limits<qint64>::min() + halfCent &&
        v < std::numeric_limits<qint64>::max() - halfCent) {
        const QString shown = money->toString(locale);
        const auto back = Money::parse(shown, locale);
        fuzzCheck(back && qAbs(back->scaled() - v) <= halfCent, "currency round trip",
                  text + " -> " + shown);
    }
    return 0;
}
