#include "launch/launchcontext.h"

#include "config/settings.h"
#include "messages/messageservice.h"

void ReportLaunchContext(const QString &applicationName)
{
    const QString firm = FirmName();
    const QString prompt = QStringLiteral("This Application is designed to run from inside ") +
                           firm + QStringLiteral("\r\n\r\n") +
                           QStringLiteral("Please select the correct menu option from inside ") +
                           firm + QStringLiteral(" to launch ") + applicationName + u'.';
    SuiteMessageBox(prompt, ButtonsOk, firm, QStringLiteral("Invalid Execution"),
                    QStringLiteral("Unable to Start ") + applicationName, IconInformation, false);
}
