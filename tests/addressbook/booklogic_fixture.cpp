#include "booklogic_fixture.h"

#include "data/database.h"
#include "data/recordset.h"
#include "launch/addressglobals.h"

#include <QSqlQuery>

QString ScriptedInput::ask(const QString &prompt, const QString &title, const QString &)
{
    prompts << prompt;
    titles << title;
    if (answers.empty())
        return QString();
    const QString answer = answers.front();
    answers.pop_front();
    return answer;
}

BookLogicTest::BookLogicTest()
{
    AddressGlobals::reset();
    logic.setInputBox(&input);
    logic.setPayDetailsOpener(&openers);
    logic.setHelpOpener(&openers);
}

BookLogicTest::~BookLogicTest()
{
    AddressGlobals::reset();
}

namespace {

QString sqlValue(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("NULL");
    QString text = v.toString();
    return u'\'' + text.replace(u'\'', QStringLiteral("''")) + u'\'';
}

QVariant firstValue(const QString &path, const QString &sql)
{
    Database db(path);
    Recordset rs(db, sql, Recordset::Snapshot);
    return rs.eof() ? QVariant() : rs.storedValue(0);
}

} // namespace

void BookLogicTest::addAddress(qint32 id, const QVariant &name, bool wageFlag)
{
    suite.execFarm(QStringLiteral("INSERT INTO Addresses (AddressID, BusName, WageFlag) "
                                  "VALUES (%1, %2, %3)")
                       .arg(id)
                       .arg(sqlValue(name))
                       .arg(wageFlag ? -1 : 0));
}

void BookLogicTest::addEmployee(qint32 employeeId, qint32 addressId, const QVariant &dateFinished)
{
    suite.execWage(
        QStringLiteral("INSERT INTO Employees (EmployeeID, AddressID, Datefinished) "
                       "VALUES (%1, %2, %3)")
            .arg(employeeId)
            .arg(addressId)
            .arg(dateFinished.isNull() ? QStringLiteral("NULL") : dateFinished.toString()));
}

void BookLogicTest::start(qint16 launchMode, qint32 currentAddressId)
{
    AddressGlobals::LaunchMode = launchMode;
    AddressGlobals::CurrentAddressID = currentAddressId;
    logic.load();
    logic.activate();
}

QStringList BookLogicTest::listed() const
{
    QStringList names;
    for (const ComboItem &item : logic.nameList().items())
        names << item.text;
    return names;
}

std::vector<qint32> BookLogicTest::listedIds() const
{
    std::vector<qint32> ids;
    for (const ComboItem &item : logic.nameList().items())
        ids.push_back(item.data);
    return ids;
}

QVariant BookLogicTest::farmValue(const QString &sql) const
{
    return firstValue(suite.farmPath(), sql);
}

QVariant BookLogicTest::wageValue(const QString &sql) const
{
    return firstValue(suite.wagePath(), sql);
}

qint64 BookLogicTest::farmCount(const QString &whereClause) const
{
    return farmValue(QStringLiteral("SELECT Count(*) FROM Addresses ") + whereClause).toLongLong();
}

int BookLogicTest::indexOf(const QString &name) const
{
    return int(listed().indexOf(name));
}
