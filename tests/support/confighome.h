#pragma once

#include <QByteArray>
#include <QTemporaryDir>

// Points XDG_CONFIG_HOME, where an INI file named without a folder lives, at
// an empty temporary folder for the object's lifetime, so that a test neither
// reads nor writes the user's own settings.
class ScopedConfigHome
{
public:
    ScopedConfigHome()
        : m_old(qgetenv("XDG_CONFIG_HOME")), m_had(qEnvironmentVariableIsSet("XDG_CONFIG_HOME"))
    {
        qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
    }
    ~ScopedConfigHome()
    {
        if (m_had)
            qputenv("XDG_CONFIG_HOME", m_old);
        else
            qunsetenv("XDG_CONFIG_HOME");
    }
    ScopedConfigHome(const ScopedConfigHome &) = delete;
    ScopedConfigHome &operator=(const ScopedConfigHome &) = delete;

    QString iniPath() const { return m_dir.path() + "/Corvane/Corvane.ini"; }

private:
    QTemporaryDir m_dir;
    QByteArray m_old;
    bool m_had;
};
