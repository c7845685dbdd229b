#pragma once

#include <QString>

// The colour most recently read from the suite's colour settings.
struct SuiteColour
{
    qint32 red = 0;
    qint32 green = 0;
    qint32 blue = 0;
};

// The shared colour that readColourEntry fills; callers read it right after.
SuiteColour &suiteColour();

// Reads [COLOURS] name ("red,green,blue") into suiteColour(). A component that
// is missing or not a number leaves its part of the colour as it was.
void readColourEntry(const QString &name);
