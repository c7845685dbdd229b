#pragma once

#include <QDate>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <initializer_list>

namespace SuiteFiles {

// Values as the suite's data files hold them. The module reads these columns
// by their declared Jet type, so a wrong representation (a double for money,
// 1 for True) shows up as a wrong figure on screen, not as an error.
namespace Store {
// Ten-thousandths of a dollar.
QVariant money(qint64 cents);
// Serial days since 30 December 1899; Null for an invalid date.
QVariant date(const QDate &day);
// -1 for True, 0 for False.
QVariant yesNo(bool value);
// Null for an empty text, as the suite leaves a field nobody typed into.
QVariant text(const QString &value);
// Null for 0, the way an unset long column reads.
QVariant key(qint64 value);
} // namespace Store

// One data file being filled: a connection of its own and one transaction.
// Loading runs without a disk journal; commit() puts the file back in the
// ordinary rollback-journal mode the module opens it in.
class BookWriter
{
public:
    explicit BookWriter(const QString &path);
    ~BookWriter();
    BookWriter(const BookWriter &) = delete;
    BookWriter &operator=(const BookWriter &) = delete;

    QSqlDatabase database() const;
    const QString &path() const { return m_path; }
    void exec(const QString &sql);
    void commit();

private:
    void release();

    QString m_path;
    QString m_connection;
    bool m_inTransaction = false;
};

// A prepared INSERT, reused for every row of one table. Destroy it before the
// BookWriter it was made from.
class RowInserter
{
public:
    RowInserter(BookWriter &book, const QString &table, const QStringList &columns);

    // Values in the order of the columns; returns the new row's key.
    qint64 insert(std::initializer_list<QVariant> values);

private:
    QSqlQuery m_query;
    QString m_table;
    qsizetype m_columns;
};

} // namespace SuiteFiles
