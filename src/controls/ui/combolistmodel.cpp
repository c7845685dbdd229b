#include "controls/ui/combolistmodel.h"

#include "controls/combolist.h"

#include <QComboBox>
#include <QListView>

ComboListModel::ComboListModel(const ComboList &list, QObject *parent)
    : QAbstractListModel(parent), m_list(list)
{
}

int ComboListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant ComboListModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (!index.isValid() || row >= m_count || row >= m_list.count())
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_list.item(row).text;
    case Qt::UserRole:
        return m_list.item(row).data;
    default:
        return QVariant();
    }
}

void ComboListModel::refresh()
{
    if (m_list.itemsRevision() == m_itemsRevision)
        return;
    beginResetModel();
    m_count = m_list.count();
    m_itemsRevision = m_list.itemsRevision();
    endResetModel();
}

ComboMirror::ComboMirror(QComboBox *combo, const ComboList &list)
    : m_combo(combo), m_list(list), m_model(new ComboListModel(list, combo))
{
    combo->setEditable(false);
    combo->setModel(m_model);
    // Every item is one line of text: the drop-down need not measure 100,000 of them.
    if (auto *view = qobject_cast<QListView *>(combo->view()))
        view->setUniformItemSizes(true);
}

void ComboMirror::sync()
{
    m_model->refresh();
    if (m_combo->currentIndex() != m_list.listIndex())
        m_combo->setCurrentIndex(m_list.listIndex());
}
