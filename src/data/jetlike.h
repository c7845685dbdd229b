#pragma once

#include <optional>
#include <QString>
#include <QStringView>

struct sqlite3;

// Jet's LIKE, the one implementation of it in the module: FindFirst's criteria call
// matches() directly, and statements run it through SQLite, either as SQLite's own
// LIKE when that gives the same answers (it is faster and uses an index) or as
// "text MATCH pattern" with the function registered here.
//
// Patterns: * any run of characters, ? one character, # one digit, [list] one
// character of the list (ranges a-z), [!list] one not in it, [] nothing; [*] and the
// like stand for the character itself. Case is ignored by Unicode case folding,
// except that a character outside ASCII never matches an ASCII one (so that SQLite's
// LIKE, which folds ASCII only, agrees on every pattern it is given).
namespace JetLike {

// False when a [ has no ].
bool isValid(QStringView pattern);

bool matches(QStringView text, QStringView pattern);

// The pattern in SQLite's LIKE terms (% and _, a literal % _ or \ escaped with \,
// *escaped then set), or nullopt when SQLite's LIKE would answer differently for
// some text: # and lists, and letters outside ASCII and NUL.
std::optional<QString> toSqlite(QStringView pattern, bool *escaped);

// The pattern as an anchored PostgreSQL regular expression for ~*, which folds ASCII
// letters under the columns' "C" collation; other letters are listed in both cases.
QString toRegex(QStringView pattern);

// Makes "text MATCH pattern" run matches() on the connection.
void registerMatch(sqlite3 *handle);

} // namespace JetLike
