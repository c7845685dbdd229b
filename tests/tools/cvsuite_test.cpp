#include "bookquery.h"
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QProcess>
#include <QTemporaryDir>

namespace {

struct ToolRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

ToolRun cvsuite(const QStringList &args)
{
    QProcess p;
    p.start(CVSUITE_EXE, args);
    ToolRun r;
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit)
        return r;
    r.exitCode = p.exitCode();
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

} // namespace

TEST(CvSuiteTool, UsageErrorsPrintUsageAndExitTwo)
{
    QTemporaryDir dir;
    const QList<QStringList> wrong = {
        {},
        {"make", dir.path()},
        {"init"},
        {"demo", dir.path(), "other"},
        {"init", dir.path(), "--addresses", "5"},
        {"bulk", dir.path(), "--addresses", "ten", "--employees", "1"},
        {"bulk", dir.path(), "--addresses", "-5", "--employees", "0"},
        {"bulk", dir.path(), "--addresses", "5", "--employees", "6"},
        {"bulk", dir.path(), "--addresses", "5"},
        {"bulk", dir.path(), "--addresses=5", "--employees"},
        {"demo", dir.path(), "--overwrite"},
    };
    for (const QStringList &args : wrong) {
        const ToolRun r = cvsuite(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains("Usage: cvsuite")) << args.join(' ').toStdString();
    }
    // Nothing was made on the way.
    EXPECT_TRUE(SuiteFiles::existingDataFiles(dir.path()).isEmpty());
}

TEST(CvSuiteTool, NeverOverwritesDataWithoutForce)
{
    QTemporaryDir dir;
    const QString farm = SuiteFiles::farmPath(dir.path());
    ToolRun r = cvsuite({"init", dir.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(farm));
    execOnFile(farm, "INSERT INTO Addresses (BusName) VALUES ('Kept')");

    for (const QStringList &again :
         {QStringList{"init", dir.path()}, QStringList{"demo", dir.path()},
          QStringList{"bulk", dir.path(), "--addresses", "10", "--employees", "2"}}) {
        r = cvsuite(again);
        EXPECT_EQ(r.exitCode, 1) << again.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(farm)) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("--force"));
        EXPECT_EQ(BookQuery(farm).count("SELECT COUNT(*) FROM Addresses WHERE BusName = 'Kept'"),
                  1);
    }

    r = cvsuite({"demo", dir.path(), "--force"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Addresses 40")) << r.out.toStdString();
    EXPECT_EQ(BookQuery(farm).count("SELECT COUNT(*) FROM Addresses WHERE BusName = 'Kept'"), 0);
}

TEST(CvSuiteTool, BulkReportsWhatItMade)
{
    QTemporaryDir dir;
    const ToolRun r = cvsuite(
        {"bulk", dir.path(), "--addresses", "1200", "--employees=300", "--notes-bytes", "4096"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Addresses 1,200")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("Employees 300")) << r.out.toStdString();
    EXPECT_EQ(BookQuery(SuiteFiles::farmPath(dir.path()))
                  .count("SELECT COUNT(*) FROM Addresses WHERE length(notes) = 4096"),
              1);
}
