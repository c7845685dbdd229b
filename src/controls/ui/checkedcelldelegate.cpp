#include "controls/ui/checkedcelldelegate.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace {

void giveFocusBack(QWidget *editor)
{
    QPointer<QWidget> guard(editor);
    QTimer::singleShot(0, editor, [guard] {
        if (guard)
            guard->setFocus(Qt::OtherFocusReason);
    });
}

} // namespace

CheckedCellDelegate::CheckedCellDelegate(Check check, QObject *parent)
    : QStyledItemDelegate(parent), m_check(std::move(check))
{
}

bool CheckedCellDelegate::acceptEditor(QWidget *editor, const QModelIndex &index, bool tell) const
{
    const auto *edit = qobject_cast<const QLineEdit *>(editor);
    if (!edit || !m_check)
        return true;
    if (m_checking)
        return m_check(index, edit->text(), false);
    m_checking = true;
    const bool ok = m_check(index, edit->text(), tell);
    m_checking = false;
    return ok;
}

bool CheckedCellDelegate::eventFilter(QObject *object, QEvent *event)
{
    auto *editor = qobject_cast<QWidget *>(object);
    auto *view = editor && editor->parentWidget()
                     ? qobject_cast<QAbstractItemView *>(editor->parentWidget()->parentWidget())
                     : nullptr;
    if (!view)
        return QStyledItemDelegate::eventFilter(object, event);
    const QModelIndex index = view->currentIndex();
    bool leaving = false;
    bool tell = true;
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            leaving = true;
            break;
        default:
            break;
        }
    } else if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        leaving = true;
        // Another window (our own message among them) or a pop-up is not the user
        // leaving the cell: nothing is said, but a refused text is not committed either.
        tell = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
               editor->isActiveWindow() && !m_checking;
    }
    if (leaving && !acceptEditor(editor, index, tell)) {
        if (tell)
            giveFocusBack(editor);
        return true;
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

QWidget *CheckedTableView::refusedEditor(bool tell) const
{
    const QModelIndex index = currentIndex();
    QWidget *editor = indexWidget(index);
    const auto *checked = qobject_cast<CheckedCellDelegate *>(itemDelegateForIndex(index));
    return editor && checked && !checked->acceptEditor(editor, index, tell) ? editor : nullptr;
}

void CheckedTableView::mousePressEvent(QMouseEvent *event)
{
    if (QWidget *editor = refusedEditor(true)) {
        giveFocusBack(editor);
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
}

void CheckedTableView::commitData(QWidget *editor)
{
    if (refusedEditor(false) == editor)
        return;
    QTableView::commitData(editor);
}

void CheckedTableView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    // Escape abandons the text; any other way out keeps a refused one in its cell.
    if (hint != QAbstractItemDelegate::RevertModelCache && refusedEditor(false) == editor)
        return;
    QTableView::closeEditor(editor, hint);
}
