#include "config/errorlog.h"

#include "config/folders.h"
#include "data/serialdate.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <cstdio>

namespace {

// Set by the first call and never cleared: the log file is opened once per
// process, and what later calls write goes nowhere.
bool g_logUsed = false;

// Now, as the suite shows a date and time: the short date with a four-digit
// year, then the time with seconds.
QString nowAsText()
{
    const QLocale locale;
    const QString dateFormat = SerialDate::shortDateFormat(locale);
    QString timeFormat = locale.timeFormat(QLocale::LongFormat);
    // Drop the time zone the long format adds (unquoted "t"), keep the rest.
    QString withoutZone;
    bool quoted = false;
    for (QChar c : timeFormat) {
        if (c == u'\'')
            quoted = !quoted;
        if (quoted || c != u't')
            withoutZone += c;
    }
    timeFormat = withoutZone.trimmed();
    const QDateTime now = QDateTime::currentDateTime();
    return locale.toString(now.date(), dateFormat) + u' ' + locale.toString(now.time(), timeFormat);
}

} // namespace

void LogError(QString &text)
{
    text = nowAsText() + u'\t' + text + QLatin1String("\r\n");
    if (g_logUsed)
        return;
    g_logUsed = true;
    const QString path = errorLogFile();
    // Past the limit the log moves aside whole to CvErrors.log.old (replacing
    // the one before) and starts afresh: one rename, which another suite
    // program appending at the same moment cannot tear, and the newest lines
    // are always kept.
    if (QFileInfo(path).size() >= kErrorLogLimit)
        std::rename(QFile::encodeName(path).constData(),
                    QFile::encodeName(path + QLatin1String(".old")).constData());
    // The lines name people and files: for the owner's eyes only.
    QFile log(path);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append, QFile::ReadOwner | QFile::WriteOwner))
        return;
    log.write(text.toUtf8());
    log.close();
}

void resetErrorLogState()
{
    g_logUsed = false;
}
