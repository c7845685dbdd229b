// cvaddress: the suite's address book, started by the suite's other programs with a
// four-field command line (mode, address identifier, modal, wage-book pick).
//
// Environment:
//   CORVANE_MESSAGES=stderr  print every message to standard error and answer it with OK
//                            (No for a question) instead of showing a dialog; for scripts
//                            and tests that run the program without a person.
#include "controls/ui/dialogmessageservice.h"
#include "startup/addressglobals.h"
#include "startup/entryroutine.h"

#include <QApplication>

namespace {

void installMessageService(DialogMessageService *dialogs)
{
    // Left out, the message service's own fallback prints to standard error.
    if (qEnvironmentVariable("CORVANE_MESSAGES") != QLatin1String("stderr"))
        setMessageService(dialogs);
}

// The one place where the address book window plugs in. Until it exists, no factory is
// registered and a launch reports that the window is not available in this build.
void registerAddressWindow()
{
    // AddressGlobals::setWindowFactory([] { return std::make_unique<...>(); });
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    DialogMessageService dialogs;
    installMessageService(&dialogs);
    registerAddressWindow();
    return runEntryProcess(processCommandLine());
}
