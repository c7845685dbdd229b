// The Jet translator on any text, in both dialects. Properties: it raises nothing but
// CvError 3075; the cached translation matches the text returned; the FROM offset it
// reports points at a FROM keyword; any text quoted with quote() comes out as the same
// text in an SQL literal; a bound LIKE pattern leaves the FROM offset on its FROM.
#include "core/cverror.h"
#include "data/jetsql.h"
#include "fuzzcheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString jet = fuzzText(data, size);
    const QString quoted = JetSql::translate("SELECT * FROM T WHERE x = " + JetSql::quote(jet));
    QString literal = jet;
    literal.replace(u'\'', QStringLiteral("''"));
    fuzzCheck(quoted.endsWith(QStringLiteral(" = '") + literal + u'\''), "literal kept",
              jet + " -> " + quoted);

    for (const auto dialect : {JetSql::Dialect::Sqlite, JetSql::Dialect::Postgres}) {
        QString sql;
        try {
            sql = JetSql::translate(jet, dialect);
        } catch (const CvError &e) {
            fuzzCheck(e.number() == CvError::SyntaxError, "only error 3075", jet);
            return 0;
        }
        const auto t = JetSql::translation(jet, dialect);
        fuzzCheck(t && t->sql == sql, "cache agrees", jet);
        if (t->fromPos >= 0)
            fuzzCheck(sql.mid(t->fromPos, 4).compare(u"FROM", Qt::CaseInsensitive) == 0,
                      "FROM offset", jet + " -> " + sql);
        // Every bound LIKE with a pattern that has no LIKE equal (a digit class).
        QVariantList values;
        for (int i = 0; i < 64; ++i)
            values << QStringLiteral("#*");
        qsizetype from = t->fromPos;
        try {
            const QString bound = JetSql::bind(*t, values, &from);
            if (from >= 0)
                fuzzCheck(bound.mid(from, 4).compare(u"FROM", Qt::CaseInsensitive) == 0,
                          "FROM offset after binding", jet + " -> " + bound);
        } catch (const CvError &e) {
            fuzzCheck(e.number() == CvError::SyntaxError, "only error 3075", jet);
        }
    }
    return 0;
}
