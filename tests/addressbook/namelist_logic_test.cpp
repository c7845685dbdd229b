// Which entries the name list holds, in which order, and which one it selects.
#include "booklogic_fixture.h"

#include "launch/addressglobals.h"
#include "config/profilestring.h"

using Names = QStringList;

class NameListLogic : public BookLogicTest
{
protected:
    void addBook()
    {
        addAddress(1, "banana");
        addAddress(2, "Apple");
        addAddress(3, "Cherry");
        addAddress(4, "Bravo");
        addAddress(5, QVariant()); // a nameless row is never listed
    }
};

TEST_F(NameListLogic, AddressBookListsByNameAndFiltersByLetterInEitherCase)
{
    addBook();
    start(0);
    EXPECT_EQ(listed(), (Names{"Apple", "banana", "Bravo", "Cherry"}));
    EXPECT_EQ(logic.nameList().listIndex(), 0);
    EXPECT_EQ(logic.field(AddressBookLogic::BusName), "Apple");
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 2);

    logic.changeLetterFilter("B");
    EXPECT_EQ(logic.filter(), "B*");
    EXPECT_EQ(listed(), (Names{"banana", "Bravo"}));

    logic.changeLetterFilter("*");
    EXPECT_EQ(listed().size(), 4);
}

TEST_F(NameListLogic, FilterMatchingNothingEmptiesListAndScreen)
{
    addBook();
    start(0);
    logic.editField(AddressBookLogic::BusCity, "Gore");
    logic.changeLetterFilter("Z");
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_EQ(logic.nameList().text(), "");
    EXPECT_EQ(logic.shownAddressId(), 0);
    EXPECT_EQ(logic.field(AddressBookLogic::BusName), "");
    // What was typed on the entry that went out of the list is kept.
    EXPECT_EQ(farmValue("SELECT BusCity FROM Addresses WHERE AddressID = 2").toString(), "Gore");
}

TEST_F(NameListLogic, RebuildKeepsTheShownEntryOrFallsBackToTheFirst)
{
    addBook();
    start(0);
    logic.chooseName(indexOf("Bravo"));
    ASSERT_EQ(AddressGlobals::CurrentAddressID, 4);

    logic.changeLetterFilter("B"); // still listed: stays selected
    EXPECT_EQ(logic.nameList().text(), "Bravo");
    EXPECT_EQ(logic.shownAddressId(), 4);

    logic.changeLetterFilter("C"); // filtered out: the first item is shown
    EXPECT_EQ(logic.nameList().text(), "Cherry");
    EXPECT_EQ(logic.shownAddressId(), 3);
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 3);

    // Below 1 keeps whatever is selected now.
    qint32 none = 0;
    logic.FillNameList(false, none, "*");
    EXPECT_EQ(logic.nameList().text(), "Cherry");
}

class EmployeeListLogic : public BookLogicTest
{
protected:
    void SetUp() override
    {
        addAddress(5, "Zed", true);
        addEmployee(1, 5);
        addAddress(3, "Mary", true);
        addEmployee(2, 3, 0); // a zero finish date counts as current
        addAddress(4, "Adam", true);
        addEmployee(3, 4, 40000);   // finished
        addAddress(6, "Bob", true); // no Employees row
        addAddress(7, "Carl", false);
        addEmployee(4, 7); // an employee row without the wage flag
    }
};

TEST_F(EmployeeListLogic, CurrentEmployeesOnlyInAddressIdOrder)
{
    start(1, 5);
    EXPECT_TRUE(logic.employeeSwitchChecked()); // AllEmployees=N in the INI file
    EXPECT_EQ(listed(), (Names{"Mary", "Zed"}));
    EXPECT_EQ(logic.nameList().text(), "Zed");
    EXPECT_EQ(logic.employeeId(), 1);
    EXPECT_FALSE(logic.letterStripEnabled());
    logic.changeLetterFilter("M");
    EXPECT_EQ(listed(), (Names{"Mary", "Zed"}));
}

TEST_F(EmployeeListLogic, AllEmployeesByNameAndTheSwitchIsStored)
{
    const QByteArray before = suite.readIni();
    start(1, 99); // not listed: the first item
    logic.clickEmployeeSwitch(false);
    EXPECT_EQ(listed(), (Names{"Adam", "Bob", "Mary", "Zed"}));
    EXPECT_EQ(logic.employeeSwitchToolTip(), "Click to HIDE those no longer employeed");
    QByteArray expected = before;
    expected.replace("AllEmployees=N", "AllEmployees=Y");
    EXPECT_EQ(suite.readIni(), expected);

    logic.clickEmployeeSwitch(true);
    EXPECT_EQ(logic.employeeSwitchToolTip(), "Click to SHOW those no longer employeed");
    EXPECT_EQ(suite.readIni(), before);
}

TEST_F(EmployeeListLogic, StoredSwitchOffShowsEveryEmployeeOnLaunch)
{
    writeProfileString("WAGE", "AllEmployees", "Y", suite.iniPath());
    start(1, 4);
    EXPECT_FALSE(logic.employeeSwitchChecked());
    EXPECT_EQ(listed(), (Names{"Adam", "Bob", "Mary", "Zed"}));
    EXPECT_EQ(logic.nameList().text(), "Adam");
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 4);
}
