// cvsuite replacing a suite, killed (SIGKILL) before each of its changes on disk in
// turn: the folder must always hold the complete old suite or the complete new one.
#include "bookquery.h"
#include "suitefiles.h"
#include "suiteswitch.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#ifdef CVSUITE_EXE

extern char **environ;

namespace {

enum class End { Killed, Finished, Failed };

// Runs cvsuite; with stopAt > 0 it stops itself before that step (CVSUITE_STOP_AT)
// and is killed there.
End runCvsuite(const QStringList &args, int stopAt)
{
    std::vector<QByteArray> bytes{CVSUITE_EXE};
    for (const QString &a : args)
        bytes.push_back(QFile::encodeName(a));
    std::vector<char *> argv;
    for (QByteArray &b : bytes)
        argv.push_back(b.data());
    argv.push_back(nullptr);
    QByteArray stop = "CVSUITE_STOP_AT=" + QByteArray::number(stopAt);
    std::vector<char *> envp{stop.data()};
    for (char **e = environ; *e; ++e)
        envp.push_back(*e);
    envp.push_back(nullptr);

    const pid_t pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        execve(CVSUITE_EXE, argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, WUNTRACED);
    if (WIFSTOPPED(status)) {
        kill(pid, SIGKILL);
        waitpid(pid, &status, 0);
        return End::Killed;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? End::Finished : End::Failed;
}

const char kOldIni[] = "[OLD]\r\n";

// Marks each file of a suite as the old one.
void markOld(const QString &dir)
{
    execOnFile(SuiteFiles::farmPath(dir), "CREATE TABLE OldSuite (x)");
    execOnFile(SuiteFiles::wagePath(dir), "CREATE TABLE OldSuite (x)");
    QFile ini(SuiteFiles::iniPath(dir));
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write(kOldIni);
}

// "old", "new" or "none" for each file in place; a file that is neither (torn,
// empty, not a database) fails the test that reads it.
QString suiteState(const QString &dir, qint64 newAddresses)
{
    QStringList states;
    for (const QString &path : {SuiteFiles::farmPath(dir), SuiteFiles::wagePath(dir)}) {
        if (!QFileInfo::exists(path)) {
            states << "none";
            continue;
        }
        const BookQuery book(path);
        const bool old = book.count("SELECT COUNT(*) FROM sqlite_master WHERE name = 'OldSuite'");
        states << (old ? "old" : "new");
        if (!old && path == SuiteFiles::farmPath(dir)) {
            EXPECT_EQ(book.count("SELECT COUNT(*) FROM Addresses"), newAddresses);
        }
    }
    QFile ini(SuiteFiles::iniPath(dir));
    if (!ini.open(QIODevice::ReadOnly)) {
        states << "none";
    } else {
        const QByteArray text = ini.readAll();
        states << (text == kOldIni ? "old" : text.contains("WageFileName=") ? "new" : "torn");
    }
    return states.join(' ');
}

// Arranges an old suite in a folder, runs cvsuite killing it at each step in turn,
// and checks the suite in place after each kill, and after the next run.
void killAtEveryStep(void (*arrange)(const QString &dir), const QStringList &command,
                     const QString &old, qint64 newAddresses)
{
    int step = 1;
    for (;; ++step) {
        ASSERT_LT(step, 200) << "cvsuite never finished";
        QTemporaryDir dir;
        arrange(dir.path());
        const End end = runCvsuite(QStringList{command[0], dir.path()} + command.mid(1), step);
        const QString state = suiteState(dir.path(), newAddresses);
        if (end != End::Killed) {
            EXPECT_EQ(end, End::Finished);
            EXPECT_EQ(state, "new new new");
            break;
        }
        EXPECT_TRUE(state == old || state == "new new new")
            << "killed at step " << step << ": " << state.toStdString();

        // The next run replaces it all the same and clears what the killed one left.
        ASSERT_EQ(runCvsuite(QStringList{"init", dir.path(), "--force"}, 0), End::Finished);
        EXPECT_EQ(suiteState(dir.path(), 0), "new new new") << "step " << step;
        EXPECT_EQ(QDir(SuiteFiles::generationsFolder(dir.path()))
                      .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)
                      .size(),
                  3) // current, lock and the one generation
            << "step " << step;
        EXPECT_EQ(QDir(dir.path() + "/data").entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList({"Farm32.mdb", "Wage32.mdb"}))
            << "step " << step;
    }
    // The steps were there to be tried.
    EXPECT_GT(step, 8);
}

} // namespace

TEST(SuiteSwitch, AKilledInitInAnEmptyFolderLeavesNothingOrAll)
{
    killAtEveryStep([](const QString &) {}, {"init"}, "none none none", 0);
}

TEST(SuiteSwitch, AKilledReplacementOfPlainFilesLeavesTheOldSuiteOrTheNew)
{
    killAtEveryStep(
        [](const QString &dir) {
            QDir().mkpath(dir + "/data");
            QDir().mkpath(dir + "/Corvane/Common");
            SuiteFiles::createDataFile(SuiteFiles::farmPath(dir), SuiteFiles::DataFile::Farm);
            SuiteFiles::createDataFile(SuiteFiles::wagePath(dir), SuiteFiles::DataFile::Wage);
            markOld(dir);
        },
        {"init", "--force"}, "old old old", 0);
}

TEST(SuiteSwitch, AKilledReplacementOfASwitchedSuiteLeavesTheOldSuiteOrTheNew)
{
    killAtEveryStep(
        [](const QString &dir) {
            SuiteFiles::initSuite(dir);
            markOld(dir);
        },
        {"bulk", "--addresses", "30", "--employees", "5", "--force"}, "old old old", 30);
}

#endif
