-- The suite's main data file (Farm32.mdb): names, cashbook, banks, headings.
-- Declared types carry the Jet type of each column (see DESIGN.md, section 3):
-- LONG, SHORT, TEXT(n), MEMO TEXT, CURRENCY (ten-thousandths), DATETIME (serial
-- days since 1899-12-30), YESNO (-1 true, 0 false), SINGLE, DOUBLE.

-- 64 KiB pages: an entry's notes memo grows with every logged pay change, and
-- SQLite rewrites a changed text whole; on large pages that costs a few page
-- writes, not hundreds.
PRAGMA page_size = 65536;

CREATE TABLE Addresses (
    AddressID        INTEGER PRIMARY KEY AUTOINCREMENT,
    BusName          TEXT(255) COLLATE NOCASE,
    ContactTitle     TEXT(10) COLLATE NOCASE,
    ContactInitials  TEXT(25) COLLATE NOCASE,
    contactFirstName TEXT(25) COLLATE NOCASE,
    ContactLastName  TEXT(25) COLLATE NOCASE,
    BusAddress1      TEXT(50) COLLATE NOCASE,
    BusAddress2      TEXT(50) COLLATE NOCASE,
    BusAddress3      TEXT(50) COLLATE NOCASE,
    BusPOBox         TEXT(25) COLLATE NOCASE,
    BusCity          TEXT(25) COLLATE NOCASE,
    BusState         TEXT(25) COLLATE NOCASE,
    BusCountry       TEXT(25) COLLATE NOCASE,
    BusPostCode      TEXT(25) COLLATE NOCASE,
    BusPhone         TEXT(25) COLLATE NOCASE,
    BusFax           TEXT(25) COLLATE NOCASE,
    BusCellular      TEXT(25) COLLATE NOCASE,
    ContactEmail     TEXT(255) COLLATE NOCASE,
    BusWeb           TEXT(255) COLLATE NOCASE,
    BusBankAcName    TEXT(50) COLLATE NOCASE,
    BusBankAcbank    TEXT(3) COLLATE NOCASE,
    BusBankAcBranch  TEXT(6) COLLATE NOCASE,
    BusBankAcNo      TEXT(9) COLLATE NOCASE,
    BusBankAcSuffix  TEXT(3) COLLATE NOCASE,
    CustomerNumber   TEXT(50) COLLATE NOCASE,
    BusinessFlag     YESNO NOT NULL DEFAULT 0,
    WageFlag         YESNO NOT NULL DEFAULT 0,
    HeadingAccount   LONG,
    TaxNumber        TEXT(20) COLLATE NOCASE,
    notes            MEMO TEXT COLLATE NOCASE,
    -- An entry no longer used (a supplier the farm left): kept, but off the name list
    -- unless asked for. Last, as books made before it gain it when first opened.
    Inactive         YESNO NOT NULL DEFAULT 0
);
CREATE INDEX Addresses_BusName ON Addresses (BusName);
CREATE INDEX Addresses_Inactive ON Addresses (Inactive);
CREATE INDEX Addresses_WageFlag ON Addresses (WageFlag, BusName);

-- Cashbook transactions; the address book only asks whether an entry has any.
CREATE TABLE Transactions (
    TransactionID INTEGER PRIMARY KEY AUTOINCREMENT,
    "Date"        DATETIME,
    AddressID     LONG,
    BankID        LONG,
    Amount        CURRENCY NOT NULL DEFAULT 0,
    Description   TEXT(255) COLLATE NOCASE
);
CREATE INDEX Transactions_AddressID ON Transactions (AddressID);

-- Bank accounts: below 995 ordinary accounts, from 995 with AccountType 1
-- e-payment accounts. The suite assigns the identifiers itself.
CREATE TABLE Banks (
    BanksID     LONG PRIMARY KEY,
    Name        TEXT(50) COLLATE NOCASE,
    AccountType SHORT NOT NULL DEFAULT 0
);

CREATE TABLE "Account Codes" (
    "Account Code"   LONG PRIMARY KEY,
    "Account Name"   TEXT(50) COLLATE NOCASE,
    "Show In CashBk" YESNO NOT NULL DEFAULT 0
);

CREATE TABLE "Secondary Codes" (
    "Secondary Codes ID" LONG PRIMARY KEY,
    "Main Code ID"       LONG,
    "Cached Name"        TEXT(100) COLLATE NOCASE
);
CREATE INDEX "Secondary Codes_Main" ON "Secondary Codes" ("Main Code ID");

CREATE TABLE "tbl No Enterprises" (
    Code LONG PRIMARY KEY,
    Name TEXT(50) COLLATE NOCASE
);

-- Suite-wide payroll settings: one record, one column per setting.
CREATE TABLE PayeInfo (
    PayeInfoID         INTEGER PRIMARY KEY AUTOINCREMENT,
    WageAccount        LONG,
    EmployerIRDNumber  TEXT(20) COLLATE NOCASE,
    EmployerName       TEXT(100) COLLATE NOCASE
);
