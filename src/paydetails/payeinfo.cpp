#include "paydetails/payeinfo.h"

#include "config/suiteconfig.h"
#include "core/cverror.h"
#include "core/numerictext.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"

#include <optional>

namespace {

bool isEmptyValue(const QVariant &value)
{
    return !value.isValid() || (value.typeId() == QMetaType::QString && value.toString().isEmpty());
}

// The 32-bit conversion of a stored value: Type mismatch for what is not a
// number, Overflow for a number out of range.
qint32 toInt32(const QVariant &value)
{
    std::optional<double> number;
    switch (value.typeId()) {
    case QMetaType::Bool:
        number = value.toBool() ? -1 : 0;
        break;
    case QMetaType::QString:
        number = numericValue(value.toString());
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        number = value.toDouble();
        break;
    default:
        if (value.canConvert<Money>())
            number = value.value<Money>().toDouble();
    }
    if (!number)
        throw CvError(CvError::TypeMismatch, "wageAccount", "Type mismatch");
    const std::optional<qint32> rounded = roundToInt32(*number);
    if (!rounded)
        throw CvError(CvError::Overflow, "wageAccount", "Overflow");
    return *rounded;
}

} // namespace

QVariant PayeInfo(Database &db, const QString &column, const QVariant &defaultValue)
{
    Recordset rs(db, "PayeInfo", Recordset::Snapshot);
    // The column is read even at the end, so an empty table is an error too, not a silent
    // default.
    const bool atEnd = rs.eof();
    const QVariant stored = rs.value(column);
    const QVariant value = !atEnd && stored.isValid() ? stored : QVariant();
    return isEmptyValue(value) ? defaultValue : value;
}

QString payeInfoHeading(const CvError &error, const QString &column)
{
    return "Error " + QString::number(error.number()) + u' ' + column;
}

qint32 wageAccount(Database &db)
{
    return wageAccount(PayeInfo(db, "WageAccount", iniWageAccount()));
}

qint32 wageAccount(const QVariant &setting)
{
    return toInt32(isEmptyValue(setting) ? QVariant(iniWageAccount()) : setting);
}
