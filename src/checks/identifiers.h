#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <utility>

// Checks of the identifiers a user types: New Zealand IRD numbers and bank accounts,
// Australian BSBs, account numbers, ABNs and TFNs. Each check takes the text as typed
// and says whether it is one, and if not which rule it breaks, in a sentence the user
// can act on. The checks only advise: a window warns and lets the user keep the value,
// since a new number range or a branch the register does not list yet is still real.
namespace Identifiers {

enum class Status {
    Empty,       // nothing typed: never warned about
    Valid,       // display holds its normal form
    NotThisKind, // not shaped like one at all (letters, too few or too many digits)
    Invalid      // shaped like one, but a rule fails (check digit, branch, range)
};

struct Verdict
{
    Status status = Status::Empty;
    QString problem; // the rule that failed, a sentence without a final stop
    QString display; // the normal form when Valid, else empty
    bool warns() const { return status == Status::NotThisKind || status == Status::Invalid; }
};

// The four bank boxes as typed. In Australia bank and branch are the BSB's halves and
// the suffix is not used.
struct BankAccount
{
    QString bank, branch, account, suffix;
    bool isEmpty() const;
    // The boxes joined with dashes, as a key for "already warned about this one".
    QString joined() const;
};

// The New Zealand banks: each bank's check-digit algorithm and its branch ranges, read
// from data/nz-bank-branches.txt, which a maintainer updates when the payments register
// changes.
struct BankRegister
{
    struct Bank
    {
        QString algorithm; // "AB", "D", "E", "F", "G" or "X"
        QList<std::pair<int, int>> branches;
    };
    QHash<int, Bank> banks;
    QStringList badLines; // lines that could not be read, with their numbers

    static BankRegister parse(QStringView text);
    // The register compiled into the program.
    static const BankRegister &shipped();
};

Verdict checkIrdNumber(const QString &typed);
Verdict checkAbn(const QString &typed);
Verdict checkTfn(const QString &typed);
Verdict checkNzBankAccount(const BankAccount &typed,
                           const BankRegister &banks = BankRegister::shipped());
Verdict checkAuBankAccount(const BankAccount &typed);

// What each box holds in the country (by its dialling code: 64 New Zealand, 61
// Australia); Empty for a country whose identifiers are not checked.
// The address book's tax number box: the GST number (the IRD number) or the ABN.
Verdict checkBusinessTaxNumber(int country, const QString &typed);
// The employee's tax number in the pay details: the IRD number or the TFN.
Verdict checkEmployeeTaxNumber(int country, const QString &typed);
Verdict checkBankAccount(int country, const BankAccount &typed);

// The name the user knows the box's identifier by, for a message title ("IRD number").
QString businessTaxNumberName(int country);
// A tax number as two entries' numbers are compared: its digits without leading zeros,
// whatever dashes or blanks it was written with; empty for fewer than five digits.
QString comparableTaxNumber(const QString &text);
// A bank account as two entries' accounts are compared: bank, branch, account and suffix
// as numbers, padded to 2, 4, 8 and 4 digits ("01-902-68389-0" is "01-0902-0068389-000");
// empty without an account number.
QString comparableBankAccount(const BankAccount &account);
QString employeeTaxNumberName(int country);

} // namespace Identifiers
