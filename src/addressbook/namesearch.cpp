#include "addressbook/namesearch.h"

#include "core/foldedtext.h"

#include <algorithm>
#include <numeric>
#include <QByteArrayMatcher>

namespace {

constexpr char kWordStart = '\1';

// The folded text's runs of letters and digits.
QStringList splitWords(const QString &folded)
{
    QStringList words;
    qsizetype from = -1;
    for (qsizetype i = 0; i <= folded.size(); ++i) {
        const bool inWord = i < folded.size() && folded[i].isLetterOrNumber();
        if (inWord && from < 0)
            from = i;
        else if (!inWord && from >= 0) {
            words.append(folded.mid(from, i - from));
            from = -1;
        }
    }
    return words;
}

// Each run of letters and digits of the folded text after a \1, in UTF-8, with no list of
// words in between: loading the index folds every entry of the book.
void appendWords(QByteArray &out, const QString &folded)
{
    bool inWord = false;
    for (const QChar c : folded) {
        if (!c.isLetterOrNumber()) {
            inWord = false;
            continue;
        }
        if (!inWord)
            out += kWordStart;
        inWord = true;
        const char16_t u = c.unicode();
        if (u < 0x80) {
            out += char(u >= u'A' && u <= u'Z' ? u + (u'a' - u'A') : u);
        } else if (u < 0x800) {
            out += char(0xC0 | (u >> 6));
            out += char(0x80 | (u & 0x3F));
        } else {
            out += char(0xE0 | (u >> 12));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        }
    }
}

} // namespace

QStringList NameSearch::words(QStringView typed)
{
    return splitWords(FoldedText::fold(typed));
}

QByteArray NameSearch::entryWords(const Texts &texts)
{
    QByteArray out;
    out.reserve(64);
    for (int t : {Name, FirstName, LastName, City}) {
        const QString &text = texts[std::size_t(t)];
        // Most texts are ASCII, whose fold is their lower case: no folded copy to make.
        appendWords(out, FoldedText::isAscii(text) ? text : FoldedText::fold(text));
    }
    // The phone's digits from each group on: digits are compared without the blanks,
    // dashes and brackets between them.
    QByteArray digits;
    std::vector<qsizetype> groupStarts;
    bool inGroup = false;
    for (const QChar c : texts[Phone]) {
        const bool digit = c.unicode() >= u'0' && c.unicode() <= u'9';
        if (digit && !inGroup)
            groupStarts.push_back(digits.size());
        if (digit)
            digits += char(c.unicode());
        inGroup = digit;
    }
    for (const qsizetype start : groupStarts) {
        out += kWordStart;
        out += QByteArrayView(digits).sliced(start);
    }
    return out;
}

void NameSearch::clear()
{
    m_loaded = false;
    m_items = {};
    m_words = {};
    m_from = {};
}

void NameSearch::load(const std::vector<ComboItem> &items, const QHash<qint32, QByteArray> &words)
{
    clear();
    m_items = items;
    m_from.reserve(items.size() + 1);
    for (const ComboItem &item : items) {
        m_from.push_back(m_words.size());
        const auto found = words.constFind(item.data);
        m_words += found != words.constEnd() ? found.value() : entryWords({item.text});
    }
    m_from.push_back(m_words.size());
    m_loaded = true;
}

QByteArrayView NameSearch::wordsAt(int position) const
{
    const auto at = std::size_t(position);
    return QByteArrayView(m_words).sliced(m_from[at], m_from[at + 1] - m_from[at]);
}

std::vector<int> NameSearch::find(const QStringList &words) const
{
    std::vector<QByteArray> patterns;
    for (const QString &word : words)
        patterns.push_back(kWordStart + word.toUtf8());
    std::vector<int> found;
    if (patterns.empty()) {
        found.resize(m_items.size());
        std::iota(found.begin(), found.end(), 0);
        return found;
    }
    // The longest word first: it finds the fewest entries, which the others then narrow.
    std::sort(patterns.begin(), patterns.end(),
              [](const QByteArray &a, const QByteArray &b) { return a.size() > b.size(); });
    const QByteArrayMatcher first(patterns.front());
    for (qsizetype at = first.indexIn(m_words); at >= 0;) {
        const auto next = std::upper_bound(m_from.begin(), m_from.end(), at);
        found.push_back(int(next - m_from.begin()) - 1);
        at = next == m_from.end() ? -1 : first.indexIn(m_words, *next);
    }
    for (std::size_t p = 1; p < patterns.size(); ++p) {
        const QByteArrayMatcher matcher(patterns[p]);
        std::erase_if(found, [&](int position) {
            const QByteArrayView text = wordsAt(position);
            return matcher.indexIn(text.data(), text.size()) < 0;
        });
    }
    return found;
}

bool NameSearch::holds(qint32 id, const QByteArray &words) const
{
    for (std::size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].data == id)
            return wordsAt(int(i)) == words;
    return false;
}
