#pragma once

#include <QString>

// Reads key from section of an INI file; an empty string when it is not
// there. A missing section or key is written to the error log, except a
// missing section of "WIN.INI" and a key named "Invalid Index". The section
// test looks for the upper-cased header as written, so a value in a section
// whose header is in lower case is still returned, with a log line.
QString ReadIni(const QString &section, const QString &key, const QString &file);
