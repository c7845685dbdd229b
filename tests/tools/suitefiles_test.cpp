#include "bookquery.h"
#include "core/cverror.h"
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

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
                             "[START]\r\nFirm=Corvane\r\n", "[WAGE]\r\n", "[TAX]\r\n",
                             "[WINDOWS]\r\nCountry=64\r\n", "[COLOURS]\r\n"})
        EXPECT_TRUE(ini.contains(line)) << line;
    EXPECT_FALSE(QString(ini).contains(QRegularExpression(R"(\[[^\]]*[a-z][^\]]*\])")));
}

TEST(SuiteFiles, DemoRefusesExistingFilesUnlessForced)
{
    TempSuite suite;
    suite.execFarm("INSERT INTO Addresses (BusName) VALUES ('Mine')");
    try {
        SuiteFiles::demoSuite(suite.dir());
        ADD_FAILURE() << "demo ran over existing books";
    } catch (const CvError &e) {
        EXPECT_TRUE(e.description().contains(suite.farmPath()));
        EXPECT_TRUE(e.description().contains(suite.wagePath()));
    }
    EXPECT_EQ(BookQuery(suite.farmPath()).count("SELECT COUNT(*) FROM Addresses"), 1);

    SuiteFiles::demoSuite(suite.dir(), true);
    EXPECT_EQ(BookQuery(suite.farmPath()).count("SELECT COUNT(*) FROM Addresses"), 40);
    // Nothing is left beside the data files.
    EXPECT_EQ(QDir(suite.dir() + "/data").entryList(QDir::Files).size(), 2);
}
