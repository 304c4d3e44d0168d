#pragma once
// The one way from the engine to the network: a SOCKS 5 service on the loopback interface, whose every
// connection is looked at. The name is looked up here and the connection goes to the address that was judged,
// so it does not matter which part of the engine asks, and under which name. Only this process's user is
// served. Its own thread; the functions from any.
#include "host/web/proxyLink.h"
#include <QByteArray>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QTcpServer>
#include <QThread>
#include <atomic>

class engineProxy : public QObject
{
    Q_OBJECT
public:
    enum : int { CONNECTIONS = 64, TARGETS_TOLD = 32 };

    engineProxy();
    ~engineProxy() override;
    // 0 when it cannot listen: nothing reaches the network then.
    quint16 port() const { return m_nPort; }
    void setExempt(const tagExempt& exempt);
    tagExempt exempt() const;

signals:
    // Once for each target, the first few of them.
    void refused(const QString& target);

private:
    void listen();
    void onConnection();
    void onRefused(const QByteArray& target);
    QThread m_thread;
    QTcpServer* m_pServer = nullptr; // on the thread
    QSet<QByteArray> m_told;
    mutable QMutex m_mutex;
    tagExempt m_exempt; // with m_mutex
    std::atomic<quint16> m_nPort = 0;
};
