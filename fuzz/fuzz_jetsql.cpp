// The Jet-to-SQLite translator on any text. Properties: it raises nothing but
// CvError 3075; the cached translation matches the text returned; the FROM
// offset it reports points at a FROM keyword; any text quoted with quote()
// comes out as the same text in an SQLite literal.
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

    QString sql;
    try {
        sql = JetSql::translate(jet);
    } catch (const CvError &e) {
        fuzzCheck(e.number() == CvError::SyntaxError, "only error 3075", jet);
        return 0;
    }
    const auto t = JetSql::translation(jet);
    fuzzCheck(t && t->sql == sql, "cache agrees", jet);
    if (t->fromPos >= 0)
        fuzzCheck(sql.mid(t->fromPos, 4).compare(u"FROM", Qt::CaseInsensitive) == 0, "FROM offset",
                  jet + " -> " + sql);
    return 0;
}
