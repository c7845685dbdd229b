#pragma once

#include "bookwriter.h"

#include <QDate>
#include <QString>

// What the demo and bulk books share: the payroll and cashbook reference rows,
// and the shape of an address entry and of an employee.
namespace SuiteFiles {

struct BulkOptions;

// Keys of the reference rows. They are written explicitly, so employees and
// entries can name them.
namespace Ref {
enum Occupation : int {
    FarmAssistant = 1,
    HerdManager,
    FarmManager,
    Shearer,
    ReliefMilker,
    TractorDriver,
    CalfRearer,
    Casual, // no unit of pay
};
enum TaxType : int {
    TaxM = 1,
    TaxME,
    TaxMSL,
    TaxSB,
    TaxS,
    TaxSH,
    TaxST,
    TaxSA,
    TaxWT,
    TaxCAE,
    TaxEDW,
    TaxNSW,
    TaxSTC,
};
enum PayInterval : int { Weekly = 1, Fortnightly, FourWeekly, Monthly };
enum EnrolType : int {
    AutoEnrolled = 1,
    OptedIn,
    ExistingMember,
    OptedOut,
    NotEligible,
    NotEnrolled, // the editor's default for an employee without a type
};
enum DeductName : int {
    KiwiSaver3 = 1,
    KiwiSaver4,
    KiwiSaver6,
    KiwiSaver8,
    KiwiSaver10,
    UnionFees,
    StudentLoan,
    ChildSupport,
    StaffPurchases,
    BoardAndLodging,
    HouseRent,
    HelpRepayment, // Australian
    CourtFines,
};
enum ContributionName : int { PleaseSelect = 1, Employer3, Employer4, Employer6, SuperGuarantee };
enum Bank : int { ChequeAccount = 1, FarmSavings, CreditCard, DirectCredit = 995, Deskbank };
enum Enterprise : int { Dairy = 1, Sheep, Beef, Cropping };
} // namespace Ref

// Codes of [Secondary Codes] used as headings.
namespace Heading {
constexpr qint64 MilkSolids = 101001;
constexpr qint64 CattleSales = 102001;
constexpr qint64 SheepSales = 102002;
constexpr qint64 Wool = 103001;
constexpr qint64 GrazingReceived = 104001;
constexpr qint64 AnimalHealth = 201001;
constexpr qint64 VetFees = 201002;
constexpr qint64 Breeding = 202001;
constexpr qint64 HerdTesting = 202002;
constexpr qint64 Fertiliser = 203001;
constexpr qint64 Feed = 204001;
constexpr qint64 GrazingPaid = 204002;
constexpr qint64 PlantRepairs = 205001;
constexpr qint64 Fencing = 205002;
constexpr qint64 Fuel = 206001;
constexpr qint64 VehicleRepairs = 206002;
constexpr qint64 Electricity = 207001;
constexpr qint64 Accountancy = 301001;
constexpr qint64 Telephone = 301002;
constexpr qint64 BankFees = 301003;
constexpr qint64 Rates = 302001;
constexpr qint64 Insurance = 303001;
constexpr qint64 Wages = 401001; // the suite's wage heading
constexpr qint64 CasualWages = 401002;
constexpr qint64 Shearing = 401004;
constexpr qint64 AccLevies = 402001;
constexpr qint64 PlantPurchases = 601001; // its account is not shown in the cashbook
constexpr qint64 GstPaid = 701001;
} // namespace Heading

bool isMemberType(int enrolType);
double deductPercentage(int deductName);
double contributionPercentage(int contributionName);
QString taxTypeName(int taxType);

// Text the way the module writes it into notes: d/MM/yyyy and $1,234.50.
QString logDate(const QDate &day);
QString logMoney(qint64 cents);

// Banks, headings, enterprises, PAYE settings; occupations, tax types, pay
// intervals, KiwiSaver types and the deduction and contribution names.
void writeReferenceTables(BookWriter &farm, BookWriter &wage);

struct AddressRow
{
    QString busName{};
    QString title{};
    QString initials{};
    QString firstName{};
    QString lastName{};
    QString address1{};
    QString address2{};
    QString address3{};
    QString poBox{};
    QString city{};
    QString state{};
    QString country = "New Zealand";
    QString postCode{};
    QString phone{};
    QString fax{};
    QString mobile{};
    QString email{};
    QString web{};
    QString bankAcName{};
    QString bankAccount{}; // "bank-branch-account[-suffix]", kept as four columns
    QString customerNumber{};
    bool business = false;
    bool wage = false;
    qint64 heading = 0; // 0 stores Null ("None")
    QString taxNumber{};
    QString notes{};
};

class AddressWriter
{
public:
    explicit AddressWriter(BookWriter &farm);
    qint64 add(const AddressRow &row);

private:
    RowInserter m_rows;
};

struct EmployeeRow
{
    qint64 addressId = 0;
    int occupation = Ref::FarmAssistant;
    int taxType = Ref::TaxM;
    int interval = Ref::Weekly;
    int bank = Ref::DirectCredit;
    int enterprise = Ref::Dairy;
    QString taxCode{};
    QString irdNumber{};
    qint64 rateCents = 0;
    qint64 salaryCents = 0; // 0 stores Null
    QDate born{};
    QDate hired{};
    QDate finished{};
    bool finishedZero = false; // a finish date cleared to the zero date
    int enrolType = 0;         // 0 stores Null (read as "Not enrolled")
    QDate kiwiSaverStart{};
    int kiwiSaverRate = 0; // DeductNames key of the employee's KiwiSaver row
    int employerRate = 0;  // ContributionNames key; 0 stores Null
    bool excludeIR348 = false;
};

// Employees and what hangs on them in the wage file.
class PayrollWriter
{
public:
    explicit PayrollWriter(BookWriter &wage);

    // The Employees row, and for members the KiwiSaver deduction and employer
    // contribution rows, as the editor's save leaves them.
    qint64 addEmployee(const EmployeeRow &row);
    void addDeduction(qint64 employeeId, int deductName, qint64 fixedCents, double rate);
    void addWage(qint64 employeeId, const QDate &day, qint64 grossCents,
                 const QString &description);

private:
    RowInserter m_employees;
    RowInserter m_deductions;
    RowInserter m_contributions;
    RowInserter m_wages;
};

class CashbookWriter
{
public:
    explicit CashbookWriter(BookWriter &farm);
    void add(qint64 addressId, const QDate &day, int bank, qint64 amountCents,
             const QString &description);

private:
    RowInserter m_rows;
};

void writeDemoBooks(BookWriter &farm, BookWriter &wage);
void writeBulkBooks(BookWriter &farm, BookWriter &wage, const BulkOptions &options);

} // namespace SuiteFiles
