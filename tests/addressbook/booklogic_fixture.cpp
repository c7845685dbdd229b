#include "booklogic_fixture.h"

#include "launch/addressglobals.h"

BookLogicTest::BookLogicTest()
{
    AddressGlobals::reset();
    logic.setInputBox(&doubles);
    logic.setPayDetailsOpener(&doubles);
    logic.setHelpOpener(&doubles);
}

BookLogicTest::~BookLogicTest()
{
    AddressGlobals::reset();
}

void BookLogicTest::addAddress(qint32 id, const QVariant &name, bool wageFlag)
{
    const QString text = name.isNull() ? "NULL" : "'" + name.toString().replace("'", "''") + "'";
    suite.execFarm(
        QString("INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (%1, %2, %3)")
            .arg(id)
            .arg(text)
            .arg(wageFlag ? -1 : 0));
}

void BookLogicTest::addEmployee(qint32 employeeId, qint32 addressId, const QVariant &dateFinished)
{
    suite.execWage(QString("INSERT INTO Employees (EmployeeID, AddressID, Datefinished) "
                           "VALUES (%1, %2, %3)")
                       .arg(employeeId)
                       .arg(addressId)
                       .arg(dateFinished.isNull() ? "NULL" : dateFinished.toString()));
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

MessageRequest BookLogicTest::onlyMessage()
{
    EXPECT_EQ(messages.requests.size(), 1u) << messages.titles().join(", ").toStdString();
    const MessageRequest r =
        messages.requests.empty() ? MessageRequest() : messages.requests.back();
    messages.requests.clear();
    return r;
}
