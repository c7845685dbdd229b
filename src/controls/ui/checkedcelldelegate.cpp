#include "controls/ui/checkedcelldelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QWidget>

CheckedCellDelegate::CheckedCellDelegate(Check check, QObject *parent)
    : QStyledItemDelegate(parent), m_check(std::move(check))
{
}

bool CheckedCellDelegate::acceptEditor(QWidget *editor, const QModelIndex &index) const
{
    const auto *edit = qobject_cast<const QLineEdit *>(editor);
    if (!edit || !m_check || m_checking)
        return true;
    m_checking = true;
    const bool ok = m_check(index, edit->text());
    m_checking = false;
    return ok;
}

bool CheckedCellDelegate::eventFilter(QObject *object, QEvent *event)
{
    auto *editor = qobject_cast<QWidget *>(object);
    if (!editor || m_checking)
        return QStyledItemDelegate::eventFilter(object, event);
    bool leaving = false;
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
        // Another window or a pop-up is not leaving the cell.
        leaving = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                  editor->isActiveWindow();
    }
    if (leaving) {
        auto *view = qobject_cast<QAbstractItemView *>(
            editor->parentWidget() ? editor->parentWidget()->parentWidget() : nullptr);
        const QModelIndex index = view ? view->currentIndex() : QModelIndex();
        if (!acceptEditor(editor, index)) {
            QPointer<QWidget> guard(editor);
            QTimer::singleShot(0, editor, [guard] {
                if (guard)
                    guard->setFocus(Qt::OtherFocusReason);
            });
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}
