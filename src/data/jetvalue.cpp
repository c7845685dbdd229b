#include "data/jetvalue.h"

#include "core/cverror.h"
#include "data/money.h"
#include "data/serialdate.h"

#include <cmath>
#include <limits>
#include <mutex>
#include <QDate>
#include <QDateTime>
#include <QMetaType>

namespace {

const char *const Source = "Field";

[[noreturn]] void mismatch(const QVariant &value, const FieldInfo &field)
{
    throw CvError(CvError::TypeMismatch, Source,
                  QStringLiteral("Type mismatch: '%1' cannot be stored in the %2 field %3.")
                      .arg(value.toString(), jetTypeName(field.type), field.name));
}

[[noreturn]] void overflow(const FieldInfo &field)
{
    throw CvError(
        CvError::Overflow, Source,
        QStringLiteral("Overflow: the value is too large for the field %1.").arg(field.name));
}

void registerConverters()
{
    static std::once_flag once;
    std::call_once(once, [] {
        QMetaType::registerConverter<Money, QString>(
            [](const Money &m) { return m.toPlainString(); });
        QMetaType::registerConverter<Money, double>(&Money::toDouble);
    });
}

bool isText(const QVariant &v)
{
    const int id = v.metaType().id();
    return id == QMetaType::QString || id == QMetaType::QByteArray || id == QMetaType::QChar;
}

bool integerType(const QVariant &v)
{
    switch (v.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool realType(const QVariant &v)
{
    const int id = v.metaType().id();
    return id == QMetaType::Double || id == QMetaType::Float;
}

// Numbers as Jet reads them from text: plain or currency-formatted amounts.
std::optional<Money> numberFromText(const QString &text, const QLocale &locale)
{
    return Money::parse(text, locale);
}

// Any value as an exact amount when it is a number (or numeric text).
std::optional<Money> asAmount(const QVariant &value, const QLocale &locale)
{
    if (value.metaType() == QMetaType::fromType<Money>())
        return value.value<Money>();
    if (value.metaType().id() == QMetaType::Bool)
        return Money::fromUnits(value.toBool() ? -1 : 0);
    if (integerType(value)) {
        const qint64 v = value.toLongLong();
        if (v > std::numeric_limits<qint64>::max() / Money::Scale ||
            v < std::numeric_limits<qint64>::min() / Money::Scale)
            return std::nullopt;
        return Money::fromUnits(v);
    }
    if (realType(value))
        return Money::fromDouble(value.toDouble());
    if (isText(value))
        return numberFromText(value.toString(), locale);
    return std::nullopt;
}

// A whole number from an amount, halves to even as Jet's integer fields do.
qint64 roundToEven(Money m)
{
    const qint64 s = m.scaled();
    qint64 q = s / Money::Scale;
    const qint64 r = s % Money::Scale;
    const qint64 twice = 2 * (r < 0 ? -r : r);
    if (twice > Money::Scale || (twice == Money::Scale && (q % 2) != 0))
        q += s < 0 ? -1 : 1;
    return q;
}

QVariant toInteger(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    qint64 v = 0;
    if (integerType(value)) {
        v = value.toLongLong();
    } else if (realType(value)) {
        const double d = value.toDouble();
        if (!std::isfinite(d))
            mismatch(value, field);
        if (std::fabs(d) > 9.2e18)
            overflow(field);
        v = qint64(std::nearbyint(d)); // the default rounding mode: halves to even
    } else {
        const auto amount = asAmount(value, locale);
        if (!amount)
            mismatch(value, field);
        v = roundToEven(*amount);
    }
    const qint64 lo = field.type == JetType::Short ? -32768 : std::numeric_limits<qint32>::min();
    const qint64 hi = field.type == JetType::Short ? 32767 : std::numeric_limits<qint32>::max();
    if (v < lo || v > hi)
        overflow(field);
    return QVariant(v);
}

QVariant toReal(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    double d = 0;
    if (integerType(value) || realType(value)) {
        d = value.toDouble();
    } else if (value.metaType() == QMetaType::fromType<Money>()) {
        d = value.value<Money>().toDouble();
    } else if (value.metaType().id() == QMetaType::Bool) {
        d = value.toBool() ? -1 : 0;
    } else if (isText(value)) {
        bool ok = false;
        d = locale.toDouble(value.toString().trimmed(), &ok);
        if (!ok) {
            const auto amount = numberFromText(value.toString(), locale);
            if (!amount)
                mismatch(value, field);
            d = amount->toDouble();
        }
    } else {
        mismatch(value, field);
    }
    if (!std::isfinite(d))
        mismatch(value, field);
    if (field.type == JetType::Single) {
        if (std::fabs(d) > double(std::numeric_limits<float>::max()))
            overflow(field);
        d = double(float(d)); // what a single-precision column keeps
    }
    return QVariant(d);
}

QVariant toDateTime(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    switch (value.metaType().id()) {
    case QMetaType::QDate:
        return SerialDate::fromDate(value.toDate());
    case QMetaType::QDateTime:
        return SerialDate::fromDateTime(value.toDateTime());
    default:
        break;
    }
    if (integerType(value) || realType(value))
        return QVariant(value.toDouble());
    if (isText(value)) {
        if (const auto dt = SerialDate::parse(value.toString(), locale))
            return SerialDate::fromDateTime(*dt);
    }
    mismatch(value, field);
}

QVariant toYesNo(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    if (value.metaType().id() == QMetaType::Bool)
        return JetValue::yesNo(value.toBool());
    if (isText(value)) {
        const QString t = value.toString().trimmed().toCaseFolded();
        if (t == u"true" || t == u"yes" || t == u"on")
            return JetValue::yesNo(true);
        if (t == u"false" || t == u"no" || t == u"off")
            return JetValue::yesNo(false);
    }
    if (realType(value))
        return JetValue::yesNo(value.toDouble() != 0);
    const auto amount = asAmount(value, locale);
    if (!amount)
        mismatch(value, field);
    return JetValue::yesNo(amount->scaled() != 0);
}

QVariant toText(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    QString text;
    if (value.metaType().id() == QMetaType::Bool)
        text = value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    else if (value.metaType() == QMetaType::fromType<Money>())
        text = value.value<Money>().toPlainString(locale);
    else if (value.metaType().id() == QMetaType::QDate)
        text = locale.toString(value.toDate(), QLocale::ShortFormat);
    else if (realType(value))
        text = QString::number(value.toDouble(), 'g', 15);
    else if (value.canConvert<QString>())
        text = value.toString();
    else
        mismatch(value, field);
    if (field.type == JetType::Text && field.size > 0 && text.size() > field.size) {
        throw CvError(CvError::FieldTooSmall, Source,
                      QStringLiteral("The field is too small to accept the amount of data you "
                                     "attempted to add. Try inserting or pasting less data."));
    }
    return QVariant(text);
}

} // namespace

QVariant JetValue::fromStorage(const QVariant &stored, JetType type)
{
    if (stored.isNull())
        return QVariant();
    switch (type) {
    case JetType::Currency: {
        registerConverters();
        if (realType(stored)) // a value written by other means than this layer
            return QVariant::fromValue(
                Money::fromDouble(stored.toDouble() / Money::Scale).value_or(Money()));
        return QVariant::fromValue(Money::fromScaled(stored.toLongLong()));
    }
    case JetType::DateTime:
        return SerialDate::toDateTime(stored.toDouble());
    case JetType::YesNo:
        return isTrue(stored);
    default:
        return stored;
    }
}

QVariant JetValue::toStorage(const QVariant &value, const FieldInfo &field, const QLocale &locale)
{
    if (!value.isValid() || value.isNull())
        return QVariant();
    switch (field.type) {
    case JetType::AutoNumber:
    case JetType::Long:
    case JetType::Short:
        return toInteger(value, field, locale);
    case JetType::Currency: {
        const auto amount = asAmount(value, locale);
        if (!amount) {
            if (realType(value) && std::isfinite(value.toDouble()))
                overflow(field);
            mismatch(value, field);
        }
        return QVariant(amount->scaled());
    }
    case JetType::DateTime:
        return toDateTime(value, field, locale);
    case JetType::YesNo:
        return toYesNo(value, field, locale);
    case JetType::Single:
    case JetType::Double:
        return toReal(value, field, locale);
    case JetType::Text:
    case JetType::Memo:
        return toText(value, field, locale);
    case JetType::Unknown:
        break;
    }
    if (value.metaType() == QMetaType::fromType<Money>())
        return QVariant(value.value<Money>().scaled());
    return value;
}

bool JetValue::isTrue(const QVariant &stored)
{
    if (stored.isNull())
        return false;
    if (stored.metaType().id() == QMetaType::Bool)
        return stored.toBool();
    if (isText(stored)) {
        const QString t = stored.toString().trimmed().toCaseFolded();
        if (t == u"true" || t == u"yes")
            return true;
        bool ok = false;
        const double d = t.toDouble(&ok);
        return ok && d != 0;
    }
    return stored.toDouble() != 0;
}

QVariant JetValue::toParameter(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return qint64(yesNo(value.toBool()));
    case QMetaType::QDate:
        return SerialDate::fromDate(value.toDate());
    case QMetaType::QDateTime:
        return SerialDate::fromDateTime(value.toDateTime());
    default:
        if (value.metaType() == QMetaType::fromType<Money>())
            return value.value<Money>().scaled();
        return value;
    }
}

bool JetValue::isInteger(const QVariant &value)
{
    return integerType(value);
}

bool JetValue::isReal(const QVariant &value)
{
    return realType(value);
}
