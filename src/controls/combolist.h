#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

// The state of one drop-down list as the window logic sees it: items with a
// text and a 32-bit item data, the selected index and the list's text. Logic
// fills and reads it; the view shows the items through a model over this list
// (ComboListModel), re-read only when itemsRevision() has moved on, and follows
// the selection.
struct ComboItem
{
    QString text;
    qint32 data = 0;
};

class ComboList
{
public:
    void clear();
    void addItem(const QString &text, qint32 data = 0);
    // Adds the items after those there; an empty list takes the vector over whole.
    void addItems(std::vector<ComboItem> items);
    void setItemData(int index, qint32 data);
    void reserve(int count) { m_items.reserve(std::size_t(count)); }

    int count() const { return int(m_items.size()); }
    const ComboItem &item(int index) const { return m_items.at(std::size_t(index)); }
    qint32 itemData(int index) const { return item(index).data; }
    const std::vector<ComboItem> &items() const { return m_items; }

    // -1 when nothing is selected.
    int listIndex() const { return m_index; }
    void setListIndex(int index);
    // The selected item's data; 0 when nothing is selected.
    qint32 currentData() const;

    // The text shown: the selected item's text, or whatever was set while
    // nothing is selected (empty after clear()).
    QString text() const;
    void setText(const QString &text);

    // Moves on whenever the items change.
    quint64 itemsRevision() const { return m_itemsRevision; }

private:
    std::vector<ComboItem> m_items;
    int m_index = -1;
    QString m_text;
    quint64 m_itemsRevision = 0;
};
