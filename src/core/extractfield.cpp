#include "core/extractfield.h"

#include "core/cverror.h"

#include <limits>

QString ExtractField(const QString &text, const QString &delimiter, qint16 index)
{
    if (text.size() > std::numeric_limits<qint16>::max())
        throw CvError(CvError::Overflow, "ExtractField", "Overflow");

    const QString delim = delimiter.isEmpty() ? QStringLiteral(" \r\n\t") : delimiter;
    const QStringView rest(text);
    // 1-based, as the walk is described; fits easily in int after the check above.
    int n = index;
    int p = 1;
    int s = 1;
    int c = 0;
    while (n >= 1 && p <= text.size()) {
        if (rest.sliced(p - 1).startsWith(delim)) {
            --n;
            p += delim.size();
        } else {
            if (n == 1) {
                if (c == 0) {
                    s = p;
                    c = 1;
                } else {
                    ++c;
                }
            }
            ++p;
        }
    }
    return text.mid(s - 1, c);
}
