#pragma once

#include "addressbook/ui/desktophelpopener.h"
#include "addressbook/ui/paydetailsdialogopener.h"
#include "addressbook/ui/wagestabadapter.h"
#include "controls/ui/inputbox.h"
#include "launch/addresswindow.h"

#include <memory>
#include <QPointer>

class AddressBookLogic;
class QEventLoop;
class frmAddresses;

// The real address book window behind the start-up code's AddressWindow: one
// AddressBookLogic and its frmAddresses from load until the window closes.
// Closing unloads both; the next show loads afresh.
class AddressBookWindow : public AddressWindow
{
    Q_OBJECT

public:
    explicit AddressBookWindow(QObject *parent = nullptr);
    ~AddressBookWindow() override;

    void load() override;
    bool isLoaded() const override;
    void showModeless() override;
    void showModal() override;
    bool isOpen() const override;

    // The loaded window, null when unloaded.
    frmAddresses *form() const { return m_form; }

private:
    void open();
    void formClosed();

    AddressBookLogic *m_logic = nullptr;
    frmAddresses *m_form = nullptr;
    InputBox m_inputBox;
    DesktopHelpOpener m_helpOpener;
    PayDetailsDialogOpener m_payDetailsOpener;
    std::unique_ptr<WagesTabAdapter> m_wagesTabHook;
    bool m_open = false;
    QPointer<QEventLoop> m_modalLoop;
};
