// Saves that cannot happen (another program holding a data file): one message, and the
// window never moves on or closes over what the user typed unless they let it go.
#include "booklogic_fixture.h"

#include "support/filelock.h"

#include <QFile>

namespace {

class SaveFailure : public BookLogicTest
{
protected:
    void SetUp() override
    {
        addAddress(1, "Acme Farm Supplies");
        addAddress(2, "Brown");
        suite.execFarm("INSERT INTO \"Account Codes\" VALUES (400, 'Sales', -1);"
                       "INSERT INTO \"Secondary Codes\" VALUES (400001, 400, 'Fuel');"
                       "UPDATE Addresses SET notes = 'old notes', HeadingAccount = 999 "
                       "WHERE AddressID = 1");
    }
    QVariant stored(const char *column, qint32 id = 1) const
    {
        return farmValue(QStringLiteral("SELECT %1 FROM Addresses WHERE AddressID = %2")
                             .arg(QLatin1String(column))
                             .arg(id));
    }
    // The one message of a failed save, answered with the given button.
    void expectOneSaveMessage(const char *what)
    {
        ASSERT_EQ(messages.requests.size(), 1u);
        const MessageRequest &r = messages.requests.front();
        EXPECT_EQ(r.buttons, ButtonsRetryDiscardCancel);
        EXPECT_TRUE(r.prompt.startsWith(
            QStringLiteral("Your changes to %1 were not saved.").arg(QLatin1String(what))))
            << r.prompt.toStdString();
        EXPECT_TRUE(r.prompt.contains("Another program is using")) << r.prompt.toStdString();
        messages.requests.clear();
    }
};

TEST_F(SaveFailure, CancelKeepsTheEntryAndItsEditsRetrySavesThem)
{
    start(0);
    logic.editField(AddressBookLogic::BusPhone, "03 208 1234");
    {
        FileLock other(suite.farmPath());
        messages.answers = {ResultCancel};
        logic.chooseName(1);
        expectOneSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.shownAddressId(), 1);
        EXPECT_EQ(logic.nameList().listIndex(), 0);
        EXPECT_EQ(logic.field(AddressBookLogic::BusPhone), "03 208 1234");

        // Closing is refused the same way.
        messages.answers = {ResultCancel};
        EXPECT_FALSE(logic.queryUnload());
        expectOneSaveMessage("Acme Farm Supplies");
    }
    logic.chooseName(1);
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_EQ(stored("BusPhone").toString(), "03 208 1234");
    // The heading the user never touched is not written (999 is not in the list).
    EXPECT_EQ(stored("HeadingAccount").toInt(), 999);
    EXPECT_EQ(logic.shownAddressId(), 2);
}

TEST_F(SaveFailure, DiscardLetsTheEditGoAndMovesOn)
{
    start(0);
    logic.editField(AddressBookLogic::BusPhone, "03 208 1234");
    FileLock other(suite.farmPath());
    messages.answers = {ResultRetry, ResultDiscard}; // still locked on the retry
    logic.chooseName(1);
    ASSERT_EQ(messages.requests.size(), 2u);
    other.release();
    EXPECT_EQ(logic.shownAddressId(), 2);
    EXPECT_TRUE(stored("BusPhone").isNull());
}

TEST_F(SaveFailure, TypedNotesStayOnTheirTabWhenTheyCannotBeSaved)
{
    start(0);
    logic.changeTab(logic.notesTab());
    logic.editNotes("old notes\r\nRang about the fence");
    {
        FileLock other(suite.farmPath());
        messages.answers = {ResultCancel};
        logic.changeTab(AddressBookLogic::firstTab());
        expectOneSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.currentTab(), logic.notesTab());
        EXPECT_EQ(logic.notes(), "old notes\r\nRang about the fence");
    }
    logic.changeTab(AddressBookLogic::firstTab());
    EXPECT_EQ(stored("notes").toString(), "old notes\r\nRang about the fence");
}

TEST_F(SaveFailure, AnEmployeeIsAddedWithItsRowOrNotAtAll)
{
    addEmployee(1, 1);
    suite.execFarm("UPDATE Addresses SET WageFlag = -1");
    start(1, 1);
    input.answers = {"Hana Kereama"};
    FileLock other(suite.wagePath()); // only the wage file is held
    messages.answers = {ResultCancel};
    logic.addEntry();
    expectOneSaveMessage("the new entry Hana Kereama");
    EXPECT_EQ(farmCount("WHERE BusName = 'Hana Kereama'"), 0);
    other.release();

    input.answers = {"Hana Kereama"};
    logic.addEntry();
    const QVariant id = farmValue("SELECT AddressID FROM Addresses WHERE BusName = 'Hana Kereama'");
    ASSERT_TRUE(id.isValid());
    EXPECT_EQ(wageValue("SELECT Count(*) FROM Employees WHERE AddressID = " + id.toString()), 1);
}

TEST_F(SaveFailure, ABrokenDataFileIsReportedOnceByName)
{
    QFile file(suite.wagePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray("SQLite format 3\0", 16) + QByteArray(4096, 'x'));
    file.close();
    start(0);
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_TRUE(messages.requests.front().prompt.contains("Wage32.mdb"))
        << messages.requests.front().prompt.toStdString();
    logic.chooseName(0);
    logic.changeTab(1);
    EXPECT_TRUE(logic.queryUnload());
    logic.unload();
    EXPECT_EQ(messages.requests.size(), 1u);
}

} // namespace
