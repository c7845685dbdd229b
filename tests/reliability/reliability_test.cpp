// Can a save be trusted? Each save runs in a child process (reliability_child, or
// cvsuite) that is killed before every write and sync it makes, killed at random
// moments, or has a write fail with EIO or ENOSPC (faultshim, LD_PRELOAD). Afterwards
// both data files are opened as the module opens them (wage file attached, so a hot
// journal rolls back): they must pass integrity_check and hold, row for row, either the
// books as they were or the books a clean run of the same save leaves.
// The figures go to CV_FIGURES_PATH for the README.
#include "reliability.h"
#include "suitefiles.h"
#include "suiteswitch.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <sqlite3.h>

using namespace Reliability;

namespace {

// The books, opened with the sqlite3 C API.
class Books
{
public:
    explicit Books(const QString &dir)
    {
        const QString wage = SuiteFiles::wagePath(dir);
        if (!QFile::exists(wage) ||
            sqlite3_open_v2(SuiteFiles::farmPath(dir).toUtf8().constData(), &m_db,
                            SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            m_error = "cannot open the data files";
        else
            sqlite3_busy_timeout(m_db, 10000); // a writer may still be finishing
        if (m_error.isEmpty() && rows("ATTACH '" + wage + "' AS wage").startsWith(u"<error"))
            m_error = "cannot attach the wage file";
    }
    ~Books() { sqlite3_close(m_db); }

    // Every row of the result, columns joined by '|'; "<error: ...>" when it fails.
    QString rows(const QString &sql) const
    {
        sqlite3_stmt *st = nullptr;
        if (!m_error.isEmpty() ||
            sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
            return "<error: " + (m_error.isEmpty() ? sqlite3_errmsg(m_db) : m_error) + ">";
        QStringList lines;
        int rc;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
            QStringList cells;
            for (int c = 0; c < sqlite3_column_count(st); ++c) {
                const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(st, c));
                cells << (text ? QString::fromUtf8(text) : QStringLiteral("<null>"));
            }
            lines << cells.join(u'|');
        }
        const QString failure = rc == SQLITE_DONE ? QString() : sqlite3_errmsg(m_db);
        sqlite3_finalize(st);
        return failure.isEmpty() ? lines.join(u'\n') : "<error: " + failure + ">";
    }

    // Empty when the files open and both pass integrity_check.
    QString problem() const
    {
        const QString check =
            rows("PRAGMA main.integrity_check") + " / " + rows("PRAGMA wage.integrity_check");
        return !m_error.isEmpty() ? m_error : check == u"ok / ok" ? QString() : check;
    }

    // All rows of every table of both files: "unchanged" by content, not bytes.
    QString dump() const
    {
        QString all;
        for (const QString schema : {"main", "wage"})
            for (const QString &t : rows("SELECT name FROM " + schema +
                                         ".sqlite_master WHERE type = 'table' "
                                         "ORDER BY name")
                                        .split(u'\n', Qt::SkipEmptyParts))
                all +=
                    t + u'\n' +
                    rows(QStringLiteral("SELECT * FROM %1.\"%2\" ORDER BY rowid").arg(schema, t)) +
                    u'\n';
        return all;
    }

private:
    sqlite3 *m_db = nullptr;
    QString m_error;
};

// The suite in a folder as one text: both data files, and the INI file when cvsuite made
// it (a save may rewrite the user's settings beside the books); empty when none of them
// is there; "<bad: ...>" when the files do not open or fail integrity_check.
QString suiteState(const QString &dir, bool withIni)
{
    QFile ini(SuiteFiles::iniPath(dir));
    if (!QFile::exists(ini.fileName()) && !QFile::exists(SuiteFiles::farmPath(dir)) &&
        !QFile::exists(SuiteFiles::wagePath(dir)))
        return {};
    const Books b(dir);
    const QString bad = b.problem();
    if (!bad.isEmpty())
        return "<bad: " + bad + ">";
    return b.dump() + (!withIni ? "" : ini.open(QIODevice::ReadOnly) ? ini.readAll() : "<no ini>");
}

QString sqlText(const QString &s)
{
    return u'\'' + QString(s).replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString addressOf(const char *name)
{
    return "(SELECT AddressID FROM main.Addresses WHERE BusName = " + sqlText(name) + ")";
}

// ---- The saves ----------------------------------------------------------------------

struct Save
{
    const char *name;
    QString program;
    QStringList args;          // "<dir>": the suite's folder
    const char *answers = "";  // to the questions before the failure (delete's confirmation)
    bool typedMatters = false; // a failed save must keep what was typed
    bool emptyFolder = false;  // starts from nothing rather than the seeded books
    QStringList command(const QString &dir) const
    {
        return QStringList(args).replaceInStrings("<dir>", dir);
    }
    QString state(const QString &dir) const { return suiteState(dir, program == CVSUITE_EXE); }
};

const QString kChild = RELIABILITY_CHILD;
const QString kCvsuite = CVSUITE_EXE;
const Save kAddress{"address", kChild, {"address"}, "", true};
const Save kNotes{"notes", kChild, {"notes"}, "", true};
const Save kPayDetails{"paydetails", kChild, {"paydetails"}, "", true};
const Save kAdd{"add", kChild, {"add"}};
const Save kDelete{"delete", kChild, {"delete"}, "yes"};
const Save kChildSaves[] = {kAddress, kNotes, kPayDetails, kAdd, kDelete};
const Save kBulk{"cvsuite bulk",
                 kCvsuite,
                 {"bulk", "<dir>", "--addresses", "50", "--employees", "10", "--force"}};
const Save kInit{"cvsuite init", kCvsuite, {"init", "<dir>"}, "", false, true};

// ---- Running children ---------------------------------------------------------------

struct Fault
{
    const char *kind = nullptr; // kill, eio, enospc; nullptr: none, but counted
    int at = 0;
    QString countFile;
    int killAfterMs = -1; // killed from outside instead
};

struct Outcome
{
    QString out, err;
    qint64 ms = 0;
    int failuresReported() const
    {
        int n = 0;
        for (const QString &line : err.split(u'\n'))
            n += line.startsWith(u"MESSAGE ") && !line.startsWith(u"MESSAGE 4 ");
        return n;
    }
    bool says(const QString &line) const { return out.split(u'\n').contains(line); }
    static Outcome of(QProcess &p, qint64 ms = 0)
    {
        return {QString::fromUtf8(p.readAllStandardOutput()),
                QString::fromUtf8(p.readAllStandardError()), ms};
    }
};

void setUp(QProcess &p, const QString &suite, const QString &answers, const Fault &fault = {},
           bool pauseBeforeSave = false)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    if (pauseBeforeSave)
        env.insert("CV_PAUSE_BEFORE_SAVE", "1");
    env.insert("CORVANE_SHARED_DOCUMENTS", suite);
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("CV_ANSWERS", answers);
    if (fault.kind || !fault.countFile.isEmpty()) {
        env.insert("LD_PRELOAD", FAULTSHIM);
        env.insert("CV_FAULT_DIR", suite);
        env.insert("CV_FAULT_KIND", fault.kind ? fault.kind : "none");
        env.insert("CV_FAULT_AT", QString::number(fault.at));
        env.insert("CV_FAULT_COUNT", fault.countFile);
    }
    p.setProcessEnvironment(env);
}

Outcome run(const Save &s, const QString &dir, const Fault &fault = {}, const QString &answers = {})
{
    QProcess p;
    setUp(p, dir, answers.isEmpty() ? s.answers : answers, fault);
    QElapsedTimer clock;
    clock.start();
    p.start(s.program, s.command(dir));
    p.waitForStarted();
    if (fault.killAfterMs >= 0) {
        QThread::msleep(fault.killAfterMs);
        p.kill();
    }
    p.waitForFinished(120000);
    return Outcome::of(p, clock.elapsed());
}

// A shorter run for a quick look, when the variable says so.
int envOr(const char *name, int fallback)
{
    const int v = qEnvironmentVariableIntValue(name);
    return v > 0 ? v : fallback;
}

bool copyTree(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    for (const QFileInfo &fi : QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QString target = to + u'/' + fi.fileName();
        if (fi.isDir() ? !copyTree(fi.filePath(), target) : !QFile::copy(fi.filePath(), target))
            return false;
    }
    return true;
}

// Each test rewrites its own lines of the figures file and keeps the others'.
void recordFigures(const QString &test, const QStringList &lines)
{
    QFile f(CV_FIGURES_PATH);
    QStringList kept;
    if (f.open(QIODevice::ReadOnly))
        for (const QString &l : QString::fromUtf8(f.readAll()).split(u'\n', Qt::SkipEmptyParts))
            if (!l.startsWith(test + u':'))
                kept << l;
    f.close();
    for (const QString &l : lines) {
        kept << test + ": " + l;
        std::printf("[figures] %s: %s\n", qPrintable(test), qPrintable(l));
    }
    kept.sort();
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write((kept.join(u'\n') + u'\n').toUtf8());
}

// Problems are collected, not stopped at, so that one run shows how many points fail.
struct Tally
{
    int runs = 0, corrupt = 0, halfSaved = 0;
    QStringList samples;
    void problem(int &counter, const QString &what)
    {
        ++counter;
        if (samples.size() < 12)
            samples << what;
    }
    void add(const Tally &t)
    {
        runs += t.runs, corrupt += t.corrupt, halfSaved += t.halfSaved;
        samples += t.samples.mid(0, 12 - samples.size());
    }
    QString figures(const char *half = "half-saved") const
    {
        return QStringLiteral("%1, corrupt %2, %3 %4")
            .arg(runs)
            .arg(corrupt)
            .arg(half)
            .arg(halfSaved);
    }
    void expectClean(const QString &what) const
    {
        EXPECT_EQ(corrupt + halfSaved, 0)
            << qPrintable(what) << ": corrupt " << corrupt << ", half-saved " << halfSaved
            << ":\n  " << qPrintable(samples.join("\n  "));
    }
};

// ---- The fixture: one small suite, copied for every run ------------------------------

class SaveReliability : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_root = new QTemporaryDir;
        SuiteFiles::demoSuite(templateDir());
        Books b(templateDir());
        QString seed = "INSERT INTO main.Addresses (BusName, ContactLastName, BusAddress1, "
                       "BusCity, BusPhone, ContactEmail, notes, WageFlag) VALUES "
                       "('Reliability Alpha', 'Alpha', '2 Old Road', 'Oldtown', '07 555 0100', "
                       "'old@test.example', 'First line', 0), "
                       "('Reliability Beta', 'Beta', NULL, NULL, NULL, NULL, NULL, 0), "
                       "('Reliability Gone', 'Gone', NULL, NULL, NULL, NULL, NULL, 0), "
                       "('Reliability Worker', 'Worker', NULL, NULL, NULL, NULL, 'Hired', -1)";
        for (int i = 1; i <= 8; ++i)
            seed += QStringLiteral(", ('%1%2', 'Loop', NULL, NULL, NULL, NULL, NULL, 0)")
                        .arg(LoopPrefix)
                        .arg(i);
        const QString employee =
            "INSERT INTO wage.Employees (AddressID, EmployeeTypeID, TaxTypeID, PayIntervalID, "
            "BankID, PayRate, KiwiSaverEnrolled, KiwiSaverEnrolID) VALUES (" +
            addressOf(WorkerName) +
            ", (SELECT min(EmployeeTypeID) FROM wage.EmployeeAwardType), (SELECT "
            "min(TaxTypeID) FROM wage.TaxTypes), (SELECT min(PayIntervalID) FROM "
            "wage.PayInterval), (SELECT min(BanksID) FROM main.Banks WHERE AccountType = 0), "
            "250000, 0, (SELECT KSEnrollTypeID FROM wage.KiwiSaverEnrollType WHERE "
            "KSEnrollType = 'Not enrolled'))";
        const QString deductions =
            "INSERT INTO wage.EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
            "SpecialRate, TaxName) SELECT last_insert_rowid(), DeductNameID, 50000, 0, NULL "
            "FROM wage.DeductNames WHERE DeductionName IN ('Union fees', 'Staff purchases')";
        for (const QString &sql : {seed, employee, deductions})
            ASSERT_FALSE(b.rows(sql).startsWith(u"<error")) << qPrintable(b.rows(sql));
        s_before = suiteState(templateDir(), false);
    }
    static void TearDownTestSuite() { delete s_root; }

    static QString templateDir() { return s_root->path() + "/template"; }

    // A fresh copy of the template (or an empty folder) for one run; removed with the
    // returned object.
    static std::unique_ptr<QTemporaryDir> freshSuite(const Save &s)
    {
        auto dir = std::make_unique<QTemporaryDir>(s_root->path() + "/run-XXXXXX");
        EXPECT_TRUE(s.emptyFolder || copyTree(templateDir(), dir->path()));
        return dir;
    }
    static QString before(const Save &s)
    {
        return s.emptyFolder ? QString() : s.state(templateDir());
    }

    // A clean, counted run: how many points the save has, how long it takes and what it
    // leaves. A clean run saves and says nothing.
    struct Clean
    {
        int points;
        Outcome outcome;
        QString saved;
    };
    static Clean cleanRun(const Save &s)
    {
        const auto dir = freshSuite(s);
        const QString count = dir->path() + ".count";
        const Outcome o = run(s, dir->path(), {nullptr, 0, count, -1});
        const QString what = s.args.join(' ') + '\n' + o.err;
        EXPECT_EQ(o.failuresReported(), 0) << "a clean save reports: " << qPrintable(what);
        const QString saved = s.state(dir->path());
        EXPECT_NE(saved, before(s)) << "a clean run saved nothing: " << qPrintable(what);
        EXPECT_FALSE(saved.startsWith(u"<bad")) << qPrintable(saved);
        QFile f(count);
        const int points = f.open(QIODevice::ReadOnly) ? f.readAll().trimmed().toInt() : -1;
        EXPECT_GT(points, 0) << "the shim counted no writes";
        return {points, o, saved};
    }

    // Runs a save on a fresh copy, killed as fault says: the files are sound and hold the
    // books as before or as the clean run left them. Returns the folder for more checks.
    static std::unique_ptr<QTemporaryDir>
    killedRun(const Save &s, const Clean &clean, const Fault &fault, Tally &t, const QString &label)
    {
        auto dir = freshSuite(s);
        run(s, dir->path(), fault);
        ++t.runs;
        const QString now = s.state(dir->path());
        if (now.startsWith(u"<bad"))
            t.problem(t.corrupt, label + ": " + now.left(200));
        else if (now != before(s) && now != clean.saved)
            t.problem(t.halfSaved, label + ": neither the books before nor after the save");
        return dir;
    }

    static Tally killAtEveryPoint(const Save &s, const Clean &clean)
    {
        Tally t;
        for (int k = 1; k <= clean.points; ++k)
            killedRun(s, clean, {"kill", k, {}, -1}, t,
                      QStringLiteral("%1 killed at %2").arg(s.name).arg(k));
        return t;
    }

    static QTemporaryDir *s_root;
    static QString s_before;
};

QTemporaryDir *SaveReliability::s_root = nullptr;
QString SaveReliability::s_before;

// Killed before each counted write and sync in turn, then at random moments (the same ones
// every run, so a failure repeats): each save is whole or absent.
TEST_F(SaveReliability, KilledAnywhereEachSaveIsWholeOrAbsent)
{
    const int kills = envOr("CV_RANDOM_KILLS", 1000);
    const int perSave = (kills + int(std::size(kChildSaves)) - 1) / int(std::size(kChildSaves));
    QRandomGenerator random(20240520);
    Tally points, moments;
    QStringList figures;
    for (const Save &s : kChildSaves) {
        SCOPED_TRACE(s.name);
        const Clean clean = cleanRun(s);
        const Tally t = killAtEveryPoint(s, clean);
        Tally r;
        for (int i = 0; i < perSave; ++i) {
            const int ms = int(random.bounded(clean.outcome.ms + 1));
            killedRun(s, clean, {nullptr, 0, {}, ms}, r,
                      QStringLiteral("%1 killed after %2 ms").arg(s.name).arg(ms));
        }
        figures << QString(s.name) + " kill points " + t.figures();
        t.expectClean("kill points");
        r.expectClean("random kills");
        points.add(t);
        moments.add(r);
    }
    const auto total = [](const Tally &t) {
        return t.figures().replace("corrupt", "corrupt files");
    };
    recordFigures("crash points", figures << "kill points covered " + total(points));
    recordFigures("random kills", {"random kills " + total(moments)});
}

// cvsuite bulk --force replaces a suite: killed anywhere, the folder holds the whole old
// suite or the whole new one (both data files and the INI file). A killed init into an
// empty folder leaves nothing or all, and the next run clears what the killed one left.
TEST_F(SaveReliability, ASuiteReplacedOrMadeAndKilledIsOldOrNew)
{
    const Tally bulk = killAtEveryPoint(kBulk, cleanRun(kBulk));
    recordFigures("cvsuite bulk", {"kill points " + bulk.figures("half-replaced")});
    bulk.expectClean("cvsuite bulk --force");

    const Clean clean = cleanRun(kInit);
    ASSERT_GT(clean.points, 8);
    Tally init;
    for (int k = 1; k <= clean.points; ++k) {
        const auto dir = killedRun(kInit, clean, {"kill", k, {}, -1}, init, QString::number(k));
        run({"init again", kCvsuite, {"init", "<dir>", "--force"}}, dir->path());
        EXPECT_EQ(QDir(SuiteFiles::generationsFolder(dir->path()))
                      .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)
                      .size(),
                  3) // current, lock and the one generation
            << "killed at " << k;
        EXPECT_EQ(QDir(dir->path() + "/data").entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList({"Farm32.mdb", "Wage32.mdb"}))
            << "killed at " << k;
    }
    init.expectClean("cvsuite init into an empty folder");
}

// A failed write or sync, or a full disk, at every point of every save: the user hears of
// it once, the files are as before, no transaction is left open, the typed input stays.
// SQLite itself absorbs a failure that comes after its commit point (syncing the folder,
// removing a finished journal): that save is whole, as a clean one, and nothing is said.
TEST_F(SaveReliability, AFailedWriteIsReportedOnceAndChangesNothing)
{
    int points = 0, reportedOnce = 0, unchanged = 0, absorbed = 0, autocommit = 0, typedKept = 0,
        typedRuns = 0;
    QStringList samples;
    const auto sample = [&samples](const QString &s) { samples << s; };
    for (const Save &s : kChildSaves) {
        const Clean clean = cleanRun(s);
        const QString answers = *s.answers ? s.answers + QStringLiteral(",cancel") : "cancel";
        for (const char *kind : {"eio", "enospc"}) {
            for (int at = 1; at <= clean.points; ++at, ++points) {
                const auto dir = freshSuite(s);
                const Outcome o = run(s, dir->path(), {kind, at, {}, -1}, answers);
                const QString label = QStringLiteral("%1 %2 at %3").arg(s.name, kind).arg(at);
                const int reports = o.failuresReported();
                const QString after = s.state(dir->path());
                reportedOnce += reports == 1;
                if (reports == 1 && after == s_before)
                    ++unchanged;
                else if (reports == 0 && after == clean.saved)
                    ++absorbed;
                else
                    sample(label + QStringLiteral(": reported %1 time(s), files %2")
                                       .arg(reports)
                                       .arg(after == s_before ? "unchanged" : "changed"));
                if (o.says("AUTOCOMMIT 1"))
                    ++autocommit;
                else
                    sample(label + ": a transaction left open (" + o.out.simplified() + ")");
                if (s.typedMatters && reports > 0) {
                    ++typedRuns;
                    if (o.says("TYPED kept"))
                        ++typedKept;
                    else
                        sample(label + ": the typed input is lost");
                }
            }
        }
    }
    recordFigures("I/O errors",
                  {QString::asprintf("I/O error points %d, failures reported once %d (files "
                                     "unchanged %d), absorbed by SQLite after its commit point %d "
                                     "(saved whole), autocommit restored %d, typed input kept %d "
                                     "of %d",
                                     points, reportedOnce, unchanged, absorbed, autocommit,
                                     typedKept, typedRuns)});
    const QString details = samples.mid(0, 20).join("\n  ");
    EXPECT_EQ(unchanged + absorbed, points) << qPrintable(details);
    EXPECT_EQ(unchanged, reportedOnce) << qPrintable(details);
    EXPECT_EQ(autocommit, points) << qPrintable(details);
    EXPECT_EQ(typedKept, typedRuns) << qPrintable(details);
}

// Eight programs save their own entries as fast as they can for a minute, answering Retry
// to a failed save: no save is lost, and none fails without the user hearing of it.
TEST_F(SaveReliability, EightWritersForAMinuteLoseNothingAndReportEveryFailure)
{
    const int seconds = envOr("CV_CONTENTION_SECONDS", 60);
    const auto dir = freshSuite(kAddress);
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 1; i <= 8; ++i) {
        QProcess &p = *writers.emplace_back(std::make_unique<QProcess>());
        setUp(p, dir->path(), "retry*");
        p.start(kChild, {"loop", LoopPrefix + QString::number(i), QString::number(seconds)});
    }
    int saved = 0, failed = 0, silent = 0, lost = 0, reported = 0;
    for (int i = 1; i <= 8; ++i) {
        QProcess &p = *writers[std::size_t(i - 1)];
        ASSERT_TRUE(p.waitForFinished((seconds + 60) * 1000));
        const Outcome o = Outcome::of(p);
        reported += o.failuresReported();
        // A save whose check could not read the value back (UNREAD, another writer held
        // the file) may be stored or not; any such save after the last one seen stored may
        // be the value left.
        QString lastSaved;
        QStringList unreadSince;
        for (const QString &line : o.out.split(u'\n', Qt::SkipEmptyParts)) {
            const QString outcome = line.section(u' ', 0, 0), n = line.section(u' ', 1);
            saved += outcome == u"SAVED";
            failed += outcome == u"FAILED";
            silent += outcome == u"SILENT";
            if (outcome == u"SAVED")
                lastSaved = n, unreadSince.clear();
            else if (outcome == u"UNREAD")
                unreadSince << n;
        }
        const QString stored =
            Books(dir->path())
                .rows("SELECT ifnull(CustomerNumber, '') FROM main.Addresses WHERE BusName = " +
                      sqlText(LoopPrefix + QString::number(i)));
        if (stored != lastSaved && !unreadSince.contains(stored)) {
            ++lost;
            ADD_FAILURE() << "writer " << i << ": stored " << qPrintable(stored)
                          << ", last save it was told of " << qPrintable(lastSaved);
        }
    }
    EXPECT_EQ(Books(dir->path()).problem(), QString());
    EXPECT_GT(saved, 8);
    EXPECT_EQ(silent, 0) << "saves that failed without a message";
    EXPECT_GE(reported, failed);
    recordFigures("contention",
                  {QString::asprintf("8 writers for %d s: saves %d, failed and reported %d, failed "
                                     "silently %d, lost updates %d, messages %d",
                                     seconds, saved, failed, silent, lost, reported)});
}

// Another program holds the wage file (BEGIN EXCLUSIVE) while pay details are saved: for
// 2 s the save waits (or is retried) and ends saved; for 20 s the user is told once,
// cancels, and the books are as before.
TEST_F(SaveReliability, AnotherProgramHoldingTheWageFile)
{
    const QString saved = cleanRun(kPayDetails).saved;
    for (const auto &[holdMs, answers, endsSaved] :
         {std::tuple{2000, "retry*", true}, std::tuple{20000, "cancel", false}}) {
        SCOPED_TRACE(holdMs);
        const auto dir = freshSuite(kPayDetails);
        QProcess child;
        setUp(child, dir->path(), answers, {}, true);
        child.start(kChild, {"paydetails"});
        while (!child.canReadLine() && child.waitForReadyRead(30000)) {
        }
        ASSERT_EQ(child.readLine().trimmed(), "READY") << child.readAllStandardError().data();

        sqlite3 *holder = nullptr;
        ASSERT_EQ(sqlite3_open_v2(SuiteFiles::wagePath(dir->path()).toUtf8().constData(), &holder,
                                  SQLITE_OPEN_READWRITE, nullptr),
                  SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
        child.write("go\n");
        QElapsedTimer held;
        held.start();
        while (held.elapsed() < holdMs && !child.waitForFinished(100)) {
        }
        sqlite3_exec(holder, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(holder);
        ASSERT_TRUE(child.state() == QProcess::NotRunning || child.waitForFinished(60000));

        const Outcome o = Outcome::of(child);
        EXPECT_TRUE(kPayDetails.state(dir->path()) == (endsSaved ? saved : s_before))
            << qPrintable(o.err);
        EXPECT_TRUE(endsSaved || o.failuresReported() == 1) << qPrintable(o.err);
        EXPECT_TRUE(o.says("AUTOCOMMIT 1")) << qPrintable(o.out);
    }
}

} // namespace
