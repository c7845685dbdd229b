// The data layer against raw SQLite on the same work: opening a data file and
// reading the address book's name list through the Jet translator and a
// Recordset, beside the same query through the SQLite C API.
#include "benchbook.h"
#include "data/database.h"
#include "data/recordset.h"
#include "suitefiles.h"

#include <benchmark/benchmark.h>
#include <map>
#include <memory>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <vector>

namespace {

const char *kJetNameList = "SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName "
                           "FROM Addresses WHERE Addresses.busname LIKE \"*\" "
                           "ORDER BY Addresses.busname;";
const char *kRawNameList = "SELECT Addresses.AddressID, Addresses.BusName FROM Addresses "
                           "WHERE Addresses.busname LIKE '%' ORDER BY Addresses.busname";

struct Item
{
    int id;
    QString name;
};

void BM_NameList_RawSqlite(benchmark::State &state)
{
    const QByteArray path = SuiteFiles::farmPath(bookFor(int(state.range(0)))).toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    for (auto _ : state) {
        std::vector<Item> items;
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, kRawNameList, -1, &stmt, nullptr);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(stmt, 1));
            if (text)
                items.push_back({sqlite3_column_int(stmt, 0), QString::fromUtf8(text)});
        }
        sqlite3_finalize(stmt);
        benchmark::DoNotOptimize(items.data());
        state.counters["rows"] = double(items.size());
    }
    sqlite3_close(db);
}

void BM_NameList_Recordset(benchmark::State &state)
{
    Database db(SuiteFiles::farmPath(bookFor(int(state.range(0)))));
    for (auto _ : state) {
        std::vector<Item> items;
        Recordset rs(db, kJetNameList, Recordset::Snapshot);
        while (!rs.eof()) {
            const QVariant name = rs.value(1);
            if (name.isValid())
                items.push_back({rs.value(0).toInt(), name.toString()});
            rs.moveNext();
        }
        benchmark::DoNotOptimize(items.data());
        state.counters["rows"] = double(items.size());
    }
}

void BM_Open_RawSqlite(benchmark::State &state)
{
    const QByteArray path = SuiteFiles::farmPath(bookFor(int(state.range(0)))).toUtf8();
    for (auto _ : state) {
        sqlite3 *db = nullptr;
        sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
        sqlite3_close(db);
    }
}

void BM_Open_Database(benchmark::State &state)
{
    const QString path = SuiteFiles::farmPath(bookFor(int(state.range(0))));
    for (auto _ : state) {
        Database db(path);
        benchmark::DoNotOptimize(db.isOpen());
    }
}

} // namespace

BENCHMARK(BM_Open_RawSqlite)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Open_Database)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NameList_RawSqlite)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NameList_Recordset)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return runBenchmarks(argc, argv);
}
