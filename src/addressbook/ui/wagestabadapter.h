#pragma once

#include "addressbook/payinformationtab.h"

class WagesTab;

// The pay details layer's wages tab, seen by the address window's logic as its
// pay information tab.
class WagesTabAdapter : public PayInformationTab
{
public:
    explicit WagesTabAdapter(WagesTab &tab) : m_tab(tab) {}
    void loadWageTab(Database &suite, qint32 addressId, qint32 employeeId) override;
    bool SaveWageTab() override;

private:
    WagesTab &m_tab;
};
