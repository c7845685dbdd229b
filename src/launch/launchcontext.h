#pragma once

#include <QString>

// What the program was started for, handed to the address book window when it loads: the
// window reads it and writes back the entry it shows, which is what the caller gets when
// the window closes. One instance lives in AddressGlobals; a test makes its own.
struct LaunchContext
{
    qint16 mode = 0;             // 0 address book; 1 employees; other values kept as given
    qint32 currentAddressId = 0; // the entry to select on opening, then the one shown
    bool modal = false;
    bool forWagebook = false;
    QString helpModuleName;   // help settings handed in by CvAddress; the window's load
    qint32 helpContextId = 0; // replaces the file path with the one it found
    QString helpFilePath;

    bool employeeMode() const { return mode == 1; }
};
