#include "bookquery.h"

#include "core/cverror.h"

#include <gtest/gtest.h>
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

void expectConsistentBooks(const BookQuery &farm, const BookQuery &wage)
{
    EXPECT_EQ(farm.contractBreaches().join(", ").toStdString(), "");
    EXPECT_EQ(wage.contractBreaches().join(", ").toStdString(), "");
    EXPECT_EQ(wage.keys("SELECT AddressID FROM Employees"),
              farm.keys("SELECT AddressID FROM Addresses WHERE WageFlag = -1"));
    const qint64 members =
        wage.count("SELECT COUNT(*) FROM Employees WHERE KiwiSaverEnrolled = -1");
    EXPECT_EQ(members,
              wage.count("SELECT COUNT(*) FROM EmployerContributions WHERE TaxName = 'KiwiSaver'"));
    EXPECT_EQ(members,
              wage.count("SELECT COUNT(*) FROM EmployeeDeductions WHERE TaxName = 'KiwiSaver'"));

    EXPECT_TRUE(farm.keys("SELECT AddressID FROM Addresses")
                    .contains(farm.keys("SELECT AddressID FROM Transactions")));
    EXPECT_TRUE(farm.keys("SELECT \"Secondary Codes ID\" FROM \"Secondary Codes\"")
                    .contains(farm.keys("SELECT HeadingAccount FROM Addresses "
                                        "WHERE HeadingAccount IS NOT NULL")));
    EXPECT_TRUE(
        farm.keys("SELECT BanksID FROM Banks").contains(wage.keys("SELECT BankID FROM Employees")));
    const QSet<qint64> employees = wage.keys("SELECT EmployeeID FROM Employees");
    for (const char *table : {"Wages", "EmployeeDeductions", "EmployerContributions"})
        EXPECT_TRUE(employees.contains(wage.keys(QString("SELECT EmployeeID FROM %1").arg(table))))
            << table;
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM EmployeeDeductions WHERE DeductID NOT IN "
                         "(SELECT DeductNameID FROM DeductNames)"),
              0);
    EXPECT_EQ(wage.count("SELECT COUNT(*) FROM Employees WHERE EmployeeTypeID NOT IN "
                         "(SELECT EmployeeTypeID FROM EmployeeAwardType) OR TaxTypeID NOT IN "
                         "(SELECT TaxTypeID FROM TaxTypes) OR PayIntervalID NOT IN "
                         "(SELECT PayIntervalID FROM PayInterval) OR IFNULL(KiwiSaverEnrolID, 6) "
                         "NOT IN (SELECT KSEnrollTypeID FROM KiwiSaverEnrollType) OR "
                         "KiwiSaverEmployerRateID NOT IN "
                         "(SELECT ContributionNameID FROM ContributionNames)"),
              0);
}
