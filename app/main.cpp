// cvaddress: the suite's address book, started by the suite's other programs with a
// four-field command line (mode, address identifier, modal, wage-book pick).
//
// Environment:
//   CORVANE_MESSAGES=stderr  print every message to standard error and answer it with OK
//                            (No for a question) instead of showing a dialog; for scripts
//                            and tests that run the program without a person.
//   CORVANE_SCREENSHOT=FILE  for scripts: once the first window (the address book, or a
//                            message dialog) is up, wait half a second, save the active
//                            window to FILE as PNG (its folder is created), then close every
//                            window, modal ones included, so the program ends as if the user
//                            had closed them.
#include "addressbook/ui/addressbookwindowfactory.h"
#include "controls/ui/dialogmessageservice.h"
#include "launch/addressglobals.h"
#include "launch/entryroutine.h"

#include <cstdio>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace {

void installMessageService(DialogMessageService *dialogs)
{
    // Left out, the message service's own fallback prints to standard error.
    if (qEnvironmentVariable("CORVANE_MESSAGES") != QLatin1String("stderr"))
        setMessageService(dialogs);
}

// The one place where the address book window plugs in.
void registerAddressWindow()
{
    registerAddressBookWindow();
}

QList<QWidget *> shownWindows()
{
    QList<QWidget *> windows;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        const Qt::WindowType type = w->windowType();
        if (w->isVisible() && type != Qt::Popup && type != Qt::ToolTip && type != Qt::Desktop)
            windows << w;
    }
    return windows;
}

// The window a person would be looking at: the modal one, else the active one, else the
// last one shown (there is no window manager to activate windows under xvfb).
QWidget *frontWindow()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget *active = QApplication::activeWindow())
        return active;
    const QList<QWidget *> windows = shownWindows();
    return windows.isEmpty() ? nullptr : windows.last();
}

// Closes what a person could close now: the modal window when there is one (the windows
// under it are blocked, and may be in the middle of the call that showed it), else them all.
void closeFrontWindows()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        modal->close();
    else if (!shownWindows().isEmpty())
        QApplication::closeAllWindows();
}

// CORVANE_SCREENSHOT. A timer rather than a show event: it also fires inside the nested
// event loops of modal windows, and it keeps closing whatever a close brings up (a save
// error, say) until the program has ended.
void installScreenshotHook(const QString &path)
{
    auto *poll = new QTimer(qApp);
    poll->setInterval(100);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, path] {
        if (shownWindows().isEmpty())
            return;
        poll->stop();
        QTimer::singleShot(500, qApp, [poll, path] {
            QWidget *window = frontWindow();
            if (window) {
                QDir().mkpath(QFileInfo(path).absolutePath());
                if (window->grab().save(path, "PNG"))
                    std::fprintf(stderr, "screenshot: %s\n", qPrintable(path));
                else
                    std::fprintf(stderr, "screenshot: could not write %s\n", qPrintable(path));
            }
            QObject::disconnect(poll, &QTimer::timeout, nullptr, nullptr);
            QObject::connect(poll, &QTimer::timeout, qApp, closeFrontWindows);
            closeFrontWindows();
            poll->start();
        });
    });
    poll->start();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    DialogMessageService dialogs;
    installMessageService(&dialogs);
    registerAddressWindow();
    const QString screenshot = qEnvironmentVariable("CORVANE_SCREENSHOT");
    if (!screenshot.isEmpty())
        installScreenshotHook(screenshot);
    return runEntryProcess(processCommandLine());
}
