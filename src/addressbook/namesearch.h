#pragma once

#include "controls/combolist.h"

#include <array>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <string>
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

    // The words of every entry's texts but its name, gathered by AddressID before the
    // list is loaded (the list's items give the names).
    class OtherWords
    {
    public:
        // An entry's first name, last name, city and phone as UTF-8, entries in any order;
        // the bytes are read at once, so they may belong to a row reader's current row.
        void add(qint32 id, const std::array<QByteArray, 4> &utf8);

    private:
        friend class NameSearch;
        struct Entry
        {
            qint32 id;
            std::size_t from;
            std::size_t size;
        };
        std::string m_words;
        std::vector<Entry> m_entries;
    };

    bool isLoaded() const { return m_loaded; }
    void clear();
    // The list's items in their order, each found by the words of its name and those
    // given for its AddressID.
    void load(const std::vector<ComboItem> &items, OtherWords others);
    const std::vector<ComboItem> &items() const { return m_items; }
    // The positions in items() of the entries every word finds, in list order.
    std::vector<int> find(const QStringList &words) const;
    // Whether the index holds these words for the entry (false for an entry it lacks).
    bool holds(qint32 id, const QByteArray &words) const;

private:
    QByteArrayView wordsAt(int position) const;

    bool m_loaded = false;
    std::vector<ComboItem> m_items;
    std::string m_words;           // each word of each entry after a \1
    std::vector<qsizetype> m_from; // where each item's words start; one more at the end
};
