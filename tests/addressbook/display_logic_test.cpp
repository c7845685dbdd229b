// Showing an entry and what is written back when the user moves on; saves that cannot
// happen (another program holding a data file): one message, and the window never moves on
// or closes over what the user typed unless they let it go.
#include "booklogic_fixture.h"
#include "launch/addressglobals.h"
#include "support/filelock.h"

#include <QFile>

class DisplayLogic : public BookLogicTest
{
protected:
    void SetUp() override
    {
        addAddress(1, "Acme Farm Supplies");
        addAddress(2, "Brown");
        addAddress(3, "Carter");
        suite.execFarm("UPDATE Addresses SET BusCity = 'Gore', ContactLastName = 'Smith', "
                       "notes = 'first line' WHERE AddressID = 1;"
                       "INSERT INTO \"Account Codes\" VALUES (400, 'Sales', -1), (500, 'X', 0);"
                       "INSERT INTO \"Secondary Codes\" VALUES (401001, 400, 'Wages'), "
                       "(401002, 400, 'Fuel'), (501001, 500, 'Not in cashbook')");
    }
};

TEST_F(DisplayLogic, OnlyWhatTheUserChangedIsWrittenWhenAnotherEntryIsChosen)
{
    suite.execFarm("UPDATE Addresses SET HeadingAccount = 999 WHERE AddressID = 1");
    start(0);
    ASSERT_EQ(logic.shownAddressId(), 1);
    EXPECT_EQ(logic.field(Book::BusCity), "Gore");
    logic.editField(Book::BusPhone, "03 208 1234");
    logic.editField(Book::BusCity, ""); // an emptied box stores Null
    logic.toggleFlag(Book::BusinessFlag, true);
    choose("Brown");
    EXPECT_EQ(stored("BusPhone").toString(), "03 208 1234");
    EXPECT_TRUE(stored("BusCity").isNull());
    EXPECT_EQ(stored("BusinessFlag").toLongLong(), -1);
    EXPECT_EQ(stored("ContactLastName").toString(), "Smith");
    EXPECT_EQ(stored("HeadingAccount").toInt(), 999); // not listed, never picked
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 2);

    // Nothing typed on this entry, so nothing is written: another program's lock is no matter.
    FileLock other(suite);
    choose("Carter");
    EXPECT_TRUE(messages.requests.empty());
}

// Another clerk saved the entry while it was on screen: what they changed and this user
// did not stays theirs; a value both changed is asked about, and so are notes that the
// pay change log added to.
TEST_F(DisplayLogic, AnotherClerksSaveIsNotOverwrittenUnseen)
{
    const struct
    {
        qint16 answer;
        const char *phone, *notes; // stored after the save, nullptr: as before it
        bool movesOn;
    } cases[] = {{ResultYes, "mine", "my note", true},
                 {ResultNo, "theirs", "first line\r\n[log] theirs", true},
                 {ResultCancel, nullptr, nullptr, false}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answer);
        suite.execFarm("UPDATE Addresses SET BusPhone = NULL, BusFax = NULL, notes = 'first line' "
                       "WHERE AddressID = 1");
        start(0);
        logic.editField(Book::BusPhone, "mine");
        logic.changeTab(logic.notesTab());
        logic.editNotes("my note");
        suite.execFarm("UPDATE Addresses SET BusPhone = 'theirs', BusFax = 'their fax', notes = "
                       "'first line\r\n[log] theirs' WHERE AddressID = 1");
        messages.requests.clear();
        messages.answers = {c.answer};
        choose("Carter");
        ASSERT_EQ(messages.requests.size(), 1u);
        const QString prompt = messages.requests[0].prompt;
        EXPECT_TRUE(prompt.contains("Phone: yours mine, theirs theirs")) << prompt.toStdString();
        EXPECT_TRUE(prompt.contains("Notes: yours my note, theirs first line [log] theirs"))
            << prompt.toStdString();
        EXPECT_EQ(logic.shownAddressId(), c.movesOn ? 3 : 1);
        EXPECT_EQ(stored("BusPhone").toString(), c.phone ? c.phone : "theirs");
        EXPECT_EQ(stored("notes").toString(), c.notes ? c.notes : "first line\r\n[log] theirs");
        EXPECT_EQ(stored("BusFax").toString(), "their fax") << "not typed here, never written";
        logic.unload();
    }
}

TEST_F(DisplayLogic, RefusedValueIsReportedOnceAndTheOtherFieldsAreStillWritten)
{
    suite.execFarm("UPDATE Addresses SET WageFlag = -1");
    addEmployee(1, 1);
    addEmployee(2, 2);
    start(1, 1);
    logic.editField(Book::ContactTitle, "Right Honourable"); // 10 at most
    logic.editField(Book::BusFax, "03 555");
    logic.changeTab(logic.payTab()); // leaving the first tab saves it
    const MessageRequest r = onlyMessage();
    EXPECT_TRUE(r.prompt.endsWith(") was generated in frmAddresses.datPrimaryRS_Error"));
    EXPECT_EQ(r.heading, "Error 3163 Error");
    EXPECT_EQ(stored("BusFax").toString(), "03 555");
    EXPECT_TRUE(stored("ContactTitle").isNull());
    EXPECT_EQ(logic.field(Book::ContactTitle), "Right Honourable");
    choose("Brown"); // not reported again on the way out
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_EQ(logic.field(Book::BusName), "Brown");
}

TEST_F(DisplayLogic, NotesLoadOnTheirTabAndAreSavedWhenLeft)
{
    start(0);
    logic.changeTab(logic.notesTab());
    EXPECT_FALSE(logic.addDeleteVisible());
    EXPECT_EQ(logic.notes(), "first line");

    // Changing the entry while on the notes tab saves them too; Null shows empty.
    logic.editNotes("changed");
    choose("Carter");
    EXPECT_EQ(stored("notes").toString(), "changed");
    EXPECT_EQ(logic.notes(), "");

    // With no entry shown nothing is saved.
    logic.changeLetterFilter("Q");
    logic.editNotes("lost");
    logic.changeTab(logic.firstTab());
    EXPECT_EQ(farmCount("WHERE notes = 'lost'"), 0);
}

TEST_F(DisplayLogic, HeadingListNoneStoresNullAndUnknownHeadingKeepsSelection)
{
    suite.execFarm("UPDATE Addresses SET HeadingAccount = 401002 WHERE AddressID = 1;"
                   "UPDATE Addresses SET HeadingAccount = 999999 WHERE AddressID = 2");
    start(0);
    const ComboList &headings = logic.headingList();
    ASSERT_EQ(headings.count(), 3); // None, Fuel, Wages: only cashbook accounts, by name
    choose("Brown");                // unknown heading: the list stays on Fuel
    EXPECT_EQ(headings.text(), "Fuel");

    choose("Acme Farm Supplies");
    logic.chooseHeading(0);
    choose("Carter");
    EXPECT_TRUE(stored("HeadingAccount").isNull());
    logic.chooseHeading(2);
    logic.changeTab(logic.notesTab()); // the choice survives leaving by another tab
    choose("Brown");
    EXPECT_EQ(stored("HeadingAccount", 3).toLongLong(), 401001);
}

TEST_F(DisplayLogic, ClosingFillsAnEmptyLastNameAndKeepsTheLastEntry)
{
    suite.execFarm("UPDATE Addresses SET ContactLastName = NULL");
    for (const auto &[name, tab, lastName] :
         {std::tuple{"Acme Farm Supplies", 0, "Supplies"}, {"Brown", 1, "Brown"}}) {
        start(0);
        choose(name);
        logic.changeTab(tab); // saved whichever tab is open
        logic.unload();
        const qint32 id = name[0] == 'A' ? 1 : 2;
        EXPECT_EQ(stored("ContactLastName", id).toString(), lastName);
        EXPECT_EQ(AddressGlobals::CurrentAddressID, id);
        EXPECT_EQ(logic.farmDatabase(), nullptr);
    }
    EXPECT_EQ(Book::lastWord("Dalton Farm "), "Farm "); // a trailing blank belongs to it
}

TEST_F(DisplayLogic, TabsKeysAndHelp)
{
    start(1);
    logic.nextTab();
    EXPECT_TRUE(logic.payFrameVisible());

    logic.showHelp();
    EXPECT_TRUE(doubles.help.value(0).endsWith("/Help/Corvane.chm#1001"));
    logic.queryUnload();
    EXPECT_EQ(doubles.helpClosed, 1);
}

TEST_F(DisplayLogic, CaptionsAndBankLayoutFollowTheCountry)
{
    const struct
    {
        const char *ini, *group, *taxCaption, *branchCaption;
        int branchLength;
        bool suffix, hyphen;
    } cases[] = {{"", "Bank", "GST Number", "Branch", 4, true, false},
                 {"[WINDOWS]\r\nCountry=61\r\n[TAX]\r\nTaxNumberName=ABN\r\n", "BSB", "ABN Number",
                  "", 3, false, true},
                 {"[WINDOWS]\r\nCountry=27\r\n", "Bank", "GST Number", "Branch", 6, true, true}};
    for (const auto &c : cases) {
        if (*c.ini)
            suite.writeIni(c.ini);
        start(0);
        EXPECT_EQ(logic.bankLayout().groupCaption, c.group);
        EXPECT_EQ(logic.fieldCaption(Book::TaxNumber), c.taxCaption);
        EXPECT_EQ(logic.fieldCaption(Book::BusBankAcBranch), c.branchCaption);
        EXPECT_EQ(logic.maxLength(Book::BusBankAcBranch), c.branchLength);
        EXPECT_EQ(logic.bankLayout().suffixVisible, c.suffix);
        EXPECT_EQ(logic.bankLayout().hyphenVisible, c.hyphen);
        logic.unload();
    }
}

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

TEST_F(SaveFailure, CancelKeepsTheEntryAndItsEditsRetrySavesThemDiscardDropsThem)
{
    logic.editField(Book::BusPhone, "03 208 1234");
    {
        FileLock other(suite);
        messages.answers = {ResultCancel, ResultCancel};
        logic.chooseName(1);
        expectSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.shownAddressId(), 1);
        EXPECT_EQ(logic.field(Book::BusPhone), "03 208 1234");
        EXPECT_FALSE(logic.queryUnload()); // closing is refused the same way
        expectSaveMessage("Acme Farm Supplies");
    }
    logic.chooseName(1);
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_EQ(stored("BusPhone").toString(), "03 208 1234");
    EXPECT_EQ(logic.shownAddressId(), 2);

    // Discard lets the edit go and moves on.
    logic.editField(Book::BusPhone, "07 555 0000");
    FileLock other(suite);
    messages.answers = {ResultRetry, ResultDiscard}; // still locked on the retry
    logic.chooseName(0);
    EXPECT_EQ(messages.requests.size(), 2u);
    other.release();
    EXPECT_EQ(logic.shownAddressId(), 1);
    EXPECT_TRUE(stored("BusPhone", 2).isNull());
}

TEST_F(SaveFailure, TypedNotesStayOnTheirTabWhenTheyCannotBeSaved)
{
    logic.changeTab(logic.notesTab());
    logic.editNotes("Rang about the fence");
    {
        FileLock other(suite);
        messages.answers = {ResultCancel};
        logic.changeTab(Book::firstTab());
        expectSaveMessage("Acme Farm Supplies");
        EXPECT_EQ(logic.currentTab(), logic.notesTab());
        EXPECT_EQ(logic.notes(), "Rang about the fence");
    }
    logic.changeTab(Book::firstTab());
    EXPECT_EQ(stored("notes").toString(), "Rang about the fence");
}

TEST_F(BookLogicTest, ABrokenDataFileIsReportedOnceByName)
{
    if (suite.onServer())
        GTEST_SKIP() << "data files only";
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
