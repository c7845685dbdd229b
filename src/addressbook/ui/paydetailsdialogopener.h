#pragma once

#include "addressbook/paydetailsopener.h"

#include <QPointer>
#include <QWidget>

// Edit Pay Details through the modal pay details dialog, over parent.
class PayDetailsDialogOpener : public PayDetailsOpener
{
public:
    explicit PayDetailsDialogOpener(QWidget *parent = nullptr) : m_parent(parent) {}
    void openPayDetails(qint32 addressId) override;

private:
    QPointer<QWidget> m_parent;
};
