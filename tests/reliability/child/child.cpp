// reliability_child SCENARIO: one save through the real window logic, as the windows
// make it, against the suite CORVANE_SHARED_DOCUMENTS points at. The harness kills it or
// fails its writes (faultshim) and then inspects the files and what this prints:
//   stderr  MESSAGE <buttons> <title>|<prompt>   every message shown to the user
//   stdout  TYPED kept|lost|na    after a reported failure: is the typed input still held
//           AUTOCOMMIT 1|0        every open connection back in autocommit mode
//           SAVED n / FAILED n / SILENT n / UNREAD n   (loop) each attempt's outcome
//           SAVED n value / FAILED n / ASKED n   (clerk) each pay details save, and
//           whether it asked whose value stands
// Answers come from CV_ANSWERS (retry, cancel, discard, yes, no; "retry*" repeats).
#include "../reliability.h"
#include "addressbook/addressbooklogic.h"
#include "config/settings.h"
#include "controls/inputboxservice.h"
#include "core/cverror.h"
#include "data/database.h"
#include "data/recordset.h"
#include "launch/addressglobals.h"
#include "messages/messageservice.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QHash>
#include <QLocale>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QStringList>
#include <sqlite3.h>

using namespace Reliability;

namespace {

class ScriptedMessages : public MessageService
{
public:
    ScriptedMessages()
        : m_answers(qEnvironmentVariable("CV_ANSWERS").split(u',', Qt::SkipEmptyParts))
    {
    }

    qint16 show(const MessageRequest &r) override
    {
        QString prompt = r.prompt;
        prompt.replace(u'\r', u' ').replace(u'\n', u' ');
        std::fprintf(stderr, "MESSAGE %d %s|%s\n", int(r.buttons), qPrintable(r.title),
                     qPrintable(prompt));
        if (r.buttons == 4)
            return answer(QStringLiteral("yes"));
        if (r.buttons == ButtonsKeepMineTakeTheirsCancel) {
            ++questions;
            return ResultYes; // keep mine
        }
        // None of these saves says anything but a failure; the old error report is OK-only.
        ++failures;
        return r.buttons == 0 ? qint16(ResultOk) : answer(QStringLiteral("cancel"));
    }

    int failures = 0;  // messages other than a question
    int questions = 0; // whose value stands

private:
    qint16 answer(const QString &fallback)
    {
        QString a = fallback;
        if (!m_answers.isEmpty()) {
            a = m_answers.front();
            // "retry*" answers every later message too, up to a bound, so a loop ends.
            const bool repeat = a.endsWith(u'*') && ++m_repeats < 50;
            a.remove(u'*');
            if (!repeat)
                m_answers.pop_front();
        }
        static const QHash<QString, qint16> codes{{"ok", 1},  {"cancel", 2}, {"retry", 4},
                                                  {"yes", 6}, {"no", 7},     {"discard", 8}};
        return codes.value(a, 1);
    }
    QStringList m_answers;
    int m_repeats = 0;
};

class FixedInput : public InputBoxService
{
public:
    QString ask(const QString &, const QString &, const QString &) override { return NewName; }
};

bool allAutocommit()
{
    for (const QString &name : QSqlDatabase::connectionNames()) {
        const QSqlDatabase db = QSqlDatabase::database(name, false);
        const QVariant h = db.isOpen() ? db.driver()->handle() : QVariant();
        sqlite3 *handle = qstrcmp(h.typeName(), "sqlite3*")
                              ? nullptr
                              : *static_cast<sqlite3 *const *>(h.constData());
        if (handle && !sqlite3_get_autocommit(handle))
            return false;
    }
    return true;
}

QVariant farmValue(const QString &sql)
{
    Database db(Settings().DatabaseName());
    Recordset rs(db, sql, Recordset::Snapshot);
    return rs.eof() ? QVariant() : rs.value(0);
}

qint32 addressIdOf(const QString &name)
{
    return farmValue("SELECT AddressID FROM Addresses WHERE BusName = '" + name + "'").toInt();
}

int indexOfText(const ComboList &list, const QString &text)
{
    int i = list.count() - 1;
    while (i >= 0 && list.item(i).text != text)
        --i;
    return i;
}

void start(AddressBookLogic &logic, qint16 mode, const QString &name)
{
    AddressGlobals::LaunchMode = mode;
    AddressGlobals::CurrentAddressID = name.isEmpty() ? 0 : addressIdOf(name);
    logic.load();
    logic.activate();
    if (!name.isEmpty())
        logic.chooseName(indexOfText(logic.nameList(), name));
}

void choose(PayDetailsEditor &editor, int list, const QString &text)
{
    editor.listFocusIn(list);
    editor.listChosen(list, indexOfText(editor.list(list), text));
    editor.listFocusOut(list);
}

// Returns whether the typed input is still held after the save.
bool saveAddress(AddressBookLogic &logic)
{
    start(logic, 0, EditName);
    const qint32 id = logic.shownAddressId();
    for (std::size_t i = 0; i < std::size(EditedFields); ++i) {
        logic.focusInField(EditedFields[i]);
        logic.editField(EditedFields[i], EditedValues[i]);
        logic.focusOutField(EditedFields[i]);
    }
    logic.chooseName(indexOfText(logic.nameList(), OtherName));
    bool kept = logic.shownAddressId() == id;
    for (std::size_t i = 0; i < std::size(EditedFields); ++i)
        kept = kept && logic.field(EditedFields[i]) == EditedValues[i];
    return kept;
}

bool saveNotes(AddressBookLogic &logic)
{
    start(logic, 0, EditName);
    logic.changeTab(logic.notesTab());
    const QString typed = logic.notes() + "\r\n" + NotesLine;
    logic.editNotes(typed);
    logic.changeTab(AddressBookLogic::firstTab());
    return logic.currentTab() == logic.notesTab() && logic.notes() == typed;
}

bool savePayDetails()
{
    using E = PayDetailsEditor;
    E editor(E::Host::Dialog);
    editor.loadFromSettings(addressIdOf(WorkerName));
    editor.textFocusIn(E::PayRate);
    editor.textEdited(E::PayRate, NewPayRate);
    editor.textFocusOut(E::PayRate);

    const ComboList &occupations = editor.list(E::Occupation);
    choose(editor, E::Occupation,
           occupations.item((occupations.listIndex() + 1) % occupations.count()).text);

    DeductionGrid &grid = editor.deductionGrid();
    QVariant ordinary;
    for (const GridValueItem &item : grid.deductionList())
        if (!item.displayName.contains(u"KiwiSaver") && ordinary.isNull())
            ordinary = item.value;
    while (grid.rowCount() < DeductionRows)
        grid.addRow();
    for (int row = 0; row < DeductionRows; ++row) {
        editor.gridCellEdited(row, DeductionGrid::DeductIdColumn, ordinary);
        editor.gridCellEdited(row, DeductionGrid::FixedAmountColumn,
                              QStringLiteral("$%1.00").arg(row + 1));
    }

    choose(editor, E::EnrolmentType, "Opted in");
    choose(editor, E::EmployeeRate, "KiwiSaver 3%");
    choose(editor, E::EmployerRate, "Employer 3%");
    if (qEnvironmentVariableIsSet("CV_PAUSE_BEFORE_SAVE")) {
        // The harness takes its lock on the wage file now, then lets the save go on.
        std::printf("READY\n");
        std::fflush(stdout);
        char line[16];
        if (!std::fgets(line, sizeof line, stdin))
            return false;
    }
    const bool staysOpen = editor.queryClose();
    return staysOpen && editor.text(E::PayRate) == NewPayRate &&
           editor.deductionGrid().rowCount() == DeductionRows;
}

// Contention: save the entry's customer number again and again until time is up; each
// outcome is checked against what another connection then reads.
void saveLoop(AddressBookLogic &logic, ScriptedMessages &messages, const QString &name, int seconds)
{
    // Opening the window or showing the entry may itself meet a lock (reported to the
    // user, who opens it again): the loop saves only while its entry is on screen.
    const qint32 id = addressIdOf(name);
    const QString read =
        "SELECT CustomerNumber FROM Addresses WHERE AddressID = " + QString::number(id);
    QDeadlineTimer deadline(seconds * 1000);
    for (int n = 1; !deadline.hasExpired(); ++n) {
        if (!logic.farmDatabase() || logic.shownAddressId() != id) {
            logic.unload();
            start(logic, 0, name);
            --n;
            continue;
        }
        const int before = messages.failures;
        logic.editField(AddressBookLogic::CustomerNumber, QString::number(n));
        logic.saveCurrentTab();
        const bool reported = messages.failures > before;
        QString stored;
        try {
            stored = farmValue(read).toString();
        } catch (const CvError &) {
            stored = "?";
        }
        // Saved after a Retry counts as saved; not saved and not told is the fault.
        const char *outcome = stored == u"?"                 ? "UNREAD"
                              : stored == QString::number(n) ? "SAVED"
                              : reported                     ? "FAILED"
                                                             : "SILENT";
        std::printf("%s %d\n", outcome, n);
        std::fflush(stdout);
    }
}

// A clerk on a busy office's books: opens an employee's pay details, changes one field to
// a value of its own, and closes (which saves), again and again until time is up.
void clerkLoop(ScriptedMessages &messages, qint32 addressId, int field, int worker, int seconds)
{
    using E = PayDetailsEditor;
    QDeadlineTimer deadline(seconds * 1000);
    for (int n = 1; !deadline.hasExpired(); ++n) {
        const QString value = field == E::PayRate ? QString::number(worker * 1000 + n)
                                                  : QStringLiteral("w%1n%2").arg(worker).arg(n);
        const int failures = messages.failures, questions = messages.questions;
        E editor(E::Host::Dialog);
        editor.loadFromSettings(addressId);
        editor.textFocusIn(field);
        editor.textEdited(field, value);
        editor.textFocusOut(field);
        const bool saved = !editor.queryClose();
        if (messages.questions > questions)
            std::printf("ASKED %d\n", n);
        if (saved)
            std::printf("SAVED %d %s\n", n, qPrintable(value));
        else
            std::printf("FAILED %d\n", n);
        if (messages.failures > failures)
            std::printf("TOLD %d\n", n);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("TZ", "Pacific/Auckland");
    QLocale::setDefault(QLocale(QLocale::English, QLocale::NewZealand));
    QGuiApplication app(argc, argv);
    const QString scenario = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();

    ScriptedMessages messages;
    setMessageService(&messages);
    FixedInput input;
    AddressBookLogic logic{AddressGlobals::context()};
    logic.setInputBox(&input);

    bool kept = true; // add and delete keep nothing typed
    try {
        if (scenario == u"address") {
            kept = saveAddress(logic);
        } else if (scenario == u"notes") {
            kept = saveNotes(logic);
        } else if (scenario == u"paydetails") {
            kept = savePayDetails();
        } else if (scenario == u"add") {
            start(logic, 1, QString());
            logic.addEntry();
        } else if (scenario == u"delete") {
            start(logic, 0, GoneName);
            logic.deleteEntry();
        } else if (scenario == u"clerk" && argc > 5) {
            clerkLoop(messages, std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                      std::atoi(argv[5]));
        } else if (scenario == u"loop" && argc > 3) {
            saveLoop(logic, messages, QString::fromLocal8Bit(argv[2]), std::atoi(argv[3]));
        } else {
            return 2; // the harness names the scenario
        }
    } catch (const CvError &e) {
        std::fprintf(stderr, "UNCAUGHT %d %s\n", e.number(), qPrintable(e.description()));
        return 3;
    }
    std::printf("TYPED %s\n", messages.failures == 0 ? "na" : kept ? "kept" : "lost");
    std::printf("AUTOCOMMIT %d\n", allAutocommit() ? 1 : 0);
    std::fflush(stdout);
    return 0;
}
