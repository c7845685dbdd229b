#include "data/sqlitestatement.h"

#include "core/cverror.h"
#include "data/databasestate.h"
#include "data/jetvalue.h"

namespace {

QString text16(const void *p)
{
    return p ? QString(static_cast<const QChar *>(p)) : QString();
}

} // namespace

SqliteStatement::SqliteStatement(DatabaseState &state, const QString &sql,
                                 const QVariantList &values, const char *source)
    : m_state(state), m_source(source)
{
    prepare(sql, values);
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(m_stmt);
}

void SqliteStatement::prepare(const QString &sql, const QVariantList &values)
{
    sqlite3_finalize(m_stmt);
    m_stmt = nullptr;
    const int rc =
        sqlite3_prepare16_v2(m_state.handle, sql.utf16(), int(sql.size() * 2), &m_stmt, nullptr);
    if (rc != SQLITE_OK)
        fail(rc);
    if (const int markers = sqlite3_bind_parameter_count(m_stmt); markers != values.size()) {
        sqlite3_finalize(m_stmt);
        m_stmt = nullptr;
        throw CvError(CvError::SqlError, m_source,
                      QStringLiteral("Parameter count mismatch: %1 values for %2 markers in: %3")
                          .arg(values.size())
                          .arg(markers)
                          .arg(sql));
    }
    for (int i = 0; i < int(values.size()); ++i) {
        if (const int bound = bind(i + 1, values.at(i)); bound != SQLITE_OK)
            fail(bound);
    }
}

int SqliteStatement::bind(int index, const QVariant &v)
{
    if (v.isNull())
        return sqlite3_bind_null(m_stmt, index);
    if (JetValue::isInteger(v))
        return sqlite3_bind_int64(m_stmt, index, v.toLongLong());
    if (JetValue::isReal(v))
        return sqlite3_bind_double(m_stmt, index, v.toDouble());
    if (v.metaType().id() == QMetaType::QByteArray) {
        const QByteArray bytes = v.toByteArray();
        return bytes.isNull() ? sqlite3_bind_null(m_stmt, index)
                              : sqlite3_bind_blob64(m_stmt, index, bytes.constData(),
                                                    sqlite3_uint64(bytes.size()), SQLITE_TRANSIENT);
    }
    const QString text = v.toString();
    if (text.isNull())
        return sqlite3_bind_null(m_stmt, index);
    const QByteArray utf8 = text.toUtf8();
    return sqlite3_bind_text64(m_stmt, index, utf8.constData(), sqlite3_uint64(utf8.size()),
                               SQLITE_TRANSIENT, SQLITE_UTF8);
}

QVariant SqliteStatement::value(int column) const
{
    switch (sqlite3_column_type(m_stmt, column)) {
    case SQLITE_INTEGER:
        return qint64(sqlite3_column_int64(m_stmt, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_stmt, column);
    case SQLITE_TEXT:
        return QString(static_cast<const QChar *>(sqlite3_column_text16(m_stmt, column)),
                       sqlite3_column_bytes16(m_stmt, column) / 2);
    case SQLITE_BLOB:
        return QByteArray(static_cast<const char *>(sqlite3_column_blob(m_stmt, column)),
                          sqlite3_column_bytes(m_stmt, column));
    default:
        return QVariant();
    }
}

QString SqliteStatement::name(int column) const
{
    return text16(sqlite3_column_name16(m_stmt, column));
}

QString SqliteStatement::originTable(int column) const
{
    return text16(sqlite3_column_table_name16(m_stmt, column));
}

QString SqliteStatement::originColumn(int column) const
{
    return text16(sqlite3_column_origin_name16(m_stmt, column));
}

bool SqliteStatement::next()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_DONE)
        return false;
    if (rc != SQLITE_ROW)
        fail(rc);
    return true;
}

void SqliteStatement::fail(int rc)
{
    const QString message = QString::fromUtf8(sqlite3_errmsg(m_state.handle));
    sqlite3_finalize(m_stmt); // releases the read lock before any rollback
    m_stmt = nullptr;
    m_state.fail(rc, message, m_source);
}
