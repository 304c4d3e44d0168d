#pragma once
// One connection of the engine through its proxy. On the proxy's thread; deletes itself when either side
// ends.
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

class proxyLink : public QObject
{
    Q_OBJECT
public:
    enum : int { CONNECT_MS = 30000, BUFFER = 64 * 1024 };

    // Takes client over. exempt: HOST:PORT on this machine that may be reached all the same.
    proxyLink(QTcpSocket* client, const QByteArray& exempt, QObject* parent);

signals:
    void refused(const QByteArray& target);

private:
    enum STATE { GREETING, REQUEST, FIRST_WORD, CONNECTING, OPEN };
    enum REPLY { DONE = 0, NOT_ALLOWED = 2, UNREACHABLE = 4, NOT_KNOWN = 7 };

    void onClient();
    bool readGreeting();
    bool readRequest();
    void onRequest(const QByteArray& host);
    void judge(const QList<QHostAddress>& addresses);
    void readFirstWord();
    void tryNext();
    void onConnected();
    void onServerError();
    void answer(REPLY reply);
    void refuse(REPLY reply);
    void end();
    void pass(QTcpSocket& from, QTcpSocket& to);

    QTcpSocket* m_pClient;
    QTcpSocket m_server;
    QTimer m_limit; // until it is open
    QByteArray m_exempt;
    QByteArray m_target; // HOST:PORT
    QList<QHostAddress> m_addresses;
    quint16 m_nPort = 0;
    STATE m_eState = GREETING;
    bool m_bAnswered = false;
};
