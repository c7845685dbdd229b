// The real cvaddress program, run as the suite runs it: its messages, its exit status, the
// screenshot switch scripts use, and a clean start on the demo suite.
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#ifdef CVADDRESS_EXE

namespace {

struct ProgramRun
{
    int exitCode = -1;
    QString errors;
    QImage shot; // null unless asked for and taken
};

// Runs the program on the suite. messagesToStderr: no dialog waits for a person; else
// the real dialogs are closed by the screenshot switch too..
ProgramRun runProgram(const TempSuite &suite, const QStringList &arguments,
                      bool messagesToStderr = true)
{
    QTemporaryDir scratch;
    const QString shot = scratch.path() + "/shots/window.png";
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    if (messagesToStderr)
        env.insert("CORVANE_MESSAGES", "stderr");
    else
        env.remove("CORVANE_MESSAGES");
    env.insert("CORVANE_SHARED_DOCUMENTS", suite.dir());
    env.insert("XDG_RUNTIME_DIR", scratch.path());
    env.insert("XDG_CONFIG_HOME", scratch.path());
    env.insert("CORVANE_SCREENSHOT", shot);
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(CVADDRESS_EXE, arguments);
    QElapsedTimer clock;
    clock.start();
    while (process.state() != QProcess::NotRunning && clock.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        process.waitForFinished(10);
    }
    EXPECT_EQ(process.state(), QProcess::NotRunning) << "cvaddress did not end";
    process.kill();
    process.waitForFinished();
    const bool normal = process.exitStatus() == QProcess::NormalExit;
    return {normal ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardError()), QImage(shot, "PNG")};
}

} // namespace

// The in-process launch tests hold the texts; here the program must route them to standard
// error, join its arguments with blanks, and end with the right status.
TEST(CvaddressProgram, ReportsToStandardErrorAndEndsWithItsStatus)
{
    TempSuite suite(false);
    suite.writeIni("[START]\r\nFirm=Kowhai Orchards\r\n");
    const struct
    {
        QStringList arguments;
        int exitCode;
        QStringList texts;
    } cases[] = {{{}, 0, {"Please select the correct menu option from inside Kowhai Orchards"}},
                 // Joined, field 2 is " 99999999999 ", too large; either argument read alone would
                 // give an empty field and a type mismatch instead.
                 {{"0,", "99999999999", ",True,False"}, 1, {"Run-time error '6':\n\nOverflow"}}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        const ProgramRun run = runProgram(suite, c.arguments);
        EXPECT_EQ(run.exitCode != 0, c.exitCode != 0);
        for (const QString &text : c.texts)
            EXPECT_TRUE(run.errors.contains(text)) << run.errors.toStdString();
    }
}

// The screenshot switch saves the first window and then closes every window, so the
// program ends by itself; the demo suite starts in both modes without a log line (every
// INI key the program reads is there).
TEST(CvaddressProgram, SavesTheFirstWindowThenEveryLaunchEnds)
{
    TempSuite suite(false);
    SuiteFiles::demoSuite(suite.dir(), true);
    for (const char *mode : {"0,0,False,False", "1,0,True,True"}) {
        const ProgramRun run = runProgram(suite, {mode}, false);
        EXPECT_EQ(run.exitCode, 0) << mode << run.errors.toStdString();
        EXPECT_GT(run.shot.width(), 300) << mode;
        EXPECT_FALSE(QFile::exists(suite.errorLogPath()))
            << mode << ": " << suite.readErrorLog().toStdString();
    }
    // No data files: the load reports it in a modal dialog, the first window. Closing it
    // must not pull the address book away from under the load that is still running.
    TempSuite empty(false);
    const ProgramRun run = runProgram(empty, {"0,0,True,False"}, false);
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_FALSE(run.shot.isNull());
}

#endif
