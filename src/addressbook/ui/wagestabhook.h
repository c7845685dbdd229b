#pragma once

#include "addressbook/wagetabhook.h"

class WagesTab;

// Lets the address window's logic load and save the pay information page,
// which lives in the pay details layer below it.
class WagesTabHook : public WageTabHook
{
public:
    explicit WagesTabHook(WagesTab &tab) : m_tab(tab) {}
    void loadWageTab(Database &suite, qint32 addressId, qint32 employeeId) override;
    bool SaveWageTab() override;

private:
    WagesTab &m_tab;
};
