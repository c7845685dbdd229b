#pragma once

#include "checks/identifiers.h"

#include <QString>

// Tells the user what is wrong with an identifier just typed (what: "IRD number",
// "bank account") and asks whether to keep it. True keeps it as typed; false goes back
// to the box to correct it. Asked through SuiteMessageBox, so tests can answer.
bool askKeepIdentifier(const QString &what, const Identifiers::Verdict &verdict);
