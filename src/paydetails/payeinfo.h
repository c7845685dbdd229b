#pragma once

#include <QString>
#include <QVariant>

class Database;

// A suite-wide payroll setting: the column of the one-record table "PayeInfo"
// of db (the main data file). An empty or Null value, or a failure, gives
// defaultValue. A failure (no record, no such column) is reported to the user
// with the standard error report and not raised.
QVariant PayeInfo(Database &db, const QString &column, const QVariant &defaultValue = QVariant());

// The cashbook heading proposed for wages: the setting "WageAccount", falling
// back to the INI value. Throws CvError 13 or 6 when the stored value is not a
// 32-bit number.
qint32 wageAccount(Database &db);
