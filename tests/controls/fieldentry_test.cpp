// Which field the user is in, from focus events that may come late or detour
// through another window.
#include "controls/ui/fieldentry.h"

#include <gtest/gtest.h>
#include <QFocusEvent>
#include <QObject>
#include <QStringList>
#include <QWidget>

namespace {

class FieldEntryTest : public ::testing::Test
{
protected:
    void in(QObject &field, Qt::FocusReason reason = Qt::MouseFocusReason)
    {
        entry.focusEvent(&field, QFocusEvent(QEvent::FocusIn, reason));
    }
    void out(QObject &field, Qt::FocusReason reason = Qt::MouseFocusReason)
    {
        entry.focusEvent(&field, QFocusEvent(QEvent::FocusOut, reason));
    }

    QObject a, b;
    QStringList calls;
    FieldEntry entry{[this](QObject *f, bool byFocus) {
                         calls << (f == &a ? "enter a" : "enter b") +
                                      QString(byFocus ? "" : " by edit");
                     },
                     [this](QObject *f) {
                         calls << (f == &a ? "leave a" : "leave b");
                         return !(refuse && f == &a);
                     }};
    bool refuse = false; // the logic cannot take what a holds
};

TEST_F(FieldEntryTest, AnotherWindowOrAPopUpIsNotLeavingTheField)
{
    in(a, Qt::ActiveWindowFocusReason); // the window opened with the focus here
    out(a, Qt::ActiveWindowFocusReason);
    in(a, Qt::ActiveWindowFocusReason);
    out(a, Qt::PopupFocusReason);
    in(a, Qt::PopupFocusReason);
    out(a, Qt::TabFocusReason);
    EXPECT_EQ(calls, QStringList({"enter a", "leave a"}));
    EXPECT_EQ(entry.entered(), nullptr);

    // Away in another window, and back to another field: the first is left first.
    calls.clear();
    in(a);
    out(a, Qt::ActiveWindowFocusReason);
    in(b, Qt::ActiveWindowFocusReason);
    EXPECT_EQ(calls, QStringList({"enter a", "leave a", "enter b"}));
}

TEST_F(FieldEntryTest, AnEditBeforeTheFocusEventEntersOnce)
{
    in(a);
    out(a);
    entry.beforeEdit(&b);
    entry.beforeEdit(&b);
    in(b, Qt::ActiveWindowFocusReason); // late
    out(b);
    EXPECT_EQ(calls, QStringList({"enter a", "leave a", "enter b by edit", "leave b"}));
}

// A field whose text the logic refuses keeps the user, and a commit before a save or
// close says no until the logic takes it.
TEST_F(FieldEntryTest, ARefusedFieldKeepsTheUserAndStopsTheCommit)
{
    QWidget window;
    refuse = true;
    in(a);
    EXPECT_FALSE(entry.commitPending(&window));
    EXPECT_EQ(entry.entered(), &a);
    out(a);
    EXPECT_EQ(entry.entered(), &a);
    refuse = false;
    EXPECT_TRUE(entry.commitPending(&window));
    EXPECT_EQ(entry.entered(), &a) << "still in the field after a commit";
    EXPECT_EQ(calls, QStringList({"enter a", "leave a", "leave a", "leave a", "enter a by edit"}));
}

} // namespace
