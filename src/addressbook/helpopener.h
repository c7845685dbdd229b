#pragma once

#include <QString>

// Shows the suite's help file at a topic (F1) and closes it again when the
// window goes. The widget build opens the platform's help viewer.
class HelpOpener
{
public:
    virtual ~HelpOpener() = default;
    virtual void openHelp(const QString &helpFile, const QString &topic) = 0;
    virtual void closeHelp() = 0;
};
