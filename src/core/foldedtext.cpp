#include "core/foldedtext.h"

#include <array>
#include <cstring>

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

// The whole text decomposed, marks dropped, case-folded.
QString foldSlowly(QStringView text)
{
    QString out;
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

// The Latin letters up to U+024F (macrons among them) folded once: names hardly use
// others, and decomposing each name anew costs more than the list's query.
constexpr char16_t kTableEnd = 0x250;

const std::array<QString, kTableEnd - 0x80> &latinTable()
{
    static const auto table = [] {
        std::array<QString, kTableEnd - 0x80> t;
        for (char16_t c = 0x80; c < kTableEnd; ++c)
            t[c - 0x80] = foldSlowly(QStringView(&c, 1));
        return t;
    }();
    return table;
}

} // namespace

bool isAscii(QStringView text)
{
    // Four units at a time: every name of a list is looked at.
    const char16_t *p = text.utf16();
    const qsizetype n = text.size();
    qsizetype i = 0;
    for (; i + 4 <= n; i += 4) {
        quint64 units;
        std::memcpy(&units, p + i, sizeof units);
        if (units & 0xFF80FF80FF80FF80U)
            return false;
    }
    for (; i < n; ++i)
        if (p[i] >= 0x80)
            return false;
    return true;
}

bool isAscii(QByteArrayView utf8)
{
    const char *p = utf8.data();
    const qsizetype n = utf8.size();
    qsizetype i = 0;
    for (; i + 8 <= n; i += 8) {
        quint64 bytes;
        std::memcpy(&bytes, p + i, sizeof bytes);
        if (bytes & 0x8080808080808080U)
            return false;
    }
    for (; i < n; ++i)
        if (p[i] & 0x80)
            return false;
    return true;
}

QString fold(QStringView text)
{
    QString out;
    out.reserve(text.size());
    const auto &table = latinTable();
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80)
            out += QChar(asciiLower(u));
        else if (u < kTableEnd)
            out += table[u - 0x80];
        else
            return foldSlowly(text); // marks written apart, other scripts
    }
    return out;
}

int compare(QStringView a, QStringView b)
{
    const qsizetype n = qMin(a.size(), b.size());
    const char16_t *x = a.utf16();
    const char16_t *y = b.utf16();
    if (x == y)
        return int(a.size() - b.size()); // one text shared: not read at all
    qsizetype i = 0;
    // Equal units skipped four at a time: a sort compares many equal names and beginnings.
    while (i + 4 <= n && std::memcmp(x + i, y + i, 4 * sizeof(char16_t)) == 0)
        i += 4;
    for (; i < n; ++i)
        if (x[i] != y[i])
            return codePointRank(x[i]) - codePointRank(y[i]);
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
