#include "checks/identifiers.h"

#include <array>
#include <optional>
#include <QFile>

namespace Identifiers {

namespace {

constexpr int NewZealand = 64;
constexpr int Australia = 61;

Verdict valid(const QString &display)
{
    return {Status::Valid, QString(), display};
}

Verdict notThisKind(const QString &problem)
{
    return {Status::NotThisKind, problem, QString()};
}

Verdict invalid(const QString &problem)
{
    return {Status::Invalid, problem, QString()};
}

// The digits of a number typed with the usual separators (blanks and dashes); nothing
// when anything else is in it.
std::optional<QString> digitsOf(const QString &typed)
{
    QString digits;
    for (const QChar c : typed) {
        if (c.isDigit() && c.unicode() < 128)
            digits += c;
        else if (c != u' ' && c != u'-')
            return std::nullopt;
    }
    return digits;
}

int digitAt(const QString &digits, qsizetype i)
{
    return digits.at(i).unicode() - u'0';
}

// The digits in groups of `size` from the left, joined by sep.
QString grouped(const QString &digits, const std::initializer_list<int> &sizes, QChar sep)
{
    QString out;
    qsizetype at = 0;
    for (const int size : sizes) {
        if (!out.isEmpty())
            out += sep;
        out += digits.mid(at, size);
        at += size;
    }
    return out;
}

// Inland Revenue's check digit of the first eight digits with one weight set; 10 when
// that set cannot give one.
int irdCheck(const QString &eight, const std::array<int, 8> &weights)
{
    int sum = 0;
    for (int i = 0; i < 8; ++i)
        sum += digitAt(eight, i) * weights[std::size_t(i)];
    const int remainder = sum % 11;
    return remainder == 0 ? 0 : 11 - remainder;
}

// A box's digits fitted to width: left-padded with zeros; extra leading zeros are dropped.
std::optional<QString> fitted(const QString &digits, int width)
{
    qsizetype extra = digits.size() - width;
    for (qsizetype i = 0; i < extra; ++i) {
        if (digits.at(i) != u'0')
            return std::nullopt;
    }
    return extra > 0 ? digits.mid(extra) : digits.rightJustified(width, u'0');
}

// The published weights of the 18 digits (bank 2, branch 4, base 8, suffix 4) and the
// modulus of each algorithm.
struct Algorithm
{
    QChar name;
    std::array<int, 18> weights;
    int modulus;
    bool digitSums; // each product first reduced to one digit (E and G)
};

constexpr std::array<Algorithm, 7> kAlgorithms = {{
    {u'A', {0, 0, 6, 3, 7, 9, 0, 0, 10, 5, 8, 4, 2, 1, 0, 0, 0, 0}, 11, false},
    {u'B', {0, 0, 0, 0, 0, 0, 0, 0, 10, 5, 8, 4, 2, 1, 0, 0, 0, 0}, 11, false},
    {u'C', {3, 7, 0, 0, 0, 0, 9, 1, 10, 5, 3, 4, 2, 1, 0, 0, 0, 0}, 11, false},
    {u'D', {0, 0, 0, 0, 0, 0, 0, 7, 6, 5, 4, 3, 2, 1, 0, 0, 0, 0}, 11, false},
    {u'E', {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 4, 3, 2, 0, 0, 0, 1}, 11, true},
    {u'F', {0, 0, 0, 0, 0, 0, 0, 1, 7, 3, 1, 7, 3, 1, 0, 0, 0, 0}, 10, false},
    {u'G', {0, 0, 0, 0, 0, 0, 0, 1, 3, 7, 1, 3, 7, 1, 0, 3, 7, 1}, 10, true},
}};

int reducedToOneDigit(int n)
{
    while (n > 9)
        n = n / 10 + n % 10;
    return n;
}

// nullopt: the register names an algorithm this program does not know.
std::optional<bool> passesAlgorithm(QChar name, const QString &eighteen)
{
    if (name == u'X')
        return true;
    for (const Algorithm &a : kAlgorithms) {
        if (a.name != name)
            continue;
        int sum = 0;
        for (int i = 0; i < 18; ++i) {
            const int product = digitAt(eighteen, i) * a.weights[std::size_t(i)];
            sum += a.digitSums ? reducedToOneDigit(product) : product;
        }
        return sum % a.modulus == 0;
    }
    return std::nullopt;
}

// The part of a bank account typed in one box: its digits, or a problem.
struct Part
{
    QString digits;
    QString problem;
};

Part partOf(const QString &typed, const char *name)
{
    const QString t = typed.trimmed();
    const QString label = QString::fromLatin1(name);
    if (t.isEmpty())
        return {QString(), QStringLiteral("The %1 is missing").arg(label)};
    for (const QChar c : t) {
        if (!c.isDigit() || c.unicode() >= 128)
            return {QString(), QStringLiteral("The %1 \"%2\" is not a number").arg(label, t)};
    }
    return {t, QString()};
}

} // namespace

bool BankAccount::isEmpty() const
{
    return bank.trimmed().isEmpty() && branch.trimmed().isEmpty() && account.trimmed().isEmpty() &&
           suffix.trimmed().isEmpty();
}

QString BankAccount::joined() const
{
    return bank + u'-' + branch + u'-' + account + u'-' + suffix;
}

BankRegister BankRegister::parse(QStringView text)
{
    BankRegister reg;
    int lineNo = 0;
    for (const QStringView raw : text.split(u'\n')) {
        ++lineNo;
        const QStringView line = raw.left(raw.indexOf(u'#')).trimmed();
        if (line.isEmpty())
            continue;
        const auto words = line.split(u' ', Qt::SkipEmptyParts);
        bool ok = words.size() >= 3;
        const int bank = ok ? words[0].toInt(&ok) : 0;
        Bank entry;
        if (ok) {
            entry.algorithm = words[1].toString();
            ok = entry.algorithm == u"AB" || entry.algorithm == u"X" ||
                 (entry.algorithm.size() == 1 &&
                  passesAlgorithm(entry.algorithm.at(0), QString(18, u'0')));
        }
        for (qsizetype i = 2; ok && i < words.size(); ++i) {
            const auto ends = words[i].split(u'-');
            bool okFirst = false, okLast = true;
            const int first = ends.value(0).toInt(&okFirst);
            const int last = ends.size() > 1 ? ends.value(1).toInt(&okLast) : first;
            ok = okFirst && okLast && ends.size() <= 2 && first <= last && last <= 9999;
            entry.branches.append({first, last});
        }
        if (ok && bank >= 0 && bank <= 99)
            reg.banks.insert(bank, entry);
        else
            reg.badLines << QStringLiteral("%1: %2").arg(lineNo).arg(line);
    }
    return reg;
}

const BankRegister &BankRegister::shipped()
{
    static const BankRegister reg = [] {
        QFile file(QStringLiteral(":/checks/nz-bank-branches.txt"));
        // Without the file every bank is unknown: each account is warned about, none refused.
        if (!file.open(QIODevice::ReadOnly))
            return BankRegister();
        return parse(QString::fromUtf8(file.readAll()));
    }();
    return reg;
}

Verdict checkIrdNumber(const QString &typed)
{
    if (typed.trimmed().isEmpty())
        return {};
    const auto digits = digitsOf(typed);
    if (!digits || digits->size() < 8 || digits->size() > 9)
        return notThisKind(QStringLiteral("An IRD number has 8 or 9 digits"));
    const QString nine = digits->rightJustified(9, u'0');
    const qint64 value = nine.toLongLong();
    if (value < 10'000'000 || value > 150'000'000)
        return invalid(QStringLiteral(
            "IRD number is outside the range Inland Revenue issues (10-000-000 to 150-000-000)"));
    const QString eight = nine.left(8);
    int check = irdCheck(eight, {3, 2, 7, 6, 5, 4, 3, 2});
    if (check == 10)
        check = irdCheck(eight, {7, 4, 3, 2, 5, 2, 7, 6});
    if (check == 10 || check != digitAt(nine, 8))
        return invalid(QStringLiteral("IRD number check digit does not match"));
    return valid(grouped(nine, {3, 3, 3}, u'-'));
}

Verdict checkAbn(const QString &typed)
{
    if (typed.trimmed().isEmpty())
        return {};
    const auto digits = digitsOf(typed);
    if (!digits || digits->size() != 11)
        return notThisKind(QStringLiteral("An ABN has 11 digits"));
    static constexpr std::array<int, 11> weights = {10, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19};
    int sum = 0;
    for (int i = 0; i < 11; ++i)
        sum += (digitAt(*digits, i) - (i == 0 ? 1 : 0)) * weights[std::size_t(i)];
    if (sum % 89 != 0)
        return invalid(QStringLiteral("ABN check digits do not match"));
    return valid(grouped(*digits, {2, 3, 3, 3}, u' '));
}

Verdict checkTfn(const QString &typed)
{
    if (typed.trimmed().isEmpty())
        return {};
    const auto digits = digitsOf(typed);
    if (!digits || digits->size() < 8 || digits->size() > 9)
        return notThisKind(QStringLiteral("A TFN has 9 digits (8 on some older records)"));
    static constexpr std::array<int, 9> nineWeights = {1, 4, 3, 7, 5, 8, 6, 9, 10};
    static constexpr std::array<int, 8> eightWeights = {10, 7, 8, 4, 6, 3, 5, 1};
    int sum = 0;
    for (qsizetype i = 0; i < digits->size(); ++i)
        sum += digitAt(*digits, i) *
               (digits->size() == 9 ? nineWeights[std::size_t(i)] : eightWeights[std::size_t(i)]);
    if (sum % 11 != 0)
        return invalid(QStringLiteral("TFN check digit does not match"));
    return valid(digits->size() == 9 ? grouped(*digits, {3, 3, 3}, u' ')
                                     : grouped(*digits, {3, 3, 2}, u' '));
}

Verdict checkNzBankAccount(const BankAccount &typed, const BankRegister &banks)
{
    if (typed.isEmpty())
        return {};
    const Part parts[] = {partOf(typed.bank, "bank number"), partOf(typed.branch, "branch"),
                          partOf(typed.account, "account number"), partOf(typed.suffix, "suffix")};
    for (const Part &p : parts) {
        if (!p.problem.isEmpty())
            return notThisKind(p.problem);
    }
    const auto bank = fitted(parts[0].digits, 2);
    const auto branch = fitted(parts[1].digits, 4);
    const auto base = fitted(parts[2].digits, 8);
    const auto suffix = fitted(parts[3].digits, 4);
    if (!bank)
        return notThisKind(QStringLiteral("A New Zealand bank number has 2 digits"));
    if (!branch)
        return notThisKind(QStringLiteral("A New Zealand branch number has 4 digits"));
    if (!base)
        return notThisKind(QStringLiteral("The account number has more than 8 digits"));
    if (!suffix)
        return notThisKind(QStringLiteral("The suffix has more than 4 digits"));

    const auto found = banks.banks.constFind(bank->toInt());
    if (found == banks.banks.cend())
        return invalid(
            QStringLiteral("Bank %1 is not in the register of New Zealand banks").arg(*bank));
    const int branchNo = branch->toInt();
    const bool inRange =
        std::any_of(found->branches.cbegin(), found->branches.cend(),
                    [&](const auto &r) { return branchNo >= r.first && branchNo <= r.second; });
    if (!inRange)
        return invalid(
            QStringLiteral("The branch %1 is not one of bank %2's branches").arg(*branch, *bank));

    QChar algorithm = found->algorithm.at(0);
    if (found->algorithm == u"AB" && base->toInt() >= 990000)
        algorithm = u'B';
    const QString eighteen = *bank + *branch + *base + *suffix;
    if (passesAlgorithm(algorithm, eighteen) != true)
        return invalid(QStringLiteral("The account number's check digits do not match for bank %1")
                           .arg(*bank));
    // Shown as the bank prints it: the base with 7 digits unless it needs 8, the suffix 3.
    const QString shownBase = base->startsWith(u'0') ? base->mid(1) : *base;
    const QString shownSuffix = suffix->startsWith(u'0') ? suffix->mid(1) : *suffix;
    return valid(*bank + u'-' + *branch + u'-' + shownBase + u'-' + shownSuffix);
}

Verdict checkAuBankAccount(const BankAccount &typed)
{
    if (typed.isEmpty())
        return {};
    const QString first = typed.bank.trimmed();
    const QString second = typed.branch.trimmed();
    const auto isDigits = [](const QString &s, qsizetype from, qsizetype to) {
        return s.size() >= from && s.size() <= to && std::all_of(s.cbegin(), s.cend(), [](QChar c) {
                   return c.isDigit() && c.unicode() < 128;
               });
    };
    if (!isDigits(first, 3, 3) || !isDigits(second, 3, 3))
        return notThisKind(QStringLiteral("A BSB is two groups of three digits, such as 062-000"));
    const QString account = typed.account.trimmed();
    if (!isDigits(account, 5, 9))
        return notThisKind(QStringLiteral("An Australian account number has 5 to 9 digits"));
    return valid(first + u'-' + second + u' ' + account);
}

Verdict checkBusinessTaxNumber(int country, const QString &typed)
{
    if (country == NewZealand)
        return checkIrdNumber(typed);
    if (country == Australia)
        return checkAbn(typed);
    return {};
}

Verdict checkEmployeeTaxNumber(int country, const QString &typed)
{
    if (country == NewZealand)
        return checkIrdNumber(typed);
    if (country == Australia)
        return checkTfn(typed);
    return {};
}

Verdict checkBankAccount(int country, const BankAccount &typed)
{
    if (country == NewZealand)
        return checkNzBankAccount(typed);
    if (country == Australia)
        return checkAuBankAccount(typed);
    return {};
}

QString businessTaxNumberName(int country)
{
    return country == Australia ? QStringLiteral("ABN") : QStringLiteral("GST number");
}

QString employeeTaxNumberName(int country)
{
    return country == Australia ? QStringLiteral("TFN") : QStringLiteral("IRD number");
}

QString comparableTaxNumber(const QString &text)
{
    QString digits;
    for (const QChar c : text)
        if (c >= u'0' && c <= u'9' && !(digits.isEmpty() && c == u'0'))
            digits += c;
    return digits.size() >= 5 ? digits : QString();
}

QString comparableBankAccount(const BankAccount &account)
{
    const auto padded = [](const QString &part, int width) {
        QString digits;
        for (const QChar c : part)
            if (c >= u'0' && c <= u'9')
                digits += c;
        return digits.rightJustified(width, u'0');
    };
    if (padded(account.account, 0).isEmpty())
        return {};
    return padded(account.bank, 2) + padded(account.branch, 4) + padded(account.account, 8) +
           padded(account.suffix, 4);
}

} // namespace Identifiers
