#include "paydetails/paylists.h"

#include "controls/filldaovbcombo.h"
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/changelog.h"
#include "core/translate.h"

namespace {

// Shared by both hosts for the life of the program.
qint32 g_defaultCashBank = 0;
qint32 g_defaultEPaymentBank = 0;

qint32 firstBankId(Database &farm, int accountType, qint32 none)
{
    Recordset rs(farm,
                 "SELECT DISTINCTROW Banks.BanksID From Banks "
                 "Where AccountType = " +
                     QString::number(accountType) + " ORDER BY Banks.BanksID;",
                 Recordset::Snapshot);
    return rs.eof() ? none : qint32(rs.value(0).toLongLong());
}

} // namespace

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
    FillDaoVBCombo(farm, list, query, bankId, false, QString(), false, true, false);
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
    FillDaoVBCombo(farm, list,
                   "SELECT DISTINCTROW Code, Name FROM [tbl No Enterprises] Order by Name;",
                   enterpriseCode, false, QString(), false, true, false);
}

QString payRateUnitCaption(qint32 employeeTypeId, Database &wage)
{
    if (employeeTypeId <= 0)
        return QString();
    Recordset rs(wage,
                 "Select distinctrow Unitofpay From EmployeeAwardType where EmployeeTypeID = " +
                     QString::number(employeeTypeId),
                 Recordset::Snapshot);
    if (rs.eof())
        return QString();
    const QVariant unit = rs.value(0);
    setCurrentUnitOfPay(unit.isNull() ? QStringLiteral("Hour") : unit.toString());
    return Translate(QStringLiteral("Pay Rate (per |0|)"), {currentUnitOfPay()});
}
