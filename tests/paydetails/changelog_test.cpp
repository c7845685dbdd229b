// Change-log lines, dated with the pinned day, and their place in the notes.
#include "core/clock.h"
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/changelog.h"
#include "support/errorof.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>

namespace {

struct LineCase
{
    bool named;
    qint16 field;
    const char *newValue;
    const char *oldValue;
    const char *line; // "" for none
};

TEST(ChangeLogLine, ComposedForTheFieldOrNotAtAll)
{
    setToday(QDate(2026, 11, 22));
    setCurrentUnitOfPay("Head");
    const LineCase cases[] = {
        {false, 2, "25", "20", "[22/11/2026] Pay rate amended to $25.00 Head"},
        {false, 2, "25", "25", ""}, // re-entered
        {false, 3, "52000", "", "[22/11/2026] Salary Changed to $52,000.00 per year"},
        {false, 5, "3/12/2026", "", "[22/11/2026] Finished on 3/12/2026"},
        {false, 4, "", "1/04/2010", ""},  // emptied: no hiring on 30/12/1899
        {false, 5, "30/12/1899", "", ""}, // the zero date
        {false, 6, "12345", "", ""},      // not a logged field
        {true, 0, "Shepherd", "shepherd", "[22/11/2026] Occupation changed to Shepherd"},
        {true, 12, "x", "", "[22/11/2026]  changed to x"}};
    for (const LineCase &c : cases) {
        const QString line = c.named ? namedFieldChangeLine(c.newValue, c.oldValue, c.field)
                                     : valueChangeLine(c.field, c.newValue, c.oldValue);
        EXPECT_EQ(line, c.line) << c.field << " " << c.newValue;
    }
    setToday(QDate());
}

TEST(ChangeLogNotes, AppendedOldestFirst)
{
    TempSuite suite;
    suite.execFarm("INSERT INTO Addresses (AddressID, BusName, notes) VALUES (5, 'Ann Hay', "
                   "'Started on the Tāwhiti block'), (6, 'New Hand', NULL)");
    const auto books = suite.openBooks();
    Database &farm = *books;
    const auto notes = [&](int id) {
        Recordset rs(farm, "SELECT notes FROM Addresses WHERE AddressID=" + QString::number(id),
                     Recordset::Snapshot);
        return rs.value(0).toString();
    };
    appendToNotes(farm, {"[1] one", "", "[2] two"}, 5);
    appendToNotes(farm, {"[3] three"}, 6);
    appendToNotes(farm, {"[4] four"}, 404); // no such entry: nothing, no error
    EXPECT_EQ(notes(5), "Started on the Tāwhiti block\r\n[1] one\r\n[2] two");
    EXPECT_EQ(notes(6), "[3] three");
}

} // namespace
