#pragma once

#include "support/tempsuite.h"

// A small, known set of rows in both data files of a TempSuite, shared by the
// data layer's tests: addresses 37 to 43, employees 5 to 7 and the payroll
// tables around them.
namespace Fixture {

inline void fill(const TempSuite &suite)
{
    suite.execFarm(R"(
INSERT INTO Addresses (AddressID, BusName, ContactLastName, WageFlag, BusinessFlag, HeadingAccount, notes)
  VALUES (37, 'Brown Farms', 'Brown', -1, -1, 401001, 'first line');
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (38, 'bailey, Sam', -1);
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (39, 'Acme Ltd', 0);
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (40, NULL, -1);
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (41, 'O''Brien "Big" Ltd', 0);
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (42, '100% Wool_Co', 0);
INSERT INTO Addresses (AddressID, BusName, WageFlag) VALUES (43, '1000 WoolXCo', 0);
INSERT INTO Transactions ("Date", AddressID, BankID, Amount) VALUES (40269, 37, 1, 251000);
INSERT INTO Transactions ("Date", AddressID, BankID, Amount) VALUES (40270, 37, 1, -100000);
INSERT INTO Transactions ("Date", AddressID, BankID, Amount) VALUES (40271, 39, 2, 5000);
INSERT INTO Banks VALUES (1, 'Cheque account', 0);
INSERT INTO Banks VALUES (2, 'Savings', 0);
INSERT INTO Banks VALUES (995, 'Direct credit', 1);
INSERT INTO Banks VALUES (996, 'Batch payments', 1);
INSERT INTO Banks VALUES (997, 'Old cash book', 0);
INSERT INTO "Account Codes" VALUES (401, 'Wages', -1);
INSERT INTO "Account Codes" VALUES (402, 'Hidden', 0);
INSERT INTO "Secondary Codes" VALUES (401001, 401, 'Wages');
INSERT INTO "Secondary Codes" VALUES (401002, 401, 'Casual wages');
INSERT INTO "Secondary Codes" VALUES (402001, 402, 'Not in cashbook');
)");
    suite.execWage(R"(
INSERT INTO Employees (EmployeeID, AddressID, EmployeeTypeID, TaxTypeID, PayIntervalID, PayRate,
  Birthdate, Datefinished, KiwiSaverEnrolled, TaxCode)
  VALUES (5, 37, 2, 1, 1, 251000, 25000.5, NULL, -1, 'M');
INSERT INTO Employees (EmployeeID, AddressID, EmployeeTypeID, Datefinished) VALUES (6, 38, 1, 0);
INSERT INTO Employees (EmployeeID, AddressID, EmployeeTypeID, Datefinished) VALUES (7, 39, 1, 40269);
INSERT INTO Wages (EmployeeID, "Date", Gross) VALUES (5, 40269, 5000000);
INSERT INTO TaxTypes VALUES (1, 'PAYE', 2, 64);
INSERT INTO TaxTypes VALUES (2, 'Secondary', 1, 64);
INSERT INTO TaxTypes VALUES (3, 'PAYG', 0, 61);
INSERT INTO TaxTypes VALUES (4, 'General', 5, 0);
INSERT INTO DeductNames VALUES (1, 'KS 3%', 'KiwiSaver', 64, 3);
INSERT INTO DeductNames VALUES (2, 'KS 4%', 'KiwiSaver', 64, 4);
INSERT INTO DeductNames VALUES (3, 'Union fees', NULL, 0, 2.5);
INSERT INTO DeductNames VALUES (4, 'Child support', 'Child Support', 64, 0);
INSERT INTO DeductNames VALUES (5, 'Super AU', NULL, 61, 9);
INSERT INTO EmployeeDeductions VALUES (1, 5, 1, 0, 3, 'KiwiSaver');
INSERT INTO EmployeeDeductions VALUES (2, 5, 3, 100000, 0, NULL);
INSERT INTO EmployeeDeductions VALUES (3, 5, 4, 0, 0, NULL);
INSERT INTO EmployeeDeductions VALUES (4, 6, 3, 0, 2.5, NULL);
)");
}

} // namespace Fixture
