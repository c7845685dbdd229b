#pragma once

#include <functional>
#include <QStyledItemDelegate>
#include <QTableView>

// A grid column whose cells take only some texts (an amount, a percentage). What
// the user typed is checked when they try to leave the cell (Tab, Enter, a click
// elsewhere) and when the window commits its pending edits: a text the column cannot
// take is refused there and then, by the check (which tells the user once), and the
// user stays in the cell with their text. Escape still abandons it.
class CheckedCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // True when the column takes the typed value; otherwise, when tell is set, it has
    // told the user.
    using Check = std::function<bool(const QModelIndex &index, const QVariant &typed, bool tell)>;

    explicit CheckedCellDelegate(Check check, QObject *parent = nullptr);

    // What the open editor holds, checked.
    bool acceptEditor(QWidget *editor, const QModelIndex &index, bool tell = true) const;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    Check m_check;
    mutable bool m_checking = false; // the check's message moves the focus about
};

// A grid whose checked cells keep a refused text: neither a click on another cell nor
// the view's own commit takes the editor away from the user.
class CheckedTableView : public QTableView
{
    Q_OBJECT

public:
    using QTableView::QTableView;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void commitData(QWidget *editor) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    // The open editor of a checked cell whose text is refused; null when there is none.
    QWidget *refusedEditor(bool tell) const;
};
