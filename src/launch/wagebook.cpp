#include "launch/wagebook.h"

#include "launch/addressglobals.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <sys/stat.h>
#include <unistd.h>

void ShowEmployeeForWagebook(qint32 &addressId)
{
    AddressGlobals::LaunchMode = 1;
    setApplicationTitle(QStringLiteral("Employees"));
    AddressGlobals::CurrentAddressID = addressId;
    AddressGlobals::mainWindow().showModal();
    addressId = AddressGlobals::CurrentAddressID;
    // Sent after the window has gone, so the wage book hears the final entry exactly once.
    // Nobody listening is normal: the module was started some other way.
    sendWagebookMessage(GetWagebookMessageId(), addressId, 0);
}

quint32 GetWagebookMessageId()
{
    if (AddressGlobals::wagebookMessageId == 0)
        AddressGlobals::wagebookMessageId = registerWindowMessage(WagebookMessageName);
    return AddressGlobals::wagebookMessageId;
}

quint32 registerWindowMessage(const QString &name)
{
    // FNV-1a: stable across processes and builds, unlike qHash.
    quint32 hash = 2166136261u;
    for (const char byte : name.toUpper().toUtf8()) {
        hash ^= quint8(byte);
        hash *= 16777619u;
    }
    return 0xC000u + hash % 0x4000u;
}

QString wagebookFolder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty())
        return runtime + QStringLiteral("/corvane");
    return QDir::tempPath() + QStringLiteral("/corvane-") + QString::number(::geteuid());
}

QString wagebookSocketPath()
{
    return wagebookFolder() + u'/' + QLatin1String(WagebookCaption);
}

bool wagebookFolderIsPrivate()
{
    struct stat st;
    if (::lstat(QFile::encodeName(wagebookFolder()).constData(), &st) != 0)
        return false;
    return S_ISDIR(st.st_mode) && st.st_uid == ::geteuid() && (st.st_mode & 077) == 0;
}

bool makeWagebookFolder()
{
    // mkdir fails harmlessly when the folder exists; the check below judges what is there.
    ::mkdir(QFile::encodeName(wagebookFolder()).constData(), 0700);
    return wagebookFolderIsPrivate();
}

bool sendWagebookMessage(quint32 message, qint32 wParam, qint32 lParam)
{
    if (!wagebookFolderIsPrivate())
        return false;

    // The line carries the name rather than the number: the name is what both programs
    // register. This program only ever sends the wage book's message; any other number
    // goes as a number.
    const QString name =
        message == GetWagebookMessageId() ? QString(WagebookMessageName) : QString::number(message);
    const QByteArray line = QStringLiteral("%1 %2 %3\n").arg(name).arg(wParam).arg(lParam).toUtf8();

    const QDeadlineTimer deadline(AddressGlobals::wagebookReplyTimeoutMs);
    const auto remaining = [&deadline] { return int(qMax<qint64>(0, deadline.remainingTime())); };

    QLocalSocket socket;
    socket.connectToServer(wagebookSocketPath());
    if (!socket.waitForConnected(remaining()))
        return false;
    socket.write(line);
    if (!socket.waitForBytesWritten(remaining()))
        return false;
    while (!socket.canReadLine()) {
        if (deadline.hasExpired() || !socket.waitForReadyRead(remaining()))
            return false;
    }
    return true;
}
