#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

class Database;

// Dated lines for an entry's notes when a pay field changes. A line is composed when
// the field is left, with that day's date, and written with the save that stores the
// change (appendToNotes inside the save's transaction), so the notes never tell of a
// change that was not stored. Equal old and new texts give no line (an empty string).

// Field 2 pay rate, 3 salary (new value as currency), 4 hired, 5 finished (new value as a
// short date); other fields give none.
QString valueChangeLine(qint16 field, const QString &newValue, const QString &oldValue);

// "[date] <label> changed to <new value>": 0 Occupation, 1 Tax type, 2 Pay interval,
// 6 KiwiSaver enrolment type, 7 employee deduction rate, 8 employer contribution rate;
// other fields an empty label.
QString namedFieldChangeLine(const QString &newValue, const QString &oldValue, qint16 field);

// Adds the lines, in order, after the entry's notes (CR LF between lines), on the
// connection of the save that stores the changes they tell of. Empty lines are skipped;
// an unknown entry changes nothing. Throws CvError.
void appendToNotes(Database &farm, const QStringList &lines, qint32 addressId);

// The unit of pay shown with the pay rate ("Hour", "Head", ...), shared by both hosts of
// the editor; the editor sets it when it captions the pay rate label.
QString currentUnitOfPay();
void setCurrentUnitOfPay(const QString &unit);
