// Opening the address book window on large books: load and first show of the
// real window (offscreen), beside the raw SQLite time of the statements the
// opening runs (the name list and the shown entry).
#include "addressbook/addressbooklogic.h"
#include "addressbook/ui/addressbookwindow.h"
#include "addressbook/ui/frmaddresses.h"
#include "benchbook.h"
#include "launch/addressglobals.h"
#include "messages/messageservice.h"
#include "suitefiles.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <memory>
#include <QApplication>
#include <QTemporaryDir>
#include <sqlite3.h>

namespace {

void BM_OpenWindow_Raw(benchmark::State &state)
{
    const QByteArray path = SuiteFiles::farmPath(bookFor(int(state.range(0)))).toUtf8();
    for (auto _ : state) {
        sqlite3 *db = nullptr;
        sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT AddressID, BusName FROM Addresses WHERE BusName LIKE '%' "
                           "ORDER BY BusName",
                           -1, &stmt, nullptr);
        int first = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            if (!first)
                first = sqlite3_column_int(stmt, 0);
            benchmark::DoNotOptimize(sqlite3_column_text(stmt, 1));
        }
        sqlite3_finalize(stmt);
        sqlite3_prepare_v2(db, "SELECT * FROM Addresses WHERE AddressID = ?", -1, &stmt, nullptr);
        sqlite3_bind_int(stmt, 1, first);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
        }
        sqlite3_finalize(stmt);
        sqlite3_close(db);
    }
}

// From nothing to the window on screen with the list filled and the first
// entry shown, as the suite's launch does it.
void BM_OpenWindow_Widgets(benchmark::State &state, qint16 mode)
{
    qputenv("CORVANE_SHARED_DOCUMENTS", bookFor(int(state.range(0))).toUtf8());
    for (auto _ : state) {
        AddressGlobals::LaunchMode = mode;
        AddressGlobals::CurrentAddressID = 0;
        AddressBookWindow window;
        window.showModeless();
        QApplication::processEvents();
        state.PauseTiming();
        if (QWidget *top = QApplication::activeWindow())
            top->close();
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}

// The letter strip on the open window: "M", then back to every name, list and
// screen both redone each time.
void BM_LetterFilter_Widgets(benchmark::State &state)
{
    qputenv("CORVANE_SHARED_DOCUMENTS", bookFor(int(state.range(0))).toUtf8());
    AddressGlobals::LaunchMode = 0;
    AddressGlobals::CurrentAddressID = 0;
    AddressBookWindow window;
    window.showModeless();
    QApplication::processEvents();
    AddressBookLogic &logic = window.form()->logic();
    for (auto _ : state) {
        logic.changeLetterFilter(QStringLiteral("M"));
        QApplication::processEvents();
        logic.changeLetterFilter(QStringLiteral("*"));
        QApplication::processEvents();
    }
    window.form()->close();
    QApplication::processEvents();
}

} // namespace

BENCHMARK(BM_LetterFilter_Widgets)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenWindow_Raw)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenWindow_Widgets, addressbook, 0)
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenWindow_Widgets, employees, 1)
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runBenchmarks(argc, argv);
}
