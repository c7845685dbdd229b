#pragma once

#include "data/fieldinfo.h"

#include <QString>
#include <QVariant>
#include <vector>

// The criterion of Recordset::findFirst: comparisons "Column op value" joined by
// AND, op being =, <>, <, <=, >, >=, [Not] Like or Is [Not] Null, the value a number,
// "text" or 'text', a #date#, True, False or Null (literals read as the translator
// reads them, LIKE matched by JetLike).
class FindCriterion
{
public:
    enum class Op {
        Equal,
        NotEqual,
        Less,
        LessEqual,
        Greater,
        GreaterEqual,
        Like,
        NotLike,
        IsNull,
        NotNull
    };

    struct Term
    {
        QString column; // as written, brackets removed
        Op op = Op::Equal;
        QVariant literal; // qint64, double, QString, bool or invalid (Null)
    };

    // Throws CvError 3077 when the text is not such a criterion.
    static std::vector<Term> parse(const QString &criterion);

    // Whether a stored value meets a term, compared by the field's type. A Null
    // meets only Is Null; text never equals a number.
    static bool matches(const QVariant &stored, const Term &term, const FieldInfo &field);
};
