// The module on a PostgreSQL server beside the same work on SQLite files, in one
// run: name lists, showing an entry, loading and saving one employee's pay details,
// and eight clients saving at once. Each figure stands beside the raw time of the
// same translated statements: libpq's PQexecParams on the server, sqlite3 on the
// files, every value of every row read. The server is a durable throwaway cluster
// (it waits for the disk on commit, as an office's server would).
#include "addressbook/addressbooklogic.h"
#include "benchbook.h"
#include "data/database.h"
#include "data/jetsql.h"
#include "data/rowreader.h"
#include "launch/addressglobals.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"
#include "serverbooks.h"
#include "suitefiles.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <libpq-fe.h>
#include <map>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <sqlite3.h>
#include <thread>
#include <utility>
#include <vector>

namespace {

enum class Backend { File, Server };

constexpr int Addresses = 100000;
// The notes of the first employee, as in bench_paydetails: years of change-log lines.
constexpr int NotesBytes = 1 << 20;

SuiteFiles::BulkOptions bulkOptions()
{
    SuiteFiles::BulkOptions options;
    options.addresses = Addresses;
    options.employees = Addresses / 5;
    options.notesBytes = NotesBytes;
    return options;
}

// A cluster in a folder others may enter: as root the server runs as another user.
class Cluster
{
public:
    Cluster()
    {
        QFile::setPermissions(m_root.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                 QFileDevice::ExeOwner | QFileDevice::ReadGroup |
                                                 QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                                 QFileDevice::ExeOther);
        QProcess start;
        start.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start.start(CV_PGCLUSTER, {"start", dir(), "--durable"});
        start.waitForFinished(120000);
        m_connection = QString::fromUtf8(start.readAllStandardOutput()).trimmed();
        if (start.exitCode() != 0 || m_connection.isEmpty())
            qFatal("pgcluster did not start");
    }
    ~Cluster() { QProcess::execute(CV_PGCLUSTER, {"stop", dir()}); }
    QString connection() const { return m_connection; }

private:
    QString dir() const { return m_root.path() + "/cluster"; }
    QTemporaryDir m_root;
    QString m_connection;
};

Cluster *cluster = nullptr;

// The shared folder of each backend's book: the files themselves, or an INI naming the
// server that holds the same bulk rows.
QString sharedFolder(Backend backend)
{
    static QTemporaryDir files, server;
    static bool made[2] = {};
    if (backend == Backend::File) {
        if (!std::exchange(made[0], true))
            SuiteFiles::bulkSuite(files.path(), bulkOptions());
        return files.path();
    }
    if (!std::exchange(made[1], true)) {
        ServerBooks::bulkBooks(cluster->connection(), bulkOptions());
        const QString ini = server.path() + "/Corvane/Common/Corvane.ini";
        QDir().mkpath(QFileInfo(ini).path());
        SuiteFiles::writeIni(ini);
        QFile f(ini);
        f.open(QIODevice::ReadOnly);
        QByteArray text = f.readAll();
        f.close();
        text.replace("DatabaseServer=", "DatabaseServer=" + cluster->connection().toUtf8());
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(text);
    }
    return server.path();
}

void useBook(Backend backend, qint16 mode)
{
    qputenv("CORVANE_SHARED_DOCUMENTS", sharedFolder(backend).toUtf8());
    AddressGlobals::LaunchMode = mode;
    AddressGlobals::CurrentAddressID = 0;
}

std::unique_ptr<Database> openBook(Backend backend)
{
    const QString dir = sharedFolder(backend);
    if (backend == Backend::Server)
        return std::make_unique<Database>(Database::Server{cluster->connection()});
    auto db = std::make_unique<Database>(SuiteFiles::farmPath(dir));
    db->attach(SuiteFiles::wagePath(dir), "wage");
    return db;
}

struct Employee
{
    int addressId;
    int employeeId;
};

// Employees in key order; the first carries the large notes.
std::vector<Employee> employees(Backend backend, int count)
{
    const auto db = openBook(backend);
    RowReader rows(*db, "SELECT TOP " + QString::number(count) +
                            " AddressID, EmployeeID FROM Employees ORDER BY EmployeeID");
    std::vector<Employee> out;
    while (rows.next())
        out.push_back({int(rows.integer(0)), int(rows.integer(1))});
    return out;
}

// The employee at this place in key order (the first has the 1 MB notes). Every save
// appends to the notes, so each benchmark starts from the notes the book was made with,
// their size a counter.
Employee employee(Backend backend, int which, benchmark::State &state)
{
    static std::map<std::pair<Backend, int>, QString> original;
    const Employee e = employees(backend, which + 1).at(std::size_t(which));
    const auto db = openBook(backend);
    const auto made = original.find({backend, which});
    if (made == original.end()) {
        RowReader notes(*db, "SELECT notes FROM Addresses WHERE AddressID = ?", {e.addressId});
        original[{backend, which}] = notes.next() ? notes.text(0) : QString();
    } else {
        db->execute("UPDATE Addresses SET notes = ? WHERE AddressID = ?",
                    {made->second, e.addressId});
    }
    state.counters["notes_kB"] = double(original[{backend, which}].toUtf8().size()) / 1024;
    return e;
}

// ---- The raw side: the module's translated statements, run directly ------------

// One connection to either backend, with the session the module sets up; statements
// in Jet SQL, translated once before they are timed.
class Raw
{
public:
    explicit Raw(Backend backend) : m_backend(backend)
    {
        const QString dir = sharedFolder(backend);
        if (backend == Backend::Server) {
            m_pg = PQconnectdb(cluster->connection().toUtf8().constData());
            PQclear(PQexec(m_pg, "SELECT set_config('search_path', 'farm, wage' || "
                                 "coalesce((SELECT ', ' || quote_ident(n.nspname) FROM "
                                 "pg_extension e JOIN pg_namespace n ON n.oid = "
                                 "e.extnamespace WHERE e.extname = 'citext'), ''), false)"));
            return;
        }
        sqlite3_open_v2(SuiteFiles::farmPath(dir).toUtf8().constData(), &m_lite,
                        SQLITE_OPEN_READWRITE, nullptr);
        exec("ATTACH DATABASE '" + SuiteFiles::wagePath(dir).toUtf8() + "' AS wage");
    }
    ~Raw()
    {
        if (m_pg)
            PQfinish(m_pg);
        sqlite3_close(m_lite);
    }

    QByteArray translate(const char *jet) const
    {
        const auto dialect =
            m_backend == Backend::Server ? JetSql::Dialect::Postgres : JetSql::Dialect::Sqlite;
        QByteArray sql = JetSql::translate(QString::fromUtf8(jet), dialect).toUtf8();
        if (m_backend == Backend::Server) {
            // libpq numbers its markers; these statements have no ? inside quotes.
            QByteArray numbered;
            int marker = 0;
            for (const char c : sql)
                numbered += c == '?' ? "$" + QByteArray::number(++marker) : QByteArray(1, c);
            sql = numbered;
        }
        return sql;
    }

    // Runs a statement with values (numbers or text) bound, reading every value of
    // every row; returns the rows. The first two columns of each row are kept as
    // the name list keeps them when names is given.
    int run(const QByteArray &sql, const std::vector<QVariant> &values = {},
            std::vector<std::pair<qint64, QString>> *names = nullptr)
    {
        return m_pg ? runServer(sql, values, names) : runFile(sql, values, names);
    }
    void exec(const QByteArray &sql) { run(sql); }

private:
    int runServer(const QByteArray &sql, const std::vector<QVariant> &values,
                  std::vector<std::pair<qint64, QString>> *names)
    {
        std::vector<QByteArray> data;
        std::vector<const char *> pointers;
        std::vector<Oid> types;
        for (const QVariant &v : values) {
            const bool number = v.metaType().id() != QMetaType::QString;
            data.push_back(number ? QByteArray::number(v.toLongLong()) : v.toString().toUtf8());
            types.push_back(number ? 20 : 0); // int8, or text of unknown type
        }
        for (const QByteArray &d : data)
            pointers.push_back(d.constData());
        PGresult *r = PQexecParams(m_pg, sql.constData(), int(values.size()), types.data(),
                                   pointers.data(), nullptr, nullptr, 0);
        const ExecStatusType status = PQresultStatus(r);
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
            qFatal("%s\n%s", sql.constData(), PQresultErrorMessage(r));
        const int rows = PQntuples(r), columns = PQnfields(r);
        for (int row = 0; row < rows; ++row) {
            if (names) {
                const char *id = PQgetvalue(r, row, 0);
                qint64 key = 0;
                std::from_chars(id, id + PQgetlength(r, row, 0), key);
                if (!PQgetisnull(r, row, 1))
                    names->emplace_back(
                        key, QString::fromUtf8(PQgetvalue(r, row, 1), PQgetlength(r, row, 1)));
                continue;
            }
            for (int c = 0; c < columns; ++c)
                benchmark::DoNotOptimize(PQgetvalue(r, row, c));
        }
        PQclear(r);
        return rows;
    }

    int runFile(const QByteArray &sql, const std::vector<QVariant> &values,
                std::vector<std::pair<qint64, QString>> *names)
    {
        sqlite3_stmt *stmt = nullptr;
        if (sqlite3_prepare_v2(m_lite, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK)
            qFatal("%s\n%s", sql.constData(), sqlite3_errmsg(m_lite));
        int i = 0;
        for (const QVariant &v : values) {
            if (v.metaType().id() == QMetaType::QString)
                sqlite3_bind_text(stmt, ++i, v.toString().toUtf8().constData(), -1,
                                  SQLITE_TRANSIENT);
            else
                sqlite3_bind_int64(stmt, ++i, v.toLongLong());
        }
        int rows = 0;
        for (; sqlite3_step(stmt) == SQLITE_ROW; ++rows) {
            if (names) {
                if (const auto *t = reinterpret_cast<const char *>(sqlite3_column_text(stmt, 1)))
                    names->emplace_back(sqlite3_column_int64(stmt, 0), QString::fromUtf8(t));
                continue;
            }
            for (int c = 0; c < sqlite3_column_count(stmt); ++c)
                benchmark::DoNotOptimize(sqlite3_column_text(stmt, c));
        }
        sqlite3_finalize(stmt);
        return rows;
    }

    Backend m_backend;
    PGconn *m_pg = nullptr;
    sqlite3 *m_lite = nullptr;
};

// ---- Name list and showing an entry ------------------------------------------

// The module's own name-list statement; the Jet pattern as a literal.
void BM_NameList_Raw(benchmark::State &state, Backend backend, const char *pattern)
{
    Raw raw(backend);
    const QByteArray sql = raw.translate(
        QByteArray("SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName FROM Addresses "
                   "WHERE Addresses.busname LIKE '") +
        pattern + "' ORDER BY Addresses.busname;");
    for (auto _ : state) {
        std::vector<std::pair<qint64, QString>> names;
        raw.run(sql, {}, &names);
        state.counters["items"] = double(names.size());
    }
}

void BM_NameList_Logic(benchmark::State &state, Backend backend, const char *pattern)
{
    useBook(backend, 0);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    for (auto _ : state) {
        qint32 none = 0;
        logic.FillNameList(false, none, pattern);
        state.counters["items"] = logic.nameList().count();
    }
    logic.unload();
}

void BM_ShowEntry_Raw(benchmark::State &state, Backend backend)
{
    Raw raw(backend);
    const QByteArray sql = raw.translate("SELECT * FROM Addresses WHERE AddressID = ?");
    int id = 0;
    for (auto _ : state) {
        id = id % Addresses + 1;
        raw.run(sql, {id});
    }
}

// A click in the name list: the tab is saved, then the entry shown.
void BM_ShowEntry_Logic(benchmark::State &state, Backend backend)
{
    useBook(backend, 0);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    logic.activate();
    const int count = logic.nameList().count();
    int index = 0;
    for (auto _ : state) {
        index = (index + 7919) % count;
        logic.chooseName(index);
    }
    logic.unload();
}

// ---- Pay details of one employee --------------------------------------------

void BM_PayLoad_Raw(benchmark::State &state, Backend backend, int which)
{
    const Employee e = employee(backend, which, state);
    Raw raw(backend);
    const char *const jet[] = {
        "SELECT * FROM Employees WHERE AddressID = ?",
        "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType ORDER BY EmployeeType",
        "SELECT TaxTypeID, TaxName FROM TaxTypes WHERE CountryPhone = 64 OR CountryPhone = 0 "
        "ORDER BY [Order]",
        "SELECT PayIntervalID, IntervalName FROM PayInterval ORDER BY [Order]",
        "SELECT * FROM DeductNames WHERE TaxName = 'kiwisaver' ORDER BY DeductionName",
        "SELECT ContributionNameID, ContributionName, TaxName FROM ContributionNames WHERE "
        "TaxName = 'kiwisaver' ORDER BY ContributionName",
        "SELECT * FROM KiwiSaverEnrollType",
        "SELECT s.[Secondary Codes ID], s.[Cached Name] FROM [Account Codes] AS a INNER JOIN "
        "[Secondary Codes] AS s ON a.[Account Code] = s.[Main Code ID] WHERE a.[Show In CashBk] "
        "= -1 ORDER BY s.[Cached Name]",
        "SELECT Code, Name FROM [tbl No Enterprises] ORDER BY Name",
        "SELECT BanksID, Name FROM Banks WHERE BanksID < 995",
        "SELECT Code, Name FROM [tbl No Enterprises] ORDER BY Name",
        "SELECT d.EmployeeID, d.DeductID, d.FixedAmount, d.SpecialRate, n.TaxName FROM "
        "EmployeeDeductions AS d INNER JOIN DeductNames AS n ON d.DeductID = n.DeductNameID "
        "WHERE d.EmployeeID = ?",
        "SELECT DeductNameID, DeductionName FROM DeductNames ORDER BY DeductionName",
        "SELECT DeductNameID, Percentage FROM DeductNames",
    };
    std::vector<QByteArray> sql;
    for (const char *s : jet)
        sql.push_back(raw.translate(s));
    for (auto _ : state) {
        for (std::size_t i = 0; i < sql.size(); ++i) {
            if (i == 0)
                raw.run(sql[i], {e.addressId});
            else if (i == 11)
                raw.run(sql[i], {e.employeeId});
            else
                raw.run(sql[i]);
        }
    }
}

void BM_PayLoad_Logic(benchmark::State &state, Backend backend, int which)
{
    const Employee e = employee(backend, which, state);
    const auto db = openBook(backend);
    PayDetailsEditor editor(PayDetailsEditor::Host::WagesTab);
    for (auto _ : state)
        editor.load(*db, e.addressId);
}

// The save's statements: the row, the KiwiSaver rows, ten deductions and one log
// line appended to the notes, in one transaction.
void BM_PaySave_Raw(benchmark::State &state, Backend backend, int which)
{
    const Employee e = employee(backend, which, state);
    Raw raw(backend);
    const QByteArray begin = backend == Backend::Server ? "BEGIN" : "BEGIN IMMEDIATE";
    const QByteArray notes =
        raw.translate("UPDATE Addresses SET notes = CASE WHEN notes IS NULL OR notes = '' THEN "
                      "? ELSE notes || ? END WHERE AddressID = ?");
    const QByteArray row = raw.translate("SELECT * FROM Employees WHERE AddressID = ?");
    const QByteArray update = raw.translate("UPDATE Employees SET PayRate = ?, KiwiSaverEnrolled "
                                            "= -1, KiwiSaverEnrolID = 1 WHERE EmployeeID = ?");
    const QByteArray dropKiwi = raw.translate(
        "DELETE FROM EmployeeDeductions WHERE EmployeeID = ? AND TaxName = 'kiwisaver'");
    const QByteArray addKiwi =
        raw.translate("INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                      "SpecialRate, TaxName) VALUES (?, 1, 0, 3, 'KiwiSaver')");
    const QByteArray dropContribution = raw.translate(
        "DELETE FROM EmployerContributions WHERE EmployeeID = ? AND TaxName = 'kiwisaver'");
    const QByteArray addContribution =
        raw.translate("INSERT INTO EmployerContributions (EmployeeID, ContributionID, "
                      "FixedAmount, SpecialRate, TaxName) VALUES (?, 2, 0, 3, 'KiwiSaver')");
    const QByteArray dropDeductions =
        raw.translate("DELETE FROM EmployeeDeductions WHERE EmployeeID = ? AND TaxName IS NULL");
    const QByteArray addDeduction =
        raw.translate("INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                      "SpecialRate) VALUES (?, ?, 100000, 0)");
    const QString line = QStringLiteral("\r\n[22/11/2026] Pay rate amended to $30.00 Hour");
    int round = 0;
    for (auto _ : state) {
        ++round;
        raw.exec(begin);
        raw.run(notes, {line.mid(2), line, e.addressId});
        raw.run(row, {e.addressId});
        raw.run(update, {300000 + round % 2, e.employeeId});
        raw.run(dropKiwi, {e.employeeId});
        raw.run(addKiwi, {e.employeeId});
        raw.run(dropContribution, {e.employeeId});
        raw.run(addContribution, {e.employeeId});
        raw.run(dropDeductions, {e.employeeId});
        for (int i = 0; i < 10; ++i)
            raw.run(addDeduction, {e.employeeId, 6 + i % 8});
        raw.exec("COMMIT");
    }
}

// An editor on its own connection, loaded with ten deductions.
struct Editor
{
    Editor(Backend backend, int addressId)
        : db(openBook(backend)), editor(PayDetailsEditor::Host::WagesTab)
    {
        editor.load(*db, addressId);
        DeductionGrid &grid = editor.deductionGrid();
        while (grid.rowCount() < 10) {
            const int row = grid.addRow();
            editor.gridCellEdited(row, 1, 6 + row % 8);
            editor.gridCellEdited(row, 2, QStringLiteral("10.00"));
        }
    }
    // One change of pay rate: reformatted, logged to the notes, saved.
    bool save(int round)
    {
        editor.textFocusIn(PayDetailsEditor::PayRate);
        editor.textEdited(PayDetailsEditor::PayRate, round % 2 ? "30" : "31");
        editor.textFocusOut(PayDetailsEditor::PayRate);
        return editor.SaveWageTab();
    }
    std::unique_ptr<Database> db;
    PayDetailsEditor editor;
};

void BM_PaySave_Logic(benchmark::State &state, Backend backend, int which)
{
    Editor e(backend, employee(backend, which, state).addressId);
    int round = 0;
    for (auto _ : state)
        e.save(++round);
}

// ---- Eight clients saving at once ----------------------------------------------

// Eight threads, each an editor on its own connection, save for a fixed time, each
// its own employee (ordinary notes); with shared set the first four save the same
// one, so their row locks queue.
void BM_EightClients_Save(benchmark::State &state, Backend backend, bool shared)
{
    constexpr int Clients = 8;
    constexpr auto Duration = std::chrono::seconds(3);
    const std::vector<Employee> staff = employees(backend, Clients + 1);
    // A save that gave up is counted; its message would only flood the output.
    struct Silent : MessageService
    {
        qint16 show(const MessageRequest &) override { return ResultOk; }
    } silent;
    MessageService *const before = messageService();
    setMessageService(&silent);
    for (auto _ : state) {
        std::atomic<long> saves = 0, failures = 0;
        std::atomic<long long> slowestNs = 0;
        std::vector<std::unique_ptr<Editor>> editors;
        for (int c = 0; c < Clients; ++c)
            editors.push_back(std::make_unique<Editor>(
                backend, staff[std::size_t(shared && c < 4 ? 1 : c + 1)].addressId));
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::thread> threads;
        for (int c = 0; c < Clients; ++c)
            threads.emplace_back([&, c] {
                for (int round = 1; std::chrono::steady_clock::now() - start < Duration; ++round) {
                    const auto t0 = std::chrono::steady_clock::now();
                    const bool ok = editors[std::size_t(c)]->save(round);
                    const long long ns = (std::chrono::steady_clock::now() - t0).count();
                    (ok ? saves : failures)++;
                    long long seen = slowestNs;
                    while (ns > seen && !slowestNs.compare_exchange_weak(seen, ns)) {
                    }
                }
            });
        for (std::thread &t : threads)
            t.join();
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.counters["saves_per_s"] = double(saves) / seconds;
        state.counters["slowest_ms"] = double(slowestNs) / 1e6;
        state.counters["failed"] = double(failures);
    }
    setMessageService(before);
}

} // namespace

#define BOTH(bench)                                                                                \
    BENCHMARK_CAPTURE(bench, server, Backend::Server)->Unit(benchmark::kMillisecond);              \
    BENCHMARK_CAPTURE(bench, file, Backend::File)->Unit(benchmark::kMillisecond)

BENCHMARK_CAPTURE(BM_NameList_Raw, server_all, Backend::Server, "*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Logic, server_all, Backend::Server, "*")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Raw, server_letter, Backend::Server, "M*")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Logic, server_letter, Backend::Server, "M*")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Raw, file_all, Backend::File, "*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Logic, file_all, Backend::File, "*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Raw, file_letter, Backend::File, "M*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Logic, file_letter, Backend::File, "M*")
    ->Unit(benchmark::kMillisecond);
BOTH(BM_ShowEntry_Raw);
BOTH(BM_ShowEntry_Logic);
// The first employee (1 MB of notes), and the second (ordinary notes).
#define PAY(bench)                                                                                 \
    BENCHMARK_CAPTURE(bench, server_big_notes, Backend::Server, 0)->Unit(benchmark::kMillisecond); \
    BENCHMARK_CAPTURE(bench, server, Backend::Server, 1)->Unit(benchmark::kMillisecond);           \
    BENCHMARK_CAPTURE(bench, file_big_notes, Backend::File, 0)->Unit(benchmark::kMillisecond);     \
    BENCHMARK_CAPTURE(bench, file, Backend::File, 1)->Unit(benchmark::kMillisecond)

PAY(BM_PayLoad_Raw);
PAY(BM_PayLoad_Logic);
// Saves append to the notes: the same number of them on each side.
#define SAVES(bench)                                                                               \
    BENCHMARK_CAPTURE(bench, server_big_notes, Backend::Server, 0)                                 \
        ->Iterations(100)                                                                          \
        ->Unit(benchmark::kMillisecond);                                                           \
    BENCHMARK_CAPTURE(bench, server, Backend::Server, 1)                                           \
        ->Iterations(300)                                                                          \
        ->Unit(benchmark::kMillisecond);                                                           \
    BENCHMARK_CAPTURE(bench, file_big_notes, Backend::File, 0)                                     \
        ->Iterations(100)                                                                          \
        ->Unit(benchmark::kMillisecond);                                                           \
    BENCHMARK_CAPTURE(bench, file, Backend::File, 1)->Iterations(300)->Unit(benchmark::kMillisecond)
SAVES(BM_PaySave_Raw);
SAVES(BM_PaySave_Logic);
BENCHMARK_CAPTURE(BM_EightClients_Save, server_own, Backend::Server, false)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(BM_EightClients_Save, server_shared, Backend::Server, true)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(BM_EightClients_Save, file_own, Backend::File, false)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(BM_EightClients_Save, file_shared, Backend::File, true)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kSecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    Cluster server;
    cluster = &server;
    return runBenchmarks(argc, argv);
}
