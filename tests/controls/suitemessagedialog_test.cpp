// The suite message dialog: what it shows, what its buttons return, and
// screenshots to look at.
#include "controls/ui/dialogmessageservice.h"
#include "controls/ui/suitemessagedialog.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <iostream>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <tuple>

namespace {

MessageRequest question()
{
    MessageRequest r;
    r.prompt = "Are you sure you want to delete Smith & Jones Contracting Limited, "
               "and every note kept against this entry?\r\n\r\nThe entry cannot be "
               "brought back once it is deleted.";
    r.buttons = 4;
    r.caption = "Corvane";
    r.title = "Confirm Deletion?";
    r.heading = "Smith && Jones";
    r.iconKind = 9;
    return r;
}

MessageRequest information()
{
    MessageRequest r;
    r.prompt = "Description - Could not find file '/home/farm/data/Farm32.mdb'.(3024) was "
               "generated in frmAddresses.Form_Load";
    r.caption = "Corvane Error";
    r.title = "An Error has Occurred";
    r.heading = "Error 3024 R&&D";
    return r;
}

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
    SuiteMessageDialog dialog(information());
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Corvane Error");
    EXPECT_EQ(label(dialog, "titleLabel")->text(), "An Error has Occurred");
    EXPECT_TRUE(label(dialog, "titleLabel")->font().bold());
    EXPECT_EQ(label(dialog, "headingLabel")->text(), "Error 3024 R&D");
    EXPECT_EQ(label(dialog, "headingLabel")->textFormat(), Qt::PlainText);
    EXPECT_EQ(label(dialog, "promptLabel")->text(), information().prompt);
    EXPECT_NE(button(dialog, QDialogButtonBox::Ok), nullptr);
    EXPECT_EQ(button(dialog, QDialogButtonBox::Yes), nullptr);
    EXPECT_GE(dialog.width(), 380);

    EXPECT_EQ(SuiteMessageDialog::headingDisplayText("A&&B &C &"), "A&B C ");

    MessageRequest bare = information();
    bare.heading.clear();
    SuiteMessageDialog noHeading(bare);
    EXPECT_TRUE(label(noHeading, "headingLabel")->isHidden());
}

TEST(SuiteMessageDialogTest, ButtonsReturnThePlatformCodes)
{
    EXPECT_TRUE(button(SuiteMessageDialog(question()), QDialogButtonBox::Yes)->isDefault());
    using B = QDialogButtonBox;
    // A button, or Escape (none) or the close box (Close), which are OK or No.
    const std::tuple<MessageRequest, B::StandardButton, qint16> cases[] = {
        {question(), B::Yes, ResultYes},        {question(), B::No, ResultNo},
        {information(), B::Ok, ResultOk},       {question(), B::NoButton, ResultNo},
        {information(), B::NoButton, ResultOk}, {question(), B::Close, ResultNo},
    };
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

TEST(SuiteMessageDialogTest, Screenshots)
{
    const QString folder = QDir::currentPath() + "/screenshots";
    QDir().mkpath(folder);
    const std::pair<const char *, MessageRequest> shots[] = {
        {"suitemessagedialog_information.png", information()},
        {"suitemessagedialog_question.png", question()},
    };
    for (const auto &[name, request] : shots) {
        SuiteMessageDialog dialog(request);
        dialog.show();
        QApplication::processEvents();
        const QString path = folder + '/' + name;
        ASSERT_TRUE(dialog.grab().save(path));
        std::cout << "screenshot: " << path.toStdString() << '\n';
        // Nothing may be cut off: every label gets the height its text needs.
        for (QLabel *l : dialog.findChildren<QLabel *>()) {
            if (l->isVisible() && l->wordWrap()) {
                EXPECT_GE(l->height(), l->heightForWidth(l->width()))
                    << l->objectName().toStdString();
            }
        }
    }
}

} // namespace
