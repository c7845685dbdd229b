#pragma once

#include <QAbstractListModel>

class ComboList;
class QComboBox;

// The items of a ComboList as a list model. A combo box reads them where the logic
// keeps them: no copy and no item objects, so a name list of 100,000 entries costs
// one model reset, and a move in it none.
class ComboListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    ComboListModel(const ComboList &list, QObject *parent);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // Takes the list's items again when they changed since the last call.
    void refresh();

private:
    const ComboList &m_list;
    // The count the views were last told of: the logic may change the list before the
    // next refresh (a message shown while it is filled lets the combo box repaint).
    int m_count = 0;
    quint64 m_itemsRevision = ~quint64(0);
};

// Shows a ComboList in a non-editable combo box: the items only when they changed,
// the selection whenever it differs from the list's.
class ComboMirror
{
public:
    // The list must outlive the combo box.
    ComboMirror(QComboBox *combo, const ComboList &list);

    void sync();
    QComboBox *combo() const { return m_combo; }

private:
    QComboBox *m_combo;
    const ComboList &m_list;
    ComboListModel *m_model;
};
