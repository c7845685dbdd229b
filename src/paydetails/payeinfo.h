#pragma once

#include <QString>
#include <QVariant>

class CvError;
class Database;

// A suite-wide payroll setting: the column of the one-record table "PayeInfo"
// of db (the main data file). An empty or Null value gives defaultValue. Throws
// CvError when there is no record (3021) or no such column (3265).
QVariant PayeInfo(Database &db, const QString &column, const QVariant &defaultValue = QVariant());

// The heading of the report of a setting that could not be read: "Error <number>
// <column>". The procedure reports it under ErrorOrigin::PayeInfo and goes on with the
// default, as the suite always has.
QString payeInfoHeading(const CvError &error, const QString &column);

// The cashbook heading proposed for wages: the setting "WageAccount", falling
// back to the INI value. Throws CvError when the setting cannot be read, 13 or 6
// when its value is not a 32-bit number.
qint32 wageAccount(Database &db);
// The same from a setting already read (the INI value when it is empty).
qint32 wageAccount(const QVariant &setting);
