#pragma once

#include <QHash>
#include <QString>
#include <QtGlobal>

class ComboList;
class Database;

// The pay details editor's lists and what it looks up to fill them. Each fill selects the
// identifier given (the first item when it is not listed) and throws CvError when the list
// cannot be read, keeping what was added (FillDaoVBCombo).

// From the wage file: occupations (EmployeeAwardType), the country's tax types (and those of
// every country), pay intervals, the KiwiSaver deduction and employer contribution rates,
// and the KiwiSaver enrolment types.
void fillOccupationList(Database &wage, ComboList &list, qint32 employeeTypeId);
void fillTaxTypeList(Database &wage, ComboList &list, qint32 taxTypeId, qint32 countryCode);
void fillPayIntervalList(Database &wage, ComboList &list, qint32 payIntervalId);
void fillKiwiSaverDeductionList(Database &wage, ComboList &list, qint32 deductNameId);
void fillEmployerRateList(Database &wage, ComboList &list, qint32 contributionNameId);
void fillEnrolmentTypeList(Database &wage, ComboList &list, qint32 enrolTypeId);
// Each enrolment type by name, and whether it makes the employee a member.
QHash<QString, bool> kiwiSaverMemberTypes(Database &wage);

// From the main data file: banks, cashbook headings and enterprises, and the unit-of-pay
// caption.

// Bank identifiers from here up are e-payment accounts (AccountType 1).
inline constexpr qint32 FirstEPaymentBankId = 995;

// The default bank of each mode: 0 and 0 until lookupDefaultBanks() has run
// (only the address window runs it), then the lowest cash account (0 when
// there is none) and the lowest e-payment account (995 when there is none).
qint32 defaultCashBankId();
qint32 defaultEPaymentBankId();
void lookupDefaultBanks(Database &farm);
// Puts both defaults back to their state before any look-up.
void resetDefaultBanks();

// Fills the bank list in the mode the identifier belongs to, selecting it;
// returns whether that is the e-payment mode.
bool fillBankList(Database &farm, ComboList &list, qint32 bankId);
void fillHeadingList(Database &farm, ComboList &list, qint32 headingId);
void fillEnterpriseList(Database &farm, ComboList &list, qint32 enterpriseCode);

// "Pay Rate (per <unit>)" for the employee type, Hour when its unit is Null;
// also makes that unit the current unit of pay. Empty, and nothing changed,
// for an identifier that is not above 0; empty for one with no row.
QString payRateUnitCaption(qint32 employeeTypeId, Database &wage);
