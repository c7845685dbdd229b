#pragma once

#include <functional>

class QFocusEvent;
class QObject;
class QWidget;

// Tells a window's logic when the user enters and leaves one of its fields, from
// the fields' focus events. Focus lost to another window or to a pop-up (a list's
// own drop-down included) and given back to the same field is neither. A field
// that gets its focus event only after the user's first change, as in a window
// that is activated by the click that changes it, is entered before the change is
// passed on, so that the logic remembers the value from before it; its focus event
// then changes nothing.
//
// The logic may refuse to let a field be left (text its column cannot take): the
// user has been told, the field keeps its text and gets the focus back, and focus
// events of other fields are ignored until it has.
//
// Every way of leaving an edit (OK, closing the window, another entry, another tab)
// goes through commitPending() first, so what the user typed reaches the logic
// before anything is saved: one mechanism for every window.
class FieldEntry
{
public:
    // byFocus is false when a change, not a focus event, enters the field.
    using Enter = std::function<void(QObject *field, bool byFocus)>;
    // False: the field cannot be left as it is.
    using Leave = std::function<bool(QObject *field)>;

    FieldEntry(Enter enter, Leave leave);

    // A focus event of one of the window's fields (the caller picks them out).
    void focusEvent(QObject *field, const QFocusEvent &event);
    // Call before passing on a change the user made in a field.
    void beforeEdit(QObject *field);

    // Commits a grid cell being edited anywhere under scope (its delegate may refuse
    // what it holds, see CheckedCellDelegate), then leaves the field the user is in as
    // a focus change would, and enters it again, since the user is still there. False
    // when something was refused: the user stays where they were, and the caller must
    // not save, move on or close.
    bool commitPending(QWidget *scope);

    QObject *entered() const { return m_entered; }

private:
    void enter(QObject *field, bool byFocus);
    bool leave(QObject *field, bool giveFocusBack);

    Enter m_enter;
    Leave m_leave;
    QObject *m_entered = nullptr;
    bool m_holding = false; // a refused field is getting its focus back
};
