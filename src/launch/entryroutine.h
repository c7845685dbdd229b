#pragma once

#include <QString>

class CvError;

// Tells the user that applicationName runs only from inside the suite; shown when the
// program was started without a command line. The answer is of no interest.
void ReportLaunchContext(const QString &applicationName);

// The process command line as one string: the arguments after the program name joined
// with single blanks, so that 1, 37 typed without quotes still reads as one line.
QString processCommandLine();

// The entry routine. commandLine holds four comma-separated fields: mode, address
// identifier, modal, wage-book pick (0,0,False,False or 1,245,True,True). An empty line
// shows the launch-context report and returns. A modeless window is still open on return.
// Every run-time error reaches the caller unchanged.
void runEntryRoutine(const QString &commandLine);

// What the executable's main() runs: the entry routine, then the event loop while a
// modeless window is open. An error that the entry routine raises gets the platform's
// unhandled-error report, and no window stays open. Returns the exit status (1 after an
// error).
int runEntryProcess(const QString &commandLine);

// "Run-time error '13':" and the description: shown through the message service and
// printed to standard error.
void reportUnhandledError(const CvError &error);
