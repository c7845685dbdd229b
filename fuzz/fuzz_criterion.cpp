// Recordset::findFirst's criterion on any text, against a small real table with
// a column of each type. Properties: nothing but CvError is raised; a find ends
// (scripts/fuzz runs with a timeout); found and noMatch agree, and findNext
// never goes back.
#include "core/cverror.h"
#include "data/database.h"
#include "data/recordset.h"
#include "fuzzcheck.h"

#include <memory>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <sqlite3.h>

namespace {

const char *const Schema = R"(
CREATE TABLE T (
    ID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT(50) COLLATE NOCASE, Amount CURRENCY,
    "Date" DATETIME, Flag YESNO NOT NULL DEFAULT 0, N LONG, S SHORT, R DOUBLE,
    Notes MEMO TEXT);
INSERT INTO T VALUES (1, 'Smith', 251000, 40269.5, -1, 37, 5, 2.5, 'x');
INSERT INTO T VALUES (2, NULL, NULL, NULL, 0, NULL, NULL, NULL, NULL);
INSERT INTO T VALUES (3, 'O''Brien [*]?#', -10000, -1.25, 0, -5, 0, 1e300, '');
INSERT INTO T VALUES (4, 'smith', 0, 0, -1, 37, -1, -0.5, 'Smith & Co');
)";

struct Table
{
    QTemporaryDir dir;
    std::unique_ptr<Database> db;
    std::unique_ptr<Recordset> rs;
};

Table *table = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv); // the SQL driver is a plugin
    table = new Table;
    const QString path = table->dir.filePath("criterion.db");
    sqlite3 *handle = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &handle) != SQLITE_OK ||
        sqlite3_exec(handle, Schema, nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "cannot make %s\n", qPrintable(path));
        std::abort();
    }
    sqlite3_close(handle);
    table->db = std::make_unique<Database>(path);
    table->rs = std::make_unique<Recordset>(*table->db, QStringLiteral("SELECT * FROM T"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Recordset &rs = *table->rs;
    const QString criterion = fuzzText(data, size);
    try {
        const bool found = rs.findFirst(criterion);
        fuzzCheck(found != rs.noMatch(), "found and noMatch agree", criterion);
        if (!found)
            return 0;
        const int first = rs.bookmark();
        if (rs.findNext(criterion))
            fuzzCheck(rs.bookmark() > first, "findNext moves on", criterion);
    } catch (const CvError &) {
    }
    return 0;
}
