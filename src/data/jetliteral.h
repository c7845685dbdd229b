#pragma once

#include <optional>
#include <QString>
#include <QStringView>
#include <QVariant>

// Literals as Jet writes them, read one way by the SQL translator and by the
// criteria of Recordset::findFirst. Each reader starts at text[*pos] and moves *pos
// past what it read.
namespace JetLiteral {

// "text" or 'text'; a doubled quote stands for one. nullopt when it is not closed.
std::optional<QString> readString(QStringView text, qsizetype *pos);

// #4/1/2010# (month first, as Jet SQL writes dates) or #2010-04-01#, with an
// optional time, as its serial number. nullopt when the # is not closed (*pos then
// stays) or the text between is not a date (*pos is past it).
std::optional<double> readDate(QStringView text, qsizetype *pos);

// Digits with a decimal point and an exponent (1.5E-3): the end of the number that
// starts at pos.
qsizetype numberEnd(QStringView text, qsizetype pos);

// The value of a number's text: qint64 when it is whole, else double; invalid when
// it is not a number.
QVariant numberValue(QStringView number);

} // namespace JetLiteral
