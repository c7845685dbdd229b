#pragma once

#include "launch/addressglobals.h"
#include "launch/addresswindow.h"

#include <atomic>
#include <functional>
#include <optional>
#include <QGuiApplication>
#include <QString>
#include <QStringList>
#include <QTimer>

// What stand-in windows saw. It outlives them: the launch globals own the window.
struct StandInWindowLog
{
    QStringList calls; // "load", "showModeless", "showModal", "closed"
    qint16 modeAtShow = -1;
    qint32 idAtShow = -1;
    QString titleAtShow;
    QString helpFileAtLoad;
    std::atomic<bool> closed{false}; // read by a wage book in another thread
    bool destroyed = false;
};

// Stands in for the address book window. Its load replaces the help file path, as the real
// one does, after running onLoad (which may throw); a modal show acts as a user who picks an
// entry (when told which) and closes the window; a modeless one stays open until close(), or
// closes by itself after closeAfterMs.
class StandInWindow : public AddressWindow
{
public:
    static QString ownHelpFile() { return QStringLiteral("/stand-in/Help/Corvane.chm"); }

    explicit StandInWindow(StandInWindowLog *log) : m_log(log) {}
    ~StandInWindow() override { m_log->destroyed = true; }

    void load() override
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
    bool isLoaded() const override { return m_loaded; }
    void showModeless() override
    {
        show(QStringLiteral("showModeless"));
        if (closeAfterMs >= 0)
            QTimer::singleShot(closeAfterMs, this, [this] { close(); });
    }
    void showModal() override
    {
        show(QStringLiteral("showModal"));
        AddressGlobals::CurrentAddressID = pick.value_or(AddressGlobals::CurrentAddressID);
        close();
    }
    bool isOpen() const override { return m_open; }
    void close()
    {
        m_open = m_loaded = false;
        m_log->calls << QStringLiteral("closed");
        m_log->closed = true;
        emit closed();
    }

    std::optional<qint32> pick;
    int closeAfterMs = -1;
    std::function<void()> onLoad;

private:
    void show(const QString &how)
    {
        load();
        m_log->calls << how;
        m_log->modeAtShow = AddressGlobals::LaunchMode;
        m_log->idAtShow = AddressGlobals::CurrentAddressID;
        m_log->titleAtShow = QGuiApplication::applicationDisplayName();
        m_open = true;
    }

    StandInWindowLog *m_log;
    bool m_loaded = false;
    bool m_open = false;
};

// Makes the launch globals create stand-in windows that report to log, each first passed to
// setUp when given.
inline void installStandInWindow(StandInWindowLog *log,
                                 std::function<void(StandInWindow &)> setUp = nullptr)
{
    AddressGlobals::setWindowFactory([log, setUp] {
        auto window = std::make_unique<StandInWindow>(log);
        if (setUp)
            setUp(*window);
        return window;
    });
}
