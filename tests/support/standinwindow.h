#pragma once

#include "launch/addresswindow.h"

#include <atomic>
#include <functional>
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
    static QString ownHelpFile();

    explicit StandInWindow(StandInWindowLog *log) : m_log(log) {}
    ~StandInWindow() override { m_log->destroyed = true; }

    void load() override;
    bool isLoaded() const override { return m_loaded; }
    void showModeless() override;
    void showModal() override;
    bool isOpen() const override { return m_open; }
    void close();

    std::optional<qint32> pick;
    int closeAfterMs = -1;
    std::function<void()> onLoad;

private:
    void show(const QString &how);

    StandInWindowLog *m_log;
    bool m_loaded = false;
    bool m_open = false;
};

// Makes the launch globals create stand-in windows that report to log, each first passed to
// setUp when given.
void installStandInWindow(StandInWindowLog *log,
                          std::function<void(StandInWindow &)> setUp = nullptr);
