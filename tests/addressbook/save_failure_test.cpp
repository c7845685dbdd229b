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
        start(0);
    }
    // The one message of a failed save.
    void expectSaveMessage(const char *what)
    {
        const MessageRequest r = onlyMessage();
        EXPECT_EQ(r.buttons, ButtonsRetryDiscardCancel);
        EXPECT_TRUE(r.prompt.startsWith(QString("Your changes to %1 were not saved.").arg(what)) &&
                    r.prompt.contains("Another program is using"))
            << r.prompt.toStdString();
    }
};

TEST_F(SaveFailure, CancelKeepsTheEntryAndItsEditsRetrySavesThem)
{
    logic.editField(Book::BusPhone, "03 208 1234");
    {
        FileLock other(suite.farmPath());
        messages.answers = {ResultCancel, ResultCancel};
        logic.chooseName(1);
        expectSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.shownAddressId(), 1);
        EXPECT_EQ(logic.nameList().listIndex(), 0);
        EXPECT_EQ(logic.field(Book::BusPhone), "03 208 1234");
        EXPECT_FALSE(logic.queryUnload()); // closing is refused the same way
        expectSaveMessage("Acme Farm Supplies");
    }
    logic.chooseName(1);
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_EQ(stored("BusPhone").toString(), "03 208 1234");
    EXPECT_EQ(logic.shownAddressId(), 2);
}

TEST_F(SaveFailure, DiscardLetsTheEditGoAndMovesOn)
{
    logic.editField(Book::BusPhone, "03 208 1234");
    FileLock other(suite.farmPath());
    messages.answers = {ResultRetry, ResultDiscard}; // still locked on the retry
    logic.chooseName(1);
    EXPECT_EQ(messages.requests.size(), 2u);
    other.release();
    EXPECT_EQ(logic.shownAddressId(), 2);
    EXPECT_TRUE(stored("BusPhone").isNull());
}

TEST_F(SaveFailure, TypedNotesStayOnTheirTabWhenTheyCannotBeSaved)
{
    logic.changeTab(logic.notesTab());
    logic.editNotes("Rang about the fence");
    {
        FileLock other(suite.farmPath());
        messages.answers = {ResultCancel};
        logic.changeTab(Book::firstTab());
        expectSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.currentTab(), logic.notesTab());
        EXPECT_EQ(logic.notes(), "Rang about the fence");
    }
    logic.changeTab(Book::firstTab());
    EXPECT_EQ(stored("notes").toString(), "Rang about the fence");
}

TEST_F(SaveFailure, AnEmployeeIsAddedWithItsRowOrNotAtAll)
{
    logic.unload();
    addEmployee(1, 1);
    suite.execFarm("UPDATE Addresses SET WageFlag = -1");
    start(1, 1);
    doubles.answers = {"Hana Kereama", "Hana Kereama"};
    {
        FileLock other(suite.wagePath()); // only the wage file is held
        messages.answers = {ResultCancel};
        logic.addEntry();
        expectSaveMessage("the new entry Hana Kereama");
        EXPECT_EQ(farmCount("WHERE BusName = 'Hana Kereama'"), 0);
    }
    logic.addEntry();
    const QVariant id = farmValue("SELECT AddressID FROM Addresses WHERE BusName = 'Hana Kereama'");
    ASSERT_TRUE(id.isValid());
    EXPECT_EQ(wageValue("SELECT Count(*) FROM Employees WHERE AddressID = " + id.toString()), 1);
}

TEST_F(BookLogicTest, ABrokenDataFileIsReportedOnceByName)
{
    QFile file(suite.wagePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray("SQLite format 3\0", 16) + QByteArray(4096, 'x'));
    file.close();
    start(0);
    logic.chooseName(0);
    logic.changeTab(1);
    EXPECT_TRUE(logic.queryUnload());
    logic.unload();
    EXPECT_TRUE(onlyMessage().prompt.contains("Wage32.mdb"));
}

} // namespace
