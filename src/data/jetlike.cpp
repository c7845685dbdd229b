#include "data/jetlike.h"

#include <QList>
#include <sqlite3.h>

namespace JetLike {

namespace {

bool isAscii(char32_t c)
{
    return c < 0x80;
}

bool sameLetter(char32_t a, char32_t b)
{
    return a == b || (isAscii(a) == isAscii(b) && QChar::toCaseFolded(a) == QChar::toCaseFolded(b));
}

// Patterns and texts are compared by code point, as SQLite's _ counts characters.
using Text = QList<uint>; // what QStringView::toUcs4 gives

// Whether c meets the pattern element at p; moves p past it. p is not at a *.
bool matchOne(const Text &pattern, qsizetype &p, char32_t c)
{
    const char32_t pc = pattern.at(p);
    if (pc == U'?') {
        ++p;
        return true;
    }
    if (pc == U'#') {
        ++p;
        return QChar::isDigit(c);
    }
    if (pc != U'[') {
        ++p;
        return sameLetter(pc, c);
    }
    const qsizetype close = pattern.indexOf(U']', p + 1);
    if (close < 0)
        return false;
    qsizetype i = p + 1;
    p = close + 1;
    const bool negate = pattern.at(i) == U'!' && close - i > 1;
    if (negate)
        ++i;
    const char32_t folded = QChar::toCaseFolded(c);
    bool found = false;
    for (; i < close && !found; ++i) {
        if (i + 2 < close && pattern.at(i + 1) == U'-') {
            found = folded >= QChar::toCaseFolded(pattern.at(i)) &&
                    folded <= QChar::toCaseFolded(pattern.at(i + 2));
            i += 2;
        } else {
            found = sameLetter(pattern.at(i), c);
        }
    }
    return found != negate;
}

} // namespace

bool isValid(QStringView pattern)
{
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) == u'[') {
            i = pattern.indexOf(u']', i + 1);
            if (i < 0)
                return false;
        }
    }
    return true;
}

bool matches(QStringView textView, QStringView patternView)
{
    const Text text = textView.toUcs4();
    Text pattern = patternView.toUcs4();
    // [] stands for nothing.
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) != U'[')
            continue;
        const qsizetype close = pattern.indexOf(U']', i + 1);
        if (close == i + 1)
            pattern.remove(i--, 2);
        else if (close > i)
            i = close;
    }
    // Greedy, going back to the last * on a mismatch: linear for the usual patterns.
    qsizetype t = 0, p = 0, starP = -1, starT = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern.at(p) == U'*') {
            starP = ++p;
            starT = t;
            continue;
        }
        qsizetype next = p;
        if (p < pattern.size() && matchOne(pattern, next, text.at(t))) {
            p = next;
            ++t;
            continue;
        }
        if (starP < 0)
            return false;
        p = starP;
        t = ++starT;
    }
    while (p < pattern.size() && pattern.at(p) == U'*')
        ++p;
    return p == pattern.size();
}

std::optional<QString> toSqlite(QStringView patternView, bool *escaped)
{
    const Text pattern = patternView.toUcs4();
    QString out;
    auto literal = [&](char32_t c) {
        if (!isAscii(c) || c == 0) // SQLite's LIKE ends its texts at a NUL
            return false;
        if (c == U'%' || c == U'_' || c == U'\\') {
            out += u'\\';
            *escaped = true;
        }
        out += QChar(c);
        return true;
    };
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char32_t c = pattern.at(i);
        if (c == U'*') {
            out += u'%';
        } else if (c == U'?') {
            out += u'_';
        } else if (c == U'#') {
            return std::nullopt;
        } else if (c == U'[') {
            const qsizetype close = pattern.indexOf(U']', i + 1);
            if (close == i + 1) { // []: nothing
                i = close;
                continue;
            }
            // [*] [?] [#] [[] [!] stand for the character; a longer list has no equal.
            if (close != i + 2 || !literal(pattern.at(i + 1)))
                return std::nullopt;
            i = close;
        } else if (!literal(c)) {
            return std::nullopt;
        }
    }
    return out;
}

namespace {

// A character as the regular expression's literal, with its other cases when it is not
// ASCII (the "C" collation's ~* folds ASCII only).
QString regexLiteral(char32_t c, bool inList, bool otherCases = true)
{
    QString out;
    auto one = [&](char32_t ch) {
        if (isAscii(ch) && !QChar::isLetterOrNumber(ch) && ch != U' ')
            out += u'\\';
        out += QString::fromUcs4(&ch, 1);
    };
    one(c);
    if (!isAscii(c) && otherCases) {
        for (const char32_t other :
             {QChar::toUpper(c), QChar::toLower(c), QChar::toCaseFolded(c)}) {
            if (!isAscii(other) && !out.contains(QString::fromUcs4(&other, 1)))
                one(other);
        }
    }
    if (out.size() > 1 && !inList && !(out.size() == 2 && out.at(0) == u'\\'))
        out = u'[' + out + u']';
    return out;
}

} // namespace

QString toRegex(QStringView patternView)
{
    const Text pattern = patternView.toUcs4();
    QString out = QStringLiteral("^");
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char32_t c = pattern.at(i);
        if (c == U'*') {
            out += QStringLiteral(".*");
        } else if (c == U'?') {
            out += u'.';
        } else if (c == U'#') {
            out += QStringLiteral("[0-9]");
        } else if (c == U'[') {
            const qsizetype close = pattern.indexOf(U']', i + 1);
            qsizetype j = i + 1;
            i = close;
            if (close == j) // []: nothing
                continue;
            QString list;
            const bool negate = pattern.at(j) == U'!' && close - j > 1;
            if (negate)
                ++j;
            for (; j < close; ++j) {
                if (j + 2 < close && pattern.at(j + 1) == U'-') {
                    list += regexLiteral(pattern.at(j), true, false) + u'-' +
                            regexLiteral(pattern.at(j + 2), true, false);
                    j += 2;
                } else {
                    list += regexLiteral(pattern.at(j), true);
                }
            }
            out += (negate ? QStringLiteral("[^") : QStringLiteral("[")) + list + u']';
        } else {
            out += regexLiteral(c, false);
        }
    }
    return out + u'$';
}

namespace {

QString argument(sqlite3_value *value)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return QString::fromUtf8(text, sqlite3_value_bytes(value));
}

// match(pattern, text), as SQLite calls it for "text MATCH pattern"; Null when either
// is Null, as LIKE gives.
void matchFunction(sqlite3_context *context, int, sqlite3_value **args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL || sqlite3_value_type(args[1]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    const QString pattern = argument(args[0]);
    if (!isValid(pattern))
        return sqlite3_result_error(context, "Invalid LIKE pattern: a [ without its ]", -1);
    sqlite3_result_int(context, matches(argument(args[1]), pattern) ? 1 : 0);
}

} // namespace

void registerMatch(sqlite3 *handle)
{
    // In the files' own encoding: SQLite's match() of that encoding would be chosen
    // over one in another.
    sqlite3_create_function_v2(handle, "match", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                               matchFunction, nullptr, nullptr, nullptr);
}

} // namespace JetLike
