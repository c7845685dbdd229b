#pragma once

#include <QString>

struct sqlite3;

// Another suite program holding a data file on its own connection until release() or
// the object goes: in the middle of a write (others may still read), or, exclusive,
// committing one (nobody may read).
class FileLock
{
public:
    enum Kind { Writing, Exclusive };
    explicit FileLock(const QString &path, Kind kind = Writing);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    void release();

private:
    sqlite3 *m_db = nullptr;
};
