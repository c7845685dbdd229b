#pragma once

#include <QString>

// The suite's configuration object. It keeps no state: each member reads the
// INI file afresh, so a change by another suite program is seen at once.
class Settings
{
public:
    QString DatabaseName() const;
    QString WageDataBase() const;
    bool EmployeeOnly() const;
};

// The suite's product name, the caption of every message: INI section "START",
// key "Firm", "Corvane" when empty.
QString FirmName();
