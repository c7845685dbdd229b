#include "core/cverror.h"
#include "data/jetsql.h"

#include <gtest/gtest.h>

namespace {

QString tr(const char *jet)
{
    return JetSql::translate(QString::fromUtf8(jet));
}

} // namespace

TEST(JetSqlTest, DropsDistinctrowAndTheStarOfDelete)
{
    EXPECT_EQ(tr("SELECT DISTINCTROW a FROM t"), "SELECT a FROM t");
    EXPECT_EQ(tr("Select distinctrow * from t where x = 1"), "Select * from t where x = 1");
    EXPECT_EQ(tr("Delete * FROM T Where x=1"), "Delete FROM T Where x=1");
    EXPECT_EQ(tr("DELETE T.* FROM T WHERE x=1"), "DELETE FROM T WHERE x=1");
    EXPECT_EQ(tr("UPDATE DISTINCTROW T SET a = 1"), "UPDATE T SET a = 1");
}

TEST(JetSqlTest, TopBecomesLimitAfterOrderByAndWithoutSemicolon)
{
    EXPECT_EQ(tr("select top 1 a from t order by t.b;"),
              "select a from t order by \"t\".\"b\" LIMIT 1");
    EXPECT_EQ(tr("SELECT DISTINCTROW TOP 5 a FROM t ;  "), "SELECT a FROM t LIMIT 5");
    EXPECT_EQ(tr("SELECT a FROM t WHERE b IN (SELECT TOP 2 c FROM u ORDER BY c)"),
              "SELECT a FROM t WHERE b IN (SELECT c FROM u ORDER BY c LIMIT 2)");
    EXPECT_THROW(tr("SELECT TOP 10 PERCENT a FROM t"), CvError);
}

TEST(JetSqlTest, QuotesBracketedAndReservedNames)
{
    EXPECT_EQ(tr("SELECT [Cached Name] FROM [Secondary Codes]"),
              "SELECT \"Cached Name\" FROM \"Secondary Codes\"");
    EXPECT_EQ(tr("SELECT Order FROM TaxTypes ORDER BY TaxTypes.Order"),
              "SELECT \"Order\" FROM TaxTypes ORDER BY \"TaxTypes\".\"Order\"");
    EXPECT_EQ(tr("SELECT Wages.Date, Date FROM Wages GROUP BY Date"),
              "SELECT \"Wages\".\"Date\", \"Date\" FROM Wages GROUP BY \"Date\"");
    EXPECT_EQ(tr("SELECT Employees.[Datefinished] FROM Employees"),
              "SELECT \"Employees\".\"Datefinished\" FROM Employees");
    // A function keeps its name.
    EXPECT_EQ(tr("SELECT Count(*) FROM t"), "SELECT Count(*) FROM t");
}

TEST(JetSqlTest, StringLiteralsBecomeSingleQuotedAndStayUntouched)
{
    EXPECT_EQ(tr("SELECT a FROM t WHERE n = \"O'Brien\""), "SELECT a FROM t WHERE n = 'O''Brien'");
    EXPECT_EQ(tr("SELECT a FROM t WHERE n = \"say \"\"hi\"\"\""),
              "SELECT a FROM t WHERE n = 'say \"hi\"'");
    // Brackets, True, DISTINCTROW, * and & inside a literal are text, not syntax.
    EXPECT_EQ(tr("SELECT a FROM t WHERE n = \"[x] True DISTINCTROW * & False\""),
              "SELECT a FROM t WHERE n = '[x] True DISTINCTROW * & False'");
    EXPECT_EQ(tr("SELECT a FROM t WHERE n = 'it''s True'"),
              "SELECT a FROM t WHERE n = 'it''s True'");
    EXPECT_THROW(tr("SELECT a FROM t WHERE n = \"open"), CvError);
    EXPECT_THROW(tr("SELECT [open FROM t"), CvError);
}

TEST(JetSqlTest, BooleansConcatenationAndDates)
{
    EXPECT_EQ(tr("SELECT a FROM t WHERE (((t.f)=True)) AND g = false"),
              "SELECT a FROM t WHERE (((\"t\".\"f\")=-1)) AND g = 0");
    EXPECT_EQ(tr("SELECT a & \" \" & b FROM t"), "SELECT a || ' ' || b FROM t");
    EXPECT_EQ(tr("SELECT a FROM t WHERE d = #4/1/2010#"), "SELECT a FROM t WHERE d = 40269");
    EXPECT_EQ(tr("SELECT a FROM t WHERE d < #2010-04-01 12:00#"),
              "SELECT a FROM t WHERE d < 40269.5");
    EXPECT_THROW(tr("SELECT a FROM t WHERE d = #13/45/2010#"), CvError);
}

TEST(JetSqlTest, LikePatternsTakeSqliteWildcardsAndKeepLiteralPercent)
{
    EXPECT_EQ(tr("SELECT a FROM t WHERE n LIKE \"B*\""), "SELECT a FROM t WHERE n LIKE 'B%'");
    EXPECT_EQ(tr("SELECT a FROM t WHERE n Like \"?a*\""), "SELECT a FROM t WHERE n Like '_a%'");
    EXPECT_EQ(tr("SELECT a FROM t WHERE n LIKE \"100% W_*\""),
              "SELECT a FROM t WHERE n LIKE '100\\% W\\_%' ESCAPE '\\'");
    EXPECT_EQ(tr("SELECT a FROM t WHERE n LIKE \"a[*]b[?]c[#]*\""),
              "SELECT a FROM t WHERE n LIKE 'a*b?c#%'");
    // Only the pattern changes: a * elsewhere stays a star.
    EXPECT_EQ(tr("SELECT * FROM t WHERE n LIKE \"*\""), "SELECT * FROM t WHERE n LIKE '%'");
    EXPECT_THROW(tr("SELECT a FROM t WHERE n LIKE \"##*\""), CvError);
    EXPECT_THROW(tr("SELECT a FROM t WHERE n LIKE \"[a-c]*\""), CvError);
}

TEST(JetSqlTest, UpdateSetNamesColumnsWithoutTheirTable)
{
    EXPECT_EQ(tr("UPDATE DISTINCTROW Addresses SET Addresses.HeadingAccount = Null, "
                 "[Addresses].[notes] = \"x\" WHERE (((Addresses.AddressID)=37));"),
              "UPDATE Addresses SET \"HeadingAccount\" = Null, \"notes\" = 'x' WHERE "
              "(((\"Addresses\".\"AddressID\")=37))");
}

TEST(JetSqlTest, DescribesTheFirstTableOfASelect)
{
    auto t = JetSql::translation("SELECT DISTINCTROW e.EmployeeID, DeductNames.TaxName FROM "
                                 "EmployeeDeductions AS e INNER JOIN DeductNames ON "
                                 "e.DeductID = DeductNames.DeductNameID ");
    EXPECT_TRUE(t->isSelect);
    EXPECT_TRUE(t->isSimple);
    EXPECT_EQ(t->fromTable, "EmployeeDeductions");
    EXPECT_EQ(t->fromAlias, "e");
    EXPECT_EQ(t->sql.mid(t->fromPos, 4), "FROM");
    EXPECT_FALSE(JetSql::translation("SELECT DISTINCT a FROM t")->isSimple);
    EXPECT_FALSE(JetSql::translation("SELECT Count(*) FROM t")->isSimple);
    EXPECT_FALSE(JetSql::translation("SELECT a FROM t GROUP BY a")->isSimple);
}

TEST(JetSqlTest, QuotingHelpers)
{
    EXPECT_EQ(JetSql::quote("Bob \"The Builder\" O'Neil"), "\"Bob \"\"The Builder\"\" O'Neil\"");
    EXPECT_EQ(tr(qPrintable("SELECT a FROM t WHERE n = " + JetSql::quote("x\" OR 1=1 OR \""))),
              "SELECT a FROM t WHERE n = 'x\" OR 1=1 OR \"'");
    EXPECT_EQ(JetSql::likeLiteral("A*B?[#]"), "A[*]B[?][[][#]]");
    EXPECT_EQ(JetSql::quoteIdentifier("a\"b"), "\"a\"\"b\"");
}
