// Showing an entry, and what is written back when the user moves on.
#include "booklogic_fixture.h"

#include "launch/addressglobals.h"

class DisplayLogic : public BookLogicTest
{
protected:
    void SetUp() override
    {
        addAddress(1, "Acme Farm Supplies");
        addAddress(2, "Brown");
        suite.execFarm("UPDATE Addresses SET BusCity = 'Gore', ContactLastName = 'Smith', "
                       "notes = 'first line' WHERE AddressID = 1");
        suite.execFarm("INSERT INTO \"Account Codes\" VALUES (400, 'Sales', -1), "
                       "(500, 'Hidden', 0)");
        suite.execFarm("INSERT INTO \"Secondary Codes\" VALUES (401001, 400, 'Wages'), "
                       "(401002, 400, 'Fuel'), (501001, 500, 'Not in cashbook')");
    }
    QVariant stored(const char *column, qint32 id = 1) const
    {
        return farmValue(QStringLiteral("SELECT %1 FROM Addresses WHERE AddressID = %2")
                             .arg(QLatin1String(column))
                             .arg(id));
    }
};

TEST_F(DisplayLogic, ChangedFieldsAreWrittenWhenAnotherEntryIsChosen)
{
    start(0);
    ASSERT_EQ(logic.shownAddressId(), 1);
    EXPECT_EQ(logic.field(AddressBookLogic::BusCity), "Gore");
    logic.editField(AddressBookLogic::BusPhone, "03 208 1234");
    logic.editField(AddressBookLogic::BusCity, ""); // not protected: may be emptied
    logic.toggleFlag(AddressBookLogic::BusinessFlag, true);
    logic.chooseName(1);

    EXPECT_EQ(stored("BusPhone").toString(), "03 208 1234");
    EXPECT_TRUE(stored("BusCity").isNull());
    EXPECT_EQ(stored("BusinessFlag").toLongLong(), -1);
    EXPECT_EQ(stored("ContactLastName").toString(), "Smith");
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 2);
    EXPECT_EQ(logic.field(AddressBookLogic::BusName), "Brown");
}

TEST_F(DisplayLogic, RefusedValueIsReportedOnceAndTheOtherFieldsAreStillWritten)
{
    suite.execFarm("UPDATE Addresses SET WageFlag = -1");
    addEmployee(1, 1);
    addEmployee(2, 2);
    start(1, 1);
    logic.editField(AddressBookLogic::ContactTitle, "Right Honourable"); // 10 at most
    logic.editField(AddressBookLogic::BusFax, "03 555");
    logic.changeTab(logic.payTab()); // leaving the first tab saves it

    ASSERT_EQ(messages.requests.size(), 1u);
    const MessageRequest &r = messages.requests.front();
    EXPECT_TRUE(r.prompt.endsWith(") was generated in frmAddresses.datPrimaryRS_Error"));
    EXPECT_EQ(r.heading, "Error 3163 Error");
    EXPECT_EQ(stored("BusFax").toString(), "03 555");
    EXPECT_TRUE(stored("ContactTitle").isNull());
    EXPECT_EQ(logic.field(AddressBookLogic::ContactTitle), "Right Honourable");

    logic.chooseName(1); // not reported again on the way out
    EXPECT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(logic.field(AddressBookLogic::BusName), "Brown");
}

TEST_F(DisplayLogic, ProtectedBoxesGetTheirTextBack)
{
    start(0);
    logic.focusInField(AddressBookLogic::BusName);
    logic.editField(AddressBookLogic::BusName, "");
    logic.focusOutField(AddressBookLogic::BusName);
    EXPECT_EQ(logic.field(AddressBookLogic::BusName), "Acme Farm Supplies");

    logic.focusInField(AddressBookLogic::ContactLastName);
    logic.editField(AddressBookLogic::ContactLastName, "");
    logic.focusOutField(AddressBookLogic::ContactLastName);
    EXPECT_EQ(logic.field(AddressBookLogic::ContactLastName), "Smith");

    logic.focusInField(AddressBookLogic::BusCity);
    logic.editField(AddressBookLogic::BusCity, "");
    logic.focusOutField(AddressBookLogic::BusCity);
    EXPECT_EQ(logic.field(AddressBookLogic::BusCity), "");
}

TEST_F(DisplayLogic, NotesLoadOnTheirTabAndAreSavedWhenLeft)
{
    addAddress(3, "Carter");
    start(0);
    logic.changeTab(logic.notesTab());
    EXPECT_TRUE(logic.notesEnabled());
    EXPECT_FALSE(logic.addDeleteVisible());
    EXPECT_EQ(logic.notes(), "first line");
    logic.editNotes("first line\nsecond line");
    logic.changeTab(logic.firstTab());
    EXPECT_EQ(stored("notes").toString(), "first line\nsecond line");
    EXPECT_TRUE(logic.addDeleteVisible());

    // Changing the entry while on the notes tab saves them too; Null shows empty.
    logic.changeTab(logic.notesTab());
    logic.editNotes("changed");
    logic.chooseName(indexOf("Carter"));
    EXPECT_EQ(stored("notes").toString(), "changed");
    EXPECT_EQ(logic.notes(), "");
}

TEST_F(DisplayLogic, NotesWithNoEntryShownAreNotSaved)
{
    start(0);
    logic.changeLetterFilter("Q");
    logic.changeTab(logic.notesTab());
    logic.editNotes("lost");
    logic.changeTab(logic.firstTab());
    EXPECT_EQ(farmCount("WHERE notes = 'lost'"), 0);
}

TEST_F(DisplayLogic, HeadingListNoneStoresNullAndUnknownHeadingKeepsSelection)
{
    suite.execFarm("UPDATE Addresses SET HeadingAccount = 401002 WHERE AddressID = 1");
    suite.execFarm("UPDATE Addresses SET HeadingAccount = 999999 WHERE AddressID = 2");
    addAddress(3, "Carter");
    start(0);
    const ComboList &headings = logic.headingList();
    ASSERT_EQ(headings.count(), 3); // None, Fuel, Wages: only cashbook accounts, by name
    EXPECT_EQ(headings.item(1).text, "Fuel");
    EXPECT_EQ(headings.text(), "Fuel");

    logic.chooseName(indexOf("Brown")); // unknown heading: the list stays on Fuel
    EXPECT_EQ(headings.text(), "Fuel");
    logic.chooseName(indexOf("Carter")); // Null: None
    EXPECT_EQ(headings.listIndex(), 0);

    logic.chooseName(indexOf("Acme Farm Supplies"));
    logic.chooseHeading(0);
    logic.chooseName(indexOf("Carter"));
    EXPECT_TRUE(stored("HeadingAccount").isNull());
    logic.chooseHeading(2);
    logic.changeTab(logic.notesTab()); // the choice survives leaving by another tab
    logic.chooseName(indexOf("Brown"));
    EXPECT_EQ(stored("HeadingAccount", 3).toLongLong(), 401001);
}

TEST_F(DisplayLogic, ClosingFillsAnEmptyLastNameAndKeepsTheLastEntry)
{
    suite.execFarm("UPDATE Addresses SET ContactLastName = NULL");
    addAddress(3, "Dalton ");
    start(0);
    logic.unload();
    EXPECT_EQ(stored("ContactLastName").toString(), "Supplies");
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 1);
    EXPECT_EQ(logic.farmDatabase(), nullptr);

    start(0);
    logic.chooseName(indexOf("Brown"));
    logic.changeTab(logic.notesTab()); // saved whichever tab is open
    logic.unload();
    EXPECT_EQ(stored("ContactLastName", 2).toString(), "Brown");
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 2);

    EXPECT_EQ(AddressBookLogic::lastWord("Acme Farm Supplies"), "Supplies");
    EXPECT_EQ(AddressBookLogic::lastWord("Dalton"), "Dalton");
    EXPECT_EQ(AddressBookLogic::lastWord("Dalton "), "Dalton ");
    EXPECT_EQ(AddressBookLogic::lastWord("Dalton Farm "), "Farm ");
    EXPECT_EQ(AddressBookLogic::lastWord(""), "");
}

TEST_F(DisplayLogic, TabsKeysAndHelp)
{
    start(1);
    EXPECT_EQ(logic.tabCaptions(), (QStringList{"Addresses", "Pay Information", "Notes"}));
    logic.nextTab();
    EXPECT_EQ(logic.currentTab(), logic.payTab());
    EXPECT_TRUE(logic.payFrameVisible());
    logic.nextTab();
    logic.nextTab(); // wraps from the last to the first
    EXPECT_EQ(logic.currentTab(), 0);

    logic.showHelp();
    ASSERT_EQ(openers.helpCalls.size(), 1);
    EXPECT_TRUE(openers.helpCalls.front().endsWith("/Help/Corvane.chm#1001"));
    EXPECT_TRUE(logic.helpOpen());
    logic.queryUnload();
    EXPECT_EQ(openers.helpClosed, 1);
}

TEST_F(DisplayLogic, CaptionsAndBankLayoutFollowTheCountry)
{
    start(0);
    EXPECT_EQ(logic.fieldCaption(AddressBookLogic::BusName), "Company/Employee");
    EXPECT_EQ(logic.fieldCaption(AddressBookLogic::TaxNumber), "GST Number");
    EXPECT_EQ(logic.maxLength(AddressBookLogic::BusBankAcBranch), 4);
    EXPECT_TRUE(logic.bankLayout().suffixVisible);

    logic.unload();
    suite.writeIni("[WINDOWS]\r\nCountry=61\r\n[TAX]\r\nTaxNumberName=ABN\r\n");
    start(0);
    EXPECT_EQ(logic.bankLayout().groupCaption, "BSB");
    EXPECT_FALSE(logic.bankLayout().suffixVisible);
    EXPECT_TRUE(logic.bankLayout().hyphenVisible);
    EXPECT_EQ(logic.maxLength(AddressBookLogic::BusBankAcBranch), 3);
    EXPECT_EQ(logic.fieldCaption(AddressBookLogic::BusBankAcBranch), "");
    EXPECT_EQ(logic.fieldCaption(AddressBookLogic::TaxNumber), "ABN Number");

    logic.unload();
    suite.writeIni("[WINDOWS]\r\nCountry=27\r\n");
    start(0);
    EXPECT_EQ(logic.maxLength(AddressBookLogic::BusBankAcBranch), 6);
    EXPECT_TRUE(logic.bankLayout().suffixVisible);
    EXPECT_EQ(logic.bankLayout().groupCaption, "Bank");
}
