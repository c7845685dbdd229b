#pragma once

#include "startup/addresswindow.h"

#include <optional>
#include <QString>
#include <QStringList>

// What stand-in windows saw. It outlives them: the launch globals own the window.
struct StandInWindowLog
{
    QStringList calls; // "load", "showModeless", "showModal", "closed"
    qint16 modeAtShow = -1;
    qint32 idAtShow = -1;
    QString titleAtShow;
    QString helpFileAtLoad;
};

// Stands in for the address book window. Its load replaces the help file path, as the real
// one does; a modal show acts as a user who picks an entry (when told which) and closes the
// window; a modeless one stays open until close().
class StandInWindow : public AddressWindow
{
public:
    static QString ownHelpFile();

    explicit StandInWindow(StandInWindowLog *log) : m_log(log) {}

    void load() override;
    bool isLoaded() const override { return m_loaded; }
    void showModeless() override { show(QStringLiteral("showModeless")); }
    void showModal() override;
    bool isOpen() const override { return m_open; }
    void close();

    std::optional<qint32> pick;

private:
    void show(const QString &how);

    StandInWindowLog *m_log;
    bool m_loaded = false;
    bool m_open = false;
};

// Makes the launch globals create stand-in windows that report to log.
void installStandInWindow(StandInWindowLog *log);
