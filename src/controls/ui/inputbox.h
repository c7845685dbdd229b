#pragma once

#include "controls/inputboxservice.h"

#include <QPointer>
#include <QWidget>

// The suite's input box: a modal dialog with a prompt, one line of text and
// OK and Cancel. Installed by the program for the logic that asks for text.
class InputBox : public InputBoxService
{
public:
    // The dialog is centred over parent, or over the active window when none
    // is given.
    explicit InputBox(QWidget *parent = nullptr) : m_parent(parent) {}

    QString ask(const QString &prompt, const QString &title, const QString &defaultText) override;

private:
    QPointer<QWidget> m_parent;
};
