#pragma once

#include <QObject>

class QLocalServer;
class QLocalSocket;

// The wage book's side of the reply: listens under the wage book's name and hands each
// notification on. Used by tests and by programs that stand in for the wage book.
class WagebookListener : public QObject
{
    Q_OBJECT

public:
    explicit WagebookListener(QObject *parent = nullptr);
    ~WagebookListener() override;

    // False when another wage book is listening already or the folder is not private to
    // this user; errorString() says which.
    bool listen();
    QString errorString() const;

signals:
    // message is the registered number of the name on the line. The answer goes back when
    // the slots connected directly have returned, so the sender knows it was handled.
    void messageReceived(quint32 message, qint32 wParam, qint32 lParam);

private:
    void acceptConnections();
    void readLines(QLocalSocket *socket);

    QLocalServer *m_server;
    QString m_error;
};
