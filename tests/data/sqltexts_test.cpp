// The module's kinds of statement, run through the translator on the real schema and
// a known set of rows: each row of the table below fails when the translator gets one
// of Jet's forms wrong (a reserved name, True, Is Null, a join, TOP with ORDER BY).
#include "fixture.h"
#include "support/qtprinters.h"

#include "data/database.h"
#include "data/recordset.h"

#include <gtest/gtest.h>

namespace {

// One field of every row, as stored, in the recordset's order.
QStringList column(Database &db, const QString &jet, const QString &field)
{
    QStringList out;
    Recordset rs(db, jet);
    const int index = rs.fieldIndex(field);
    EXPECT_GE(index, 0) << field.toStdString();
    for (; index >= 0 && !rs.eof(); rs.moveNext())
        out << rs.storedValue(index).toString();
    return out;
}

} // namespace

TEST(SqlTextsTest, JetFormsRunOnTheSchema)
{
    TempSuite suite;
    Fixture::fill(suite);
    Database farm(suite.farmPath());
    Database wage(suite.wagePath());
    const struct
    {
        Database &db;
        QString jet, field;
        QStringList rows;
    } cases[] = {
        {farm,
         "SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName From Addresses "
         "WHERE (((Addresses.WageFlag)=True)) ORDER BY Addresses.busname;",
         "AddressID",
         {"40", "38", "37"}},
        {wage,
         "SELECT DISTINCTROW Employees.AddressID From Employees WHERE Employees.[Datefinished] "
         "Is Null Or Employees.[Datefinished]=0 ORDER BY Employees.AddressID;",
         "AddressID",
         {"37", "38"}},
        {wage,
         "SELECT DISTINCTROW Wages.Date FROM Employees INNER JOIN Wages ON "
         "Employees.EmployeeID = Wages.EmployeeID WHERE (((Employees.AddressID)=37));",
         "Date",
         {"40269"}},
        {farm,
         "SELECT DISTINCTROW [Secondary Codes].[Secondary Codes ID], [Secondary Codes].[Cached "
         "Name] FROM [Account Codes] INNER JOIN [Secondary Codes] ON [Account Codes].[Account "
         "Code] = [Secondary Codes].[Main Code ID] Where [Account Codes].[Show In CashBk] = True "
         "Order by [Cached Name]",
         "Secondary Codes ID",
         {"401002", "401001"}},
        {wage,
         "select top 1 taxtypeid, Taxname, Order from TaxTypes where CountryPhone = 55 or "
         "CountryPhone=0 order by taxTypes.order",
         "TaxTypeID",
         {"4"}}};
    for (const auto &c : cases)
        EXPECT_EQ(column(c.db, c.jet, c.field), c.rows) << c.jet.toStdString();

    // A row added through a join stores only its first table's columns.
    Recordset rs(wage, "SELECT DISTINCTROW EmployeeDeductions.EmployeeID, "
                       "EmployeeDeductions.DeductID, EmployeeDeductions.FixedAmount, "
                       "DeductNames.TaxName From EmployeeDeductions INNER JOIN DeductNames ON "
                       "EmployeeDeductions.DeductID = DeductNames.DeductNameID");
    rs.addNew();
    rs.setValue(0, 5);
    rs.setValue(1, 4);
    rs.setValue(2, "$12.50");
    rs.setValue(3, "Changed"); // the joined table's column: not stored
    rs.update();
    EXPECT_EQ(column(wage,
                     "SELECT FixedAmount, TaxName FROM EmployeeDeductions WHERE EmployeeID = 5 "
                     "AND DeductID = 4 ORDER BY FixedAmount",
                     "FixedAmount"),
              QStringList({"0", "125000"}));
    EXPECT_EQ(column(wage, "SELECT DeductNames.* From DeductNames WHERE DeductNames.DeductNameID=4",
                     "TaxName"),
              QStringList({"Child Support"}));
}
