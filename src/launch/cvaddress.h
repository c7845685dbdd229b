#pragma once

#include "data/database.h" // callers own what OpenDB returns

#include <memory>
#include <QString>
#include <QtGlobal>

// The address book as the suite's other programs drive it in their own process. Every
// instance works on the one set of launch globals and the one window, so a second run while
// the window is open brings the same window to the front. Errors reach the caller as CvError;
// nothing here shows a message of its own.
//
// Callers are built against the order of these members: keep it.
class CvAddress
{
public:
    // Creates the shared Settings if the process has none yet.
    CvAddress();

    // The help module name, for the window's F1.
    void moduleName(const QString &name);
    // The help context identifier.
    void HelpID(qint32 id);
    // The address book, all entries, modeless; returns at once. The window opens on
    // CurrentAddressID, which is left as it is.
    void run();
    // Opens the main data file; the caller owns the result. Throws CvError when it cannot be
    // opened, creating nothing.
    std::unique_ptr<Database> OpenDB();
    // The employee pick: the employee list opens modally on id (0 for none), and id receives
    // the entry that was current when the user closed it. Nothing is sent to the wage book.
    void addressbook(qint32 &id);
    // The help file; the window's load replaces it with its own.
    void HelpFile(const QString &path);
    // As run(), but returns only when the window has closed.
    void RunModal();
};
