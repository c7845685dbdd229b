// The four-field command line as the entry routine reads it: ExtractField on
// commas, then the number and boolean conversions. Properties: nothing but
// CvError is raised; ExtractField agrees with QString::split for any delimiter
// (the first byte picks it) and any index.
#include "core/cverror.h"
#include "fuzzcheck.h"
#include "core/conversions.h"
#include "core/extractfield.h"

#include <limits>
#include <QStringList>

namespace {

void readCommandLine(const QString &line)
{
    const QString comma = QStringLiteral(",");
    try {
        (void)textToInt16(ExtractField(line, comma, 1));
        (void)textToInt32(ExtractField(line, comma, 2));
        (void)textToBool(ExtractField(line, comma, 3));
        (void)textToBool(ExtractField(line, comma, 4));
    } catch (const CvError &) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    static const QString delimiters[] = {QStringLiteral(","), QString(), QStringLiteral("ab"),
                                         QStringLiteral("aa"), QStringLiteral(" ")};
    const QString &delimiter = delimiters[data[0] % std::size(delimiters)];
    const QString text = fuzzText(data + 1, size - 1);

    readCommandLine(text);

    if (text.size() > std::numeric_limits<qint16>::max()) {
        try {
            ExtractField(text, delimiter, 1);
            fuzzCheck(false, "overflow on long text");
        } catch (const CvError &e) {
            fuzzCheck(e.number() == CvError::Overflow, "overflow number");
        }
        return 0;
    }
    const QStringList fields =
        text.split(delimiter.isEmpty() ? QStringLiteral(" \r\n\t") : delimiter);
    const int last = int(qMin<qsizetype>(fields.size() + 1, 64));
    for (int i = -1; i <= last; ++i) {
        const QString expected = i >= 1 && i <= fields.size() ? fields.at(i - 1) : QString();
        fuzzCheck(ExtractField(text, delimiter, qint16(i)) == expected, "field as split",
                  QString::number(i) + ": " + text);
    }
    return 0;
}
