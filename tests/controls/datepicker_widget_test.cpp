// The date picker: four-digit short dates, and only the user's picks are
// reported.
#include "controls/ui/datepicker.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QCalendarWidget>
#include <QSignalSpy>
#include <QTest>

namespace {

TEST(DatePickerTest, ShowsAFourDigitYearAndReportsOnlyTheUsersPicks)
{
    CvDatePicker picker;
    QSignalSpy picked(&picker, &CvDatePicker::datePicked);
    picker.setDate(QDate(2010, 4, 1));
    EXPECT_EQ(picker.text(), "1/04/2010");
    EXPECT_EQ(picked.count(), 0);

    picker.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&picker));
    picker.setFocus();
    // The arrow key steps the day section the cursor sits in.
    picker.setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(&picker, Qt::Key_Up);
    ASSERT_EQ(picked.count(), 1);
    EXPECT_EQ(picked.at(0).at(0).toDate(), QDate(2010, 4, 2));

    // From the calendar: open it with its arrow, move a week on, take the day
    // with Enter.
    QTest::mouseClick(&picker, Qt::LeftButton, {}, QPoint(picker.width() - 6, picker.height() / 2));
    QCalendarWidget *calendar = picker.calendarWidget();
    ASSERT_TRUE(QTest::qWaitFor([calendar] { return calendar->isVisible(); }));
    QTest::keyClick(calendar->focusWidget() ? calendar->focusWidget() : calendar, Qt::Key_Down);
    QTest::keyClick(calendar->focusWidget() ? calendar->focusWidget() : calendar, Qt::Key_Return);
    ASSERT_GE(picked.count(), 2);
    EXPECT_EQ(picked.last().at(0).toDate(), QDate(2010, 4, 9));
    EXPECT_EQ(picker.date(), QDate(2010, 4, 9));
}

// A compact picker shows only its button: typing or the wheel must not change the
// hidden date, and a press anywhere on it, or F4, opens the calendar.
TEST(DatePickerTest, CompactPickerIsAllButton)
{
    CvDatePicker picker;
    picker.setCompact(true);
    picker.setDate(QDate(2010, 4, 1));
    QSignalSpy picked(&picker, &CvDatePicker::datePicked);
    picker.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&picker));
    picker.setFocus();
    QTest::keyClicks(&picker, "31/3/27");
    QTest::keyClick(&picker, Qt::Key_Up);
    EXPECT_EQ(picker.date(), QDate(2010, 4, 1));
    EXPECT_EQ(picked.count(), 0);

    QCalendarWidget *calendar = picker.calendarWidget();
    QTest::mouseClick(&picker, Qt::LeftButton, {}, QPoint(2, picker.height() / 2));
    ASSERT_TRUE(QTest::qWaitFor([calendar] { return calendar->isVisible(); }));
    QTest::keyClick(calendar->focusWidget() ? calendar->focusWidget() : calendar, Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([calendar] { return !calendar->isVisible(); }));
    picker.setFocus();
    QTest::keyClick(&picker, Qt::Key_F4);
    EXPECT_TRUE(QTest::qWaitFor([calendar] { return calendar->isVisible(); }));
}

} // namespace
