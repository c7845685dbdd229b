#include "support/widgets.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

bool clickFocus(QWidget *widget)
{
    if (!widget)
        return false;
    widget->setFocus(Qt::MouseFocusReason);
    if (!QTest::qWaitFor([widget] { return widget->hasFocus(); }))
        return false;
    QApplication::processEvents();
    return true;
}
