// Values as the data files hold them: money in ten-thousandths, serial dates, and Jet
// SQL translated for SQLite (literals, names, LIKE, TOP).
#include "data/jetsql.h"
#include "data/money.h"
#include "data/serialdate.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QLocale>

namespace {

const QLocale nz(QLocale::English, QLocale::NewZealand);

} // namespace

TEST(MoneyTest, ParsesAmountsRoundingHalfAwayFromZeroAtTheFourthDecimal)
{
    const std::pair<const char *, qint64> cases[] = {
        {" $1,234.50", 12345000},
        {"$-1,234.50", -12345000},
        {"($1,234.50)", -12345000},
        {".5", 5000},
        {"0.00005", 1},
        {"-0.00005", -1},
        {"0.000049999", 0},
        {"922337203685477.5807", std::numeric_limits<qint64>::max()}};
    for (const auto &[text, scaled] : cases)
        EXPECT_EQ(Money::parse(text, nz), Money::fromScaled(scaled)) << text;
    for (const char *bad : {"", "$", "1.2.3", "(-5)", "1.5,0", "922337203685477.5808"})
        EXPECT_FALSE(Money::parse(bad, nz).has_value()) << bad;
    EXPECT_EQ(Money::fromDouble(1.00005)->scaled(), 10001); // as written, not as stored
    EXPECT_FALSE(Money::fromDouble(1e300).has_value());
}

TEST(MoneyTest, FormatsAsTheLocaleCurrencyAndReadsItBack)
{
    EXPECT_EQ(Money::fromScaled(12345000).toString(nz), "$1,234.50");
    EXPECT_EQ(Money::fromScaled(-50).toString(nz), nz.toCurrencyString(-0.01)); // rounds away
    EXPECT_EQ(Money::fromScaled(49).toString(nz), "$0.00");
    EXPECT_EQ(Money::fromScaled(std::numeric_limits<qint64>::max()).toString(nz),
              "$922,337,203,685,477.58");
    const Money m = Money::fromScaled(-12345678900);
    EXPECT_EQ(Money::parse(m.toString(nz), nz), m) << m.toString(nz).toStdString();
    EXPECT_EQ(Money::fromScaled(251000).toPlainString(nz), "25.1");
    EXPECT_EQ(Money::fromScaled(-1).toPlainString(nz), "-0.0001");
}

TEST(SerialDateTest, CountsDaysFromTheZeroDateWithTheTimeAsFraction)
{
    EXPECT_EQ(SerialDate::fromDate(QDate(2010, 4, 1)), 40269.0);
    EXPECT_EQ(SerialDate::toDate(40269.99), QDate(2010, 4, 1));
    EXPECT_EQ(SerialDate::toDateTime(40269.5), QDateTime(QDate(2010, 4, 1), QTime(12, 0)));
    // Before day 0 the fraction still counts forward from midnight.
    EXPECT_EQ(SerialDate::fromDateTime(QDateTime(QDate(1899, 12, 29), QTime(6, 0))), -1.25);
    // A time a hair before midnight rounds to the next day, not to 24:00.
    EXPECT_EQ(SerialDate::toDateTime(40269.999999), QDateTime(QDate(2010, 4, 2), QTime(0, 0)));
    const QDateTime odd(QDate(2024, 2, 29), QTime(13, 37, 59));
    EXPECT_EQ(SerialDate::toDateTime(SerialDate::fromDateTime(odd)), odd);
}

TEST(SerialDateTest, ReadsTypedDatesInTheLocaleOrder)
{
    auto date = [](const char *text, const QLocale &l = nz) {
        const auto dt = SerialDate::parse(text, l);
        return dt ? dt->date() : QDate();
    };
    EXPECT_EQ(date("1/04/2010"), QDate(2010, 4, 1));
    EXPECT_EQ(date(" 01-04-10 "), QDate(2010, 4, 1));
    EXPECT_EQ(date("1.4.29"), QDate(2029, 4, 1));
    EXPECT_EQ(date("1.4.30"), QDate(1930, 4, 1));
    EXPECT_EQ(date("1-apr-2010"), QDate(2010, 4, 1));
    EXPECT_EQ(date("2010-04-01"), QDate(2010, 4, 1));
    EXPECT_EQ(date("4/1/2010", QLocale(QLocale::English, QLocale::UnitedStates)),
              QDate(2010, 4, 1));
    for (const char *bad : {"", "31/02/2010", "1/13/2010", "1/04", "10:30", "1/04/201"})
        EXPECT_FALSE(SerialDate::parse(bad, nz).has_value()) << bad;
    EXPECT_EQ(SerialDate::parse("1/04/2010 12:05 AM", nz)->time(), QTime(0, 5));

    // Shown back with a four-digit year, and read again as the same day.
    EXPECT_EQ(SerialDate::toShortText(QDate(2010, 4, 1), nz), "1/04/2010");
    EXPECT_EQ(date(SerialDate::toShortText(QDate(1930, 4, 1), nz).toUtf8().constData()),
              QDate(1930, 4, 1));
}

TEST(JetSqlTest, TranslatesTheJetDialect)
{
    const struct
    {
        const char *jet, *sqlite;
    } cases[] = {
        // DISTINCTROW and the star of DELETE go; TOP becomes a LIMIT after ORDER BY.
        {"Select distinctrow * from t where x = 1", "Select * from t where x = 1"},
        {"DELETE T.* FROM T WHERE x=1", "DELETE FROM T WHERE x=1"},
        {"select top 1 a from t order by t.b;", "select a from t order by \"t\".\"b\" LIMIT 1"},
        {"SELECT a FROM t WHERE b IN (SELECT TOP 2 c FROM u ORDER BY c)",
         "SELECT a FROM t WHERE b IN (SELECT c FROM u ORDER BY c LIMIT 2)"},
        // Bracketed, qualified and reserved names are quoted; a function keeps its name.
        {"SELECT [Cached Name] FROM [Secondary Codes]",
         "SELECT \"Cached Name\" FROM \"Secondary Codes\""},
        {"SELECT Order, Count(*) FROM TaxTypes ORDER BY TaxTypes.Order",
         "SELECT \"Order\", Count(*) FROM TaxTypes ORDER BY \"TaxTypes\".\"Order\""},
        // Literals: quotes doubled the SQLite way, text inside them untouched.
        {"SELECT a FROM t WHERE n = \"O'Brien\"", "SELECT a FROM t WHERE n = 'O''Brien'"},
        {"SELECT a FROM t WHERE n = \"say \"\"hi\"\"\"", "SELECT a FROM t WHERE n = 'say \"hi\"'"},
        {"SELECT a FROM t WHERE n = '[x] True * & it''s'",
         "SELECT a FROM t WHERE n = '[x] True * & it''s'"},
        {"SELECT a & \" \" FROM t WHERE (((t.f)=True)) AND g = false",
         "SELECT a || ' ' FROM t WHERE (((\"t\".\"f\")=-1)) AND g = 0"},
        {"SELECT a FROM t WHERE d < #2010-04-01 12:00# OR d = #4/1/2010#",
         "SELECT a FROM t WHERE d < 40269.5 OR d = 40269"},
        // LIKE: SQLite's wildcards where its LIKE agrees, a literal % or _ escaped...
        {"SELECT * FROM t WHERE n Like \"?a*\"", "SELECT * FROM t WHERE n Like '_a%'"},
        {"SELECT a FROM t WHERE n LIKE \"100% W_*\"",
         "SELECT a FROM t WHERE n LIKE '100\\% W\\_%' ESCAPE '\\'"},
        // ... and the registered MATCH where it would not: #, lists, letters beyond ASCII.
        {"SELECT a FROM t WHERE n NOT LIKE \"[a-c]#*\"",
         "SELECT a FROM t WHERE n NOT MATCH '[a-c]#*'"},
        // SQLite's SET names the column alone.
        {"UPDATE DISTINCTROW A SET A.H = Null, [A].[n] = \"x\" WHERE (((A.ID)=37));",
         "UPDATE A SET \"H\" = Null, \"n\" = 'x' WHERE (((\"A\".\"ID\")=37))"}};
    for (const auto &c : cases)
        EXPECT_EQ(JetSql::translate(QString::fromUtf8(c.jet)), QString::fromUtf8(c.sqlite))
            << c.jet;

    for (const char *bad :
         {"SELECT TOP 10 PERCENT a FROM t", "SELECT a FROM t WHERE n = \"open",
          "SELECT a FROM t WHERE d = #13/45/2010#", "SELECT a FROM t WHERE n LIKE '[a'"})
        EXPECT_EQ(errorOf([&] { JetSql::translate(bad); }), CvError::SyntaxError) << bad;
}

// What the server's dialect changes; that the answers agree, the server tests show.
TEST(JetSqlTest, TranslatesToTheServersDialect)
{
    const struct
    {
        const char *jet, *postgres;
    } cases[] = {
        // Names in the server's lower case; Nulls sorted first as Jet sorts them.
        {"SELECT [Cached Name] FROM [Secondary Codes] ORDER BY t.Order DESC, [Cached Name]",
         "SELECT \"cached name\" FROM \"secondary codes\" ORDER BY \"t\".\"order\" DESC NULLS "
         "LAST, \"cached name\" NULLS FIRST"},
        {"SELECT a FROM t WHERE b IN (SELECT TOP 2 c FROM u ORDER BY c) ORDER BY a",
         "SELECT a FROM t WHERE b IN (SELECT c FROM u ORDER BY c NULLS FIRST LIMIT 2) ORDER BY a "
         "NULLS FIRST"},
        // LIKE without regard to case; a pattern with no LIKE equal as a regular expression.
        {"SELECT a FROM t WHERE n LIKE \"100% W_*\"",
         "SELECT a FROM t WHERE n ILIKE '100\\% W\\_%' ESCAPE '\\'"},
        {"SELECT a FROM t WHERE n NOT LIKE \"[!a-c]#*\" AND m LIKE \"\u014c*\"",
         "SELECT a FROM t WHERE n  !~* '^[^a-c][0-9].*$' AND m ~* '^[\u014c\u014d].*$'"}};
    for (const auto &c : cases)
        EXPECT_EQ(JetSql::translate(QString::fromUtf8(c.jet), JetSql::Dialect::Postgres),
                  QString::fromUtf8(c.postgres))
            << c.jet;

    const auto t = JetSql::translation("SELECT a FROM t WHERE n NOT LIKE ? OR m LIKE ?",
                                       JetSql::Dialect::Postgres);
    QVariantList values{"#*", "B*"};
    qsizetype from = t->fromPos;
    EXPECT_EQ(JetSql::bind(*t, values, &from), "SELECT a FROM t WHERE n !~* ? OR m ILIKE ?");
    EXPECT_EQ(values, QVariantList({"^[0-9].*$", "B%"}));
    EXPECT_EQ(from, 9);
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
    EXPECT_FALSE(JetSql::translation("SELECT a FROM t GROUP BY a")->isSimple);
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
