#pragma once

#include <QDateEdit>

class QCalendarWidget;

// The suite's date picker: a date box with a calendar pop-up, in the locale's
// short date with a four-digit year. datePicked reports the user's choices
// only (the calendar, the arrow keys, the wheel, typing), never a date the
// program sets, so a host can copy picks into its own field without loops.
class CvDatePicker : public QDateEdit
{
    Q_OBJECT

public:
    explicit CvDatePicker(QWidget *parent = nullptr);

    // Only the drop-down button, for a picker that sits beside a field which
    // shows the date already: two copies of a date, one of them today's for
    // an empty field, only confuse.
    void setCompact(bool compact);
    bool isCompact() const { return m_compact; }

    // The pop-up calendar, made on first use (hides QDateTimeEdit's, which would make
    // a calendar without the picks connected).
    QCalendarWidget *calendarWidget();

signals:
    void datePicked(const QDate &date);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void stepBy(int steps) override;

private:
    void reportIfUser(const QDate &date);
    QRect arrowRect() const;
    void openCalendar();

    QCalendarWidget *m_calendar = nullptr;
    bool m_userEditing = false;
    bool m_compact = false;
};
