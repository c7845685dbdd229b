#include "paydetails/paylists.h"

#include "controls/filldaovbcombo.h"
#include "core/translate.h"
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/changelog.h"

namespace {

// Shared by both hosts for the life of the program.
qint32 g_defaultCashBank = 0;
qint32 g_defaultEPaymentBank = 0;

qint32 firstBankId(Database &farm, int accountType, qint32 none)
{
    Recordset rs(farm,
                 QStringLiteral("SELECT DISTINCTROW Banks.BanksID From Banks "
                                "Where AccountType = ? ORDER BY Banks.BanksID;"),
                 {accountType}, Recordset::Snapshot);
    return rs.eof() ? none : qint32(rs.value(0).toLongLong());
}

// The editor's lists show the second field and keep the first as item data.
void fill(Database &db, ComboList &list, const QString &query, qint32 selectedId,
          const QVariantList &values = {})
{
    FillDaoVBCombo(db, list, query, values, selectedId, false, QString(), false, true, false);
}

} // namespace

void fillOccupationList(Database &wage, ComboList &list, qint32 employeeTypeId)
{
    fill(wage, list,
         "Select distinctrow EmployeeTypeID, EmployeeType from EmployeeAwardType "
         "ORDER BY Employeetype;",
         employeeTypeId);
}

void fillTaxTypeList(Database &wage, ComboList &list, qint32 taxTypeId, qint32 countryCode)
{
    fill(wage, list,
         QStringLiteral("Select distinctrow TaxTypeID, TaxName from TaxTypes "
                        "where CountryPhone = ? or CountryPhone=0 ORDER BY TaxTypes.Order"),
         taxTypeId, {countryCode});
}

void fillPayIntervalList(Database &wage, ComboList &list, qint32 payIntervalId)
{
    fill(wage, list,
         "Select distinctrow PayIntervalID, IntervalName from PayInterval ORDER BY "
         "PayInterval.order;",
         payIntervalId);
}

void fillKiwiSaverDeductionList(Database &wage, ComboList &list, qint32 deductNameId)
{
    fill(wage, list,
         "SELECT DeductNames.* From DeductNames WHERE DeductNames.TaxName=\"kiwisaver\" "
         "ORDER BY DeductNames.Deductionname",
         deductNameId);
}

void fillEmployerRateList(Database &wage, ComboList &list, qint32 contributionNameId)
{
    fill(
        wage, list,
        "SELECT ContributionNames.ContributionNameID, ContributionNames.ContributionName, "
        "ContributionNames.TaxName From ContributionNames "
        "WHERE ContributionNames.TaxName=\"kiwisaver\" ORDER BY ContributionNames.ContributionName",
        contributionNameId);
}

void fillEnrolmentTypeList(Database &wage, ComboList &list, qint32 enrolTypeId)
{
    fill(wage, list, QStringLiteral("SELECT KiwiSaverEnrollType.* From KiwiSaverEnrollType"),
         enrolTypeId);
}

QHash<QString, bool> kiwiSaverMemberTypes(Database &wage)
{
    QHash<QString, bool> types;
    Recordset rs(wage, QStringLiteral("SELECT KSEnrollType, KSMember FROM KiwiSaverEnrollType"),
                 Recordset::Snapshot);
    for (; !rs.eof(); rs.moveNext())
        types.insert(rs.value(0).toString(), rs.value(1).toBool());
    return types;
}

qint32 defaultCashBankId()
{
    return g_defaultCashBank;
}

qint32 defaultEPaymentBankId()
{
    return g_defaultEPaymentBank;
}

void lookupDefaultBanks(Database &farm)
{
    g_defaultCashBank = firstBankId(farm, 0, 0);
    g_defaultEPaymentBank = firstBankId(farm, 1, FirstEPaymentBankId);
}

void resetDefaultBanks()
{
    g_defaultCashBank = 0;
    g_defaultEPaymentBank = 0;
}

bool fillBankList(Database &farm, ComboList &list, qint32 bankId)
{
    const bool ePayment = bankId >= FirstEPaymentBankId;
    const QString query =
        QStringLiteral("SELECT DISTINCTROW Banks.BanksID, Banks.Name From Banks ") +
        (ePayment ? QStringLiteral("WHERE Banks.BanksID>994 and AccountType = 1;")
                  : QStringLiteral("WHERE (((Banks.BanksID)<995));"));
    fill(farm, list, query, bankId);
    return ePayment;
}

void fillHeadingList(Database &farm, ComboList &list, qint32 headingId)
{
    FillDaoVBCombo(farm, list,
                   "SELECT DISTINCTROW [Secondary Codes].[Secondary Codes ID], "
                   "[Secondary Codes].[Cached Name] "
                   "FROM [Account Codes] INNER JOIN [Secondary Codes] ON [Account Codes].[Account "
                   "Code] = [Secondary Codes].[Main Code ID] "
                   "Where [Account Codes].[Show In CashBk] = True Order by [Cached Name]",
                   headingId, true, QStringLiteral("None"), false, true, false);
}

void fillEnterpriseList(Database &farm, ComboList &list, qint32 enterpriseCode)
{
    fill(farm, list, "SELECT DISTINCTROW Code, Name FROM [tbl No Enterprises] Order by Name;",
         enterpriseCode);
}

QString payRateUnitCaption(qint32 employeeTypeId, Database &wage)
{
    if (employeeTypeId <= 0)
        return QString();
    Recordset rs(
        wage,
        QStringLiteral(
            "Select distinctrow Unitofpay From EmployeeAwardType where EmployeeTypeID = ?"),
        {employeeTypeId}, Recordset::Snapshot);
    if (rs.eof())
        return QString();
    const QVariant unit = rs.value(0);
    setCurrentUnitOfPay(unit.isNull() ? QStringLiteral("Hour") : unit.toString());
    return Translate(QStringLiteral("Pay Rate (per |0|)"), {currentUnitOfPay()});
}
