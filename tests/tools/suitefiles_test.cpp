// The suite files the tools make: the shared folder's layout, the demo books the
// features are tried on, bulk books of any size, and cvsuite's command line.
#include "bookquery.h"
#include "core/cverror.h"
#include "suitefiles.h"
#include "suiteswitch.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

TEST(SuiteFiles, InitLaysOutTheSharedFolderAndNeverOverwrites)
{
    TempSuite suite; // built by initSuite
    suite.execFarm("INSERT INTO Addresses (BusName) VALUES ('Kept')");
    EXPECT_THROW(SuiteFiles::createDataFile(suite.farmPath(), SuiteFiles::DataFile::Farm), CvError);
    SuiteFiles::initSuite(suite.dir());
    EXPECT_EQ(BookQuery(suite.farmPath()).value("SELECT BusName FROM Addresses"), "Kept");
    EXPECT_TRUE(BookQuery(suite.wagePath()).rows("SELECT * FROM Employees").isEmpty());
    // Large pages keep a growing notes memo cheap to rewrite; they only take when set
    // before the first table.
    EXPECT_EQ(BookQuery(suite.farmPath()).count("PRAGMA page_size"), 65536);

    // The INI file has CR LF lines and upper-case headers, which ReadIni insists on, and
    // leaves the data paths to their defaults with empty values.
    const QByteArray ini = suite.readIni();
    EXPECT_EQ(ini.count("\r\n"), ini.count('\n'));
    for (const char *line : {"[CORVANE]\r\nDataRoot=\r\nDataFileName=\r\nWageFileName=\r\n",
                             "[WINDOWS]\r\nCountry=64\r\n"})
        EXPECT_TRUE(ini.contains(line)) << line;
    EXPECT_FALSE(QString(ini).contains(QRegularExpression(R"(\[[^\]]*[a-z][^\]]*\])")));
}

namespace {

SuiteFiles::BulkOptions options(int addresses, int employees)
{
    SuiteFiles::BulkOptions o;
    o.addresses = addresses;
    o.employees = employees;
    return o;
}

} // namespace

TEST(BulkBooks, MakesExactlyTheEntriesAndEmployeesAskedFor)
{
    QTemporaryDir dir;
    SuiteFiles::BulkOptions o = options(3000, 2100);
    o.notesBytes = 70000;
    SuiteFiles::bulkSuite(dir.path(), o);
    BookQuery farm(SuiteFiles::farmPath(dir.path()));
    BookQuery wage(SuiteFiles::wagePath(dir.path()));

    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses"), 3000);
    EXPECT_EQ(wage.count("SELECT COUNT(DISTINCT AddressID) FROM Employees"), 2100);
    const qint64 finished = wage.count("SELECT COUNT(*) FROM Employees WHERE Datefinished > 0");
    EXPECT_GT(finished, 2100 / 10);
    EXPECT_LT(finished, 2100 / 2);

    // Employees 0, 1000 and 2000 carry the grown notes, to the byte.
    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses "
                         "WHERE length(CAST(notes AS BLOB)) = 70000 AND WageFlag = -1"),
              3);

    // Names are spread over the letter strip.
    EXPECT_GE(farm.count("SELECT COUNT(DISTINCT upper(substr(BusName, 1, 1))) FROM Addresses"), 26);
    expectConsistentBooks(farm, wage);
}

TEST(BulkBooks, SameOptionsGiveTheSameRows)
{
    QTemporaryDir first, second, third;
    SuiteFiles::bulkSuite(first.path(), options(800, 150));
    SuiteFiles::bulkSuite(second.path(), options(800, 150));
    SuiteFiles::BulkOptions reseeded = options(800, 150);
    reseeded.seed = 7;
    SuiteFiles::bulkSuite(third.path(), reseeded);

    for (auto path : {&SuiteFiles::farmPath, &SuiteFiles::wagePath}) {
        const QByteArray a = BookQuery(path(first.path())).digest();
        EXPECT_EQ(a, BookQuery(path(second.path())).digest());
        EXPECT_NE(a, BookQuery(path(third.path())).digest());
    }
}

// Refused before anything is made, or failing after the books are built (a folder where
// the wage file belongs): no file is left behind, and existing books stay.
TEST(BulkBooks, RefusesOrFailsWithoutLeavingFiles)
{
    QTemporaryDir dir;
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(10, 11)), CvError);
    EXPECT_TRUE(SuiteFiles::existingDataFiles(dir.path()).isEmpty());

    QTemporaryDir blocked;
    ASSERT_TRUE(QDir().mkpath(SuiteFiles::wagePath(blocked.path())));
    SuiteFiles::BulkOptions forced = options(50, 5);
    forced.force = true;
    EXPECT_THROW(SuiteFiles::bulkSuite(blocked.path(), forced), CvError);
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::farmPath(blocked.path())));
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::iniPath(blocked.path())));
    EXPECT_TRUE(QDir(SuiteFiles::generationsFolder(blocked.path()))
                    .entryList({"suite-*"}, QDir::AllEntries | QDir::Hidden)
                    .isEmpty());
}

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
    const bool ended = p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit;
    return {ended ? p.exitCode() : -1, QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

} // namespace

TEST(CvSuiteTool, UsageErrorsPrintUsageAndExitTwo)
{
    QTemporaryDir dir;
    const QList<QStringList> wrong = {{},
                                      {"make", dir.path()},
                                      {"init"},
                                      {"bulk", dir.path(), "--addresses", "-5", "--employees", "0"},
                                      {"bulk", dir.path(), "--addresses", "5", "--employees", "6"},
                                      {"bulk", dir.path(), "--addresses=5", "--employees"}};
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
    execOnFile(farm, "INSERT INTO Addresses (BusName) VALUES ('Kept')");

    for (const QStringList &again :
         {QStringList{"init", dir.path()}, QStringList{"demo", dir.path()},
          QStringList{"bulk", dir.path(), "--addresses", "10", "--employees", "2"}}) {
        r = cvsuite(again);
        EXPECT_EQ(r.exitCode, 1) << again.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(farm)) << r.err.toStdString();
        EXPECT_EQ(BookQuery(farm).count("SELECT COUNT(*) FROM Addresses WHERE BusName = 'Kept'"),
                  1);
    }

    r = cvsuite({"demo", dir.path(), "--force"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Addresses 40")) << r.out.toStdString();
    EXPECT_EQ(BookQuery(farm).count("SELECT COUNT(*) FROM Addresses WHERE BusName = 'Kept'"), 0);
}
