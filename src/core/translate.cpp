#include "core/translate.h"

#include "core/cverror.h"
#include "core/numerictext.h"

namespace {

QString valueText(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("...");
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    return value.toString();
}

} // namespace

QString Translate(const QString &text, const QVariantList &values)
{
    QString result;
    qsizetype i = 0;
    while (i < text.size()) {
        if (text[i] != u'|') {
            result += text[i++];
            continue;
        }
        // The index is whatever number the rest of the text starts with.
        const std::optional<qint16> index = roundToInt16(leadingNumber(text.mid(i + 1)));
        if (!index)
            throw CvError(CvError::Overflow, "Translate", "Overflow");
        if (*index < 0 || *index >= values.size())
            throw CvError(CvError::SubscriptOutOfRange, "Translate", "Subscript out of range");
        result += valueText(values.at(*index));
        const qsizetype close = text.indexOf(u'|', i + 1);
        if (close >= 0) {
            i = close + 1;
        } else {
            result += u'|';
            ++i;
        }
    }
    return result;
}
