#pragma once

#include <QtGlobal>

// Opens the pay details dialog for one entry. The address book window asks
// through this so that it needs neither the dialog nor its widgets; without an
// opener, Edit Pay Details does nothing.
class PayDetailsOpener
{
public:
    virtual ~PayDetailsOpener() = default;
    // Shows the dialog for the entry and returns when it has closed.
    virtual void openPayDetails(qint32 addressId) = 0;
};
