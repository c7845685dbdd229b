#include "bookquery.h"

#include "data/cverror.h"

#include <QCryptographicHash>
#include <QDate>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

BookQuery::BookQuery(const QString &path)
    : m_connection("bookquery-" + QUuid::createUuid().toString())
{
    QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", m_connection);
    db.setDatabaseName(path);
    db.setConnectOptions("QSQLITE_OPEN_READONLY");
    if (!db.open())
        throw CvError(CvError::CannotOpenDatabase, "BookQuery",
                      path + ": " + db.lastError().text());
}

BookQuery::~BookQuery()
{
    QSqlDatabase::database(m_connection, false).close();
    QSqlDatabase::removeDatabase(m_connection);
}

QList<QVariantList> BookQuery::rows(const QString &sql) const
{
    QSqlQuery q(QSqlDatabase::database(m_connection, false));
    q.setForwardOnly(true);
    if (!q.exec(sql))
        throw CvError(CvError::SqlError, "BookQuery", q.lastError().text() + ": " + sql);
    QList<QVariantList> out;
    while (q.next()) {
        QVariantList row;
        for (int i = 0; i < q.record().count(); ++i)
            row << q.value(i);
        out << row;
    }
    return out;
}

QVariant BookQuery::value(const QString &sql) const
{
    const QList<QVariantList> all = rows(sql);
    return all.isEmpty() ? QVariant() : all.first().value(0);
}

QSet<qint64> BookQuery::keys(const QString &sql) const
{
    QSet<qint64> out;
    for (const QVariantList &row : rows(sql))
        out.insert(row.value(0).toLongLong());
    return out;
}

QByteArray BookQuery::digest() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QVariantList &table :
         rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
        const QString name = table.value(0).toString();
        hash.addData(name.toUtf8());
        for (const QVariantList &row : rows("SELECT * FROM \"" + name + "\" ORDER BY 1")) {
            for (const QVariant &v : row)
                hash.addData((v.isNull() ? QString("<null>") : v.toString()).toUtf8() + '\x1f');
            hash.addData("\n");
        }
    }
    return hash.result().toHex();
}

QStringList BookQuery::contractBreaches() const
{
    const QDate zero(1899, 12, 30);
    const QString earliest = QString::number(zero.daysTo(QDate(1900, 1, 1)));
    const QString latest = QString::number(zero.daysTo(QDate(2100, 1, 1)));
    QStringList out;
    for (const QVariantList &table : rows("SELECT name FROM sqlite_master WHERE type = 'table' "
                                          "AND name NOT LIKE 'sqlite%'")) {
        const QString name = table.value(0).toString();
        for (const QVariantList &column : rows("PRAGMA table_info(\"" + name + "\")")) {
            const QString col = "\"" + column.value(1).toString() + "\"";
            const QString type = column.value(2).toString().toUpper();
            QString bad;
            if (type == "CURRENCY")
                bad = "typeof(" + col + ") NOT IN ('integer', 'null')";
            else if (type == "YESNO")
                bad = col + " NOT IN (-1, 0)";
            else if (type == "DATETIME")
                bad = "typeof(" + col + ") NOT IN ('integer', 'real', 'null') OR (" + col +
                      " <> 0 AND " + col + " NOT BETWEEN " + earliest + " AND " + latest + ")";
            else if (type.startsWith("TEXT") || type.startsWith("MEMO"))
                bad = "typeof(" + col + ") NOT IN ('text', 'null')";
            if (!bad.isEmpty() &&
                value("SELECT COUNT(*) FROM \"" + name + "\" WHERE " + bad).toLongLong() > 0)
                out << name + "." + column.value(1).toString();
        }
    }
    return out;
}

void execOnBook(const QString &path, const QString &sql)
{
    const QString name = "bookquery-" + QUuid::createUuid().toString();
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            QSqlQuery q(db);
            if (!q.exec(sql))
                failure = q.lastError().text();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty())
        throw CvError(CvError::SqlError, "execOnBook", path + ": " + failure + ": " + sql);
}
