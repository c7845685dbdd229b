#include "addressbook/duplicates.h"

#include "data/database.h"
#include "data/rowreader.h"

#include <algorithm>
#include <QStringList>

namespace Duplicates {

QString nameKey(const QString &name)
{
    const QString decomposed = name.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.isMark() || c == u'\'' || c == u'\u2019' || c == u'.')
            continue; // accents; O'Brien is OBrien, Co. is Co
        folded += c.isLetterOrNumber() ? c.toCaseFolded() : QChar(u' ');
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
    std::sort(found.begin(), found.end(), [](const Match &a, const Match &b) {
        const int byName = a.name.compare(b.name, Qt::CaseInsensitive);
        return byName != 0 ? byName < 0 : a.addressId < b.addressId;
    });
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
