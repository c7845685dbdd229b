#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

// Text folded for case and accents, so that "Ōpōtiki" sorts and matches with "opotiki".
// The fold is what the name list orders by and what searches compare: accents and other
// combining marks go (decomposition, marks dropped), a few letters that do not decompose
// become their base letters (ø o, æ ae, ß ss, ł l, đ d, þ th), and the rest is case-folded.
// An ASCII text folds to its ASCII lower case, which is the order SQLite's NOCASE and the
// server's citext under "C" give; so ASCII names keep the order their index gives them.
namespace FoldedText {

bool isAscii(QStringView text);
bool isAscii(QByteArrayView utf8);
QString fold(QStringView text);
// Orders folded texts by code point (UTF-8 byte order, as both backends compare).
int compare(QStringView a, QStringView b);
// compare(fold(ascii), folded) for an ASCII text, without building the fold.
int compareAscii(QStringView ascii, QStringView folded);

} // namespace FoldedText
