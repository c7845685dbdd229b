// The address book window's logic on large books, each figure beside the raw
// SQLite time of the same statements in the same run: building the name list
// in both modes (names folded for accents), searching as the user types, showing
// another entry, and opening the window.
#include "addressbook/addressbooklogic.h"
#include "benchbook.h"
#include "launch/addressglobals.h"
#include "messages/messageservice.h"
#include "suitefiles.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <QCoreApplication>
#include <QHash>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <vector>

namespace {

void useBook(int addresses, qint16 mode)
{
    qputenv("CORVANE_SHARED_DOCUMENTS", bookFor(addresses).toUtf8());
    AddressGlobals::LaunchMode = mode;
    AddressGlobals::CurrentAddressID = 0;
}

// Steps every row of a statement, keeping the id and text as the list does.
int rawList(sqlite3 *db, const char *sql, int idColumn = 0, int nameColumn = 1)
{
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
    std::vector<std::pair<int, QString>> items;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        const auto *text =
            nameColumn >= 0 ? reinterpret_cast<const char *>(sqlite3_column_text(stmt, nameColumn))
                            : "";
        if (text)
            items.emplace_back(sqlite3_column_int(stmt, idColumn), QString::fromUtf8(text));
    }
    sqlite3_finalize(stmt);
    return int(items.size());
}

sqlite3 *openRaw(const QString &path)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    return db;
}

// ---- Name list, address-book mode -----------------------------------------

void BM_NameList_Book_Raw(benchmark::State &state, const char *like)
{
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(bookFor(int(state.range(0)))));
    const QByteArray sql =
        QByteArray("SELECT AddressID, BusName FROM Addresses WHERE BusName LIKE '") + like +
        "' ORDER BY BusName";
    for (auto _ : state)
        state.counters["items"] = rawList(farm, sql.constData());
    sqlite3_close(farm);
}

void BM_NameList_Book_Logic(benchmark::State &state, const char *filter)
{
    useBook(int(state.range(0)), 0);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    for (auto _ : state) {
        qint32 none = 0;
        logic.FillNameList(false, none, filter);
        state.counters["items"] = logic.nameList().count();
    }
    logic.unload();
}

// ---- Name list, employee mode ---------------------------------------------

void BM_NameList_Employees_Raw(benchmark::State &state, bool currentOnly)
{
    const QString dir = bookFor(int(state.range(0)));
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(dir));
    sqlite3 *wage = openRaw(SuiteFiles::wagePath(dir));
    for (auto _ : state) {
        const char *addresses =
            "SELECT AddressID, BusName FROM Addresses WHERE WageFlag = -1 ORDER BY BusName";
        if (!currentOnly) {
            state.counters["items"] = rawList(farm, addresses);
            continue;
        }
        // The same work as the module's: each current employee's name found by key.
        QHash<int, QString> names;
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(farm, addresses, -1, &stmt, nullptr);
        while (sqlite3_step(stmt) == SQLITE_ROW)
            if (const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(stmt, 1)))
                names.insert(sqlite3_column_int(stmt, 0), QString::fromUtf8(text));
        sqlite3_finalize(stmt);
        std::vector<std::pair<int, QString>> items;
        sqlite3_prepare_v2(wage,
                           "SELECT AddressID FROM Employees WHERE Datefinished IS NULL OR "
                           "Datefinished = 0 ORDER BY AddressID",
                           -1, &stmt, nullptr);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            const auto match = names.constFind(sqlite3_column_int(stmt, 0));
            if (match != names.constEnd())
                items.emplace_back(match.key(), match.value());
        }
        sqlite3_finalize(stmt);
        state.counters["items"] = double(items.size());
    }
    sqlite3_close(farm);
    sqlite3_close(wage);
}

void BM_NameList_Employees_Logic(benchmark::State &state, bool currentOnly)
{
    useBook(int(state.range(0)), 1);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    for (auto _ : state) {
        qint32 none = 0;
        logic.FillNameList(currentOnly, none, "*");
        state.counters["items"] = logic.nameList().count();
    }
    logic.unload();
}

// ---- Showing another entry --------------------------------------------------

void BM_ShowEntry_Raw(benchmark::State &state)
{
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(bookFor(int(state.range(0)))));
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(farm, "SELECT * FROM Addresses WHERE AddressID = ?", -1, &stmt, nullptr);
    const int entries = int(state.range(0));
    int id = 0;
    for (auto _ : state) {
        id = id % entries + 1;
        sqlite3_bind_int(stmt, 1, id);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            for (int c = 0; c < sqlite3_column_count(stmt); ++c)
                benchmark::DoNotOptimize(sqlite3_column_text(stmt, c));
        }
        sqlite3_reset(stmt);
    }
    sqlite3_finalize(stmt);
    sqlite3_close(farm);
}

// A click in the name list: the tab is saved, then the entry shown.
void BM_ShowEntry_Logic(benchmark::State &state)
{
    useBook(int(state.range(0)), 0);
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

// ---- Search as you type -----------------------------------------------------

// The keys of a search for a city, then a contact's first name: each keystroke narrows
// the list (and shows the first found when the entry shown drops out).
const char *const kTyped[] = {
    "o",          "ot",           "oto",           "otor",           "otoro",
    "otorohanga", "otorohanga h", "otorohanga he", "otorohanga hem", "otorohanga hemi"};

// Comparable raw work per keystroke: SQLite's own case-blind LIKE over the same four text
// columns (no accent folding, words only from their start), every row read; no order.
void BM_Search_Raw(benchmark::State &state)
{
    sqlite3 *farm = openRaw(SuiteFiles::farmPath(bookFor(int(state.range(0)))));
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(farm,
                       "SELECT AddressID, BusName FROM Addresses WHERE BusName LIKE ?1 OR "
                       "contactFirstName LIKE ?1 OR ContactLastName LIKE ?1 OR BusCity LIKE ?1 "
                       "OR BusPhone LIKE ?1",
                       -1, &stmt, nullptr);
    std::size_t key = 0;
    for (auto _ : state) {
        const QByteArray pattern =
            QByteArray(kTyped[key++ % std::size(kTyped)]).split(' ')[0] + '%';
        sqlite3_bind_text(stmt, 1, pattern.constData(), -1, SQLITE_TRANSIENT);
        int items = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            benchmark::DoNotOptimize(sqlite3_column_text(stmt, 1));
            ++items;
        }
        sqlite3_reset(stmt);
        state.counters["items"] = items;
    }
    sqlite3_finalize(stmt);
    sqlite3_close(farm);
}

// One keystroke in the search box, the index read already (when the box got the focus).
void BM_Search_Logic(benchmark::State &state)
{
    useBook(int(state.range(0)), 0);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    logic.activate();
    logic.prepareSearch();
    std::size_t key = 0;
    for (auto _ : state) {
        logic.search(kTyped[key++ % std::size(kTyped)]);
        state.counters["items"] = logic.nameList().count();
    }
    logic.unload();
}

// Reading the index: the first key of a search, or the box getting the focus.
void BM_SearchIndex_Logic(benchmark::State &state)
{
    useBook(int(state.range(0)), 0);
    AddressBookLogic logic{AddressGlobals::context()};
    logic.load();
    logic.activate();
    for (auto _ : state) {
        logic.prepareSearch();
        state.PauseTiming();
        logic.clearSearch();
        qint32 none = 0;
        logic.FillNameList(false, none, "*"); // drops the index
        state.ResumeTiming();
    }
    logic.unload();
}

// ---- Opening the window (load and first show) -------------------------------

void BM_OpenWindow_Logic(benchmark::State &state)
{
    useBook(int(state.range(0)), 0);
    for (auto _ : state) {
        AddressBookLogic logic{AddressGlobals::context()};
        logic.load();
        logic.activate();
        benchmark::DoNotOptimize(logic.shownAddressId());
        state.PauseTiming();
        logic.unload();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK_CAPTURE(BM_NameList_Book_Raw, all, "%")->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Book_Logic, all, "*")->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Book_Raw, letter, "M%")
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Book_Logic, letter, "M*")
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Employees_Raw, all, false)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Employees_Logic, all, false)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Employees_Raw, current, true)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NameList_Employees_Logic, current, true)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShowEntry_Raw)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ShowEntry_Logic)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Search_Raw)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Search_Logic)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchIndex_Logic)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenWindow_Logic)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return runBenchmarks(argc, argv);
}
