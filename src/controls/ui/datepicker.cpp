#include "controls/ui/datepicker.h"

#include "data/serialdate.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>

CvDatePicker::CvDatePicker(QWidget *parent) : QDateEdit(parent)
{
    setCalendarPopup(true);
    setDisplayFormat(SerialDate::shortDateFormat(locale()));
    // The data files start at 1899; a birth date may be old, never before that.
    setMinimumDate(SerialDate::epoch());
    setDate(QDate::currentDate());

    m_calendar = new QCalendarWidget(this);
    m_calendar->setGridVisible(true);
    setCalendarWidget(m_calendar);
    // A click on a day is a pick even when it is the day already shown: the
    // host's field may hold something else.
    connect(m_calendar, &QCalendarWidget::clicked, this, &CvDatePicker::datePicked);
    connect(m_calendar, &QCalendarWidget::activated, this, &CvDatePicker::datePicked);
    connect(this, &QDateEdit::dateChanged, this, &CvDatePicker::reportIfUser);
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
    // The pop-up drop-down is drawn as a combo box: keep its arrow and frame.
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    option.frame = true;
    const QRect arrow =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this);
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, this);
    setFixedWidth(arrow.width() + 2 * frame + 2);
}

void CvDatePicker::keyPressEvent(QKeyEvent *event)
{
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
