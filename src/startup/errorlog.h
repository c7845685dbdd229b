#pragma once

#include <QString>

// Appends "date and time, tab, text, CR LF" to CvErrors.log in the common
// folder and changes text to that line. Only the first call of a process
// writes; later calls change text and are skipped, so a run leaves at most one
// line. Never fails towards the caller.
void LogError(QString &text);

// Lets the next LogError write again, as at the start of a process. For tests.
void resetErrorLogState();
