#pragma once

#include <gtest/gtest.h>
#include <QApplication>
#include <QObject>
#include <QString>
#include <QTest>
#include <QWidget>

// The child called name, failing the test (not crashing it) when there is none.
template <typename T> T *namedChild(const QObject *root, const QString &name)
{
    T *child = root->findChild<T *>(name);
    EXPECT_NE(child, nullptr) << name.toStdString();
    return child;
}

// Gives widget the focus as a click does, waits until it has it and lets the
// click's own handling (a field selecting its text) run. False when it never came.
inline bool clickFocus(QWidget *widget)
{
    if (!widget)
        return false;
    widget->setFocus(Qt::MouseFocusReason);
    if (!QTest::qWaitFor([widget] { return widget->hasFocus(); }))
        return false;
    QApplication::processEvents();
    return true;
}
