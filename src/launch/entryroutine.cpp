#include "launch/entryroutine.h"

#include "config/settings.h"
#include "core/conversions.h"
#include "core/cverror.h"
#include "core/extractfield.h"
#include "launch/addressglobals.h"
#include "launch/wagebook.h"
#include "messages/messageservice.h"

#include <cstdio>
#include <QCoreApplication>
#include <QEventLoop>
#include <QStringList>

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

QString processCommandLine()
{
    return QCoreApplication::arguments().mid(1).join(u' ');
}

void runEntryRoutine(const QString &commandLine)
{
    if (commandLine.isEmpty()) {
        ReportLaunchContext(QStringLiteral("Address Book"));
        return;
    }
    AddressGlobals::settings(); // the shared instance, created if it is not there yet

    const QString comma = QStringLiteral(",");
    AddressGlobals::LaunchMode = textToInt16(ExtractField(commandLine, comma, 1));
    AddressGlobals::CurrentAddressID = textToInt32(ExtractField(commandLine, comma, 2));
    AddressGlobals::LaunchModal = textToBool(ExtractField(commandLine, comma, 3));
    AddressGlobals::LaunchForWagebook = textToBool(ExtractField(commandLine, comma, 4));

    if (!AddressGlobals::LaunchForWagebook) {
        AddressWindow &window = AddressGlobals::mainWindow();
        window.load();
        if (AddressGlobals::LaunchModal)
            window.showModal();
        else
            window.showModeless();
    } else {
        qint32 addressId = AddressGlobals::CurrentAddressID;
        ShowEmployeeForWagebook(addressId);
    }
}

int runEntryProcess(const QString &commandLine)
{
    try {
        runEntryRoutine(commandLine);
        if (AddressGlobals::hasMainWindow()) {
            AddressWindow &window = AddressGlobals::mainWindow();
            QEventLoop loop;
            QObject::connect(&window, &AddressWindow::closed, &loop, &QEventLoop::quit);
            if (window.isOpen())
                loop.exec();
        }
        AddressGlobals::releaseMainWindow();
        return 0;
    } catch (const CvError &error) {
        AddressGlobals::releaseMainWindow();
        reportUnhandledError(error);
        return 1;
    }
}

void reportUnhandledError(const CvError &error)
{
    const QString prompt =
        QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(error.description());
    // Standard error first: it stays in a log even when nobody sees the dialog.
    std::fputs(qPrintable(prompt + u'\n'), stderr);
    std::fflush(stderr);
    SuiteMessageBox(prompt, ButtonsOk, FirmName(), QStringLiteral("Address Book"), QString(),
                    IconInformation, true);
}
