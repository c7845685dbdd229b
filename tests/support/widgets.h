#pragma once

#include <gtest/gtest.h>
#include <QObject>
#include <QString>

class QWidget;

// The child called name, failing the test (not crashing it) when there is none.
template <typename T> T *namedChild(const QObject *root, const QString &name)
{
    T *child = root->findChild<T *>(name);
    EXPECT_NE(child, nullptr) << name.toStdString();
    return child;
}

// Gives widget the focus as a click does, waits until it has it and lets the
// click's own handling (a field selecting its text) run. False when it never came.
bool clickFocus(QWidget *widget);
