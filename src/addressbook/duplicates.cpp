#include "addressbook/duplicates.h"

#include "checks/identifiers.h"
#include "core/foldedtext.h"
#include "data/database.h"
#include "data/rowreader.h"

#include <algorithm>
#include <QStringList>

namespace Duplicates {

namespace {

void sortByName(std::vector<Match> &found)
{
    std::sort(found.begin(), found.end(), [](const Match &a, const Match &b) {
        const int byName = a.name.compare(b.name, Qt::CaseInsensitive);
        return byName != 0 ? byName < 0 : a.addressId < b.addressId;
    });
}

} // namespace

QString nameKey(const QString &name)
{
    // Folded as the name list sorts and the search compares, then without punctuation.
    QString folded;
    for (const QChar c : FoldedText::fold(name)) {
        if (c == u'\'' || c == u'\u2019' || c == u'.')
            continue; // O'Brien is OBrien, Co. is Co
        folded += c.isLetterOrNumber() ? c : QChar(u' ');
    }
    QStringList words = folded.split(u' ', Qt::SkipEmptyParts);
    if (words.size() > 1 && (words.last() == u"ltd" || words.last() == u"limited"))
        words.removeLast();
    return words.join(u' ');
}

std::vector<Match> sameName(Database &db, const QString &name, bool employeesOnly)
{
    const QString key = nameKey(name);
    std::vector<Match> found;
    if (key.isEmpty())
        return found;
    // Every name is read: the key cannot be computed by either backend's SQL, and an
    // add happens once, while the user waits for the entry to appear.
    RowReader rows(db, employeesOnly ? QStringLiteral("SELECT AddressID, BusName, BusCity FROM "
                                                      "Addresses WHERE WageFlag = True")
                                     : QStringLiteral("SELECT AddressID, BusName, BusCity FROM "
                                                      "Addresses WHERE BusName Is Not Null"));
    while (rows.next()) {
        const QString candidate = rows.text(1);
        if (candidate.isEmpty() || nameKey(candidate) != key)
            continue;
        found.push_back({qint32(rows.integer(0)), candidate, rows.text(2)});
    }
    sortByName(found);
    return found;
}

std::vector<Match> sameTaxNumber(Database &db, qint32 exceptId, const QString &typed)
{
    const QString key = Identifiers::comparableTaxNumber(typed);
    std::vector<Match> found;
    if (key.isEmpty())
        return found;
    RowReader rows(db,
                   QStringLiteral("SELECT AddressID, BusName, BusCity, TaxNumber FROM Addresses "
                                  "WHERE TaxNumber Is Not Null AND AddressID <> ?"),
                   {exceptId});
    while (rows.next())
        if (Identifiers::comparableTaxNumber(rows.text(3)) == key)
            found.push_back({qint32(rows.integer(0)), rows.text(1), rows.text(2)});
    sortByName(found);
    return found;
}

std::vector<Match> sameBankAccount(Database &db, qint32 exceptId, const QString &bank,
                                   const QString &branch, const QString &account,
                                   const QString &suffix)
{
    const QString key = Identifiers::comparableBankAccount({bank, branch, account, suffix});
    std::vector<Match> found;
    if (key.isEmpty())
        return found;
    RowReader rows(db,
                   QStringLiteral("SELECT AddressID, BusName, BusCity, BusBankAcbank, "
                                  "BusBankAcBranch, BusBankAcNo, BusBankAcSuffix FROM "
                                  "Addresses WHERE BusBankAcNo Is Not Null AND AddressID <> ?"),
                   {exceptId});
    while (rows.next())
        if (Identifiers::comparableBankAccount(
                {rows.text(3), rows.text(4), rows.text(5), rows.text(6)}) == key)
            found.push_back({qint32(rows.integer(0)), rows.text(1), rows.text(2)});
    sortByName(found);
    return found;
}

QString describe(const std::vector<Match> &matches, int shown)
{
    QStringList lines;
    for (const Match &m : matches) {
        if (lines.size() == shown) {
            lines << QStringLiteral("and %1 more").arg(qsizetype(matches.size()) - shown);
            break;
        }
        lines << (m.city.trimmed().isEmpty() ? m.name
                                             : QStringLiteral("%1 (%2)").arg(m.name, m.city));
    }
    return lines.join(QStringLiteral("\r\n"));
}

} // namespace Duplicates
