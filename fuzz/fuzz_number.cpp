// The settings' numeric text (numericValue, leadingNumber) and the conversions
// built on it (textToInt16/Int32/Bool). Properties: a number read prints and
// reads back to the same double; the conversions raise nothing but CvError and
// agree with numericValue about what is a number.
#include "core/cverror.h"
#include "fuzzcheck.h"
#include "core/conversions.h"
#include "core/numerictext.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = fuzzText(data, size);
    const std::optional<double> value = numericValue(text);
    if (value) {
        fuzzCheck(std::isfinite(*value), "finite", text);
        const QString printed = QString::number(*value, 'g', 17);
        fuzzCheck(numericValue(printed) == value, "numeric round trip", text + " -> " + printed);
    }
    (void)leadingNumber(text);

    try {
        const qint32 n = textToInt32(text);
        fuzzCheck(value && roundToInt32(*value) == n, "textToInt32 agrees", text);
    } catch (const CvError &e) {
        fuzzCheck(e.number() == (value ? CvError::Overflow : CvError::TypeMismatch),
                  "textToInt32 error number", text);
    }
    try {
        (void)textToInt16(text);
    } catch (const CvError &) {
    }
    try {
        (void)textToBool(text);
    } catch (const CvError &) {
    }
    return 0;
}
