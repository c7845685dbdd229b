#include "messages/errorreport.h"

#include "config/settings.h"
#include "core/cverror.h"
#include "messages/messageservice.h"

QString errorOrigin(QLatin1String module, QLatin1String procedure)
{
    return QStringLiteral(") was generated in ") + module + u'.' + procedure;
}

void showErrorReport(const CvError &error, const QString &origin, const QString &heading)
{
    showErrorReport(error.number(), error.description(), origin, heading);
}

void showErrorReport(int number, const QString &description, const QString &origin,
                     const QString &heading)
{
    const QString code = QString::number(number);
    SuiteMessageBox("Description - " + description + u'(' + code + origin, ButtonsOk,
                    FirmName() + " Error", "An Error has Occurred",
                    heading.isEmpty() ? "Error " + code : heading, IconInformation, true);
}

bool reportedStep(const QString &origin, const std::function<void()> &step)
{
    try {
        step();
        return true;
    } catch (const CvError &error) {
        showErrorReport(error, origin);
        return false;
    }
}
