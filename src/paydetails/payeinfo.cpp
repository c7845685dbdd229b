#include "paydetails/payeinfo.h"

#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "messages/errorreport.h"
#include "core/numerictext.h"
#include "config/suiteconfig.h"

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
    QVariant value;
    std::optional<CvError> lastError;
    try {
        Recordset rs(db, "PayeInfo", Recordset::Snapshot);
        try {
            // The column is read even at the end, so an empty table is an error
            // too, not a silent default.
            const bool atEnd = rs.eof();
            const QVariant stored = rs.value(column);
            if (!atEnd && stored.isValid())
                value = stored;
        } catch (const CvError &e) {
            lastError = e;
        }
        rs.close();
    } catch (const CvError &e) {
        lastError = e;
    }
    if (isEmptyValue(value))
        value = defaultValue;
    if (lastError) {
        showErrorReport(*lastError, ErrorOrigin::PayeInfo,
                        "Error " + QString::number(lastError->number()) + u' ' + column);
    }
    return value;
}

qint32 wageAccount(Database &db)
{
    return toInt32(PayeInfo(db, "WageAccount", iniWageAccount()));
}
