// The pay details editor on small books: what its fields do as the user works in them
// (normalising on exit, the hire/finish rule, captions, the enrolment switch, bank modes),
// loading and saving (the new employee's row, the close check, guarded field writes, the one
// transaction around the whole save).
#include "data/money.h"
#include "editor_fixture.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/employeedefaults.h"
#include "paydetails/paydetailseditor.h"
#include "support/filelock.h"
#include "support/qtprinters.h"

#include <QSqlQuery>

using Editor = PayDetailsEditor;

namespace {

class EditorFields : public EditorBooks
{
protected:
    void SetUp() override
    {
        EditorBooks::SetUp();
        editor.load(*farm, 37);
    }

    void type(int field, const QString &text) { EditorBooks::type(editor, field, text); }

    // The change-log lines the next save will write.
    QString notes() const { return editor.pendingLog().join("\r\n"); }

    Editor editor{Editor::Host::WagesTab};
};

} // namespace

// Amounts and dates take their normal form when left; a new rate is logged.
TEST_F(EditorFields, FieldsFormatWhenLeftAndANewRateIsLogged)
{
    type(Editor::PayRate, "25");
    EXPECT_TRUE(notes().isEmpty()) << "the same amount is no change";
    type(Editor::PayRate, "27.5");
    EXPECT_EQ(editor.text(Editor::PayRate), "$27.50");
    EXPECT_EQ(notes(), "[20/05/2024] Pay rate amended to $27.50 Head (by Mere)");
    EXPECT_EQ(editor.text(Editor::Yearlytotal), "") << "salary never follows the rate";

    type(Editor::Birthdate, "3-7-85");
    EXPECT_EQ(editor.text(Editor::Birthdate), "3/07/1985");
}

// The suite's rule as it has always run: a hire date before the finish date empties the
// finish date, whichever of the two is typed; the same day, or a finish before, stays.
TEST_F(EditorFields, HireBeforeFinishEmptiesTheFinishDate)
{
    const struct
    {
        int field;
        const char *typed, *hired, *finished;
    } steps[] = {{Editor::Datefinished, "30/06/2011", "1/04/2010", ""},
                 {Editor::Datefinished, "1/04/2010", "1/04/2010", "1/04/2010"},
                 {Editor::Datefinished, "1/03/2010", "1/04/2010", "1/03/2010"},
                 {Editor::Datehired, "1/04/2009", "1/04/2009", ""}};
    for (const auto &s : steps) {
        SCOPED_TRACE(s.typed);
        type(s.field, s.typed);
        EXPECT_EQ(editor.text(Editor::Datehired), s.hired);
        EXPECT_EQ(editor.text(Editor::Datefinished), s.finished);
    }
}

TEST_F(EditorFields, OccupationCaptionsThePayRateByItsUnit)
{
    editor.listFocusIn(Editor::Occupation);
    editor.listChosen(Editor::Occupation, 1); // "Relief milker": unit Null
    ASSERT_EQ(editor.list(Editor::Occupation).text(), "Relief milker");
    editor.listFocusOut(Editor::Occupation);
    EXPECT_EQ(editor.payRateCaption(), "Pay Rate (per Hour)");
    EXPECT_EQ(notes(), "[20/05/2024] Occupation changed to Relief milker (by Mere)");
}

TEST_F(EditorFields, EnrolmentShowsRatesOnlyForMembers)
{
    // As loaded: entry 37 is a member; the new hand (no row) is not.
    EXPECT_TRUE(editor.kiwiSaverRatesVisible());
    Editor newHand(Editor::Host::Dialog);
    newHand.load(*farm, 38);
    EXPECT_FALSE(newHand.kiwiSaverRatesVisible());

    editor.listChosen(Editor::EnrolmentType, 2); // "Not enrolled"
    EXPECT_FALSE(editor.kiwiSaverRatesVisible());
    EXPECT_FALSE(editor.esctVisible());
    editor.listChosen(Editor::EnrolmentType, 1); // "Opted in"
    EXPECT_TRUE(editor.esctVisible());
}

TEST_F(EditorFields, BankModesFollowTheIdentifierAndTheDefaults)
{
    wage->execute("UPDATE Employees SET BankID = 995 WHERE AddressID = 37");
    editor.load(*farm, 37);
    EXPECT_TRUE(editor.nonCash());
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 995);

    // Before the address window looks them up both defaults are 0.
    editor.nonCashClicked(true);
    EXPECT_FALSE(editor.nonCash()) << "0 is a cash identifier";

    lookupDefaultBanks(*farm);
    editor.nonCashClicked(true);
    EXPECT_EQ(editor.cashbookCaption(), "Payments (Net)");
    editor.nonCashClicked(false);
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 1);
    EXPECT_EQ(editor.cashbookCaption(), "Cashbook (Gross)");
}

TEST_F(EditorFields, FailedLookUpsAreToldAndTheEditorGoesOn)
{
    // A type typed as listed but in other capitals is the listed one; a non-member is not.
    const std::pair<const char *, bool> typedTypes[] = {{"OPTED IN", true},
                                                        {"not enrolled", false}};
    for (const auto &[typed, member] : typedTypes) {
        editor.list(Editor::EnrolmentType).setListIndex(-1);
        editor.list(Editor::EnrolmentType).setText(typed);
        editor.enrolmentClicked();
        EXPECT_EQ(editor.kiwiSaverRatesVisible(), member) << typed;
    }
    // A type typed that is not listed: looked up, not found, no member.
    editor.list(Editor::EnrolmentType).setListIndex(-1);
    editor.list(Editor::EnrolmentType).setText("No such type");
    editor.enrolmentClicked();
    EXPECT_FALSE(editor.kiwiSaverRatesVisible());
    // A main file without its PAYE record: the INI's wage account, and the lists all the same.
    farm->execute("DELETE FROM PayeInfo");
    editor.load(*farm, 37);
    EXPECT_EQ(editor.list(Editor::Heading).currentData(), 401001);
    EXPECT_EQ(editor.list(Editor::Enterprise).text(), "Sheep");

    EXPECT_EQ(messages.requests.size(), 2u) << "each failed look-up is told";
}

TEST_F(EditorBooks, NewEmployeeGetsItsRowWithTheDefaultsOnClose)
{
    Editor editor(Editor::Host::Dialog);
    editor.loadFromSettings(38);
    EXPECT_EQ(editor.employeeId(), 0);
    EXPECT_FALSE(editor.queryClose());
    const std::pair<const char *, QVariant> defaults[] = {{"EmployeeTypeID", 1},
                                                          {"BankID", 1},
                                                          {"KiwiSaverEnrolID", 6},
                                                          {"KiwiSaverEnrolled", false},
                                                          {"PayRate", {}}};
    for (const auto &[column, value] : defaults)
        EXPECT_EQ(stored(38, column).toString(), value.toString()) << column;
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(EditorBooks, MemberWithoutEmployerRateStaysOpenNonMemberCloses)
{
    Editor editor(Editor::Host::Dialog);
    editor.load(*farm, 38);
    choose(editor, Editor::EnrolmentType, "Member too"); // KSMember 5 is membership too
    EXPECT_TRUE(editor.kiwiSaverEnrolled());
    ASSERT_EQ(editor.list(Editor::EmployerRate).text(), "<Please Select>");
    EXPECT_TRUE(editor.queryClose());
    EXPECT_EQ(messages.titles(), QStringList{"Incomplete Data"});
    EXPECT_TRUE(stored(38, "EmployeeID").isNull()) << "nothing saved while it stays open";

    choose(editor, Editor::EnrolmentType, "Not enrolled");
    EXPECT_FALSE(editor.queryClose());
    EXPECT_EQ(messages.requests.size(), 1u);
    EXPECT_FALSE(stored(38, "EmployeeID").isNull());
}

TEST_F(EditorBooks, LoadShowsTheRowAndSaveGuardsEachField)
{
    Editor editor(Editor::Host::WagesTab);
    editor.load(*farm, 37);
    EXPECT_EQ(editor.text(Editor::PayRate), "$25.00");
    EXPECT_EQ(editor.pickerDate(Editor::Birthdate), QDate(2024, 5, 20)) << "Null: today";
    EXPECT_EQ(editor.payRateCaption(), "Pay Rate (per Head)");
    EXPECT_EQ(editor.list(Editor::EmployerRate).text(), "Employer 3%");
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 2);

    // An emptied value stores Null; the heading list never reaches HeadingID; a
    // cleared start date is kept.
    editor.textEdited(Editor::Yearlytotal, "52000");
    editor.textEdited(Editor::Datehired, "");
    editor.textEdited(Editor::KiwiSaverStartDate, "");
    choose(editor, Editor::Heading, "Wages - casual");
    editor.SaveWageTab();
    EXPECT_EQ(stored(37, "PayRate").value<Money>(), Money::fromUnits(25));
    EXPECT_EQ(stored(37, "Yearlytotal").value<Money>(), Money::fromUnits(52000));
    EXPECT_TRUE(stored(37, "Datehired").isNull());
    EXPECT_EQ(stored(37, "KiwiSaverStartDate").toDateTime().date(), QDate(2012, 7, 1));
    EXPECT_EQ(stored(37, "HeadingID").toInt(), 777);

    editor.textEdited(Editor::PayRate, "");
    editor.SaveWageTab();
    EXPECT_TRUE(stored(37, "PayRate").isNull());
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(EditorBooks, ChangeLogLinesAreWrittenOnlyWithTheSaveThatStoresTheChange)
{
    const auto notes = [this] {
        Recordset rs(*farm, "SELECT notes FROM Addresses WHERE AddressID = 37",
                     Recordset::Snapshot);
        return rs.value(0).toString();
    };
    ReasonAnswers why({"annual review"});
    Editor editor(Editor::Host::Dialog);
    editor.setInputBox(&why);
    editor.load(*farm, 37);
    type(editor, Editor::PayRate, "31");
    editor.listFocusIn(Editor::Occupation);
    choose(editor, Editor::Occupation, "Farm hand");
    editor.listFocusOut(Editor::Occupation);
    EXPECT_EQ(editor.pendingLog().size(), 2);
    EXPECT_EQ(notes(), "");
    {
        FileLock other(suite);
        messages.answers = {ResultCancel};
        EXPECT_TRUE(editor.queryClose()) << "stays open";
        ASSERT_EQ(messages.requests.size(), 1u);
        EXPECT_TRUE(messages.requests[0].prompt.contains("Hemi Walker"));
    }
    EXPECT_EQ(notes(), "");
    EXPECT_EQ(stored(37, "PayRate").value<Money>(), Money::fromUnits(25));
    EXPECT_FALSE(editor.queryClose());
    EXPECT_EQ(stored(37, "PayRate").value<Money>(), Money::fromUnits(31));
    EXPECT_EQ(notes(), "[20/05/2024] Pay rate amended to $31.00 Head (by Mere: annual review)\r\n"
                       "[20/05/2024] Occupation changed to Farm hand (by Mere)");
    EXPECT_EQ(why.prompts.size(), 1) << "a save gone back to does not ask again";
}

// Pay rate, salary, tax type and tax code changes ask why; the answer, kept on one line,
// follows who made the change. Cancel or nothing typed still logs the change; no change, no
// question.
TEST_F(EditorBooks, PayChangesAskWhyAndAreSignedWithWho)
{
    ReasonAnswers why({"annual review", "", "new job\r\n\tsecond job", "IR330 received"});
    Editor editor(Editor::Host::WagesTab);
    editor.setInputBox(&why);
    editor.load(*farm, 37);
    const auto pickAndLeave = [&](int list, const QString &text) {
        editor.listFocusIn(list);
        choose(editor, list, text);
        editor.listFocusOut(list);
    };
    type(editor, Editor::PayRate, "31");
    type(editor, Editor::Yearlytotal, "52000");
    pickAndLeave(Editor::TaxType, "Secondary");
    pickAndLeave(Editor::PayInterval, "Weekly"); // told when chosen and when left
    type(editor, Editor::PayRate, "31");
    type(editor, Editor::TaxCode, "ME");
    EXPECT_EQ(why.prompts,
              QStringList({"Pay rate amended to $31.00 Head.\n\nReason for the pay rate change "
                           "(optional):",
                           "Salary Changed to $52,000.00 per year.\n\nReason for the salary "
                           "change (optional):",
                           "Tax type changed to Secondary.\n\nReason for the tax type change "
                           "(optional):",
                           "Tax code changed to ME.\n\nReason for the tax code change "
                           "(optional):"}));
    EXPECT_EQ(editor.pendingLog(),
              QStringList({"[20/05/2024] Pay rate amended to $31.00 Head (by Mere: annual review)",
                           "[20/05/2024] Salary Changed to $52,000.00 per year (by Mere)",
                           "[20/05/2024] Tax type changed to Secondary (by Mere: new job second "
                           "job)",
                           "[20/05/2024] Pay interval changed to Weekly (by Mere)",
                           "[20/05/2024] Tax code changed to ME (by Mere: IR330 received)"}));
}

// The ESCT tick on the tab, and leaving KiwiSaver in the dialog, are stored at once.
TEST_F(EditorBooks, LeavingKiwiSaverRemovesItsRowsAndKeepsOrdinaryDeductions)
{
    Editor tab(Editor::Host::WagesTab);
    tab.load(*farm, 37);
    EXPECT_TRUE(tab.esctVisible());
    tab.esctClicked(true);
    EXPECT_TRUE(stored(37, "IncludeESCT").toBool());

    Editor editor(Editor::Host::Dialog);
    editor.load(*farm, 37);
    choose(editor, Editor::EnrolmentType, "Not enrolled");
    editor.excludeIR348Clicked(true); // the dialog saves at once
    EXPECT_TRUE(stored(37, "ExcludeIR348").toBool());
    EXPECT_FALSE(stored(37, "KiwiSaverEnrolled").toBool());
    EXPECT_TRUE(stored(37, "KiwiSaverEmployerRateID").isNull());
    EXPECT_EQ(count("SELECT COUNT(*) FROM EmployeeDeductions WHERE EmployeeID = 5"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM EmployerContributions WHERE EmployeeID = 5"), 0);
}

TEST_F(EditorBooks, FailedSavePartWayLeavesThePreviousRows)
{
    Editor editor(Editor::Host::WagesTab);
    editor.load(*farm, 37);
    choose(editor, Editor::EmployeeRate, "KiwiSaver 4%");
    editor.textEdited(Editor::TaxCode, "ME");
    // Ordinary deductions are written last: make that step fail.
    if (suite.onServer()) {
        suite.execWage("ALTER TABLE EmployeeDeductions ADD CONSTRAINT refuse "
                       "CHECK (TaxName IS NOT NULL) NOT VALID");
    } else {
        valueOnFile(suite.wagePath(), "CREATE TRIGGER refuse BEFORE INSERT ON EmployeeDeductions "
                                      "WHEN NEW.TaxName IS NULL BEGIN SELECT RAISE(ABORT, "
                                      "'refused'); END");
    }
    editor.SaveWageTab();

    EXPECT_EQ(messages.requests.size(), 1u) << "reported once, by the step that failed";
    EXPECT_TRUE(stored(37, "TaxCode").isNull());
    EXPECT_EQ(count("SELECT DeductID FROM EmployeeDeductions WHERE EmployeeID = 5 AND "
                    "TaxName = 'KiwiSaver'"),
              1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM EmployeeDeductions WHERE EmployeeID = 5"), 2);
    EXPECT_FALSE(wage->inTransaction());
}

// Two clerks open the same employee; the first saves a new pay rate. The second's save
// keeps every value the first stored unless the second changed it too, and then asks
// whose value stands; the change log tells only of what was stored.
TEST_F(EditorBooks, TwoClerksOnOneEmployeeLoseNothingUnseen)
{
    const struct
    {
        const char *secondRate; // nullptr: the second leaves the rate alone
        qint16 answer;
        int storedRate; // dollars
        const char *storedTaxCode;
        bool logsSecondRate;
    } cases[] = {
        {nullptr, ResultOk, 31, "ME", false},     // different fields: both stand, no question
        {"40", ResultYes, 40, "ME", true},        // Keep Mine
        {"40", ResultNo, 31, "ME", false},        // Take Theirs, the rest of mine is saved
        {"40", ResultCancel, 31, nullptr, false}, // nothing of mine yet; I stay on my changes
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.secondRate ? c.secondRate : "rate untouched");
        suite.execWage(
            "UPDATE Employees SET PayRate = 250000, TaxCode = NULL WHERE EmployeeID = 5");
        suite.execFarm("UPDATE Addresses SET notes = NULL WHERE AddressID = 37");
        const auto otherBooks = suite.openBooks();
        Editor first(Editor::Host::Dialog), second(Editor::Host::Dialog);
        first.load(*farm, 37);
        second.load(*otherBooks, 37);
        type(second, Editor::TaxCode, "ME");
        if (c.secondRate)
            type(second, Editor::PayRate, c.secondRate);
        type(first, Editor::PayRate, "31");
        EXPECT_FALSE(first.queryClose());
        messages.requests.clear();
        messages.answers = {c.answer};

        EXPECT_EQ(second.queryClose(), c.answer == ResultCancel) << "stays open on Cancel";
        ASSERT_EQ(messages.requests.size(), c.secondRate ? 1u : 0u);
        if (c.secondRate) {
            EXPECT_EQ(messages.requests[0].buttons, ButtonsKeepMineTakeTheirsCancel);
            EXPECT_TRUE(
                messages.requests[0].prompt.contains("Pay rate: yours $40.00, theirs $31.00"))
                << messages.requests[0].prompt.toStdString();
        }
        EXPECT_EQ(stored(37, "PayRate").value<Money>(), Money::fromUnits(c.storedRate));
        EXPECT_EQ(stored(37, "TaxCode").toString(), QString(c.storedTaxCode));
        const QString notes =
            suite.farmValue("SELECT notes FROM Addresses WHERE AddressID = 37").toString();
        EXPECT_TRUE(notes.contains("amended to $31.00"));
        EXPECT_EQ(notes.contains("amended to $40.00"), c.logsSecondRate) << notes.toStdString();
        if (c.answer == ResultCancel) {
            EXPECT_EQ(second.text(Editor::PayRate), "$40.00") << "the typing is kept";
        }
    }
}

// The deductions, which a save writes whole: a grid this clerk left alone keeps the rows
// another clerk saved meanwhile; a grid both changed is asked about.
TEST_F(EditorBooks, AnotherClerksDeductionsAreNotWrittenOverUnseen)
{
    const struct
    {
        const char *secondAmount; // nullptr: the second clerk leaves the grid alone
        qint16 answer;
        qint64 stored; // the union fees' fixed amount afterwards, in ten-thousandths
    } cases[] = {{nullptr, ResultOk, 10000}, {"9.00", ResultYes, 90000}, {"9.00", ResultNo, 10000}};
    const auto unionFees = [](Editor &editor) {
        int row = 0;
        while (editor.deductionGrid().value(row, DeductionGrid::DeductIdColumn).toInt() != 7)
            ++row;
        return row;
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.secondAmount ? c.secondAmount : "grid untouched");
        suite.execWage("UPDATE EmployeeDeductions SET FixedAmount = 50000 WHERE DeductID = 7");
        const auto otherBooks = suite.openBooks();
        Editor first(Editor::Host::Dialog), second(Editor::Host::Dialog);
        first.load(*farm, 37);
        second.load(*otherBooks, 37);
        type(second, Editor::TaxCode, "ME");
        if (c.secondAmount)
            second.gridCellEdited(unionFees(second), DeductionGrid::FixedAmountColumn,
                                  c.secondAmount);
        first.gridCellEdited(unionFees(first), DeductionGrid::FixedAmountColumn, "1.00");
        EXPECT_FALSE(first.queryClose());
        messages.requests.clear();
        messages.answers = {c.answer};
        EXPECT_FALSE(second.queryClose());
        EXPECT_EQ(messages.requests.size(), c.secondAmount ? 1u : 0u);
        EXPECT_EQ(suite.wageValue("SELECT FixedAmount FROM EmployeeDeductions WHERE DeductID = 7")
                      .toLongLong(),
                  c.stored);
        EXPECT_EQ(count("SELECT COUNT(*) FROM EmployeeDeductions WHERE TaxName IS NULL"), 1);
        EXPECT_EQ(stored(37, "TaxCode").toString(), "ME");
    }
}
