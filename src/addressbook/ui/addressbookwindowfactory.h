#pragma once

// Makes the real address book window the one that the entry routine and
// CvAddress show. The program calls it once its application object exists.
void registerAddressBookWindow();
