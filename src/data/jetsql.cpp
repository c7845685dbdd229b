#include "data/jetsql.h"

#include "core/cverror.h"
#include "data/jetlike.h"
#include "data/jetliteral.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <vector>

namespace {

const char *const Source = "JetSql";

enum class Kind { Space, Word, Number, String, Bracket, Date, Punct };

struct Token
{
    Kind kind;
    QString text; // as written; for strings and brackets the content, unescaped
    QString out;  // what goes into the SQLite text
    bool removed = false;
    int likeMarker = -1;  // LIKE ?: the token of its marker
    bool negated = false; // NOT LIKE
};

[[noreturn]] void syntaxError(const QString &what, const QString &jet)
{
    throw CvError(CvError::SyntaxError, Source, what + QStringLiteral(" in: ") + jet);
}

QString sqlString(const QString &value)
{
    QString s = value;
    s.replace(u'\'', QStringLiteral("''"));
    return u'\'' + s + u'\'';
}

bool isWordStart(QChar c)
{
    return c.isLetter() || c == u'_';
}
bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

std::vector<Token> tokenize(const QString &jet, JetSql::Dialect dialect)
{
    std::vector<Token> tokens;
    const qsizetype n = jet.size();
    qsizetype i = 0;
    auto push = [&](Kind kind, QString text, QString out) {
        tokens.push_back(Token{kind, std::move(text), std::move(out)});
    };
    while (i < n) {
        const QChar c = jet.at(i);
        const qsizetype start = i;
        if (c.isSpace()) {
            while (i < n && jet.at(i).isSpace())
                ++i;
            const QString s = jet.mid(start, i - start);
            push(Kind::Space, s, s);
        } else if (c == u'"' || c == u'\'') {
            const auto value = JetLiteral::readString(jet, &i);
            if (!value)
                syntaxError(QStringLiteral("Unterminated string"), jet);
            push(Kind::String, *value, sqlString(*value));
        } else if (c == u'[') {
            const qsizetype close = jet.indexOf(u']', i + 1);
            if (close < 0)
                syntaxError(QStringLiteral("Unterminated bracketed name"), jet);
            const QString name = jet.mid(i + 1, close - i - 1);
            i = close + 1;
            push(Kind::Bracket, name, JetSql::quoteIdentifier(name, dialect));
        } else if (c == u'#') {
            const auto serial = JetLiteral::readDate(jet, &i);
            if (i == start)
                syntaxError(QStringLiteral("Unterminated date"), jet);
            const QString content = jet.mid(start + 1, i - start - 2);
            if (!serial)
                syntaxError(QStringLiteral("Invalid date #%1#").arg(content), jet);
            push(Kind::Date, content, QString::number(*serial, 'g', 17));
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && jet.at(i + 1).isDigit() &&
                                   (tokens.empty() || (tokens.back().kind != Kind::Word &&
                                                       tokens.back().kind != Kind::Bracket)))) {
            i = JetLiteral::numberEnd(jet, i);
            const QString s = jet.mid(start, i - start);
            push(Kind::Number, s, s);
        } else if (isWordStart(c)) {
            while (i < n && isWordChar(jet.at(i)))
                ++i;
            const QString s = jet.mid(start, i - start);
            push(Kind::Word, s, s);
        } else {
            QString s(c);
            ++i;
            if (i < n) {
                const QString two = s + jet.at(i);
                if (two == u"<>" || two == u"<=" || two == u">=" || two == u"!=" || two == u"||") {
                    s = two;
                    ++i;
                }
            }
            push(Kind::Punct, s, s);
        }
    }
    return tokens;
}

bool is(const Token &t, const char16_t *word)
{
    return t.kind == Kind::Word && t.text.compare(QStringView(word), Qt::CaseInsensitive) == 0;
}

// A keyword as the statement uses it: a qualified word (a.From) has been
// written out as a quoted name and is no keyword.
bool isKeyword(const Token &t, const char16_t *word)
{
    return is(t, word) && t.out == t.text;
}

bool isPunct(const Token &t, const char16_t *p)
{
    return t.kind == Kind::Punct && t.text == p;
}

class Translator
{
public:
    Translator(const QString &jet, JetSql::Dialect dialect)
        : m_jet(jet), m_dialect(dialect), m_t(tokenize(jet, dialect))
    {
    }

    JetSql::Translation run()
    {
        JetSql::Translation result;
        result.dialect = m_dialect;
        const int first = next(-1);
        if (first < 0)
            return result;
        const QString verb = m_t[first].text.toUpper();
        result.isSelect = verb == u"SELECT";
        const bool isUpdate = verb == u"UPDATE";
        result.isSimple = result.isSelect;

        std::vector<QString> pendingLimit(1);
        // Per depth, the last token of the ORDER BY term being read (-1: none, -2: not
        // in an ORDER BY).
        std::vector<int> orderTerm(1, -2);
        int depth = 0;
        bool inSet = false;
        bool expectTarget = false;
        for (int i = 0; i < int(m_t.size()); ++i) {
            Token &t = m_t[i];
            if (t.removed)
                continue;
            if (m_dialect == JetSql::Dialect::Postgres && t.kind != Kind::Space)
                orderBy(i, depth, orderTerm);
            if (isPunct(t, u"(")) {
                ++depth;
                if (int(pendingLimit.size()) <= depth)
                    pendingLimit.resize(depth + 1);
                if (int(orderTerm.size()) <= depth)
                    orderTerm.resize(depth + 1);
                pendingLimit[depth].clear();
                orderTerm[depth] = -2;
                continue;
            }
            if (isPunct(t, u")")) {
                if (depth > 0 && !pendingLimit[depth].isEmpty())
                    t.out = QStringLiteral(" LIMIT ") + pendingLimit[depth] + t.out;
                depth = qMax(0, depth - 1);
                continue;
            }
            if (isPunct(t, u"&")) {
                t.out = QStringLiteral("||");
                continue;
            }
            if (isPunct(t, u",") && inSet && depth == 0) {
                expectTarget = true;
                continue;
            }
            if (expectTarget && (t.kind == Kind::Word || t.kind == Kind::Bracket)) {
                // SQLite's SET names the column alone: Addresses.HeadingAccount = ...
                expectTarget = false;
                if (isPunct(at(i + 1), u".") &&
                    (at(i + 2).kind == Kind::Word || at(i + 2).kind == Kind::Bracket)) {
                    t.removed = true;
                    m_t[i + 1].removed = true;
                    continue;
                }
            }
            if (t.kind != Kind::Word)
                continue;

            if (is(t, u"DISTINCTROW")) {
                removeWithSpace(i);
            } else if (is(t, u"SELECT")) {
                selectOptions(i, &pendingLimit[depth]);
            } else if (is(t, u"DELETE")) {
                deleteStar(i);
            } else if (is(t, u"LIKE")) {
                like(i);
            } else if (isUpdate && depth == 0 && is(t, u"SET")) {
                inSet = expectTarget = true;
            } else if (inSet && depth == 0 && is(t, u"WHERE")) {
                inSet = expectTarget = false;
            } else {
                nameOrKeyword(i);
            }
            if (result.isSelect && depth == 0)
                selectShape(i, &result);
        }
        if (!pendingLimit[0].isEmpty())
            m_limit = pendingLimit[0];
        if (!orderTerm.empty())
            endOrderTerm(orderTerm[0]);

        // Render, leaving out a trailing semicolon so that a LIMIT can follow.
        int last = int(m_t.size()) - 1;
        while (last >= 0 &&
               (m_t[last].removed || m_t[last].kind == Kind::Space || isPunct(m_t[last], u";")))
            --last;
        QString sql;
        sql.reserve(m_jet.size() + 16);
        depth = 0;
        int parameters = 0;
        int likeMarker = -1;
        qsizetype notAt = -1;
        for (int i = 0; i <= last; ++i) {
            const Token &t = m_t[i];
            if (isPunct(t, u"("))
                ++depth;
            else if (isPunct(t, u")"))
                --depth;
            if (t.removed)
                continue;
            if (result.isSelect && result.fromPos < 0 && depth == 0 && isKeyword(t, u"FROM"))
                result.fromPos = sql.size();
            if (isKeyword(t, u"NOT"))
                notAt = sql.size();
            if (t.likeMarker >= 0) {
                result.likeParameters.push_back({sql.size(), -1, -1, t.negated ? notAt : -1});
                likeMarker = t.likeMarker;
            }
            if (isPunct(t, u"?")) {
                if (i == likeMarker) {
                    result.likeParameters.back().markerAt = sql.size();
                    result.likeParameters.back().parameter = parameters;
                }
                ++parameters;
            }
            sql += t.out;
        }
        if (!m_limit.isEmpty())
            sql += QStringLiteral(" LIMIT ") + m_limit;
        result.sql = sql;
        return result;
    }

private:
    // PostgreSQL sorts Nulls last; Jet and SQLite first. Each ORDER BY term gets its
    // NULLS FIRST (NULLS LAST when descending) where it ends.
    void orderBy(int i, int depth, std::vector<int> &orderTerm)
    {
        const Token &t = m_t[i];
        int &term = orderTerm[depth];
        if (isKeyword(t, u"ORDER") && is(at(next(i)), u"BY")) {
            endOrderTerm(term);
            term = -3; // the BY comes next
            return;
        }
        if (term == -3) {
            term = -1;
            return;
        }
        if (term == -2)
            return;
        if (isPunct(t, u",") || isPunct(t, u")") || isPunct(t, u";") || isKeyword(t, u"LIMIT") ||
            isKeyword(t, u"UNION") || isKeyword(t, u"OFFSET")) {
            endOrderTerm(term);
            term = isPunct(t, u",") ? -1 : -2;
            return;
        }
        term = i;
    }

    void endOrderTerm(int term)
    {
        if (term < 0)
            return;
        m_t[term].out +=
            is(m_t[term], u"DESC") ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST");
    }

    const Token &at(int i) const
    {
        static const Token none{Kind::Space, QString(), QString()};
        return i >= 0 && i < int(m_t.size()) ? m_t[i] : none;
    }

    int next(int i) const
    {
        for (int j = i + 1; j < int(m_t.size()); ++j) {
            if (m_t[j].kind != Kind::Space && !m_t[j].removed)
                return j;
        }
        return -1;
    }

    void removeWithSpace(int i)
    {
        m_t[i].removed = true;
        if (i + 1 < int(m_t.size()) && m_t[i + 1].kind == Kind::Space)
            m_t[i + 1].removed = true;
    }

    // SELECT [DISTINCTROW|DISTINCT|ALL] TOP n: the TOP goes, its n becomes a LIMIT.
    void selectOptions(int i, QString *limit)
    {
        int j = next(i);
        while (j >= 0 &&
               (is(m_t[j], u"DISTINCTROW") || is(m_t[j], u"DISTINCT") || is(m_t[j], u"ALL"))) {
            if (is(m_t[j], u"DISTINCTROW"))
                removeWithSpace(j);
            j = next(j);
        }
        if (j < 0 || !is(m_t[j], u"TOP"))
            return;
        const int number = next(j);
        if (number < 0 || m_t[number].kind != Kind::Number)
            syntaxError(QStringLiteral("TOP without a number"), m_jet);
        const int after = next(number);
        if (after >= 0 && is(m_t[after], u"PERCENT"))
            syntaxError(QStringLiteral("TOP n PERCENT is not supported"), m_jet);
        *limit = m_t[number].text;
        for (int k = j; k < number; ++k)
            m_t[k].removed = true;
        removeWithSpace(number);
    }

    // DELETE * FROM and DELETE Table.* FROM: SQLite has no column list there.
    void deleteStar(int i)
    {
        const int j = next(i);
        if (j < 0)
            return;
        if (isPunct(m_t[j], u"*")) {
            removeWithSpace(j);
        } else if ((m_t[j].kind == Kind::Word || m_t[j].kind == Kind::Bracket) &&
                   isPunct(at(j + 1), u".") && isPunct(at(j + 2), u"*")) {
            m_t[j].removed = m_t[j + 1].removed = true;
            removeWithSpace(j + 2);
        }
    }

    // A pattern written in the statement is put into SQLite's terms now, or matched
    // by MATCH when SQLite's LIKE would answer differently; a bound one when its value
    // is known (JetSql::bind).
    void like(int i)
    {
        const bool postgres = m_dialect == JetSql::Dialect::Postgres;
        if (postgres)
            m_t[i].out = QStringLiteral("ILIKE");
        int before = i - 1;
        while (before >= 0 && (m_t[before].kind == Kind::Space || m_t[before].removed))
            --before;
        m_t[i].negated = before >= 0 && isKeyword(m_t[before], u"NOT");
        const int j = next(i);
        if (j >= 0 && isPunct(m_t[j], u"?")) {
            m_t[i].likeMarker = j;
            return;
        }
        if (j < 0 || m_t[j].kind != Kind::String)
            return;
        if (!JetLike::isValid(m_t[j].text))
            syntaxError(QStringLiteral("A [ without its ] in a LIKE pattern"), m_jet);
        bool escaped = false;
        const auto pattern = JetLike::toSqlite(m_t[j].text, &escaped);
        if (!pattern && postgres) {
            // A regular expression's NOT is its operator's: !~*.
            if (m_t[i].negated)
                m_t[before].out.clear();
            m_t[i].out = m_t[i].negated ? QStringLiteral("!~*") : QStringLiteral("~*");
            m_t[j].out = sqlString(JetLike::toRegex(m_t[j].text));
            return;
        }
        if (!pattern) {
            m_t[i].out = QStringLiteral("MATCH");
            return;
        }
        m_t[j].out = sqlString(*pattern);
        if (escaped)
            m_t[j].out += QStringLiteral(" ESCAPE '\\'");
    }

    // Words used as names where SQLite would read a keyword, and True/False.
    void nameOrKeyword(int i)
    {
        Token &t = m_t[i];
        const bool qualified = isPunct(at(i - 1), u".") || isPunct(at(i + 1), u".");
        if (qualified) {
            t.out = JetSql::quoteIdentifier(t.text, m_dialect);
            return;
        }
        const int j = next(i);
        const Token &after = at(j);
        if (is(t, u"TRUE")) {
            t.out = QStringLiteral("-1");
        } else if (is(t, u"FALSE")) {
            t.out = QStringLiteral("0");
        } else if ((is(t, u"ORDER") || is(t, u"GROUP")) && !is(after, u"BY")) {
            t.out = JetSql::quoteIdentifier(t.text, m_dialect);
        } else if ((is(t, u"DATE") || is(t, u"TIME")) && !isPunct(after, u"(")) {
            t.out = JetSql::quoteIdentifier(t.text, m_dialect);
        }
    }

    // What a top-level SELECT reads: its first table, and whether its rows are
    // rows of that table (so that they can be edited).
    void selectShape(int i, JetSql::Translation *r)
    {
        const Token &t = m_t[i];
        static const char16_t *const aggregates[] = {u"COUNT", u"SUM",   u"AVG", u"MIN",
                                                     u"MAX",   u"FIRST", u"LAST"};
        if (is(t, u"DISTINCT") || is(t, u"UNION") || (is(t, u"GROUP") && is(at(next(i)), u"BY")))
            r->isSimple = false;
        for (const char16_t *a : aggregates) {
            if (is(t, a) && isPunct(at(next(i)), u"("))
                r->isSimple = false;
        }
        if (!r->fromTable.isEmpty() || !isKeyword(t, u"FROM"))
            return;
        int j = next(i);
        while (j >= 0 && isPunct(m_t[j], u"("))
            j = next(j);
        if (j < 0 || (m_t[j].kind != Kind::Word && m_t[j].kind != Kind::Bracket)) {
            r->isSimple = false;
            return;
        }
        if (is(m_t[j], u"SELECT")) {
            r->isSimple = false;
            return;
        }
        r->fromTable = m_t[j].text;
        int k = next(j);
        if (k >= 0 && is(m_t[k], u"AS"))
            k = next(k);
        static const char16_t *const notAlias[] = {
            u"INNER", u"LEFT",  u"RIGHT",  u"JOIN",  u"OUTER", u"CROSS", u"WHERE",
            u"ORDER", u"GROUP", u"HAVING", u"UNION", u"ON",    u"LIMIT"};
        if (k >= 0 && (m_t[k].kind == Kind::Word || m_t[k].kind == Kind::Bracket)) {
            bool keyword = false;
            for (const char16_t *w : notAlias)
                keyword = keyword || is(m_t[k], w);
            if (!keyword)
                r->fromAlias = m_t[k].text;
        }
    }

    const QString m_jet;
    const JetSql::Dialect m_dialect;
    std::vector<Token> m_t;
    QString m_limit;
};

} // namespace

QString JetSql::translate(const QString &jetSql, Dialect dialect)
{
    return translation(jetSql, dialect)->sql;
}

std::shared_ptr<const JetSql::Translation> JetSql::translation(const QString &jetSql,
                                                               Dialect dialect)
{
    static QMutex mutex;
    static QHash<QString, std::shared_ptr<const Translation>> caches[2];
    auto &cache = caches[dialect == Dialect::Postgres ? 1 : 0];
    {
        QMutexLocker lock(&mutex);
        const auto it = cache.constFind(jetSql);
        if (it != cache.constEnd())
            return it.value();
    }
    auto result = std::make_shared<const Translation>(Translator(jetSql, dialect).run());
    QMutexLocker lock(&mutex);
    // Statements that embed identifiers vary without end; keep the cache bounded.
    if (cache.size() >= 4096)
        cache.clear();
    cache.insert(jetSql, result);
    return result;
}

QString JetSql::bind(const Translation &t, QVariantList &values, qsizetype *fromPos)
{
    QString sql = t.sql;
    for (auto it = t.likeParameters.rbegin(); it != t.likeParameters.rend(); ++it) {
        if (it->parameter >= values.size() || values.at(it->parameter).isNull())
            continue;
        const QString pattern = values.at(it->parameter).toString();
        if (!JetLike::isValid(pattern))
            syntaxError(QStringLiteral("A [ without its ] in the LIKE pattern ") + pattern, t.sql);
        bool escaped = false;
        const auto sqlite = JetLike::toSqlite(pattern, &escaped);
        qsizetype at = it->markerAt + 1;
        QString edit = QStringLiteral(" ESCAPE '\\'");
        if (sqlite) {
            values[it->parameter] = *sqlite;
            if (!escaped)
                continue;
            sql.insert(at, edit);
        } else if (t.dialect == Dialect::Postgres) {
            values[it->parameter] = JetLike::toRegex(pattern);
            // ILIKE becomes ~*, NOT ... ILIKE !~*.
            at = it->notAt >= 0 ? it->notAt : it->operatorAt;
            const qsizetype length = it->operatorAt + 5 - at;
            const QString op = it->notAt >= 0 ? QStringLiteral("!~*") : QStringLiteral("~*");
            sql.replace(at, length, op);
            if (fromPos && *fromPos > at)
                *fromPos -= length - op.size();
            continue;
        } else {
            at = it->operatorAt;
            edit = QStringLiteral("MATCH");
            sql.replace(at, 4, edit); // LIKE
            edit.chop(4);
        }
        if (fromPos && *fromPos > at)
            *fromPos += edit.size();
    }
    return sql;
}

QString JetSql::quote(const QString &value)
{
    QString s = value;
    s.replace(u'"', QStringLiteral("\"\""));
    return u'"' + s + u'"';
}

QString JetSql::likeLiteral(const QString &value)
{
    QString out;
    out.reserve(value.size());
    for (QChar c : value) {
        if (c == u'*' || c == u'?' || c == u'#' || c == u'[')
            out += u'[' + QString(c) + u']';
        else
            out += c;
    }
    return out;
}

QString JetSql::quoteIdentifier(const QString &name, Dialect dialect)
{
    QString s = dialect == Dialect::Postgres ? name.toLower() : name;
    s.replace(u'"', QStringLiteral("\"\""));
    return u'"' + s + u'"';
}
