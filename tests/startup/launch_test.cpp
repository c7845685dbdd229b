// Launching the address book: the entry routine from a command line, CvAddress driven
// in-process by another suite program, and the wage book's reply.
#include "core/cverror.h"
#include "launch/addressglobals.h"
#include "launch/cvaddress.h"
#include "launch/entryroutine.h"
#include "launch/wagebook.h"
#include "launch/wagebooklistener.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/standinwindow.h"
#include "support/tempsuite.h"

#include <atomic>
#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMutex>
#include <QTemporaryDir>
#include <QThread>

namespace {

// The wage book in a thread of its own, as it is in a process of its own: the sender
// blocks until it answers. Records the message, its parameters and whether the window
// had closed by then.
class WagebookThread : public QThread
{
public:
    explicit WagebookThread(const StandInWindowLog *log) : m_log(log) {}
    ~WagebookThread() override { quit(), wait(); }
    bool startListening()
    {
        start();
        while (m_state == 0)
            msleep(5);
        return m_state == 1;
    }
    QList<QList<qint64>> received()
    {
        QMutexLocker lock(&m_mutex);
        return m_received;
    }

protected:
    void run() override
    {
        WagebookListener listener;
        // No context object: the slot runs before the listener answers.
        QObject::connect(&listener, &WagebookListener::messageReceived,
                         [this](quint32 message, qint32 wParam, qint32 lParam) {
                             QMutexLocker lock(&m_mutex);
                             m_received.append({message, wParam, lParam, m_log->closed});
                         });
        m_state = listener.listen() ? 1 : 2;
        if (m_state == 1)
            exec();
    }

private:
    const StandInWindowLog *m_log;
    QMutex m_mutex;
    QList<QList<qint64>> m_received;
    std::atomic<int> m_state{0};
};

class Launch : public ::testing::Test
{
protected:
    void SetUp() override
    {
        AddressGlobals::reset();
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
        suite.writeIni("[START]\r\nFirm=Kowhai Orchards\r\n");
        QGuiApplication::setApplicationDisplayName("Before");
        installStandInWindow(&log, [this](StandInWindow &window) {
            window.pick = pick;
            window.closeAfterMs = closeModelessAfterMs;
            window.onLoad = onLoad;
        });
    }
    void TearDown() override
    {
        AddressGlobals::reset();
        qunsetenv("XDG_RUNTIME_DIR");
    }

    StandInWindow &window() { return static_cast<StandInWindow &>(AddressGlobals::mainWindow()); }

    TempSuite suite{false};
    MessageRecorder messages;
    StandInWindowLog log;
    std::optional<qint32> pick;
    int closeModelessAfterMs = -1;
    std::function<void()> onLoad;

private:
    QTemporaryDir m_runtime;
};

} // namespace

TEST_F(Launch, EmptyCommandLineReportsTheLaunchContextAndOpensNothing)
{
    EXPECT_EQ(runEntryProcess(""), 0);
    ASSERT_EQ(messages.requests.size(), 1u);
    const MessageRequest &r = messages.requests[0];
    EXPECT_EQ(r.prompt, "This Application is designed to run from inside Kowhai Orchards\r\n\r\n"
                        "Please select the correct menu option from inside Kowhai Orchards to "
                        "launch Address Book.");
    EXPECT_EQ(r.title, "Invalid Execution");
    EXPECT_TRUE(log.calls.isEmpty());
    EXPECT_FALSE(AddressGlobals::hasSettings());
}

TEST_F(Launch, AddressBookIsLoadedThenShownAndTheTitleLeftAlone)
{
    runEntryRoutine("1, 37,True,False");
    EXPECT_EQ(log.calls, QStringList({"load", "showModal", "closed"}));
    EXPECT_EQ(log.modeAtShow, 1);
    EXPECT_EQ(log.idAtShow, 37);
    EXPECT_EQ(log.titleAtShow, "Before");
    EXPECT_TRUE(AddressGlobals::hasSettings());

    // Modeless: the process lives until the window closes, and none is left behind.
    log.calls.clear();
    closeModelessAfterMs = 50;
    AddressGlobals::releaseMainWindow();
    EXPECT_EQ(runEntryProcess("0,0,False,False"), 0);
    EXPECT_EQ(log.calls, QStringList({"load", "showModeless", "closed"}));
    EXPECT_FALSE(AddressGlobals::hasMainWindow());

    // The wage book flag wins over the mode and sets the employees' title.
    runEntryRoutine("0,12,False,True");
    EXPECT_EQ(log.modeAtShow, 1);
    EXPECT_EQ(log.titleAtShow, "Employees");
}

TEST_F(Launch, ErrorsGetTheRunTimeReportAndNoWindowStaysOpen)
{
    EXPECT_THROW(runEntryRoutine("0,12"), CvError);
    EXPECT_EQ(runEntryProcess("abc,1,True,False"), 1);
    EXPECT_EQ(runEntryProcess("0,0,False,False" + QString(40000, u' ')), 1);
    EXPECT_TRUE(log.calls.isEmpty());

    onLoad = [] { throw CvError(3024, "DAO", "Could not find file 'Farm32.mdb'."); };
    EXPECT_EQ(runEntryProcess("0,0,True,False"), 1);
    EXPECT_TRUE(log.destroyed);
    EXPECT_FALSE(AddressGlobals::hasMainWindow());

    AddressGlobals::setWindowFactory(nullptr);
    EXPECT_EQ(runEntryProcess("0,0,False,False"), 1);

    QStringList prompts;
    for (const MessageRequest &r : messages.requests)
        prompts << r.prompt;
    EXPECT_EQ(prompts, QStringList({"Run-time error '13':\n\nType mismatch",
                                    "Run-time error '6':\n\nOverflow",
                                    "Run-time error '3024':\n\nCould not find file 'Farm32.mdb'.",
                                    "Run-time error '429':\n\nThe address book window is not "
                                    "available in this build"}));
}

TEST_F(Launch, WagebookHearsThePickOnceAfterTheWindowClosed)
{
    // The wage book derives the number in its own process, from the name only: pinned,
    // since a per-process seed (as qHash has) would pass any test inside one process.
    EXPECT_EQ(AddressGlobals::wagebookMessageId, 0u);
    EXPECT_EQ(registerWindowMessage("msg_testmessage"), 0xFF5Au);

    WagebookThread wagebook(&log);
    ASSERT_TRUE(wagebook.startListening());
    pick = 41;
    runEntryRoutine("1,0,False,True");
    EXPECT_EQ(log.idAtShow, 0);

    // Closed without a pick: still none.
    pick.reset();
    log.closed = false;
    AddressGlobals::releaseMainWindow();
    runEntryRoutine("1,0,False,True");

    const qint64 id = GetWagebookMessageId();
    EXPECT_EQ(wagebook.received(), QList<QList<qint64>>({{id, 41, 0, true}, {id, 0, 0, true}}));

    WagebookListener second;
    EXPECT_FALSE(second.listen()) << "two wage books on one name";
}

TEST_F(Launch, SenderDoesNotHangWithoutAnAnswer)
{
    AddressGlobals::wagebookReplyTimeoutMs = 500;
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(sendWagebookMessage(GetWagebookMessageId(), 41, 0)); // nobody listens
    EXPECT_LT(timer.elapsed(), 500);

    // Listening, but this thread is busy sending, so no answer ever comes.
    ASSERT_TRUE(makeWagebookFolder());
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(wagebookSocketPath()));
    timer.restart();
    EXPECT_FALSE(sendWagebookMessage(GetWagebookMessageId(), 41, 0));
    EXPECT_LT(timer.elapsed(), 500 + 2000);

    ASSERT_TRUE(silent.waitForNewConnection(1000));
    QLocalSocket *peer = silent.nextPendingConnection();
    peer->waitForReadyRead(1000);
    EXPECT_EQ(peer->readAll(), "MSG_TESTMESSAGE 41 0\n");
}

TEST_F(Launch, RunAndRunModalOpenAllEntriesOnTheCurrentEntry)
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

    window().close();
    window().pick = 51;
    AddressGlobals::LaunchMode = 1;
    QGuiApplication::setApplicationDisplayName("Wages");
    address.RunModal();
    EXPECT_EQ(log.calls.mid(4), QStringList({"load", "showModal", "closed"}));
    EXPECT_EQ(log.titleAtShow, "Addresses");
}

TEST_F(Launch, AddressbookPicksAnEmployeeAndTellsTheWagebookNothing)
{
    // A wage book that would hear a reply: nothing may connect to it.
    ASSERT_TRUE(makeWagebookFolder());
    QLocalServer wagebook;
    ASSERT_TRUE(wagebook.listen(wagebookSocketPath()));
    AddressGlobals::wagebookReplyTimeoutMs = 200;

    CvAddress address;
    window().pick = 41;
    qint32 id = 0;
    address.addressbook(id);
    EXPECT_EQ(id, 41);
    EXPECT_EQ(log.modeAtShow, 1);
    EXPECT_EQ(log.titleAtShow, "Employees");

    // Closed without another pick: the entry it opened on comes back.
    window().pick.reset();
    id = 37;
    address.addressbook(id);
    EXPECT_EQ(id, 37);
    EXPECT_FALSE(wagebook.waitForNewConnection(100));
    qunsetenv("XDG_RUNTIME_DIR");

    // Employee mode lasts until an address book launch, which opens on the last pick.
    address.run();
    EXPECT_EQ(log.modeAtShow, 0);
    EXPECT_EQ(log.idAtShow, 37);
}

TEST_F(Launch, HelpFileIsKeptUntilTheWindowLoads)
{
    CvAddress address;
    address.moduleName("Payroll");
    address.HelpID(2041);
    address.HelpFile("/opt/corvane/Help/Payroll.chm");
    address.run();
    EXPECT_EQ(log.helpFileAtLoad, "/opt/corvane/Help/Payroll.chm");
    EXPECT_EQ(AddressGlobals::helpFilePath, StandInWindow::ownHelpFile());
    EXPECT_EQ(AddressGlobals::helpContextId, 2041);
}
