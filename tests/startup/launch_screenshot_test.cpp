// The real program's screenshot switch, as scripts use it: the first window is saved and
// every window then closed, so the program ends by itself.
#include "launch/wagebook.h"
#include "launch/wagebooklistener.h"
#include "suitefiles.h"
#include "support/tempsuite.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <gtest/gtest.h>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#ifdef CVADDRESS_EXE

namespace {

// The picture taken, null when the program did not end normally with status 0.
QImage runWithScreenshot(const TempSuite &suite, const QString &commandLine)
{
    QTemporaryDir scratch;
    const QString shot = scratch.path() + "/shots/window.png";
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.remove("CORVANE_MESSAGES"); // real dialogs: they must be closed too
    env.insert("CORVANE_SHARED_DOCUMENTS", suite.dir());
    env.insert("XDG_RUNTIME_DIR", scratch.path());
    env.insert("CORVANE_SCREENSHOT", shot);
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(CVADDRESS_EXE, {commandLine});
    const bool ended = process.waitForFinished(30000);
    process.kill();
    process.waitForFinished();
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        ADD_FAILURE() << commandLine.toStdString() << ": "
                      << process.readAllStandardError().toStdString();
        return QImage();
    }
    return QImage(shot, "PNG");
}

} // namespace

TEST(CvaddressScreenshot, SavesTheFirstWindowThenEveryLaunchEnds)
{
    TempSuite suite;
    EXPECT_GT(runWithScreenshot(suite, "0,0,False,False").width(), 300);
    EXPECT_GT(runWithScreenshot(suite, "1,0,True,True").width(), 300);

    // No data files: the load reports it in a modal dialog, the first window. Closing it
    // must not pull the address book away from under the load that is still running.
    TempSuite empty(false);
    EXPECT_FALSE(runWithScreenshot(empty, "0,0,True,False").isNull());
}

// The wage book's pick with the real window: the wage book listens, the program opens on
// the employee asked for, the window closes, and the wage book hears that employee once.
TEST(CvaddressScreenshot, WagebookPickRepliesWithTheEmployeeShownAtClosing)
{
    TempSuite suite;
    SuiteFiles::demoSuite(suite.dir(), true);
    qint32 employee = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "pick-fixture");
        db.setDatabaseName(suite.wagePath());
        ASSERT_TRUE(db.open());
        // A current employee that is not the first in the list.
        QSqlQuery q("SELECT AddressID FROM Employees WHERE Datefinished IS NULL OR "
                    "Datefinished = 0 ORDER BY AddressID DESC",
                    db);
        ASSERT_TRUE(q.next());
        employee = q.value(0).toInt();
    }
    QSqlDatabase::removeDatabase("pick-fixture");

    QTemporaryDir runtime;
    const QByteArray oldRuntime = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    std::vector<std::pair<qint32, qint32>> heard;
    {
        WagebookListener wagebook;
        ASSERT_TRUE(wagebook.listen()) << wagebook.errorString().toStdString();
        QObject::connect(&wagebook, &WagebookListener::messageReceived,
                         [&](quint32 message, qint32 w, qint32 l) {
                             EXPECT_EQ(message, GetWagebookMessageId());
                             heard.emplace_back(w, l);
                         });

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("CORVANE_SHARED_DOCUMENTS", suite.dir());
        env.insert("XDG_RUNTIME_DIR", runtime.path());
        env.insert("CORVANE_SCREENSHOT", runtime.path() + "/pick.png");
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(CVADDRESS_EXE, {QStringLiteral("1,%1,True,True").arg(employee)});
        // The listener needs this process's event loop while the program runs.
        QElapsedTimer clock;
        clock.start();
        while (process.state() != QProcess::NotRunning && clock.elapsed() < 30000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
            process.waitForFinished(10);
        }
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
    qputenv("XDG_RUNTIME_DIR", oldRuntime);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0], std::make_pair(employee, 0));
}

#endif
