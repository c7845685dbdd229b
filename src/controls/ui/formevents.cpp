#include "controls/ui/formevents.h"

#include "controls/ui/fieldentry.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QWidget>

FormEvents::FormEvents(QWidget *host, FieldEntry *entry, IsField isField,
                       std::function<void()> focusNext, Handler handler)
    : m_host(host), m_entry(entry), m_isField(std::move(isField)),
      m_focusNext(std::move(focusNext)), m_handler(std::move(handler))
{
}

void FormEvents::watch(QWidget *widget)
{
    widget->installEventFilter(this);
    for (QWidget *child : widget->findChildren<QWidget *>())
        child->installEventFilter(this);
}

bool FormEvents::eventFilter(QObject *watched, QEvent *event)
{
    const auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != m_host->window())
        return false;
    if (m_handler && m_handler(watched, event))
        return true;

    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            m_focusNext();
            return true;
        }
        break;
    }
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        if (m_entry && m_isField && m_isField(watched))
            m_entry->focusEvent(watched, *static_cast<QFocusEvent *>(event));
        break;
    default:
        break;
    }
    return false;
}
