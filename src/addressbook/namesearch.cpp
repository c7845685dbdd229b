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
// words in between: loading the index folds every entry of the book. Built in a std::string,
// whose push_back is cheap inline; the index is written a character at a time.
void appendWords(std::string &out, const QString &folded)
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

// A text's words; most texts are ASCII, whose fold is their lower case: no folded copy.
void appendTextWords(std::string &out, const QString &text)
{
    appendWords(out, FoldedText::isAscii(text) ? text : FoldedText::fold(text));
}

bool isAsciiAlnum(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The same from UTF-8 as a row gives it: ASCII is split as it stands, without a QString.
void appendUtf8Words(std::string &out, QByteArrayView utf8)
{
    if (!FoldedText::isAscii(utf8)) {
        appendTextWords(out, QString::fromUtf8(utf8));
        return;
    }
    bool inWord = false;
    for (const char c : utf8) {
        if (!isAsciiAlnum(c)) {
            inWord = false;
            continue;
        }
        if (!inWord)
            out += kWordStart;
        inWord = true;
        out += char(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    }
}

// The phone's digits from each group on: digits are compared without the blanks, dashes
// and brackets between them.
void appendDigitRuns(std::string &out, QByteArrayView phone)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    bool inGroup = false;
    for (qsizetype i = 0; i < phone.size(); ++i) {
        const bool digit = isDigit(phone[i]);
        if (digit && !inGroup) {
            out += kWordStart;
            for (qsizetype j = i; j < phone.size(); ++j)
                if (isDigit(phone[j]))
                    out += phone[j];
        }
        inGroup = digit;
    }
}

// The words of an entry's texts but its name, in the order entryWords() gives them.
void appendOtherWords(std::string &out, const std::array<QByteArray, 4> &utf8)
{
    for (std::size_t t = 0; t < 3; ++t)
        appendUtf8Words(out, utf8[t]);
    appendDigitRuns(out, utf8[3]);
}

} // namespace

QStringList NameSearch::words(QStringView typed)
{
    return splitWords(FoldedText::fold(typed));
}

QByteArray NameSearch::entryWords(const Texts &texts)
{
    std::string out;
    appendTextWords(out, texts[Name]);
    appendOtherWords(out, {texts[FirstName].toUtf8(), texts[LastName].toUtf8(),
                           texts[City].toUtf8(), texts[Phone].toUtf8()});
    return QByteArray::fromStdString(out);
}

void NameSearch::OtherWords::add(qint32 id, const std::array<QByteArray, 4> &utf8)
{
    const std::size_t from = m_words.size();
    appendOtherWords(m_words, utf8);
    m_entries.push_back({id, from, m_words.size() - from});
}

void NameSearch::clear()
{
    m_loaded = false;
    m_items = {};
    m_words = {};
    m_from = {};
}

void NameSearch::load(const std::vector<ComboItem> &items, OtherWords others)
{
    clear();
    // Each item's other words found by AddressID: in a table by identifier when they are
    // as dense as a book's usually are, else by search in a sorted vector.
    auto &entries = others.m_entries;
    const auto byId = [](const OtherWords::Entry &a, const OtherWords::Entry &b) {
        return a.id < b.id;
    };
    if (!std::is_sorted(entries.begin(), entries.end(), byId))
        std::sort(entries.begin(), entries.end(), byId);
    const qint64 lowest = entries.empty() ? 0 : entries.front().id;
    const qint64 span = entries.empty() ? 0 : entries.back().id - lowest + 1;
    std::vector<qint32> slot; // the entry's position, -1 for none
    if (span <= 8 * qint64(entries.size()) + 1024) {
        slot.assign(std::size_t(span), -1);
        for (std::size_t i = 0; i < entries.size(); ++i)
            slot[std::size_t(entries[i].id - lowest)] = qint32(i);
    }
    const auto entryOf = [&](qint32 id) -> const OtherWords::Entry * {
        if (!slot.empty() || entries.empty()) {
            const qint64 at = id - lowest;
            return at >= 0 && at < span && slot[std::size_t(at)] >= 0
                       ? &entries[std::size_t(slot[std::size_t(at)])]
                       : nullptr;
        }
        const auto found =
            std::lower_bound(entries.begin(), entries.end(), OtherWords::Entry{id, 0, 0}, byId);
        return found != entries.end() && found->id == id ? &*found : nullptr;
    };

    m_items = items;
    m_from.reserve(items.size() + 1);
    // Names are most of a list's text: room for them roughly at their length.
    m_words.reserve(others.m_words.size() + items.size() * 24);
    for (const ComboItem &item : items) {
        m_from.push_back(qsizetype(m_words.size()));
        appendTextWords(m_words, item.text);
        if (const OtherWords::Entry *entry = entryOf(item.data))
            m_words.append(others.m_words, entry->from, entry->size);
    }
    m_from.push_back(qsizetype(m_words.size()));
    m_loaded = true;
}

QByteArrayView NameSearch::wordsAt(int position) const
{
    const auto at = std::size_t(position);
    return QByteArrayView(m_words.data() + m_from[at], m_from[at + 1] - m_from[at]);
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
    const auto size = qsizetype(m_words.size());
    for (qsizetype at = first.indexIn(m_words.data(), size); at >= 0;) {
        const auto next = std::upper_bound(m_from.begin(), m_from.end(), at);
        found.push_back(int(next - m_from.begin()) - 1);
        at = next == m_from.end() ? -1 : first.indexIn(m_words.data(), size, *next);
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
