#pragma once

#include "suitefiles.h"

#include <functional>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

// The suite's books on a PostgreSQL server: one database, the main data set in the
// schema farm and the wage data set in the schema wage, made from the same schema
// files as the SQLite data files. Used by cvsuite and the tests; the module itself
// never creates anything on a server.
namespace ServerBooks {

// The PostgreSQL statements that make one data set's schema and tables from
// schema/farm.sql or schema/wage.sql. Each column keeps its declared type in its
// comment, which is how the data layer knows a Currency from a Long there; text is
// citext in the "C" collation, which compares as SQLite's NOCASE does.
QStringList schemaStatements(SuiteFiles::DataFile which);

// Makes empty books in the database the connection names. Throws CvError, changing
// nothing, when the schemas exist and force is not set; with force they are
// replaced.
void createBooks(const QString &connection, bool force = false);

// Called as rows are copied: the table, rows done in it, rows it has.
using Progress = std::function<void(const QString &table, qint64 done, qint64 total)>;

// Rows per table, both data sets, in schema order.
using Counts = QList<QPair<QString, qint64>>;

// Copies the SQLite suite in dir onto the server (whose books must not exist unless
// force), and the server's books into SQLite files in dir (the same rule for existing
// files). Each copy is one transaction, and ends by counting the rows on both sides:
// a difference throws CvError. Returns the counts.
Counts copyToServer(const QString &dir, const QString &connection, bool force,
                    const Progress &progress = {});
Counts copyFromServer(const QString &connection, const QString &dir, bool force,
                      const Progress &progress = {});

// Demo and bulk books on a server: made as files in a temporary folder, then copied.
void demoBooks(const QString &connection, bool force);
void bulkBooks(const QString &connection, const SuiteFiles::BulkOptions &options,
               const Progress &progress = {});

// Sets each AutoNumber's sequence past the highest key in its table, after rows were
// written with their keys (a copy, a test's fixture).
void resetSequences(const QString &connection);

} // namespace ServerBooks
