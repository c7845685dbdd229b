// Every statement the module issues, as written in the module, run through the
// translator against the real schema and a known set of rows.
#include "fixture.h"
#include "support/qtprinters.h"

#include "data/database.h"
#include "data/jetsql.h"
#include "data/money.h"
#include "data/recordset.h"

#include <gtest/gtest.h>

namespace {

// One field of every row, as stored, in the recordset's order.
QStringList column(Database &db, const QString &jet, const QString &field)
{
    SCOPED_TRACE(jet.toStdString());
    QStringList out;
    Recordset rs(db, jet);
    const int index = rs.fieldIndex(field);
    EXPECT_GE(index, 0) << field.toStdString();
    for (; index >= 0 && !rs.eof(); rs.moveNext())
        out << rs.storedValue(index).toString();
    return out;
}

QStringList sorted(QStringList l)
{
    l.sort();
    return l;
}

} // namespace

TEST(SqlTextsTest, EveryStatementOfTheModuleRunsOnTheSchema)
{
    TempSuite suite;
    Fixture::fill(suite);
    Database farm(suite.farmPath());
    Database wage(suite.wagePath());
    const QString kiwisaver = JetSql::quote("kiwisaver");

    // The address window's data sources.
    EXPECT_EQ(column(farm, "select * from Addresses order by busname", "AddressID"),
              QStringList({"40", "42", "43", "39", "38", "37", "41"}));
    EXPECT_EQ(column(farm, "select * from Addresses", "AddressID").size(), 7);
    EXPECT_EQ(column(wage, "select * from Employees", "EmployeeID"), QStringList({"5", "6", "7"}));
    EXPECT_EQ(sorted(column(farm,
                            "SELECT DISTINCTROW Addresses.* From Addresses"
                            " WHERE (((Addresses.WageFlag)=True));",
                            "AddressID")),
              QStringList({"37", "38", "40"}));
    EXPECT_EQ(column(farm, "SELECT DISTINCTROW Addresses.* From Addresses;", "AddressID").size(),
              7);

    // The name list: employee mode, current employees, the letter filter.
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName "
                     "From Addresses "
                     "WHERE (((Addresses.WageFlag)=True)) "
                     "ORDER BY Addresses.busname;",
                     "AddressID"),
              QStringList({"40", "38", "37"}));
    EXPECT_EQ(column(wage,
                     "SELECT DISTINCTROW Employees.AddressID "
                     "From Employees "
                     "WHERE Employees.[Datefinished] Is Null Or Employees.[Datefinished]=0 "
                     "ORDER BY Employees.AddressID;",
                     "AddressID"),
              QStringList({"37", "38"}));
    auto byLetter = [&](const QString &filter) {
        return column(farm,
                      "SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName "
                      "FROM Addresses "
                      "WHERE Addresses.busname LIKE \"" +
                          filter +
                          "\" "
                          "ORDER BY Addresses.busname;",
                      "AddressID");
    };
    EXPECT_EQ(byLetter("B*"), QStringList({"38", "37"}));
    EXPECT_EQ(byLetter("*"), QStringList({"42", "43", "39", "38", "37", "41"}));
    EXPECT_EQ(byLetter("100% W*"), QStringList({"42"})); // % and _ are not wildcards in Jet
    EXPECT_EQ(column(farm,
                     "SELECT Addresses.AddressID FROM Addresses WHERE Addresses.busname LIKE " +
                         JetSql::quote(JetSql::likeLiteral("O'Brien \"Big\"") + "*"),
                     "AddressID"),
              QStringList({"41"}));

    // Whether an entry may be deleted.
    EXPECT_EQ(column(wage,
                     "SELECT DISTINCTROW Wages.Date "
                     "FROM Employees INNER JOIN Wages ON Employees.EmployeeID = Wages.EmployeeID "
                     "WHERE (((Employees.AddressID)=37));",
                     "Date"),
              QStringList({"40269"}));
    EXPECT_TRUE(Recordset(wage, "SELECT DISTINCTROW Wages.Date FROM Employees INNER JOIN Wages ON "
                                "Employees.EmployeeID = Wages.EmployeeID WHERE "
                                "(((Employees.AddressID)=38));")
                    .eof());
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Transactions.Date "
                     "FROM Transactions "
                     "WHERE (((Transactions.AddressID)=37));",
                     "Date")
                  .size(),
              2);

    // Adding an entry through the window's record source, then its employee row.
    {
        Recordset rs(farm, "select * from Addresses order by busname");
        rs.addNew();
        rs.setValue("busname", "Cole Contracting");
        rs.setValue("contactlastname", "Contracting");
        rs.setValue("WageFlag", true);
        rs.update();
        rs.setBookmark(rs.lastModified());
        EXPECT_EQ(rs.value("AddressID").toInt(), 44);
        EXPECT_EQ(rs.value("BusinessFlag"), QVariant(false)); // the table's default

        Recordset employees(wage, "select * from Employees");
        employees.addNew();
        employees.setValue("AddressID", 44);
        employees.setValue("EmployeetypeID", 1);
        employees.update();
        EXPECT_EQ(column(wage, "Select Distinctrow * from Employees where AddressID = 44",
                         "EmployeeTypeID"),
                  QStringList({"1"}));
    }
    // Deleting the current entry of the window's record source.
    {
        Recordset rs(farm, "select * from Addresses order by busname");
        ASSERT_TRUE(rs.findFirst("AddressID = 39"));
        rs.remove();
        rs.moveNext();
        EXPECT_EQ(rs.value("AddressID").toInt(), 38);
        EXPECT_TRUE(
            Recordset(farm, "Select distinctrow * from Addresses where addressid = 39").eof());
    }

    // Notes: load and save (the change log appends with its own statement, tested with it).
    EXPECT_EQ(column(farm, "Select distinctrow notes from Addresses where addressid = 37", "notes"),
              QStringList({"first line"}));
    {
        Recordset rs(farm, "Select distinctrow * from Addresses where addressid = 37");
        rs.edit();
        rs.setValue("notes", "saved");
        rs.update();
    }
    EXPECT_EQ(column(farm, "Select distinctrow notes from Addresses where addressid = 37", "notes"),
              QStringList({"saved"}));
    EXPECT_EQ(column(farm, "Select distinctrow notes from Addresses where addressid = 38", "notes"),
              QStringList({""})); // Null

    // The cashbook heading of an entry.
    EXPECT_EQ(farm.execute("UPDATE DISTINCTROW Addresses SET Addresses.HeadingAccount = Null "
                           "WHERE (((Addresses.AddressID)=37));"),
              1);
    EXPECT_EQ(farm.execute("UPDATE DISTINCTROW Addresses SET Addresses.HeadingAccount = 401002 "
                           "WHERE (((Addresses.AddressID)=38));"),
              1);
    EXPECT_EQ(column(farm, "SELECT AddressID, HeadingAccount FROM Addresses WHERE AddressID < 39",
                     "HeadingAccount"),
              QStringList({"", "401002"}));

    // Banks, headings and enterprises.
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Banks.BanksID From Banks "
                     "Where AccountType = 0 ORDER BY Banks.BanksID;",
                     "BanksID"),
              QStringList({"1", "2", "997"}));
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Banks.BanksID From Banks "
                     "Where AccountType = 1 ORDER BY Banks.BanksID;",
                     "BanksID"),
              QStringList({"995", "996"}));
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Banks.BanksID, Banks.Name From Banks "
                     "WHERE (((Banks.BanksID)<995));",
                     "Name"),
              QStringList({"Cheque account", "Savings"}));
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW Banks.BanksID, Banks.Name From Banks "
                     "WHERE Banks.BanksID>994 and AccountType = 1;",
                     "BanksID"),
              QStringList({"995", "996"}));
    EXPECT_EQ(column(farm,
                     "SELECT DISTINCTROW [Secondary Codes].[Secondary Codes ID], "
                     "[Secondary Codes].[Cached Name] "
                     "FROM [Account Codes] INNER JOIN [Secondary Codes] ON "
                     "[Account Codes].[Account Code] = [Secondary Codes].[Main Code ID] "
                     "Where [Account Codes].[Show In CashBk] = True Order by [Cached Name]",
                     "Secondary Codes ID"),
              QStringList({"401002", "401001"}));
    EXPECT_EQ(column(farm, "SELECT DISTINCTROW Code, Name FROM [tbl No Enterprises] Order by Name;",
                     "Code"),
              QStringList({"2", "3", "1"}));
    EXPECT_EQ(column(farm, "PayeInfo", "WageAccount"), QStringList({"401002"}));

    // The employee row and the editor's lists.
    EXPECT_EQ(
        column(wage, "Select Distinctrow * from Employees where AddressID = 37", "EmployeeID"),
        QStringList({"5"}));
    EXPECT_EQ(column(wage,
                     "Select distinctrow EmployeeTypeID, EmployeeType from EmployeeAwardType "
                     "ORDER BY Employeetype;",
                     "EmployeeTypeID"),
              QStringList({"2", "1"}));
    EXPECT_EQ(column(wage,
                     "Select distinctrow TaxTypeID, TaxName from TaxTypes where CountryPhone = 64"
                     " or CountryPhone=0 ORDER BY TaxTypes.Order",
                     "TaxTypeID"),
              QStringList({"2", "1", "4"}));
    EXPECT_EQ(column(wage,
                     "Select distinctrow PayIntervalID, IntervalName from PayInterval "
                     "ORDER BY PayInterval.order;",
                     "PayIntervalID"),
              QStringList({"2", "1"}));
    EXPECT_EQ(
        column(wage, "SELECT KiwiSaverEnrollType.* From KiwiSaverEnrollType", "KSEnrollTypeID"),
        QStringList({"1", "2", "3"}));
    EXPECT_EQ(column(wage,
                     "SELECT DeductNames.* From DeductNames WHERE DeductNames.TaxName=" +
                         kiwisaver + " ORDER BY DeductNames.Deductionname",
                     "DeductNameID"),
              QStringList({"1", "2"}));
    EXPECT_EQ(column(wage,
                     "SELECT ContributionNames.ContributionNameID, "
                     "ContributionNames.ContributionName, ContributionNames.TaxName "
                     "From ContributionNames WHERE ContributionNames.TaxName=" +
                         kiwisaver + " ORDER BY ContributionNames.ContributionName",
                     "ContributionNameID"),
              QStringList({"1", "2"}));

    // The lookups and their seed rows.
    EXPECT_EQ(column(wage, "EmployeeAwardType", "EmployeeTypeID").value(0), "1");
    EXPECT_EQ(column(wage, "PayInterval", "PayIntervalID").value(0), "1");
    auto defaultTaxType = [](const QString &country) {
        return "select top 1 taxtypeid, Taxname, Order from TaxTypes where CountryPhone = " +
               country + " or CountryPhone=0 order by taxTypes.order";
    };
    EXPECT_EQ(column(wage, defaultTaxType("64"), "TaxTypeID"), QStringList({"2"}));
    EXPECT_EQ(column(wage, defaultTaxType("55"), "TaxTypeID"), QStringList({"4"}));
    suite.execWage("DELETE FROM TaxTypes WHERE CountryPhone = 0");
    {
        Recordset rs(wage, defaultTaxType("598"));
        ASSERT_TRUE(rs.eof());
        rs.addNew();
        rs.setValue("TaxName", "General");
        rs.setValue("Order", 0);
        rs.update();
        rs.setBookmark(rs.lastModified());
        EXPECT_EQ(rs.value("TaxTypeID").toInt(), 5);
        EXPECT_EQ(column(wage, defaultTaxType("598"), "TaxName"), QStringList({"General"}));
    }
    EXPECT_EQ(column(wage,
                     "SELECT EmployeeDeductions.* From EmployeeDeductions "
                     "WHERE EmployeeDeductions.EmployeeID=5 AND EmployeeDeductions.TaxName=" +
                         kiwisaver,
                     "DeductID"),
              QStringList({"1"}));
    auto member = [&](const QString &name) {
        Recordset rs(wage, "SELECT KiwiSaverEnrollType.* From KiwiSaverEnrollType "
                           "WHERE KiwiSaverEnrollType.KSEnrollType=" +
                               JetSql::quote(name));
        return rs.value("KSMember").toBool();
    };
    EXPECT_TRUE(member("Opted in"));
    EXPECT_TRUE(member("auto enrolled")); // stored as 1: any non-zero is true
    EXPECT_FALSE(member("Not a member"));
    EXPECT_EQ(column(wage,
                     "Select distinctrow Unitofpay From EmployeeAwardType where "
                     "EmployeeTypeID = 2",
                     "Unitofpay"),
              QStringList({"Hour"}));

    // The deductions grid.
    const QString base = "SELECT DISTINCTROW EmployeeDeductions.EmployeeID, "
                         "EmployeeDeductions.DeductID, EmployeeDeductions.FixedAmount, "
                         "EmployeeDeductions.SpecialRate, DeductNames.TaxName "
                         "From EmployeeDeductions "
                         "INNER JOIN DeductNames ON EmployeeDeductions.DeductID = "
                         "DeductNames.DeductNameID ";
    const QString rows = base + "WHERE EmployeeID=5 AND DeductID > 0 AND DeductNames.TaxName <> " +
                         JetSql::quote("KiwiSaver") +
                         " OR EmployeeID=5 AND DeductID > 0 AND DeductNames.TaxName is Null";
    EXPECT_EQ(sorted(column(wage, rows, "DeductID")), QStringList({"3", "4"}));
    EXPECT_EQ(column(wage,
                     "select DeductNameID, DeductionName from DeductNames where "
                     "DeductNames.TaxName <> " +
                         JetSql::quote("KiwiSaver") +
                         " Or DeductNames.CountryPhone = 0 Or DeductNames.CountryPhone = 64"
                         " And TaxName Is Null ORDER BY DeductNames.Deductionname",
                     "DeductNameID"),
              QStringList({"4", "3"}));
    EXPECT_EQ(
        column(wage, "Select distinctrow DeductNameID, Percentage from DeductNames", "Percentage")
            .value(2),
        "2.5");
    EXPECT_EQ(column(wage, "SELECT DeductNames.* From DeductNames WHERE DeductNames.DeductNameID=3",
                     "percentage"),
              QStringList({"2.5"}));
    EXPECT_EQ(column(wage,
                     "SELECT ContributionNames.* From ContributionNames "
                     "WHERE ContributionNames.ContributionNameID=2",
                     "percentage"),
              QStringList({"4"}));

    // Saving: KiwiSaver rows by delete and add, then the grid's rows.
    EXPECT_EQ(wage.execute("Delete * FROM EmployeeDeductions Where EmployeeID=5 AND TaxName=" +
                           kiwisaver),
              1);
    {
        Recordset rs(wage, "EmployeeDeductions");
        rs.addNew();
        rs.setValue("EmployeeID", 5);
        rs.setValue("DeductID", 2);
        rs.setValue("FixedAmount", 0);
        rs.setValue("SpecialRate", 4);
        rs.setValue("TaxName", "KiwiSaver");
        rs.update();
    }
    EXPECT_EQ(wage.execute("Delete * FROM EmployerContributions Where EmployeeID=5 AND TaxName=" +
                           kiwisaver),
              1);
    EXPECT_EQ(column(wage, "EmployerContributions", "EmployeeID"), QStringList({"6"}));
    EXPECT_EQ(wage.execute("Delete * FROM EmployeeDeductions Where EmployeeID=5 AND TaxName is "
                           "null"),
              2);
    {
        Recordset rs(wage, base);
        rs.addNew();
        rs.setValue(0, 5);
        rs.setValue(1, 4);
        rs.setValue(2, "$12.50");
        rs.setValue(3, 0);
        rs.setValue(4, "Child Support"); // the joined table's column: not stored
        rs.update();
    }
    EXPECT_EQ(column(wage,
                     "SELECT DeductID, FixedAmount, TaxName FROM EmployeeDeductions WHERE "
                     "EmployeeID = 5 ORDER BY DeductID",
                     "FixedAmount"),
              QStringList({"0", "125000"}));
    EXPECT_EQ(column(wage, rows, "DeductID"), QStringList({"4"}));
    EXPECT_EQ(column(wage,
                     "SELECT EmployeeDeductions.* From EmployeeDeductions "
                     "WHERE EmployeeDeductions.EmployeeID=5 AND EmployeeDeductions.TaxName=" +
                         kiwisaver,
                     "DeductID"),
              QStringList({"2"}));
}
