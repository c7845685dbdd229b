#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Puts a new set of suite files in place as one step, so that a crash at any
// moment leaves the complete old suite or the complete new one.
namespace SuiteFiles {

// The names of the suite's files in a generation folder: the main data file,
// the wage file and the INI file.
extern const QStringList kSuiteFileNames;

// Replaces the suite under dir. fill(folder) writes the new files, by the
// names of kSuiteFileNames, into an empty folder; the names listed in keep are
// carried over from the suite in place instead (those that exist). Throws
// CvError, leaving the suite in place as it was, when fill or the switch
// fails.
void switchSuite(const QString &dir, const QStringList &keep,
                 const std::function<void(const QString &folder)> &fill);

// The folder under dir that holds the generations of the suite's files.
QString generationsFolder(const QString &dir);

} // namespace SuiteFiles
