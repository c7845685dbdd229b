#include "support/errorof.h"
#include "support/qtprinters.h"

#include "data/jetsql.h"

#include <gtest/gtest.h>

TEST(JetSqlTest, TranslatesTheJetDialect)
{
    const struct
    {
        const char *jet, *sqlite;
    } cases[] = {
        // DISTINCTROW and the star of DELETE go; TOP becomes a LIMIT after ORDER BY.
        {"Select distinctrow * from t where x = 1", "Select * from t where x = 1"},
        {"DELETE T.* FROM T WHERE x=1", "DELETE FROM T WHERE x=1"},
        {"Delete * FROM T", "Delete FROM T"},
        {"select top 1 a from t order by t.b;", "select a from t order by \"t\".\"b\" LIMIT 1"},
        {"SELECT DISTINCTROW TOP 5 a FROM t ;  ", "SELECT a FROM t LIMIT 5"},
        {"SELECT a FROM t WHERE b IN (SELECT TOP 2 c FROM u ORDER BY c)",
         "SELECT a FROM t WHERE b IN (SELECT c FROM u ORDER BY c LIMIT 2)"},
        // Bracketed, qualified and reserved names are quoted; a function keeps its name.
        {"SELECT [Cached Name] FROM [Secondary Codes]",
         "SELECT \"Cached Name\" FROM \"Secondary Codes\""},
        {"SELECT Order, Count(*) FROM TaxTypes ORDER BY TaxTypes.Order",
         "SELECT \"Order\", Count(*) FROM TaxTypes ORDER BY \"TaxTypes\".\"Order\""},
        {"SELECT Date FROM Wages GROUP BY Date", "SELECT \"Date\" FROM Wages GROUP BY \"Date\""},
        {"SELECT Employees.[Datefinished] FROM Employees",
         "SELECT \"Employees\".\"Datefinished\" FROM Employees"},
        // Literals: quotes doubled the SQLite way, text inside them untouched.
        {"SELECT a FROM t WHERE n = \"O'Brien\"", "SELECT a FROM t WHERE n = 'O''Brien'"},
        {"SELECT a FROM t WHERE n = \"say \"\"hi\"\"\"", "SELECT a FROM t WHERE n = 'say \"hi\"'"},
        {"SELECT a FROM t WHERE n = '[x] True * & it''s'",
         "SELECT a FROM t WHERE n = '[x] True * & it''s'"},
        {"SELECT a & \" \" FROM t WHERE (((t.f)=True)) AND g = false",
         "SELECT a || ' ' FROM t WHERE (((\"t\".\"f\")=-1)) AND g = 0"},
        {"SELECT a FROM t WHERE d < #2010-04-01 12:00# OR d = #4/1/2010#",
         "SELECT a FROM t WHERE d < 40269.5 OR d = 40269"},
        {"SELECT a FROM t WHERE x = 1.5E-3", "SELECT a FROM t WHERE x = 1.5E-3"},
        // LIKE: SQLite's wildcards where its LIKE agrees, a literal % or _ escaped...
        {"SELECT * FROM t WHERE n Like \"?a*\"", "SELECT * FROM t WHERE n Like '_a%'"},
        {"SELECT a FROM t WHERE n LIKE \"100% W_*\"",
         "SELECT a FROM t WHERE n LIKE '100\\% W\\_%' ESCAPE '\\'"},
        {"SELECT a FROM t WHERE n LIKE \"a[*]b[?]c[#]*\"",
         "SELECT a FROM t WHERE n LIKE 'a*b?c#%'"},
        // ... and the registered MATCH where it would not: #, lists, letters beyond ASCII.
        {"SELECT a FROM t WHERE n NOT LIKE \"[a-c]#*\"",
         "SELECT a FROM t WHERE n NOT MATCH '[a-c]#*'"},
        {"SELECT a FROM t WHERE n LIKE \"ō*\"", "SELECT a FROM t WHERE n MATCH 'ō*'"},
        // SQLite's SET names the column alone.
        {"UPDATE DISTINCTROW A SET A.H = Null, [A].[n] = \"x\" WHERE (((A.ID)=37));",
         "UPDATE A SET \"H\" = Null, \"n\" = 'x' WHERE (((\"A\".\"ID\")=37))"}};
    for (const auto &c : cases)
        EXPECT_EQ(JetSql::translate(QString::fromUtf8(c.jet)), QString::fromUtf8(c.sqlite))
            << c.jet;

    for (const char *bad :
         {"SELECT TOP 10 PERCENT a FROM t", "SELECT a FROM t WHERE n = \"open",
          "SELECT [open FROM t", "SELECT a FROM t WHERE d = #13/45/2010#",
          "SELECT a FROM t WHERE d = #4/1/2010", "SELECT a FROM t WHERE n LIKE '[a'"})
        EXPECT_EQ(errorOf([&] { JetSql::translate(bad); }), CvError::SyntaxError) << bad;
}

TEST(JetSqlTest, DescribesTheFirstTableOfASelect)
{
    auto t = JetSql::translation("SELECT DISTINCTROW e.EmployeeID, DeductNames.TaxName FROM "
                                 "EmployeeDeductions AS e INNER JOIN DeductNames ON "
                                 "e.DeductID = DeductNames.DeductNameID ");
    EXPECT_TRUE(t->isSelect && t->isSimple);
    EXPECT_EQ(t->fromTable, "EmployeeDeductions");
    EXPECT_EQ(t->fromAlias, "e");
    EXPECT_EQ(t->sql.mid(t->fromPos, 4), "FROM");
    for (const char *notSimple :
         {"SELECT DISTINCT a FROM t", "SELECT Count(*) FROM t", "SELECT a FROM t GROUP BY a"})
        EXPECT_FALSE(JetSql::translation(notSimple)->isSimple) << notSimple;
}

TEST(JetSqlTest, BoundLikePatternsAreConvertedWhenBound)
{
    const auto t = JetSql::translation("SELECT (SELECT 1 FROM u WHERE u.n LIKE ?) AS x FROM t "
                                       "WHERE n LIKE ? AND m = ?");
    const struct
    {
        QString inner, outer, sql;
        QVariantList bound;
    } cases[] = {{"B*",
                  "_*",
                  "SELECT (SELECT 1 FROM u WHERE \"u\".\"n\" LIKE ?) AS x FROM t WHERE n LIKE ? "
                  "ESCAPE '\\' AND m = ?",
                  {"B%", "\\_%", "?"}},
                 {"#*",
                  "*",
                  "SELECT (SELECT 1 FROM u WHERE \"u\".\"n\" MATCH ?) AS x FROM t WHERE n LIKE ? "
                  "AND m = ?",
                  {"#*", "%", "?"}}};
    for (const auto &c : cases) {
        QVariantList values{c.inner, c.outer, "?"};
        qsizetype from = t->fromPos;
        EXPECT_EQ(JetSql::bind(*t, values, &from), c.sql);
        EXPECT_EQ(values, c.bound);
        EXPECT_EQ(c.sql.mid(from, 4), "FROM");
    }
    QVariantList bad{"x", "[a", 1};
    EXPECT_EQ(errorOf([&] { JetSql::bind(*t, bad); }), CvError::SyntaxError);
}

TEST(JetSqlTest, QuotingHelpers)
{
    EXPECT_EQ(JetSql::quote("Bob \"The Builder\" O'Neil"), "\"Bob \"\"The Builder\"\" O'Neil\"");
    EXPECT_EQ(JetSql::translate("SELECT a FROM t WHERE n = " + JetSql::quote("x\" OR 1=1 OR \"")),
              "SELECT a FROM t WHERE n = 'x\" OR 1=1 OR \"'");
    EXPECT_EQ(JetSql::likeLiteral("A*B?[#]"), "A[*]B[?][[][#]]");
    EXPECT_EQ(JetSql::quoteIdentifier("a\"b"), "\"a\"\"b\"");
}
