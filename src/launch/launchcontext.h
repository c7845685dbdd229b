#pragma once

#include <QString>

// Tells the user that applicationName runs only from inside the suite; shown when the
// program was started without a command line. The answer is of no interest.
void ReportLaunchContext(const QString &applicationName);
