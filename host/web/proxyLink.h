#pragma once
// One connection of the engine through its proxy. On the proxy's thread; deletes itself when either side
// ends.
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

// What on this machine may be reached all the same; no target: nothing.
struct tagExempt
{
    QByteArray target; // HOST:PORT
    bool isEncrypted = false;
};

class proxyLink : public QObject
{
    Q_OBJECT
public:
    enum : int { GREETING_MS = 2000, CONNECT_MS = 30000, BUFFER = 64 * 1024 };

    // Takes client over.
    proxyLink(QTcpSocket* client, const tagExempt& exempt, QObject* parent);

signals:
    void refused(const QByteArray& target);

private:
    enum STATE { GREETING, REQUEST, HEAD, CONNECTING, OPEN };
    enum REPLY { DONE = 0, NOT_ALLOWED = 2, UNREACHABLE = 4, NOT_KNOWN = 7 };

    void onClient();
    bool readGreeting();
    bool readRequest();
    void onRequest(const QByteArray& host);
    void judge(const QList<QHostAddress>& addresses);
    void readHere();
    void tryNext();
    void onConnected();
    void onServerError();
    void answer(REPLY reply);
    void refuse(REPLY reply);
    void end();
    void passOn();
    void pass(QTcpSocket& from, QTcpSocket& to);

    QTcpSocket* m_pClient;
    QTcpSocket m_server;
    QTimer m_limit; // until the request has come, then until it is open
    tagExempt m_exempt;
    QByteArray m_head;   // to this machine, the only thing that goes out
    QByteArray m_target; // HOST:PORT
    QList<QHostAddress> m_addresses;
    quint16 m_nPort = 0;
    STATE m_eState = GREETING;
    bool m_bAnswered = false;
    bool m_bHeadOnly = false;
};
