#pragma once

#include <functional>
#include <QObject>

class FieldEntry;
class QWidget;

// What every form does with its widgets' events, seen before the widgets' own
// handling: Enter moves on as Tab does, and the focus changes of the form's fields
// reach its FieldEntry. Pop-up lists and calendars are windows of their own and keep
// their events.
// The host holds it in a member (std::unique_ptr), not as a child: members go before the
// host's widgets, whose focus leaving them as they die must not reach a half-destroyed
// form.
class FormEvents : public QObject
{
public:
    using IsField = std::function<bool(const QObject *)>;
    // The host's own handling, asked first; true when it used the event up.
    using Handler = std::function<bool(QObject *watched, QEvent *event)>;

    // focusNext moves the focus on (the host's focusNextChild). entry may be null for
    // a form with no fields of its own.
    FormEvents(QWidget *host, FieldEntry *entry, IsField isField, std::function<void()> focusNext,
               Handler handler = {});

    // Watches widget and every widget under it: call once the form is built.
    void watch(QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_host;
    FieldEntry *m_entry;
    IsField m_isField;
    std::function<void()> m_focusNext;
    Handler m_handler;
};
