#include "launch/wagebooklistener.h"

#include "launch/wagebook.h"

#include <QLocalServer>
#include <QLocalSocket>

namespace {

// A notification is a few dozen bytes; a peer that sends more without a line end is not
// a suite program.
constexpr qsizetype MaxLineLength = 1024;

} // namespace

WagebookListener::WagebookListener(QObject *parent)
    : QObject(parent), m_server(new QLocalServer(this))
{
    connect(m_server, &QLocalServer::newConnection, this, &WagebookListener::acceptConnections);
}

WagebookListener::~WagebookListener() = default;

bool WagebookListener::listen()
{
    if (!makeWagebookFolder()) {
        m_error = QStringLiteral("The folder %1 is not private to this user").arg(wagebookFolder());
        return false;
    }
    const QString path = wagebookSocketPath();
    if (m_server->listen(path))
        return true;
    if (m_server->serverError() == QAbstractSocket::AddressInUseError) {
        // A socket file left by a wage book that ended without cleaning up: take it over,
        // but never from one that still answers.
        QLocalSocket probe;
        probe.connectToServer(path);
        if (probe.waitForConnected(1000)) {
            m_error = QStringLiteral("Another wage book is listening at %1").arg(path);
            return false;
        }
        QLocalServer::removeServer(path);
        if (m_server->listen(path))
            return true;
    }
    m_error = m_server->errorString();
    return false;
}

QString WagebookListener::errorString() const
{
    return m_error;
}

void WagebookListener::acceptConnections()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readLines(socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        // Data may have come with the connection.
        readLines(socket);
    }
}

void WagebookListener::readLines(QLocalSocket *socket)
{
    while (socket->canReadLine()) {
        const QString line = QString::fromUtf8(socket->readLine()).chopped(1);
        const QStringList parts = line.split(u' ');
        bool wOk = false;
        bool lOk = false;
        const qint32 wParam = parts.size() == 3 ? parts[1].toInt(&wOk) : 0;
        const qint32 lParam = parts.size() == 3 ? parts[2].toInt(&lOk) : 0;
        if (!wOk || !lOk || parts[0].isEmpty()) {
            socket->write("ERR\n");
            continue;
        }
        bool isNumber = false;
        quint32 message = parts[0].toUInt(&isNumber);
        if (!isNumber)
            message = registerWindowMessage(parts[0]);
        emit messageReceived(message, wParam, lParam);
        socket->write("OK\n");
    }
    if (socket->bytesAvailable() > MaxLineLength)
        socket->abort();
}
