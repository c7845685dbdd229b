// Which entries the name list holds, in which order, and which one it selects and shows.
#include "booklogic_fixture.h"

#include "config/profilestring.h"
#include "launch/addressglobals.h"

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
    } steps[] = {
        {"", nullptr, {"Apple", "banana", "Bravo", "Cherry"}, "Apple", 2},
        {"B", "Bravo", {"banana", "Bravo"}, "Bravo", 4}, // still listed: stays
        {"C", nullptr, {"Cherry"}, "Cherry", 3},         // filtered out: the first
        {"Z", nullptr, {}, "", 3},                       // nothing: an empty screen
        {"*", nullptr, {"Apple", "banana", "Bravo", "Cherry"}, "Cherry", 3},
    };
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
        EXPECT_EQ(logic.field(Book::BusName), s.shown) << s.letter;
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
    } cases[] = {
        {"N", 5, {"Mary", "Zed"}, "Zed", 1},
        {"N", 99, {"Mary", "Zed"}, "Mary", 2}, // not listed: the first
        {"Y", 4, all, "Adam", 3},
    };
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
    EXPECT_EQ(logic.employeeSwitchToolTip(), "Click to HIDE those no longer employeed");
    QByteArray expected = before;
    EXPECT_EQ(suite.readIni(), expected.replace("AllEmployees=N", "AllEmployees=Y"));
    logic.clickEmployeeSwitch(true);
    EXPECT_EQ(logic.employeeSwitchToolTip(), "Click to SHOW those no longer employeed");
    EXPECT_EQ(listed(), (Names{"Mary", "Zed"}));
    EXPECT_EQ(suite.readIni(), before);
}
