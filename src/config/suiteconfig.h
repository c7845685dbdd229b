#pragma once

#include <QString>

// Values from the suite INI file, each read afresh. An empty value gives the
// default; a value that is there is used as it stands.

// ReadIni on the suite INI file.
QString readSuiteIni(const QString &section, const QString &key);

// [CORVANE] DataRoot, else the shared documents folder + "data".
QString dataFolder();

// [CORVANE] ProgramDirectory, else the program's own folder.
QString programDirectory();

// programDirectory() + "Help".
QString helpFolder();

// [Corvane] ModuleFileName, else [Corvane] ProgramDirectory (else the
// installation folder) + "Modules.mdb".
QString modulesDatabase();

// The international dialling code of the suite's country: [WINDOWS] Country
// when numeric; else the platform's iCountry when it is 64, 55, 61 or 598;
// else 64 (New Zealand).
qint32 countryCode();

// [TAX] WageAccount as a number, 401001 when it is not numeric.
qint32 iniWageAccount();

// [HELPCONTEXTIDS] windowName: the window's help topic, empty when none.
QString helpContextId(const QString &windowName);

// The name of the country's tax registration: [TAX] TaxNumberName, else
// [TAX] TaxName, else "GST".
QString taxNumberName();

// The caption of the tax number field, "GST Number" by default.
QString taxNumberCaption();

// Who is at the keyboard, for the pay change log: [CORVANE] UserName (for an office
// computer that several clerks share under one login), else the operating system's login
// name; empty when neither is known.
QString suiteUserName();

// Stores the current-employees switch: "Y" lists all employees. Returns false
// when the INI file could not be written.
bool writeAllEmployees(const QString &value);
