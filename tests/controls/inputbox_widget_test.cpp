// The input box: what the user types comes back, Cancel gives nothing.
#include "controls/ui/inputbox.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

// Acts on the input box once it is up: types text, then presses Enter or
// clicks Cancel.
void answerWhenShown(const QString &typed, bool cancel, QString *shownPrompt, QString *shownTitle)
{
    QTimer::singleShot(0, [=] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        *shownTitle = dialog->windowTitle();
        *shownPrompt = dialog->findChild<QLabel *>("promptLabel")->text();
        auto *edit = dialog->findChild<QLineEdit *>("answerEdit");
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        EXPECT_TRUE(edit->hasFocus());
        QTest::keyClicks(edit, typed);
        if (cancel) {
            QTest::mouseClick(
                dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel),
                Qt::LeftButton);
        } else {
            QTest::keyClick(edit, Qt::Key_Return);
        }
    });
}

TEST(InputBoxTest, ReturnsTheTypedTextOrNothingOnCancel)
{
    InputBox box;
    QString prompt, title;
    answerWhenShown("Kauri Contracting", false, &prompt, &title);
    EXPECT_EQ(box.ask("Enter the name", "Add New Address", QString()), "Kauri Contracting");
    EXPECT_EQ(prompt, "Enter the name");
    EXPECT_EQ(title, "Add New Address");

    // The default is selected, so typing replaces it.
    answerWhenShown("New", false, &prompt, &title);
    EXPECT_EQ(box.ask("Enter the name", "Rename", "Old name"), "New");

    answerWhenShown("Discarded", true, &prompt, &title);
    EXPECT_EQ(box.ask("Enter the name", "Add New Address", "Default"), "");
}

} // namespace
