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
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
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

// The address book window, modeless, on a bulk book of this many entries.
void openAddressBook(AddressBookWindow &window, int addresses)
{
    qputenv("CORVANE_SHARED_DOCUMENTS", bookFor(addresses).toUtf8());
    AddressGlobals::LaunchMode = 0;
    AddressGlobals::CurrentAddressID = 0;
    window.showModeless();
    QApplication::processEvents();
}

// The letter strip on the open window: "M", then back to every name, list and
// screen both redone each time.
void BM_LetterFilter_Widgets(benchmark::State &state)
{
    AddressBookWindow window;
    openAddressBook(window, int(state.range(0)));
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

// The process's resident memory in MB, from /proc.
double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// A key typed in an address box of the open window, then taken back: the box's own
// work and nothing more, whatever the size of the book or the form. "syncs" counts the
// times the logic asked the view to bring its widgets in line (none).
void BM_Keystroke_Widgets(benchmark::State &state)
{
    AddressBookWindow window;
    openAddressBook(window, int(state.range(0)));
    frmAddresses *form = window.form();
    auto *box = form->findChild<QLineEdit *>(
        QStringLiteral("txtFields_%1").arg(AddressFields::BusAddress1));
    box->setFocus();
    QApplication::processEvents();
    int syncs = 0;
    QObject::connect(&form->logic(), &AddressBookLogic::changed, [&syncs] { ++syncs; });
    for (auto _ : state) {
        QTest::keyClick(box, Qt::Key_A);
        QTest::keyClick(box, Qt::Key_Backspace);
    }
    state.counters["syncs"] = benchmark::Counter(syncs, benchmark::Counter::kAvgIterations);
    state.counters["resident_MB"] = residentMegabytes();
    form->close();
    QApplication::processEvents();
}

} // namespace

BENCHMARK(BM_Keystroke_Widgets)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
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
