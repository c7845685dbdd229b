#include "launch/cvaddress.h"

#include "config/settings.h"
#include "data/database.h"
#include "launch/addressglobals.h"

CvAddress::CvAddress()
{
    AddressGlobals::settings();
}

void CvAddress::moduleName(const QString &name)
{
    AddressGlobals::helpModuleName = name;
}

void CvAddress::HelpID(qint32 id)
{
    AddressGlobals::helpContextId = id;
}

void CvAddress::run()
{
    AddressGlobals::LaunchMode = 0;
    setApplicationTitle(QStringLiteral("Addresses"));
    AddressWindow &window = AddressGlobals::mainWindow();
    window.load();
    window.showModeless();
}

std::unique_ptr<Database> CvAddress::OpenDB()
{
    return std::make_unique<Database>(AddressGlobals::settings().DatabaseName());
}

void CvAddress::addressbook(qint32 &id)
{
    AddressGlobals::LaunchMode = 1;
    setApplicationTitle(QStringLiteral("Employees"));
    AddressGlobals::CurrentAddressID = id;
    AddressGlobals::mainWindow().showModal();
    id = AddressGlobals::CurrentAddressID;
}

void CvAddress::HelpFile(const QString &path)
{
    AddressGlobals::helpFilePath = path;
}

void CvAddress::RunModal()
{
    AddressGlobals::LaunchMode = 0;
    setApplicationTitle(QStringLiteral("Addresses"));
    AddressWindow &window = AddressGlobals::mainWindow();
    window.load();
    window.showModal();
}
