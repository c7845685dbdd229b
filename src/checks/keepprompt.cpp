#include "checks/keepprompt.h"

#include "config/settings.h"
#include "messages/messageservice.h"

bool askKeepIdentifier(const QString &what, const Identifiers::Verdict &verdict)
{
    const QString prompt =
        QStringLiteral("%1.\n\nKeep the %2 as typed?\n\nYes keeps it (it can be saved as it is); "
                       "No goes back to correct it.")
            .arg(verdict.problem, what);
    return SuiteMessageBox(prompt, ButtonsYesNo, FirmName(), QStringLiteral("Check the ") + what,
                           QVariant(), IconQuestion, true) == ResultYes;
}
