// CvAddress: the address book driven in-process by another suite program.
#include "core/cverror.h"
#include "launch/addressglobals.h"
#include "launch/cvaddress.h"
#include "launch/wagebook.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/standinwindow.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocalServer>
#include <QTemporaryDir>

namespace {

class CvAddressTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        AddressGlobals::reset();
        installStandInWindow(&log);
    }
    void TearDown() override { AddressGlobals::reset(); }

    StandInWindow &window() { return static_cast<StandInWindow &>(AddressGlobals::mainWindow()); }

    TempSuite suite;
    MessageRecorder messages;
    StandInWindowLog log;
};

} // namespace

TEST_F(CvAddressTest, RunAndRunModalOpenAllEntriesOnTheCurrentEntry)
{
    AddressGlobals::LaunchMode = 1;
    AddressGlobals::CurrentAddressID = 23;
    CvAddress address;
    EXPECT_TRUE(AddressGlobals::hasSettings());
    address.run();
    CvAddress().run(); // another instance: the same window, brought to the front
    EXPECT_EQ(log.calls, QStringList({"load", "showModeless", "showModeless"}));
    EXPECT_EQ(log.modeAtShow, 0);
    EXPECT_EQ(log.idAtShow, 23);
    EXPECT_EQ(log.titleAtShow, "Addresses");
    EXPECT_TRUE(window().isOpen());

    window().close();
    window().pick = 51;
    AddressGlobals::LaunchMode = 1;
    QGuiApplication::setApplicationDisplayName("Wages");
    address.RunModal();
    EXPECT_EQ(log.calls.mid(4), QStringList({"load", "showModal", "closed"}));
    EXPECT_EQ(log.modeAtShow, 0);
    EXPECT_EQ(log.titleAtShow, "Addresses");
}

TEST_F(CvAddressTest, AddressbookPicksAnEmployeeAndTellsTheWagebookNothing)
{
    // A wage book that would hear a reply: nothing may connect to it.
    QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    ASSERT_TRUE(makeWagebookFolder());
    QLocalServer wagebook;
    ASSERT_TRUE(wagebook.listen(wagebookSocketPath()));
    AddressGlobals::wagebookReplyTimeoutMs = 200;

    CvAddress address;
    window().pick = 41;
    qint32 id = 0;
    address.addressbook(id);
    EXPECT_EQ(id, 41);
    EXPECT_EQ(log.calls, QStringList({"load", "showModal", "closed"}));
    EXPECT_EQ(log.modeAtShow, 1);
    EXPECT_EQ(log.idAtShow, 0);
    EXPECT_EQ(log.titleAtShow, "Employees");

    // Closed without another pick: the entry it opened on comes back.
    window().pick.reset();
    id = 37;
    address.addressbook(id);
    EXPECT_EQ(log.idAtShow, 37);
    EXPECT_EQ(id, 37);
    EXPECT_FALSE(wagebook.waitForNewConnection(100));
    qunsetenv("XDG_RUNTIME_DIR");

    // Employee mode lasts until an address book launch, which opens on the last pick.
    EXPECT_EQ(AddressGlobals::LaunchMode, 1);
    address.run();
    EXPECT_EQ(log.modeAtShow, 0);
    EXPECT_EQ(log.idAtShow, 37);
}

TEST_F(CvAddressTest, HelpFileIsKeptUntilTheWindowLoads)
{
    CvAddress address;
    address.moduleName("Payroll");
    address.HelpID(2041);
    address.HelpFile("/opt/corvane/Help/Payroll.chm");
    address.run();
    EXPECT_EQ(log.helpFileAtLoad, "/opt/corvane/Help/Payroll.chm");
    EXPECT_EQ(AddressGlobals::helpFilePath, StandInWindow::ownHelpFile());
    EXPECT_EQ(AddressGlobals::helpModuleName, "Payroll");
    EXPECT_EQ(AddressGlobals::helpContextId, 2041);
}

TEST_F(CvAddressTest, OpenDBOnAMissingFileRaisesAndCreatesAndShowsNothing)
{
    TempSuite empty(false);
    CvAddress address;
    try {
        address.OpenDB();
        ADD_FAILURE() << "OpenDB opened a missing file";
    } catch (const CvError &error) {
        EXPECT_EQ(error.number(), CvError::CannotOpenDatabase);
    }
    EXPECT_FALSE(QFileInfo::exists(empty.dir() + "/data/Farm32.mdb"));
    EXPECT_TRUE(messages.requests.empty());
    EXPECT_FALSE(AddressGlobals::hasMainWindow());
}
