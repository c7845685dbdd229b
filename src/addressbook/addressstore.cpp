#include "addressbook/addressstore.h"

#include "controls/combolist.h"
#include "controls/filldaovbcombo.h"
#include "data/database.h"
#include "data/recordset.h"
#include "data/rowreader.h"
#include "paydetails/employeedefaults.h"

#include <QHash>

using namespace AddressFields;

namespace {

const QString kEntry = QStringLiteral("Select distinctrow * from Addresses where addressid = ?");

// Adds the rows of (AddressID, name) to the list, skipping rows without a name. Read
// forward only: the list keeps its own copy, and a name list runs to 100,000 rows.
void addNames(ComboList &list, RowReader &rows)
{
    while (rows.next())
        if (!rows.isNull(1))
            list.addItem(rows.text(1), qint32(rows.integer(0)));
}

} // namespace

Recordset AddressStore::select(const QString &jetSql, const QVariantList &values,
                               bool forEdit) const
{
    return Recordset(m_db, jetSql, values, forEdit ? Recordset::Dynaset : Recordset::Snapshot);
}

void AddressStore::listNames(ComboList &list, const QString &pattern) const
{
    RowReader rows(m_db,
                   QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, Addresses.BusName "
                                  "FROM Addresses WHERE Addresses.busname LIKE ? "
                                  "ORDER BY Addresses.busname;"),
                   {pattern});
    addNames(list, rows);
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
        entry.values.flags[f] = rs.value(flagColumns[f]).toBool();
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
