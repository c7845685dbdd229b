#include "controls/ui/fieldentry.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFocusEvent>
#include <utility>

namespace {

bool isReturnOrDetour(Qt::FocusReason reason)
{
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
}

} // namespace

FieldEntry::FieldEntry(Enter enter, Leave leave)
    : m_enter(std::move(enter)), m_leave(std::move(leave))
{
}

void FieldEntry::focusEvent(QObject *field, const QFocusEvent &event)
{
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
    m_leave(field);
}

void FieldEntry::beforeEdit(QObject *field)
{
    if (m_entered != field)
        enter(field, false);
}

void FieldEntry::enter(QObject *field, bool byFocus)
{
    // Another field still counts as entered when the focus went away to another window
    // and came back somewhere else: it is left first.
    if (m_entered && m_entered != field) {
        QObject *previous = std::exchange(m_entered, nullptr);
        m_leave(previous);
    }
    m_entered = field;
    m_enter(field, byFocus);
}
