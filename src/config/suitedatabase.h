#pragma once

#include <memory>

class Database;

// The suite's two data files on one connection: the main file, with the wage file
// attached as "wage". Statements reach both files' tables by their own names, and one
// transaction commits what a save changes in both files together. Paths from
// Settings; throws CvError naming the file that could not be opened.
std::unique_ptr<Database> openSuiteDatabase();
