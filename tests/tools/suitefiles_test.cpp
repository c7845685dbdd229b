#include "bookquery.h"
#include "data/cverror.h"
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

TEST(SuiteFiles, InitLaysOutTheSharedFolderAndNeverOverwrites)
{
    TempSuite suite;
    EXPECT_TRUE(QFileInfo::exists(suite.iniPath()));
    EXPECT_TRUE(QFileInfo::exists(suite.farmPath()));
    EXPECT_TRUE(QFileInfo::exists(suite.wagePath()));

    suite.execFarm("INSERT INTO Addresses (BusName) VALUES ('Kept')");
    EXPECT_THROW(SuiteFiles::createDataFile(suite.farmPath(), SuiteFiles::DataFile::Farm), CvError);
    // A second init keeps what is there.
    SuiteFiles::initSuite(suite.dir());
    EXPECT_EQ(BookQuery(suite.farmPath()).value("SELECT BusName FROM Addresses"), "Kept");
}

TEST(SuiteFiles, IniIsTheSuitesOwnWithCrLfLines)
{
    QTemporaryDir dir;
    SuiteFiles::initSuite(dir.path());
    QFile f(SuiteFiles::iniPath(dir.path()));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray ini = f.readAll();
    EXPECT_EQ(ini.count("\r\n"), ini.count('\n'));
    for (const char *line :
         {"[CORVANE]\r\n", "[START]\r\nFirm=Corvane\r\n", "[WAGE]\r\n", "AllEmployees=N\r\n",
          "WageAccount=401001\r\n", "TaxNumberName=GST\r\n", "[WINDOWS]\r\nCountry=64\r\n",
          "AddressBook=1001\r\n", "[COLOURS]\r\nCvHeader=0,51,102\r\n"})
        EXPECT_TRUE(ini.contains(line)) << line;
    // The data paths are left to their defaults.
    EXPECT_FALSE(ini.contains("DataRoot"));
    EXPECT_FALSE(ini.contains("DataFileName"));
}

TEST(SuiteFiles, DemoRefusesExistingFilesUnlessForced)
{
    QTemporaryDir dir;
    SuiteFiles::initSuite(dir.path());
    execOnBook(SuiteFiles::farmPath(dir.path()), "INSERT INTO Addresses (BusName) VALUES ('Mine')");
    try {
        SuiteFiles::demoSuite(dir.path());
        ADD_FAILURE() << "demo ran over existing books";
    } catch (const CvError &e) {
        EXPECT_TRUE(e.description().contains(SuiteFiles::farmPath(dir.path())));
        EXPECT_TRUE(e.description().contains(SuiteFiles::wagePath(dir.path())));
    }
    EXPECT_EQ(BookQuery(SuiteFiles::farmPath(dir.path())).count("SELECT COUNT(*) FROM Addresses"),
              1);

    SuiteFiles::demoSuite(dir.path(), true);
    BookQuery farm(SuiteFiles::farmPath(dir.path()));
    EXPECT_EQ(farm.count("SELECT COUNT(*) FROM Addresses WHERE BusName = 'Mine'"), 0);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Addresses"), 30);
    // Nothing is left beside the data files.
    EXPECT_EQ(QDir(dir.path() + "/data").entryList(QDir::Files).size(), 2);
}
