#include "addressbook/ui/wagestabadapter.h"

#include "paydetails/ui/wagestab.h"

void WagesTabAdapter::loadWageTab(Database &suite, qint32 addressId, qint32)
{
    // The editor finds the employee row itself, by address.
    m_tab.loadWageTab(suite, addressId);
}

bool WagesTabAdapter::SaveWageTab()
{
    return m_tab.SaveWageTab();
}
