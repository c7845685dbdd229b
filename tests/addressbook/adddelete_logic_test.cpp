// Adding and deleting entries, and names that carry quote characters.
#include "booklogic_fixture.h"

#include "data/database.h"
#include "paydetails/employeedefaults.h"
#include "launch/addressglobals.h"

class AddDeleteLogic : public BookLogicTest
{
protected:
    qint64 wageCount(const QString &table) const
    {
        return wageValue("SELECT Count(*) FROM " + table).toLongLong();
    }
};

TEST_F(AddDeleteLogic, BlankNameAddsNothing)
{
    addAddress(1, "Apple");
    start(0);
    input.answers = {"   "};
    logic.addEntry();
    EXPECT_EQ(input.prompts, QStringList{"Enter the Company/Employee name for the New Entry"});
    EXPECT_EQ(input.titles, QStringList{"Add New Address"});
    EXPECT_EQ(messages.titles(), QStringList{"No Name Entered!"});
    EXPECT_EQ(farmCount(), 1);
}

TEST_F(AddDeleteLogic, AddShowsTheNewEntryAndAllowsDuplicates)
{
    addAddress(1, "Apple");
    addAddress(2, "Brown");
    start(0);
    logic.changeLetterFilter("A");
    input.answers = {"  Brown  ", "Brown"};
    logic.addEntry();
    EXPECT_EQ(listed(), (QStringList{"Apple", "Brown", "Brown"})); // filter back to "*"
    const qint32 first = AddressGlobals::CurrentAddressID;
    EXPECT_GT(first, 2);
    EXPECT_EQ(logic.shownAddressId(), first);
    EXPECT_EQ(logic.nameList().currentData(), first);
    EXPECT_FALSE(logic.editPaysEnabled());

    logic.addEntry();
    EXPECT_EQ(farmCount("WHERE BusName = 'Brown'"), 3);
    EXPECT_EQ(
        farmValue(QStringLiteral("SELECT WageFlag FROM Addresses WHERE AddressID = %1").arg(first))
            .toLongLong(),
        0);
    EXPECT_TRUE(farmValue(QStringLiteral("SELECT ContactLastName FROM Addresses WHERE "
                                         "AddressID = %1")
                              .arg(first))
                    .isNull());
    EXPECT_EQ(wageCount("Employees"), 0);
}

TEST_F(AddDeleteLogic, EmployeeAddSeedsEmptyReferenceTables)
{
    start(1);
    input.answers = {"Jo van der Berg"};
    logic.addEntry();
    const qint32 id = AddressGlobals::CurrentAddressID;
    EXPECT_EQ(listed(), QStringList{"Jo van der Berg"});
    EXPECT_EQ(farmValue(QStringLiteral("SELECT ContactLastName FROM Addresses WHERE "
                                       "AddressID = %1")
                            .arg(id))
                  .toString(),
              "Berg");
    EXPECT_EQ(
        farmValue(QStringLiteral("SELECT WageFlag FROM Addresses WHERE AddressID = %1").arg(id))
            .toLongLong(),
        -1);

    EXPECT_EQ(
        wageValue("SELECT EmployeeType || '/' || Unitofpay FROM EmployeeAwardType").toString(),
        "Shearer/Head");
    EXPECT_EQ(wageValue("SELECT IntervalName || '/' || NumberOfDays || '/' || PaysPerYear || "
                        "'/' || [Order] FROM PayInterval")
                  .toString(),
              "Weekly/7/52.14/1");
    EXPECT_EQ(wageValue("SELECT TaxName || '/' || [Order] FROM TaxTypes").toString(), "General/0");
    EXPECT_EQ(wageValue(QStringLiteral("SELECT EmployeeTypeID || '/' || PayIntervalID || '/' || "
                                       "TaxTypeID FROM Employees WHERE AddressID = %1")
                            .arg(id))
                  .toString(),
              "1/1/1");
    EXPECT_EQ(logic.employeeId(), wageValue("SELECT EmployeeID FROM Employees").toInt());
}

TEST_F(AddDeleteLogic, DefaultsTakeTheFirstRowsAndTheCountrysLowestTaxOrder)
{
    suite.execWage("INSERT INTO EmployeeAwardType VALUES (7, 'Milker', 'Hour'), (3, 'Cook', "
                   "'Hour')");
    suite.execWage("INSERT INTO PayInterval VALUES (9, 'Fortnightly', 14, 26, 2), "
                   "(4, 'Weekly', 7, 52, 1)");
    suite.execWage("INSERT INTO TaxTypes VALUES (1, 'Aussie', 0, 61), (2, 'NZ main', 5, 64), "
                   "(3, 'Any country', 2, 0), (4, 'NZ secondary', 1, 64)");
    Database wage(suite.wagePath());
    EXPECT_EQ(DefaultEmployeeTypeID(wage), 3); // stored order is the key's
    EXPECT_EQ(DefaultPayIntervalID(wage), 4);
    EXPECT_EQ(DefaultTaxTypeID(wage, 64), 4);
    EXPECT_EQ(DefaultTaxTypeID(wage, 61), 1);
    EXPECT_EQ(wageCount("TaxTypes"), 4);
}

class DeleteLogic : public AddDeleteLogic
{
protected:
    void SetUp() override
    {
        addAddress(1, "Apple");
        addAddress(2, "Brown", true);
        addEmployee(20, 2);
        addAddress(3, "Carter");
    }
    void select(const QString &name) { logic.chooseName(indexOf(name)); }
};

TEST_F(DeleteLogic, EntriesWithWagesOrCashbookDataAreRefused)
{
    suite.execFarm("INSERT INTO Transactions (AddressID, \"Date\") VALUES (1, 40000), "
                   "(3, 40000)");
    suite.execWage("INSERT INTO Wages (EmployeeID, \"Date\") VALUES (20, 40000)");
    addAddress(4, "Dalton", true);
    addEmployee(21, 4);
    suite.execWage("INSERT INTO Wages (EmployeeID, \"Date\") VALUES (21, 40000), (21, 40007)");
    start(0);

    const struct
    {
        const char *name;
        const char *prompt;
        const char *heading;
    } cases[] = {
        {"Apple", "Need to delete Cashbook entries for Apple first", "Cashbook Data Exists"},
        {"Brown", "Need to delete wages for Brown first", "Wages Exist"},
        {"Dalton", "Need to delete wages for Dalton first", "Wages Exist"},
    };
    for (const auto &c : cases) {
        messages.requests.clear();
        select(c.name);
        logic.deleteEntry();
        ASSERT_EQ(messages.requests.size(), 1u) << c.name;
        EXPECT_EQ(messages.requests[0].prompt, c.prompt);
        EXPECT_EQ(messages.requests[0].heading, c.heading);
        EXPECT_EQ(messages.requests[0].title, "Cannot Delete Employee");
    }
    suite.execWage("INSERT INTO Employees (EmployeeID, AddressID) VALUES (22, 3)");
    suite.execWage("INSERT INTO Wages (EmployeeID, \"Date\") VALUES (22, 40000)");
    messages.requests.clear();
    select("Carter");
    logic.deleteEntry();
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].prompt,
              "Need to delete Cashbook and Wagebook entries for Carter first");
    EXPECT_EQ(messages.requests[0].heading, "Wages/Cashbook Data Exists");
    EXPECT_EQ(farmCount(), 4);
}

TEST_F(DeleteLogic, ConfirmedDeleteRemovesOnlyTheAddressRow)
{
    start(0);
    logic.changeLetterFilter("B");
    select("Brown");
    logic.deleteEntry(); // answered No
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].prompt, "Are you sure you want to delete Brown");
    EXPECT_EQ(messages.requests[0].title, "Confirm Deletion?");
    EXPECT_EQ(messages.requests[0].buttons, 4);
    EXPECT_EQ(farmCount(), 3);

    messages.answers = {ResultYes};
    logic.deleteEntry();
    EXPECT_EQ(farmCount(), 2);
    EXPECT_EQ(wageValue("SELECT Count(*) FROM Employees WHERE AddressID = 2").toInt(), 1);
    // Rebuilt with "*" although the strip still shows B; the first item is shown.
    EXPECT_EQ(listed(), (QStringList{"Apple", "Carter"}));
    EXPECT_EQ(logic.nameList().listIndex(), 0);
    EXPECT_EQ(logic.shownAddressId(), 1);
    EXPECT_EQ(AddressGlobals::CurrentAddressID, 1);
}

TEST_F(AddDeleteLogic, NamesWithQuotesAddListFilterAndDelete)
{
    start(0);
    input.answers = {"O'Brien", "Big \"Red\" Barn"};
    logic.addEntry();
    logic.addEntry();
    EXPECT_EQ(listed(), (QStringList{"Big \"Red\" Barn", "O'Brien"}));
    EXPECT_TRUE(messages.requests.empty());

    logic.changeLetterFilter("O");
    EXPECT_EQ(listed(), QStringList{"O'Brien"});
    logic.changeLetterFilter("*");

    messages.answers = {ResultYes, ResultYes};
    logic.chooseName(0);
    logic.deleteEntry();
    EXPECT_EQ(messages.requests.back().prompt, "Are you sure you want to delete Big \"Red\" Barn");
    EXPECT_EQ(listed(), QStringList{"O'Brien"});
    logic.deleteEntry();
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_EQ(farmCount(), 0);
    EXPECT_EQ(messages.requests.size(), 2u);
}

TEST_F(AddDeleteLogic, EditPayDetailsNeedsASelection)
{
    start(0);
    logic.editPayDetails();
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].prompt, "Select Record From The List");
    EXPECT_EQ(messages.requests[0].caption, "");
    EXPECT_TRUE(openers.payDetails.empty());

    addAddress(8, "Hill", true);
    logic.unload();
    start(0);
    EXPECT_TRUE(logic.editPaysEnabled());
    logic.editPayDetails();
    EXPECT_EQ(openers.payDetails, std::vector<qint32>{8});
    // Clearing and ticking "Show in Wagebook" on screen turns the command off and on.
    logic.toggleFlag(AddressBookLogic::WageFlag, false);
    EXPECT_FALSE(logic.editPaysEnabled());
    logic.toggleFlag(AddressBookLogic::WageFlag, true);
    EXPECT_TRUE(logic.editPaysEnabled());
}
