#include "controls/ui/combodelegate.h"

#include <algorithm>
#include <QComboBox>

ComboDelegate::ComboDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

QString ComboDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    if (!m_column.options.translateValues || m_column.valueItems.empty())
        return QStyledItemDelegate::displayText(value, locale);
    return m_column.displayText(value);
}

QWidget *ComboDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                     const QModelIndex &) const
{
    auto *combo = new QComboBox(parent);
    combo->setObjectName("gridCombo");
    combo->setEditable(!m_column.options.dropDownOnly);
    combo->setMaxVisibleItems(m_column.options.maxVisibleItems);

    std::vector<GridValueItem> items = m_column.valueItems;
    if (m_column.options.sorted) {
        std::stable_sort(items.begin(), items.end(), [](const auto &a, const auto &b) {
            return QString::localeAwareCompare(a.displayName, b.displayName) < 0;
        });
    }
    for (const GridValueItem &item : items)
        combo->addItem(item.displayName, item.value);

    // A choice is final: write it and leave the cell, as the grid's own
    // drop-down did. (The editor factory is const; its signals are not.)
    auto *self = const_cast<ComboDelegate *>(this);
    connect(combo, &QComboBox::activated, self, [self, combo] {
        emit self->commitData(combo);
        emit self->closeEditor(combo);
    });
    return combo;
}

void ComboDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *combo = static_cast<QComboBox *>(editor);
    const QVariant value = index.data(Qt::EditRole);
    int found = -1;
    for (int i = 0; i < combo->count() && found < 0; ++i) {
        if (combo->itemData(i) == value)
            found = i;
    }
    combo->setCurrentIndex(found);
    if (found < 0 && combo->isEditable())
        combo->setEditText(m_column.displayText(value));
}

void ComboDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                 const QModelIndex &index) const
{
    auto *combo = static_cast<QComboBox *>(editor);
    int row = combo->currentIndex();
    // Typed text counts when it names an item.
    if (combo->isEditable())
        row = combo->findText(combo->currentText(), Qt::MatchFixedString);
    if (row >= 0)
        model->setData(index, combo->itemData(row), Qt::EditRole);
}
