// A suite program using the address book through the public library, as the wage book and
// the cashbook do:
//
//   cvaddress_caller pick [ID]   the employee pick on entry ID (0, none, by default);
//                                prints "Picked: <id>" once the window has closed
//   cvaddress_caller run         the address book, modal
//   cvaddress_caller opendb      opens the main data file and prints "Addresses: <rows>";
//                                needs no display
//
// The suite's files are found as the module finds them (CORVANE_SHARED_DOCUMENTS). An error
// is printed as "Error <number>: <description>" and ends the program with status 1.
#include "core/cverror.h"
#include "data/database.h"
#include "data/recordset.h"
#include "launch/cvaddress.h"

#include <cstdio>
#include <memory>
#include <QApplication>
#include <QCoreApplication>

namespace {

int usage()
{
    std::fputs("usage: cvaddress_caller pick [ID] | run | opendb\n", stderr);
    return 2;
}

void printLine(const QString &line)
{
    std::fputs(qPrintable(line + u'\n'), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    const QString command = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (command != "pick" && command != "run" && command != "opendb")
        return usage();
    bool ok = true;
    qint32 id = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt(&ok) : 0;
    if (!ok)
        return usage();

    // The window needs a GUI application; reading the data file does not.
    std::unique_ptr<QCoreApplication> app;
    if (command == "opendb")
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);

    try {
        CvAddress address;
        address.moduleName(QStringLiteral("Caller"));
        address.HelpID(0);
        address.HelpFile(QStringLiteral("Caller.chm"));
        if (command == "pick") {
            address.addressbook(id);
            printLine(QStringLiteral("Picked: %1").arg(id));
        } else if (command == "run") {
            address.RunModal();
        } else {
            const std::unique_ptr<Database> db = address.OpenDB();
            Recordset rows(*db, QStringLiteral("SELECT Count(*) FROM Addresses"),
                           Recordset::Snapshot);
            printLine(QStringLiteral("Addresses: %1").arg(rows.value(0).toLongLong()));
        }
    } catch (const CvError &error) {
        std::fprintf(stderr, "Error %d: %s\n", error.number(), qPrintable(error.description()));
        return 1;
    }
    return 0;
}
