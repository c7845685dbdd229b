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
#include "support/tempserver.h"

#include <algorithm>
#include <map>
#include <optional>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

using Editor = PayDetailsEditor;

QString ch(char16_t c)
{
    return QString(QChar(c));
}

const QStringList &hostileStrings()
{
    // One string for each danger; several strings that take the same path add nothing.
    // clang-format off
    static const QStringList strings = {
        // Quotes and SQL; Jet brackets and wildcards; our placeholders and ampersands.
        "'; DROP TABLE Addresses; --", "[!a-z]*%_", "|0| %1 &&",
        // Control characters (NUL cuts C strings), direction marks, combining macrons; a
        // lone surrogate is stored as QString::toUtf8 makes it ("?").
        "a" + ch(0) + "b\tc\r\n" + ch(0x1b), ch(0x202e) + "Nga" + ch(0x304) + "ti 😀" + ch(0xd800),
        // Blanks, and the empty box (a box's column then holds NULL, the notes "").
        " padded ", "",
        // Amounts and dates the pay fields take, and a date that does not exist.
        " $1,250.00 ", " 1/04/2010 ", "31/02/2020",
        // Past a 255 column, and 10 KB of quotes.
        QString(256, u'x'), QString(10240, u'\'')
    };
    // clang-format on
    return strings;
}

std::string describe(const QString &s)
{
    return QStringLiteral("%1 chars \"%2\"").arg(s.size()).arg(s.left(20)).toStdString();
}

QByteArray text(const QString &s)
{
    // The server's text cannot hold U+0000: a NUL typed there goes.
    static const bool server = !testServer().isEmpty();
    QByteArray bytes = s.toUtf8();
    if (server)
        bytes.replace('\0', QByteArray());
    return "text:" + bytes;
}

// A stored number: SQLite keeps a whole real in a numeric column as an integer.
std::optional<double> numberOf(const QByteArray &stored)
{
    const QByteArray type = stored.left(stored.indexOf(':'));
    if (type != "integer" && type != "real")
        return std::nullopt;
    return stored.mid(stored.indexOf(':') + 1).toDouble();
}

QByteArray money(const QString &typed)
{
    const auto m = Money::parse(typed.trimmed().isEmpty() ? QStringLiteral("0") : typed.trimmed());
    return m ? "integer:" + QByteArray::number(m->scaled()) : "-";
}

// The windows a string is typed into, each saved as a whole: the address window (every
// box, then on to the neighbour and back), its notes tab, the pay details dialog (every
// field, then closed) and each cell of a deduction in a dialog of its own (a percent
// clears the fixed amount).
enum Window { Address, Notes, PayDialog, FixedCell, RateCell, WindowCount };

// One box the user types into and the column that stores it. field: the logic's index.
struct Box
{
    Window window;
    int field;
    QString table, column, where;
    int maxLength;
    QString cut(const QString &s) const { return maxLength > 0 ? s.left(maxLength) : s; }
    // Taken in a normal form (amounts, dates), not byte for byte.
    bool normal() const
    {
        return window >= PayDialog && column != "TaxCode" && column != "IRDnumber";
    }
};

QDate dateOf(const QByteArray &stored)
{
    const auto n = numberOf(stored);
    return n ? SerialDate::toDate(*n) : QDate();
}

// What the column should hold after the save; "-" when nothing can be right (the box must
// then be refused). hired: the stored hire date.
QByteArray expected(const Box &box, const QString &typed, const QByteArray &before,
                    const QByteArray &after, const QByteArray &hired)
{
    const QString t = typed.trimmed();
    if (box.window == FixedCell || box.column == "PayRate" || box.column == "Yearlytotal")
        return money(typed); // an emptied amount is $0.00 once left
    if (box.window == RateCell) {
        const auto rate = numberOf(after);
        const auto percent = DeductionGrid::isEmptyCell(typed) ? 0.0 : DeductionGrid::number(typed);
        return rate && percent && qFuzzyCompare(1 + float(*rate), 1 + float(*percent)) ? after
                                                                                       : "-";
    }
    if (box.window == Notes || !typed.isEmpty()) {
        if (!box.normal())
            return text(typed);
    } else if (box.window == Address && (box.field == AddressBookLogic::BusName ||
                                         box.field == AddressBookLogic::ContactLastName)) {
        return before; // an emptied name comes back
    } else if (box.window == Address || !box.normal()) {
        return "NULL";
    }
    // Dates. An emptied start date keeps the stored one; a finish date after the hire date
    // is cleared, as the suite has always done.
    const auto date = SerialDate::parse(t);
    if (t.isEmpty())
        return box.column == "KiwiSaverStartDate" ? before : "NULL";
    if (box.column == "Datefinished" && date && dateOf(hired) < date->date())
        return "NULL";
    return date && dateOf(after) == date->date() ? after : "-";
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
            if (suite.onServer())
                break;
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "raw:" + file);
            db.setDatabaseName(file);
            ASSERT_TRUE(db.open());
        }
    }
    void TearDown() override
    {
        for (const QString &file : {suite.farmPath(), suite.wagePath()}) {
            if (!suite.onServer())
                QSqlDatabase::removeDatabase("raw:" + file);
        }
        AddressGlobals::reset();
    }

    // Every row of a query as text, for before-and-after comparisons.
    QString dump(const QString &file, const QString &sql) const
    {
        if (suite.onServer()) {
            QString out;
            for (const QStringList &row : TempServer::rows(suite.serverConnection(), sql))
                for (const QString &cell : row)
                    out += (cell.isNull() ? QStringLiteral("NULL") : cell) + u'\x1f';
            return out;
        }
        QSqlQuery q(QSqlDatabase::database("raw:" + file));
        EXPECT_TRUE(q.exec(sql)) << sql.toStdString();
        QString out;
        while (q.next())
            for (int i = 0; i < q.record().count(); ++i)
                out += (q.isNull(i) ? QStringLiteral("NULL") : q.value(i).toString()) + u'\x1f';
        return out;
    }
    // Everything but the entry being edited, and the schema.
    QString others() const
    {
        return dump(suite.farmPath(), "SELECT * FROM Addresses WHERE AddressID NOT IN (10, 37) "
                                      "ORDER BY AddressID") +
               dump(suite.wagePath(), "SELECT * FROM Employees WHERE EmployeeID <> 5") +
               dump(suite.wagePath(), "SELECT * FROM EmployeeDeductions WHERE EmployeeID <> 5") +
               (suite.onServer()
                    ? dump({}, "SELECT table_name, column_name, data_type, column_default FROM "
                               "information_schema.columns WHERE table_schema IN ('farm', "
                               "'wage') ORDER BY 1, 2")
                    : dump(suite.farmPath(), "SELECT sql FROM sqlite_master ORDER BY name") +
                          dump(suite.wagePath(), "SELECT sql FROM sqlite_master ORDER BY name"));
    }
    // A column as stored: NULL, or its type and bytes.
    QByteArray stored(const Box &box) const
    {
        if (suite.onServer()) {
            // The server's types named as SQLite names its storage classes.
            const QStringList row =
                TempServer::rows(
                    suite.serverConnection(),
                    QStringLiteral(
                        "SELECT CASE WHEN %1 IS NULL THEN NULL WHEN pg_typeof(%1)::text IN "
                        "('smallint', 'integer', 'bigint') THEN 'integer' WHEN "
                        "pg_typeof(%1)::text = 'double precision' THEN 'real' ELSE 'text' "
                        "END, %1::text FROM %2 WHERE %3")
                        .arg(box.column, box.table, box.where))
                    .value(0);
            if (row.isEmpty() || row[0].isNull())
                return "NULL";
            return row[0].toUtf8() + ':' + row[1].toUtf8();
        }
        QSqlQuery q(QSqlDatabase::database(
            "raw:" + (box.table == "Addresses" ? suite.farmPath() : suite.wagePath())));
        q.exec(QStringLiteral("SELECT typeof(%1), CAST(%1 AS BLOB) FROM %2 WHERE %3")
                   .arg(box.column, box.table, box.where));
        if (!q.next() || q.isNull(0) || q.value(0).toString() == u"null")
            return "NULL";
        return q.value(0).toByteArray() + ':' + q.value(1).toByteArray();
    }

    // Types into the box as a user does; true when it was refused there with a message.
    bool type(const Box &box, const QString &s)
    {
        const std::size_t before = messages.requests.size();
        switch (box.window) {
        case Address:
            book->focusInField(box.field);
            book->editField(box.field, s);
            book->focusOutField(box.field);
            return false;
        case Notes:
            book->changeTab(book->notesTab());
            book->editNotes(s);
            return false;
        case PayDialog: {
            const QString was = openEditor().text(box.field);
            if (EditorBooks::type(*editor, box.field, s))
                return false;
            EXPECT_EQ(editor->text(box.field), s) << "the user's text stays";
            editor->textEdited(box.field, was); // kept there, the user puts it back
            EXPECT_TRUE(editor->textFocusOut(box.field));
            return messages.requests.size() > before;
        }
        default:
            int row = 0;
            while (row < openEditor().deductionGrid().rowCount() &&
                   editor->deductionGrid().value(row, DeductionGrid::DeductIdColumn).toInt() != 7)
                ++row;
            return !editor->gridCellEdited(row, box.field, s) && messages.requests.size() > before;
        }
    }

    // The pay details dialog on employee 37, opened for the first box typed into it.
    Editor &openEditor()
    {
        if (!editor) {
            editor = std::make_unique<Editor>(Editor::Host::Dialog);
            editor->loadFromSettings(37);
        }
        return *editor;
    }

    void save(Window w)
    {
        if (w == Address) {
            for (qint32 id : {11, 10}) {
                const auto &items = book->nameList().items();
                const auto it = std::find_if(items.begin(), items.end(),
                                             [id](const ComboItem &i) { return i.data == id; });
                ASSERT_NE(it, items.end()) << "entry " << id << " not listed";
                book->chooseName(int(it - items.begin()));
            }
        } else if (w == Notes) {
            book->changeTab(AddressBookLogic::firstTab());
        } else {
            EXPECT_FALSE(editor->queryClose()) << "stays open";
            editor.reset();
        }
    }

    std::unique_ptr<AddressBookLogic> book;
    std::unique_ptr<Editor> editor;
};

TEST_F(HostileInput, EveryTextFieldStoresRefusesOrNormalisesEveryString)
{
    const QString othersBefore = others();
    AddressGlobals::LaunchMode = 0;
    AddressGlobals::CurrentAddressID = 10;
    book = std::make_unique<AddressBookLogic>(AddressGlobals::context());
    book->load();
    book->activate();
    ASSERT_EQ(book->shownAddressId(), 10);
    std::vector<Box> boxes;
    for (int f = 0; f < AddressBookLogic::FieldCount; ++f)
        boxes.push_back({Address, f, "Addresses", AddressFields::table[std::size_t(f)].column,
                         "AddressID=10", book->maxLength(f)});
    boxes.push_back({Notes, 0, "Addresses", "notes", "AddressID=10", 0});
    const char *const columns[Editor::TextCount] = {
        "Birthdate", "IRDnumber",    "PayRate", "Yearlytotal",
        "Datehired", "Datefinished", "TaxCode", "KiwiSaverStartDate"};
    for (int f = 0; f < Editor::TextCount; ++f)
        boxes.push_back(
            {PayDialog, f, "Employees", columns[f], "EmployeeID=5", Editor::maxLength(f)});
    const QString deduction = "EmployeeID=5 AND DeductID=7";
    boxes.push_back({FixedCell, DeductionGrid::FixedAmountColumn, "EmployeeDeductions",
                     "FixedAmount", deduction, 0});
    boxes.push_back({RateCell, DeductionGrid::SpecialRateColumn, "EmployeeDeductions",
                     "SpecialRate", deduction, 0});
    const Box hired{PayDialog, Editor::Datehired, "Employees", "Datehired", "EmployeeID=5", 0};

    for (const QString &s : hostileStrings()) {
        for (int w = 0; w < WindowCount; ++w) {
            std::map<const Box *, std::pair<QByteArray, bool>> before; // stored, told
            for (const Box &box : boxes)
                if (box.window == w)
                    before[&box] = {stored(box), type(box, box.cut(s))};
            const std::size_t messagesBefore = messages.requests.size();
            save(Window(w));
            // A box refused by the save says so in a message of its own.
            const std::size_t shown = messages.requests.size() - messagesBefore;
            std::size_t refusedBySave = 0;
            for (const auto &[box, was] : before) {
                const auto &[storedBefore, told] = was;
                const QString typed = box->cut(s);
                const QByteArray after = stored(*box);
                const QByteArray want = expected(*box, typed, storedBefore, after, stored(hired));
                if (after == want)
                    continue;
                if ((told || shown > 0) && after == storedBefore) {
                    refusedBySave += !told;
                } else {
                    ADD_FAILURE() << box->column.toStdString() << ": typed " << describe(typed)
                                  << ", stored " << after.left(60).toHex(' ').toStdString()
                                  << ", expected " << want.left(60).toHex(' ').toStdString();
                }
            }
            if (refusedBySave != shown) {
                ADD_FAILURE() << shown << " messages for " << refusedBySave
                              << " boxes refused by the save, typed " << describe(s);
            }
        }
    }
    editor.reset();
    book->queryUnload();
    book->unload();

    EXPECT_EQ(others(), othersBefore) << "only the entry being edited changes";
    for (const QString &file : {suite.farmPath(), suite.wagePath()}) {
        if (suite.onServer())
            break;
        EXPECT_EQ(dump(file, "PRAGMA integrity_check"), QString("ok\x1f"));
    }
}
