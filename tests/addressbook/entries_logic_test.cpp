// The address book's entries: which the name list holds, in which order, and which it
// shows; adding and deleting them, names with quote characters, the pay details command.
#include "booklogic_fixture.h"

#include "addressbook/duplicates.h"
#include "config/profilestring.h"
#include "data/database.h"
#include "launch/addressglobals.h"
#include "paydetails/employeedefaults.h"
#include "support/filelock.h"

using Names = QStringList;

// Each step filters the address book by a letter ("" for the first show); the list is by
// name in either case, without nameless rows, and keeps the shown entry when it can.
TEST_F(BookLogicTest, NameListFiltersByLetterAndKeepsTheShownEntry)
{
    addAddress(1, "banana");
    addAddress(2, "Apple");
    addAddress(3, "Cherry");
    addAddress(4, "Bravo");
    addAddress(5, QVariant()); // a nameless row is never listed
    const struct
    {
        const char *letter, *choose;
        Names list;
        const char *shown;
        qint32 current;
    } steps[] = {{"", nullptr, {"Apple", "banana", "Bravo", "Cherry"}, "Apple", 2},
                 {"B", "Bravo", {"banana", "Bravo"}, "Bravo", 4}, // still listed: stays
                 {"C", nullptr, {"Cherry"}, "Cherry", 3},         // filtered out: the first
                 {"Z", nullptr, {}, "", 3},                       // nothing: an empty screen
                 {"*", nullptr, {"Apple", "banana", "Bravo", "Cherry"}, "Cherry", 3}};
    for (const auto &s : steps) {
        if (*s.letter)
            logic.changeLetterFilter(s.letter);
        else
            start(0);
        if (s.choose) {
            choose(s.choose);
            logic.changeLetterFilter(s.letter);
        }
        EXPECT_EQ(listed(), s.list) << s.letter;
        EXPECT_EQ(logic.nameList().text(), s.shown) << s.letter;
        EXPECT_EQ(AddressGlobals::CurrentAddressID, s.current) << s.letter;
        if (*s.letter == 'C') // typed on an entry that then leaves the list: kept
            logic.editField(Book::BusCity, "Gore");
    }
    EXPECT_EQ(logic.filter(), "*");
    EXPECT_EQ(stored("BusCity", 3).toString(), "Gore");
    qint32 none = 0; // below 1 keeps whatever is selected now
    logic.FillNameList(false, none, "*");
    EXPECT_EQ(logic.nameList().text(), "Cherry");
}

// The employee window lists entries with the wage flag: all of them by name, or only
// those with an unfinished Employees row (no date or 0) in AddressID order.
TEST_F(BookLogicTest, EmployeeListFollowsTheStoredSwitch)
{
    addAddress(5, "Zed", true);
    addEmployee(1, 5);
    addAddress(3, "Mary", true);
    addEmployee(2, 3, 0);
    addAddress(4, "Adam", true);
    addEmployee(3, 4, 40000);   // finished
    addAddress(6, "Bob", true); // no Employees row
    addAddress(7, "Carl", false);
    addEmployee(4, 7); // an Employees row without the wage flag
    const Names all{"Adam", "Bob", "Mary", "Zed"};
    const struct
    {
        const char *allEmployees;
        qint32 launchId;
        Names list;
        const char *shown;
        qint32 employeeId;
    } cases[] = {{"N", 5, {"Mary", "Zed"}, "Zed", 1},
                 {"N", 99, {"Mary", "Zed"}, "Mary", 2}, // not listed: the first
                 {"Y", 4, all, "Adam", 3}};
    for (const auto &c : cases) {
        writeProfileString("WAGE", "AllEmployees", c.allEmployees, suite.iniPath());
        start(1, c.launchId);
        EXPECT_EQ(logic.employeeSwitchChecked(), *c.allEmployees == 'N');
        EXPECT_EQ(listed(), c.list);
        EXPECT_EQ(logic.nameList().text(), c.shown);
        EXPECT_EQ(logic.employeeId(), c.employeeId);
        EXPECT_FALSE(logic.letterStripEnabled());
        logic.changeLetterFilter("M");
        EXPECT_EQ(listed(), c.list);
        logic.unload();
    }

    // The switch is stored in the INI file, nothing else of it changes.
    writeProfileString("WAGE", "AllEmployees", "N", suite.iniPath());
    start(1, 5);
    const QByteArray before = suite.readIni();
    logic.clickEmployeeSwitch(false);
    EXPECT_EQ(listed(), all);
    EXPECT_TRUE(suite.readIni().contains("AllEmployees=Y"));
    logic.clickEmployeeSwitch(true);
    EXPECT_EQ(listed(), (Names{"Mary", "Zed"}));
    EXPECT_EQ(suite.readIni(), before);
}

TEST_F(BookLogicTest, AddTrimsTheNameAsksAboutLookalikesAndShowsTheNewEntry)
{
    addAddress(1, "Apple");
    addAddress(2, "Ōtorohanga Vets Ltd");
    start(0);
    doubles.answers = {"   "};
    logic.addEntry(); // blank: nothing added
    EXPECT_EQ(onlyMessage().title, "No Name Entered!");

    // A lookalike asks first: Cancel adds nothing, Go to Existing shows the entry already
    // there (outside the letter filter), Add Anyway adds it.
    logic.changeLetterFilter("A");
    const struct
    {
        qint16 answer;
        int entries;
    } answers[] = {{ResultCancel, 2}, {ResultYes, 2}, {ResultNo, 3}};
    for (const auto &a : answers) {
        messages.requests.clear();
        messages.answers = {a.answer};
        doubles.answers = {"  otorohanga vets limited "};
        logic.addEntry();
        const MessageRequest asked = onlyMessage();
        EXPECT_EQ(asked.title, "Already in the Address Book?");
        EXPECT_TRUE(asked.prompt.contains("Ōtorohanga Vets Ltd"));
        EXPECT_EQ(farmCount(""), a.entries);
        EXPECT_EQ(logic.shownAddressId() == 2, a.answer == ResultYes);
    }
    const qint32 id = AddressGlobals::CurrentAddressID;
    EXPECT_GT(id, 2);
    EXPECT_EQ(logic.shownAddressId(), id);
    EXPECT_EQ(listed(), (QStringList{"Apple", "otorohanga vets limited",
                                     "Ōtorohanga Vets Ltd"})); // filter back to "*"
    EXPECT_FALSE(logic.editPaysEnabled());
    EXPECT_TRUE(stored("ContactLastName", id).isNull());
    messages.requests.clear();
    doubles.answers = {"Brown"};
    logic.addEntry();
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_EQ(wageValue("SELECT Count(*) FROM Employees").toInt(), 0);
}

TEST(DuplicatesTest, NamesAreComparedBeyondCaseAccentsPunctuationAndTheCompanyEnding)
{
    const struct
    {
        const char *a, *b;
        bool same;
    } cases[] = {
        {"Smith Farms Ltd", "SMITH FARMS LIMITED", true},
        {"Smith Farms Ltd.", "Smith Farms", true},
        {"Ngāti Whātua", "Ngati Whatua", true},
        {"O'Brien & Sons", "OBrien  &  Sons", true},
        {"Te Awamutu Vet-Clinic", "te awamutu vet clinic", true},
        {"Ltd", "Limited", false}, // a name that is only the ending stays itself
        {"Smith Farms", "Smith Farm", false},
        {"Limited Edition Wines", "Edition Wines", false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Duplicates::nameKey(QString::fromUtf8(c.a)) ==
                      Duplicates::nameKey(QString::fromUtf8(c.b)),
                  c.same)
            << c.a << " / " << c.b;
}

// An employee gets its last name and an Employees row with the default type, pay interval
// and tax type; empty reference tables get their first rows.
TEST_F(BookLogicTest, EmployeeAddSeedsItsRowAndEmptyReferenceTables)
{
    start(1);
    doubles.answers = {"Jo van der Berg"};
    logic.addEntry();
    const qint32 id = AddressGlobals::CurrentAddressID;
    EXPECT_EQ(stored("ContactLastName", id).toString(), "Berg");
    EXPECT_EQ(stored("WageFlag", id).toInt(), -1);
    const std::pair<const char *, const char *> rows[] = {
        {"EmployeeType || '/' || Unitofpay FROM EmployeeAwardType", "Shearer/Head"},
        {"IntervalName || '/' || NumberOfDays || '/' || PaysPerYear || '/' || [Order] "
         "FROM PayInterval",
         "Weekly/7/52.14/1"},
        {"TaxName || '/' || [Order] FROM TaxTypes", "General/0"},
        {"EmployeeTypeID || '/' || PayIntervalID || '/' || TaxTypeID FROM Employees", "1/1/1"}};
    for (const auto &[query, row] : rows)
        EXPECT_EQ(wageValue(QString("SELECT ") + query).toString(), row) << query;
    EXPECT_EQ(logic.employeeId(), wageValue("SELECT EmployeeID FROM Employees").toInt());
}

TEST_F(BookLogicTest, DefaultsTakeTheFirstRowsAndTheCountrysLowestTaxOrder)
{
    suite.execWage("INSERT INTO EmployeeAwardType VALUES (7, 'Milker', 'Hour'), (3, 'Cook', "
                   "'Hour');"
                   "INSERT INTO PayInterval VALUES (9, 'Fortnightly', 14, 26, 2), "
                   "(4, 'Weekly', 7, 52, 1);"
                   "INSERT INTO TaxTypes VALUES (1, 'Aussie', 0, 61), (2, 'NZ main', 5, 64), "
                   "(3, 'Any country', 2, 0), (4, 'NZ secondary', 1, 64)");
    const auto books = suite.openBooks();
    Database &wage = *books;
    EXPECT_EQ(DefaultEmployeeTypeID(wage), 3); // stored order is the key's
    EXPECT_EQ(DefaultPayIntervalID(wage), 4);
    EXPECT_EQ(DefaultTaxTypeID(wage, 64), 4);
    EXPECT_EQ(DefaultTaxTypeID(wage, 61), 1);
    EXPECT_EQ(wageValue("SELECT Count(*) FROM TaxTypes").toInt(), 4);
}

// An entry with wages or cashbook transactions stays, the message says which data is in the
// way (by its heading; the texts are tested with the messages); one without them goes
// after a Yes, its Employees row staying behind.
TEST_F(BookLogicTest, DeleteRefusesEntriesWithDataAndRemovesOnlyTheAddressRow)
{
    addAddress(1, "Apple");
    addAddress(2, "Brown", true);
    addAddress(3, "Carter");
    addAddress(4, "Dalton", true);
    addAddress(5, "Eve", true);
    for (int id = 2; id <= 5; ++id)
        addEmployee(20 + id, id);
    suite.execFarm("INSERT INTO Transactions (AddressID, \"Date\") VALUES (1, 40000), (3, 40000)");
    suite.execWage("INSERT INTO Wages (EmployeeID, \"Date\") VALUES (22, 40000), (23, 40000), "
                   "(24, 40000), (24, 40007)");
    start(0);
    const std::pair<const char *, const char *> refused[] = {
        {"Apple", "Cashbook Data Exists"},
        {"Dalton", "Wages Exist"},
        {"Carter", "Wages/Cashbook Data Exists"}};
    for (const auto &[name, heading] : refused) {
        choose(name);
        logic.deleteEntry();
        const MessageRequest r = onlyMessage();
        EXPECT_EQ(r.heading, heading) << name;
        EXPECT_TRUE(r.prompt.contains(name)) << name;
    }
    logic.changeLetterFilter("E");
    logic.deleteEntry(); // answered No
    const MessageRequest r = onlyMessage();
    EXPECT_EQ(r.buttons, ButtonsYesNo);
    EXPECT_EQ(farmCount(), 5);

    messages.answers = {ResultYes};
    logic.deleteEntry();
    EXPECT_EQ(farmCount(), 4);
    EXPECT_EQ(wageValue("SELECT Count(*) FROM Employees WHERE AddressID = 5").toInt(), 1);
    // Rebuilt with "*" although the strip still shows E; the first item is shown.
    EXPECT_EQ(listed(), (QStringList{"Apple", "Brown", "Carter", "Dalton"}));
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 1);
}

TEST_F(BookLogicTest, EditPayDetailsNeedsASelectionAndFollowsTheWageFlag)
{
    start(0);
    logic.editPayDetails();
    const MessageRequest r = onlyMessage();
    EXPECT_EQ(r.prompt, "Select Record From The List");
    EXPECT_TRUE(doubles.payDetails.empty());

    addAddress(8, "Hill", true);
    logic.unload();
    start(0);
    EXPECT_TRUE(logic.editPaysEnabled());
    logic.editPayDetails();
    EXPECT_EQ(doubles.payDetails, std::vector<qint32>{8});
    for (bool ticked : {false, true}) { // the box on screen turns the command off and on
        logic.toggleFlag(Book::WageFlag, ticked);
        EXPECT_EQ(logic.editPaysEnabled(), ticked);
    }
}

// An inactive entry leaves the list (unless asked for) but not the books or the search.
TEST_F(BookLogicTest, InactiveEntriesLeaveTheListButNotTheBooksOrTheSearch)
{
    addAddress(1, "Apple");
    addAddress(2, "Brown");
    addAddress(3, "Carter");
    start(0);
    ASSERT_TRUE(logic.inactiveSwitchVisible());
    choose("Brown");
    logic.toggleFlag(Book::Inactive, true);
    logic.changeLetterFilter("*"); // saves it, then lists without it
    EXPECT_EQ(stored("Inactive", 2).toInt(), -1);
    EXPECT_EQ(listed(), (QStringList{"Apple", "Carter"}));
    logic.clickInactiveSwitch(true);
    EXPECT_EQ(listed(), (QStringList{"Apple", "Brown", "Carter"}));
    logic.clickInactiveSwitch(false);
    logic.search("bro");
    EXPECT_EQ(listed(), (QStringList{"Brown"}));
    EXPECT_TRUE(logic.flag(Book::Inactive));
    logic.clearSearch();
    EXPECT_EQ(listed(), (QStringList{"Apple", "Carter"}));
}

// Books made before entries could be inactive gain the column when the window opens;
// books that cannot be changed then (another program writing) are shown as they are,
// without the Inactive boxes.
TEST_F(BookLogicTest, OlderBooksGainTheInactiveColumnOrGoWithoutIt)
{
    addAddress(1, "Apple");
    const auto dropColumn = [&] {
        if (suite.onServer()) {
            TempServer::run(suite.serverConnection(),
                            {"ALTER TABLE farm.addresses DROP COLUMN inactive"});
        } else {
            suite.execFarm("DROP INDEX Addresses_Inactive");
            suite.execFarm("ALTER TABLE Addresses DROP COLUMN Inactive");
        }
    };
    dropColumn();
    start(0);
    EXPECT_TRUE(logic.inactiveAvailable());
    EXPECT_EQ(stored("Inactive", 1).toInt(), 0);
    logic.unload();

    dropColumn();
    {
        FileLock writer(suite);
        start(0);
    }
    EXPECT_FALSE(logic.inactiveAvailable());
    EXPECT_FALSE(logic.inactiveSwitchVisible());
    EXPECT_EQ(listed(), QStringList{"Apple"});
    EXPECT_EQ(logic.field(Book::BusName), "Apple");
    EXPECT_TRUE(messages.requests.empty());
}
