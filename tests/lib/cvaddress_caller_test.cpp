// The public library as another suite program uses it: the example caller, run as a process
// of its own against real suite files.
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QFileInfo>
#include <QProcess>

namespace {

// Exit status, then standard output, then standard error.
QStringList runCaller(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(CVADDRESS_CALLER_EXE), arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        process.kill();
    return {QString::number(process.exitCode()), process.readAllStandardOutput(),
            process.readAllStandardError()};
}

} // namespace

TEST(CvAddressCaller, OpenDBReadsTheMainDataFileOrRaisesWhenItIsMissing)
{
    TempSuite suite;
    suite.execFarm("INSERT INTO Addresses (BusName) VALUES ('Kowhai Orchards'), ('Rata Farm')");
    EXPECT_EQ(runCaller({"opendb"}), QStringList({"0", "Addresses: 2\n", ""}));

    TempSuite empty(false);
    const QStringList run = runCaller({"opendb"});
    EXPECT_EQ(run.mid(0, 2), QStringList({"1", ""}));
    EXPECT_TRUE(run[2].startsWith("Error 3024: ")) << run[2].toStdString();
    EXPECT_FALSE(QFileInfo::exists(empty.dir() + "/data/Farm32.mdb"));
}
