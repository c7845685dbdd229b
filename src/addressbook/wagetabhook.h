#pragma once

#include <QtGlobal>

class Database;

// The pay information tab of the employee window, filled in by the pay details
// editor. Until an editor is attached the tab neither loads nor saves.
class WageTabHook
{
public:
    virtual ~WageTabHook() = default;
    // Shows the pay details of the entry. employeeId is the entry's Employees
    // row, 0 when it has none. The databases are the window's own, open for its
    // lifetime.
    virtual void loadWageTab(Database &farm, Database &wage, qint32 addressId,
                             qint32 employeeId) = 0;
    // Saves what the tab shows (the employee row and its child rows).
    virtual void SaveWageTab() = 0;
};
