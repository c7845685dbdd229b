// Can a save be trusted? Each save runs in a child process (reliability_child, or
// cvsuite) that is killed before every write and sync it makes, killed at random
// moments, or has a write fail with EIO or ENOSPC (faultshim, LD_PRELOAD); afterwards
// both data files are opened as the module opens them (wage file attached, so a hot
// journal rolls back) and must pass integrity_check and the save's own invariants.
// The figures go to CV_FIGURES_PATH for the README.
#include "reliability.h"
#include "suitefiles.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <sqlite3.h>

using namespace Reliability;

namespace {

// ---- The books, opened with the sqlite3 C API ----------------------------------------

class Books
{
public:
    explicit Books(const QString &dir)
    {
        const QString wage = dir + "/data/Wage32.mdb";
        if (!QFile::exists(wage) ||
            sqlite3_open_v2((dir + "/data/Farm32.mdb").toUtf8().constData(), &m_db,
                            SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            m_error = "cannot open the data files";
        else {
            sqlite3_busy_timeout(m_db, 10000); // a writer may still be finishing
            exec("ATTACH '" + wage + "' AS wage");
        }
    }
    ~Books() { sqlite3_close(m_db); }
    Books(const Books &) = delete;
    Books &operator=(const Books &) = delete;

    QString error() const { return m_error; }

    void exec(const QString &sql)
    {
        char *message = nullptr;
        if (m_error.isEmpty() &&
            sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK)
            m_error = QString::fromUtf8(message ? message : sqlite3_errmsg(m_db));
        sqlite3_free(message);
    }

    // Every row of the result, columns joined by '|'; "<error: ...>" when it fails.
    QString rows(const QString &sql) const
    {
        sqlite3_stmt *st = nullptr;
        if (!m_error.isEmpty() ||
            sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
            return "<error: " +
                   (m_error.isEmpty() ? QString::fromUtf8(sqlite3_errmsg(m_db)) : m_error) + ">";
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
        const QString failure =
            rc == SQLITE_DONE ? QString() : QString::fromUtf8(sqlite3_errmsg(m_db));
        sqlite3_finalize(st);
        return failure.isEmpty() ? lines.join(u'\n') : "<error: " + failure + ">";
    }

    // Empty when the files open and both pass integrity_check.
    QString problem() const
    {
        const QString main = rows("PRAGMA main.integrity_check");
        const QString wage = rows("PRAGMA wage.integrity_check");
        return !m_error.isEmpty()               ? m_error
               : main == u"ok" && wage == u"ok" ? QString()
                                                : main + " / " + wage;
    }

    // All rows of every table of both files, to tell "unchanged" by content, not bytes.
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

// ---- The saves and what "whole or absent" means for each ------------------------------

QString sqlText(const QString &s)
{
    return u'\'' + QString(s).replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString addressOf(const char *name)
{
    return "(SELECT AddressID FROM main.Addresses WHERE BusName = " + sqlText(name) + ")";
}

// A problem in words, empty when the save is whole or absent. before: the books as copied.
using Invariant = std::function<QString(const Books &now, const Books &before)>;

QString oneOf(const Books &now, const Books &before, const QString &what, const QString &sql,
              const QString &newValue)
{
    const QString value = now.rows(sql);
    return value == newValue || value == before.rows(sql)
               ? QString()
               : what + " half saved: " + value.left(200);
}

const QString kNotes = "SELECT ifnull(notes,'') FROM main.Addresses WHERE BusName = ";
const QString kPayRate =
    "SELECT PayRate FROM wage.Employees WHERE AddressID = " + addressOf(WorkerName);

QString addressWhole(const Books &now, const Books &before)
{
    return oneOf(now, before, "address",
                 "SELECT ifnull(BusAddress1,'')||'|'||ifnull(BusCity,'')||'|'||ifnull(BusPhone,'')"
                 "||'|'||ifnull(ContactEmail,'') FROM main.Addresses WHERE BusName = " +
                     sqlText(EditName),
                 QStringList(std::begin(EditedValues), std::end(EditedValues)).join(u'|'));
}

QString notesWhole(const Books &now, const Books &before)
{
    const QString sql = kNotes + sqlText(EditName);
    return oneOf(now, before, "notes", sql, before.rows(sql) + "\r\n" + NotesLine);
}

// The rate, its change-log line, the deductions and the KiwiSaver rows go together.
QString payDetailsWhole(const Books &now, const Books &before)
{
    const QString employee =
        "(SELECT EmployeeID FROM wage.Employees WHERE AddressID = " + addressOf(WorkerName) + ")";
    const QString deductions = "SELECT count(*)||'/'||ifnull(sum(FixedAmount),0) FROM "
                               "wage.EmployeeDeductions WHERE TaxName IS NULL AND EmployeeID = " +
                               employee;
    const QString ks = now.rows(
        "SELECT (KiwiSaverEnrolled <> 0)||'/'||(SELECT count(*) > 0 FROM wage.EmployeeDeductions "
        "d WHERE d.EmployeeID = e.EmployeeID AND d.TaxName = 'KiwiSaver')||'/'||(SELECT count(*) "
        "> 0 FROM wage.EmployerContributions c WHERE c.EmployeeID = e.EmployeeID) FROM "
        "wage.Employees e WHERE AddressID = " +
        addressOf(WorkerName));
    const bool rateNew = now.rows(kPayRate) == QString::number(NewPayRateStored);
    const bool logged = !now.rows(kNotes + sqlText(WorkerName) +
                                  " AND notes LIKE '%Pay rate amended to " + NewPayRate + "%'")
                             .isEmpty();
    const QString dedNow = now.rows(deductions);
    const bool dedNew =
        dedNow == QStringLiteral("%1/%2").arg(DeductionRows).arg(DeductionSumStored);
    QStringList problems;
    if (rateNew != logged)
        problems << QStringLiteral("pay rate %1 but change log line %2")
                        .arg(rateNew ? "new" : "old", logged ? "written" : "missing");
    if (!dedNew && dedNow != before.rows(deductions))
        problems << "deductions half saved: " + dedNow;
    if (ks != u"0/0/0" && ks != u"1/1/1")
        problems << "KiwiSaver rows disagree with KiwiSaverEnrolled: " + ks;
    if (rateNew != dedNew || dedNew != ks.startsWith(u'1'))
        problems << QStringLiteral(
                        "part of the save applied (rate %1, deductions %2, KiwiSaver %3)")
                        .arg(rateNew)
                        .arg(dedNew)
                        .arg(ks);
    return problems.join("; ");
}

QString addWhole(const Books &now, const Books &)
{
    const QString where = " WHERE BusName = " + sqlText(NewName);
    const QString rows = now.rows("SELECT count(*) FROM main.Addresses" + where + " AND WageFlag");
    const QString employees = now.rows("SELECT count(*) FROM wage.Employees WHERE AddressID IN "
                                       "(SELECT AddressID FROM main.Addresses" +
                                       where + ")");
    return rows == employees && (rows == u"0" || rows == u"1")
               ? QString()
               : "added entry has " + rows + " row(s) and " + employees + " employee row(s)";
}

// Holds whatever the save: no employee without its Addresses row.
QString noOrphans(const Books &now)
{
    const QString n = now.rows("SELECT count(*) FROM wage.Employees e WHERE NOT EXISTS (SELECT 1 "
                               "FROM main.Addresses a WHERE a.AddressID = e.AddressID)");
    return n == u"0" ? QString() : n + " employee(s) without their row";
}

struct Scenario
{
    const char *name;
    const char *answers; // to the questions before the failure (delete's confirmation)
    Invariant whole;
    bool typedMatters;
};

const Scenario kScenarios[] = {
    {"address", "", addressWhole, true},
    {"notes", "", notesWhole, true},
    {"paydetails", "", payDetailsWhole, true},
    {"add", "", addWhole, false},
    {"delete", "yes", [](const Books &, const Books &) { return QString(); }, false}};

// ---- Running children --------------------------------------------------------------

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
};

struct Fault
{
    Fault(const char *kind = nullptr, int at = 0, const QString &countFile = {},
          int killAfterMs = -1)
        : kind(kind), at(at), countFile(countFile), killAfterMs(killAfterMs)
    {
    }
    const char *kind; // kill, eio, enospc; nullptr: none, but counted
    int at;
    QString countFile;
    int killAfterMs; // killed from outside instead
};

const QString kChild = RELIABILITY_CHILD;
const QString kCvsuite = CVSUITE_EXE;

QProcessEnvironment childEnvironment(const QString &suite, const QString &answers)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("CORVANE_SHARED_DOCUMENTS", suite);
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("CV_ANSWERS", answers);
    return env;
}

Outcome run(const QString &program, const QStringList &args, const QString &suite,
            const Fault &fault = {}, const QString &answers = {})
{
    QProcessEnvironment env = childEnvironment(suite, answers);
    if (fault.kind || !fault.countFile.isEmpty()) {
        env.insert("LD_PRELOAD", FAULTSHIM);
        env.insert("CV_FAULT_DIR", suite);
        env.insert("CV_FAULT_KIND", fault.kind ? fault.kind : "none");
        env.insert("CV_FAULT_AT", QString::number(fault.at));
        env.insert("CV_FAULT_COUNT", fault.countFile);
    }
    QProcess p;
    p.setProcessEnvironment(env);
    QElapsedTimer clock;
    clock.start();
    p.start(program, args);
    p.waitForStarted();
    if (fault.killAfterMs >= 0) {
        QThread::msleep(fault.killAfterMs);
        p.kill();
    }
    p.waitForFinished(120000);
    return {QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError()), clock.elapsed()};
}

Outcome outcomeOf(QProcess &p)
{
    return {QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
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

int readCount(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll().trimmed().toInt() : -1;
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
    QString figures() const
    {
        return QStringLiteral("%1, corrupt %2, half-saved %3")
            .arg(runs)
            .arg(corrupt)
            .arg(halfSaved);
    }
    void expectClean(const char *what) const
    {
        EXPECT_EQ(corrupt, 0) << what << ":\n  " << qPrintable(samples.join("\n  "));
        EXPECT_EQ(halfSaved, 0) << what << ":\n  " << qPrintable(samples.join("\n  "));
    }
};

// ---- The fixture: one small suite, copied for every run -------------------------------

class SaveReliability : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_root = new QTemporaryDir;
        SuiteFiles::demoSuite(templateDir());
        Books b(templateDir());
        QString seed =
            "INSERT INTO main.Addresses (BusName, ContactLastName, BusAddress1, BusCity, "
            "BusPhone, ContactEmail, notes, WageFlag) VALUES "
            "('Reliability Alpha', 'Alpha', '2 Old Road', 'Oldtown', '07 555 0100', "
            "'old@test.example', 'First line', 0), "
            "('Reliability Beta', 'Beta', NULL, NULL, NULL, NULL, NULL, 0), "
            "('Reliability Gone', 'Gone', NULL, NULL, NULL, NULL, NULL, 0), "
            "('Reliability Worker', 'Worker', NULL, NULL, NULL, NULL, 'Hired', -1)";
        for (int i = 1; i <= 8; ++i)
            seed += QStringLiteral(", ('%1%2', 'Loop', NULL, NULL, NULL, NULL, NULL, 0)")
                        .arg(LoopPrefix)
                        .arg(i);
        b.exec(seed);
        b.exec("INSERT INTO wage.Employees (AddressID, EmployeeTypeID, TaxTypeID, PayIntervalID, "
               "BankID, PayRate, KiwiSaverEnrolled, KiwiSaverEnrolID) VALUES (" +
               addressOf(WorkerName) +
               ", (SELECT min(EmployeeTypeID) FROM wage.EmployeeAwardType), (SELECT "
               "min(TaxTypeID) FROM wage.TaxTypes), (SELECT min(PayIntervalID) FROM "
               "wage.PayInterval), (SELECT min(BanksID) FROM main.Banks WHERE AccountType = 0), "
               "250000, 0, (SELECT KSEnrollTypeID FROM wage.KiwiSaverEnrollType WHERE "
               "KSEnrollType = 'Not enrolled'))");
        b.exec("INSERT INTO wage.EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
               "SpecialRate, TaxName) SELECT last_insert_rowid(), DeductNameID, 50000, 0, NULL "
               "FROM wage.DeductNames WHERE DeductionName IN ('Union fees', 'Staff purchases')");
        ASSERT_EQ(b.error(), QString());
        ASSERT_EQ(noOrphans(b), QString());
    }
    static void TearDownTestSuite()
    {
        delete s_root;
        s_root = nullptr;
    }

    static QString templateDir() { return s_root->path() + "/template"; }

    // A fresh copy of the template for one run; removed with the returned object.
    static std::unique_ptr<QTemporaryDir> freshSuite()
    {
        auto dir = std::make_unique<QTemporaryDir>(s_root->path() + "/run-XXXXXX");
        EXPECT_TRUE(copyTree(templateDir(), dir->path()));
        return dir;
    }

    // Runs a save on a fresh copy, killed as fault says, and checks the books after it:
    // both files sound, the save whole or absent.
    static void killedRun(const Scenario &s, const Fault &fault, Tally &t, const QString &label)
    {
        const auto dir = freshSuite();
        run(kChild, {s.name}, dir->path(), fault, s.answers);
        ++t.runs;
        const Books now(dir->path()), before(templateDir());
        if (const QString bad = now.problem(); !bad.isEmpty())
            return t.problem(t.corrupt, label + ": " + bad);
        const QString half = QStringList{s.whole(now, before), noOrphans(now)}
                                 .filter(QRegularExpression("."))
                                 .join("; ");
        if (!half.isEmpty())
            t.problem(t.halfSaved, label + ": " + half);
    }

    // Counts the points a clean run of a save has; a clean run saves and says nothing.
    static int pointsOf(const QString &program, const QStringList &args, const QString &answers,
                        Outcome *clean = nullptr, QString *saved = nullptr)
    {
        const auto dir = freshSuite();
        QStringList a = args;
        a.replaceInStrings("<dir>", dir->path());
        const Outcome o =
            run(program, a, dir->path(), {nullptr, 0, dir->path() + ".count"}, answers);
        const QString what = args.join(' ') + '\n' + o.err;
        EXPECT_EQ(o.failuresReported(), 0) << "a clean save reports: " << qPrintable(what);
        const QString after = Books(dir->path()).dump();
        EXPECT_NE(after, Books(templateDir()).dump())
            << "a clean run saved nothing: " << qPrintable(what);
        if (clean)
            *clean = o;
        if (saved)
            *saved = after;
        return readCount(dir->path() + ".count");
    }

    static QTemporaryDir *s_root;
};

QTemporaryDir *SaveReliability::s_root = nullptr;

// Killed before each counted write and sync in turn, then at random moments (the same ones
// every run, so a failure repeats): each save is whole or absent.
TEST_F(SaveReliability, KilledAnywhereEachSaveIsWholeOrAbsent)
{
    const int kills = qEnvironmentVariableIntValue("CV_RANDOM_KILLS") > 0
                          ? qEnvironmentVariableIntValue("CV_RANDOM_KILLS")
                          : 1000;
    const int perScenario = (kills + int(std::size(kScenarios)) - 1) / int(std::size(kScenarios));
    QRandomGenerator random(20240520);
    Tally points, moments;
    QStringList figures;
    for (const Scenario &s : kScenarios) {
        SCOPED_TRACE(s.name);
        Outcome clean;
        const int count = pointsOf(kChild, {s.name}, s.answers, &clean);
        ASSERT_GT(count, 0) << "the shim counted no writes";
        Tally t, r;
        for (int k = 1; k <= count; ++k)
            killedRun(s, {"kill", k}, t, QStringLiteral("%1 killed at %2").arg(s.name).arg(k));
        for (int i = 0; i < perScenario; ++i) {
            const int ms = int(random.bounded(clean.ms + 1));
            killedRun(s, {nullptr, 0, {}, ms}, r,
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

// A failed write or sync, or a full disk, at every point of every save: the user hears of
// it once, the files are as before, no transaction is left open, the typed input stays.
// SQLite itself absorbs a failure that comes after its commit point (syncing the folder,
// removing a finished journal): that save is whole, as a clean one, and nothing is said.
TEST_F(SaveReliability, AFailedWriteIsReportedOnceAndChangesNothing)
{
    const QString before = Books(templateDir()).dump();
    int points = 0, reportedOnce = 0, unchanged = 0, absorbed = 0, autocommit = 0, typedKept = 0,
        typedRuns = 0;
    QStringList samples;
    const auto sample = [&samples](const QString &s) {
        if (samples.size() < 20)
            samples << s;
    };
    for (const Scenario &s : kScenarios) {
        QString saved;
        const int k = pointsOf(kChild, {s.name}, s.answers, nullptr, &saved);
        const QString answers =
            QStringList{s.answers, "cancel"}.filter(QRegularExpression(".")).join(u',');
        for (const char *kind : {"eio", "enospc"}) {
            for (int at = 1; at <= k; ++at, ++points) {
                const auto dir = freshSuite();
                const Outcome o = run(kChild, {s.name}, dir->path(), {kind, at}, answers);
                const QString label = QStringLiteral("%1 %2 at %3").arg(s.name, kind).arg(at);
                const int reports = o.failuresReported();
                const QString after = Books(dir->path()).dump();
                reportedOnce += reports == 1;
                if (reports == 1 && after == before)
                    ++unchanged;
                else if (reports == 0 && after == saved)
                    ++absorbed;
                else
                    sample(label + QStringLiteral(": reported %1 time(s), files %2")
                                       .arg(reports)
                                       .arg(after == before ? "unchanged" : "changed"));
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
                  {QStringLiteral("I/O error points %1, failures reported once %2 (files unchanged "
                                  "%3), absorbed by SQLite after its commit point %4 (saved "
                                  "whole), autocommit restored %5, typed input kept %6 of %7")
                       .arg(points)
                       .arg(reportedOnce)
                       .arg(unchanged)
                       .arg(absorbed)
                       .arg(autocommit)
                       .arg(typedKept)
                       .arg(typedRuns)});
    const QString details = samples.join("\n  ");
    EXPECT_EQ(unchanged + absorbed, points) << qPrintable(details);
    EXPECT_EQ(unchanged, reportedOnce) << qPrintable(details);
    EXPECT_EQ(autocommit, points) << qPrintable(details);
    EXPECT_EQ(typedKept, typedRuns) << qPrintable(details);
}

// cvsuite bulk --force replaces a suite: killed anywhere, the folder holds the whole old
// suite or the whole new one (both data files and the INI file).
TEST_F(SaveReliability, BulkReplaceKilledLeavesTheOldSuiteOrTheNew)
{
    const auto suiteOf = [](const QString &dir) {
        QFile ini(dir + "/Corvane/Common/Corvane.ini");
        const Books b(dir);
        const QString bad = b.problem();
        return bad.isEmpty() ? b.dump() + (ini.open(QIODevice::ReadOnly) ? ini.readAll() : "")
                             : "<bad: " + bad + ">";
    };
    const QStringList args{"bulk", "<dir>", "--addresses", "50", "--employees", "10", "--force"};
    const QString oldSuite = suiteOf(templateDir());
    QString newSuite;
    const int points = pointsOf(kCvsuite, args, {});
    {
        const auto dir = freshSuite();
        run(kCvsuite, QStringList(args).replaceInStrings("<dir>", dir->path()), dir->path());
        newSuite = suiteOf(dir->path());
    }
    ASSERT_GT(points, 0);
    ASSERT_NE(newSuite, oldSuite);
    Tally t;
    for (int k = 1; k <= points; ++k, ++t.runs) {
        const auto dir = freshSuite();
        run(kCvsuite, QStringList(args).replaceInStrings("<dir>", dir->path()), dir->path(),
            {"kill", k});
        const QString now = suiteOf(dir->path());
        if (now.startsWith(u"<bad"))
            t.problem(t.corrupt, QStringLiteral("killed at %1: %2").arg(k).arg(now.left(200)));
        else if (now != oldSuite && now != newSuite)
            t.problem(t.halfSaved,
                      QStringLiteral("killed at %1: neither the old suite nor the new").arg(k));
    }
    recordFigures("cvsuite bulk",
                  {"kill points " + t.figures().replace("half-saved", "half-replaced")});
    t.expectClean("cvsuite bulk --force");
}

// Eight programs save their own entries as fast as they can for a minute, answering Retry
// to a failed save: no save is lost, and none fails without the user hearing of it.
TEST_F(SaveReliability, EightWritersForAMinuteLoseNothingAndReportEveryFailure)
{
    const int seconds = qEnvironmentVariableIntValue("CV_CONTENTION_SECONDS") > 0
                            ? qEnvironmentVariableIntValue("CV_CONTENTION_SECONDS")
                            : 60;
    const auto dir = freshSuite();
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 1; i <= 8; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->setProcessEnvironment(childEnvironment(dir->path(), "retry*"));
        writers.back()->start(kChild,
                              {"loop", LoopPrefix + QString::number(i), QString::number(seconds)});
    }
    for (auto &p : writers)
        ASSERT_TRUE(p->waitForFinished((seconds + 60) * 1000));
    int saved = 0, failed = 0, silent = 0, lost = 0, reported = 0;
    for (int i = 1; i <= 8; ++i) {
        const Outcome o = outcomeOf(*writers[std::size_t(i - 1)]);
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
                  {QStringLiteral("8 writers for %1 s: saves %2, failed and reported %3, failed "
                                  "silently %4, lost updates %5, messages %6")
                       .arg(seconds)
                       .arg(saved)
                       .arg(failed)
                       .arg(silent)
                       .arg(lost)
                       .arg(reported)});
}

// Another program holds the wage file (BEGIN EXCLUSIVE) while pay details are saved: for
// 2 s the save waits (or is retried) and ends saved; for 20 s the user is told once,
// cancels, and nothing is half saved.
TEST_F(SaveReliability, AnotherProgramHoldingTheWageFile)
{
    const Books before(templateDir());
    for (const auto &[holdMs, answers, endsSaved] :
         {std::tuple{2000, "retry*", true}, std::tuple{20000, "cancel", false}}) {
        SCOPED_TRACE(holdMs);
        const auto dir = freshSuite();
        QProcessEnvironment env = childEnvironment(dir->path(), answers);
        env.insert("CV_PAUSE_BEFORE_SAVE", "1");
        QProcess child;
        child.setProcessEnvironment(env);
        child.start(kChild, {"paydetails"});
        while (!child.canReadLine() && child.waitForReadyRead(30000)) {
        }
        ASSERT_EQ(child.readLine().trimmed(), "READY") << child.readAllStandardError().data();

        sqlite3 *holder = nullptr;
        ASSERT_EQ(sqlite3_open_v2((dir->path() + "/data/Wage32.mdb").toUtf8().constData(), &holder,
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

        const Outcome o = outcomeOf(child);
        const Books now(dir->path());
        EXPECT_EQ(now.problem(), QString());
        EXPECT_EQ(payDetailsWhole(now, before), QString());
        EXPECT_EQ(now.rows(kPayRate) == QString::number(NewPayRateStored), endsSaved)
            << qPrintable(o.err);
        if (!endsSaved) {
            EXPECT_EQ(o.failuresReported(), 1) << qPrintable(o.err);
        }
        EXPECT_TRUE(o.says("AUTOCOMMIT 1")) << qPrintable(o.out);
    }
}

} // namespace
