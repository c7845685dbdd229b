#include "data/recordset.h"

#include "core/cverror.h"
#include "data/changedbyanother.h"
#include "data/cursor.h"
#include "data/database.h"
#include "data/databasestate.h"
#include "data/findcriterion.h"
#include "data/jetsql.h"
#include "data/jetvalue.h"

#include <QHash>

namespace {

const char *const Source = "Recordset";
// Cells are kept in chunks of this many.
constexpr int ChunkBits = 14;
constexpr size_t ChunkSize = size_t(1) << ChunkBits;

bool isIntegral(JetType t)
{
    return t == JetType::AutoNumber || t == JetType::Long || t == JetType::Short;
}

// The SELECT with one more column read before its FROM.
QString withColumn(const QString &sql, qsizetype fromPos, const QString &column)
{
    return sql.left(fromPos) + QStringLiteral(", ") + column + u' ' + sql.mid(fromPos);
}

bool isNumber(const QVariant &v)
{
    return JetValue::isInteger(v) || JetValue::isReal(v);
}

// Stored values alike: a whole number kept as an integer by one reading and as a real
// by another (SQLite keeps whole reals in numeric columns as integers) is the same.
// An empty text and Null are alike too: a window shows and writes both as an empty box.
bool sameStored(const QVariant &a, const QVariant &b)
{
    const auto empty = [](const QVariant &v) {
        return v.isNull() || (v.metaType().id() == QMetaType::QString && v.toString().isEmpty());
    };
    if (empty(a) || empty(b))
        return empty(a) == empty(b);
    if (isNumber(a) && isNumber(b))
        return a.toDouble() == b.toDouble();
    return a.toString() == b.toString();
}

[[noreturn]] void noCurrentRecord()
{
    throw CvError(CvError::NoCurrentRecord, Source, QStringLiteral("No current record."));
}

[[noreturn]] void readOnly()
{
    throw CvError(CvError::NotUpdatable, Source,
                  QStringLiteral("Cannot update. Database or object is read-only."));
}

[[noreturn]] void notEditing()
{
    throw CvError(CvError::UpdateWithoutEdit, Source,
                  QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
}

} // namespace

struct Recordset::Private
{
    QString updateTable; // empty: read-only
    int rowidCell = -1;  // the cell of each row holding its rowid
    int autoField = -1;  // the update table's AutoNumber among the fields
    // Equality lookups of findFirst on one integer field, built on first use.
    int indexedField = -1;
    QHash<qint64, int> index;

    bool updatable(const FieldInfo &f) const
    {
        return !updateTable.isEmpty() && f.table.compare(updateTable, Qt::CaseInsensitive) == 0;
    }
};

Recordset::Recordset(Database &db, const QString &source, Kind kind)
    : Recordset(db, source, QVariantList(), kind)
{
}

Recordset::Recordset(Database &db, const QString &source, const QVariantList &values, Kind kind)
    : m_db(db.m_state), m_d(std::make_unique<Private>()), m_kind(kind)
{
    m_db->requireOpen(Source);
    load(source, values);
}

Recordset::~Recordset() = default;
Recordset::Recordset(Recordset &&) noexcept = default;
Recordset &Recordset::operator=(Recordset &&) noexcept = default;

void Recordset::load(const QString &source, QVariantList values)
{
    DatabaseState &s = *m_db;
    const QString trimmed = source.trimmed();
    qsizetype wordEnd = 0;
    while (wordEnd < trimmed.size() && trimmed.at(wordEnd).isLetter())
        ++wordEnd;
    const bool isQuery = trimmed.startsWith(u'(') ||
                         trimmed.left(wordEnd).compare(u"select", Qt::CaseInsensitive) == 0;
    QString sql;
    QString updateTable;
    QString qualifier;
    qsizetype fromPos = -1;
    if (!isQuery) {
        QString table = trimmed;
        if (table.startsWith(u'[') && table.endsWith(u']'))
            table = table.mid(1, table.size() - 2);
        qualifier = JetSql::quoteIdentifier(table, s.dialect);
        sql = QStringLiteral("SELECT * ");
        fromPos = sql.size();
        sql += QStringLiteral("FROM %1 ORDER BY %2").arg(qualifier, s.rowid(table, Source));
        updateTable = table;
    } else {
        const auto tr = JetSql::translation(trimmed, s.dialect);
        if (!tr->isSelect)
            throw CvError(CvError::SqlError, Source,
                          QStringLiteral("A recordset needs a SELECT statement: ") + trimmed);
        qsizetype from = tr->fromPos;
        for (QVariant &v : values)
            v = JetValue::toParameter(v);
        sql = JetSql::bind(*tr, values, &from);
        if (tr->isSimple && from >= 0) {
            updateTable = tr->fromTable;
            fromPos = from;
            qualifier = JetSql::quoteIdentifier(
                tr->fromAlias.isEmpty() ? tr->fromTable : tr->fromAlias, s.dialect);
        }
    }
    if (m_kind == Snapshot)
        updateTable.clear();

    // A server has no rowid: its rows are edited by their key, always read as an extra
    // column so that the statement runs once.
    const bool keyColumn = s.isServer() && !updateTable.isEmpty();
    // Rows read to be edited within a save are locked on a server until it ends, as a
    // file is locked whole: a second save of the same rows waits, then reads them as
    // the first left them, and replaces child rows that the first one wrote.
    if (keyColumn && s.transactionDepth > 0)
        sql += QStringLiteral(" FOR UPDATE OF ") + qualifier;
    std::unique_ptr<Cursor> st = s.select(
        keyColumn ? withColumn(sql, fromPos, qualifier + u'.' + s.rowid(updateTable, Source)) : sql,
        values, Source);
    const int columns = st->columnCount() - (keyColumn ? 1 : 0);
    m_fields.clear();
    m_fields.reserve(columns);
    for (int i = 0; i < columns; ++i) {
        const QString table = st->originTable(i), origin = st->originColumn(i);
        FieldInfo f;
        if (!table.isEmpty() && !origin.isEmpty())
            f = s.column(table, origin, Source);
        f.name = st->name(i);
        // The server folds names to lower case; a column read as it is keeps the
        // schema's spelling.
        if (s.isServer() && f.name == f.column.toLower())
            f.name = f.column;
        m_fields.push_back(f);
    }

    // Edits address rows by rowid: the table's own key when the rows carry it,
    // else an extra hidden column.
    m_d->updateTable = updateTable;
    if (keyColumn) {
        m_d->rowidCell = columns;
    } else if (!updateTable.isEmpty()) {
        const QString alias = s.table(updateTable, Source).rowidAlias;
        for (int i = 0; i < columns && !alias.isEmpty(); ++i) {
            if (m_d->updatable(m_fields[i]) &&
                m_fields[i].column.compare(alias, Qt::CaseInsensitive) == 0) {
                m_d->rowidCell = i;
                break;
            }
        }
        if (m_d->rowidCell < 0) {
            st = s.select(withColumn(sql, fromPos, qualifier + QStringLiteral("._rowid_")), values,
                          Source);
            m_d->rowidCell = columns;
        }
    }
    for (int i = 0; i < columns && !updateTable.isEmpty(); ++i) {
        if (m_fields[i].autoNumber && m_d->updatable(m_fields[i]))
            m_d->autoField = i;
    }
    m_width = m_d->rowidCell == columns ? columns + 1 : columns;

    for (; st->next(); ++m_rows) {
        for (int c = 0; c < m_width; ++c)
            appendCell(st->value(c));
    }

    m_deleted.assign(m_rows, false);
    m_pos = 0;
    // Expressions take their type from their first value.
    for (int i = 0; i < columns; ++i) {
        for (int r = 0;
             r < m_rows && m_fields[i].isExpression() && m_fields[i].type == JetType::Unknown; ++r)
            m_fields[i].type = jetTypeOfValue(cell(r, i));
    }
}

void Recordset::close()
{
    m_db.reset();
    m_chunks.clear();
    m_cellCount = 0;
    m_deleted.clear();
    m_rows = m_deletedCount = 0;
    m_pos = -1;
    m_editMode = EditNone;
}

bool Recordset::isOpen() const
{
    return m_db != nullptr;
}

bool Recordset::eof() const
{
    return m_pos >= m_rows || recordCount() == 0;
}

bool Recordset::bof() const
{
    return m_pos < 0 || recordCount() == 0;
}

int Recordset::recordCount() const
{
    return m_rows - m_deletedCount;
}

int Recordset::skipDeleted(int row, int step) const
{
    while (row >= 0 && row < m_rows && m_deleted[row])
        row += step;
    return row;
}

void Recordset::moveFirst()
{
    if (recordCount() == 0)
        noCurrentRecord();
    m_editMode = EditNone;
    m_pos = skipDeleted(0, 1);
}

void Recordset::moveLast()
{
    if (recordCount() == 0)
        noCurrentRecord();
    m_editMode = EditNone;
    m_pos = skipDeleted(m_rows - 1, -1);
}

void Recordset::moveNext()
{
    if (eof())
        noCurrentRecord();
    m_editMode = EditNone;
    m_pos = qMin(skipDeleted(m_pos + 1, 1), m_rows);
}

void Recordset::movePrevious()
{
    if (bof())
        noCurrentRecord();
    m_editMode = EditNone;
    m_pos = qMax(skipDeleted(m_pos - 1, -1), -1);
}

int Recordset::currentRow() const
{
    if (m_pos < 0 || m_pos >= m_rows)
        noCurrentRecord();
    if (m_deleted[m_pos])
        throw CvError(CvError::RecordDeleted, Source, QStringLiteral("Record is deleted."));
    return m_pos;
}

int Recordset::bookmark() const
{
    return currentRow();
}

void Recordset::setBookmark(int bookmark)
{
    if (bookmark < 0 || bookmark >= m_rows || m_deleted[bookmark])
        throw CvError(CvError::NotValidBookmark, Source, QStringLiteral("Not a valid bookmark."));
    m_editMode = EditNone;
    m_pos = bookmark;
}

const QVariant &Recordset::cell(int row, int column) const
{
    const size_t i = size_t(row) * m_width + column;
    return m_chunks[i >> ChunkBits][i & (ChunkSize - 1)];
}

QVariant &Recordset::cellRef(int row, int column)
{
    return const_cast<QVariant &>(std::as_const(*this).cell(row, column));
}

template <typename... Args> void Recordset::appendCell(Args &&...args)
{
    if ((m_cellCount & (ChunkSize - 1)) == 0) {
        m_chunks.emplace_back();
        m_chunks.back().reserve(ChunkSize);
    }
    m_chunks.back().emplace_back(std::forward<Args>(args)...);
    ++m_cellCount;
}

int Recordset::fieldCount() const
{
    return int(m_fields.size());
}

int Recordset::checkedIndex(int index) const
{
    if (index < 0 || index >= fieldCount())
        throw CvError(
            CvError::SubscriptOutOfRange, Source,
            QStringLiteral("Subscript out of range: field %1 of %2.").arg(index).arg(fieldCount()));
    return index;
}

int Recordset::fieldIndex(const QString &name) const
{
    // Few fields, looked up once a row: a scan beats hashing a folded copy.
    const int n = fieldCount();
    for (int i = 0; i < n; ++i) {
        if (m_fields[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0) {
        const QStringView table = QStringView(name).left(dot);
        const QStringView column = QStringView(name).mid(dot + 1);
        for (int i = 0; i < n; ++i) {
            if (m_fields[i].table.compare(table, Qt::CaseInsensitive) == 0 &&
                m_fields[i].column.compare(column, Qt::CaseInsensitive) == 0)
                return i;
        }
    }
    return -1;
}

const FieldInfo &Recordset::field(int index) const
{
    return m_fields[checkedIndex(index)];
}

const FieldInfo &Recordset::field(const QString &name) const
{
    return m_fields[checkedIndex(name)];
}

int Recordset::checkedIndex(const QString &name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw CvError(
            CvError::ItemNotFound, Source,
            QStringLiteral("Item not found in this collection: the field '%1'.").arg(name));
    return i;
}

QVariant Recordset::storedValue(int index) const
{
    checkedIndex(index);
    if (m_editMode != EditNone)
        return m_buffer[index];
    return cell(currentRow(), index);
}

QVariant Recordset::value(int index) const
{
    checkedIndex(index);
    const QVariant &stored = m_editMode != EditNone ? m_buffer[index] : cell(currentRow(), index);
    switch (m_fields[index].type) {
    case JetType::Currency:
    case JetType::DateTime:
    case JetType::YesNo:
        return JetValue::fromStorage(stored, m_fields[index].type);
    default:
        return stored;
    }
}

QVariant Recordset::value(const QString &name) const
{
    return value(checkedIndex(name));
}

bool Recordset::isNull(const QString &name) const
{
    return storedValue(checkedIndex(name)).isNull();
}

void Recordset::addNew()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        readOnly();
    m_buffer.assign(m_fields.size(), QVariant());
    m_changed.assign(m_fields.size(), false);
    // Jet numbers a new row when it is begun, and callers rely on that: reserve
    // the number the insert will take.
    if (m_d->autoField >= 0) {
        m_buffer[m_d->autoField] = m_db->nextAutoNumber(m_d->updateTable, Source);
        m_changed[m_d->autoField] = true;
    }
    m_editMode = EditAdd;
}

void Recordset::edit()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        readOnly();
    const int row = currentRow();
    m_buffer.resize(m_fields.size());
    for (int i = 0; i < fieldCount(); ++i)
        m_buffer[i] = cell(row, i);
    m_changed.assign(m_fields.size(), false);
    m_editMode = EditInProgress;
}

void Recordset::setValue(int index, const QVariant &value)
{
    checkedIndex(index);
    if (m_editMode == EditNone)
        notEditing();
    const FieldInfo &f = m_fields[index];
    if (f.autoNumber || f.isExpression())
        throw CvError(CvError::FieldNotUpdatable, Source,
                      QStringLiteral("Field '%1' cannot be updated.").arg(f.name));
    // Converts first, so that a value the field cannot take leaves it unchanged.
    m_buffer[index] = JetValue::toStorage(value, f);
    m_changed[index] = true;
}

void Recordset::setValue(const QString &name, const QVariant &value)
{
    setValue(checkedIndex(name), value);
}

void Recordset::update()
{
    if (m_editMode == EditNone)
        notEditing();
    m_db->requireOpen(Source);
    DatabaseState &s = *m_db;
    const QString table = JetSql::quoteIdentifier(m_d->updateTable, s.dialect);
    const QString rowid = s.rowid(m_d->updateTable, Source);

    // Only the update table's own columns are written; a value set on a field
    // of a joined table stays in this recordset.
    QStringList columns;
    QVariantList values;
    for (int i = 0; i < fieldCount(); ++i) {
        if (m_changed[i] && m_d->updatable(m_fields[i])) {
            columns << JetSql::quoteIdentifier(m_fields[i].column, s.dialect);
            values << m_buffer[i];
        }
    }

    if (m_editMode == EditAdd) {
        // The row comes back with its key and its defaults.
        QStringList read{rowid};
        std::vector<int> readFields;
        for (int i = 0; i < fieldCount(); ++i) {
            if (m_d->updatable(m_fields[i])) {
                read << JetSql::quoteIdentifier(m_fields[i].column, s.dialect);
                readFields.push_back(i);
            }
        }
        const QString returning = QStringLiteral(" RETURNING ") + read.join(u", ");
        const QStringList marks(columns.size(), QStringLiteral("?"));
        const std::unique_ptr<Cursor> added =
            s.select(columns.isEmpty()
                         ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table) + returning
                         : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                   .arg(table, columns.join(u", "), marks.join(u", ")) +
                               returning,
                     values, Source);
        std::vector<QVariant> row = m_buffer;
        row.resize(m_width);
        qint64 key = 0;
        if (added->next()) {
            key = added->integer(0);
            row[m_d->rowidCell] = added->value(0);
            for (size_t k = 0; k < readFields.size(); ++k)
                row[readFields[k]] = added->value(int(k) + 1);
        }
        for (QVariant &v : row)
            appendCell(std::move(v));
        m_deleted.push_back(false);
        // The new row goes at the end; a position past the end stays there.
        if (m_pos >= m_rows)
            m_pos = m_rows + 1;
        ++m_rows;
        m_lastModified = m_rows - 1;
        m_lastInsertId = key;
    } else {
        const int rowIndex = currentRow();
        if (!columns.isEmpty()) {
            QStringList sets;
            for (const QString &c : columns)
                sets << c + QStringLiteral(" = ?");
            // Only over the values edit() read: another user's change since then is not
            // overwritten unseen.
            QStringList unchanged{rowid + QStringLiteral(" = ?")};
            values << cell(rowIndex, m_d->rowidCell);
            const QString same =
                s.isServer() ? QStringLiteral(" IS NOT DISTINCT FROM ?") : QStringLiteral(" IS ?");
            for (int i = 0, c = 0; i < fieldCount(); ++i) {
                if (m_changed[i] && m_d->updatable(m_fields[i])) {
                    unchanged << columns.at(c++) + same;
                    values << cell(rowIndex, i);
                }
            }
            if (s.exec(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                           .arg(table, sets.join(u", "), unchanged.join(QStringLiteral(" AND "))),
                       values, Source) == 0) {
                const std::unique_ptr<Cursor> still =
                    s.select(QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(table, rowid),
                             {cell(rowIndex, m_d->rowidCell)}, Source);
                if (still->next())
                    throw ChangedByAnother(Source,
                                           QStringLiteral("Another user changed this record while "
                                                          "it was being saved."));
                throw CvError(CvError::RecordDeleted, Source,
                              QStringLiteral("Record is deleted: another program removed it."));
            }
            for (int i = 0; i < fieldCount(); ++i) {
                if (m_changed[i] && m_d->updatable(m_fields[i]))
                    cellRef(rowIndex, i) = m_buffer[i];
            }
        }
        m_lastModified = rowIndex;
    }
    m_d->indexedField = -1;
    m_editMode = EditNone;
}

std::vector<int> Recordset::mergeChangesOfOthers(const QHash<QString, QVariant> &read,
                                                 const QSet<QString> &takeTheirs)
{
    if (m_editMode != EditInProgress)
        notEditing();
    const int row = currentRow();
    std::vector<int> conflicts;
    for (int i = 0; i < fieldCount(); ++i) {
        const QString key = m_fields[i].name.toCaseFolded();
        const auto was = read.constFind(key);
        if (was == read.constEnd() || sameStored(cell(row, i), *was))
            continue; // nobody else changed it
        if (sameStored(m_buffer[i], *was) || takeTheirs.contains(key)) {
            m_buffer[i] = cell(row, i);
            m_changed[i] = false;
        } else if (!sameStored(m_buffer[i], cell(row, i))) {
            conflicts.push_back(i);
        }
    }
    return conflicts;
}

QVariant Recordset::storedBeforeEdit(int index) const
{
    checkedIndex(index);
    return cell(currentRow(), index);
}

void Recordset::cancelUpdate()
{
    if (m_editMode == EditNone)
        notEditing();
    m_editMode = EditNone;
}

void Recordset::remove()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        readOnly();
    m_editMode = EditNone;
    const int row = currentRow();
    DatabaseState &s = *m_db;
    s.exec(QStringLiteral("DELETE FROM %1 WHERE %2 = ?")
               .arg(JetSql::quoteIdentifier(m_d->updateTable, s.dialect),
                    s.rowid(m_d->updateTable, Source)),
           {cell(row, m_d->rowidCell)}, Source);
    m_deleted[row] = true;
    ++m_deletedCount;
    m_d->indexedField = -1;
}

bool Recordset::findFirst(const QString &criterion)
{
    return find(criterion, 0);
}

bool Recordset::findNext(const QString &criterion)
{
    return find(criterion, qMax(m_pos + 1, 0));
}

bool Recordset::find(const QString &criterion, int from)
{
    const std::vector<FindCriterion::Term> terms = FindCriterion::parse(criterion);
    std::vector<int> columns;
    for (const FindCriterion::Term &t : terms)
        columns.push_back(checkedIndex(t.column));

    // "Key = 37" on an integer field: a hash of first occurrences, so that
    // finding every one of n keys in turn stays linear.
    const FindCriterion::Term &first = terms.front();
    const int key = columns.front();
    const bool byKey = terms.size() == 1 && first.op == FindCriterion::Op::Equal &&
                       first.literal.metaType().id() == QMetaType::LongLong &&
                       isIntegral(m_fields[key].type);
    int row = -1;
    if (byKey) {
        if (m_d->indexedField != key) {
            m_d->index.clear();
            m_d->index.reserve(m_rows);
            for (int r = m_rows - 1; r >= 0; --r) {
                const QVariant &v = cell(r, key);
                if (!m_deleted[r] && !v.isNull())
                    m_d->index.insert(v.toLongLong(), r);
            }
            m_d->indexedField = key;
        }
        row = m_d->index.value(first.literal.toLongLong(), -1);
    }
    if (!byKey || (row >= 0 && row < from)) { // the first one is behind: look on
        row = -1;
        for (int r = qMax(from, 0); r < m_rows && row < 0; ++r) {
            bool all = !m_deleted[r];
            for (size_t k = 0; k < terms.size() && all; ++k)
                all = FindCriterion::matches(cell(r, columns[k]), terms[k], m_fields[columns[k]]);
            if (all)
                row = r;
        }
    }
    m_noMatch = row < 0;
    if (!m_noMatch) {
        m_editMode = EditNone;
        m_pos = row;
    }
    return !m_noMatch;
}
