#pragma once

#include "controls/combolist.h"

#include <array>
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

// Search as you type over the name list: an entry is found when every word typed begins
// some word of its name, contact names or city, or some run of its phone's digits from a
// group on (so "871 5555", "8715555" and "07-871" all find "07 871 5555"), folded for
// case and accents. The words are folded once, when the index is loaded, into one
// buffer that each keystroke scans: the store is not asked again while the user types.
class NameSearch
{
public:
    // The texts of an entry the search looks at.
    enum Text { Name, FirstName, LastName, City, Phone, TextCount };
    using Texts = std::array<QString, TextCount>;

    // The typed text as folded words; empty when nothing is typed but blanks and marks.
    static QStringList words(QStringView typed);
    // An entry's searchable words, as the index holds them.
    static QByteArray entryWords(const Texts &texts);

    bool isLoaded() const { return m_loaded; }
    void clear();
    // The list's items in their order, each found by the words given for its AddressID
    // (by its name alone when there are none).
    void load(const std::vector<ComboItem> &items, const QHash<qint32, QByteArray> &words);
    const std::vector<ComboItem> &items() const { return m_items; }
    // The positions in items() of the entries every word finds, in list order.
    std::vector<int> find(const QStringList &words) const;
    // Whether the index holds these words for the entry (false for an entry it lacks).
    bool holds(qint32 id, const QByteArray &words) const;

private:
    QByteArrayView wordsAt(int position) const;

    bool m_loaded = false;
    std::vector<ComboItem> m_items;
    QByteArray m_words;            // each word of each entry after a \1
    std::vector<qsizetype> m_from; // where each item's words start; one more at the end
};
