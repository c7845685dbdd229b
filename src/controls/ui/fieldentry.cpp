#include "controls/ui/fieldentry.h"

#include "controls/ui/checkedcelldelegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFocusEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace {

bool isReturnOrDetour(Qt::FocusReason reason)
{
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
}

// A cell editor open in the view: its text is committed to the model, or, when the
// column's delegate refuses it, the editor stays open with the text.
bool commitCell(QAbstractItemView *view)
{
    // The open editor of the current cell, if any (the grids keep no index widgets).
    const QModelIndex index = view->currentIndex();
    QWidget *editor = view->indexWidget(index);
    if (!editor)
        return true;
    auto *checked = qobject_cast<CheckedCellDelegate *>(view->itemDelegateForIndex(index));
    if (checked && !checked->acceptEditor(editor, index)) {
        editor->setFocus(Qt::OtherFocusReason);
        return false;
    }
    QMetaObject::invokeMethod(view, "commitData", Qt::DirectConnection, Q_ARG(QWidget *, editor));
    QMetaObject::invokeMethod(
        view, "closeEditor", Qt::DirectConnection, Q_ARG(QWidget *, editor),
        Q_ARG(QAbstractItemDelegate::EndEditHint, QAbstractItemDelegate::NoHint));
    return true;
}

} // namespace

FieldEntry::FieldEntry(Enter enter, Leave leave)
    : m_enter(std::move(enter)), m_leave(std::move(leave))
{
}

void FieldEntry::focusEvent(QObject *field, const QFocusEvent &event)
{
    if (m_holding) {
        if (event.type() == QEvent::FocusIn && field == m_entered)
            m_holding = false;
        return;
    }
    if (event.type() == QEvent::FocusIn) {
        // Back in the field the user is in (from another window, a pop-up, or after
        // a change that came first): still the same visit.
        if (field != m_entered)
            enter(field, true);
        return;
    }
    if (event.type() != QEvent::FocusOut || isReturnOrDetour(event.reason()))
        return;
    // Some platforms report a list's drop-down taking the focus with another reason.
    if (const auto *combo = qobject_cast<const QComboBox *>(field);
        combo && combo->view()->isVisible())
        return;
    if (m_entered == field)
        m_entered = nullptr;
    leave(field, true);
}

void FieldEntry::beforeEdit(QObject *field)
{
    if (m_entered != field)
        enter(field, false);
}

bool FieldEntry::commitPending(QWidget *scope)
{
    const auto views = scope->findChildren<QAbstractItemView *>();
    for (QAbstractItemView *view : views) {
        if (!commitCell(view))
            return false;
    }
    if (!m_entered || m_holding)
        return !m_holding;
    QObject *field = std::exchange(m_entered, nullptr);
    if (!leave(field, false))
        return false;
    m_entered = field;
    m_enter(field, false);
    return true;
}

void FieldEntry::enter(QObject *field, bool byFocus)
{
    // Another field still counts as entered when the focus went away to another window
    // and came back somewhere else: it is left first.
    if (m_entered && m_entered != field) {
        QObject *previous = std::exchange(m_entered, nullptr);
        if (!leave(previous, true))
            return;
    }
    m_entered = field;
    m_enter(field, byFocus);
}

bool FieldEntry::leave(QObject *field, bool giveFocusBack)
{
    // Set first: the logic's message about a refused field moves the focus about.
    m_holding = giveFocusBack;
    if (m_leave(field)) {
        m_holding = false;
        return true;
    }
    m_entered = field;
    if (auto *widget = qobject_cast<QWidget *>(field); widget && giveFocusBack) {
        QPointer<QWidget> guard(widget);
        QTimer::singleShot(0, widget, [this, guard] {
            if (guard)
                guard->setFocus(Qt::OtherFocusReason);
            m_holding = false;
        });
    } else {
        m_holding = false;
    }
    return false;
}
