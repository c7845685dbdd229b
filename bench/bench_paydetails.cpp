// The pay details editor on large books: loading one employee and saving it
// (the row, the KiwiSaver rows, ten deductions and one change-log line in
// notes that have grown to 1 MB), beside the raw SQLite time of the same
// statements in the same run.
#include "benchbook.h"
#include "data/database.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"
#include "launch/addressglobals.h"
#include "suitefiles.h"

#include <benchmark/benchmark.h>
#include <QCoreApplication>
#include <sqlite3.h>

namespace {

// A bulk book whose first employee carries notes of the given size (1 MB unless said).
QString payBookFor(int addresses, int notesBytes)
{
    static std::map<std::pair<int, int>, std::unique_ptr<QTemporaryDir>> books;
    auto &dir = books[{addresses, notesBytes}];
    if (!dir) {
        dir = std::make_unique<QTemporaryDir>();
        SuiteFiles::BulkOptions options;
        options.addresses = addresses;
        options.employees = addresses / 5;
        options.notesBytes = notesBytes;
        SuiteFiles::bulkSuite(dir->path(), options);
    }
    qputenv("CORVANE_SHARED_DOCUMENTS", dir->path().toUtf8());
    return dir->path();
}

sqlite3 *openRaw(const QString &path)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    return db;
}

void stepAll(sqlite3 *db, const char *sql)
{
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < sqlite3_column_count(stmt); ++c)
            benchmark::DoNotOptimize(sqlite3_column_text(stmt, c));
    }
    sqlite3_finalize(stmt);
}

int intOf(sqlite3 *db, const QByteArray &sql)
{
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
    const int value = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int(stmt, 0) : 0;
    sqlite3_finalize(stmt);
    return value;
}

struct Employee
{
    int addressId;
    int employeeId;
};

// The first employee: the one with the 1 MB notes.
Employee firstEmployee(const QString &dir)
{
    sqlite3 *wage = openRaw(SuiteFiles::wagePath(dir));
    Employee e{intOf(wage, "SELECT AddressID FROM Employees ORDER BY EmployeeID LIMIT 1"),
               intOf(wage, "SELECT EmployeeID FROM Employees ORDER BY EmployeeID LIMIT 1")};
    sqlite3_close(wage);
    return e;
}

void BM_EditorLoad_Raw(benchmark::State &state)
{
    const QString dir = payBookFor(int(state.range(0)), int(state.range(1)));
    const Employee e = firstEmployee(dir);
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(dir));
    sqlite3 *wage = openRaw(SuiteFiles::wagePath(dir));
    const QByteArray row =
        "SELECT * FROM Employees WHERE AddressID = " + QByteArray::number(e.addressId);
    const QByteArray deductions =
        "SELECT d.EmployeeID, d.DeductID, d.FixedAmount, d.SpecialRate, n.TaxName FROM "
        "EmployeeDeductions d JOIN DeductNames n ON d.DeductID = n.DeductNameID WHERE "
        "d.EmployeeID = " +
        QByteArray::number(e.employeeId);
    for (auto _ : state) {
        stepAll(wage, row.constData());
        stepAll(wage,
                "SELECT EmployeeTypeID, EmployeeType FROM EmployeeAwardType ORDER BY EmployeeType");
        stepAll(wage, "SELECT TaxTypeID, TaxName FROM TaxTypes WHERE CountryPhone = 64 OR "
                      "CountryPhone = 0 ORDER BY \"Order\"");
        stepAll(wage, "SELECT PayIntervalID, IntervalName FROM PayInterval ORDER BY \"Order\"");
        stepAll(wage,
                "SELECT * FROM DeductNames WHERE TaxName = 'kiwisaver' ORDER BY DeductionName");
        stepAll(wage, "SELECT ContributionNameID, ContributionName, TaxName FROM ContributionNames "
                      "WHERE TaxName = 'kiwisaver' ORDER BY ContributionName");
        stepAll(wage, "SELECT * FROM KiwiSaverEnrollType");
        stepAll(farm, "SELECT s.\"Secondary Codes ID\", s.\"Cached Name\" FROM \"Account Codes\" a "
                      "JOIN \"Secondary Codes\" s ON a.\"Account Code\" = s.\"Main Code ID\" WHERE "
                      "a.\"Show In CashBk\" = -1 ORDER BY s.\"Cached Name\"");
        stepAll(farm, "SELECT Code, Name FROM \"tbl No Enterprises\" ORDER BY Name");
        stepAll(farm, "SELECT BanksID, Name FROM Banks WHERE BanksID < 995");
        stepAll(farm, "SELECT Code, Name FROM \"tbl No Enterprises\" ORDER BY Name");
        stepAll(wage, deductions.constData());
        stepAll(wage, "SELECT DeductNameID, DeductionName FROM DeductNames ORDER BY DeductionName");
        stepAll(wage, "SELECT DeductNameID, Percentage FROM DeductNames");
    }
    sqlite3_close(farm);
    sqlite3_close(wage);
}

void BM_EditorLoad_Logic(benchmark::State &state)
{
    const QString dir = payBookFor(int(state.range(0)), int(state.range(1)));
    const Employee e = firstEmployee(dir);
    Database farm(SuiteFiles::farmPath(dir));
    farm.attach(SuiteFiles::wagePath(dir), "wage");
    PayDetailsEditor editor(PayDetailsEditor::Host::WagesTab);
    for (auto _ : state)
        editor.load(farm, e.addressId);
}

void BM_EditorSave_Raw(benchmark::State &state)
{
    const QString dir = payBookFor(int(state.range(0)), int(state.range(1)));
    const Employee e = firstEmployee(dir);
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(dir));
    // The same one transaction over both files that the module commits.
    stepAll(farm, "ATTACH DATABASE '" + SuiteFiles::wagePath(dir).toUtf8() + "' AS wage");
    const QByteArray id = QByteArray::number(e.employeeId);
    const QByteArray address = QByteArray::number(e.addressId);
    int round = 0;
    for (auto _ : state) {
        ++round;
        stepAll(farm, "BEGIN IMMEDIATE");
        stepAll(farm, "UPDATE Addresses SET notes = CASE WHEN notes IS NULL OR notes = '' THEN "
                      "'[22/11/2026] Pay rate amended to $30.00 Hour' ELSE notes || char(13, 10) "
                      "|| '[22/11/2026] Pay rate amended to $30.00 Hour' END WHERE AddressID = " +
                          address);
        stepAll(farm, "SELECT * FROM Employees WHERE AddressID = " + address);
        stepAll(farm,
                "UPDATE Employees SET PayRate = " + QByteArray::number(300000 + round % 2) +
                    ", KiwiSaverEnrolled = -1, KiwiSaverEnrolID = 1 WHERE EmployeeID = " + id);
        stepAll(farm, "DELETE FROM EmployeeDeductions WHERE EmployeeID = " + id +
                          " AND TaxName = 'kiwisaver'");
        stepAll(farm, "INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                      "SpecialRate, TaxName) VALUES (" +
                          id + ", 1, 0, 3, 'KiwiSaver')");
        stepAll(farm, "DELETE FROM EmployerContributions WHERE EmployeeID = " + id +
                          " AND TaxName = 'kiwisaver'");
        stepAll(farm, "INSERT INTO EmployerContributions (EmployeeID, ContributionID, "
                      "FixedAmount, SpecialRate, TaxName) VALUES (" +
                          id + ", 2, 0, 3, 'KiwiSaver')");
        stepAll(farm,
                "DELETE FROM EmployeeDeductions WHERE EmployeeID = " + id + " AND TaxName IS NULL");
        for (int i = 0; i < 10; ++i)
            stepAll(farm, "INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, "
                          "SpecialRate) VALUES (" +
                              id + ", " + QByteArray::number(6 + i % 8) + ", 100000, 0)");
        stepAll(farm, "COMMIT");
    }
    sqlite3_close(farm);
}

void BM_EditorSave_Logic(benchmark::State &state)
{
    const QString dir = payBookFor(int(state.range(0)), int(state.range(1)));
    const Employee e = firstEmployee(dir);
    Database farm(SuiteFiles::farmPath(dir));
    farm.attach(SuiteFiles::wagePath(dir), "wage");
    PayDetailsEditor editor(PayDetailsEditor::Host::WagesTab);
    editor.load(farm, e.addressId);
    DeductionGrid &grid = editor.deductionGrid();
    while (grid.rowCount() < 10) {
        const int row = grid.addRow();
        editor.gridCellEdited(row, 1, 6 + row % 8);
        editor.gridCellEdited(row, 2, QStringLiteral("10.00"));
    }
    int round = 0;
    for (auto _ : state) {
        ++round;
        // One change of pay rate: reformatted and logged to the notes.
        editor.textFocusIn(PayDetailsEditor::PayRate);
        editor.textEdited(PayDetailsEditor::PayRate, round % 2 ? "30" : "31");
        editor.textFocusOut(PayDetailsEditor::PayRate);
        editor.SaveWageTab();
    }
    state.counters["deductions"] = grid.rowCount();
}

} // namespace

// Addresses in the book, and the size of the employee's notes: 1 MB, or a few lines.
void books(benchmark::internal::Benchmark *b)
{
    b->ArgNames({"addresses", "notes"});
    b->Args({1000, 1 << 20})->Args({100000, 1 << 20})->Args({100000, 200});
    b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_EditorLoad_Raw)->Apply(books);
BENCHMARK(BM_EditorLoad_Logic)->Apply(books);
BENCHMARK(BM_EditorSave_Raw)->Apply(books);
BENCHMARK(BM_EditorSave_Logic)->Apply(books);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return runBenchmarks(argc, argv);
}
