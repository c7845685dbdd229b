#include "paydetails/employeedefaults.h"

#include "config/suiteconfig.h"
#include "core/cverror.h"
#include "data/database.h"
#include "data/recordset.h"

namespace {

// The new row becomes the current one, as after a move to the last modified.
void addSeedRow(Recordset &rs, std::initializer_list<std::pair<const char *, QVariant>> values)
{
    rs.addNew();
    for (const auto &[column, value] : values)
        rs.setValue(QString::fromLatin1(column), value);
    rs.update();
    rs.setBookmark(rs.lastModified());
}

} // namespace

qint32 DefaultEmployeeTypeID(Database &wage)
{
    Recordset rs(wage, QStringLiteral("EmployeeAwardType"));
    if (rs.eof())
        addSeedRow(rs, {{"EmployeeType", QStringLiteral("Shearer")},
                        {"Unitofpay", QStringLiteral("Head")}});
    return qint32(rs.value(QStringLiteral("EmployeetypeID")).toLongLong());
}

qint32 DefaultTaxTypeID(Database &wage)
{
    return DefaultTaxTypeID(wage, countryCode());
}

qint32 DefaultTaxTypeID(Database &wage, qint32 country)
{
    Recordset rs(wage,
                 QStringLiteral("select top 1 taxtypeid, Taxname, Order from TaxTypes where "
                                "CountryPhone = ? or CountryPhone=0 order by taxTypes.order"),
                 {country});
    if (rs.eof())
        addSeedRow(rs, {{"TaxName", QStringLiteral("General")}, {"Order", 0}});
    return qint32(rs.value(QStringLiteral("TaxTypeID")).toLongLong());
}

qint32 DefaultPayIntervalID(Database &wage)
{
    Recordset rs(wage, QStringLiteral("PayInterval"));
    if (rs.eof())
        addSeedRow(rs, {{"IntervalName", QStringLiteral("Weekly")},
                        {"NumberOfDays", 7},
                        {"PaysPerYear", 52.14},
                        {"Order", 1}});
    return qint32(rs.value(QStringLiteral("PayIntervalID")).toLongLong());
}

qint32 KiwiSaverDeductID(Database &wage, qint32 employeeId)
{
    Recordset rs(wage,
                 QStringLiteral("SELECT EmployeeDeductions.* From EmployeeDeductions "
                                "WHERE EmployeeDeductions.EmployeeID=? "
                                "AND EmployeeDeductions.TaxName=\"kiwisaver\""),
                 {employeeId}, Recordset::Snapshot);
    if (rs.eof())
        return 0;
    return qint32(rs.value(QStringLiteral("DeductID")).toLongLong());
}

bool IsKiwiSaverMemberType(Database &wage, const QString &enrolType)
{
    Recordset rs(wage,
                 QStringLiteral("SELECT KiwiSaverEnrollType.* From KiwiSaverEnrollType "
                                "WHERE KiwiSaverEnrollType.KSEnrollType=?"),
                 {enrolType}, Recordset::Snapshot);
    // No test for an empty result: an unknown type fails as no current record.
    return rs.value(QStringLiteral("KSMember")).toBool();
}
