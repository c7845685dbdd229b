#pragma once

#include <memory>

class Database;

// The suite's two data sets on one connection, so that one transaction commits what a
// save changes in both: the main file with the wage file attached as "wage" (paths
// from Settings), or, when the INI file names a database server, both schemas of that
// server's database. Throws CvError naming the file, or the server and the INI setting,
// that could not be opened.
std::unique_ptr<Database> openSuiteDatabase();
