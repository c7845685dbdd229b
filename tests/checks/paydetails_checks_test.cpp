// The employee's IRD number (a TFN in Australia) in the pay details: warned when wrong,
// kept or gone back to as the user answers, put in its normal form when right.
#include "paydetails/editor_fixture.h"

TEST_F(EditorBooks, WrongTaxNumbersAreNamedAndKeptOrCorrected)
{
    PayDetailsEditor editor{PayDetailsEditor::Host::Dialog};
    editor.load(*farm, 37);
    const int ird = PayDetailsEditor::IRDnumber;

    EXPECT_TRUE(type(editor, ird, "136 410 132"));
    EXPECT_EQ(editor.text(ird), "136-410-132");
    EXPECT_TRUE(messages.requests.empty());

    messages.answers = {ResultNo};
    EXPECT_FALSE(type(editor, ird, "136410133")) << "No goes back to the box";
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].title, "Check the IRD number");
    EXPECT_TRUE(messages.requests[0].prompt.startsWith("IRD number check digit does not match"));
    EXPECT_EQ(editor.text(ird), "136410133");
    EXPECT_TRUE(editor.textFocusOut(ird)) << "the same value is not asked about twice";
    EXPECT_EQ(messages.requests.size(), 1u);

    messages.answers = {ResultYes};
    EXPECT_TRUE(type(editor, ird, "136410134")) << "Yes keeps it";
    EXPECT_EQ(messages.requests.size(), 2u);
    EXPECT_TRUE(editor.SaveWageForm());
    EXPECT_EQ(stored(37, "IRDnumber"), "136410134");

    suite.writeIni("[WINDOWS]\r\nCountry=61\r\n");
    messages.requests.clear();
    EXPECT_TRUE(type(editor, ird, "123456782"));
    EXPECT_EQ(editor.text(ird), "123 456 782");
    EXPECT_FALSE(type(editor, ird, "123456789"));
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].title, "Check the TFN");
}

// An IRD number another employee already has is asked about once, however written.
TEST_F(EditorBooks, AnIrdNumberOfAnotherEmployeeIsAskedAbout)
{
    suite.execWage("INSERT INTO Employees (EmployeeID, AddressID, IRDnumber) VALUES "
                   "(6, 38, '49-091-850')");
    PayDetailsEditor editor{PayDetailsEditor::Host::Dialog};
    editor.load(*farm, 37);
    const int ird = PayDetailsEditor::IRDnumber;
    messages.answers = {ResultNo};
    EXPECT_FALSE(type(editor, ird, "049 091 850")) << "No goes back to the box";
    ASSERT_EQ(messages.requests.size(), 1u);
    EXPECT_EQ(messages.requests[0].title, "Already on Another Entry");
    EXPECT_TRUE(messages.requests[0].prompt.contains("New Hand"));
    EXPECT_TRUE(editor.textFocusOut(ird));
    EXPECT_TRUE(type(editor, ird, "35901981"));
    EXPECT_EQ(messages.requests.size(), 1u);
}
