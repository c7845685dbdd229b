#include "addressbook/ui/wagestabhook.h"

#include "paydetails/ui/wagestab.h"

void WagesTabHook::loadWageTab(Database &farm, Database &wage, qint32 addressId, qint32)
{
    // The editor finds the employee row itself, by address.
    m_tab.loadWageTab(farm, wage, addressId);
}

void WagesTabHook::SaveWageTab()
{
    m_tab.SaveWageTab();
}
