#include "addressbook/addressstore.h"

#include "controls/combolist.h"
#include "controls/filldaovbcombo.h"
#include "core/foldedtext.h"
#include "data/database.h"
#include "data/jetlike.h"
#include "data/recordset.h"
#include "data/rowreader.h"
#include "paydetails/employeedefaults.h"

#include <algorithm>
#include <numeric>
#include <QHash>

using namespace AddressFields;

namespace {

const QString kEntry = QStringLiteral("Select distinctrow * from Addresses where addressid = ?");

// The name list in the order of its names folded for case and accents. The statements
// order by the column's index, which is already that order for names all in ASCII; the
// others (a small minority: macrons and the like) are set aside, sorted by their fold and
// merged in, so both backends give the same list whatever they do with such letters.
class FoldedNames
{
public:
    // A row in the statement's order.
    void add(QString name, qint32 id)
    {
        if (FoldedText::isAscii(name)) {
            m_items.push_back({std::move(name), id});
        } else if (!m_names.empty() && m_names.back().name == name) {
            m_rows.push_back({qint32(m_names.size() - 1), id}); // a run of one name: one fold
        } else {
            QString key = FoldedText::fold(name);
            addOther(std::move(name), id, std::move(key));
        }
    }
    void addOther(QString name, qint32 id, QString key)
    {
        m_rows.push_back({qint32(m_names.size()), id});
        m_names.push_back({std::move(key), std::move(name)});
    }

    // Equal folds: ASCII first, then by the name as written, then by identifier, so that
    // the order does not depend on the backend.
    void into(ComboList &list)
    {
        // The names sorted once each, then the rows by their name's rank and identifier:
        // a name is often many rows (a chain's branches), and integers compare cheaply.
        const auto before = [this](qint32 a, qint32 b) {
            const Name &x = m_names[std::size_t(a)];
            const Name &y = m_names[std::size_t(b)];
            if (const int c = FoldedText::compare(x.key, y.key))
                return c < 0;
            return FoldedText::compare(x.name, y.name) < 0;
        };
        std::vector<qint32> order(m_names.size());
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), before);
        std::vector<qint32> rank(m_names.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            rank[std::size_t(order[i])] = i > 0 && !before(order[i - 1], order[i])
                                              ? rank[std::size_t(order[i - 1])]
                                              : qint32(i);
        for (Row &row : m_rows)
            row.name = rank[std::size_t(row.name)];
        std::sort(m_rows.begin(), m_rows.end(), [](const Row &a, const Row &b) {
            return a.name != b.name ? a.name < b.name : a.id < b.id;
        });

        // Merged in place from the back, each item moved once: the ASCII names are
        // nearly all of a list that runs to 100,000.
        std::size_t ascii = m_items.size();
        std::size_t other = m_rows.size();
        m_items.resize(ascii + other);
        for (std::size_t to = m_items.size(); other > 0;) {
            const Row &row = m_rows[other - 1];
            const Name &name = m_names[std::size_t(order[std::size_t(row.name)])];
            if (ascii > 0 && FoldedText::compareAscii(m_items[ascii - 1].text, name.key) > 0) {
                m_items[--to] = std::move(m_items[--ascii]);
            } else {
                m_items[--to] = {name.name, row.id};
                --other;
            }
        }
        list.addItems(std::move(m_items));
    }

private:
    struct Name
    {
        QString key; // the fold
        QString name;
    };
    struct Row
    {
        qint32 name; // in m_names; once sorted, the rank of its name
        qint32 id;
    };
    std::vector<ComboItem> m_items; // the ASCII names, then the whole list
    std::vector<Name> m_names;      // the others, a run of rows of one name once
    std::vector<Row> m_rows;
};

// Adds the rows of (AddressID, name) in folded order, skipping rows without a name. Read
// forward only: the list keeps its own copy, and a name list runs to 100,000 rows.
void addNames(ComboList &list, RowReader &rows)
{
    FoldedNames names;
    while (rows.next())
        if (!rows.isNull(1))
            names.add(rows.text(1), qint32(rows.integer(0)));
    names.into(list);
}

const QString kListAll = QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, "
                                        "Addresses.BusName FROM Addresses WHERE "
                                        "Addresses.busname LIKE ? ORDER BY Addresses.busname;");

} // namespace

Recordset AddressStore::select(const QString &jetSql, const QVariantList &values,
                               bool forEdit) const
{
    return Recordset(m_db, jetSql, values, forEdit ? Recordset::Dynaset : Recordset::Snapshot);
}

void AddressStore::listNames(ComboList &list, const QString &pattern) const
{
    // The pattern as the names are compared: "Ō*" lists the O names.
    const QString folded = FoldedText::fold(pattern);
    FoldedNames names;
    if (folded == u"*") {
        RowReader rows(m_db, kListAll, {folded});
        addNames(list, rows);
        return;
    }
    if (folded.size() == 2 && folded[1] == u'*' && folded[0].unicode() < 0x80 &&
        folded[0].isLetterOrNumber()) {
        // A letter: the names that begin with it in ASCII, from the index as before, and
        // those that begin beyond ASCII (from the index's end), kept when their fold does.
        RowReader rows(m_db, kListAll, {folded});
        while (rows.next()) {
            QString name = rows.isNull(1) ? QString() : rows.text(1);
            if (!name.isEmpty() && name.front().unicode() < 0x80)
                names.add(std::move(name), qint32(rows.integer(0)));
        }
        RowReader beyond(m_db,
                         QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, "
                                        "Addresses.BusName FROM Addresses WHERE "
                                        "Addresses.busname >= ? ORDER BY Addresses.busname;"),
                         {QString(QChar(0x80))});
        while (beyond.next()) {
            QString name = beyond.isNull(1) ? QString() : beyond.text(1);
            if (name.isEmpty() || name.front().unicode() < 0x80)
                continue;
            // Most begin with another letter (Ō for M): told by the first character's fold,
            // unless that folds to nothing (a mark), without folding the whole name.
            const QString head = FoldedText::fold(
                QStringView(name).first(name.front().isHighSurrogate() && name.size() > 1 ? 2 : 1));
            if (!head.isEmpty() && !head.startsWith(folded[0]))
                continue;
            QString key = FoldedText::fold(name);
            if (key.startsWith(folded[0]))
                names.addOther(std::move(name), qint32(beyond.integer(0)), std::move(key));
        }
        names.into(list);
        return;
    }
    // Any other pattern: every name, each matched by its fold.
    RowReader rows(m_db, kListAll, {QStringLiteral("*")});
    while (rows.next()) {
        if (rows.isNull(1))
            continue;
        QString name = rows.text(1);
        QString key = FoldedText::fold(name);
        if (JetLike::matches(key, folded))
            names.addOther(std::move(name), qint32(rows.integer(0)), std::move(key));
    }
    names.into(list);
}

void AddressStore::listEmployees(ComboList &list, bool currentOnly) const
{
    RowReader addresses(m_db, QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, "
                                             "Addresses.BusName From Addresses "
                                             "WHERE Addresses.WageFlag = True "
                                             "ORDER BY Addresses.busname;"));
    if (!currentOnly) {
        addNames(list, addresses);
        return;
    }
    // Each current employee's address row, found by key: two plain reads and a hash beat a
    // join, which SQLite answers with a sort. The first row of an identifier wins, as a
    // search from the top would find it.
    QHash<qint64, QString> names;
    while (addresses.next())
        if (!addresses.isNull(1) && !names.contains(addresses.integer(0)))
            names.insert(addresses.integer(0), addresses.text(1));
    RowReader employees(m_db, QStringLiteral("SELECT DISTINCTROW Employees.AddressID "
                                             "From Employees "
                                             "WHERE Employees.[Datefinished] Is Null Or "
                                             "Employees.[Datefinished]=0 "
                                             "ORDER BY Employees.AddressID;"));
    while (employees.next()) {
        if (employees.isNull(0))
            continue;
        const auto match = names.constFind(employees.integer(0));
        if (match != names.constEnd())
            list.addItem(match.value(), qint32(match.key()));
    }
}

void AddressStore::readSearchTexts(bool employeesOnly, const SearchRow &row) const
{
    RowReader rows(
        m_db, QStringLiteral("SELECT Addresses.AddressID, Addresses.contactFirstName, "
                             "Addresses.ContactLastName, Addresses.BusCity, Addresses.BusPhone "
                             "FROM Addresses") +
                  (employeesOnly ? QStringLiteral(" WHERE Addresses.WageFlag = True") : QString()));
    // The texts as the rows hold them: most are not kept, only split into words.
    std::array<QByteArray, 4> utf8;
    while (rows.next()) {
        for (int c = 0; c < 4; ++c)
            utf8[std::size_t(c)] = rows.utf8(c + 1);
        row(qint32(rows.integer(0)), utf8);
    }
}

void AddressStore::listHeadings(ComboList &list) const
{
    FillDaoVBCombo(m_db, list,
                   QStringLiteral("SELECT DISTINCTROW [Secondary Codes].[Secondary Codes ID], "
                                  "[Secondary Codes].[Cached Name] "
                                  "FROM [Account Codes] INNER JOIN [Secondary Codes] ON "
                                  "[Account Codes].[Account Code] = "
                                  "[Secondary Codes].[Main Code ID] "
                                  "Where [Account Codes].[Show In CashBk] = True "
                                  "Order by [Cached Name]"),
                   0, true, QStringLiteral("None"), false, true, true);
}

QSet<qint32> AddressStore::inactiveIds() const
{
    QSet<qint32> ids;
    RowReader rows(
        m_db, QStringLiteral("SELECT AddressID FROM Addresses WHERE Addresses.Inactive = True"));
    while (rows.next())
        ids.insert(qint32(rows.integer(0)));
    return ids;
}

bool AddressStore::prepareInactive() const
{
    const auto hasColumn = [&] {
        return select(QStringLiteral("SELECT * FROM Addresses WHERE AddressID = 0"), {}, false)
                   .fieldIndex(flagColumns[Inactive]) >= 0;
    };
    if (hasColumn())
        return true;
    // As the books made now have it (schema/farm.sql); another program opening the books
    // at the same moment may have added it first, which the second look finds.
    try {
        m_db.transaction([&] {
            if (m_db.isServer()) {
                m_db.executeNative(QStringLiteral("ALTER TABLE farm.\"addresses\" ADD COLUMN "
                                                  "\"inactive\" smallint NOT NULL DEFAULT 0"));
                m_db.executeNative(
                    QStringLiteral("COMMENT ON COLUMN farm.\"addresses\".\"inactive\" "
                                   "IS 'Inactive YESNO'"));
                m_db.executeNative(QStringLiteral(
                    "CREATE INDEX IF NOT EXISTS \"addresses_inactive\" ON farm.\"addresses\" "
                    "(\"inactive\" NULLS FIRST) INCLUDE (\"addressid\")"));
            } else {
                m_db.executeNative(QStringLiteral(
                    "ALTER TABLE Addresses ADD COLUMN Inactive YESNO NOT NULL DEFAULT 0"));
                m_db.executeNative(QStringLiteral(
                    "CREATE INDEX IF NOT EXISTS Addresses_Inactive ON Addresses (Inactive)"));
            }
        });
    } catch (const CvError &) {
        // Entries simply cannot be marked in these books.
    }
    m_db.reloadSchema();
    return hasColumn();
}

std::optional<AddressStore::Entry> AddressStore::readEntry(qint32 addressId) const
{
    Recordset rs = select(kEntry, {addressId}, false);
    if (rs.eof())
        return std::nullopt;
    Entry entry;
    for (int i = 0; i < Count; ++i) {
        const QVariant v = rs.value(table[std::size_t(i)].column);
        entry.values.fields[std::size_t(i)] = v.isNull() ? QString() : v.toString();
    }
    for (std::size_t f = 0; f < flagColumns.size(); ++f)
        entry.values.flags[f] =
            rs.fieldIndex(flagColumns[f]) >= 0 && rs.value(flagColumns[f]).toBool();
    entry.headingAccount = rs.value(QStringLiteral("HeadingAccount"));
    return entry;
}

qint32 AddressStore::employeeOf(qint32 addressId) const
{
    Recordset rs = select(QStringLiteral("Select Distinctrow * from Employees where AddressID = ?"),
                          {addressId}, false);
    return rs.eof() ? 0 : qint32(rs.value(QStringLiteral("EmployeeID")).toLongLong());
}

QString AddressStore::readNotes(qint32 addressId) const
{
    Recordset rs = select(QStringLiteral("Select distinctrow notes from Addresses "
                                         "where addressid = ?"),
                          {addressId}, false);
    return rs.eof() || rs.isNull(QStringLiteral("notes"))
               ? QString()
               : rs.value(QStringLiteral("notes")).toString();
}

bool AddressStore::hasWages(qint32 addressId) const
{
    return !select(QStringLiteral("SELECT DISTINCTROW Wages.Date FROM Employees INNER JOIN "
                                  "Wages ON Employees.EmployeeID = Wages.EmployeeID "
                                  "WHERE Employees.AddressID = ?;"),
                   {addressId}, false)
                .eof();
}

bool AddressStore::hasTransactions(qint32 addressId) const
{
    return !select(QStringLiteral("SELECT DISTINCTROW Transactions.Date FROM Transactions "
                                  "WHERE Transactions.AddressID = ?;"),
                   {addressId}, false)
                .eof();
}

AddressStore::Written AddressStore::writeEntry(qint32 addressId, const Values &values,
                                               const Values &read, const Conflicted &conflicted,
                                               const std::vector<int> &fields,
                                               const std::vector<int> &flags)
{
    Written written;
    if (fields.empty() && flags.empty())
        return written;
    // Through the row's recordset, which checks each value against its column.
    Recordset rs = select(kEntry, {addressId}, true);
    if (rs.eof())
        return written;
    rs.edit();
    std::vector<Conflict> conflicts;
    for (int i : fields) {
        const QVariant now = rs.storedBeforeEdit(rs.fieldIndex(table[std::size_t(i)].column));
        const QString theirs = now.isNull() ? QString() : now.toString();
        const QString &mine = values.fields[std::size_t(i)];
        if (theirs != read.fields[std::size_t(i)] && theirs != mine)
            conflicts.push_back({i, theirs});
    }
    if (!conflicts.empty())
        conflicted(conflicts);
    for (int i : fields) {
        const QString &text = values.fields[std::size_t(i)];
        try {
            rs.setValue(table[std::size_t(i)].column, text.isEmpty() ? QVariant() : text);
            written.fields.push_back(i);
        } catch (const CvError &e) {
            written.refused.push_back({i, e});
        }
    }
    for (int f : flags)
        rs.setValue(flagColumns[std::size_t(f)], values.flags[std::size_t(f)]);
    rs.update();
    return written;
}

void AddressStore::writeNotes(qint32 addressId, const QString &notes, const QString &readNotes,
                              const Conflicted &conflicted)
{
    // The pay change log adds lines to the notes too: text changed since it was read
    // is not overwritten unseen.
    if (const QString theirs = this->readNotes(addressId); theirs != readNotes && theirs != notes)
        conflicted({{-1, theirs}});
    m_db.execute(QStringLiteral("UPDATE Addresses SET notes = ? WHERE AddressID = ?"),
                 {notes, addressId});
}

void AddressStore::writeHeading(qint32 addressId, const QVariant &headingAccount)
{
    m_db.execute(QStringLiteral("UPDATE Addresses SET HeadingAccount = ? WHERE AddressID = ?"),
                 {headingAccount, addressId});
}

AddressStore::Added AddressStore::addEntry(const QString &name, bool employee,
                                           const QString &lastName)
{
    Added added;
    // No row has the identifier 0: the set starts empty.
    Recordset rs = select(kEntry, {0}, true);
    rs.addNew();
    rs.setValue(flagColumns[WageFlag], employee);
    rs.setValue(table[BusName].column, name);
    if (employee)
        rs.setValue(table[ContactLastName].column, lastName);
    rs.update();
    added.addressId = qint32(rs.lastInsertId());
    if (employee) {
        Recordset row = select(QStringLiteral("Select Distinctrow * from Employees "
                                              "where EmployeeID = 0"),
                               {}, true);
        row.addNew();
        row.setValue(QStringLiteral("AddressID"), added.addressId);
        row.setValue(QStringLiteral("EmployeetypeID"), DefaultEmployeeTypeID(m_db));
        row.setValue(QStringLiteral("PayIntervalID"), DefaultPayIntervalID(m_db));
        row.setValue(QStringLiteral("TaxTypeID"), DefaultTaxTypeID(m_db));
        row.update();
        added.employeeId = qint32(row.lastInsertId());
    }
    return added;
}

void AddressStore::deleteEntry(qint32 addressId)
{
    m_db.execute(QStringLiteral("DELETE FROM Addresses WHERE AddressID = ?"), {addressId});
}
