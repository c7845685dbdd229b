#include "config/readini.h"

#include "config/errorlog.h"
#include "config/profilestring.h"

namespace {

enum class Found { Nothing, Section, Key };

// Looks at the file's text, not through the profile reader: the header must
// be exactly "[SECTION]" and a key line must start with the key as given.
Found findInText(const QString &upperSection, const QString &key, const QString &file)
{
    const std::optional<QStringList> lines = readTextLines(file);
    if (!lines)
        return Found::Nothing;
    const QString header = u'[' + upperSection + u']';
    const qsizetype start = lines->indexOf(header);
    if (start < 0)
        return Found::Nothing;
    for (qsizetype i = start + 1; i < lines->size(); ++i) {
        const QString &line = lines->at(i);
        if (line.startsWith(u'['))
            break;
        if (line.contains(u'=') && line.startsWith(key))
            return Found::Key;
    }
    return Found::Section;
}

} // namespace

QString ReadIni(const QString &section, const QString &key, const QString &file)
{
    const QString context = "Section=" + section + ", Key=" + key;
    const QString upperSection = section.toUpper();
    const QString value = readProfileString(upperSection, key, QString(), file);

    switch (findInText(upperSection, key, file)) {
    case Found::Key:
        // Read again: the value is taken only once the key is known to exist.
        return readProfileString(upperSection, key, QString(), file);
    case Found::Section:
        if (!context.endsWith(QLatin1String("Key=Invalid Index"))) {
            QString line = "A key from " + file + " is missing." + context;
            LogError(line);
        }
        break;
    case Found::Nothing:
        if (file != QLatin1String("WIN.INI")) {
            QString line = "A section from " + file + " is missing." + context;
            LogError(line);
        }
        break;
    }
    return value;
}
