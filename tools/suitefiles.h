#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

// Builds the suite's data files the way the suite lays them out. Used by the
// cvsuite tool, the tests and the benchmarks; the module itself never creates
// data files.
namespace SuiteFiles {

enum class DataFile { Farm, Wage };

// The CREATE statements of schema/farm.sql or schema/wage.sql.
QString schemaText(DataFile which);

// Creates an SQLite file holding the empty tables. Throws CvError when the
// file exists and overwrite is false, or when it cannot be written.
void createDataFile(const QString &path, DataFile which, bool overwrite = false);

// DIR/Corvane/Common/Corvane.ini, DIR/data/Farm32.mdb and DIR/data/Wage32.mdb,
// so that with CORVANE_SHARED_DOCUMENTS=DIR every default path finds them.
// Existing files are kept unless force is set (then they are replaced). The
// files in place are links into a generation folder, DIR/.cvsuite, so that a
// replacement is all or nothing (suiteswitch.h).
void initSuite(const QString &dir, bool force = false);

// The INI file, and data files holding a New Zealand farm's books: about forty
// entries, eight of them employees, the payroll reference tables, wages and
// cashbook transactions. Throws CvError, changing nothing, when a data file
// exists and force is not set.
void demoSuite(const QString &dir, bool force = false);

struct BulkOptions
{
    int addresses = 0;
    int employees = 0; // at most addresses
    // One employee in a thousand, the first among them, gets notes of exactly
    // this many bytes, as if years of change-log lines had piled up.
    int notesBytes = 0;
    quint64 seed = 1899;
    bool force = false;
};

// Large books for benchmarks: the demo's reference tables, then generated
// entries of which options.employees are employees (a fifth of them
// finished), with deductions, wages, cashbook transactions and notes of mixed
// size. The same options always give the same rows.
void bulkSuite(const QString &dir, const BulkOptions &options);
void bulkSuite(const QString &dir, int addresses, int employees, bool force = false);

// The data files under dir that exist already; demoSuite and bulkSuite
// refuse to run over them without force.
QStringList existingDataFiles(const QString &dir);
// Throws CvError naming them, if there are any.
void refuseExistingDataFiles(const QString &dir);

// The suite's INI file with every key the module reads, the defaults kept (empty).
void writeIni(const QString &ini);

// Rows in each table of a data file, in the order the tables were created.
QList<QPair<QString, qint64>> rowCounts(const QString &path);

QString farmPath(const QString &dir);
QString wagePath(const QString &dir);
QString iniPath(const QString &dir);

} // namespace SuiteFiles
