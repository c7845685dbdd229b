// The address window warns about a wrong tax number or bank account when the user leaves
// it, and lets the user keep it or go back; it never stops the save.
#include "addressbook/booklogic_fixture.h"
#include "support/qtprinters.h"

namespace {

void typeBank(Book &logic, const char *bank, const char *branch, const char *account,
              const char *suffix)
{
    const std::pair<int, const char *> boxes[] = {{Book::BusBankAcBank, bank},
                                                  {Book::BusBankAcBranch, branch},
                                                  {Book::BusBankAcNo, account},
                                                  {Book::BusBankAcSuffix, suffix}};
    for (const auto &[box, text] : boxes) {
        logic.focusInField(box);
        logic.editField(box, text);
    }
}

} // namespace

TEST_F(BookLogicTest, WrongIdentifiersAreNamedOnLeavingAndKeptOrCorrected)
{
    addAddress(1, "Acme");
    start(0, 1);

    // A valid IRD number (the GST number) takes its dashes; nothing is asked.
    logic.focusInField(Book::TaxNumber);
    logic.editField(Book::TaxNumber, "49091850");
    EXPECT_TRUE(logic.focusOutField(Book::TaxNumber, Book::CustomerNumber));
    EXPECT_EQ(logic.field(Book::TaxNumber), "049-091-850");
    EXPECT_TRUE(messages.requests.empty());

    // A wrong one: No goes back with the text as typed; leaving it again unchanged asks
    // nothing more.
    logic.editField(Book::TaxNumber, "136410133");
    messages.answers = {ResultNo};
    EXPECT_FALSE(logic.focusOutField(Book::TaxNumber, Book::CustomerNumber));
    const MessageRequest asked = onlyMessage();
    EXPECT_EQ(asked.title, "Check the GST number");
    EXPECT_EQ(asked.buttons, ButtonsYesNo);
    EXPECT_TRUE(asked.prompt.startsWith("IRD number check digit does not match."));
    EXPECT_EQ(logic.field(Book::TaxNumber), "136410133");
    EXPECT_TRUE(logic.focusOutField(Book::TaxNumber, Book::CustomerNumber));
    EXPECT_TRUE(messages.requests.empty());

    // The bank boxes are checked as one account when the group is left, not between them.
    typeBank(logic, "38", "9019", "0123400", "00");
    for (int box = Book::BusBankAcBank; box < Book::BusBankAcSuffix; ++box)
        EXPECT_TRUE(logic.focusOutField(box, box + 1));
    EXPECT_TRUE(messages.requests.empty());
    messages.answers = {ResultYes};
    EXPECT_TRUE(logic.focusOutField(Book::BusBankAcSuffix, Book::CustomerNumber));
    EXPECT_EQ(onlyMessage().prompt.left(58),
              "The account number's check digits do not match for bank 38");
    // A save by the window's own leave (no box entered next) asks nothing again.
    EXPECT_TRUE(logic.focusOutField(Book::BusBankAcSuffix, Book::BusBankAcSuffix));
    EXPECT_TRUE(messages.requests.empty());

    // Kept values are saved as typed.
    EXPECT_TRUE(logic.SaveHeading());
    EXPECT_EQ(stored("TaxNumber"), "136410133");
    EXPECT_EQ(stored("BusBankAcBranch"), "9019");
    EXPECT_TRUE(messages.requests.empty());

    // Values read from the books are not questioned when the user merely passes through.
    start(0, 1);
    logic.focusInField(Book::TaxNumber);
    EXPECT_TRUE(logic.focusOutField(Book::TaxNumber, Book::CustomerNumber));
    EXPECT_TRUE(messages.requests.empty());
}

// Each country's tax number and bank boxes get its own checks; elsewhere none.
TEST_F(BookLogicTest, IdentifierChecksFollowTheCountry)
{
    const struct
    {
        const char *ini, *tax, *bank[4], *taxProblem, *bankProblem;
    } cases[] = {
        {"[WINDOWS]\r\nCountry=61\r\n",
         "51 824 753 557",
         {"062", "00", "12345678", ""},
         "ABN check digits do not match",
         "A BSB is two groups of three digits, such as 062-000"},
        {"[WINDOWS]\r\nCountry=61\r\n",
         "51824753556",
         {"062", "000", "1234", ""},
         nullptr,
         "An Australian account number has 5 to 9 digits"},
        {"[WINDOWS]\r\nCountry=64\r\n",
         "9125568",
         {"01", "1000", "0123400", "00"},
         "An IRD number has 8 or 9 digits",
         "The branch 1000 is not one of bank 01's branches"},
        {"[WINDOWS]\r\nCountry=27\r\n", "anything", {"1", "2", "3", "4"}, nullptr, nullptr},
    };
    addAddress(1, "Acme");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.ini);
        suite.writeIni(c.ini);
        start(0, 1);
        logic.focusInField(Book::TaxNumber);
        logic.editField(Book::TaxNumber, c.tax);
        logic.focusOutField(Book::TaxNumber, Book::BusBankAcBank);
        typeBank(logic, c.bank[0], c.bank[1], c.bank[2], c.bank[3]);
        logic.focusOutField(Book::BusBankAcNo, Book::CustomerNumber);
        QStringList problems;
        for (const MessageRequest &r : messages.requests)
            problems << r.prompt.section(u'.', 0, 0);
        messages.requests.clear();
        QStringList expected;
        for (const char *p : {c.taxProblem, c.bankProblem}) {
            if (p)
                expected << p;
        }
        EXPECT_EQ(problems.join(u'|'), expected.join(u'|'));
        logic.unload();
    }
}

// A tax number or bank account already on another entry is asked about on leaving,
// however it was written there: Yes keeps it, No goes back to the box.
TEST_F(BookLogicTest, AnIdentifierOnAnotherEntryIsAskedAbout)
{
    addAddress(1, "Acme");
    addAddress(2, "Acme Farms Ltd");
    suite.execFarm("UPDATE Addresses SET TaxNumber = '049-091-850', BusBankAcbank = '1', "
                   "BusBankAcBranch = '902', BusBankAcNo = '68389', BusBankAcSuffix = '0' "
                   "WHERE AddressID = 2");
    start(0, 1);
    const struct
    {
        int leaving;
        qint16 answer;
    } cases[] = {{Book::TaxNumber, ResultNo}, {Book::BusBankAcSuffix, ResultYes}};
    logic.focusInField(Book::TaxNumber);
    logic.editField(Book::TaxNumber, "49 091 850");
    typeBank(logic, "01", "0902", "0068389", "000");
    for (const auto &c : cases) {
        messages.answers = {c.answer};
        EXPECT_EQ(logic.focusOutField(c.leaving, Book::CustomerNumber), c.answer == ResultYes);
        const MessageRequest asked = onlyMessage();
        EXPECT_EQ(asked.title, "Already on Another Entry");
        EXPECT_TRUE(asked.prompt.contains("Acme Farms Ltd")) << asked.prompt.toStdString();
    }
    // A different number asks nothing.
    logic.editField(Book::TaxNumber, "35901981");
    EXPECT_TRUE(logic.focusOutField(Book::TaxNumber, Book::CustomerNumber));
    EXPECT_TRUE(messages.requests.empty());
}
