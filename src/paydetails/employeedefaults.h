#pragma once

#include <QLatin1String>
#include <QtGlobal>

class Database;

// The origins under which a procedure reports a look-up below that failed, before it goes on
// with 0 (or not a member).
namespace ErrorOrigin {
inline constexpr QLatin1String DefaultEmployeeTypeID(") was generated in DefaultEmployeeTypeID");
inline constexpr QLatin1String DefaultTaxTypeID(") was generated in DefaultTaxTypeID");
inline constexpr QLatin1String DefaultPayIntervalID(") was generated in DefaultPayIntervalID");
inline constexpr QLatin1String KiwiSaverDeductID(") was generated in KiwiSaverDeductID");
inline constexpr QLatin1String IsKiwiSaverMemberType(") was generated in IsKiwiSaverMemberType");
} // namespace ErrorOrigin

// Starting values of a new employee row. Each returns the first row of its
// reference table, adding one usable row when the table is empty, so a fresh
// wage file never leaves a new employee without an occupation, tax type or pay
// interval. A database error throws CvError.

// EmployeeAwardType's first row as stored; seeds "Shearer" paid by "Head".
qint32 DefaultEmployeeTypeID(Database &wage);

// The tax type of the country (or of every country, CountryPhone 0) with the
// lowest Order; seeds "General" with Order 0.
qint32 DefaultTaxTypeID(Database &wage);
qint32 DefaultTaxTypeID(Database &wage, qint32 countryCode);

// PayInterval's first row as stored; seeds "Weekly", 7 days, 52.14 pays a year,
// Order 1.
qint32 DefaultPayIntervalID(Database &wage);

// The DeductID of the employee's KiwiSaver deduction (TaxName "kiwisaver"), 0
// when there is none.
qint32 KiwiSaverDeductID(Database &wage, qint32 employeeId);

// Whether the named enrolment type makes the employee a KiwiSaver member
// (KSMember non-zero). A name with no row is an error: CvError 3021.
bool IsKiwiSaverMemberType(Database &wage, const QString &enrolType);
