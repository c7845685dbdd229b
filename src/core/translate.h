#pragma once

#include <QString>
#include <QVariantList>

// Fills the placeholders "|0|", "|1|", ... of text with values[0],
// values[1], ...; a Null value shows as "...". A bar without a closing bar
// after it stays in the text. An index outside values throws CvError 9.
QString Translate(const QString &text, const QVariantList &values);
