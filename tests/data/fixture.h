#pragma once

#include "support/tempsuite.h"

#include <QString>

// A small, known set of rows in both data files of a TempSuite, shared by the
// data layer's tests: addresses 37 to 43, employees 5 to 7 and the payroll
// tables around them.
namespace Fixture {

void fill(const TempSuite &suite);

// Runs several statements, separated by semicolons, on one data file.
void execFarm(const TempSuite &suite, const QString &script);
void execWage(const TempSuite &suite, const QString &script);

} // namespace Fixture
