#pragma once

#include <QString>

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
// Existing files are kept unless force is set (then they are replaced).
void initSuite(const QString &dir, bool force = false);

// initSuite, then realistic New Zealand demo data.
void demoSuite(const QString &dir, bool force = false);

// initSuite, then addresses entries of which employees are employees, for
// benchmarks.
void bulkSuite(const QString &dir, int addresses, int employees, bool force = false);

QString farmPath(const QString &dir);
QString wagePath(const QString &dir);
QString iniPath(const QString &dir);

} // namespace SuiteFiles
