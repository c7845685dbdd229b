#pragma once

#include <QtGlobal>

class Database;

// The pay information tab of the employee window as its logic sees it: the pay
// details editor fills it in. Until one is attached the tab neither loads nor saves.
class PayInformationTab
{
public:
    virtual ~PayInformationTab() = default;
    // Shows the pay details of the entry. employeeId is the entry's Employees
    // row, 0 when it has none. The database is the window's own connection (the
    // wage file attached to the main file), open for its lifetime.
    virtual void loadWageTab(Database &suite, qint32 addressId, qint32 employeeId) = 0;
    // Saves what the tab shows (the employee row, its child rows, the change log);
    // false when it could not be saved and the user went back to it.
    virtual bool SaveWageTab() = 0;
};
