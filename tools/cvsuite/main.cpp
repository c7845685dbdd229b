// cvsuite: makes the suite's shared documents folder with empty, demo or bulk
// books, for tests, demonstrations and benchmarks, and moves books between the
// files and a PostgreSQL server.
#include "core/cverror.h"
#include "serverbooks.h"
#include "suitefiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>
#include <QTextStream>

#include <cstdio>
#include <optional>
#include <unistd.h>

namespace {

const char kUsage[] =
    "Usage: cvsuite init DIR [--force]\n"
    "       cvsuite demo DIR [--force]\n"
    "       cvsuite bulk DIR --addresses N --employees M [--notes-bytes K] [--seed S]\n"
    "                        [--force]\n"
    "       cvsuite init|demo|bulk --server CONNECTION [options as above]\n"
    "       cvsuite to-server DIR CONNECTION [--force]\n"
    "       cvsuite from-server CONNECTION DIR [--force]\n"
    "       cvsuite server-schema\n"
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
    "                    unless --force is given)\n"
    "\n"
    "On a PostgreSQL server (15 or later) the books are the schemas farm and wage of\n"
    "one database. CONNECTION is libpq's: postgresql://host/database or\n"
    "service=name; the password comes from libpq's password file, never the command.\n"
    "  --server C        make the books on the server instead of in a folder\n"
    "  to-server         copy the suite in DIR onto the server\n"
    "  from-server       copy the server's books into DIR's data files (a backup\n"
    "                    to carry away)\n"
    "  server-schema     print the server's tables, made from schema/\n"
    "A copy is one transaction and ends with a count of every table's rows.\n";

constexpr int kMaxAddresses = 10'000'000;
constexpr int kMaxNotesBytes = 100'000'000;

struct Request
{
    QString command;
    QString dir;
    QString server;
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
    static const QStringList commands{"init",      "demo",        "bulk",
                                      "to-server", "from-server", "server-schema"};
    if (!commands.contains(r.command))
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
        if (arg == "--server") {
            if (!hasValue) {
                if (++i >= args.size())
                    throw UsageError("--server wants a connection");
                value = args[i];
            }
            r.server = value;
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
    if (r.command == "server-schema") {
        if (!positional.isEmpty())
            throw UsageError("server-schema takes nothing more");
        return r;
    }
    if (r.command == "to-server" || r.command == "from-server") {
        if (positional.size() != 2 || !r.server.isEmpty())
            throw UsageError(r.command + " wants a folder and a connection");
        if (r.command == "from-server")
            std::swap(positional[0], positional[1]);
        r.server = positional[1];
        positional.removeLast();
    } else if (!r.server.isEmpty()) {
        if (!positional.isEmpty())
            throw UsageError("a folder or --server, not both");
        positional << QString();
    }
    if (positional.isEmpty())
        throw UsageError("no folder given");
    if (positional.size() > 1)
        throw UsageError("one folder only, not \"" + positional.join("\", \"") + "\"");
    if (!positional[0].isEmpty())
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

// A bar on the terminal, a line per table elsewhere.
ServerBooks::Progress progressBar()
{
    return [](const QString &table, qint64 done, qint64 total) {
        static const bool terminal = isatty(fileno(stderr));
        QTextStream err(stderr);
        if (!terminal) {
            if (done == total)
                err << "  " << table << ": " << total << " rows\n";
            return;
        }
        constexpr int width = 30;
        const int filled = total > 0 ? int(done * width / total) : width;
        err << "\r  " << table.leftJustified(22, u' ', true) << " [" << QString(filled, u'#')
            << QString(width - filled, u'.') << "] " << done << " / " << total
            << (done == total ? "\n" : "") << Qt::flush;
    };
}

void printCounts(const ServerBooks::Counts &counts)
{
    QTextStream out(stdout);
    qint64 rows = 0;
    for (const auto &[table, n] : counts)
        rows += n;
    out << "Copied " << rows << " rows in " << counts.size()
        << " tables; every table's count matches.\n";
}

void run(const Request &r)
{
    if (r.command == "server-schema") {
        QTextStream out(stdout);
        out << "CREATE EXTENSION IF NOT EXISTS citext;\n";
        for (const auto which : {SuiteFiles::DataFile::Farm, SuiteFiles::DataFile::Wage}) {
            for (const QString &statement : ServerBooks::schemaStatements(which))
                out << statement << ";\n";
        }
        return;
    }
    if (r.command == "to-server")
        return printCounts(ServerBooks::copyToServer(r.dir, r.server, r.force, progressBar()));
    if (r.command == "from-server")
        return printCounts(ServerBooks::copyFromServer(r.server, r.dir, r.force, progressBar()));
    if (!r.server.isEmpty()) {
        if (r.command == "init")
            ServerBooks::createBooks(r.server, r.force);
        else if (r.command == "demo")
            ServerBooks::demoBooks(r.server, r.force);
        else
            ServerBooks::bulkBooks(r.server, r.bulk, progressBar());
        return;
    }
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
        if (!request.server.isEmpty() && request.command != "to-server") {
            if (request.command != "from-server")
                out << "Made " << (request.command == "init" ? "empty" : request.command)
                    << " books on " << request.server << "\n";
            else
                report(out, request, timer.elapsed());
        } else if (request.command != "server-schema" && request.command != "to-server") {
            report(out, request, timer.elapsed());
        }
    } catch (const CvError &e) {
        err << "cvsuite: " << e.description() << "\n";
        return 1;
    }
    return 0;
}
