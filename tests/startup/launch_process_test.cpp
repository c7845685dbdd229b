// Runs the real cvaddress program, as the suite does, with messages going to standard
// error so that no dialog waits for a person.
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#ifdef CVADDRESS_EXE

namespace {

struct ProgramRun
{
    int exitCode = -1;
    QString errors;
};

ProgramRun runProgram(const TempSuite &suite, const QStringList &arguments)
{
    QTemporaryDir runtime;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("CORVANE_MESSAGES", "stderr");
    env.insert("CORVANE_SHARED_DOCUMENTS", suite.dir());
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(CVADDRESS_EXE, arguments);
    const bool ended = process.waitForFinished(30000);
    EXPECT_TRUE(ended && process.exitStatus() == QProcess::NormalExit) << "cvaddress did not end";
    process.kill();
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardError())};
}

} // namespace

// The in-process launch tests hold the texts; here the program must route them to standard
// error, join its arguments with blanks, and end with the right status.
TEST(CvaddressProgram, ReportsToStandardErrorAndEndsWithItsStatus)
{
    TempSuite suite(false);
    suite.writeIni("[START]\r\nFirm=Kowhai Orchards\r\n");
    ProgramRun run = runProgram(suite, {});
    EXPECT_EQ(run.exitCode, 0);
    for (const char *text : {"Kowhai Orchards", "Invalid Execution", "Unable to Start Address Book",
                             "Please select the correct menu option from inside Kowhai Orchards"})
        EXPECT_TRUE(run.errors.contains(text)) << text << " not in: " << run.errors.toStdString();

    run = runProgram(suite, {"abc,1,True,False"});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.errors.contains("Run-time error '13':\n\nType mismatch"));
    // Joined, field 2 is " 99999999999 ", too large; either argument read alone would
    // give an empty field and a type mismatch instead.
    run = runProgram(suite, {"0,", "99999999999", ",True,False"});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.errors.contains("Run-time error '6':\n\nOverflow")) << run.errors.toStdString();
}

#endif
