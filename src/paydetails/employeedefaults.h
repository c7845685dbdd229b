#pragma once

#include <QtGlobal>

class Database;

// Starting values of a new employee row. Each returns the first row of its
// reference table, adding one usable row when the table is empty, so a fresh
// wage file never leaves a new employee without an occupation, tax type or pay
// interval. A database error is reported and gives 0.

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
// when there is none or on a reported error.
qint32 KiwiSaverDeductID(Database &wage, qint32 employeeId);

// Whether the named enrolment type makes the employee a KiwiSaver member
// (KSMember non-zero). A name with no row is an error: reported, false.
bool IsKiwiSaverMemberType(Database &wage, const QString &enrolType);
