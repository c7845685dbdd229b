// Filling drop-down lists and grid columns from the suite's data files.
#include "controls/combolist.h"
#include "controls/filldaovbcombo.h"
#include "data/database.h"
#include "startup/messageservice.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QStringList>

namespace {

struct Recorded : MessageService
{
    qint16 show(const MessageRequest &request) override
    {
        requests.push_back(request);
        return ResultOk;
    }
    std::vector<MessageRequest> requests;
};

QStringList texts(const ComboList &list)
{
    QStringList out;
    for (const ComboItem &item : list.items())
        out << item.text;
    return out;
}

QList<qint32> data(const ComboList &list)
{
    QList<qint32> out;
    for (const ComboItem &item : list.items())
        out << item.data;
    return out;
}

const QString TaxTypesQuery = "SELECT TaxTypeID, TaxName FROM TaxTypes ORDER BY TaxTypes.Order";

class FillDaoVBComboTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setMessageService(&messages);
        suite.execWage("INSERT INTO TaxTypes (TaxTypeID, TaxName, \"Order\") VALUES "
                       "(7, 'Primary', 1), (3, 'Secondary', 2), (5, NULL, 3), "
                       "(9, 'Withholding', 4)");
    }
    void TearDown() override { setMessageService(nullptr); }

    TempSuite suite;
    Recorded messages;
    ComboList list;
};

} // namespace

TEST_F(FillDaoVBComboTest, NoneItemComesFirstAndNullNamesAreLeftOut)
{
    Database db(suite.wagePath());
    list.addItem("left over", 12);
    FillDaoVBCombo(db, list, TaxTypesQuery, 0, true, "", false, true, false);
    EXPECT_EQ(texts(list), QStringList({"None", "Primary", "Secondary", "Withholding"}));
    EXPECT_EQ(data(list), QList<qint32>({0, 7, 3, 9}));
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_EQ(list.text(), "None");

    FillDaoVBCombo(db, list, TaxTypesQuery, 0, true, "(no tax)", false, true, false);
    EXPECT_EQ(list.item(0).text, "(no tax)");
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(FillDaoVBComboTest, SelectsTheMatchingIdentifierElseTheFirstItem)
{
    Database db(suite.wagePath());
    FillDaoVBCombo(db, list, TaxTypesQuery, 9, true, "", false, true, false);
    EXPECT_EQ(list.listIndex(), 3);
    EXPECT_EQ(list.currentData(), 9);

    // No such row: the none item.
    FillDaoVBCombo(db, list, TaxTypesQuery, 42, true, "", false, true, false);
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_EQ(list.text(), "None");

    // A row whose name is null is not listed, so it cannot be selected either.
    FillDaoVBCombo(db, list, TaxTypesQuery, 5, false, "", false, true, false);
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_EQ(list.text(), "Primary");

    // Without item data a one-column query shows and matches on its only field.
    suite.execWage("INSERT INTO PayInterval (IntervalName, NumberOfDays) VALUES "
                   "('Weekly', 7), ('Fortnightly', 14), ('Four-weekly', 28)");
    FillDaoVBCombo(db, list, "SELECT NumberOfDays FROM PayInterval ORDER BY NumberOfDays", 14,
                   false, "", false, false, false);
    EXPECT_EQ(texts(list), QStringList({"7", "14", "28"}));
    EXPECT_EQ(data(list), QList<qint32>({0, 0, 0}));
    EXPECT_EQ(list.text(), "14");
}

TEST_F(FillDaoVBComboTest, MatchZeroFindsTheRowWithIdentifierZero)
{
    suite.execWage("INSERT INTO EmployeeAwardType (EmployeeTypeID, EmployeeType) VALUES "
                   "(2, 'Permanent'), (0, 'Casual'), (4, 'Contract')");
    Database db(suite.wagePath());
    const QString query = "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType "
                          "ORDER BY EmployeeType DESC";

    FillDaoVBCombo(db, list, query, 0, true, "", true, true, false);
    EXPECT_EQ(texts(list), QStringList({"None", "Permanent", "Contract", "Casual"}));
    EXPECT_EQ(list.text(), "Casual");

    FillDaoVBCombo(db, list, query, 0, true, "", false, true, false);
    EXPECT_EQ(list.text(), "None");
}

TEST_F(FillDaoVBComboTest, LeaveSelectionFillsButSelectsNothing)
{
    Database db(suite.wagePath());
    FillDaoVBCombo(db, list, TaxTypesQuery, 7, false, "", false, true, false);
    ASSERT_EQ(list.listIndex(), 0);

    FillDaoVBCombo(db, list, TaxTypesQuery, 7, false, "", false, true, true);
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.listIndex(), -1);
    EXPECT_EQ(list.text(), "");
}

TEST_F(FillDaoVBComboTest, FailureIsReportedAndTheListKeepsWhatWasAdded)
{
    Database db(suite.wagePath());

    // The query fails before the list is touched.
    list.addItem("kept", 1);
    FillDaoVBCombo(db, list, "SELECT ID, Name FROM NoSuchTable", 0, true, "", false, true, false);
    EXPECT_EQ(texts(list), QStringList({"kept"}));
    ASSERT_EQ(messages.requests.size(), 1u);
    const MessageRequest &r = messages.requests[0];
    EXPECT_TRUE(r.prompt.startsWith("Description - ")) << r.prompt.toStdString();
    EXPECT_TRUE(r.prompt.endsWith(") was generated in CommonCode.DAOVBCombo.FillDaoVBCombo"))
        << r.prompt.toStdString();
    EXPECT_EQ(r.caption, "Corvane Error");
    EXPECT_EQ(r.title, "An Error has Occurred");
    EXPECT_EQ(r.buttons, 0);

    // An identifier too large for item data stops the fill after its text went in.
    suite.execWage("INSERT INTO EmployeeAwardType (EmployeeTypeID, EmployeeType) VALUES "
                   "(1, 'Permanent'), (3000000000, 'Seasonal'), (3000000001, 'Contract')");
    FillDaoVBCombo(db, list,
                   "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType "
                   "ORDER BY EmployeeTypeID",
                   0, true, "", false, true, false);
    EXPECT_EQ(texts(list), QStringList({"None", "Permanent", "Seasonal"}));
    EXPECT_EQ(list.listIndex(), -1);
    ASSERT_EQ(messages.requests.size(), 2u);
    EXPECT_EQ(messages.requests[1].prompt,
              "Description - Overflow(6) was generated in CommonCode.DAOVBCombo.FillDaoVBCombo");
    EXPECT_EQ(messages.requests[1].heading, "Error 6");
}

TEST(GridColumnsTest, CaptionsSkipNullsAndNeverUseTheLastElement)
{
    GridColumns grid(4);
    grid.column(1).caption = "Fixed";
    setGridColumnCaptions(grid, {"Deduction", QVariant(), "Rate %", "Amount", "Extra"});
    EXPECT_EQ(grid.column(0).caption, "Deduction");
    EXPECT_EQ(grid.column(1).caption, "Fixed");
    EXPECT_EQ(grid.column(2).caption, "Rate %");
    EXPECT_EQ(grid.column(3).caption, "Amount");

    GridColumns two(2);
    setGridColumnCaptions(two, {"A", "B", "not a column"});
    EXPECT_EQ(two.column(1).caption, "B");
    setGridColumnCaptions(two, {});
    EXPECT_EQ(two.column(0).caption, "A");
}

TEST(GridColumnsTest, ValueListStoresIdentifiersAndShowsNames)
{
    TempSuite suite;
    Recorded messages;
    setMessageService(&messages);
    suite.execWage("INSERT INTO DeductNames (DeductNameID, DeductionName, CountryPhone) VALUES "
                   "(4, 'Union fees', 64), (8, 'Child support', 64), (9, 'Super', 61)");

    GridColumns grid(3);
    GridValueListOptions options;
    options.sorted = true;
    fillGridColumnValueList(grid,
                            "SELECT DeductNameID, DeductionName FROM DeductNames "
                            "WHERE CountryPhone = 64 ORDER BY DeductionName",
                            0, suite.wagePath(), "DeductionName", "DeductNameID", "DeductNames",
                            options);
    EXPECT_EQ(grid.column(0).valueItems, std::vector<GridValueItem>({{qint64(8), "Child support"},
                                                                     {qint64(4), "Union fees"}}));
    EXPECT_TRUE(grid.column(0).options.sorted);
    EXPECT_EQ(grid.column(0).displayText(4), "Union fees");
    EXPECT_EQ(grid.column(0).displayText(9), "9");
    EXPECT_TRUE(messages.requests.empty());

    // An older file without the column, or no file at all: the user is told, the list is
    // empty.
    fillGridColumnValueList(grid, "SELECT DeductNameID, Category FROM DeductNames", 0,
                            suite.wagePath(), "Category", "DeductNameID", "DeductNames");
    EXPECT_TRUE(grid.column(0).valueItems.empty());
    fillGridColumnValueList(grid, "SELECT DeductNameID, DeductionName FROM DeductNames", 1,
                            suite.dir() + "/missing.mdb", "DeductionName", "DeductNameID",
                            "DeductNames");
    ASSERT_EQ(messages.requests.size(), 2u);
    EXPECT_EQ(messages.requests[0].prompt, "Database out of date, problem reading DeductNames");
    EXPECT_EQ(messages.requests[0].caption, "Corvane");
    EXPECT_EQ(messages.requests[1].prompt, messages.requests[0].prompt);
    setMessageService(nullptr);
}
