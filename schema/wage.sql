-- The suite's wage file (Wage32.mdb): employees and the payroll tables.
-- Declared types carry the Jet type of each column, as in farm.sql.

CREATE TABLE Employees (
    EmployeeID              INTEGER PRIMARY KEY AUTOINCREMENT,
    AddressID               LONG,
    EmployeeTypeID          LONG,
    TaxTypeID               LONG,
    PayIntervalID           LONG,
    BankID                  LONG,
    HeadingID               LONG,
    EnterpriseID            LONG,
    TaxCode                 TEXT(10) COLLATE NOCASE,
    IRDnumber               TEXT(20) COLLATE NOCASE,
    PayRate                 CURRENCY,
    Yearlytotal             CURRENCY,
    Birthdate               DATETIME,
    Datehired               DATETIME,
    Datefinished            DATETIME,
    KiwiSaverEnrolled       YESNO NOT NULL DEFAULT 0,
    KiwiSaverEnrolID        LONG,
    KiwiSaverStartDate      DATETIME,
    KiwiSaverEmployerRateID LONG,
    ExcludeIR348            YESNO NOT NULL DEFAULT 0,
    IncludeESCT             YESNO NOT NULL DEFAULT 0
);
CREATE INDEX Employees_AddressID ON Employees (AddressID);

-- Pays already made; the address book only asks whether an employee has any.
CREATE TABLE Wages (
    WageID      INTEGER PRIMARY KEY AUTOINCREMENT,
    EmployeeID  LONG,
    "Date"      DATETIME,
    Gross       CURRENCY NOT NULL DEFAULT 0,
    Description TEXT(255) COLLATE NOCASE
);
CREATE INDEX Wages_EmployeeID ON Wages (EmployeeID);

-- Occupations ("Occupation" on the editor) with the unit pay is quoted in.
CREATE TABLE EmployeeAwardType (
    EmployeeTypeID INTEGER PRIMARY KEY AUTOINCREMENT,
    EmployeeType   TEXT(50) COLLATE NOCASE,
    Unitofpay      TEXT(20) COLLATE NOCASE
);

CREATE TABLE TaxTypes (
    TaxTypeID    INTEGER PRIMARY KEY AUTOINCREMENT,
    TaxName      TEXT(50) COLLATE NOCASE,
    "Order"      SHORT NOT NULL DEFAULT 0,
    CountryPhone LONG NOT NULL DEFAULT 0
);

CREATE TABLE PayInterval (
    PayIntervalID INTEGER PRIMARY KEY AUTOINCREMENT,
    IntervalName  TEXT(50) COLLATE NOCASE,
    NumberOfDays  SHORT,
    PaysPerYear   DOUBLE,
    "Order"       SHORT NOT NULL DEFAULT 0
);

CREATE TABLE KiwiSaverEnrollType (
    KSEnrollTypeID INTEGER PRIMARY KEY AUTOINCREMENT,
    KSEnrollType   TEXT(50) COLLATE NOCASE UNIQUE,
    KSMember       YESNO NOT NULL DEFAULT 0
);

-- Kinds of deduction. TaxName "KiwiSaver" marks the KiwiSaver rates.
CREATE TABLE DeductNames (
    DeductNameID  INTEGER PRIMARY KEY AUTOINCREMENT,
    DeductionName TEXT(50) COLLATE NOCASE,
    TaxName       TEXT(50) COLLATE NOCASE,
    CountryPhone  LONG NOT NULL DEFAULT 0,
    Percentage    SINGLE NOT NULL DEFAULT 0
);

-- Standing deductions; TaxName Null for ordinary rows, "KiwiSaver" for the
-- employee's KiwiSaver row.
CREATE TABLE EmployeeDeductions (
    EmployeeDeductionID INTEGER PRIMARY KEY AUTOINCREMENT,
    EmployeeID          LONG,
    DeductID            LONG,
    FixedAmount         CURRENCY NOT NULL DEFAULT 0,
    SpecialRate         SINGLE NOT NULL DEFAULT 0,
    TaxName             TEXT(50) COLLATE NOCASE
);
CREATE INDEX EmployeeDeductions_EmployeeID ON EmployeeDeductions (EmployeeID);

-- Kinds of employer contribution.
CREATE TABLE ContributionNames (
    ContributionNameID INTEGER PRIMARY KEY AUTOINCREMENT,
    ContributionName   TEXT(50) COLLATE NOCASE,
    TaxName            TEXT(50) COLLATE NOCASE,
    CountryPhone       LONG NOT NULL DEFAULT 0,
    Percentage         SINGLE NOT NULL DEFAULT 0
);

CREATE TABLE EmployerContributions (
    EmployerContributionID INTEGER PRIMARY KEY AUTOINCREMENT,
    EmployeeID             LONG,
    ContributionID         LONG,
    FixedAmount            CURRENCY NOT NULL DEFAULT 0,
    SpecialRate            SINGLE NOT NULL DEFAULT 0,
    TaxName                TEXT(50) COLLATE NOCASE
);
CREATE INDEX EmployerContributions_EmployeeID ON EmployerContributions (EmployeeID);
