#pragma once

#include <optional>
#include <QString>
#include <QStringList>

// Our INI file reader and writer, with the rules of the profile functions the
// suite's other programs use on the same files: section and key names match
// without regard to case, the first matching section and key win, blanks
// around a value and one pair of enclosing quotes are removed. Lines may end
// in CR LF, LF or CR; a UTF-8 byte order mark is skipped; text that is not
// UTF-8 is read as Latin-1.
//
// A file name without a folder is a file in the system folder, which here is
// systemIniFolder() (folders.h), read and written by the same rules; the
// folder is made on the first write. "WIN.INI" (any case) is the exception:
// it reads the locale substitute of winini.h and is never written.

// The characters a caller offers for a value, the terminating NUL included,
// as the profile functions count them: a value is cut to size - 1 characters.
inline constexpr int kProfileBufferSize = 1023;

// The value of key in section, or defaultValue when the file, the section or
// the key is missing.
QString readProfileString(const QString &section, const QString &key, const QString &defaultValue,
                          const QString &file, int size = kProfileBufferSize);

// Sets key in section to value, adding the key (after the section's last
// line) or the section (at the end of the file) when missing, and creating
// the file. Every other line keeps its bytes and its line end. Returns false
// when the file cannot be written.
bool writeProfileString(const QString &section, const QString &key, const QString &value,
                        const QString &file);

// The lines of a file as text, without line ends; nothing when the file does
// not exist (or is "WIN.INI").
std::optional<QStringList> readTextLines(const QString &file);
