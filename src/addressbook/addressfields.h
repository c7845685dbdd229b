#pragma once

#include <array>
#include <QLatin1String>

// The text boxes of the address window's first tab, one row each: the Addresses
// column the box is bound to, its caption, how many characters the column takes
// and how many the box shows. The logic checks and shows them, the store reads
// and writes them, the view builds its boxes from them: adding a field is one row
// here (and its column in schema/farm.sql).
namespace AddressFields {

enum Field : int {
    BusName = 0,
    ContactTitle,
    ContactInitials,
    ContactFirstName,
    ContactLastName,
    BusAddress1,
    BusAddress2,
    BusAddress3,
    BusPOBox,
    BusCity,
    BusState,
    BusCountry,
    BusPostCode,
    BusPhone,
    BusFax,
    BusCellular,
    ContactEmail,
    BusWeb,
    BusBankAcName,
    BusBankAcBank,
    BusBankAcBranch,
    BusBankAcNo,
    BusBankAcSuffix,
    CustomerNumber,
    TaxNumber,
};

struct Description
{
    QLatin1String column;
    QLatin1String caption; // empty: the box has no caption of its own
    int maxLength;         // 0: the column takes any length
    // The box shows this many characters; a longer limit lets it grow to it.
    int boxChars;
};

// The wider boxes start at this many characters and grow with the window.
inline constexpr int WideBoxChars = 25;

constexpr Description describe(const char *column, const char *caption, int maxLength)
{
    return {QLatin1String(column), QLatin1String(caption), maxLength,
            maxLength > 0 && maxLength <= WideBoxChars ? maxLength : WideBoxChars};
}

// In the order of Field. The branch's limit is the default; the country may change it.
inline constexpr std::array table = {
    describe("BusName", "Company/Employee", 0),
    describe("ContactTitle", "Title", 10),
    describe("ContactInitials", "Initials", 25),
    describe("contactFirstName", "First Names", 25),
    describe("ContactLastName", "Last Name :", 25),
    describe("BusAddress1", "Street Address", 25),
    describe("BusAddress2", "", 25),
    describe("BusAddress3", "", 25),
    describe("BusPOBox", "PO Box", 25),
    describe("BusCity", "City", 25),
    describe("BusState", "State", 25),
    describe("BusCountry", "Country", 25),
    describe("BusPostCode", "Post Code/Zip", 25),
    describe("BusPhone", "Phone", 25),
    describe("BusFax", "Fax", 25),
    describe("BusCellular", "Mobile", 25),
    describe("ContactEmail", "E-mail", 0),
    describe("BusWeb", "Website", 0),
    describe("BusBankAcName", "Bank Account Name", 50),
    describe("BusBankAcbank", "Bank Number", 3),
    describe("BusBankAcBranch", "Branch", 4),
    describe("BusBankAcNo", "Account", 9),
    describe("BusBankAcSuffix", "Suffix", 3),
    describe("CustomerNumber", "Customer Number", 50),
    // Captioned by the country's name for its tax number.
    describe("TaxNumber", "", 20),
};

inline constexpr int Count = int(table.size());
static_assert(Count == TaxNumber + 1, "one row per field");

constexpr bool isField(int field)
{
    return field >= 0 && field < Count;
}

// The check boxes and their Yes/No columns. Inactive is missing from books made
// before it that could not be given it (read-only files, a server role without rights).
enum Flag : int { WageFlag = 0, BusinessFlag = 1, Inactive = 2 };
inline constexpr std::array flagColumns = {QLatin1String("WageFlag"), QLatin1String("BusinessFlag"),
                                           QLatin1String("Inactive")};

} // namespace AddressFields
