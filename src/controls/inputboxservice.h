#pragma once

#include <QString>

// Asks the user for one line of text (the suite's input box). Logic asks
// through this so tests can answer; the widget build installs the dialog.
class InputBoxService
{
public:
    virtual ~InputBoxService() = default;
    // The text entered, or an empty string when the user cancels.
    virtual QString ask(const QString &prompt, const QString &title,
                        const QString &defaultText) = 0;
};
