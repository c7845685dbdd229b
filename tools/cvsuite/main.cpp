// cvsuite: makes the suite's shared documents folder with empty, demo or bulk
// books, for tests, demonstrations and benchmarks.
#include "core/cverror.h"
#include "suitefiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>
#include <QTextStream>

#include <optional>

namespace {

const char kUsage[] =
    "Usage: cvsuite init DIR [--force]\n"
    "       cvsuite demo DIR [--force]\n"
    "       cvsuite bulk DIR --addresses N --employees M [--notes-bytes K] [--seed S]\n"
    "                        [--force]\n"
    "\n"
    "Lays out a shared documents folder the way the suite does:\n"
    "DIR/Corvane/Common/Corvane.ini, DIR/data/Farm32.mdb and DIR/data/Wage32.mdb.\n"
    "Start the module with CORVANE_SHARED_DOCUMENTS=DIR to use them. The three are\n"
    "links into DIR/.cvsuite, so that a replacement is all or nothing even if\n"
    "cvsuite is killed half way.\n"
    "\n"
    "  init              empty data files\n"
    "  demo              a New Zealand farm's books: about 40 entries, 8 of them staff\n"
    "  bulk              N generated entries of which M are employees, for benchmarks\n"
    "  --notes-bytes K   one employee in a thousand, the first among them, gets notes\n"
    "                    of exactly K bytes\n"
    "  --seed S          another set of generated rows (the same S, the same rows)\n"
    "  --force           replace data files that exist; without it cvsuite refuses\n"
    "                    and changes nothing (an existing INI file is always kept\n"
    "                    unless --force is given)\n";

constexpr int kMaxAddresses = 10'000'000;
constexpr int kMaxNotesBytes = 100'000'000;

struct Request
{
    QString command;
    QString dir;
    bool force = false;
    SuiteFiles::BulkOptions bulk;
};

class UsageError
{
public:
    explicit UsageError(QString message) : m_message(std::move(message)) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

int number(const QString &option, const QString &text, int max)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!ok || value < 0 || value > max)
        throw UsageError(QString("%1 wants a whole number from 0 to %2, not \"%3\"")
                             .arg(option)
                             .arg(max)
                             .arg(text));
    return value;
}

Request parse(const QStringList &args)
{
    if (args.isEmpty())
        throw UsageError("no command given");
    Request r;
    r.command = args[0];
    if (r.command != "init" && r.command != "demo" && r.command != "bulk")
        throw UsageError("unknown command \"" + r.command + "\"");

    std::optional<int> addresses, employees;
    QStringList positional;
    for (qsizetype i = 1; i < args.size(); ++i) {
        QString arg = args[i];
        if (!arg.startsWith("--")) {
            positional << arg;
            continue;
        }
        QString value;
        const qsizetype eq = arg.indexOf('=');
        const bool hasValue = eq >= 0;
        if (hasValue) {
            value = arg.mid(eq + 1);
            arg = arg.left(eq);
        }
        if (arg == "--force" && !hasValue) {
            r.force = true;
            continue;
        }
        const bool bulkOption = arg == "--addresses" || arg == "--employees" ||
                                arg == "--notes-bytes" || arg == "--seed";
        if (!bulkOption)
            throw UsageError("unknown option " + args[i]);
        if (r.command != "bulk")
            throw UsageError(arg + " belongs to the bulk command");
        if (!hasValue) {
            if (++i >= args.size())
                throw UsageError(arg + " wants a value");
            value = args[i];
        }
        if (arg == "--addresses")
            addresses = number(arg, value, kMaxAddresses);
        else if (arg == "--employees")
            employees = number(arg, value, kMaxAddresses);
        else if (arg == "--notes-bytes")
            r.bulk.notesBytes = number(arg, value, kMaxNotesBytes);
        else {
            bool ok = false;
            r.bulk.seed = value.toULongLong(&ok, 10);
            if (!ok)
                throw UsageError("--seed wants a whole number, not \"" + value + "\"");
        }
    }
    if (positional.isEmpty())
        throw UsageError("no folder given");
    if (positional.size() > 1)
        throw UsageError("one folder only, not \"" + positional.join("\", \"") + "\"");
    r.dir = QDir::cleanPath(QFileInfo(positional[0]).absoluteFilePath());

    if (r.command == "bulk") {
        if (!addresses || !employees)
            throw UsageError("bulk wants --addresses N and --employees M");
        if (*employees > *addresses)
            throw UsageError(QString("--employees %1 is more than --addresses %2")
                                 .arg(*employees)
                                 .arg(*addresses));
        r.bulk.addresses = *addresses;
        r.bulk.employees = *employees;
        r.bulk.force = r.force;
    }
    return r;
}

void run(const Request &r)
{
    if (r.command == "init") {
        // The library's init keeps existing files quietly; here, as for the
        // other commands, asking to make what is there already is an error.
        if (!r.force)
            SuiteFiles::refuseExistingDataFiles(r.dir);
        SuiteFiles::initSuite(r.dir, r.force);
    } else if (r.command == "demo") {
        SuiteFiles::demoSuite(r.dir, r.force);
    } else {
        SuiteFiles::bulkSuite(r.dir, r.bulk);
    }
}

void report(QTextStream &out, const Request &r, qint64 ms)
{
    const QLocale c = QLocale::c();
    out << "Made " << (r.command == "init" ? "empty" : r.command) << " books in " << r.dir << " ("
        << c.toString(double(ms) / 1000, 'f', 1) << " s)\n";
    out << "  " << SuiteFiles::iniPath(r.dir) << "\n";
    for (const QString &path : {SuiteFiles::farmPath(r.dir), SuiteFiles::wagePath(r.dir)}) {
        QLocale grouped(QLocale::English, QLocale::NewZealand);
        out << "  " << path << "  " << grouped.toString(QFileInfo(path).size()) << " bytes\n";
        QStringList counts;
        for (const auto &[table, rows] : SuiteFiles::rowCounts(path)) {
            if (rows > 0)
                counts << table + " " + grouped.toString(rows);
        }
        if (!counts.isEmpty())
            out << "    " << counts.join(", ") << "\n";
    }
    out << "Use it with CORVANE_SHARED_DOCUMENTS=" << r.dir << "\n";
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList args = app.arguments().mid(1);
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "-h" || args[0] == "help")) {
        out << kUsage;
        return 0;
    }
    Request request;
    try {
        request = parse(args);
    } catch (const UsageError &e) {
        err << "cvsuite: " << e.message() << "\n\n" << kUsage;
        return 2;
    }
    try {
        QElapsedTimer timer;
        timer.start();
        run(request);
        report(out, request, timer.elapsed());
    } catch (const CvError &e) {
        err << "cvsuite: " << e.description() << "\n";
        return 1;
    }
    return 0;
}
