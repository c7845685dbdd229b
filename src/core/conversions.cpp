#include "core/conversions.h"

#include "core/cverror.h"
#include "core/numerictext.h"

namespace {

const char *const Source = "Conversions";

double numberIn(const QString &text)
{
    const std::optional<double> value = numericValue(text);
    if (!value)
        throw CvError(CvError::TypeMismatch, Source, "Type mismatch");
    return *value;
}

template <typename T> T fitted(const std::optional<T> &value)
{
    if (!value)
        throw CvError(CvError::Overflow, Source, "Overflow");
    return *value;
}

} // namespace

qint16 textToInt16(const QString &text)
{
    return fitted(roundToInt16(numberIn(text)));
}
qint32 textToInt32(const QString &text)
{
    return fitted(roundToInt32(numberIn(text)));
}

bool textToBool(const QString &text)
{
    const QString word = text.trimmed();
    if (word.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    return numberIn(text) != 0;
}
