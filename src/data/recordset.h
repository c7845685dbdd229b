#pragma once

#include "data/fieldinfo.h"

#include <memory>
#include <QHash>
#include <QSet>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <vector>

class Database;
class DatabaseState;

// The rows of a table or of a Jet SELECT, read in order when the recordset opens.
// Moves, find by a simple criterion, fields by name (case-insensitive) or by
// position, and, unless it is a snapshot, adding, editing and deleting rows of the
// table the rows come from (the first table after FROM).
//
// Reading a field gives its value by type: Currency a Money, Date/Time a
// QDateTime (local wall clock), Yes/No a bool, the integer types qint64, Single
// and Double a double, text a QString; Null an invalid QVariant.
class Recordset
{
public:
    enum Kind { Dynaset, Snapshot };
    enum EditMode { EditNone, EditInProgress, EditAdd };

    // source is a table name (plain or [bracketed]) or a Jet SELECT statement.
    Recordset(Database &db, const QString &source, Kind kind = Dynaset);
    // The same with values bound in order to the statement's ? markers, as
    // Database::execute binds them: no value is ever pasted into the text.
    Recordset(Database &db, const QString &source, const QVariantList &values, Kind kind = Dynaset);
    ~Recordset();
    Recordset(Recordset &&) noexcept;
    Recordset &operator=(Recordset &&) noexcept;
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    void close();
    bool isOpen() const;
    Kind kind() const { return m_kind; }

    // Position. Before the first row bof() is true, past the last eof(); both
    // are true when there are no rows.
    bool eof() const;
    bool bof() const;
    int recordCount() const;
    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    // A bookmark names a row for as long as the recordset is open.
    int bookmark() const;
    void setBookmark(int bookmark);
    // The bookmark of the row last added or edited, -1 when there is none.
    int lastModified() const { return m_lastModified; }

    // Moves to the first (next) row that meets a criterion (FindCriterion: "Column
    // op value" terms joined by AND). Throws CvError 3077 when the criterion cannot be
    // read. When no row matches noMatch() turns true and the position stays.
    bool findFirst(const QString &criterion);
    bool findNext(const QString &criterion);
    bool noMatch() const { return m_noMatch; }

    // Fields. Unknown names throw CvError 3265; positions out of range 9.
    int fieldCount() const;
    const FieldInfo &field(int index) const;
    const FieldInfo &field(const QString &name) const;
    int fieldIndex(const QString &name) const; // -1 when there is no such field

    // Values of the current row (or of the row being added or edited). Throws
    // CvError 3021 when there is no current row.
    QVariant value(int index) const;
    QVariant value(const QString &name) const;
    bool isNull(const QString &name) const;
    // The value as stored: integers for Currency and Yes/No, the serial number
    // for Date/Time.
    QVariant storedValue(int index) const;

    // Writing, as with DAO: addNew() or edit(), setValue() per field, update().
    // setValue() converts the value to the field's type or throws CvError (13
    // type mismatch, 6 overflow, 3163 text too long) and then leaves the field as
    // it was. An AutoNumber key of an added row is known from addNew() on.
    void addNew();
    void edit();
    void setValue(int index, const QVariant &value);
    void setValue(const QString &name, const QVariant &value);
    // Writes the row. An edit writes only where the row still holds what edit() read:
    // when another user changed a written value in between, nothing is written and
    // ChangedByAnother is thrown (CvError 3197); when the row is gone, 3167.
    void update();
    void cancelUpdate();

    // During edit(): the row as stored now (read by edit) against the values a window
    // read when it showed the row (stored values by column name, any case). A field
    // another user changed since then, which this edit sets to what the window read or
    // whose column is in takeTheirs, goes back to their value; a field both changed
    // to different values is a conflict. Returns the conflicting fields' positions.
    std::vector<int> mergeChangesOfOthers(const QHash<QString, QVariant> &read,
                                          const QSet<QString> &takeTheirs);
    // The value as stored when edit() read the row.
    QVariant storedBeforeEdit(int index) const;
    EditMode editMode() const { return m_editMode; }
    // Deletes the current row; moveNext() then goes to the row after it.
    void remove();
    // The key (rowid) the last added row got, 0 before any.
    qint64 lastInsertId() const { return m_lastInsertId; }

private:
    struct Private;

    void load(const QString &source, QVariantList values);
    int currentRow() const;
    const QVariant &cell(int row, int column) const;
    QVariant &cellRef(int row, int column);
    template <typename... Args> void appendCell(Args &&...args);
    int checkedIndex(int index) const;
    int checkedIndex(const QString &name) const; // throws CvError 3265 for an unknown name
    int skipDeleted(int row, int step) const;
    bool find(const QString &criterion, int from);

    std::shared_ptr<DatabaseState> m_db;
    std::unique_ptr<Private> m_d;
    Kind m_kind = Dynaset;
    std::vector<FieldInfo> m_fields;
    // The values, row by row (fields, then the rowid when it is hidden), in
    // chunks so that growing never moves what was read.
    std::vector<std::vector<QVariant>> m_chunks;
    size_t m_cellCount = 0;
    std::vector<bool> m_deleted;
    int m_width = 0; // cells per row
    int m_rows = 0;  // rows read or added, deleted ones included
    int m_deletedCount = 0;
    int m_pos = -1; // -1 before the first row, m_rows past the last
    bool m_noMatch = false;
    int m_lastModified = -1;
    qint64 m_lastInsertId = 0;
    EditMode m_editMode = EditNone;
    std::vector<QVariant> m_buffer; // the row being added or edited
    std::vector<bool> m_changed;
};
