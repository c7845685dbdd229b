#include "data/jettype.h"

JetType jetTypeFromDeclared(const QString &declared, int *size)
{
    if (size)
        *size = 0;
    const QString decl = declared.trimmed().toUpper();
    // The leading word decides: "MEMO TEXT" is a memo, "TEXT(25)" a text.
    qsizetype end = 0;
    while (end < decl.size() && decl.at(end).isLetter())
        ++end;
    const QString word = decl.left(end);
    if (word == u"TEXT" || word == u"VARCHAR" || word == u"CHAR") {
        const qsizetype open = decl.indexOf(u'(');
        const qsizetype close = decl.indexOf(u')', open);
        if (open >= 0 && close > open && size) {
            bool ok = false;
            const int n = decl.mid(open + 1, close - open - 1).trimmed().toInt(&ok);
            *size = ok && n > 0 ? n : 0;
        }
        return JetType::Text;
    }
    if (word == u"MEMO")
        return JetType::Memo;
    if (word == u"LONG" || word == u"INTEGER" || word == u"INT")
        return JetType::Long;
    if (word == u"SHORT" || word == u"SMALLINT")
        return JetType::Short;
    if (word == u"CURRENCY" || word == u"MONEY")
        return JetType::Currency;
    if (word == u"DATETIME" || word == u"DATE")
        return JetType::DateTime;
    if (word == u"YESNO" || word == u"BIT" || word == u"BOOLEAN")
        return JetType::YesNo;
    if (word == u"SINGLE" || word == u"FLOAT" || word == u"REAL")
        return word == u"SINGLE" ? JetType::Single : JetType::Double;
    if (word == u"DOUBLE" || word == u"NUMERIC")
        return JetType::Double;
    return JetType::Unknown;
}

QString jetTypeName(JetType type)
{
    switch (type) {
    case JetType::AutoNumber:
        return QStringLiteral("AutoNumber");
    case JetType::Long:
        return QStringLiteral("Long Integer");
    case JetType::Short:
        return QStringLiteral("Integer");
    case JetType::Text:
        return QStringLiteral("Text");
    case JetType::Memo:
        return QStringLiteral("Memo");
    case JetType::Currency:
        return QStringLiteral("Currency");
    case JetType::DateTime:
        return QStringLiteral("Date/Time");
    case JetType::YesNo:
        return QStringLiteral("Yes/No");
    case JetType::Single:
        return QStringLiteral("Single");
    case JetType::Double:
        return QStringLiteral("Double");
    case JetType::Unknown:
        break;
    }
    return QStringLiteral("Unknown");
}

JetType jetTypeOfValue(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::LongLong:
        return JetType::Long;
    case QMetaType::Double:
        return JetType::Double;
    case QMetaType::QString:
        return JetType::Memo;
    default:
        return JetType::Unknown;
    }
}
