#include "addressbook/ui/addressbookwindowfactory.h"

#include "addressbook/ui/addressbookwindow.h"
#include "launch/addressglobals.h"

void registerAddressBookWindow()
{
    AddressGlobals::setWindowFactory([] { return std::make_unique<AddressBookWindow>(); });
}
