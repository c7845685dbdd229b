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
        const QByteArray farm = (dir + "/data/Farm32.mdb").toUtf8();
        const QString wage = dir + "/data/Wage32.mdb";
        if (!QFile::exists(wage) ||
            sqlite3_open_v2(farm.constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
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
        if (!m_error.isEmpty())
            return "<error: " + m_error + ">";
        sqlite3_stmt *st = nullptr;
        if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
            return "<error: " + QString::fromUtf8(sqlite3_errmsg(m_db)) + ">";
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

    QString integrity() const
    {
        const QString main = rows("PRAGMA main.integrity_check");
        const QString wage = rows("PRAGMA wage.integrity_check");
        return main == u"ok" && wage == u"ok" ? QString() : main + " / " + wage;
    }

    // All rows of every table of both files, to tell "unchanged" by content, not bytes.
    QString dump() const
    {
        QString all;
        for (const char *schema : {"main", "wage"}) {
            const QString tables = rows(QStringLiteral("SELECT name FROM %1.sqlite_master WHERE "
                                                       "type = 'table' ORDER BY name")
                                            .arg(schema));
            for (const QString &t : tables.split(u'\n', Qt::SkipEmptyParts))
                all +=
                    t + u'\n' +
                    rows(QStringLiteral("SELECT * FROM %1.\"%2\" ORDER BY rowid").arg(schema, t)) +
                    u'\n';
        }
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

const QString kEdited = "SELECT ifnull(BusAddress1,'')||'|'||ifnull(BusCity,'')||'|'||"
                        "ifnull(BusPhone,'')||'|'||ifnull(ContactEmail,'') FROM main.Addresses "
                        "WHERE BusName = " +
                        sqlText(EditName);
const QString kNotes = "SELECT ifnull(notes,'') FROM main.Addresses WHERE BusName = ";

QString addressWhole(const Books &now, const Books &before)
{
    QStringList values;
    for (const char *v : EditedValues)
        values << v;
    return oneOf(now, before, "address", kEdited, values.join(u'|'));
}

QString notesWhole(const Books &now, const Books &before)
{
    const QString sql = kNotes + sqlText(EditName);
    return oneOf(now, before, "notes", sql, before.rows(sql) + "\r\n" + NotesLine);
}

QString payDetailsWhole(const Books &now, const Books &before)
{
    const QString employee =
        "(SELECT EmployeeID FROM wage.Employees WHERE AddressID = " + addressOf(WorkerName) + ")";
    const QString deductions = "SELECT count(*)||'/'||ifnull(sum(FixedAmount),0) FROM "
                               "wage.EmployeeDeductions WHERE TaxName IS NULL AND EmployeeID = " +
                               employee;
    const QString kiwiSaver =
        "SELECT (KiwiSaverEnrolled <> 0)||'/'||"
        "(SELECT count(*) > 0 FROM wage.EmployeeDeductions d WHERE "
        "d.EmployeeID = e.EmployeeID AND d.TaxName = 'KiwiSaver')||'/'||"
        "(SELECT count(*) > 0 FROM wage.EmployerContributions c WHERE "
        "c.EmployeeID = e.EmployeeID) FROM wage.Employees e WHERE AddressID = " +
        addressOf(WorkerName);
    const bool rateNew = now.rows("SELECT PayRate FROM wage.Employees WHERE AddressID = " +
                                  addressOf(WorkerName)) == QString::number(NewPayRateStored);
    const bool logged = now.rows(kNotes + sqlText(WorkerName) +
                                 " AND notes LIKE '%Pay rate "
                                 "amended to " +
                                 NewPayRate + "%'") != QString();
    const QString dedNow = now.rows(deductions);
    const bool dedNew =
        dedNow == QStringLiteral("%1/%2").arg(DeductionRows).arg(DeductionSumStored);
    const QString ks = now.rows(kiwiSaver);
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
    const QString rows = now.rows("SELECT count(*) FROM main.Addresses WHERE WageFlag <> 0 AND "
                                  "BusName = " +
                                  sqlText(NewName));
    const QString employees = now.rows("SELECT count(*) FROM wage.Employees WHERE AddressID IN "
                                       "(SELECT AddressID FROM main.Addresses WHERE BusName = " +
                                       sqlText(NewName) + ")");
    return rows == employees && (rows == u"0" || rows == u"1")
               ? QString()
               : "added entry has " + rows + " row(s) and " + employees + " employee row(s)";
}

QString nothingMore(const Books &, const Books &)
{
    return {};
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
    {"address", "", addressWhole, true},       {"notes", "", notesWhole, true},
    {"paydetails", "", payDetailsWhole, true}, {"add", "", addWhole, false},
    {"delete", "yes", nothingMore, false},
};

// ---- Running children --------------------------------------------------------------

struct Outcome
{
    bool crashed = false;
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
    const char *kind = nullptr; // kill, eio, enospc; nullptr: none, but counted
    int at = 0;
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

Outcome run(const QString &program, const QStringList &args, const QString &suite, Fault fault,
            const QString &answers, const QString &countFile = {}, int killAfterMs = -1,
            const std::function<void(QProcess &)> &during = {})
{
    QProcessEnvironment env = childEnvironment(suite, answers);
    if (fault.kind || !countFile.isEmpty()) {
        env.insert("LD_PRELOAD", FAULTSHIM);
        env.insert("CV_FAULT_DIR", suite);
        env.insert("CV_FAULT_KIND", fault.kind ? fault.kind : "none");
        env.insert("CV_FAULT_AT", QString::number(fault.at));
        env.insert("CV_FAULT_COUNT", countFile);
    }
    QProcess p;
    p.setProcessEnvironment(env);
    QElapsedTimer clock;
    clock.start();
    p.start(program, args);
    p.waitForStarted();
    if (killAfterMs >= 0) {
        QThread::msleep(killAfterMs);
        p.kill();
    }
    if (during)
        during(p);
    p.waitForFinished(120000);
    Outcome o;
    o.ms = clock.elapsed();
    o.crashed = p.exitStatus() == QProcess::CrashExit;
    o.out = QString::fromUtf8(p.readAllStandardOutput());
    o.err = QString::fromUtf8(p.readAllStandardError());
    return o;
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

// The first line of after that differs from before, for a short report.
QString firstDifference(const QString &before, const QString &after)
{
    const QStringList a = before.split(u'\n'), b = after.split(u'\n');
    for (qsizetype i = 0; i < b.size(); ++i)
        if (i >= a.size() || a[i] != b[i])
            return b[i].left(160);
    return QStringLiteral("rows removed");
}

// ---- Figures -----------------------------------------------------------------------

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
    for (const QString &l : lines)
        kept << test + ": " + l;
    kept.sort();
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write((kept.join(u'\n') + u'\n').toUtf8());
    for (const QString &l : lines)
        std::printf("[figures] %s: %s\n", qPrintable(test), qPrintable(l));
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
};

// ---- The fixture: one small suite, copied for every run -------------------------------

class SaveReliability : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_root = new QTemporaryDir;
        const QString tpl = s_root->path() + "/template";
        SuiteFiles::demoSuite(tpl);
        Books b(tpl);
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

    // Checks the books after a kill: both files sound, the save whole or absent.
    static void inspect(const QString &dir, const Scenario &s, Tally &t, const QString &label)
    {
        ++t.runs;
        const Books now(dir);
        const Books before(templateDir());
        if (const QString bad = now.error().isEmpty() ? now.integrity() : now.error();
            !bad.isEmpty()) {
            t.problem(t.corrupt, label + ": " + bad);
            return;
        }
        QString half = s.whole(now, before);
        if (const QString orphans = noOrphans(now); !orphans.isEmpty())
            half += (half.isEmpty() ? "" : "; ") + orphans;
        if (!half.isEmpty())
            t.problem(t.halfSaved, label + ": " + half);
    }

    // Counts the points a clean run of the save has.
    static int pointsOf(const Scenario &s, Outcome *clean = nullptr)
    {
        const auto dir = freshSuite();
        const QString countFile = dir->path() + ".count";
        const Outcome o = run(kChild, {s.name}, dir->path(), {}, s.answers, countFile);
        EXPECT_EQ(o.failuresReported(), 0) << s.name << ": a clean save reports\n"
                                           << qPrintable(o.err);
        EXPECT_NE(Books(dir->path()).dump(), Books(templateDir()).dump())
            << s.name << ": a clean run saved nothing\n"
            << qPrintable(o.err);
        if (clean)
            *clean = o;
        return readCount(countFile);
    }

    static QTemporaryDir *s_root;
};

QTemporaryDir *SaveReliability::s_root = nullptr;

void expectClean(const Tally &t, const char *what)
{
    EXPECT_EQ(t.corrupt, 0) << what << ":\n  " << qPrintable(t.samples.join("\n  "));
    EXPECT_EQ(t.halfSaved, 0) << what << ":\n  " << qPrintable(t.samples.join("\n  "));
}

TEST_F(SaveReliability, KilledBeforeEveryWriteAndSyncEachSaveIsWholeOrAbsent)
{
    Tally total;
    QStringList figures;
    for (const Scenario &s : kScenarios) {
        const int points = pointsOf(s);
        ASSERT_GT(points, 0) << s.name << ": the shim counted no writes";
        Tally t;
        for (int k = 1; k <= points; ++k) {
            const auto dir = freshSuite();
            run(kChild, {s.name}, dir->path(), {"kill", k}, s.answers);
            inspect(dir->path(), s, t, QStringLiteral("%1 killed at %2").arg(s.name).arg(k));
        }
        figures << QStringLiteral("%1 kill points %2, corrupt %3, half-saved %4")
                       .arg(s.name)
                       .arg(points)
                       .arg(t.corrupt)
                       .arg(t.halfSaved);
        expectClean(t, s.name);
        total.runs += t.runs;
        total.corrupt += t.corrupt;
        total.halfSaved += t.halfSaved;
    }
    figures << QStringLiteral("kill points covered %1, corrupt files %2, half-saved %3")
                   .arg(total.runs)
                   .arg(total.corrupt)
                   .arg(total.halfSaved);
    recordFigures("crash points", figures);
}

TEST_F(SaveReliability, KilledAtRandomMomentsEachSaveIsWholeOrAbsent)
{
    const int kills = qEnvironmentVariableIntValue("CV_RANDOM_KILLS") > 0
                          ? qEnvironmentVariableIntValue("CV_RANDOM_KILLS")
                          : 1000;
    const int perScenario = (kills + int(std::size(kScenarios)) - 1) / int(std::size(kScenarios));
    Tally total;
    QRandomGenerator random(20240520); // the same moments every run, so a failure repeats
    for (const Scenario &s : kScenarios) {
        Outcome clean;
        pointsOf(s, &clean);
        Tally t;
        for (int i = 0; i < perScenario; ++i) {
            const auto dir = freshSuite();
            const int ms = int(random.bounded(qint64(clean.ms) + 1));
            run(kChild, {s.name}, dir->path(), {}, s.answers, {}, ms);
            inspect(dir->path(), s, t, QStringLiteral("%1 killed after %2 ms").arg(s.name).arg(ms));
        }
        expectClean(t, s.name);
        total.runs += t.runs;
        total.corrupt += t.corrupt;
        total.halfSaved += t.halfSaved;
    }
    recordFigures("random kills",
                  {QStringLiteral("random kills %1, corrupt files %2, half-saved %3")
                       .arg(total.runs)
                       .arg(total.corrupt)
                       .arg(total.halfSaved)});
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
    auto sample = [&samples](const QString &s) {
        if (samples.size() < 20)
            samples << s;
    };
    for (const Scenario &s : kScenarios) {
        const int k = pointsOf(s);
        const auto clean = freshSuite();
        run(kChild, {s.name}, clean->path(), {}, s.answers);
        const QString saved = Books(clean->path()).dump();
        for (const char *kind : {"eio", "enospc"}) {
            for (int at = 1; at <= k; ++at) {
                ++points;
                const auto dir = freshSuite();
                const QString answers = QString(s.answers).isEmpty()
                                            ? QStringLiteral("cancel")
                                            : QString(s.answers) + ",cancel";
                const Outcome o = run(kChild, {s.name}, dir->path(), {kind, at}, answers);
                const QString label = QStringLiteral("%1 %2 at %3").arg(s.name, kind).arg(at);
                const int reports = o.failuresReported();
                const QString after = Books(dir->path()).dump();
                if (reports == 1)
                    ++reportedOnce;
                if (reports == 1 && after == before)
                    ++unchanged;
                else if (reports == 0 && after == saved)
                    ++absorbed;
                else if (reports != 1)
                    sample(label + QStringLiteral(": reported %1 times").arg(reports));
                else
                    sample(label +
                           ": reported, yet the files changed: " + firstDifference(before, after));
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
        const QString files = b.error().isEmpty() ? b.integrity() : b.error();
        return files.isEmpty() ? b.dump() + (ini.open(QIODevice::ReadOnly) ? ini.readAll() : "")
                               : "<bad: " + files + ">";
    };
    const QStringList args{"bulk", "", "--addresses", "50", "--employees", "10", "--force"};
    auto argsFor = [&args](const QString &dir) {
        QStringList a = args;
        a[1] = dir;
        return a;
    };
    const QString oldSuite = suiteOf(templateDir());
    QString newSuite;
    int points = 0;
    {
        const auto dir = freshSuite();
        const QString countFile = dir->path() + ".count";
        run(kCvsuite, argsFor(dir->path()), dir->path(), {}, {}, countFile);
        points = readCount(countFile);
        newSuite = suiteOf(dir->path());
    }
    ASSERT_GT(points, 0);
    ASSERT_NE(newSuite, oldSuite);
    Tally t;
    for (int k = 1; k <= points; ++k) {
        const auto dir = freshSuite();
        run(kCvsuite, argsFor(dir->path()), dir->path(), {"kill", k}, {});
        ++t.runs;
        const QString now = suiteOf(dir->path());
        if (now.startsWith(u"<bad"))
            t.problem(t.corrupt, QStringLiteral("killed at %1: %2").arg(k).arg(now.left(200)));
        else if (now != oldSuite && now != newSuite)
            t.problem(t.halfSaved,
                      QStringLiteral("killed at %1: neither the old suite nor the new").arg(k));
    }
    recordFigures("cvsuite bulk", {QStringLiteral("kill points %1, corrupt %2, half-replaced %3")
                                       .arg(t.runs)
                                       .arg(t.corrupt)
                                       .arg(t.halfSaved)});
    expectClean(t, "cvsuite bulk --force");
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
    int saved = 0, failed = 0, silent = 0, lost = 0, reported = 0;
    for (auto &p : writers)
        ASSERT_TRUE(p->waitForFinished((seconds + 60) * 1000));
    for (int i = 1; i <= 8; ++i) {
        QProcess &p = *writers[std::size_t(i - 1)];
        Outcome o;
        o.out = QString::fromUtf8(p.readAllStandardOutput());
        o.err = QString::fromUtf8(p.readAllStandardError());
        reported += o.failuresReported();
        // A save whose check could not read the value back (UNREAD, another writer held
        // the file) may be stored or not; any such save after the last one seen stored may
        // be the value left.
        QString lastSaved;
        QStringList unreadSince;
        for (const QString &line : o.out.split(u'\n', Qt::SkipEmptyParts)) {
            const QString outcome = line.section(u' ', 0, 0);
            saved += outcome == u"SAVED";
            failed += outcome == u"FAILED";
            silent += outcome == u"SILENT";
            if (outcome == u"SAVED") {
                lastSaved = line.section(u' ', 1);
                unreadSince.clear();
            } else if (outcome == u"UNREAD") {
                unreadSince << line.section(u' ', 1);
            }
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
    EXPECT_EQ(Books(dir->path()).integrity(), QString());
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
    struct Case
    {
        int holdMs;
        const char *answers;
        bool endsSaved;
    };
    const Books before(templateDir());
    for (const Case c : {Case{2000, "retry*", true}, Case{20000, "cancel", false}}) {
        SCOPED_TRACE(c.holdMs);
        const auto dir = freshSuite();
        QProcessEnvironment env = childEnvironment(dir->path(), c.answers);
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
        while (held.elapsed() < c.holdMs && !child.waitForFinished(100)) {
        }
        sqlite3_exec(holder, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(holder);
        ASSERT_TRUE(child.state() == QProcess::NotRunning || child.waitForFinished(60000));

        Outcome o;
        o.out = QString::fromUtf8(child.readAllStandardOutput());
        o.err = QString::fromUtf8(child.readAllStandardError());
        const Books now(dir->path());
        EXPECT_EQ(now.integrity(), QString());
        EXPECT_EQ(payDetailsWhole(now, before), QString());
        const bool saved = now.rows("SELECT PayRate FROM wage.Employees WHERE AddressID = " +
                                    addressOf(WorkerName)) == QString::number(NewPayRateStored);
        EXPECT_EQ(saved, c.endsSaved) << qPrintable(o.err);
        if (!c.endsSaved) {
            EXPECT_EQ(o.failuresReported(), 1) << qPrintable(o.err);
        }
        EXPECT_TRUE(o.says("AUTOCOMMIT 1")) << qPrintable(o.out);
    }
}

} // namespace
