// Large generated books for benchmarks. Everything comes from one seeded
// generator of our own, so a given seed gives the same rows on every machine
// and library (the standard distributions are not portable). For the same
// reason no expression draws twice: the order in which function arguments
// are evaluated is up to the compiler.
#include "suitedata.h"
#include "suitefiles.h"

#include <array>

namespace SuiteFiles {

namespace {

class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) {}

    // SplitMix64.
    quint64 next()
    {
        quint64 z = (m_state += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    int below(qint64 n) { return int(next() % quint64(n)); }
    int between(int low, int high) { return low + below(qint64(high) - low + 1); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T, std::size_t N> const T &pick(const std::array<T, N> &items)
    {
        return items[std::size_t(below(qint64(N)))];
    }
    QDate dayBetween(const QDate &first, const QDate &last)
    {
        return first < last ? first.addDays(below(first.daysTo(last) + 1)) : first;
    }

private:
    quint64 m_state;
};

using Names = std::array<const char *, 40>;

const Names kMen = {"James",  "Oliver",  "Jack",   "William", "Noah",    "Liam",    "Lucas",
                    "Hunter", "Charlie", "George", "Mason",   "Thomas",  "Samuel",  "Isaac",
                    "Finn",   "Wiremu",  "Hēmi",   "Tama",    "Rāwiri",  "Mikaere", "Tāne",
                    "Nikau",  "Manaia",  "Ariki",  "Sione",   "Tevita",  "Viliami", "Sefo",
                    "Rajesh", "Arjun",   "Wei",    "Jun",     "Hiroshi", "Bruce",   "Graeme",
                    "Murray", "Trevor",  "Colin",  "Ian",     "Zane"};
const Names kWomen = {"Olivia", "Charlotte", "Isla",    "Amelia", "Mia",    "Ava",      "Harper",
                      "Willow", "Sophie",    "Grace",   "Ruby",   "Ella",   "Lily",     "Zoe",
                      "Aroha",  "Mere",      "Anahera", "Kiri",   "Moana",  "Hana",     "Ngaio",
                      "Aria",   "Mele",      "Losana",  "Priya",  "Ananya", "Mei",      "Yuki",
                      "Emma",   "Sarah",     "Rebecca", "Fiona",  "Janet",  "Margaret", "Helen",
                      "Ursula", "Quinn",     "Erin",    "Xanthe", "Violet"};
const std::array<const char *, 96> kSurnames = {
    "Smith",    "Wilson",    "Williams", "Brown",     "Taylor",    "Jones",        "Anderson",
    "Thompson", "Walker",    "Harris",   "Martin",    "Clarke",    "White",        "Young",
    "King",     "Scott",     "Campbell", "Stewart",   "Robertson", "McDonald",     "Mitchell",
    "Edwards",  "Wright",    "Hall",     "Turner",    "Baker",     "Morris",       "Cooper",
    "Ward",     "Hughes",    "Kelly",    "Murphy",    "O'Brien",   "O'Connor",     "McKenzie",
    "Fraser",   "Henderson", "Paterson", "Gallagher", "Bell",      "Duncan",       "Hay",
    "Te Whata", "Ngata",     "Tāwhiri",  "Pōhatu",    "Hēnare",    "Parata",       "Ranginui",
    "Te Rangi", "Tipene",    "Wīhongi",  "Kereama",   "Hōhaia",    "Mānihera",     "Karaka",
    "Tamihana", "Heke",      "Paki",     "Waaka",     "Nikora",    "Poutama",      "Whaanga",
    "Fifita",   "Tupou",     "Faleolo",  "Leota",     "Tuilagi",   "Sapolu",       "Lemalu",
    "Sharma",   "Patel",     "Singh",    "Kumar",     "Chen",      "Wang",         "Li",
    "Zhang",    "Nguyen",    "Tanaka",   "Kim",       "Park",      "van der Berg", "de Vries",
    "Jansen",   "Bakker",    "Visser",   "MacLeod",   "Quinn",     "Xu",           "Yates",
    "Zhou",     "Underwood", "Irwin",    "Ingram",    "Vincent"};

struct Place
{
    const char *town;
    const char *region;
    const char *postCode;
    const char *areaCode;
};

const std::array<Place, 48> kPlaces = {{
    {"Te Awamutu", "Waikato", "3800", "07"},
    {"Ōtorohanga", "Waikato", "3900", "07"},
    {"Cambridge", "Waikato", "3434", "07"},
    {"Hamilton", "Waikato", "3204", "07"},
    {"Matamata", "Waikato", "3400", "07"},
    {"Morrinsville", "Waikato", "3300", "07"},
    {"Te Aroha", "Waikato", "3320", "07"},
    {"Pūtāruru", "Waikato", "3411", "07"},
    {"Tokoroa", "Waikato", "3420", "07"},
    {"Ngāruawāhia", "Waikato", "3720", "07"},
    {"Huntly", "Waikato", "3700", "07"},
    {"Raglan", "Waikato", "3225", "07"},
    {"Taupō", "Waikato", "3330", "07"},
    {"Te Kūiti", "Waikato", "3910", "07"},
    {"Rotorua", "Bay of Plenty", "3010", "07"},
    {"Whakatāne", "Bay of Plenty", "3120", "07"},
    {"Ōpōtiki", "Bay of Plenty", "3122", "07"},
    {"Te Puke", "Bay of Plenty", "3119", "07"},
    {"Katikati", "Bay of Plenty", "3129", "07"},
    {"Whangārei", "Northland", "0110", "09"},
    {"Kaitāia", "Northland", "0410", "09"},
    {"Dargaville", "Northland", "0310", "09"},
    {"Pukekohe", "Auckland", "2120", "09"},
    {"Warkworth", "Auckland", "0910", "09"},
    {"Thames", "Waikato", "3500", "07"},
    {"Paeroa", "Waikato", "3600", "07"},
    {"New Plymouth", "Taranaki", "4310", "06"},
    {"Hāwera", "Taranaki", "4610", "06"},
    {"Stratford", "Taranaki", "4332", "06"},
    {"Whanganui", "Manawatū-Whanganui", "4500", "06"},
    {"Feilding", "Manawatū-Whanganui", "4702", "06"},
    {"Palmerston North", "Manawatū-Whanganui", "4410", "06"},
    {"Masterton", "Wellington", "5810", "06"},
    {"Dannevirke", "Manawatū-Whanganui", "4930", "06"},
    {"Hastings", "Hawke's Bay", "4122", "06"},
    {"Gisborne", "Gisborne", "4010", "06"},
    {"Nelson", "Nelson", "7010", "03"},
    {"Blenheim", "Marlborough", "7201", "03"},
    {"Greymouth", "West Coast", "7805", "03"},
    {"Ashburton", "Canterbury", "7700", "03"},
    {"Timaru", "Canterbury", "7910", "03"},
    {"Rangiora", "Canterbury", "7400", "03"},
    {"Kaikōura", "Canterbury", "7300", "03"},
    {"Oamaru", "Otago", "9400", "03"},
    {"Alexandra", "Otago", "9320", "03"},
    {"Gore", "Southland", "9710", "03"},
    {"Winton", "Southland", "9720", "03"},
    {"Invercargill", "Southland", "9810", "03"},
}};

const std::array<const char *, 32> kStreets = {
    "Main",    "Station", "Victoria", "Alexandra", "Queen",      "King",     "Church",    "Mill",
    "River",   "Hill",    "Factory",  "Ōhaupō",    "Kihikihi",   "Pirongia", "Te Rore",   "Rāhui",
    "Bank",    "Bond",    "Kāwhia",   "Paterangi", "Racecourse", "Ngāroma",  "Mangapiko", "Puniu",
    "Arapuni", "Waitomo", "Kōwhai",   "Tōtara",    "Rimu",       "Mātai",    "Pūriri",    "Tui"};
const std::array<const char *, 6> kStreetKinds = {"Road", "Street", "Road",
                                                  "Lane", "Drive",  "Valley Road"};

const std::array<const char *, 40> kTrades = {
    "Fencing",       "Contracting",   "Drainage",  "Earthmoving",   "Shearing",     "Plumbing",
    "Electrical",    "Engineering",   "Transport", "Vets",          "Agricultural", "Ag Services",
    "Farm Supplies", "Hay & Baleage", "Livestock", "Dairies",       "Orchards",     "Nurseries",
    "Motors",        "Tyres",         "Builders",  "Roofing",       "Irrigation",   "Spraying",
    "Consultants",   "Accountants",   "Legal",     "Surveyors",     "Welding",      "Haulage",
    "Seeds",         "Feeds",         "Grazing",   "Holdings",      "Partnership",  "Trust",
    "Calf Rearing",  "Silage",        "Machinery", "Water Services"};
const std::array<const char *, 16> kNativeWords = {
    "Kōwhai", "Tōtara", "Rimu",   "Mātai",   "Kahikatea", "Pūriri",   "Tūī",   "Kererū",
    "Kea",    "Aoraki", "Tainui", "Ruapehu", "Kaimai",    "Pirongia", "Ōhākī", "Waipā"};
const std::array<const char *, 8> kOddStarts = {"24/7", "1st Choice", "3 Rivers",  "4 Seasons",
                                                "360",  "#1",         "(The) Old", "100%"};
const std::array<const char *, 5> kMailHosts = {"gmail.com", "xtra.co.nz", "outlook.co.nz",
                                                "hotmail.com", "slingshot.co.nz"};
const std::array<const char *, 6> kBankCodes = {"01", "02", "03", "06", "12", "38"};
const std::array<const char *, 8> kRemarks = {"Prefers invoices by e-mail.",
                                              "Account due 20th of the month following.",
                                              "Ring before delivering - dogs loose.",
                                              "Gate code 1954.",
                                              "Closed over Christmas and New Year.",
                                              "Quote required for anything over $2,000.",
                                              "Contact is only in the office on Tuesdays.",
                                              "Direct debit set up for the monthly account."};
const std::array<qint64, 20> kShownHeadings = {
    Heading::MilkSolids,      Heading::CattleSales,  Heading::SheepSales, Heading::Wool,
    Heading::GrazingReceived, Heading::AnimalHealth, Heading::VetFees,    Heading::Breeding,
    Heading::HerdTesting,     Heading::Fertiliser,   Heading::Feed,       Heading::GrazingPaid,
    Heading::PlantRepairs,    Heading::Fencing,      Heading::Fuel,       Heading::VehicleRepairs,
    Heading::Electricity,     Heading::Accountancy,  Heading::Rates,      Heading::Insurance};

const QDate kLastPayDay(2024, 11, 26);

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

// Lower-case ASCII letters and digits only, for e-mail and web addresses.
QString slug(const QString &text)
{
    QString out;
    for (const QChar c : text.normalized(QString::NormalizationForm_D)) {
        if (c.unicode() < 128 && c.isLetterOrNumber())
            out += c.toLower();
    }
    return out;
}

QString digits(Random &rng, int count)
{
    QString out;
    for (int i = 0; i < count; ++i)
        out += QChar('0' + rng.below(10));
    return out;
}

QString taxNumber(Random &rng)
{
    const QString number = digits(rng, 8);
    return QString("0%1-%2-%3").arg(number.left(2), number.mid(2, 3), number.mid(5));
}

QString bankAccount(Random &rng)
{
    const QString bank = utf8(rng.pick(kBankCodes));
    const QString number = digits(rng, 10);
    const QString suffix = rng.chance(80) ? "00" : digits(rng, 3);
    return QString("%1-%2-0%3-%4").arg(bank, number.left(4), number.mid(4), suffix);
}

// "021 345 6789", the grouping after a prefix.
QString phoneNumber(Random &rng, const QString &prefix)
{
    const QString number = digits(rng, 7);
    return QString("%1 %2 %3").arg(prefix, number.left(3), number.mid(3));
}

QString mobile(Random &rng)
{
    static const std::array<const char *, 4> prefixes = {"021", "022", "027", "029"};
    return phoneNumber(rng, utf8(rng.pick(prefixes)));
}

void setLocation(Random &rng, AddressRow &row)
{
    const Place &place = rng.pick(kPlaces);
    const int number = rng.between(1, 2400);
    const QString street = utf8(rng.pick(kStreets));
    const QString kind = utf8(rng.pick(kStreetKinds));
    row.address1 = QString("%1 %2 %3").arg(number).arg(street, kind);
    if (rng.chance(40))
        row.address2 = QString("RD %1").arg(rng.between(1, 9));
    else if (rng.chance(10))
        row.poBox = QString("PO Box %1").arg(rng.between(1, 9999));
    row.city = utf8(place.town);
    row.state = utf8(place.region);
    row.postCode = utf8(place.postCode);
    if (rng.chance(55))
        row.phone = phoneNumber(rng, utf8(place.areaCode));
}

// A line of the change log, dated between from and to.
QString logLine(Random &rng, const QDate &from, const QDate &to)
{
    const QDate day = rng.dayBetween(from, to);
    switch (rng.below(4)) {
    case 0:
        return QString("[%1] Salary Changed to %2 per year")
            .arg(logDate(day), logMoney(qint64(rng.between(450, 990)) * 10000));
    case 1:
        return QString("[%1] Tax type changed to %2")
            .arg(logDate(day), taxTypeName(rng.between(1, 4)));
    default:
        return QString("[%1] Pay rate amended to %2 Hour")
            .arg(logDate(day), logMoney(rng.between(2320, 4200)));
    }
}

QString remarks(Random &rng, int count)
{
    QStringList out;
    for (int i = 0; i < count; ++i)
        out << utf8(rng.pick(kRemarks));
    return out.join("\r\n");
}

// Notes of exactly size bytes: change-log lines, the last one cut short.
QString notesOfSize(Random &rng, const QString &start, qsizetype size)
{
    QString text = start;
    while (text.size() < size)
        text += "\r\n" + logLine(rng, QDate(2005, 1, 1), kLastPayDay);
    return text.left(size);
}

AddressRow person(Random &rng, bool employee)
{
    AddressRow row;
    const bool woman = rng.chance(50);
    row.firstName = utf8(woman ? rng.pick(kWomen) : rng.pick(kMen));
    row.lastName = utf8(rng.pick(kSurnames));
    row.title = woman ? (rng.chance(50) ? "Ms" : "Mrs") : "Mr";
    if (rng.chance(2))
        row.title = "Dr";
    row.initials = row.firstName.left(1);
    if (rng.chance(30))
        row.initials += QString(" %1").arg(QChar('A' + rng.below(26)));
    row.busName = row.firstName + " " + row.lastName;
    if (!employee && rng.chance(8))
        row.busName =
            QString("%1 & %2 %3")
                .arg(row.firstName, utf8(woman ? rng.pick(kMen) : rng.pick(kWomen)), row.lastName);
    setLocation(rng, row);
    if (rng.chance(80))
        row.mobile = mobile(rng);
    if (rng.chance(60))
        row.email =
            slug(row.firstName) + "." + slug(row.lastName) + "@" + utf8(rng.pick(kMailHosts));
    if (employee ? rng.chance(95) : rng.chance(30)) {
        row.bankAcName = row.initials + " " + row.lastName;
        row.bankAccount = bankAccount(rng);
    }
    row.wage = employee;
    row.business = !employee && rng.chance(40);
    return row;
}

AddressRow business(Random &rng)
{
    AddressRow row;
    const QString surname = utf8(rng.pick(kSurnames));
    const QString trade = utf8(rng.pick(kTrades));
    const int pattern = rng.below(100);
    if (pattern < 30)
        row.busName = surname + " " + trade;
    else if (pattern < 58)
        row.busName = utf8(rng.pick(kPlaces).town) + " " + trade;
    else if (pattern < 68)
        row.busName = surname + " & " + utf8(rng.pick(kSurnames)) + " " + trade;
    else if (pattern < 78) {
        const QChar first('A' + rng.below(26));
        const QChar second('A' + rng.below(26));
        row.busName = QString("%1 & %2 %3").arg(first, second, surname);
    } else if (pattern < 95)
        row.busName = utf8(rng.pick(kNativeWords)) + " " + trade;
    else
        row.busName = utf8(rng.pick(kOddStarts)) + " " + trade;
    if (rng.chance(40))
        row.busName += rng.chance(90) ? " Ltd" : " Limited";

    if (rng.chance(60)) {
        const bool woman = rng.chance(50);
        row.firstName = utf8(woman ? rng.pick(kWomen) : rng.pick(kMen));
        row.lastName = surname;
        row.title = woman ? "Ms" : "Mr";
        row.initials = row.firstName.left(1);
    }
    setLocation(rng, row);
    if (row.phone.isEmpty() || rng.chance(10)) {
        const QString number = digits(rng, 6);
        row.phone = "0800 " + number.left(3) + " " + number.mid(3);
    }
    if (rng.chance(10))
        row.fax = row.phone.left(row.phone.size() - 1) + QChar('0' + rng.below(10));
    if (rng.chance(40))
        row.mobile = mobile(rng);
    const QString site = slug(row.busName).left(24) + ".co.nz";
    row.email = (rng.chance(50) ? "accounts@" : "office@") + site;
    if (rng.chance(40))
        row.web = "www." + site;
    if (rng.chance(50)) {
        row.bankAcName = row.busName.left(50);
        row.bankAccount = bankAccount(rng);
    }
    if (rng.chance(40))
        row.customerNumber =
            QString("%1%2").arg(slug(row.busName).left(3).toUpper(), digits(rng, 5));
    row.business = rng.chance(85);
    if (rng.chance(60))
        row.heading = rng.pick(kShownHeadings);
    else if (rng.chance(3))
        row.heading = Heading::PlantPurchases; // not offered in the heading list
    if (rng.chance(70))
        row.taxNumber = taxNumber(rng);
    return row;
}

void addNotes(Random &rng, AddressRow &row)
{
    const int r = rng.below(100);
    if (r < 70)
        return;
    if (r < 90)
        row.notes = remarks(rng, 1);
    else if (r < 99)
        row.notes = remarks(rng, rng.between(2, 6));
    else {
        const QString first = remarks(rng, 1);
        row.notes = notesOfSize(rng, first, rng.between(2048, 8192));
    }
}

EmployeeRow employee(Random &rng, const QDate &born)
{
    static const std::array<int, 10> taxTypes = {Ref::TaxM,  Ref::TaxM,   Ref::TaxM,  Ref::TaxM,
                                                 Ref::TaxME, Ref::TaxMSL, Ref::TaxSB, Ref::TaxCAE,
                                                 Ref::TaxWT, Ref::TaxS};
    static const std::array<int, 20> enrolTypes = {
        Ref::AutoEnrolled,   Ref::AutoEnrolled,   Ref::AutoEnrolled,   Ref::AutoEnrolled,
        Ref::AutoEnrolled,   Ref::AutoEnrolled,   Ref::AutoEnrolled,   Ref::OptedIn,
        Ref::OptedIn,        Ref::ExistingMember, Ref::ExistingMember, Ref::ExistingMember,
        Ref::ExistingMember, Ref::OptedOut,       Ref::OptedOut,       Ref::OptedOut,
        Ref::NotEligible,    Ref::NotEnrolled,    Ref::NotEnrolled,    Ref::NotEnrolled};
    static const std::array<int, 10> kiwiSaverRates = {
        Ref::KiwiSaver3, Ref::KiwiSaver3, Ref::KiwiSaver3, Ref::KiwiSaver3, Ref::KiwiSaver3,
        Ref::KiwiSaver4, Ref::KiwiSaver4, Ref::KiwiSaver6, Ref::KiwiSaver8, Ref::KiwiSaver10};

    EmployeeRow row;
    row.occupation = rng.between(Ref::FarmAssistant, Ref::Casual);
    row.taxType = rng.pick(taxTypes);
    row.taxCode = taxTypeName(row.taxType);
    const int interval = rng.below(20);
    row.interval = interval < 14 ? Ref::Weekly : interval < 19 ? Ref::Fortnightly : Ref::Monthly;
    const int bank = rng.below(20);
    row.bank = bank < 14   ? Ref::DirectCredit
               : bank < 16 ? Ref::Deskbank
               : bank < 19 ? Ref::ChequeAccount
                           : Ref::FarmSavings;
    row.enterprise = rng.between(Ref::Dairy, Ref::Cropping);
    row.irdNumber = taxNumber(rng);
    switch (row.occupation) {
    case Ref::Shearer:
        row.rateCents = rng.between(300, 600);
        break;
    case Ref::CalfRearer:
        row.rateCents = rng.between(150, 260) * 100;
        break;
    default:
        row.rateCents = rng.between(2320, 4500);
    }
    if ((row.occupation == Ref::FarmManager || row.occupation == Ref::HerdManager) &&
        rng.chance(60))
        row.salaryCents = qint64(rng.between(55, 110)) * 100000;
    row.born = born;
    row.hired = rng.dayBetween(std::max(QDate(2000, 1, 1), born.addYears(16)), kLastPayDay);
    const int finish = rng.below(100);
    if (finish < 22)
        row.finished = rng.dayBetween(row.hired.addDays(30), kLastPayDay.addDays(60));
    else if (finish < 25)
        row.finishedZero = true;
    row.enrolType = rng.pick(enrolTypes);
    if (isMemberType(row.enrolType)) {
        row.kiwiSaverStart = std::max(row.hired, QDate(2007, 7, 1));
        row.kiwiSaverRate = rng.pick(kiwiSaverRates);
        row.employerRate = rng.chance(85)
                               ? Ref::Employer3
                               : rng.pick(std::array<int, 2>{Ref::Employer4, Ref::Employer6});
    } else {
        row.employerRate = Ref::PleaseSelect;
    }
    row.excludeIR348 = rng.chance(1);
    return row;
}

} // namespace

void writeBulkBooks(BookWriter &farm, BookWriter &wage, const BulkOptions &options)
{
    writeReferenceTables(farm, wage);

    Random rng(options.seed);
    AddressWriter addresses(farm);
    PayrollWriter payroll(wage);
    CashbookWriter transactions(farm);
    static const std::array<int, 6> ordinaryDeductions = {Ref::UnionFees,       Ref::StudentLoan,
                                                          Ref::ChildSupport,    Ref::StaffPurchases,
                                                          Ref::BoardAndLodging, Ref::HouseRent};

    int employeesLeft = options.employees;
    int employeeCount = 0;
    for (int i = 0; i < options.addresses; ++i) {
        // Selection sampling: exactly options.employees of the entries,
        // spread over the whole range.
        const bool isEmployee = rng.below(qint64(options.addresses) - i) < employeesLeft;
        AddressRow row = isEmployee || rng.chance(35) ? person(rng, isEmployee) : business(rng);
        if (!isEmployee) {
            addNotes(rng, row);
            const qint64 id = addresses.add(row);
            if (row.business && rng.chance(25)) {
                for (int t = rng.between(1, 4); t > 0; --t) {
                    const QDate day = rng.dayBetween(QDate(2022, 1, 1), kLastPayDay);
                    transactions.add(id, day, Ref::ChequeAccount,
                                     -qint64(rng.between(2000, 500000)), "Account paid");
                }
            }
            continue;
        }

        --employeesLeft;
        const EmployeeRow pay =
            employee(rng, rng.dayBetween(QDate(1955, 1, 1), QDate(2006, 12, 31)));
        row.notes = "[" + logDate(pay.hired) + "] Hired on " + logDate(pay.hired);
        if (options.notesBytes > 0 && employeeCount % 1000 == 0)
            row.notes = notesOfSize(rng, row.notes, options.notesBytes);
        else if (rng.chance(2))
            row.notes = notesOfSize(rng, row.notes, rng.between(2048, 16384));
        else
            for (int n = rng.between(0, 6); n > 0; --n)
                row.notes += "\r\n" + logLine(rng, pay.hired, kLastPayDay);
        ++employeeCount;

        EmployeeRow withAddress = pay;
        withAddress.addressId = addresses.add(row);
        const qint64 employeeId = payroll.addEmployee(withAddress);

        if (rng.chance(30)) {
            const int name = rng.pick(ordinaryDeductions);
            const double rate = deductPercentage(name);
            payroll.addDeduction(employeeId, name, rate > 0 ? 0 : rng.between(500, 15000), rate);
        }
        if (rng.chance(45)) {
            const QDate last =
                pay.finished.isValid() ? std::min(pay.finished, kLastPayDay) : kLastPayDay;
            const qint64 gross = pay.rateCents * 40;
            for (int n = rng.between(1, 8) - 1; n >= 0; --n) {
                const QDate day = last.addDays(-7 * n);
                payroll.addWage(employeeId, day, gross, "Pay period ending " + logDate(day));
            }
        }
        if (rng.chance(3)) {
            const QDate day = rng.dayBetween(QDate(2022, 1, 1), kLastPayDay);
            transactions.add(withAddress.addressId, day, Ref::ChequeAccount,
                             -qint64(rng.between(1000, 30000)), "Reimbursement");
        }
    }
}

} // namespace SuiteFiles
