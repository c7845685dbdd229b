// Hostile input through every text field of the address window, the pay details dialog
// and its deductions grid: each string is stored byte for byte (cut where the box stops
// typing), taken in its normal form (amounts, dates), or refused with a message; nothing
// else in either file changes, the schema included.
#include "../paydetails/editor_fixture.h"
#include "addressbook/addressbooklogic.h"
#include "data/money.h"
#include "data/serialdate.h"
#include "launch/addressglobals.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"

#include <cstdio>
#include <optional>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

QString ch(char16_t c)
{
    return QString(QChar(c));
}

const QStringList &hostileStrings()
{
    // One group of strings to a line or two.
    // clang-format off
    static const QStringList strings = {
        // Quotes and SQL: a value concatenated into a statement would break or change it.
        "'", "\"", "O'Brien", "''", "'; DROP TABLE Addresses; --", "\" OR 1=1 --",
        "' OR '1'='1", "Robert'); DELETE FROM Employees; --",
        // Jet brackets and LIKE wildcards, in both dialects, and the escape character.
        "[", "]", "[Addresses]", "*", "?", "%", "_", "#", "\\", "[!a-z]*", "100%_off",
        // Our message placeholders, QString::arg's, and accelerator ampersands.
        "|0|", "|1|", "|", "%1 %2", "&", "&&",
        // Control characters: NUL cuts C strings; tab, CR and LF lines; ESC terminals.
        "a" + ch(0) + "b", ch(0), "a\tb", "\r", "\n", "line1\r\nline2", ch(0x01),
        ch(0x1b) + "[31mred", ch(0x7f),
        // Direction marks and invisible characters that change how a name reads.
        ch(0x202e) + "evil.exe", ch(0x200f), "a" + ch(0x200d) + "b", ch(0xfeff) + "bom",
        "a" + ch(0xa0) + "b",
        // Combining marks and macrons: one letter, several code units.
        "e" + ch(0x301), "Z" + ch(0x36b) + ch(0x33e) + ch(0x35b), "Ngāti", "Ōtorohanga",
        "Tāwhiti", "ĀĒĪŌŪ", "株式会社",
        // Surrogate pairs, and lone surrogates: QString keeps them; the stored form
        // expected is what QString::toUtf8 makes of them ("?" for each).
        "😀", "🏳️‍🌈 farm", ch(0xd800), "a" + ch(0xdc00) + "b",
        // Blanks, and the empty box (a box's column then holds NULL, the notes "").
        " leading", "trailing ", "   ", "",
        // Amounts and dates, plain and padded: the pay fields take these.
        "25.50", " $1,250.00 ", "(12.00)", "1e308", "29/02/2024", " 1/04/2010 ", "31/02/2020",
        // Lengths: at and past a 255 column, 10 KB plain, of quotes, and of macrons.
        QString(255, u'x'), QString(256, u'x'), QString(10240, u'x'), QString(10240, u'\''),
        QString(5120, u'ā'),
    };
    // clang-format on
    return strings;
}

// A tally of what happened to every string in every field.
struct Tally
{
    int stored = 0, normal = 0, refused = 0, failures = 0;
};

QString describe(const QString &s)
{
    return s.size() > 40 ? QStringLiteral("%1 chars starting \"%2\"").arg(s.size()).arg(s.left(12))
                         : '"' + s + "\" " + s.toUtf8().toHex(' ');
}

} // namespace

class HostileInput : public EditorBooks
{
protected:
    void SetUp() override
    {
        EditorBooks::SetUp();
        AddressGlobals::reset();
        suite.execFarm("INSERT INTO Addresses (AddressID, BusName, ContactLastName) VALUES "
                       "(10, 'Edit Me', 'Orig'), (11, 'Neighbour', 'Next')");
        suite.execWage("INSERT INTO Employees (EmployeeID, AddressID, TaxCode, IRDnumber, PayRate)"
                       " VALUES (6, 38, 'S', '123-456-789', 10000);"
                       "INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount) "
                       "VALUES (6, 7, 20000);"
                       // A salary, so that putting a refused one back stores what was there.
                       "UPDATE Employees SET Yearlytotal = 520000000 WHERE EmployeeID = 5");
        for (const QString &file : {suite.farmPath(), suite.wagePath()}) {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "raw:" + file);
            db.setDatabaseName(file);
            ASSERT_TRUE(db.open());
        }
    }
    void TearDown() override
    {
        for (const QString &file : {suite.farmPath(), suite.wagePath()})
            QSqlDatabase::removeDatabase("raw:" + file);
        AddressGlobals::reset();
    }

    // Every row of a query as text, for before-and-after comparisons.
    QString dump(const QString &file, const QString &sql) const
    {
        QSqlQuery q(QSqlDatabase::database("raw:" + file));
        EXPECT_TRUE(q.exec(sql)) << sql.toStdString();
        QString out;
        while (q.next())
            for (int i = 0; i < q.record().count(); ++i)
                out += (q.isNull(i) ? QStringLiteral("NULL") : q.value(i).toString()) + u'\x1f';
        return out;
    }
    // A column as stored: NULL, or its type and bytes.
    QByteArray raw(const QString &file, const QString &table, const QString &column,
                   const QString &where) const
    {
        QSqlQuery q(QSqlDatabase::database("raw:" + file));
        q.exec(QStringLiteral("SELECT typeof(%1), CAST(%1 AS BLOB) FROM %2 WHERE %3")
                   .arg(column, table, where));
        if (!q.next() || q.isNull(0) || q.value(0).toString() == u"null")
            return "NULL";
        return q.value(0).toByteArray() + ':' + q.value(1).toByteArray();
    }
    QString others() const
    {
        return dump(suite.farmPath(), "SELECT * FROM Addresses WHERE AddressID NOT IN (10, 37) "
                                      "ORDER BY AddressID") +
               dump(suite.wagePath(), "SELECT * FROM Employees WHERE EmployeeID <> 5") +
               dump(suite.wagePath(), "SELECT * FROM EmployeeDeductions WHERE EmployeeID <> 5");
    }
    QString schemas() const
    {
        const QString sql = "SELECT sql FROM sqlite_master ORDER BY name";
        return dump(suite.farmPath(), sql) + dump(suite.wagePath(), sql);
    }

    // Stored as expected; or refused with a message and left as it was.
    // Returns whether it was refused.
    bool judge(const QString &where, const QString &typed, const QByteArray &before,
               const QByteArray &after, const QByteArray &expected, bool told,
               bool normalForm = false)
    {
        if (after == expected)
            ++(normalForm ? tally.normal : tally.stored);
        else if (told && after == before)
            return ++tally.refused;
        else {
            ++tally.failures;
            ADD_FAILURE() << where.toStdString() << ": typed " << describe(typed).toStdString()
                          << "\n  stored   " << after.left(120).toHex(' ').toStdString()
                          << "\n  expected " << expected.left(120).toHex(' ').toStdString()
                          << (told ? "\n  with a message" : "\n  without a message");
        }
        return false;
    }

    Tally tally;
};

TEST_F(HostileInput, EveryTextFieldStoresRefusesOrNormalisesEveryString)
{
    const QString schemaBefore = schemas();
    const QString othersBefore = others();
    const auto text = [](const QString &s) { return "text:" + s.toUtf8(); };

    // The address window, each string in each box and in the notes, saved by moving on.
    AddressGlobals::LaunchMode = 0;
    AddressGlobals::CurrentAddressID = 10;
    AddressBookLogic book(AddressGlobals::context());
    book.load();
    book.activate();
    const auto pick = [&](qint32 id) {
        for (int i = 0; i < book.nameList().count(); ++i)
            if (book.nameList().items()[std::size_t(i)].data == id)
                return book.chooseName(i);
        FAIL() << "entry " << id << " not listed";
    };
    ASSERT_EQ(book.shownAddressId(), 10);
    for (const QString &s : hostileStrings()) {
        // Every box at once, then on to the neighbour and back: one save, as a user makes it.
        const auto column = [](int f) {
            return QString(AddressFields::table[std::size_t(f)].column);
        };
        const auto stored = [&](const QString &column) {
            return raw(suite.farmPath(), "Addresses", column, "AddressID=10");
        };
        QByteArray before[AddressBookLogic::FieldCount];
        const size_t told = messages.requests.size();
        for (int f = 0; f < AddressBookLogic::FieldCount; ++f) {
            before[f] = stored(column(f));
            book.focusInField(f);
            book.editField(f, book.maxLength(f) > 0 ? s.left(book.maxLength(f)) : s);
            book.focusOutField(f);
        }
        pick(11);
        pick(10);
        // A refused box says so in a message of its own.
        const size_t shown = messages.requests.size() - told;
        size_t refused = 0;
        for (int f = 0; f < AddressBookLogic::FieldCount; ++f) {
            const QString typed = book.maxLength(f) > 0 ? s.left(book.maxLength(f)) : s;
            const bool keeps =
                f == AddressBookLogic::BusName || f == AddressBookLogic::ContactLastName;
            refused +=
                judge("Addresses." + column(f), typed, before[f], stored(column(f)),
                      typed.isEmpty() ? (keeps ? before[f] : QByteArray("NULL")) : text(typed),
                      shown > 0);
        }
        if (refused != shown) {
            ++tally.failures;
            ADD_FAILURE() << shown << " messages for " << refused << " refused boxes, typed "
                          << describe(s).toStdString();
        }
        const QByteArray notesBefore = stored("notes");
        const size_t toldNotes = messages.requests.size();
        book.changeTab(book.notesTab());
        book.editNotes(s);
        book.changeTab(AddressBookLogic::firstTab());
        judge("Addresses.notes", s, notesBefore, stored("notes"), text(s),
              messages.requests.size() > toldNotes);
    }
    book.queryUnload();
    book.unload();

    // The pay details dialog on employee 37: each string in each field, then closed.
    using Editor = PayDetailsEditor;
    const char *const columns[Editor::TextCount] = {
        "Birthdate", "IRDnumber",    "PayRate", "Yearlytotal",
        "Datehired", "Datefinished", "TaxCode", "KiwiSaverStartDate"};
    const auto wageRaw = [&](const QString &column) {
        return raw(suite.wagePath(), "Employees", column, "EmployeeID=5");
    };
    // A stored number: SQLite keeps a whole real in a numeric column as an integer.
    const auto numberOf = [](const QByteArray &stored) -> std::optional<double> {
        const qsizetype colon = stored.indexOf(':');
        const QByteArray type = stored.left(colon);
        if (type != "integer" && type != "real")
            return std::nullopt;
        return stored.mid(colon + 1).toDouble();
    };
    const auto dateOf = [&](const QByteArray &stored) {
        const auto n = numberOf(stored);
        return n ? SerialDate::toDate(*n) : QDate();
    };
    const auto cell = [&](const char *column) {
        return raw(suite.wagePath(), "EmployeeDeductions", column, "EmployeeID=5 AND DeductID=7");
    };
    for (const QString &s : hostileStrings()) {
        // Every field of one dialog, then the two grid cells, then closed: one save.
        QByteArray before[Editor::TextCount];
        bool told[Editor::TextCount] = {};
        Editor editor(Editor::Host::Dialog);
        editor.loadFromSettings(37);
        for (int f = 0; f < Editor::TextCount; ++f) {
            before[f] = wageRaw(columns[f]);
            const size_t messagesBefore = messages.requests.size();
            const QString was = editor.text(f);
            editor.textFocusIn(f);
            editor.textEdited(f, Editor::maxLength(f) > 0 ? s.left(Editor::maxLength(f)) : s);
            if (!editor.textFocusOut(f)) { // the user is kept there and puts it back
                told[f] = messages.requests.size() > messagesBefore;
                editor.textEdited(f, was);
                EXPECT_TRUE(editor.textFocusOut(f));
            }
        }
        EXPECT_FALSE(editor.queryClose()) << "closes, typed " << describe(s).toStdString();
        const char *const cells[] = {"FixedAmount", "SpecialRate"};
        const int cellColumns[] = {DeductionGrid::FixedAmountColumn,
                                   DeductionGrid::SpecialRateColumn};
        QByteArray cellBefore[2], afterCells[2];
        bool cellTold[2] = {};
        int row = 0;
        while (row < editor.deductionGrid().rowCount() &&
               editor.deductionGrid().value(row, DeductionGrid::DeductIdColumn).toInt() != 7)
            ++row;
        ASSERT_LT(row, editor.deductionGrid().rowCount());
        // Each cell in a dialog of its own: a percent clears the fixed amount.
        for (int c = 0; c < 2; ++c) {
            Editor grid(Editor::Host::Dialog);
            grid.loadFromSettings(37);
            cellBefore[c] = cell(cells[c]);
            const size_t messagesBefore = messages.requests.size();
            cellTold[c] = !grid.gridCellEdited(row, cellColumns[c], s) &&
                          messages.requests.size() > messagesBefore;
            EXPECT_FALSE(grid.queryClose())
                << cells[c] << " closes, typed " << describe(s).toStdString() << "; said "
                << messages.requests.back().prompt.toStdString();
            afterCells[c] = cell(cells[c]);
        }

        for (int f = 0; f < Editor::TextCount; ++f) {
            const QString typed = Editor::maxLength(f) > 0 ? s.left(Editor::maxLength(f)) : s;
            const QString t = typed.trimmed();
            const QByteArray after = wageRaw(columns[f]);
            QByteArray expected = typed.isEmpty() ? QByteArray("NULL") : text(typed);
            if (f == Editor::PayRate || f == Editor::Yearlytotal) {
                // An emptied amount is $0.00 once the field is left.
                const auto money = Money::parse(t.isEmpty() ? QStringLiteral("0") : t);
                expected = money ? "integer:" + QByteArray::number(money->scaled()) : "-";
            } else if (f != Editor::TaxCode && f != Editor::IRDnumber) {
                const auto date = SerialDate::parse(t);
                // An emptied start date keeps the stored one; a finish date after the hire
                // date is cleared, as the suite has always done.
                if (t.isEmpty())
                    expected = f == Editor::KiwiSaverStartDate ? before[f] : QByteArray("NULL");
                else if (f == Editor::Datefinished && date &&
                         dateOf(wageRaw("Datehired")) < date->date())
                    expected = "NULL";
                else
                    expected = date && dateOf(after) == date->date() ? after : "-";
            }
            judge(columns[f], typed, before[f], after, expected, told[f],
                  f != Editor::TaxCode && f != Editor::IRDnumber);
        }
        // Fixed Amount takes an amount, Percent any number (an amount too); empty is 0.
        const auto amount = Money::parse(s.trimmed().isEmpty() ? QStringLiteral("0") : s);
        const auto percent = DeductionGrid::isEmptyCell(s) ? 0.0 : DeductionGrid::number(s);
        const auto rate = numberOf(afterCells[1]);
        judge(cells[0], s, cellBefore[0], afterCells[0],
              amount ? "integer:" + QByteArray::number(amount->scaled()) : "-", cellTold[0], true);
        judge(cells[1], s, cellBefore[1], afterCells[1],
              rate && percent && qFuzzyCompare(1 + float(*rate), 1 + float(*percent))
                  ? afterCells[1]
                  : "-",
              cellTold[1], true);
    }

    EXPECT_EQ(schemas(), schemaBefore);
    EXPECT_EQ(others(), othersBefore) << "only the entry being edited changes";
    for (const QString &file : {suite.farmPath(), suite.wagePath()})
        EXPECT_EQ(dump(file, "PRAGMA integrity_check"), QString("ok\x1f"));
    std::printf("hostile input: %lld strings x %d address fields + %d pay fields + 2 grid cells: "
                "stored byte for byte %d, taken in normal form %d, refused with a message %d, "
                "failures %d\n",
                static_cast<long long>(hostileStrings().size()), AddressBookLogic::FieldCount + 1,
                int(Editor::TextCount), tally.stored, tally.normal, tally.refused, tally.failures);
}
