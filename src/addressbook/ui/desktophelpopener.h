#pragma once

#include "addressbook/helpopener.h"

// Opens the help file in the desktop's own viewer, at the topic as the
// address's fragment.
class DesktopHelpOpener : public HelpOpener
{
public:
    void openHelp(const QString &helpFile, const QString &topic) override;
    // The desktop's viewer is a program of its own, which this one cannot
    // close.
    void closeHelp() override {}
};
