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

TEST(CvaddressProgram, MalformedCommandLinesEndWithTheRunTimeError)
{
    TempSuite suite(false);
    const struct
    {
        QStringList arguments;
        const char *error;
    } cases[] = {{{"0,12"}, "Run-time error '13':\n\nType mismatch"},
                 {{"abc,1,True,False"}, "Run-time error '13':\n\nType mismatch"},
                 // Joined, field 2 is " 99999999999 ", too large; either argument read
                 // alone would give an empty field and a type mismatch instead.
                 {{"0,", "99999999999", ",True,False"}, "Run-time error '6':\n\nOverflow"}};
    for (const auto &c : cases) {
        const ProgramRun run = runProgram(suite, c.arguments);
        EXPECT_NE(run.exitCode, 0) << c.error;
        EXPECT_TRUE(run.errors.contains(c.error)) << run.errors.toStdString();
    }
}

TEST(CvaddressProgram, WithoutCommandLineReportsTheLaunchContextAndEndsNormally)
{
    TempSuite suite(false);
    suite.writeIni("[START]\r\nFirm=Kowhai Orchards\r\n");
    const ProgramRun run = runProgram(suite, {});
    EXPECT_EQ(run.exitCode, 0);
    for (const char *text :
         {"Kowhai Orchards", "Invalid Execution", "Unable to Start Address Book",
          "This Application is designed to run from inside Kowhai Orchards",
          "Please select the correct menu option from inside Kowhai Orchards to launch "
          "Address Book."})
        EXPECT_TRUE(run.errors.contains(text)) << text << " not in: " << run.errors.toStdString();
}

#endif
