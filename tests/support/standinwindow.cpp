#include "support/standinwindow.h"

#include "launch/addressglobals.h"

#include <QGuiApplication>
#include <QTimer>

QString StandInWindow::ownHelpFile()
{
    return QStringLiteral("/stand-in/Help/Corvane.chm");
}

void StandInWindow::load()
{
    if (m_loaded)
        return;
    m_log->calls << QStringLiteral("load");
    if (onLoad)
        onLoad();
    m_log->helpFileAtLoad = AddressGlobals::helpFilePath;
    AddressGlobals::helpFilePath = ownHelpFile();
    m_loaded = true;
}

void StandInWindow::showModeless()
{
    show(QStringLiteral("showModeless"));
    if (closeAfterMs >= 0)
        QTimer::singleShot(closeAfterMs, this, [this] { close(); });
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
    m_log->closed = true;
    emit closed();
}

void installStandInWindow(StandInWindowLog *log, std::function<void(StandInWindow &)> setUp)
{
    AddressGlobals::setWindowFactory([log, setUp] {
        auto window = std::make_unique<StandInWindow>(log);
        if (setUp)
            setUp(*window);
        return window;
    });
}
