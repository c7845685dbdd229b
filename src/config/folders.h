#pragma once

#include <QString>

// The suite's shared folders and files. Paths carry no trailing separator.

// Joins two path parts with the platform's separator, the one place that
// knows it.
QString joinPath(const QString &folder, const QString &name);

// The folder all suite programs share: $CORVANE_SHARED_DOCUMENTS when set,
// else the user's documents folder; empty when neither is known.
QString sharedDocumentsFolder();

// Shared documents folder + "Corvane/Common": the INI file and the error log.
QString commonFolder();

// The suite INI file when it exists in the common folder, else the bare name
// "Corvane.ini", which the profile functions look for in the system folder
// (systemIniFolder() here).
QString suiteIniFile();

// Where an INI file named without a folder lives, read and written alike: the
// per-user configuration folder ($XDG_CONFIG_HOME, else ~/.config) +
// "Corvane". It stands in for the Windows folder, where the suite's programs
// find such a file on their own platform. Empty when no home is known.
QString systemIniFolder();

// Common folder + "CvErrors.log".
QString errorLogFile();

// The folder that holds the running executable.
QString programFolder();

// The installation folder recorded at setup: $CORVANE_INSTALDIR stands in for
// the registry value. Unset means the key is missing, and the program's own
// folder is used.
QString installationFolder();
