#include "controls/combolist.h"

#include "core/cverror.h"

#include <iterator>

void ComboList::clear()
{
    m_items.clear();
    m_index = -1;
    m_text.clear();
    ++m_itemsRevision;
}

void ComboList::addItem(const QString &text, qint32 data)
{
    m_items.push_back({text, data});
    ++m_itemsRevision;
}

void ComboList::addItems(std::vector<ComboItem> items)
{
    if (m_items.empty())
        m_items = std::move(items);
    else
        m_items.insert(m_items.end(), std::make_move_iterator(items.begin()),
                       std::make_move_iterator(items.end()));
    ++m_itemsRevision;
}

void ComboList::setItemData(int index, qint32 data)
{
    if (index < 0 || index >= count())
        throw CvError(CvError::InvalidProcedureCall, "ComboList",
                      "Invalid procedure call or argument");
    m_items[std::size_t(index)].data = data;
    ++m_itemsRevision;
}

void ComboList::setListIndex(int index)
{
    if (index < -1 || index >= count())
        throw CvError(CvError::InvalidProcedureCall, "ComboList",
                      "Invalid procedure call or argument");
    m_index = index;
    if (index >= 0)
        m_text = m_items[std::size_t(index)].text;
}

qint32 ComboList::currentData() const
{
    return m_index >= 0 ? m_items[std::size_t(m_index)].data : 0;
}

QString ComboList::text() const
{
    return m_index >= 0 ? m_items[std::size_t(m_index)].text : m_text;
}

void ComboList::setText(const QString &text)
{
    m_text = text;
}
