#pragma once

#include "addressbook/addressfields.h"
#include "core/cverror.h"

#include <array>
#include <functional>
#include <optional>
#include <QSet>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <vector>

class ComboList;
class Database;
class Recordset;

// The address window's data: its entries in the main file's Addresses table, their
// Employees rows in the wage file (attached to the same connection), the name list and
// the cashbook headings. It reads and writes and throws CvError when that fails; it
// never asks or tells the user. A write runs in the caller's transaction, so that one
// save of the window commits both files together or neither.
class AddressStore
{
public:
    // The values of the first tab: the text boxes by AddressFields::Field (empty for
    // Null) and the two Yes/No flags by AddressFields::Flag.
    struct Values
    {
        std::array<QString, AddressFields::Count> fields;
        std::array<bool, AddressFields::flagColumns.size()> flags{};
    };

    struct Entry
    {
        Values values;
        QVariant headingAccount; // Null when the entry has none
    };

    struct Refusal
    {
        int field;
        CvError error;
    };

    // What writeEntry stored and what the columns refused.
    struct Written
    {
        std::vector<int> fields;
        std::vector<Refusal> refused;
    };

    // A value another user stored since the window read it, which this save would
    // overwrite with a different one: a field, or the notes (field -1).
    struct Conflict
    {
        int field;
        QString theirs;
    };
    // Told of the conflicts; the caller throws before its transaction ends.
    using Conflicted = std::function<void(const std::vector<Conflict> &)>;

    struct Added
    {
        qint32 addressId = 0;
        qint32 employeeId = 0; // 0 unless an Employees row was added
    };

    explicit AddressStore(Database &db) : m_db(db) {}

    // The name list, added to list: each entry's name with its AddressID as item data; nameless
    // rows are left out. The address book lists the names LIKE the Jet pattern, by name.
    // Names are compared folded for case and accents (core/foldedtext.h), in both the order
    // and the pattern: "Ōpōtiki" is listed under O, between "Opito" and "Opua".
    void listNames(ComboList &list, const QString &pattern) const;
    // The entries marked inactive.
    QSet<qint32> inactiveIds() const;
    // Books made before entries could be inactive are given the column (and its index)
    // here; false when they cannot be (a read-only file, a server role without the
    // right), and entries then cannot be marked.
    bool prepareInactive() const;
    // The employee window lists the entries flagged for the wage book, by folded name; or with
    // currentOnly those with an Employees row not finished (no date or 0), in AddressID
    // order, once for each such row.
    void listEmployees(ComboList &list, bool currentOnly) const;
    // What a search looks at besides the name, for each entry (with employeesOnly each
    // flagged for the wage book): its AddressID and its contact first and last names, city
    // and phone, in that order, as UTF-8 good for the call only (empty for Null). One
    // statement; the rows in no particular order.
    using SearchRow = std::function<void(qint32 addressId, const std::array<QByteArray, 4> &utf8)>;
    void readSearchTexts(bool employeesOnly, const SearchRow &row) const;
    // The cashbook headings by name after a "None" item; nothing selected. Throws CvError
    // when they cannot be read, keeping what was added.
    void listHeadings(ComboList &list) const;

    // The entry, or nothing when there is no such row.
    std::optional<Entry> readEntry(qint32 addressId) const;
    // The entry's Employees row, 0 when it has none.
    qint32 employeeOf(qint32 addressId) const;
    // The entry's notes, empty for Null or no such entry.
    QString readNotes(qint32 addressId) const;
    bool hasWages(qint32 addressId) const;
    bool hasTransactions(qint32 addressId) const;

    // Writes the given fields (an empty text as Null) and flags of the entry. A value its
    // column refuses is left as stored and returned with the column's error; the other
    // fields are written all the same. Nothing is written when the row has gone.
    // Writes the fields and flags listed. read holds what the window read: a listed
    // field that another user changed since, to a value other than this one, is a
    // conflict (conflicted is called).
    Written writeEntry(qint32 addressId, const Values &values, const Values &read,
                       const Conflicted &conflicted, const std::vector<int> &fields,
                       const std::vector<int> &flags);
    // The same for the notes, read as readNotes.
    void writeNotes(qint32 addressId, const QString &notes, const QString &readNotes,
                    const Conflicted &conflicted);
    // headingAccount Null clears the entry's heading.
    void writeHeading(qint32 addressId, const QVariant &headingAccount);
    // A new entry of this name; for an employee also its last name and, with the
    // default type, pay interval and tax type, its Employees row.
    Added addEntry(const QString &name, bool employee, const QString &lastName);
    // The Addresses row only: an Employees row stays behind.
    void deleteEntry(qint32 addressId);

private:
    Recordset select(const QString &jetSql, const QVariantList &values, bool forEdit) const;

    Database &m_db;
};
