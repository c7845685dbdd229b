#include "startup/errorlog.h"

#include "data/serialdate.h"
#include "startup/folders.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>

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
    QFile log(errorLogFile());
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    log.write(text.toUtf8());
    log.close();
}

void resetErrorLogState()
{
    g_logUsed = false;
}
