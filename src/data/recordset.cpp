#include "data/recordset.h"

#include "core/cverror.h"
#include "data/database.h"
#include "data/databasestate.h"
#include "data/jetsql.h"
#include "data/jetvalue.h"
#include "data/money.h"
#include "data/serialdate.h"

#include <QHash>
#include <QSqlQuery>
#include <sqlite3.h>

namespace {

const char *const Source = "Recordset";

QString text16(const void *p)
{
    return QString(static_cast<const QChar *>(p));
}

bool isIntegral(JetType t)
{
    return t == JetType::AutoNumber || t == JetType::Long || t == JetType::Short;
}

[[noreturn]] void noCurrentRecord()
{
    throw CvError(CvError::NoCurrentRecord, Source, QStringLiteral("No current record."));
}

// One comparison of a find criterion.
struct Term
{
    int field = -1;
    QString op; // = <> < <= > >= LIKE NOTLIKE ISNULL NOTNULL
    QVariant literal;
};

// Jet's LIKE: * ? # [list] [!list], ignoring case.
bool jetLike(QStringView text, QStringView pattern)
{
    qsizetype t = 0, p = 0, starP = -1, starT = 0;
    auto matchOne = [&](qsizetype &pp, QChar c) {
        const QChar pc = pattern.at(pp);
        if (pc == u'?') {
            ++pp;
            return true;
        }
        if (pc == u'#') {
            ++pp;
            return c.isDigit();
        }
        if (pc == u'[') {
            const qsizetype close = pattern.indexOf(u']', pp + 1);
            if (close < 0)
                return false;
            QStringView set = pattern.mid(pp + 1, close - pp - 1);
            pp = close + 1;
            const bool negate = set.startsWith(u'!') && set.size() > 1;
            if (negate)
                set = set.mid(1);
            bool found = false;
            const QChar lc = c.toCaseFolded();
            for (qsizetype i = 0; i < set.size(); ++i) {
                if (i + 2 < set.size() && set.at(i + 1) == u'-') {
                    found = found ||
                            (lc >= set.at(i).toCaseFolded() && lc <= set.at(i + 2).toCaseFolded());
                    i += 2;
                } else {
                    found = found || lc == set.at(i).toCaseFolded();
                }
            }
            return found != negate;
        }
        ++pp;
        return pc.toCaseFolded() == c.toCaseFolded();
    };
    while (t < text.size()) {
        if (p < pattern.size() && pattern.at(p) == u'*') {
            starP = ++p;
            starT = t;
            continue;
        }
        qsizetype pp = p;
        if (p < pattern.size() && matchOne(pp, text.at(t))) {
            p = pp;
            ++t;
            continue;
        }
        if (starP < 0)
            return false;
        p = starP;
        t = ++starT;
    }
    while (p < pattern.size() && pattern.at(p) == u'*')
        ++p;
    return p == pattern.size();
}

// A prepared statement on the connection, finalized when it goes.
struct Statement
{
    sqlite3_stmt *stmt = nullptr;

    Statement(DatabaseState &s, const QString &sql) { prepare(s, sql); }
    ~Statement() { sqlite3_finalize(stmt); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    void prepare(DatabaseState &s, const QString &sql)
    {
        sqlite3_finalize(stmt);
        stmt = nullptr;
        const int rc =
            sqlite3_prepare16_v2(s.handle, sql.utf16(), int(sql.size() * 2), &stmt, nullptr);
        if (rc != SQLITE_OK)
            fail(s, rc);
    }

    [[noreturn]] void fail(DatabaseState &s, int rc)
    {
        const QString message = QString::fromUtf8(sqlite3_errmsg(s.handle));
        sqlite3_finalize(stmt); // releases the read lock before any rollback
        stmt = nullptr;
        s.fail(rc, message, Source);
    }
};

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
    : m_db(db.m_state), m_d(std::make_unique<Private>()), m_kind(kind)
{
    m_db->requireOpen(Source);
    load(source);
}

Recordset::~Recordset() = default;
Recordset::Recordset(Recordset &&) noexcept = default;
Recordset &Recordset::operator=(Recordset &&) noexcept = default;

void Recordset::load(const QString &source)
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
        qualifier = JetSql::quoteIdentifier(table);
        sql = QStringLiteral("SELECT * ");
        fromPos = sql.size();
        sql += QStringLiteral("FROM %1 ORDER BY _rowid_").arg(qualifier);
        updateTable = table;
    } else {
        const auto tr = JetSql::translation(trimmed);
        if (!tr->isSelect)
            throw CvError(CvError::SqlError, Source,
                          QStringLiteral("A recordset needs a SELECT statement: ") + trimmed);
        sql = tr->sql;
        if (tr->isSimple && tr->fromPos >= 0) {
            updateTable = tr->fromTable;
            fromPos = tr->fromPos;
            qualifier =
                JetSql::quoteIdentifier(tr->fromAlias.isEmpty() ? tr->fromTable : tr->fromAlias);
        }
    }
    if (m_kind == Snapshot)
        updateTable.clear();

    // Rows are read straight from SQLite's statement: Qt's result cache would
    // copy every value once more, and name lists run to 100,000 rows.
    Statement st(s, sql);
    const int columns = sqlite3_column_count(st.stmt);
    m_fields.clear();
    m_fields.reserve(columns);
    for (int i = 0; i < columns; ++i) {
        const void *table = sqlite3_column_table_name16(st.stmt, i);
        const void *origin = sqlite3_column_origin_name16(st.stmt, i);
        FieldInfo f;
        if (table && origin)
            f = s.column(text16(table), text16(origin), Source);
        f.name = text16(sqlite3_column_name16(st.stmt, i));
        m_fields.push_back(f);
    }

    // Edits address rows by rowid: the table's own key when the rows carry it,
    // else an extra hidden column.
    m_d->updateTable = updateTable;
    if (!updateTable.isEmpty()) {
        const QString alias = s.table(updateTable, Source).rowidAlias;
        for (int i = 0; i < columns && !alias.isEmpty(); ++i) {
            if (m_d->updatable(m_fields[i]) &&
                m_fields[i].column.compare(alias, Qt::CaseInsensitive) == 0) {
                m_d->rowidCell = i;
                break;
            }
        }
        if (m_d->rowidCell < 0) {
            st.prepare(s, sql.left(fromPos) + QStringLiteral(", %1._rowid_ ").arg(qualifier) +
                              sql.mid(fromPos));
            m_d->rowidCell = columns;
        }
        for (int i = 0; i < columns; ++i) {
            if (m_fields[i].autoNumber && m_d->updatable(m_fields[i]))
                m_d->autoField = i;
        }
    }
    m_width = m_d->rowidCell == columns ? columns + 1 : columns;

    for (;;) {
        const int rc = sqlite3_step(st.stmt);
        if (rc == SQLITE_DONE)
            break;
        if (rc != SQLITE_ROW)
            st.fail(s, rc);
        for (int c = 0; c < m_width; ++c) {
            switch (sqlite3_column_type(st.stmt, c)) {
            case SQLITE_INTEGER:
                appendCell(qint64(sqlite3_column_int64(st.stmt, c)));
                break;
            case SQLITE_FLOAT:
                appendCell(sqlite3_column_double(st.stmt, c));
                break;
            case SQLITE_TEXT: {
                const void *p = sqlite3_column_text16(st.stmt, c);
                appendCell(
                    QString(static_cast<const QChar *>(p), sqlite3_column_bytes16(st.stmt, c) / 2));
                break;
            }
            case SQLITE_BLOB:
                appendCell(QByteArray(static_cast<const char *>(sqlite3_column_blob(st.stmt, c)),
                                      sqlite3_column_bytes(st.stmt, c)));
                break;
            default:
                appendCell();
                break;
            }
        }
        ++m_rows;
    }

    m_deleted.assign(m_rows, false);
    m_pos = 0;
    for (int i = 0; i < columns; ++i) {
        FieldInfo &f = m_fields[i];
        // Expressions take their type from their first value.
        if (f.isExpression()) {
            for (int r = 0; r < m_rows && f.type == JetType::Unknown; ++r) {
                switch (cell(r, i).metaType().id()) {
                case QMetaType::LongLong:
                    f.type = JetType::Long;
                    break;
                case QMetaType::Double:
                    f.type = JetType::Double;
                    break;
                case QMetaType::QString:
                    f.type = JetType::Memo;
                    break;
                default:
                    break;
                }
            }
        }
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

namespace {
constexpr int ChunkBits = 14;
constexpr size_t ChunkSize = size_t(1) << ChunkBits;
} // namespace

const QVariant &Recordset::cell(int row, int column) const
{
    const size_t i = size_t(row) * m_width + column;
    return m_chunks[i >> ChunkBits][i & (ChunkSize - 1)];
}

QVariant &Recordset::cellRef(int row, int column)
{
    const size_t i = size_t(row) * m_width + column;
    return m_chunks[i >> ChunkBits][i & (ChunkSize - 1)];
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
    const int i = fieldIndex(name);
    if (i < 0)
        throw CvError(
            CvError::ItemNotFound, Source,
            QStringLiteral("Item not found in this collection: the field '%1'.").arg(name));
    return m_fields[i];
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
    const int i = fieldIndex(name);
    if (i < 0)
        field(name); // throws
    return value(i);
}

bool Recordset::isNull(const QString &name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        field(name);
    return storedValue(i).isNull();
}

void Recordset::addNew()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        throw CvError(CvError::NotUpdatable, Source,
                      QStringLiteral("Cannot update. Database or object is read-only."));
    m_buffer.assign(m_fields.size(), QVariant());
    m_changed.assign(m_fields.size(), false);
    // Jet numbers a new row when it is begun, and callers rely on that: reserve
    // the number the insert will take.
    if (m_d->autoField >= 0) {
        DatabaseState &s = *m_db;
        QSqlQuery q = s.query();
        s.run(q,
              QStringLiteral("SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ? "
                             "COLLATE NOCASE), 0), coalesce((SELECT max(_rowid_) FROM %1), 0)) "
                             "+ 1")
                  .arg(JetSql::quoteIdentifier(m_d->updateTable)),
              {m_d->updateTable}, Source);
        if (q.next())
            m_buffer[m_d->autoField] = q.value(0);
        m_changed[m_d->autoField] = true;
    }
    m_editMode = EditAdd;
}

void Recordset::edit()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        throw CvError(CvError::NotUpdatable, Source,
                      QStringLiteral("Cannot update. Database or object is read-only."));
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
        throw CvError(CvError::UpdateWithoutEdit, Source,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
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
    const int i = fieldIndex(name);
    if (i < 0)
        field(name);
    setValue(i, value);
}

void Recordset::update()
{
    if (m_editMode == EditNone)
        throw CvError(CvError::UpdateWithoutEdit, Source,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
    m_db->requireOpen(Source);
    DatabaseState &s = *m_db;
    const QString table = JetSql::quoteIdentifier(m_d->updateTable);

    // Only the update table's own columns are written; a value set on a field
    // of a joined table stays in this recordset.
    QStringList columns;
    QVariantList values;
    for (int i = 0; i < fieldCount(); ++i) {
        if (m_changed[i] && m_d->updatable(m_fields[i])) {
            columns << JetSql::quoteIdentifier(m_fields[i].column);
            values << m_buffer[i];
        }
    }

    QSqlQuery q = s.query();
    if (m_editMode == EditAdd) {
        if (columns.isEmpty()) {
            s.run(q, QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table), {}, Source);
        } else {
            QStringList marks;
            for (qsizetype i = 0; i < columns.size(); ++i)
                marks << QStringLiteral("?");
            s.run(q,
                  QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(table, columns.join(u", "), marks.join(u", ")),
                  values, Source);
        }
        const qint64 rowid = q.lastInsertId().toLongLong();

        // Read the row back for its defaults.
        QStringList read;
        std::vector<int> readFields;
        for (int i = 0; i < fieldCount(); ++i) {
            if (m_d->updatable(m_fields[i])) {
                read << JetSql::quoteIdentifier(m_fields[i].column);
                readFields.push_back(i);
            }
        }
        std::vector<QVariant> row = m_buffer;
        row.resize(m_width);
        if (!read.isEmpty()) {
            QSqlQuery r = s.query();
            s.run(
                r,
                QStringLiteral("SELECT %1 FROM %2 WHERE _rowid_ = ?").arg(read.join(u", "), table),
                {rowid}, Source);
            if (r.next()) {
                for (size_t k = 0; k < readFields.size(); ++k) {
                    QVariant v = r.value(int(k));
                    row[readFields[k]] = v.isNull() ? QVariant() : v;
                }
            }
        }
        row[m_d->rowidCell] = rowid;
        for (QVariant &v : row)
            appendCell(std::move(v));
        m_deleted.push_back(false);
        // The new row goes at the end; a position past the end stays there.
        if (m_pos >= m_rows)
            m_pos = m_rows + 1;
        ++m_rows;
        m_lastModified = m_rows - 1;
        m_lastInsertId = rowid;
    } else {
        const int rowIndex = currentRow();
        if (!columns.isEmpty()) {
            QStringList sets;
            for (const QString &c : columns)
                sets << c + QStringLiteral(" = ?");
            values << cell(rowIndex, m_d->rowidCell);
            s.run(q,
                  QStringLiteral("UPDATE %1 SET %2 WHERE _rowid_ = ?").arg(table, sets.join(u", ")),
                  values, Source);
            if (q.numRowsAffected() == 0)
                throw CvError(CvError::RecordDeleted, Source,
                              QStringLiteral("Record is deleted: another program removed it."));
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

void Recordset::cancelUpdate()
{
    if (m_editMode == EditNone)
        throw CvError(CvError::UpdateWithoutEdit, Source,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
    m_editMode = EditNone;
}

void Recordset::remove()
{
    m_db->requireOpen(Source);
    if (m_d->updateTable.isEmpty())
        throw CvError(CvError::NotUpdatable, Source,
                      QStringLiteral("Cannot update. Database or object is read-only."));
    m_editMode = EditNone;
    const int row = currentRow();
    DatabaseState &s = *m_db;
    QSqlQuery q = s.query();
    s.run(q,
          QStringLiteral("DELETE FROM %1 WHERE _rowid_ = ?")
              .arg(JetSql::quoteIdentifier(m_d->updateTable)),
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

namespace {

class CriterionReader
{
public:
    CriterionReader(const QString &text) : m_s(text) {}

    bool atEnd()
    {
        skipBlanks();
        return m_i >= m_s.size();
    }

    QString name()
    {
        skipBlanks();
        QString out;
        for (;;) {
            if (m_i < m_s.size() && m_s.at(m_i) == u'[') {
                const qsizetype close = m_s.indexOf(u']', m_i);
                if (close < 0)
                    error();
                out += m_s.mid(m_i + 1, close - m_i - 1);
                m_i = close + 1;
            } else {
                const qsizetype start = m_i;
                while (m_i < m_s.size() && (m_s.at(m_i).isLetterOrNumber() || m_s.at(m_i) == u'_'))
                    ++m_i;
                if (m_i == start)
                    error();
                out += m_s.mid(start, m_i - start);
            }
            if (m_i < m_s.size() && m_s.at(m_i) == u'.') {
                out += u'.';
                ++m_i;
                continue;
            }
            return out;
        }
    }

    bool keyword(const char16_t *word)
    {
        skipBlanks();
        const QStringView w(word);
        if (m_s.mid(m_i, w.size()).compare(w, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype end = m_i + w.size();
        if (end < m_s.size() && (m_s.at(end).isLetterOrNumber() || m_s.at(end) == u'_'))
            return false;
        m_i = end;
        return true;
    }

    QString op()
    {
        skipBlanks();
        for (const char16_t *o : {u"<>", u"<=", u">=", u"=", u"<", u">"}) {
            const QStringView v(o);
            if (m_s.mid(m_i, v.size()) == v) {
                m_i += v.size();
                return v.toString();
            }
        }
        if (keyword(u"LIKE"))
            return QStringLiteral("LIKE");
        if (keyword(u"NOT") && keyword(u"LIKE"))
            return QStringLiteral("NOTLIKE");
        if (keyword(u"IS")) {
            const bool negate = keyword(u"NOT");
            if (!keyword(u"NULL"))
                error();
            return negate ? QStringLiteral("NOTNULL") : QStringLiteral("ISNULL");
        }
        error();
    }

    QVariant literal()
    {
        skipBlanks();
        if (m_i >= m_s.size())
            error();
        const QChar c = m_s.at(m_i);
        if (c == u'"' || c == u'\'') {
            QString value;
            for (++m_i;; ++m_i) {
                if (m_i >= m_s.size())
                    error();
                if (m_s.at(m_i) == c) {
                    if (m_i + 1 < m_s.size() && m_s.at(m_i + 1) == c) {
                        value += c;
                        ++m_i;
                        continue;
                    }
                    ++m_i;
                    return value;
                }
                value += m_s.at(m_i);
            }
        }
        if (c == u'#') {
            const qsizetype close = m_s.indexOf(u'#', m_i + 1);
            if (close < 0)
                error();
            static const QLocale us(QLocale::English, QLocale::UnitedStates);
            const auto dt = SerialDate::parse(m_s.mid(m_i + 1, close - m_i - 1), us);
            if (!dt)
                error();
            m_i = close + 1;
            return SerialDate::fromDateTime(*dt);
        }
        if (keyword(u"TRUE"))
            return true;
        if (keyword(u"FALSE"))
            return false;
        if (keyword(u"NULL"))
            return QVariant();
        const qsizetype start = m_i;
        if (c == u'-' || c == u'+')
            ++m_i;
        while (m_i < m_s.size() && (m_s.at(m_i).isDigit() || m_s.at(m_i) == u'.'))
            ++m_i;
        bool ok = false;
        const QString number = m_s.mid(start, m_i - start);
        const qint64 whole = number.toLongLong(&ok);
        if (ok)
            return whole;
        const double real = number.toDouble(&ok);
        if (!ok)
            error();
        return real;
    }

    [[noreturn]] void error() const
    {
        throw CvError(CvError::ExpressionError, Source,
                      QStringLiteral("Syntax error in the criterion: %1").arg(m_s));
    }

private:
    void skipBlanks()
    {
        while (m_i < m_s.size() && m_s.at(m_i).isSpace())
            ++m_i;
    }

    QString m_s;
    qsizetype m_i = 0;
};

// Compares a stored value with a criterion's literal by the field's type; false
// when they cannot be compared (a Null, or text against a number).
bool compareCell(const QVariant &cell, const QVariant &literal, const FieldInfo &f, int *result)
{
    if (cell.isNull() || !literal.isValid())
        return false;
    auto sign = [](auto a, auto b) { return a < b ? -1 : (b < a ? 1 : 0); };
    const bool literalText = literal.metaType().id() == QMetaType::QString;
    if (f.type == JetType::Text || f.type == JetType::Memo ||
        (cell.metaType().id() == QMetaType::QString)) {
        *result = cell.toString().compare(literal.toString(), Qt::CaseInsensitive);
        return true;
    }
    if (f.type == JetType::Currency) {
        const auto amount = literalText ? Money::parse(literal.toString())
                            : literal.metaType().id() == QMetaType::Double
                                ? Money::fromDouble(literal.toDouble())
                                : Money::fromWholeUnits(
                                      literal.toBool() && literal.metaType().id() == QMetaType::Bool
                                          ? -1
                                          : literal.toLongLong());
        if (!amount)
            return false;
        *result = sign(cell.toLongLong(), amount->scaled());
        return true;
    }
    double value = 0;
    if (literal.metaType().id() == QMetaType::Bool) {
        value = literal.toBool() ? -1 : 0;
    } else if (literalText) {
        bool ok = false;
        value = literal.toString().toDouble(&ok);
        if (!ok)
            return false;
    } else {
        value = literal.toDouble();
    }
    const double stored =
        f.type == JetType::YesNo ? (JetValue::isTrue(cell) ? -1 : 0) : cell.toDouble();
    if (cell.metaType().id() == QMetaType::LongLong &&
        literal.metaType().id() == QMetaType::LongLong)
        *result = sign(cell.toLongLong(), literal.toLongLong());
    else
        *result = sign(stored, value);
    return true;
}

bool matches(const QVariant &cell, const Term &t, const FieldInfo &f)
{
    if (t.op == u"ISNULL")
        return cell.isNull();
    if (t.op == u"NOTNULL")
        return !cell.isNull();
    if (t.op == u"LIKE" || t.op == u"NOTLIKE") {
        if (cell.isNull())
            return false;
        return jetLike(cell.toString(), t.literal.toString()) == (t.op == u"LIKE");
    }
    int c = 0;
    if (!compareCell(cell, t.literal, f, &c))
        return false;
    if (t.op == u"=")
        return c == 0;
    if (t.op == u"<>")
        return c != 0;
    if (t.op == u"<")
        return c < 0;
    if (t.op == u"<=")
        return c <= 0;
    if (t.op == u">")
        return c > 0;
    return c >= 0;
}

} // namespace

bool Recordset::find(const QString &criterion, int from)
{
    CriterionReader reader(criterion);
    std::vector<Term> terms;
    do {
        Term t;
        const QString name = reader.name();
        t.field = fieldIndex(name);
        if (t.field < 0)
            field(name); // throws
        t.op = reader.op();
        if (t.op != u"ISNULL" && t.op != u"NOTNULL")
            t.literal = reader.literal();
        terms.push_back(t);
    } while (reader.keyword(u"AND"));
    if (!reader.atEnd())
        reader.error();

    auto found = [&](int row) {
        m_noMatch = false;
        m_editMode = EditNone;
        m_pos = row;
        return true;
    };

    // "Key = 37" on an integer field: a hash of first occurrences, so that
    // finding every one of n keys in turn stays linear.
    const Term &first = terms.front();
    const bool wholeLiteral = first.literal.metaType().id() == QMetaType::LongLong;
    if (terms.size() == 1 && first.op == u"=" && wholeLiteral &&
        isIntegral(m_fields[first.field].type)) {
        if (m_d->indexedField != first.field) {
            m_d->index.clear();
            m_d->index.reserve(m_rows);
            for (int r = m_rows - 1; r >= 0; --r) {
                const QVariant &v = cell(r, first.field);
                if (!m_deleted[r] && !v.isNull())
                    m_d->index.insert(v.toLongLong(), r);
            }
            m_d->indexedField = first.field;
        }
        const int row = m_d->index.value(first.literal.toLongLong(), -1);
        if (row < 0) {
            m_noMatch = true;
            return false;
        }
        if (row >= from)
            return found(row);
    }

    for (int r = qMax(from, 0); r < m_rows; ++r) {
        if (m_deleted[r])
            continue;
        bool all = true;
        for (const Term &t : terms) {
            if (!matches(cell(r, t.field), t, m_fields[t.field])) {
                all = false;
                break;
            }
        }
        if (all)
            return found(r);
    }
    m_noMatch = true;
    return false;
}
