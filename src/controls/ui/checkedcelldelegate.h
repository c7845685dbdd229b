#pragma once

#include <functional>
#include <QStyledItemDelegate>

// A grid column whose cells take only some texts (an amount, a percentage). What
// the user typed is checked when they try to leave the cell (Tab, Enter, a click
// elsewhere in the window) and when the window commits its pending edits: a text
// the column cannot take is refused there and then, by the check (which tells the
// user), and the user stays in the cell with their text. Escape still abandons it.
class CheckedCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // True when the column takes the typed value; otherwise it has told the user.
    using Check = std::function<bool(const QModelIndex &index, const QVariant &typed)>;

    explicit CheckedCellDelegate(Check check, QObject *parent = nullptr);

    // What the open editor holds, checked.
    bool acceptEditor(QWidget *editor, const QModelIndex &index) const;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    Check m_check;
    mutable bool m_checking = false; // the check's message moves the focus about
};
