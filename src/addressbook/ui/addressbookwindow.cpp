#include "addressbook/ui/addressbookwindow.h"

#include "addressbook/addressbooklogic.h"
#include "addressbook/ui/frmaddresses.h"
#include "launch/addressglobals.h"

#include <QEventLoop>

AddressBookWindow::AddressBookWindow(QObject *parent) : AddressWindow(parent) {}

AddressBookWindow::~AddressBookWindow()
{
    if (m_open)
        m_form->close();
    if (m_modalLoop)
        m_modalLoop->quit();
    delete m_form;
    delete m_logic;
}

void AddressBookWindow::load()
{
    if (m_logic)
        return;
    m_logic = new AddressBookLogic(AddressGlobals::context());
    m_logic->setInputBox(&m_inputBox);
    m_logic->setHelpOpener(&m_helpOpener);
    m_form = new frmAddresses(*m_logic);
    m_wagesTabHook = std::make_unique<WagesTabAdapter>(*m_form->wagesTab());
    m_logic->setWageTab(m_wagesTabHook.get());
    m_payDetailsOpener = PayDetailsDialogOpener(m_form);
    m_logic->setPayDetailsOpener(&m_payDetailsOpener);
    connect(m_form, &frmAddresses::closed, this, &AddressBookWindow::formClosed);
    m_logic->load();
}

bool AddressBookWindow::isLoaded() const
{
    return m_logic && m_logic->isLoaded();
}

void AddressBookWindow::open()
{
    load();
    if (m_open) {
        m_form->raise();
        m_form->activateWindow();
        return;
    }
    m_open = true;
    m_form->show();
    m_form->activateWindow();
    // Form_Activate: the name list is built once the window is up.
    m_logic->activate();
}

void AddressBookWindow::showModeless()
{
    open();
}

void AddressBookWindow::showModal()
{
    load();
    if (!m_open)
        m_form->setWindowModality(Qt::ApplicationModal);
    open();
    QEventLoop loop;
    m_modalLoop = &loop;
    while (m_open)
        loop.exec(QEventLoop::DialogExec);
}

bool AddressBookWindow::isOpen() const
{
    return m_open;
}

void AddressBookWindow::formClosed()
{
    // The form has unloaded its logic; both go once control is back in the
    // event loop, as the close started inside them.
    m_open = false;
    m_form->deleteLater();
    m_logic->deleteLater();
    m_form = nullptr;
    m_logic = nullptr;
    if (m_modalLoop)
        m_modalLoop->quit();
    emit closed();
}
