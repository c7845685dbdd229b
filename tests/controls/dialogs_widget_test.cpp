// The small controls: the grid's name drop-down, the date picker, the input box and
// the suite message dialog, driven with real keys and clicks.
#include "controls/ui/combodelegate.h"
#include "controls/ui/datepicker.h"
#include "controls/ui/dialogmessageservice.h"
#include "controls/ui/inputbox.h"
#include "controls/ui/suitemessagedialog.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <tuple>

namespace {

TEST(ComboDelegateTest, ShowsTheNameAndWritesTheChosenId)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), 7);
    GridColumn column;
    column.valueItems = {{12, "Child Support"}, {7, "Union Fees"}, {3, "Ward Levy"}};
    column.options.sorted = true;

    QTableView view;
    auto *delegate = new ComboDelegate(&view);
    delegate->setColumn(column);
    view.setItemDelegateForColumn(0, delegate);
    view.setModel(&model);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    EXPECT_EQ(delegate->displayText(7, QLocale()), "Union Fees");

    view.setCurrentIndex(model.index(0, 0));
    view.edit(model.index(0, 0));
    auto *combo = view.findChild<QComboBox *>("gridCombo");
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->currentText(), "Union Fees");
    // Sorted by name: one up is Child Support.
    QTest::keyClick(combo, Qt::Key_Up);
    EXPECT_EQ(model.data(model.index(0, 0)).toInt(), 12);
}

TEST(DatePickerTest, ShowsAFourDigitYearAndReportsOnlyTheUsersPicks)
{
    CvDatePicker picker;
    QSignalSpy picked(&picker, &CvDatePicker::datePicked);
    picker.setDate(QDate(2010, 4, 1));
    EXPECT_EQ(picker.text(), "1/04/2010");

    picker.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&picker));
    picker.setFocus();
    // The arrow key steps the day section the cursor sits in.
    picker.setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(&picker, Qt::Key_Up);
    ASSERT_EQ(picked.count(), 1);
    EXPECT_EQ(picked.at(0).at(0).toDate(), QDate(2010, 4, 2));
}

// A compact picker shows only its button: typing must not change the hidden date, and a
// press anywhere on it opens the calendar.
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
}

// Acts on the input box once it is up: notes its prompt, types text, then presses Enter or
// clicks Cancel.
void answerWhenShown(const QString &typed, bool cancel, QString *shownPrompt)
{
    QTimer::singleShot(0, [=] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        *shownPrompt = dialog->findChild<QLabel *>("promptLabel")->text();
        auto *edit = dialog->findChild<QLineEdit *>("answerEdit");
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        EXPECT_TRUE(edit->hasFocus());
        QTest::keyClicks(edit, typed);
        if (cancel)
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
        else
            QTest::keyClick(edit, Qt::Key_Return);
    });
}

// The default is selected, so typing replaces it; Cancel gives nothing.
TEST(InputBoxTest, ReturnsTheTypedTextOrNothingOnCancel)
{
    InputBox box;
    for (const bool cancel : {false, true}) {
        QString prompt;
        answerWhenShown("New", cancel, &prompt);
        EXPECT_EQ(box.ask("Enter the name", "Rename", "Old name"), cancel ? "" : "New");
        EXPECT_EQ(prompt, "Enter the name");
    }
}

// Ampersands in the heading come doubled, as SuiteMessageBox passes them.
const MessageRequest question{"Delete Smith & Jones?\r\n\r\nIt cannot be brought back.",
                              4,
                              "Corvane",
                              "Confirm Deletion?",
                              "Smith && Jones",
                              9};
const MessageRequest information{"Description - Could not find file '/home/farm/data/Farm32.mdb'."
                                 "(3024) was generated in frmAddresses.Form_Load",
                                 ButtonsOk, "Corvane Error", "An Error has Occurred",
                                 "Error 3024 R&&D"};

QLabel *label(const QDialog &dialog, const char *name)
{
    return dialog.findChild<QLabel *>(name);
}

QPushButton *button(const QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    auto *box = dialog.findChild<QDialogButtonBox *>();
    return box ? box->button(which) : nullptr;
}

TEST(SuiteMessageDialogTest, ShowsTheTextsWithLiteralAmpersands)
{
    SuiteMessageDialog dialog(information);
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Corvane Error");
    EXPECT_EQ(label(dialog, "titleLabel")->text(), "An Error has Occurred");
    EXPECT_EQ(label(dialog, "headingLabel")->text(), "Error 3024 R&D");
    EXPECT_EQ(label(dialog, "headingLabel")->textFormat(), Qt::PlainText);
    EXPECT_EQ(label(dialog, "promptLabel")->text(), information.prompt);
    EXPECT_NE(button(dialog, QDialogButtonBox::Ok), nullptr);
    EXPECT_EQ(button(dialog, QDialogButtonBox::Yes), nullptr);

    EXPECT_EQ(SuiteMessageDialog::headingDisplayText("A&&B &C &"), "A&B C ");

    MessageRequest bare = information;
    bare.heading.clear();
    SuiteMessageDialog noHeading(bare);
    EXPECT_TRUE(label(noHeading, "headingLabel")->isHidden());
}

TEST(SuiteMessageDialogTest, ButtonsReturnThePlatformCodes)
{
    using B = QDialogButtonBox;
    // A button, or Escape (none) or the close box (Close), which are OK or No.
    const std::tuple<MessageRequest, B::StandardButton, qint16> cases[] = {
        {question, B::No, ResultNo},
        {information, B::Ok, ResultOk},
        {information, B::NoButton, ResultOk},
        {question, B::Close, ResultNo}};
    for (const auto &[request, action, expected] : cases) {
        SuiteMessageDialog dialog(request);
        QTimer::singleShot(0, [&dialog, action = action] {
            if (action == B::Close)
                dialog.close();
            else if (action == B::NoButton)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                QTest::mouseClick(button(dialog, action), Qt::LeftButton);
        });
        EXPECT_EQ(dialog.exec(), expected) << request.title.toStdString() << ' ' << action;
    }
}

// Whose value stands: each named button answers; Enter and Escape go back (Cancel), so
// that nobody's value is lost by a key pressed out of habit.
// The three-way questions: each button answers, Escape goes back, and Enter takes the
// safe choice (Cancel for whose values stand, Go to Existing for a lookalike).
TEST(SuiteMessageDialogTest, ThreeWayQuestionsAnswerAndDefaultSafely)
{
    const struct
    {
        qint32 buttons;
        const char *press;
        qint16 expected;
    } cases[] = {{ButtonsKeepMineTakeTheirsCancel, "cmdKeepMine", ResultYes},
                 {ButtonsKeepMineTakeTheirsCancel, "cmdTakeTheirs", ResultNo},
                 {ButtonsKeepMineTakeTheirsCancel, "enter", ResultCancel},
                 {ButtonsKeepMineTakeTheirsCancel, "escape", ResultCancel},
                 {ButtonsGoToAddAnywayCancel, "cmdGoToExisting", ResultYes},
                 {ButtonsGoToAddAnywayCancel, "cmdAddAnyway", ResultNo},
                 {ButtonsGoToAddAnywayCancel, "enter", ResultYes},
                 {ButtonsGoToAddAnywayCancel, "escape", ResultCancel}};
    for (const auto &c : cases) {
        MessageRequest request = question;
        request.buttons = c.buttons;
        SuiteMessageDialog dialog(request);
        QTimer::singleShot(0, [&dialog, press = QString(c.press)] {
            if (press == u"enter")
                QTest::keyClick(&dialog, Qt::Key_Return);
            else if (press == u"escape")
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                QTest::mouseClick(dialog.findChild<QPushButton *>(press), Qt::LeftButton);
        });
        EXPECT_EQ(dialog.exec(), c.expected) << c.buttons << c.press;
    }
}

TEST(SuiteMessageDialogTest, ServiceShowsTheDialogForSuiteMessageBox)
{
    DialogMessageService service;
    MessageService *before = messageService();
    setMessageService(&service);
    QString shownHeading;
    QTimer::singleShot(0, [&shownHeading] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        shownHeading = label(*dialog, "headingLabel")->text();
        QTest::keyClick(dialog, Qt::Key_Return); // the default button: Yes
    });
    const qint16 answer =
        SuiteMessageBox("Delete?", 4, "Corvane", "Confirm Deletion?", "Smith & Sons", 9, true);
    setMessageService(before);
    EXPECT_EQ(answer, ResultYes);
    EXPECT_EQ(shownHeading, "Smith & Sons");
}

} // namespace
