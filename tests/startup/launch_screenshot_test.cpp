// The real program's screenshot switch, as scripts use it: the first window is saved and
// every window then closed, so the program ends by itself.
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#ifdef CVADDRESS_EXE

namespace {

// The picture taken, null when the program did not end normally with status 0.
QImage runWithScreenshot(const TempSuite &suite, const QString &commandLine)
{
    QTemporaryDir scratch;
    const QString shot = scratch.path() + "/shots/window.png";
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.remove("CORVANE_MESSAGES"); // real dialogs: they must be closed too
    env.insert("CORVANE_SHARED_DOCUMENTS", suite.dir());
    env.insert("XDG_RUNTIME_DIR", scratch.path());
    env.insert("CORVANE_SCREENSHOT", shot);
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(CVADDRESS_EXE, {commandLine});
    const bool ended = process.waitForFinished(30000);
    process.kill();
    process.waitForFinished();
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        ADD_FAILURE() << commandLine.toStdString() << ": "
                      << process.readAllStandardError().toStdString();
        return QImage();
    }
    return QImage(shot, "PNG");
}

} // namespace

TEST(CvaddressScreenshot, SavesTheFirstWindowThenEveryLaunchEnds)
{
    TempSuite suite;
    EXPECT_GT(runWithScreenshot(suite, "0,0,False,False").width(), 300);
    EXPECT_GT(runWithScreenshot(suite, "1,0,True,True").width(), 300);

    // No data files: the load reports it in a modal dialog, the first window. Closing it
    // must not pull the address book away from under the load that is still running.
    TempSuite empty(false);
    EXPECT_FALSE(runWithScreenshot(empty, "0,0,True,False").isNull());
}

#endif
