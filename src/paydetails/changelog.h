#pragma once

#include <QString>
#include <QtGlobal>

// Dated lines appended to an entry's notes when a pay field changes. Each call opens the
// main data file named by Settings; a failure is reported to the user and leaves the
// notes as they were (nothing is thrown). Equal old and new texts log nothing.

// Field 2 pay rate, 3 salary (new value as currency), 4 hired, 5 finished (new value as a
// short date); other fields log nothing.
void logValueChange(qint16 field, const QString &newValue, const QString &oldValue,
                    qint32 addressId);

// "[date] <label> changed to <new value>": 0 Occupation, 1 Tax type, 2 Pay interval,
// 6 KiwiSaver enrolment type, 7 employee deduction rate, 8 employer contribution rate;
// other fields an empty label.
void logNamedFieldChange(const QString &newValue, const QString &oldValue, qint16 field,
                         qint32 addressId);

// Adds line as the last line of the entry's notes (CR LF between lines). Empty lines and
// unknown entries change nothing.
void appendToNotes(const QString &line, qint32 addressId);

// The unit of pay shown with the pay rate ("Hour", "Head", ...), shared by both hosts of
// the editor; the editor sets it when it captions the pay rate label.
QString currentUnitOfPay();
void setCurrentUnitOfPay(const QString &unit);
