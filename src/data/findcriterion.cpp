#include "data/findcriterion.h"

#include "core/cverror.h"
#include "data/jetlike.h"
#include "data/jetliteral.h"
#include "data/jetvalue.h"
#include "data/money.h"

namespace {

using Op = FindCriterion::Op;

class Reader
{
public:
    explicit Reader(const QString &text) : m_s(text) {}

    bool atEnd()
    {
        skipBlanks();
        return m_i >= m_s.size();
    }

    // Name, [Bracketed Name] or Table.Name.
    QString name()
    {
        skipBlanks();
        QString out;
        for (;;) {
            if (m_i < m_s.size() && m_s.at(m_i) == u'[') {
                const qsizetype close = m_s.indexOf(u']', m_i);
                if (close < 0)
                    error();
                out += m_s.mid(m_i + 1, close - m_i - 1);
                m_i = close + 1;
            } else {
                const qsizetype start = m_i;
                while (m_i < m_s.size() && isWordChar(m_s.at(m_i)))
                    ++m_i;
                if (m_i == start)
                    error();
                out += m_s.mid(start, m_i - start);
            }
            if (m_i >= m_s.size() || m_s.at(m_i) != u'.')
                return out;
            out += u'.';
            ++m_i;
        }
    }

    bool keyword(const char16_t *word)
    {
        skipBlanks();
        const QStringView w(word);
        if (m_s.mid(m_i, w.size()).compare(w, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype end = m_i + w.size();
        if (end < m_s.size() && isWordChar(m_s.at(end)))
            return false;
        m_i = end;
        return true;
    }

    Op op()
    {
        skipBlanks();
        static const std::pair<const char16_t *, Op> symbols[] = {
            {u"<>", Op::NotEqual}, {u"<=", Op::LessEqual}, {u">=", Op::GreaterEqual},
            {u"=", Op::Equal},     {u"<", Op::Less},       {u">", Op::Greater}};
        for (const auto &[text, op] : symbols) {
            const QStringView v(text);
            if (m_s.mid(m_i, v.size()) == v) {
                m_i += v.size();
                return op;
            }
        }
        if (keyword(u"LIKE"))
            return Op::Like;
        if (keyword(u"NOT") && keyword(u"LIKE"))
            return Op::NotLike;
        if (keyword(u"IS")) {
            const bool negate = keyword(u"NOT");
            if (!keyword(u"NULL"))
                error();
            return negate ? Op::NotNull : Op::IsNull;
        }
        error();
    }

    QVariant literal()
    {
        skipBlanks();
        if (m_i >= m_s.size())
            error();
        const QChar c = m_s.at(m_i);
        if (c == u'"' || c == u'\'') {
            const auto text = JetLiteral::readString(m_s, &m_i);
            if (!text)
                error();
            return *text;
        }
        if (c == u'#') {
            const auto serial = JetLiteral::readDate(m_s, &m_i);
            if (!serial)
                error();
            return *serial;
        }
        if (keyword(u"TRUE"))
            return true;
        if (keyword(u"FALSE"))
            return false;
        if (keyword(u"NULL"))
            return QVariant();
        const qsizetype start = m_i;
        if (c == u'-' || c == u'+')
            ++m_i;
        m_i = JetLiteral::numberEnd(m_s, m_i);
        const QVariant number = JetLiteral::numberValue(QStringView(m_s).mid(start, m_i - start));
        if (!number.isValid())
            error();
        return number;
    }

    [[noreturn]] void error() const
    {
        throw CvError(CvError::ExpressionError, "Recordset",
                      QStringLiteral("Syntax error in the criterion: %1").arg(m_s));
    }

private:
    static bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

    void skipBlanks()
    {
        while (m_i < m_s.size() && m_s.at(m_i).isSpace())
            ++m_i;
    }

    QString m_s;
    qsizetype m_i = 0;
};

int typeOf(const QVariant &v)
{
    return v.metaType().id();
}

// Compares a stored value with a literal by the field's type; false when they cannot
// be compared (a Null, or text against a number).
bool compare(const QVariant &cell, const QVariant &literal, const FieldInfo &f, int *result)
{
    if (cell.isNull() || !literal.isValid())
        return false;
    auto sign = [](auto a, auto b) { return a < b ? -1 : (b < a ? 1 : 0); };
    const bool literalText = typeOf(literal) == QMetaType::QString;
    if (f.type == JetType::Text || f.type == JetType::Memo || typeOf(cell) == QMetaType::QString) {
        *result = cell.toString().compare(literal.toString(), Qt::CaseInsensitive);
        return true;
    }
    if (f.type == JetType::Currency) {
        const auto amount = literalText ? Money::parse(literal.toString())
                            : typeOf(literal) == QMetaType::Double
                                ? Money::fromDouble(literal.toDouble())
                                : Money::fromWholeUnits(typeOf(literal) == QMetaType::Bool
                                                            ? JetValue::yesNo(literal.toBool())
                                                            : literal.toLongLong());
        if (!amount)
            return false;
        *result = sign(cell.toLongLong(), amount->scaled());
        return true;
    }
    if (typeOf(cell) == QMetaType::LongLong && typeOf(literal) == QMetaType::LongLong) {
        *result = sign(cell.toLongLong(), literal.toLongLong());
        return true;
    }
    double value = 0;
    if (typeOf(literal) == QMetaType::Bool) {
        value = JetValue::yesNo(literal.toBool());
    } else if (literalText) {
        bool ok = false;
        value = literal.toString().toDouble(&ok);
        if (!ok)
            return false;
    } else {
        value = literal.toDouble();
    }
    const double stored =
        f.type == JetType::YesNo ? JetValue::yesNo(JetValue::isTrue(cell)) : cell.toDouble();
    *result = sign(stored, value);
    return true;
}

} // namespace

std::vector<FindCriterion::Term> FindCriterion::parse(const QString &criterion)
{
    Reader reader(criterion);
    std::vector<Term> terms;
    do {
        Term t;
        t.column = reader.name();
        t.op = reader.op();
        if (t.op != Op::IsNull && t.op != Op::NotNull)
            t.literal = reader.literal();
        if ((t.op == Op::Like || t.op == Op::NotLike) && !JetLike::isValid(t.literal.toString()))
            reader.error();
        terms.push_back(t);
    } while (reader.keyword(u"AND"));
    if (!reader.atEnd())
        reader.error();
    return terms;
}

bool FindCriterion::matches(const QVariant &cell, const Term &t, const FieldInfo &f)
{
    switch (t.op) {
    case Op::IsNull:
        return cell.isNull();
    case Op::NotNull:
        return !cell.isNull();
    case Op::Like:
    case Op::NotLike:
        return !cell.isNull() &&
               JetLike::matches(cell.toString(), t.literal.toString()) == (t.op == Op::Like);
    default:
        break;
    }
    int c = 0;
    if (!compare(cell, t.literal, f, &c))
        return false;
    switch (t.op) {
    case Op::Equal:
        return c == 0;
    case Op::NotEqual:
        return c != 0;
    case Op::Less:
        return c < 0;
    case Op::LessEqual:
        return c <= 0;
    case Op::Greater:
        return c > 0;
    default:
        return c >= 0;
    }
}
