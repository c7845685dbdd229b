#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

struct pg_conn;

// Straight libpq access to the test server, for arranging fixtures and reading what
// was stored, as execOnFile does on the files.
namespace TempServer {

// Runs statements in one transaction on a connection of its own, with the books'
// schemas on the search path and "quoted" names folded to the server's lower case; the
// first column of the first row of the last one (typed as execOnFile's are).
QVariant run(const QString &connection, const QStringList &statements);

// Every row of a query as text, Null as an invalid QString (isNull()).
QList<QStringList> rows(const QString &connection, const QString &sql);

// Runs one statement outside a transaction (CREATE DATABASE and the like).
void admin(const QString &connection, const QString &statement);

// A connection holding the books' tables locked until it goes: against writers only,
// or against readers as well.
class Lock
{
public:
    Lock(const QString &connection, bool readersToo);
    ~Lock();
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
    void release();

private:
    pg_conn *m_conn = nullptr;
};

} // namespace TempServer
