#include "addressbook/ui/paydetailsdialogopener.h"

#include "paydetails/ui/frmpaydetails.h"

void PayDetailsDialogOpener::openPayDetails(qint32 addressId)
{
    frmPaydetails::showFor(addressId, m_parent);
}
