#pragma once

#include "addressbook/addressbooklogic.h"
#include "bookdoubles.h"
#include "launch/addressglobals.h"
#include "messages/messageservice.h"
#include "support/messagerecorder.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QStringList>
#include <QVariant>

using Book = AddressBookLogic;

// Real suite files in a temporary folder, the logic of one window on them.
class BookLogicTest : public ::testing::Test
{
protected:
    BookLogicTest();
    ~BookLogicTest() override;

    // Rows straight into the data files; identifiers are given, not assigned.
    void addAddress(qint32 id, const QVariant &name, bool wageFlag = false);
    void addEmployee(qint32 employeeId, qint32 addressId, const QVariant &dateFinished = {});
    // Loads and shows the window in the mode.
    void start(qint16 launchMode, qint32 currentAddressId = 0);
    void choose(const QString &name) { logic.chooseName(int(listed().indexOf(name))); }
    QStringList listed() const;
    // The one message shown since the last call, cleared.
    MessageRequest onlyMessage();

    QVariant farmValue(const QString &sql) const { return suite.farmValue(sql); }
    QVariant wageValue(const QString &sql) const { return suite.wageValue(sql); }
    QVariant stored(const char *column, qint32 id = 1) const
    {
        return farmValue(
            QString("SELECT %1 FROM Addresses WHERE AddressID = %2").arg(column).arg(id));
    }
    qint64 farmCount(const QString &where = {}) const
    {
        return farmValue("SELECT Count(*) FROM Addresses " + where).toLongLong();
    }

    TempSuite suite;
    MessageRecorder messages;
    BookDoubles doubles;
    AddressBookLogic logic{AddressGlobals::context()};
};
