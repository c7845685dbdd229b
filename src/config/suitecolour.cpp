#include "config/suitecolour.h"

#include "config/suiteconfig.h"
#include "core/extractfield.h"
#include "core/numerictext.h"

SuiteColour &suiteColour()
{
    static SuiteColour colour;
    return colour;
}

void readColourEntry(const QString &name)
{
    const QString value = readSuiteIni("COLOURS", name);
    qint32 *parts[] = {&suiteColour().red, &suiteColour().green, &suiteColour().blue};
    for (qint16 field = 1; field <= 3; ++field) {
        if (const std::optional<qint32> number =
                numericTextToInt32(ExtractField(value, ",", field)))
            *parts[field - 1] = *number;
    }
}
