#include "core/foldedtext.h"

namespace FoldedText {

namespace {

char16_t asciiLower(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}

// UTF-16 units in code point order: surrogates (D800-DFFF) above E000-FFFF.
int codePointRank(char16_t c)
{
    return c >= 0xE000 ? c - 0x800 : c >= 0xD800 ? c + 0x2000 : c;
}

// Letters with no decomposition that readers take for a base letter with a stroke.
QStringView baseLetters(char16_t c)
{
    switch (c) {
    case u'ø':
        return u"o";
    case u'æ':
        return u"ae";
    case u'œ':
        return u"oe";
    case u'ß':
        return u"ss";
    case u'ł':
        return u"l";
    case u'đ':
    case u'ð':
        return u"d";
    case u'þ':
        return u"th";
    case u'ı':
        return u"i";
    default:
        return {};
    }
}

} // namespace

bool isAscii(QStringView text)
{
    for (const QChar c : text)
        if (c.unicode() >= 0x80)
            return false;
    return true;
}

QString fold(QStringView text)
{
    QString out;
    out.reserve(text.size());
    if (isAscii(text)) {
        for (const QChar c : text)
            out += QChar(asciiLower(c.unicode()));
        return out;
    }
    const QString decomposed = text.toString().normalized(QString::NormalizationForm_D);
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        const QChar folded = c.toCaseFolded();
        if (const QStringView base = baseLetters(folded.unicode()); !base.isEmpty())
            out += base;
        else
            out += folded;
    }
    return out;
}

int compare(QStringView a, QStringView b)
{
    const qsizetype n = qMin(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i)
        if (a[i] != b[i])
            return codePointRank(a[i].unicode()) - codePointRank(b[i].unicode());
    return int(a.size() - b.size());
}

int compareAscii(QStringView ascii, QStringView folded)
{
    const qsizetype n = qMin(ascii.size(), folded.size());
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t x = asciiLower(ascii[i].unicode());
        const char16_t y = folded[i].unicode();
        if (x != y)
            return codePointRank(x) - codePointRank(y);
    }
    return int(ascii.size() - folded.size());
}

} // namespace FoldedText
