#pragma once

#include "support/tempsuite.h"

// A small, known set of rows in both data files of a TempSuite, shared by the
// data layer's tests: addresses 37 to 43, employees 5 to 7 and the payroll
// tables around them.
namespace Fixture {

void fill(const TempSuite &suite);

} // namespace Fixture
