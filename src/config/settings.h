#pragma once

#include <QString>

// The suite's configuration object. It keeps no state: each member reads the
// INI file afresh, so a change by another suite program is seen at once.
class Settings
{
public:
    // The main data file: [CORVANE] DataFileName, else the data folder +
    // "Farm32.mdb".
    QString DatabaseName() const;
    // The wage file: [CORVANE] WageFileName, else the data folder + "Wage32.mdb".
    QString WageDataBase() const;
    // The PostgreSQL server holding both data sets instead of the files, as libpq's
    // URI or key=value text: [CORVANE] DatabaseServer; empty for the files.
    QString DatabaseServer() const;
    // True unless [Wage] AllEmployees is "Y" in any case.
    bool EmployeeOnly() const;
};

// The suite's product name, the caption of every message: INI section "START",
// key "Firm", "Corvane" when empty.
QString FirmName();
