#pragma once
// Asks a time server once: its addresses in turn, until one has answered. Nothing waits for it.
// User-interface thread.
#include "host/services/clock/sntpPacket.h"
#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>
#include <memory>

class HX_HOST_API sntpClient : public QObject
{
    Q_OBJECT
public:
    enum : int {
        LOOKUP_MS = 10000, // for the addresses of a name
        ANSWER_MS = 3000,  // for the answer of each
        ADDRESSES = 4,     // that are asked at most
        DATAGRAMS = 16,    // that are looked at for one answer
        LARGEST = 2048     // what a larger one has more is not read
    };

    explicit sntpClient(QObject* parent = nullptr);
    ~sntpClient() override;
    // Asks anew, whatever is under way. server: a host name or an address.
    void ask(const QString& server, quint16 port);
    // Neither signal comes any more.
    void stop();

signals:
    // utcMs: now, by the server's clock.
    void answered(qint64 utcMs);
    // isKiss: the server asks to be left alone, why is its code then.
    void failed(const QByteArray& why, bool isKiss);

private:
    void takeAddresses(const QList<QHostAddress>& addresses);
    void askNext();
    void onDatagrams();
    void judge(const QByteArray& datagram);
    void onTime();
    void fail(const QByteArray& why, bool isKiss = false);

    std::unique_ptr<QUdpSocket> m_pSocket;
    QTimer m_timer;
    QElapsedTimer m_sent;
    QList<QHostAddress> m_addresses; // still to be asked
    QByteArray m_strWhy;             // what is wrong with the last one that was
    quint64 m_nNumber = 0;
    int m_nLookup = -1;
    int m_nDatagrams = 0;
    quint16 m_nPort = 0;
};
