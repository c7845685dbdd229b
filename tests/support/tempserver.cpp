#include "support/tempserver.h"

#include "core/cverror.h"

#include <libpq-fe.h>

namespace TempServer {

namespace {

pg_conn *connect(const QString &connection)
{
    pg_conn *conn = PQconnectdb(connection.toUtf8().constData());
    if (PQstatus(conn) != CONNECTION_OK) {
        const QString why = QString::fromUtf8(PQerrorMessage(conn));
        PQfinish(conn);
        throw CvError(CvError::SqlError, "TempServer", connection + ": " + why);
    }
    PQsetNoticeProcessor(
        conn, [](void *, const char *) {}, nullptr);
    return conn;
}

// "Name" and [Name] -> "name": the server's tables are made in lower case.
QString folded(const QString &sql)
{
    QString out;
    bool inText = false, inName = false;
    for (QChar c : sql) {
        if (!inName && c == u'\'') {
            inText = !inText;
        } else if (!inText && (c == u'"' || c == u'[' || c == u']')) {
            inName = c != u']' && (c == u'[' || !inName);
            c = u'"';
        }
        out += inName ? c.toLower() : c;
    }
    return out;
}

QVariant valueOf(PGresult *r)
{
    if (PQntuples(r) == 0 || PQnfields(r) == 0 || PQgetisnull(r, 0, 0))
        return QVariant();
    const QByteArray text(PQgetvalue(r, 0, 0));
    switch (PQftype(r, 0)) {
    case 20: // int8, int2, int4
    case 21:
    case 23:
        return text.toLongLong();
    case 700: // float4, float8, numeric
    case 701:
    case 1700:
        return text.toDouble();
    default:
        return QString::fromUtf8(text);
    }
}

} // namespace

QVariant run(const QString &connection, const QStringList &statements)
{
    pg_conn *conn = connect(connection);
    QString failure;
    QVariant value;
    PQclear(PQexec(conn, "BEGIN; SET LOCAL search_path TO farm, wage, public"));
    for (const QString &statement : statements) {
        if (statement.trimmed().isEmpty())
            continue;
        PGresult *r = PQexec(conn, folded(statement).toUtf8().constData());
        const ExecStatusType status = PQresultStatus(r);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            failure = QString::fromUtf8(PQresultErrorMessage(r)) + ": " + statement;
        else
            value = valueOf(r);
        PQclear(r);
        if (!failure.isEmpty())
            break;
    }
    PQclear(PQexec(conn, failure.isEmpty() ? "COMMIT" : "ROLLBACK"));
    PQfinish(conn);
    if (!failure.isEmpty())
        throw CvError(CvError::SqlError, "TempServer", failure);
    return value;
}

QList<QStringList> rows(const QString &connection, const QString &sql)
{
    pg_conn *conn = connect(connection);
    PQclear(PQexec(conn, "SET search_path TO farm, wage, public"));
    PGresult *r = PQexec(conn, folded(sql).toUtf8().constData());
    QList<QStringList> out;
    const bool ok = PQresultStatus(r) == PGRES_TUPLES_OK;
    const QString failure = ok ? QString() : QString::fromUtf8(PQresultErrorMessage(r));
    for (int row = 0; ok && row < PQntuples(r); ++row) {
        QStringList cells;
        for (int c = 0; c < PQnfields(r); ++c)
            cells << (PQgetisnull(r, row, c)
                          ? QString()
                          : QString::fromUtf8(PQgetvalue(r, row, c), PQgetlength(r, row, c)));
        out << cells;
    }
    PQclear(r);
    PQfinish(conn);
    if (!ok)
        throw CvError(CvError::SqlError, "TempServer", sql + ": " + failure);
    return out;
}

void admin(const QString &connection, const QString &statement)
{
    pg_conn *conn = connect(connection);
    PGresult *r = PQexec(conn, statement.toUtf8().constData());
    const QString failure = PQresultStatus(r) == PGRES_COMMAND_OK
                                ? QString()
                                : QString::fromUtf8(PQresultErrorMessage(r));
    PQclear(r);
    PQfinish(conn);
    if (!failure.isEmpty())
        throw CvError(CvError::SqlError, "TempServer", statement + ": " + failure);
}

Lock::Lock(const QString &connection, bool readersToo) : m_conn(connect(connection))
{
    const QByteArray sql = QByteArray("BEGIN; LOCK TABLE farm.addresses, wage.employees, "
                                      "wage.employeedeductions, wage.employercontributions IN ") +
                           (readersToo ? "ACCESS EXCLUSIVE" : "EXCLUSIVE") + " MODE";
    PGresult *r = PQexec(m_conn, sql.constData());
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
    PQclear(r);
    if (!ok)
        throw CvError(CvError::SqlError, "TempServer", "could not lock the books");
}

Lock::~Lock()
{
    release();
}

void Lock::release()
{
    if (m_conn)
        PQclear(PQexec(m_conn, "ROLLBACK"));
    PQfinish(m_conn);
    m_conn = nullptr;
}

} // namespace TempServer
