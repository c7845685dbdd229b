// The public library's own part: it puts the real window behind CvAddress. Everything else
// the callers use is the module's own code, linked in whole.
#include "addressbook/ui/addressbookwindowfactory.h"
#include "launch/addressglobals.h"

#include <QCoreApplication>

namespace {

// Runs when the caller's application object is made (at once when it exists already, as
// when the library is loaded late), since the window needs one. A factory the caller set
// first is kept.
void registerWindow()
{
    if (!AddressGlobals::hasWindowFactory())
        registerAddressBookWindow();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(registerWindow)
