#pragma once

#include <QString>
#include <vector>

class Database;

// Entries that look like the one being added: the same name once case, accents,
// punctuation and a closing "Ltd" or "Limited" are set aside ("Ōtorohanga Vets Ltd"
// and "Otorohanga Vets Limited" are one business). Read-only: finding a match never
// stops an add; the user decides.
namespace Duplicates {

struct Match
{
    qint32 addressId = 0;
    QString name;
    QString city;
};

// The name as entries are compared: lower case, accents dropped, punctuation as
// spaces, single spaces, without the company ending.
QString nameKey(const QString &name);

// Entries whose name has the same key, in name order; employees only when asked.
std::vector<Match> sameName(Database &db, const QString &name, bool employeesOnly);

// The matches as lines for a message: "Name (City)".
QString describe(const std::vector<Match> &matches, int shown = 5);

} // namespace Duplicates
