#pragma once
// One request: a file of the page, a refusal, or a socket that is handed on. It deletes itself when it is
// done.
#include "tools/screenServer/accessRule.h"
#include "tools/screenServer/pageFolder.h"
#include <QTcpSocket>
#include <QTimer>

class PageConnection : public QObject
{
    Q_OBJECT

public:
    // Takes the socket. rule and folder outlive it.
    PageConnection(QTcpSocket* socket, const AccessRule& rule, const PageFolder& folder, QObject* parent);
    // Reads what has come already; the socket wanted may be told at once.
    void begin();

signals:
    // An admitted request for the screen; what follows it is unread, and the socket is the receiver's.
    void screenWanted(QTcpSocket* socket, const tagHttpRequest& request);

private:
    void onBytes();
    void reply(const tagHttpRequest& request);
    void replyFile(const QByteArray& path, bool withBody);
    void send(const char* status, const QByteArray& type, const QByteArray& body, bool withBody = true,
              const QByteArray& field = {});
    void replyScreen(const tagHttpRequest& request);

    QTcpSocket* m_pSocket;
    const AccessRule& m_rule;
    const PageFolder& m_folder;
    QTimer m_patience;
};
