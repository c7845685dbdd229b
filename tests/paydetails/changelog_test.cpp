// Change-log lines, dated with the pinned day, and their place in the notes.
#include "config/suiteconfig.h"
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

// Who and why follow what changed, on the one line; neither leaves the line as it was.
TEST(ChangeLogLine, SignedWithWhoAndWhy)
{
    const QString line = "[22/11/2026] Pay rate amended to $31.00 Hour";
    const QString longWhy = QString(130, u'x');
    const struct
    {
        QString who, why, suffix;
    } cases[] = {{"Mere", "", " (by Mere)"},
                 {"Mere", "annual review", " (by Mere: annual review)"},
                 {"Mere", " \r\n ", " (by Mere)"}, // nothing but blanks is no reason
                 {"Mere", "new job\r\n\tsecond\u2028job", " (by Mere: new job second job)"},
                 {"Mere", longWhy, " (by Mere: " + longWhy.left(kMaxLogReason) + ")"},
                 {"Mere", QString(kMaxLogReason - 1, u'x') + "\U0001F411", // not half a sheep
                  " (by Mere: " + QString(kMaxLogReason - 1, u'x') + ")"},
                 {"Te\nAroha", "", " (by Te Aroha)"},
                 {"", "annual review", " (annual review)"},
                 {"", "", ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.who.toStdString() + "/" + c.why.toStdString());
        EXPECT_EQ(signedLine(line, c.who, c.why), line + c.suffix);
    }
    EXPECT_EQ(signedLine("", "Mere", "why"), "") << "no line, nothing to sign";
}

// The name from the INI, else the login; the INI's is for a computer clerks share.
TEST(ChangeLogLine, WhoIsTheIniNameElseTheLogin)
{
    TempSuite suite;
    const QByteArray user = qgetenv("USER"), userName = qgetenv("USERNAME");
    const struct
    {
        const char *ini, *user, *userName, *who;
    } cases[] = {{"[CORVANE]\r\nUserName= Mere \r\n", "hemi", "", "Mere"},
                 {"[CORVANE]\r\nUserName=\r\n", "hemi", "", "hemi"},
                 {"[START]\r\n", "", "Ana", "Ana"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.who);
        suite.writeIni(c.ini);
        qputenv("USER", c.user);
        qputenv("USERNAME", c.userName);
        EXPECT_EQ(suiteUserName(), c.who);
    }
    qputenv("USER", user);
    qputenv("USERNAME", userName);
}

TEST(ChangeLogNotes, AppendedOldestFirst)
{
    TempSuite suite;
    suite.execFarm(
        "INSERT INTO Addresses (AddressID, BusName, notes) VALUES (5, 'Ann Hay', "
        "'Started on the Tāwhiti block\r\n[1/04/2010] Pay rate amended to $25.00 Head'), "
        "(6, 'New Hand', NULL)");
    const auto books = suite.openBooks();
    Database &farm = *books;
    const auto notes = [&](int id) {
        Recordset rs(farm, "SELECT notes FROM Addresses WHERE AddressID=" + QString::number(id),
                     Recordset::Snapshot);
        return rs.value(0).toString();
    };
    // Lines from before who and why were logged stay as they are.
    appendToNotes(farm, {"[1] one (by Mere: review)", "", "[2] two"}, 5);
    appendToNotes(farm, {"[3] three"}, 6);
    appendToNotes(farm, {"[4] four"}, 404); // no such entry: nothing, no error
    EXPECT_EQ(notes(5), "Started on the Tāwhiti block\r\n[1/04/2010] Pay rate amended to $25.00 "
                        "Head\r\n[1] one (by Mere: review)\r\n[2] two");
    EXPECT_EQ(notes(6), "[3] three");
}

} // namespace
