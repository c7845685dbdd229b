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

// Other entries holding the same tax (IRD, GST, ABN) number, compared by its digits
// whatever dashes or blanks it was written with; none for fewer than five digits.
std::vector<Match> sameTaxNumber(Database &db, qint32 exceptId, const QString &typed);
// Other entries holding the same bank account: bank, branch, account and suffix compared
// as numbers, so "01-902-68389-0" is "01-0902-0068389-000".
std::vector<Match> sameBankAccount(Database &db, qint32 exceptId, const QString &bank,
                                   const QString &branch, const QString &account,
                                   const QString &suffix);

// The matches as lines for a message: "Name (City)".
QString describe(const std::vector<Match> &matches, int shown = 5);

} // namespace Duplicates
