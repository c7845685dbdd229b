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

// "[date] Tax code changed to <new value>" (the typed tax code box, beside the tax type
// list): a tax code is what the tax office checks first. None when unchanged.
QString taxCodeChangeLine(const QString &newValue, const QString &oldValue);

// Who made a change and why, after the line: "<line> (by Mere)", "<line> (by Mere: annual
// review)"; without a name "<line> (annual review)"; neither, or an empty line: unchanged. At
// the end, so every line still opens with its date and what changed, as the older lines do.
// Both texts are put on one line (see oneLogLine) and cut to their bounds.
QString signedLine(const QString &line, const QString &who, const QString &why);

// Typed text as a log line keeps it: line breaks, tabs and other control characters become
// single blanks, ends are trimmed, and it is cut at maxLength characters.
QString oneLogLine(const QString &text, qsizetype maxLength);

constexpr qsizetype kMaxLogReason = 120;
constexpr qsizetype kMaxLogUser = 40;

// The question asked for a reason when the field's change is logged: pay rate, salary
// and tax code (text fields 2, 3 and 6) and tax type (list 1); empty for the others.
QString reasonPrompt(qint16 field, bool list);

// Adds the lines, in order, after the entry's notes (CR LF between lines), on the
// connection of the save that stores the changes they tell of. Empty lines are skipped;
// an unknown entry changes nothing. Throws CvError.
void appendToNotes(Database &farm, const QStringList &lines, qint32 addressId);

// The unit of pay shown with the pay rate ("Hour", "Head", ...), shared by both hosts of
// the editor; the editor sets it when it captions the pay rate label.
QString currentUnitOfPay();
void setCurrentUnitOfPay(const QString &unit);
