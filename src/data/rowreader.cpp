#include "data/rowreader.h"

#include "core/cverror.h"
#include "data/cursor.h"
#include "data/database.h"
#include "data/databasestate.h"
#include "data/jetsql.h"
#include "data/jetvalue.h"

namespace {
constexpr const char *Source = "RowReader";
}

RowReader::RowReader(Database &db, const QString &jetSql, const QVariantList &values)
    : m_state(db.m_state)
{
    const auto translation = JetSql::translation(jetSql.trimmed(), m_state->dialect);
    if (!translation->isSelect)
        throw CvError(CvError::SqlError, Source,
                      QStringLiteral("Rows are read from a SELECT statement: ") + jetSql);
    QVariantList bound;
    bound.reserve(values.size());
    for (const QVariant &v : values)
        bound << JetValue::toParameter(v);
    const QString sql = JetSql::bind(*translation, bound);
    m_statement = m_state->select(sql, bound, Source);
}

RowReader::~RowReader() = default;

bool RowReader::next()
{
    return m_statement->next();
}

bool RowReader::isNull(int column) const
{
    return m_statement->isNull(column);
}

qint64 RowReader::integer(int column) const
{
    return m_statement->integer(column);
}

QString RowReader::text(int column) const
{
    return m_statement->text(column);
}

QByteArray RowReader::utf8(int column) const
{
    return m_statement->utf8(column);
}
