#include "bookquery.h"
#include "core/cverror.h"
#include "suitefiles.h"
#include "suiteswitch.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

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
    EXPECT_LT(farm.count("SELECT COUNT(*) FROM Addresses WHERE length(notes) > 20000"), 4);
    EXPECT_GT(farm.count("SELECT COUNT(*) FROM Addresses WHERE notes IS NULL"), 0);

    // Names are spread over the letter strip.
    EXPECT_GE(farm.count("SELECT COUNT(DISTINCT upper(substr(BusName, 1, 1))) FROM Addresses"), 26);
    EXPECT_EQ(farm.value("PRAGMA journal_mode").toString(), "delete");
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

TEST(BulkBooks, RefusesMoreEmployeesThanEntriesAndKeepsExistingFiles)
{
    QTemporaryDir dir;
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(10, 11)), CvError);
    EXPECT_TRUE(SuiteFiles::existingDataFiles(dir.path()).isEmpty());

    SuiteFiles::bulkSuite(dir.path(), options(10, 0));
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), options(20, 0)), CvError);
    EXPECT_EQ(BookQuery(SuiteFiles::farmPath(dir.path())).count("SELECT COUNT(*) FROM Addresses"),
              10);
}

TEST(BulkBooks, AFailedBuildLeavesNoFilesBehind)
{
    QTemporaryDir dir;
    // A folder where the wage file belongs: the books are built, but cannot be put in
    // place.
    ASSERT_TRUE(QDir().mkpath(SuiteFiles::wagePath(dir.path())));
    SuiteFiles::BulkOptions forced = options(50, 5);
    forced.force = true;
    EXPECT_THROW(SuiteFiles::bulkSuite(dir.path(), forced), CvError);
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::farmPath(dir.path())));
    EXPECT_FALSE(QFileInfo::exists(SuiteFiles::iniPath(dir.path())));
    EXPECT_TRUE(QDir(SuiteFiles::generationsFolder(dir.path()))
                    .entryList({"suite-*"}, QDir::AllEntries | QDir::Hidden)
                    .isEmpty());
}
