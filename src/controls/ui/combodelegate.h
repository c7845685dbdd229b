#pragma once

#include "controls/gridcolumns.h"

#include <QStyledItemDelegate>

// A grid column that stores an identifier and shows its name: the cell reads
// the name for the stored value and edits with a drop-down of the names,
// writing the chosen item's value back to the model's edit role.
class ComboDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ComboDelegate(QObject *parent = nullptr);

    // The column's value list and its options, as the logic set them up.
    void setColumn(const GridColumn &column) { m_column = column; }
    const GridColumn &column() const { return m_column; }

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

private:
    GridColumn m_column;
};
