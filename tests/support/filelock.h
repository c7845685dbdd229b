#pragma once

#include "support/tempserver.h"
#include "support/tempsuite.h"

#include <memory>
#include <QString>
#include <sqlite3.h>
#include <stdexcept>

// Another suite program holding a data file on its own connection until release() or
// the object goes: in the middle of a write (others may still read), or, exclusive,
// committing one (nobody may read).
class FileLock
{
public:
    enum Kind { Writing, Exclusive };
    // The suite's books wherever they are: the main file, or the server's tables.
    explicit FileLock(const TempSuite &suite, Kind kind = Writing)
    {
        if (suite.onServer())
            m_server =
                std::make_unique<TempServer::Lock>(suite.serverConnection(), kind == Exclusive);
        else
            lock(suite.farmPath(), kind);
    }
    explicit FileLock(const QString &path, Kind kind = Writing) { lock(path, kind); }
    ~FileLock() { release(); }
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    void release()
    {
        m_server.reset();
        if (m_db)
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close(m_db);
        m_db = nullptr;
    }

private:
    void lock(const QString &path, Kind kind)
    {
        if (sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr) !=
                SQLITE_OK ||
            sqlite3_exec(m_db, kind == Writing ? "BEGIN IMMEDIATE" : "BEGIN EXCLUSIVE", nullptr,
                         nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error("could not lock " + path.toStdString());
    }

    std::unique_ptr<TempServer::Lock> m_server;
    sqlite3 *m_db = nullptr;
};
