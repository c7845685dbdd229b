#include "bookwriter.h"

#include "core/cverror.h"

#include <QSqlError>
#include <QUuid>

namespace SuiteFiles {

static const char *kSource = "cvsuite";

namespace Store {

QVariant money(qint64 cents)
{
    return QVariant(cents * 100);
}

QVariant date(const QDate &day)
{
    static const QDate zero(1899, 12, 30);
    return day.isValid() ? QVariant(double(zero.daysTo(day))) : QVariant();
}

QVariant yesNo(bool value)
{
    return QVariant(value ? -1 : 0);
}

QVariant text(const QString &value)
{
    return value.isEmpty() ? QVariant() : QVariant(value);
}

QVariant key(qint64 value)
{
    return value == 0 ? QVariant() : QVariant(value);
}

} // namespace Store

BookWriter::BookWriter(const QString &path)
    : m_path(path), m_connection("bookwriter-" + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    try {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", m_connection);
        db.setDatabaseName(path);
        if (!db.open())
            throw CvError(CvError::CannotOpenDatabase, kSource,
                          "cannot open " + path + ": " + db.lastError().text());
        // Nothing else has the file yet, and a failed load deletes it, so the
        // journal buys nothing while loading.
        exec("PRAGMA synchronous=OFF");
        exec("PRAGMA journal_mode=MEMORY");
        exec("PRAGMA cache_size=-65536");
        exec("BEGIN");
        m_inTransaction = true;
    } catch (...) {
        release();
        throw;
    }
}

BookWriter::~BookWriter()
{
    release();
}

void BookWriter::release()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (m_inTransaction && db.isOpen())
            QSqlQuery(db).exec("ROLLBACK");
        m_inTransaction = false;
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

QSqlDatabase BookWriter::database() const
{
    return QSqlDatabase::database(m_connection, false);
}

void BookWriter::exec(const QString &sql)
{
    QSqlQuery q(database());
    if (!q.exec(sql))
        throw CvError(CvError::SqlError, kSource,
                      m_path + ": " + q.lastError().text() + ": " + sql);
}

void BookWriter::commit()
{
    exec("COMMIT");
    m_inTransaction = false;
    exec("PRAGMA journal_mode=DELETE");
    exec("PRAGMA synchronous=FULL");
    database().close();
}

RowInserter::RowInserter(BookWriter &book, const QString &table, const QStringList &columns)
    : m_query(book.database()), m_table(table), m_columns(columns.size())
{
    QStringList quoted;
    for (const QString &c : columns)
        quoted << '"' + c + '"';
    const QString sql =
        QString("INSERT INTO \"%1\" (%2) VALUES (%3)")
            .arg(table, quoted.join(", "), QStringList(columns.size(), "?").join(", "));
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        throw CvError(CvError::SqlError, kSource,
                      book.path() + ": " + m_query.lastError().text() + ": " + sql);
}

qint64 RowInserter::insert(std::initializer_list<QVariant> values)
{
    if (qsizetype(values.size()) != m_columns)
        throw CvError(CvError::InvalidProcedureCall, kSource,
                      QString("%1 values for the %2 columns of %3")
                          .arg(values.size())
                          .arg(m_columns)
                          .arg(m_table));
    int i = 0;
    for (const QVariant &v : values)
        m_query.bindValue(i++, v);
    if (!m_query.exec())
        throw CvError(CvError::SqlError, kSource,
                      "cannot add a row to " + m_table + ": " + m_query.lastError().text());
    return m_query.lastInsertId().toLongLong();
}

} // namespace SuiteFiles
