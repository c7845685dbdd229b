#pragma once

#include <QAbstractTableModel>

class DeductionGrid;
class PayDetailsEditor;

// The deductions grid tgrdDeductions as a table model over the editor's
// in-memory rows. Columns: 0 the employee (kept, not shown), 1 the deduction
// (its identifier; the view's combo delegate shows the name), 2 the fixed
// amount, 3 the percentage. One empty row more than there are rows takes a
// new deduction. Edits go through the editor, which recomputes the rate.
class DeductionGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int ColumnCount = 4;

    explicit DeductionGridModel(PayDetailsEditor &editor, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // Re-reads the rows when the grid has changed under the model.
    void refresh();

private:
    const DeductionGrid &grid() const;

    PayDetailsEditor &m_editor;
    quint64 m_revision = ~quint64(0);
    int m_rows = 0;
};
