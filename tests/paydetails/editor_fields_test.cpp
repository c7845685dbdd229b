// What the editor's fields do as the user works in them: normalising on exit,
// the hire/finish rule, the unit-of-pay caption, the enrolment switch and the
// bank modes. (Text a field cannot take is refused: editor_save_test.)
#include "editor_fixture.h"
#include "paydetails/employeedefaults.h"
#include "paydetails/paydetailseditor.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

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

    void type(int field, const QString &text)
    {
        editor.textFocusIn(field);
        editor.textEdited(field, text);
        editor.textFocusOut(field);
    }

    // The change-log lines the next save will write.
    QString notes() const { return editor.pendingLog().join("\r\n"); }

    Editor editor{Editor::Host::WagesTab};
};

} // namespace

TEST_F(EditorFields, MoneyFieldsFormatOrZeroAndLogTheNewRate)
{
    type(Editor::PayRate, "25");
    EXPECT_TRUE(notes().isEmpty()) << "the same amount is no change";
    type(Editor::PayRate, "27.5");
    EXPECT_EQ(editor.text(Editor::PayRate), "$27.50");
    EXPECT_EQ(notes(), "[20/05/2024] Pay rate amended to $27.50 Head");
    EXPECT_EQ(editor.text(Editor::Yearlytotal), "") << "salary never follows the rate";

    type(Editor::PayRate, "");
    EXPECT_EQ(editor.text(Editor::PayRate), "$0.00");
}

TEST_F(EditorFields, DateFieldsFormat)
{
    type(Editor::Birthdate, "3-7-85");
    EXPECT_EQ(editor.text(Editor::Birthdate), "3/07/1985");
    type(Editor::Datehired, "");
    EXPECT_EQ(editor.text(Editor::Datehired), "");
}

TEST_F(EditorFields, HireBeforeFinishEmptiesTheFinishDate)
{
    // The suite's rule as it has always run: it empties a finish date after the hire date.
    type(Editor::Datefinished, "30/06/2011");
    EXPECT_EQ(editor.text(Editor::Datefinished), "");
    EXPECT_EQ(editor.text(Editor::Datehired), "1/04/2010");

    type(Editor::Datefinished, "1/03/2010");
    EXPECT_EQ(editor.text(Editor::Datefinished), "1/03/2010");
    type(Editor::Datehired, "1/04/2010");
    EXPECT_EQ(editor.text(Editor::Datefinished), "1/03/2010");
}

TEST_F(EditorFields, OccupationCaptionsThePayRateByItsUnit)
{
    editor.listFocusIn(Editor::Occupation);
    editor.listChosen(Editor::Occupation, 1); // "Relief milker": unit Null
    ASSERT_EQ(editor.list(Editor::Occupation).text(), "Relief milker");
    editor.listFocusOut(Editor::Occupation);
    EXPECT_EQ(editor.payRateCaption(), "Pay Rate (per Hour)");
    EXPECT_EQ(notes(), "[20/05/2024] Occupation changed to Relief milker");
}

TEST_F(EditorFields, EnrolmentShowsRatesOnlyForMembers)
{
    // As loaded: entry 37 is a member; the new hand (no row) is not.
    EXPECT_TRUE(editor.kiwiSaverRatesVisible());
    Editor newHand(Editor::Host::Dialog);
    newHand.load(*farm, 38);
    EXPECT_FALSE(newHand.kiwiSaverRatesVisible());
    EXPECT_EQ(newHand.cashbookCaption(), "Cashbook (Gross)");

    editor.listChosen(Editor::EnrolmentType, 2); // "Not enrolled"
    EXPECT_FALSE(editor.kiwiSaverEnrolled());
    EXPECT_FALSE(editor.kiwiSaverRatesVisible());
    EXPECT_FALSE(editor.esctVisible());
    editor.listChosen(Editor::EnrolmentType, 1); // "Opted in"
    EXPECT_TRUE(editor.kiwiSaverEnrolled());
    EXPECT_TRUE(editor.kiwiSaverRatesVisible());
    EXPECT_TRUE(editor.esctVisible());
}

TEST_F(EditorFields, BankModesFollowTheIdentifierAndTheDefaults)
{
    wage->execute("UPDATE Employees SET BankID = 995 WHERE AddressID = 37");
    editor.load(*farm, 37);
    EXPECT_TRUE(editor.nonCash());
    EXPECT_EQ(editor.list(Editor::Bank).count(), 2);
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 995);
    EXPECT_EQ(editor.cashbookCaption(), "Payments (Net)");

    // Before the address window looks them up both defaults are 0.
    editor.nonCashClicked(true);
    EXPECT_FALSE(editor.nonCash()) << "0 is a cash identifier";
    EXPECT_EQ(editor.list(Editor::Bank).count(), 2);

    lookupDefaultBanks(*farm);
    editor.nonCashClicked(true);
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 995);
    EXPECT_EQ(editor.cashbookCaption(), "Payments (Net)");
    editor.nonCashClicked(false);
    EXPECT_EQ(editor.list(Editor::Bank).currentData(), 1);
    EXPECT_EQ(editor.cashbookCaption(), "Cashbook (Gross)");

    // With no e-payment account, ticking lands on 995, which is not listed.
    farm->execute("DELETE FROM Banks WHERE AccountType = 1");
    lookupDefaultBanks(*farm);
    editor.nonCashClicked(true);
    EXPECT_TRUE(editor.nonCash());
    EXPECT_EQ(editor.list(Editor::Bank).count(), 0);
    farm->execute("DELETE FROM Banks");
    lookupDefaultBanks(*farm);
    EXPECT_EQ(defaultCashBankId(), 0);
    EXPECT_EQ(defaultEPaymentBankId(), 995);
}

TEST_F(EditorFields, FailedLookUpsAreToldUnderTheirOwnNamesAndTheEditorGoesOn)
{
    // The look-ups throw; the editor's procedures tell the user.
    EXPECT_EQ(errorOf([&] { IsKiwiSaverMemberType(*wage, "No such type"); }),
              CvError::NoCurrentRecord);
    EXPECT_EQ(KiwiSaverDeductID(*wage, 5), 1);
    EXPECT_EQ(KiwiSaverDeductID(*wage, 99), 0);
    EXPECT_TRUE(messages.requests.empty());

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

    ASSERT_EQ(messages.requests.size(), 2u);
    EXPECT_TRUE(
        messages.requests[0].prompt.endsWith("(3021) was generated in IsKiwiSaverMemberType"));
    EXPECT_TRUE(
        messages.requests[1].prompt.endsWith("(3021) was generated in commoncode.payeinfo"));
    EXPECT_EQ(messages.requests[1].heading, "Error 3021 WageAccount");
}
