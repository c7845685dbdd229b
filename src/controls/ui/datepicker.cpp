#include "controls/ui/datepicker.h"

#include "data/serialdate.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

CvDatePicker::CvDatePicker(QWidget *parent) : QDateEdit(parent)
{
    setCalendarPopup(true);
    setDisplayFormat(SerialDate::shortDateFormat(locale()));
    // The data files start at 1899; a birth date may be old, never before that.
    setMinimumDate(SerialDate::epoch());
    setDate(QDate::currentDate());
    connect(this, &QDateEdit::dateChanged, this, &CvDatePicker::reportIfUser);
}

QCalendarWidget *CvDatePicker::calendarWidget()
{
    // Made when first wanted: a window with four pickers would otherwise build four
    // calendars, with their icons, before it can open.
    if (!m_calendar) {
        m_calendar = new QCalendarWidget(this);
        m_calendar->setGridVisible(true);
        setCalendarWidget(m_calendar);
        // A click on a day is a pick even when it is the day already shown: the
        // host's field may hold something else.
        connect(m_calendar, &QCalendarWidget::clicked, this, &CvDatePicker::datePicked);
        connect(m_calendar, &QCalendarWidget::activated, this, &CvDatePicker::datePicked);
    }
    return m_calendar;
}

void CvDatePicker::setCompact(bool compact)
{
    m_compact = compact;
    lineEdit()->setVisible(!compact);
    if (!compact) {
        setMinimumWidth(0);
        setMaximumWidth(QWIDGETSIZE_MAX);
        return;
    }
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    setFixedWidth(arrowRect().width() + 2 * frame + 2);
}

QRect CvDatePicker::arrowRect() const
{
    // The pop-up drop-down is drawn as a combo box: keep its arrow and frame.
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    option.frame = true;
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this);
}

void CvDatePicker::openCalendar()
{
    // QDateEdit opens its calendar for a press on the arrow, and has no other way in.
    calendarWidget();
    const QPointF arrow = arrowRect().center();
    QMouseEvent press(QEvent::MouseButtonPress, arrow, mapToGlobal(arrow), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QDateEdit::mousePressEvent(&press);
}

void CvDatePicker::mousePressEvent(QMouseEvent *event)
{
    // A compact picker is all button: a press anywhere on it opens the calendar,
    // never the hidden date's text.
    if (m_compact && event->button() == Qt::LeftButton) {
        openCalendar();
        event->accept();
        return;
    }
    calendarWidget();
    QDateEdit::mousePressEvent(event);
}

void CvDatePicker::wheelEvent(QWheelEvent *event)
{
    // Turning the wheel over a compact picker would change a date nobody sees.
    if (m_compact) {
        event->ignore();
        return;
    }
    QDateEdit::wheelEvent(event);
}

void CvDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (m_compact) {
        // Keys that would type into or step the hidden date open the calendar or do
        // nothing; Tab and the rest pass on to the window.
        const int key = event->key();
        if (key == Qt::Key_F4 || key == Qt::Key_Space ||
            (key == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier))) {
            openCalendar();
            event->accept();
        } else {
            event->ignore();
        }
        return;
    }
    calendarWidget();
    m_userEditing = true;
    QDateEdit::keyPressEvent(event);
    m_userEditing = false;
}

void CvDatePicker::stepBy(int steps)
{
    // The arrow keys, the wheel and the spin buttons all step.
    const bool wasEditing = m_userEditing;
    m_userEditing = true;
    QDateEdit::stepBy(steps);
    m_userEditing = wasEditing;
}

void CvDatePicker::reportIfUser(const QDate &date)
{
    if (m_userEditing)
        emit datePicked(date);
}
