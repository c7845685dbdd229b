#include "support/standinwindow.h"

#include "startup/addressglobals.h"

#include <QGuiApplication>

QString StandInWindow::ownHelpFile()
{
    return QStringLiteral("/stand-in/Help/Corvane.chm");
}

void StandInWindow::load()
{
    if (m_loaded)
        return;
    m_log->calls << QStringLiteral("load");
    m_log->helpFileAtLoad = AddressGlobals::helpFilePath;
    AddressGlobals::helpFilePath = ownHelpFile();
    m_loaded = true;
}

void StandInWindow::showModal()
{
    show(QStringLiteral("showModal"));
    AddressGlobals::CurrentAddressID = pick.value_or(AddressGlobals::CurrentAddressID);
    close();
}

void StandInWindow::show(const QString &how)
{
    load();
    m_log->calls << how;
    m_log->modeAtShow = AddressGlobals::LaunchMode;
    m_log->idAtShow = AddressGlobals::CurrentAddressID;
    m_log->titleAtShow = QGuiApplication::applicationDisplayName();
    m_open = true;
}

void StandInWindow::close()
{
    m_open = m_loaded = false;
    m_log->calls << QStringLiteral("closed");
    emit closed();
}

void installStandInWindow(StandInWindowLog *log)
{
    AddressGlobals::setWindowFactory([log] { return std::make_unique<StandInWindow>(log); });
}
