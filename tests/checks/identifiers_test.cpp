#include "checks/identifiers.h"

#include <gtest/gtest.h>

using namespace Identifiers;

namespace {

struct Case
{
    const char *typed;
    Status status;
    const char *expected; // the display form when Valid, else a part of the problem
};

void expectVerdict(const Case &c, const Verdict &v)
{
    SCOPED_TRACE(c.typed);
    EXPECT_EQ(v.status, c.status) << v.problem.toStdString();
    if (c.status == Status::Valid) {
        EXPECT_EQ(v.display, QString::fromUtf8(c.expected));
    } else if (c.status != Status::Empty) {
        EXPECT_TRUE(v.problem.contains(QString::fromUtf8(c.expected))) << v.problem.toStdString();
    }
}

// Typed as one text: "bank-branch-account-suffix".
BankAccount account(const char *typed)
{
    const QStringList parts = QString::fromUtf8(typed).split(u'-');
    return {parts.value(0), parts.value(1), parts.value(2), parts.value(3)};
}

} // namespace

// Inland Revenue's published examples, the second weight set, the range and the shapes.
TEST(Identifiers, IrdNumbers)
{
    const Case cases[] = {
        {"49091850", Status::Valid, "049-091-850"},
        {"35901981", Status::Valid, "035-901-981"},
        {"49098576", Status::Valid, "049-098-576"},
        {"136410132", Status::Valid, "136-410-132"},
        {" 136-410 132 ", Status::Valid, "136-410-132"},
        {"10000191", Status::Valid, "010-000-191"}, // first weights give 10: the second set
        {"136410133", Status::Invalid, "IRD number check digit does not match"},
        {"9125568", Status::NotThisKind, "8 or 9 digits"},
        {"1364101320", Status::NotThisKind, "8 or 9 digits"},
        {"13641O132", Status::NotThisKind, "8 or 9 digits"},
        {"150000001", Status::Invalid, "outside the range"},
        {"   ", Status::Empty, ""},
    };
    for (const Case &c : cases)
        expectVerdict(c, checkIrdNumber(QString::fromUtf8(c.typed)));
}

TEST(Identifiers, AbnAndTfn)
{
    const Case abns[] = {
        {"51 824 753 556", Status::Valid, "51 824 753 556"},
        {"51824753556", Status::Valid, "51 824 753 556"},
        {"51 824 753 557", Status::Invalid, "ABN check digits do not match"},
        {"5182475355", Status::NotThisKind, "11 digits"},
    };
    for (const Case &c : abns)
        expectVerdict(c, checkAbn(QString::fromUtf8(c.typed)));
    const Case tfns[] = {
        {"123 456 782", Status::Valid, "123 456 782"},
        {"10000001", Status::Valid, "100 000 01"}, // an old 8-digit one
        {"123 456 789", Status::Invalid, "TFN check digit does not match"},
        {"12345", Status::NotThisKind, "9 digits"},
    };
    for (const Case &c : tfns)
        expectVerdict(c, checkTfn(QString::fromUtf8(c.typed)));
}

// The published accounts, each algorithm, the edges of the branch ranges and the shapes.
TEST(Identifiers, NzBankAccounts)
{
    const Case cases[] = {
        {"01-902-0068389-00", Status::Valid, "01-0902-0068389-000"},   // A
        {"08-6523-1954512-001", Status::Valid, "08-6523-1954512-001"}, // D
        {"26-2600-0320871-032", Status::Valid, "26-2600-0320871-032"}, // G
        {"04-2020-1000000-00", Status::Valid, "04-2020-1000000-000"},  // B
        {"03-7351-110000-00", Status::Valid, "03-7351-0110000-000"},   // a short base
        {"09-0000-0123409-00", Status::Valid, "09-0000-0123409-000"},  // E
        {"25-2500-0123406-00", Status::Valid, "25-2500-0123406-000"},  // F
        {"31-2800-1234567-00", Status::Valid, "31-2800-1234567-000"},  // X: any account
        {"01-0242-0100195-00", Status::Invalid, "check digits do not match for bank 01"},
        // Reported as a real account: warned, and the user may keep it.
        {"38-9019-0123400-00", Status::Invalid, "check digits do not match for bank 38"},
        {"01-0999-0123400-00", Status::Valid, "01-0999-0123400-000"},
        {"01-1000-0123400-00", Status::Invalid, "The branch 1000 is not one of bank 01's branches"},
        {"01-1100-0123408-00", Status::Valid, "01-1100-0123408-000"},
        {"38-9499-0123405-00", Status::Valid, "38-9499-0123405-000"},
        {"38-9500-0123403-00", Status::Invalid, "The branch 9500 is not one of bank 38's"},
        {"09-0001-1000000-00", Status::Invalid, "not one of bank 09's"},
        {"05-0001-1000000-00", Status::Invalid, "Bank 05 is not in the register"},
        {"01-0902-068389-", Status::NotThisKind, "The suffix is missing"},
        {"01-09O2-0068389-00", Status::NotThisKind, "The branch \"09O2\" is not a number"},
        {"01-0902-123456789-00", Status::NotThisKind, "more than 8 digits"},
        {"---", Status::Empty, ""},
    };
    for (const Case &c : cases)
        expectVerdict(c, checkNzBankAccount(account(c.typed)));
}

TEST(Identifiers, AuBankAccounts)
{
    const Case cases[] = {
        {"062-000-12345678-", Status::Valid, "062-000 12345678"},
        {"062-00-12345678-", Status::NotThisKind, "two groups of three digits"},
        {"06A-000-12345678-", Status::NotThisKind, "two groups of three digits"},
        {"062-000-1234-", Status::NotThisKind, "5 to 9 digits"},
        {"062-000-1234567890-", Status::NotThisKind, "5 to 9 digits"},
    };
    for (const Case &c : cases)
        expectVerdict(c, checkAuBankAccount(account(c.typed)));
}

// A maintainer's slip in the register is named with its line; the rest still reads.
TEST(Identifiers, BankRegisterData)
{
    EXPECT_TRUE(BankRegister::shipped().badLines.isEmpty())
        << BankRegister::shipped().badLines.join(u'\n').toStdString();
    EXPECT_EQ(BankRegister::shipped().banks.size(), 32);

    const BankRegister reg = BankRegister::parse(u"# comment\n"
                                                 u"01 AB 0001-0999 1100\n"
                                                 u"02 Q 0001-0999\n"
                                                 u"03 AB 0999-0001\n"
                                                 u"40 AB 4000-4099 # a new bank\n");
    EXPECT_EQ(reg.badLines, QStringList({"3: 02 Q 0001-0999", "4: 03 AB 0999-0001"}));
    EXPECT_EQ(reg.banks.keys().size(), 2);
    EXPECT_EQ(checkNzBankAccount(account("01-1100-0123408-00"), reg).status, Status::Valid);
    EXPECT_EQ(checkNzBankAccount(account("01-1101-0123408-00"), reg).status, Status::Invalid);
    // Not in the shipped register, so warned there; valid once a maintainer adds it.
    EXPECT_EQ(checkNzBankAccount(account("40-4000-1000000-00")).status, Status::Invalid);
    EXPECT_NE(checkNzBankAccount(account("40-4000-1000000-00"), reg).problem,
              QStringLiteral("Bank 40 is not in the register of New Zealand banks"));
}

// Which check each box gets in each country.
TEST(Identifiers, ChecksFollowTheCountry)
{
    EXPECT_EQ(checkBusinessTaxNumber(64, "49091850").display, "049-091-850");
    EXPECT_EQ(checkBusinessTaxNumber(61, "51824753556").display, "51 824 753 556");
    EXPECT_EQ(checkEmployeeTaxNumber(61, "123456782").display, "123 456 782");
    EXPECT_EQ(checkEmployeeTaxNumber(61, "49091850").status, Status::Invalid);
    EXPECT_EQ(checkBusinessTaxNumber(27, "anything").status, Status::Empty);
    EXPECT_EQ(checkBankAccount(61, account("062-000-12345678-")).status, Status::Valid);
    EXPECT_EQ(checkBankAccount(64, account("062-000-12345678-")).status, Status::NotThisKind);
}
