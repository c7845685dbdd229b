// Filling drop-down lists from the suite's data files.
#include "controls/combolist.h"
#include "controls/filldaovbcombo.h"
#include "data/database.h"
#include "support/errorof.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QStringList>

namespace {

QStringList texts(const ComboList &list)
{
    QStringList out;
    for (const ComboItem &item : list.items())
        out << item.text + '=' + QString::number(item.data);
    return out;
}

const QString TaxTypes = "SELECT TaxTypeID, TaxName FROM TaxTypes ORDER BY TaxTypes.Order";

class FillDaoVBComboTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        suite.execWage("INSERT INTO TaxTypes (TaxTypeID, TaxName, \"Order\") VALUES "
                       "(7, 'Primary', 1), (3, 'Secondary', 2), (5, NULL, 3), (9, 'Other', 4)");
    }

    TempSuite suite;
    MessageRecorder messages;
    ComboList list;
};

} // namespace

TEST_F(FillDaoVBComboTest, ListsNamedRowsAndSelectsTheMatchElseTheFirstItem)
{
    Database db(suite.wagePath());
    list.addItem("left over", 12);
    FillDaoVBCombo(db, list, TaxTypes, 9, true, "", false, true, false);
    EXPECT_EQ(texts(list), QStringList({"None=0", "Primary=7", "Secondary=3", "Other=9"}));
    EXPECT_EQ(list.text(), "Other");

    FillDaoVBCombo(db, list, TaxTypes, 42, true, "(none)", false, true, false);
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_EQ(list.text(), "(none)");

    // A row whose name is null is not listed, so it cannot be selected either.
    FillDaoVBCombo(db, list, TaxTypes, 5, false, "", false, true, false);
    EXPECT_EQ(list.text(), "Primary");

    FillDaoVBCombo(db, list, TaxTypes, 7, false, "", false, true, true);
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.listIndex(), -1) << "leave selection";

    // Without item data a one-column query shows and matches on its only field.
    suite.execWage("INSERT INTO PayInterval (NumberOfDays) VALUES (7), (14), (28)");
    FillDaoVBCombo(db, list, "SELECT NumberOfDays FROM PayInterval ORDER BY NumberOfDays", 14,
                   false, "", false, false, false);
    EXPECT_EQ(texts(list), QStringList({"7=0", "14=0", "28=0"}));
    EXPECT_EQ(list.text(), "14");
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(FillDaoVBComboTest, MatchZeroSelectsTheRowWithIdentifierZeroOverTheNoneItem)
{
    suite.execWage("INSERT INTO EmployeeAwardType (EmployeeTypeID, EmployeeType) VALUES "
                   "(2, 'Permanent'), (0, 'Casual')");
    Database db(suite.wagePath());
    const QString query = "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType "
                          "ORDER BY EmployeeType DESC";
    FillDaoVBCombo(db, list, query, 0, true, "", true, true, false);
    EXPECT_EQ(list.text(), "Casual");
    FillDaoVBCombo(db, list, query, 0, true, "", false, true, false);
    EXPECT_EQ(list.text(), "None");
}

TEST_F(FillDaoVBComboTest, FailureThrowsAndTheListKeepsWhatWasAdded)
{
    Database db(suite.wagePath());
    list.addItem("kept", 1);
    EXPECT_NE(errorOf([&] {
                  FillDaoVBCombo(db, list, "SELECT ID, Name FROM NoSuchTable", 0, true, "", false,
                                 true, false);
              }),
              0);
    EXPECT_EQ(texts(list), QStringList({"kept=1"}));

    // An identifier too large for item data stops the fill after its text went in.
    suite.execWage("INSERT INTO EmployeeAwardType (EmployeeTypeID, EmployeeType) VALUES "
                   "(1, 'Permanent'), (3000000000, 'Seasonal'), (3000000001, 'Contract')");
    EXPECT_EQ(errorOf([&] {
                  FillDaoVBCombo(db, list,
                                 "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType", 0,
                                 true, "", false, true, false);
              }),
              CvError::Overflow);
    EXPECT_EQ(texts(list), QStringList({"None=0", "Permanent=1", "Seasonal=0"}));
    EXPECT_EQ(list.listIndex(), -1);
    EXPECT_TRUE(messages.requests.empty()) << "the procedure that fills it tells the user";
}
