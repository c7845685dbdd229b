// The PostgreSQL side of DatabaseState: one libpq connection holding both of the suite's
// data sets (schemas farm and wage), statements with their values bound, rows read
// straight from libpq's result, and the server's failures as the suite's errors.
#include "data/databasestate.h"

#include "core/cverror.h"
#include "data/cursor.h"
#include "data/jetvalue.h"

#include <charconv>
#include <libpq-fe.h>
#include <utility>
#include <vector>

namespace {

const char *const Source = "Database";

// Type oids of the server's built-in types (pg_type.h).
constexpr Oid BoolOid = 16, ByteaOid = 17, Int8Oid = 20, Int2Oid = 21, Int4Oid = 23, OidOid = 26,
              Float4Oid = 700, Float8Oid = 701, NumericOid = 1700;

struct ResultDeleter
{
    void operator()(PGresult *r) const { PQclear(r); }
};
using Result = std::unique_ptr<PGresult, ResultDeleter>;

QString serverText(const char *text)
{
    return QString::fromUtf8(text).trimmed();
}

} // namespace

// Values as libpq takes them: numbers typed, so that they compare as numbers; text of
// unknown type, so that it takes the column's type (citext compares without case);
// bytes in binary.
struct ServerParameters
{
    std::vector<QByteArray> data;
    std::vector<const char *> values;
    std::vector<int> lengths;
    std::vector<int> formats;
    std::vector<Oid> types;

    explicit ServerParameters(const QVariantList &list)
    {
        const auto n = std::size_t(list.size());
        data.resize(n);
        values.resize(n, nullptr);
        lengths.resize(n, 0);
        formats.resize(n, 0);
        types.resize(n, 0);
        for (std::size_t i = 0; i < n; ++i) {
            const QVariant &v = list.at(qsizetype(i));
            if (v.isNull())
                continue;
            if (JetValue::isInteger(v)) {
                data[i] = QByteArray::number(v.toLongLong());
                types[i] = Int8Oid;
            } else if (JetValue::isReal(v)) {
                data[i] = QByteArray::number(v.toDouble(), 'g', 17);
                types[i] = Float8Oid;
            } else if (v.metaType().id() == QMetaType::QByteArray) {
                data[i] = v.toByteArray();
                formats[i] = 1;
                types[i] = ByteaOid;
            } else {
                // The server's text cannot hold U+0000; a NUL pasted into a box goes.
                data[i] = v.toString().toUtf8();
                data[i].replace('\0', QByteArray());
            }
            values[i] = data[i].constData();
            lengths[i] = int(data[i].size());
        }
    }
};

namespace {

class ServerCursor final : public Cursor
{
public:
    ServerCursor(const DatabaseState &state, Result result)
        : m_state(state), m_result(std::move(result)), m_rows(PQntuples(m_result.get()))
    {
        const int n = PQnfields(m_result.get());
        m_types.reserve(std::size_t(n));
        for (int i = 0; i < n; ++i)
            m_types.push_back(PQftype(m_result.get(), i));
    }

    int columnCount() const override { return int(m_types.size()); }
    QString name(int column) const override
    {
        return QString::fromUtf8(PQfname(m_result.get(), column));
    }
    QString originTable(int column) const override
    {
        const DatabaseState::Table *t = m_state.serverTable(PQftable(m_result.get(), column));
        return t ? t->name : QString();
    }
    QString originColumn(int column) const override
    {
        return m_state.serverColumn(PQftable(m_result.get(), column),
                                    PQftablecol(m_result.get(), column));
    }

    bool next() override { return ++m_row < m_rows; }

    bool isNull(int column) const override
    {
        return PQgetisnull(m_result.get(), m_row, column) != 0;
    }
    qint64 integer(int column) const override
    {
        const char *p = PQgetvalue(m_result.get(), m_row, column);
        qint64 v = 0;
        std::from_chars(p, p + PQgetlength(m_result.get(), m_row, column), v);
        return v;
    }
    QString text(int column) const override
    {
        return QString::fromUtf8(PQgetvalue(m_result.get(), m_row, column),
                                 PQgetlength(m_result.get(), m_row, column));
    }
    QVariant value(int column) const override
    {
        if (isNull(column))
            return QVariant();
        const char *p = PQgetvalue(m_result.get(), m_row, column);
        const int length = PQgetlength(m_result.get(), m_row, column);
        switch (m_types[std::size_t(column)]) {
        case BoolOid:
            return qint64(*p == 't' ? 1 : 0);
        case Int2Oid:
        case Int4Oid:
        case Int8Oid:
        case OidOid:
            return integer(column);
        case NumericOid:
            if (QByteArrayView(p, length).contains('.') || QByteArrayView(p, length).contains('e'))
                return QByteArray(p, length).toDouble();
            return integer(column);
        case Float4Oid:
        case Float8Oid:
            return QByteArray(p, length).toDouble();
        case ByteaOid: {
            size_t size = 0;
            unsigned char *bytes =
                PQunescapeBytea(reinterpret_cast<const unsigned char *>(p), &size);
            QByteArray out(reinterpret_cast<const char *>(bytes), qsizetype(size));
            PQfreemem(bytes);
            return out;
        }
        default:
            return text(column);
        }
    }

    int rowsAffected() const { return QByteArray(PQcmdTuples(m_result.get())).toInt(); }

private:
    const DatabaseState &m_state;
    Result m_result;
    int m_rows;
    int m_row = -1;
    std::vector<Oid> m_types;
};

// A column comment made by cvsuite: the column as the suite's schema declares it,
// `Name TYPE` or `"Two Words" TYPE`.
void readDeclared(const QString &comment, QString *name, QString *declared)
{
    const QString c = comment.trimmed();
    if (c.startsWith(u'"')) {
        const qsizetype close = c.indexOf(u'"', 1);
        if (close > 0) {
            *name = c.mid(1, close - 1);
            *declared = c.mid(close + 1).trimmed();
        }
        return;
    }
    const qsizetype space = c.indexOf(u' ');
    if (space > 0) {
        *name = c.left(space);
        *declared = c.mid(space + 1).trimmed();
    }
}

// A column without the comment (a table made by hand) is typed by its server type.
QString declaredForServerType(const QString &type)
{
    if (type == u"int2")
        return QStringLiteral("SHORT");
    if (type == u"int4" || type == u"int8")
        return QStringLiteral("LONG");
    if (type == u"float4")
        return QStringLiteral("SINGLE");
    if (type == u"float8")
        return QStringLiteral("DOUBLE");
    return QStringLiteral("MEMO");
}

// What the connection failure says to fix, from libpq's message.
QString connectAdvice(const QString &message)
{
    const QString m = message.toLower();
    if (m.contains(u"database") && m.contains(u"does not exist"))
        return QStringLiteral("The database named in the setting does not exist on the server. "
                              "Check its name, or ask whoever runs the server to create it.");
    if (m.contains(u"password") || m.contains(u"authentication") ||
        (m.contains(u"role") && m.contains(u"does not exist")))
        return QStringLiteral(
            "The server refused the login. Check the user name in the setting, and put the "
            "password in the PostgreSQL password file (pgpass) or service file of this "
            "computer's user, never in the INI file.");
    return QStringLiteral("The server could not be reached. Check that it is running, that this "
                          "computer can reach it over the network, and the server's address in "
                          "the setting.");
}

} // namespace

void DatabaseState::openServer(const QString &conninfo, bool requireBooks)
{
    dialect = JetSql::Dialect::Postgres;
    path = conninfo;
    const QByteArray info = conninfo.toUtf8();

    char *parseError = nullptr;
    PQconninfoOption *options = PQconninfoParse(info.constData(), &parseError);
    if (!options) {
        const QString why = parseError ? serverText(parseError) : QString();
        PQfreemem(parseError);
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("The database server setting '%1' cannot be read (%2). Write "
                                     "it as postgresql://host/database or service=name.")
                          .arg(conninfo, why));
    }
    bool hasPassword = false;
    for (PQconninfoOption *o = options; o->keyword; ++o)
        hasPassword = hasPassword || (qstrcmp(o->keyword, "password") == 0 && o->val && *o->val);
    PQconninfoFree(options);
    if (hasPassword)
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("The database server setting holds a password. Take it out: "
                                     "the INI file is read by every user of the suite. Put it in "
                                     "the PostgreSQL password file (pgpass) of this computer's "
                                     "user instead."));

    // A connect timeout the setting may override; the text always as UTF-8.
    const char *const keys[] = {"connect_timeout", "fallback_application_name", "dbname",
                                "client_encoding", nullptr};
    const char *const values[] = {"10", "corvane", info.constData(), "UTF8", nullptr};
    pg = PQconnectdbParams(keys, values, 1);
    if (!pg || PQstatus(pg) != CONNECTION_OK) {
        const QString message = pg ? serverText(PQerrorMessage(pg)) : QStringLiteral("no memory");
        closeServer();
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("Could not open the books on the database server '%1'. %2 "
                                     "(The server said: %3)")
                          .arg(conninfo, connectAdvice(message), message));
    }
    // The server's notices ("schema does not exist, skipping") are not for a clerk.
    PQsetNoticeProcessor(
        pg, [](void *, const char *) {}, nullptr);
    try {
        setSearchPath();
        setLockTimeout(busyTimeout);
        loadServerTables(requireBooks);
    } catch (...) {
        closeServer();
        throw;
    }
}

void DatabaseState::setLockTimeout(int ms)
{
    exec(QStringLiteral("SELECT set_config('lock_timeout', ?, false)"),
         {QString::number(qMax(ms, 1)) + QStringLiteral("ms")}, Source);
}

// The two data sets, then the schema holding the case-blind text type (citext) that
// their text columns are made of: its operators must be found for text to compare
// without regard to case.
void DatabaseState::setSearchPath()
{
    exec(QStringLiteral("SELECT set_config('search_path', 'farm, wage' || coalesce((SELECT ', ' "
                        "|| quote_ident(n.nspname) FROM pg_extension e JOIN pg_namespace n ON "
                        "n.oid = e.extnamespace WHERE e.extname = 'citext'), ''), false)"),
         {}, Source);
}

void DatabaseState::loadServerTables(bool requireBooks)
{
    std::unique_ptr<Cursor> rows = select(QStringLiteral(R"(
SELECT c.oid, n.nspname, c.relname, coalesce(obj_description(c.oid, 'pg_class'), ''), a.attnum,
       a.attname, coalesce(col_description(c.oid, a.attnum), ''), t.typname, a.attnotnull,
       a.attidentity <> '', EXISTS (SELECT 1 FROM pg_index i WHERE i.indrelid = c.oid
                                    AND i.indisprimary AND a.attnum = ANY (i.indkey))
FROM pg_class c
JOIN pg_namespace n ON n.oid = c.relnamespace
JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped
JOIN pg_type t ON t.oid = a.atttypid
WHERE n.nspname IN ('farm', 'wage') AND c.relkind = 'r'
ORDER BY c.oid, a.attnum)"),
                                          {}, Source);
    bool farm = false, wage = false;
    while (rows->next()) {
        const auto oid = unsigned(rows->integer(0));
        const QString schema = rows->text(1);
        farm = farm || schema == u"farm";
        wage = wage || schema == u"wage";
        QString tableName = rows->text(3);
        if (tableName.isEmpty())
            tableName = rows->text(2);
        const QString folded = tableName.toCaseFolded();
        Table &t = m_tables[folded];
        if (t.name.isEmpty()) {
            t.name = tableName;
            t.qualified = schema + u'.' + JetSql::quoteIdentifier(rows->text(2));
            m_tableByOid.insert(oid, folded);
        }
        QString column = rows->text(5), declared;
        readDeclared(rows->text(6), &column, &declared);
        if (declared.isEmpty())
            declared = declaredForServerType(rows->text(7));
        FieldInfo f;
        f.name = column;
        f.table = t.name;
        f.column = column;
        f.type = jetTypeFromDeclared(declared, &f.size);
        f.required = rows->text(8) == u"t";
        if (rows->text(9) == u"t") {
            f.type = JetType::AutoNumber;
            f.autoNumber = true;
        }
        if (rows->text(10) == u"t")
            t.key = column;
        t.columns.insert(column.toCaseFolded(), f);
        m_columnByNumber.insert(quint64(oid) << 16 | quint64(rows->integer(4)), column);
    }
    if ((!farm || !wage) && requireBooks)
        throw CvError(CvError::CannotOpenDatabase, Source,
                      QStringLiteral("The database on the server (%1) holds no books of the suite: "
                                     "the schema '%2' with its tables is missing. Make the books "
                                     "there with cvsuite (see the README, \"An office on a "
                                     "server\"), or correct the setting.")
                          .arg(path, farm ? QStringLiteral("wage") : QStringLiteral("farm")));
}

void DatabaseState::reloadTables()
{
    m_tables.clear();
    if (!isServer())
        return;
    m_tableByOid.clear();
    m_columnByNumber.clear();
    forgetPrepared();
    loadServerTables(true);
}

const DatabaseState::Table *DatabaseState::serverTable(unsigned oid) const
{
    const auto name = m_tableByOid.constFind(oid);
    if (name == m_tableByOid.constEnd())
        return nullptr;
    const auto t = m_tables.constFind(name.value());
    return t == m_tables.constEnd() ? nullptr : &t.value();
}

QString DatabaseState::serverColumn(unsigned oid, int number) const
{
    return m_columnByNumber.value(quint64(oid) << 16 | quint64(number));
}

// A statement met the second time is kept prepared on the connection: the server
// parses and plans it once, not on every run. One-offs (a copy's bulk inserts) are not
// kept; the kept ones are bounded, as each costs the server memory.
const QByteArray *DatabaseState::preparedName(const QByteArray &sql,
                                              const std::vector<unsigned> &types,
                                              const char *source)
{
    QByteArray key = sql;
    key.append(reinterpret_cast<const char *>(types.data()),
               qsizetype(types.size() * sizeof(unsigned)));
    const auto kept = m_prepared.constFind(key);
    if (kept != m_prepared.constEnd())
        return &kept.value();
    if (m_seenOnce.size() > 4096)
        m_seenOnce.clear();
    if (!m_seenOnce.contains(key)) {
        m_seenOnce.insert(key);
        return nullptr;
    }
    if (m_prepared.size() >= 512)
        forgetPrepared();
    const QByteArray name = "cv" + QByteArray::number(++m_preparedCount);
    Result r(PQprepare(pg, name.constData(), sql.constData(), int(types.size()), types.data()));
    if (!r || PQresultStatus(r.get()) != PGRES_COMMAND_OK)
        failServer(r.release(), source);
    m_seenOnce.remove(key);
    return &m_prepared.insert(key, name).value();
}

void DatabaseState::forgetPrepared()
{
    if (!m_prepared.isEmpty() && pg && PQstatus(pg) == CONNECTION_OK)
        Result(PQexec(pg, "DEALLOCATE ALL"));
    m_prepared.clear();
    m_seenOnce.clear();
}

std::unique_ptr<Cursor> DatabaseState::selectServer(const QString &sql, const QVariantList &values,
                                                    const char *source)
{
    requireOpen(source);
    // The server numbers its markers: $1, $2, ...
    int markers = 0;
    const QByteArray numbered =
        replaceMarkers(
            sql, [](int n) { return u'$' + QString::number(n + 1); }, &markers)
            .toUtf8();
    if (markers != values.size())
        throw CvError(CvError::SqlError, source,
                      QStringLiteral("Parameter count mismatch: %1 values for %2 markers in: %3")
                          .arg(values.size())
                          .arg(markers)
                          .arg(sql));
    const ServerParameters p(values);
    const int n = int(p.values.size());
    const QByteArray *name = preparedName(numbered, p.types, source);
    if (!m_deferred.isEmpty())
        return std::make_unique<ServerCursor>(*this, Result(pipeline(numbered, name, p, source)));
    Result r(name ? PQexecPrepared(pg, name->constData(), n, p.values.data(), p.lengths.data(),
                                   p.formats.data(), 0)
                  : PQexecParams(pg, numbered.constData(), n, p.types.data(), p.values.data(),
                                 p.lengths.data(), p.formats.data(), 0));
    const ExecStatusType status = r ? PQresultStatus(r.get()) : PGRES_FATAL_ERROR;
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
        // A table altered under a kept statement ("cached plan must not change result
        // type"): outside a transaction it is simply run again, prepared afresh.
        if (name && transactionDepth == 0 &&
            qstrcmp(PQresultErrorField(r.get(), PG_DIAG_SQLSTATE), "0A000") == 0) {
            forgetPrepared();
            return selectServer(sql, values, source);
        }
        failServer(r.release(), source);
    }
    return std::make_unique<ServerCursor>(*this, std::move(r));
}

// The transaction statements waiting, then this one, sent together and answered in one
// round trip; the first failure among them is the one reported.
pg_result *DatabaseState::pipeline(const QByteArray &sql, const QByteArray *prepared,
                                   const ServerParameters &p, const char *source)
{
    const QList<QByteArray> waiting = std::exchange(m_deferred, {});
    bool sent = PQenterPipelineMode(pg) == 1;
    for (const QByteArray &statement : waiting)
        sent = sent && PQsendQueryParams(pg, statement.constData(), 0, nullptr, nullptr, nullptr,
                                         nullptr, 0) == 1;
    const int n = int(p.values.size());
    sent = sent &&
           (prepared ? PQsendQueryPrepared(pg, prepared->constData(), n, p.values.data(),
                                           p.lengths.data(), p.formats.data(), 0)
                     : PQsendQueryParams(pg, sql.constData(), n, p.types.data(), p.values.data(),
                                         p.lengths.data(), p.formats.data(), 0)) == 1;
    sent = sent && PQpipelineSync(pg) == 1;
    Result failed, last;
    // Each statement's result is followed by a null; the sync point ends the answer.
    for (qsizetype nulls = 0; sent && nulls <= waiting.size() + 1;) {
        Result r(PQgetResult(pg));
        if (!r) {
            if (PQstatus(pg) != CONNECTION_OK)
                break;
            ++nulls;
            continue;
        }
        const ExecStatusType status = PQresultStatus(r.get());
        if (status == PGRES_PIPELINE_SYNC)
            break;
        if (status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK)
            last = std::move(r);
        else if (status != PGRES_PIPELINE_ABORTED && !failed)
            failed = std::move(r);
    }
    if (PQexitPipelineMode(pg) != 1 && !failed)
        failed.reset(PQmakeEmptyPGresult(pg, PGRES_FATAL_ERROR));
    if (failed || !sent || !last)
        failServer(failed.release(), source);
    return last.release();
}

void DatabaseState::transactionStatement(const QString &sql, const char *source)
{
    if (!isServer()) {
        exec(sql, {}, source);
        return;
    }
    requireOpen(source);
    m_deferred.push_back(sql.toUtf8());
}

bool DatabaseState::endUnstarted()
{
    if (m_deferred.isEmpty() || m_deferred.constFirst() != "BEGIN")
        return false;
    // Nothing reached the server since BEGIN: there is nothing to end.
    m_deferred.clear();
    return true;
}

int DatabaseState::execServer(const QString &sql, const QVariantList &values, const char *source)
{
    const std::unique_ptr<Cursor> rows = selectServer(sql, values, source);
    return static_cast<const ServerCursor &>(*rows).rowsAffected();
}

void DatabaseState::failServer(pg_result *failed, const char *source)
{
    const Result result(failed);
    const QString state =
        result ? QString::fromLatin1(PQresultErrorField(result.get(), PG_DIAG_SQLSTATE))
               : QString();
    QString message =
        result ? serverText(PQresultErrorField(result.get(), PG_DIAG_MESSAGE_PRIMARY)) : QString();
    if (message.isEmpty())
        message = serverText(PQerrorMessage(pg));
    lastFailure = 0;
    m_deferred.clear();
    // A transaction left open would refuse every later statement.
    if (PQstatus(pg) == CONNECTION_OK && PQtransactionStatus(pg) != PQTRANS_IDLE)
        Result(PQexec(pg, "ROLLBACK"));
    transactionDepth = 0;
    // A table changed under a kept statement ("cached plan must not change result
    // type"): the next try prepares it afresh.
    if (state == u"0A000")
        forgetPrepared();
    const bool lost =
        PQstatus(pg) != CONNECTION_OK || state.startsWith(u"08") || state.startsWith(u"57P");
    if (lost) {
        // The next try starts on a fresh connection, with the session as it was.
        if (!m_resetting) {
            PQreset(pg);
            m_prepared.clear(); // the new session holds none of them
            m_seenOnce.clear();
        }
        if (!m_resetting && PQstatus(pg) == CONNECTION_OK) {
            m_resetting = true;
            try {
                setSearchPath();
                setLockTimeout(busyTimeout);
            } catch (const CvError &) {
                // the failure below is the one to report
            }
            m_resetting = false;
        }
        throw CvError(CvError::DiskOrNetworkError, source,
                      QStringLiteral("The connection to the database server (%1) failed (%2).")
                          .arg(path, message));
    }
    if (state == u"55P03" || state == u"40P01" || state == u"40001" || state == u"57014")
        throw CvError(CvError::DatabaseLocked, source,
                      QStringLiteral("Another program is using %1 and kept the rows this needs "
                                     "locked longer than this program waits (%2 s).")
                          .arg(files(), QString::number(busyTimeout / 1000.0)));
    if (state == u"0A000" && message.contains(u"cached plan"))
        throw CvError(CvError::SqlError, source,
                      QStringLiteral("The tables of the books on the server (%1) were changed "
                                     "while this program was open, and nothing was saved. Please "
                                     "try again.")
                          .arg(path));
    if (state.startsWith(u"53"))
        throw CvError(
            CvError::DiskFull, source,
            QStringLiteral("The database server (%1) is out of room (%2).").arg(path, message));
    if (state == u"42501" || state == u"25006")
        throw CvError(CvError::FileReadOnly, source,
                      QStringLiteral("The database server (%1) does not let this user change the "
                                     "books (%2).")
                          .arg(path, message));
    throw CvError(CvError::SqlError, source, message);
}

void DatabaseState::closeServer()
{
    if (pg && PQstatus(pg) == CONNECTION_OK && PQtransactionStatus(pg) != PQTRANS_IDLE)
        Result(PQexec(pg, "ROLLBACK"));
    if (pg)
        PQfinish(pg);
    pg = nullptr;
    transactionDepth = 0;
    m_deferred.clear();
    m_prepared.clear();
    m_seenOnce.clear();
    m_tables.clear();
    m_tableByOid.clear();
    m_columnByNumber.clear();
}
