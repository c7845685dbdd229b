#include "suitedata.h"

#include "core/cverror.h"

#include <QLocale>

#include <cmath>

namespace SuiteFiles {

namespace {

struct NamedKey
{
    int key;
    const char *name;
};

struct Occupation
{
    int key;
    const char *name;
    const char *unit; // nullptr stores Null
};

// Farm Assistant comes first: the editor offers the first stored row to a
// new employee.
const Occupation kOccupations[] = {
    {Ref::FarmAssistant, "Farm Assistant", "Hour"}, {Ref::HerdManager, "Herd Manager", "Hour"},
    {Ref::FarmManager, "Farm Manager", "Hour"},     {Ref::Shearer, "Shearer", "Head"},
    {Ref::ReliefMilker, "Relief Milker", "Hour"},   {Ref::TractorDriver, "Tractor Driver", "Hour"},
    {Ref::CalfRearer, "Calf Rearer", "Day"},        {Ref::Casual, "Casual", nullptr},
};

struct TaxType
{
    int key;
    const char *name;
    int order;
    int country; // dialling code; 0 for every country
};

// The all-country rows sort last so that each country's own main code is
// its default.
const TaxType kTaxTypes[] = {
    {Ref::TaxM, "M", 1, 64},
    {Ref::TaxME, "ME", 2, 64},
    {Ref::TaxMSL, "M SL", 3, 64},
    {Ref::TaxSB, "SB", 4, 64},
    {Ref::TaxS, "S", 5, 64},
    {Ref::TaxSH, "SH", 6, 64},
    {Ref::TaxST, "ST", 7, 64},
    {Ref::TaxSA, "SA", 8, 64},
    {Ref::TaxWT, "WT", 9, 64},
    {Ref::TaxCAE, "CAE", 10, 64},
    {Ref::TaxEDW, "EDW", 11, 64},
    {Ref::TaxNSW, "NSW", 12, 64},
    {Ref::TaxSTC, "STC", 13, 64},
    {14, "Tax-free threshold claimed", 1, 61},
    {15, "No tax-free threshold", 2, 61},
    {16, "Foreign resident", 3, 61},
    {17, "Working holiday maker", 4, 61},
    {18, "No TFN quoted", 5, 61},
    {19, "No tax deducted", 90, 0},
    {20, "Manual tax", 91, 0},
};

struct Interval
{
    int key;
    const char *name;
    int days;
    double paysPerYear;
    int order;
};

const Interval kIntervals[] = {
    {Ref::Weekly, "Weekly", 7, 52.14, 1},
    {Ref::Fortnightly, "Fortnightly", 14, 26.07, 2},
    {Ref::FourWeekly, "Four-weekly", 28, 13.04, 3},
    {Ref::Monthly, "Monthly", 30, 12, 4},
};

struct EnrolType
{
    int key;
    const char *name;
    bool member;
};

const EnrolType kEnrolTypes[] = {
    {Ref::AutoEnrolled, "Automatic enrolment", true}, {Ref::OptedIn, "Opted in", true},
    {Ref::ExistingMember, "Existing member", true},   {Ref::OptedOut, "Opted out", false},
    {Ref::NotEligible, "Not eligible", false},        {Ref::NotEnrolled, "Not enrolled", false},
};

struct RateName
{
    int key;
    const char *name;
    const char *taxName; // nullptr stores Null: an ordinary deduction
    int country;
    double percentage;
};

const RateName kDeductNames[] = {
    {Ref::KiwiSaver3, "KiwiSaver 3%", "KiwiSaver", 64, 3},
    {Ref::KiwiSaver4, "KiwiSaver 4%", "KiwiSaver", 64, 4},
    {Ref::KiwiSaver6, "KiwiSaver 6%", "KiwiSaver", 64, 6},
    {Ref::KiwiSaver8, "KiwiSaver 8%", "KiwiSaver", 64, 8},
    {Ref::KiwiSaver10, "KiwiSaver 10%", "KiwiSaver", 64, 10},
    {Ref::UnionFees, "Union fees", nullptr, 0, 0},
    {Ref::StudentLoan, "Student loan", nullptr, 64, 12},
    {Ref::ChildSupport, "Child support", nullptr, 64, 0},
    {Ref::StaffPurchases, "Staff purchases", nullptr, 0, 0},
    {Ref::BoardAndLodging, "Board and lodging", nullptr, 0, 0},
    {Ref::HouseRent, "House rent", nullptr, 0, 0},
    {Ref::HelpRepayment, "HELP repayment", nullptr, 61, 0},
    {Ref::CourtFines, "Court fines", nullptr, 64, 0},
};

// "<Please Select>" sorts first in the rate list and carries no rate.
const RateName kContributionNames[] = {
    {Ref::PleaseSelect, "<Please Select>", "KiwiSaver", 0, 0},
    {Ref::Employer3, "Employer 3%", "KiwiSaver", 64, 3},
    {Ref::Employer4, "Employer 4%", "KiwiSaver", 64, 4},
    {Ref::Employer6, "Employer 6%", "KiwiSaver", 64, 6},
    {Ref::SuperGuarantee, "Superannuation guarantee 11.5%", "Super", 61, 11.5},
};

struct Bank
{
    int key;
    const char *name;
    int accountType;
};

const Bank kBanks[] = {
    {Ref::ChequeAccount, "Cheque Account", 0}, {Ref::FarmSavings, "Farm Savings", 0},
    {Ref::CreditCard, "Business Visa", 0},     {Ref::DirectCredit, "ANZ Direct Credit", 1},
    {Ref::Deskbank, "Westpac Deskbank", 1},
};

struct Account
{
    int code;
    const char *name;
    bool inCashbook;
};

const Account kAccounts[] = {
    {101, "Milk Sales", true},
    {102, "Livestock Sales", true},
    {103, "Wool Sales", true},
    {104, "Other Farm Income", true},
    {201, "Animal Health", true},
    {202, "Breeding & Herd Testing", true},
    {203, "Fertiliser & Lime", true},
    {204, "Feed & Grazing", true},
    {205, "Repairs & Maintenance", true},
    {206, "Vehicle Expenses", true},
    {207, "Electricity", true},
    {301, "Administration", true},
    {302, "Rates", true},
    {303, "Insurance", true},
    {401, "Wages", true},
    {402, "ACC Levies", true},
    {501, "Depreciation", false},
    {601, "Plant & Machinery", false},
    {701, "GST", false},
};

struct Secondary
{
    qint64 code;
    const char *name;
};

const Secondary kSecondaries[] = {
    {Heading::MilkSolids, "Milk Solids"},
    {101002, "Co-op Dividend"},
    {Heading::CattleSales, "Cattle Sales"},
    {Heading::SheepSales, "Sheep Sales"},
    {Heading::Wool, "Wool"},
    {Heading::GrazingReceived, "Grazing Received"},
    {104002, "Hay Sales"},
    {Heading::AnimalHealth, "Animal Health"},
    {Heading::VetFees, "Vet Fees"},
    {Heading::Breeding, "Artificial Breeding"},
    {Heading::HerdTesting, "Herd Testing"},
    {Heading::Fertiliser, "Fertiliser"},
    {203002, "Lime"},
    {Heading::Feed, "Supplementary Feed"},
    {Heading::GrazingPaid, "Grazing Paid"},
    {Heading::PlantRepairs, "Repairs - Plant"},
    {Heading::Fencing, "Fencing"},
    {205003, "Repairs - Buildings"},
    {Heading::Fuel, "Fuel"},
    {Heading::VehicleRepairs, "Vehicle Repairs"},
    {Heading::Electricity, "Electricity"},
    {Heading::Accountancy, "Accountancy"},
    {Heading::Telephone, "Telephone & Internet"},
    {Heading::BankFees, "Bank Fees"},
    {Heading::Rates, "Rates"},
    {Heading::Insurance, "Insurance"},
    {Heading::Wages, "Wages"},
    {Heading::CasualWages, "Casual Wages"},
    {401003, "Holiday Pay"},
    {Heading::Shearing, "Shearing"},
    {Heading::AccLevies, "ACC Levies"},
    {501001, "Depreciation"},
    {Heading::PlantPurchases, "Plant Purchases"},
    {Heading::GstPaid, "GST Paid"},
    {701002, "GST Refunds"},
};

const NamedKey kEnterprises[] = {
    {Ref::Dairy, "Dairy"},       {Ref::Sheep, "Sheep"}, {Ref::Beef, "Beef"},
    {Ref::Cropping, "Cropping"}, {5, "Forestry"},
};

template <typename Row, std::size_t N> const Row &find(const Row (&rows)[N], int key)
{
    for (const Row &r : rows) {
        if (r.key == key)
            return r;
    }
    throw CvError(CvError::SubscriptOutOfRange, "cvsuite", QString("no reference row %1").arg(key));
}

QVariant nullableText(const char *text)
{
    return text ? QVariant(QString(text)) : QVariant();
}

} // namespace

bool isMemberType(int enrolType)
{
    return enrolType != 0 && find(kEnrolTypes, enrolType).member;
}
double deductPercentage(int deductName)
{
    return find(kDeductNames, deductName).percentage;
}
double contributionPercentage(int contributionName)
{
    return find(kContributionNames, contributionName).percentage;
}
QString taxTypeName(int taxType)
{
    return find(kTaxTypes, taxType).name;
}

QString logDate(const QDate &day)
{
    return day.toString("d/MM/yyyy");
}

QString logMoney(qint64 cents)
{
    const QLocale nz(QLocale::English, QLocale::NewZealand);
    return QString("$%1.%2").arg(nz.toString(cents / 100)).arg(cents % 100, 2, 10, QChar('0'));
}

void writeReferenceTables(BookWriter &farm, BookWriter &wage)
{
    {
        RowInserter banks(farm, "Banks", {"BanksID", "Name", "AccountType"});
        for (const Bank &b : kBanks)
            banks.insert({b.key, QString(b.name), b.accountType});

        RowInserter accounts(farm, "Account Codes",
                             {"Account Code", "Account Name", "Show In CashBk"});
        for (const Account &a : kAccounts)
            accounts.insert({a.code, QString(a.name), Store::yesNo(a.inCashbook)});

        RowInserter secondaries(farm, "Secondary Codes",
                                {"Secondary Codes ID", "Main Code ID", "Cached Name"});
        for (const Secondary &s : kSecondaries)
            secondaries.insert({s.code, s.code / 1000, QString(s.name)});

        RowInserter enterprises(farm, "tbl No Enterprises", {"Code", "Name"});
        for (const NamedKey &e : kEnterprises)
            enterprises.insert({e.key, QString(e.name)});

        RowInserter paye(farm, "PayeInfo", {"WageAccount", "EmployerIRDNumber", "EmployerName"});
        paye.insert({Heading::Wages, QString("113-402-587"), QString("Corvane Demo Farm Ltd")});
    }

    RowInserter occupations(wage, "EmployeeAwardType",
                            {"EmployeeTypeID", "EmployeeType", "Unitofpay"});
    for (const Occupation &o : kOccupations)
        occupations.insert({o.key, QString(o.name), nullableText(o.unit)});

    RowInserter taxTypes(wage, "TaxTypes", {"TaxTypeID", "TaxName", "Order", "CountryPhone"});
    for (const TaxType &t : kTaxTypes)
        taxTypes.insert({t.key, QString(t.name), t.order, t.country});

    RowInserter intervals(
        wage, "PayInterval",
        {"PayIntervalID", "IntervalName", "NumberOfDays", "PaysPerYear", "Order"});
    for (const Interval &i : kIntervals)
        intervals.insert({i.key, QString(i.name), i.days, i.paysPerYear, i.order});

    RowInserter enrolTypes(wage, "KiwiSaverEnrollType",
                           {"KSEnrollTypeID", "KSEnrollType", "KSMember"});
    for (const EnrolType &e : kEnrolTypes)
        enrolTypes.insert({e.key, QString(e.name), Store::yesNo(e.member)});

    RowInserter deductNames(
        wage, "DeductNames",
        {"DeductNameID", "DeductionName", "TaxName", "CountryPhone", "Percentage"});
    for (const RateName &d : kDeductNames)
        deductNames.insert(
            {d.key, QString(d.name), nullableText(d.taxName), d.country, d.percentage});

    RowInserter contributionNames(
        wage, "ContributionNames",
        {"ContributionNameID", "ContributionName", "TaxName", "CountryPhone", "Percentage"});
    for (const RateName &c : kContributionNames)
        contributionNames.insert(
            {c.key, QString(c.name), nullableText(c.taxName), c.country, c.percentage});
}

AddressWriter::AddressWriter(BookWriter &farm)
    : m_rows(farm, "Addresses",
             {"BusName",
              "ContactTitle",
              "ContactInitials",
              "contactFirstName",
              "ContactLastName",
              "BusAddress1",
              "BusAddress2",
              "BusAddress3",
              "BusPOBox",
              "BusCity",
              "BusState",
              "BusCountry",
              "BusPostCode",
              "BusPhone",
              "BusFax",
              "BusCellular",
              "ContactEmail",
              "BusWeb",
              "BusBankAcName",
              "BusBankAcbank",
              "BusBankAcBranch",
              "BusBankAcNo",
              "BusBankAcSuffix",
              "CustomerNumber",
              "BusinessFlag",
              "WageFlag",
              "HeadingAccount",
              "TaxNumber",
              "notes"})
{
}

qint64 AddressWriter::add(const AddressRow &r)
{
    const QStringList bank = r.bankAccount.split('-');
    auto part = [&bank](int i) { return Store::text(bank.value(i)); };
    using namespace Store;
    return m_rows.insert({text(r.busName),
                          text(r.title),
                          text(r.initials),
                          text(r.firstName),
                          text(r.lastName),
                          text(r.address1),
                          text(r.address2),
                          text(r.address3),
                          text(r.poBox),
                          text(r.city),
                          text(r.state),
                          text(r.country),
                          text(r.postCode),
                          text(r.phone),
                          text(r.fax),
                          text(r.mobile),
                          text(r.email),
                          text(r.web),
                          text(r.bankAcName),
                          part(0),
                          part(1),
                          part(2),
                          part(3),
                          text(r.customerNumber),
                          yesNo(r.business),
                          yesNo(r.wage),
                          key(r.heading),
                          text(r.taxNumber),
                          text(r.notes)});
}

PayrollWriter::PayrollWriter(BookWriter &wage)
    : m_employees(wage, "Employees",
                  {"AddressID",
                   "EmployeeTypeID",
                   "TaxTypeID",
                   "PayIntervalID",
                   "BankID",
                   "HeadingID",
                   "EnterpriseID",
                   "TaxCode",
                   "IRDnumber",
                   "PayRate",
                   "Yearlytotal",
                   "Birthdate",
                   "Datehired",
                   "Datefinished",
                   "KiwiSaverEnrolled",
                   "KiwiSaverEnrolID",
                   "KiwiSaverStartDate",
                   "KiwiSaverEmployerRateID",
                   "ExcludeIR348",
                   "IncludeESCT"}),
      m_deductions(wage, "EmployeeDeductions",
                   {"EmployeeID", "DeductID", "FixedAmount", "SpecialRate", "TaxName"}),
      m_contributions(wage, "EmployerContributions",
                      {"EmployeeID", "ContributionID", "FixedAmount", "SpecialRate", "TaxName"}),
      m_wages(wage, "Wages", {"EmployeeID", "Date", "Gross", "Description"})
{
}

qint64 PayrollWriter::addEmployee(const EmployeeRow &r)
{
    const bool member = isMemberType(r.enrolType);
    using namespace Store;
    const qint64 id = m_employees.insert({r.addressId,
                                          r.occupation,
                                          r.taxType,
                                          r.interval,
                                          r.bank,
                                          Heading::Wages,
                                          r.enterprise,
                                          text(r.taxCode),
                                          text(r.irdNumber),
                                          money(r.rateCents),
                                          r.salaryCents ? money(r.salaryCents) : QVariant(),
                                          date(r.born),
                                          date(r.hired),
                                          r.finishedZero ? QVariant(0.0) : date(r.finished),
                                          yesNo(member),
                                          key(r.enrolType),
                                          date(r.kiwiSaverStart),
                                          key(r.employerRate),
                                          yesNo(r.excludeIR348),
                                          yesNo(member)});
    if (member) {
        // The rate is kept as a whole number, rounded as the editor's save does.
        m_deductions.insert({id, r.kiwiSaverRate, money(0),
                             qint64(std::lrint(deductPercentage(r.kiwiSaverRate))),
                             QString("KiwiSaver")});
        m_contributions.insert({id, r.employerRate, money(0),
                                qint64(std::lrint(contributionPercentage(r.employerRate))),
                                QString("KiwiSaver")});
    }
    return id;
}

void PayrollWriter::addDeduction(qint64 employeeId, int deductName, qint64 fixedCents, double rate)
{
    m_deductions.insert({employeeId, deductName, Store::money(fixedCents), rate, QVariant()});
}

void PayrollWriter::addWage(qint64 employeeId, const QDate &day, qint64 grossCents,
                            const QString &description)
{
    m_wages.insert({employeeId, Store::date(day), Store::money(grossCents), description});
}

CashbookWriter::CashbookWriter(BookWriter &farm)
    : m_rows(farm, "Transactions", {"Date", "AddressID", "BankID", "Amount", "Description"})
{
}

void CashbookWriter::add(qint64 addressId, const QDate &day, int bank, qint64 amountCents,
                         const QString &description)
{
    m_rows.insert({Store::date(day), addressId, bank, Store::money(amountCents), description});
}

} // namespace SuiteFiles
