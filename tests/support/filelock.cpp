#include "support/filelock.h"

#include <sqlite3.h>
#include <stdexcept>

FileLock::FileLock(const QString &path, Kind kind)
{
    const char *begin = kind == Writing ? "BEGIN IMMEDIATE" : "BEGIN EXCLUSIVE";
    if (sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr) !=
            SQLITE_OK ||
        sqlite3_exec(m_db, begin, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error("could not lock " + path.toStdString());
}

FileLock::~FileLock()
{
    release();
}

void FileLock::release()
{
    if (!m_db)
        return;
    sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(m_db);
    m_db = nullptr;
}
