#pragma once

#include <QString>

// Appends "date and time, tab, text, CR LF" to CvErrors.log in the common
// folder and changes text to that line. Only the first call of a process
// writes; later calls change text and are skipped, so a run leaves at most one
// line. Never fails towards the caller. A new log is made readable by its
// owner only; one that has reached kErrorLogLimit bytes is first renamed to
// CvErrors.log.old, so the two never hold much more than twice that.
void LogError(QString &text);

inline constexpr qint64 kErrorLogLimit = 256 * 1024;

// Lets the next LogError write again, as at the start of a process. For tests.
void resetErrorLogState();
