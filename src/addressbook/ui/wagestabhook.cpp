#include "addressbook/ui/wagestabhook.h"

#include "paydetails/ui/wagestab.h"

void WagesTabHook::loadWageTab(Database &suite, qint32 addressId, qint32)
{
    // The editor finds the employee row itself, by address.
    m_tab.loadWageTab(suite, addressId);
}

bool WagesTabHook::SaveWageTab()
{
    return m_tab.SaveWageTab();
}
