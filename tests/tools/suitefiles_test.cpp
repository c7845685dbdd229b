#include "data/cverror.h"
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

TEST(SuiteFiles, InitLaysOutTheSharedFolderAndNeverOverwrites)
{
    TempSuite suite;
    EXPECT_TRUE(QFileInfo::exists(suite.iniPath()));
    EXPECT_TRUE(QFileInfo::exists(suite.farmPath()));
    EXPECT_TRUE(QFileInfo::exists(suite.wagePath()));

    suite.execFarm("INSERT INTO Addresses (BusName) VALUES ('Kept')");
    EXPECT_THROW(SuiteFiles::createDataFile(suite.farmPath(), SuiteFiles::DataFile::Farm),
                 CvError);
    // A second init keeps what is there.
    SuiteFiles::initSuite(suite.dir());
    EXPECT_GT(QFileInfo(suite.farmPath()).size(), 0);
}
