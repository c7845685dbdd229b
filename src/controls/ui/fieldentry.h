#pragma once

#include <functional>

class QFocusEvent;
class QObject;

// Tells a window's logic when the user enters and leaves one of its fields, from
// the fields' focus events. Focus lost to another window or to a pop-up (a list's
// own drop-down included) and given back to the same field is neither. A field
// that gets its focus event only after the user's first change, as in a window
// that is activated by the click that changes it, is entered before the change is
// passed on, so that the logic remembers the value from before it; its focus event
// then changes nothing.
class FieldEntry
{
public:
    // byFocus is false when a change, not a focus event, enters the field.
    using Enter = std::function<void(QObject *field, bool byFocus)>;
    using Leave = std::function<void(QObject *field)>;

    FieldEntry(Enter enter, Leave leave);

    // A focus event of one of the window's fields (the caller picks them out).
    void focusEvent(QObject *field, const QFocusEvent &event);
    // Call before passing on a change the user made in a field.
    void beforeEdit(QObject *field);

    QObject *entered() const { return m_entered; }

private:
    void enter(QObject *field, bool byFocus);

    Enter m_enter;
    Leave m_leave;
    QObject *m_entered = nullptr;
};
