#pragma once
// A name server of the loopback interface, on a thread of its own, with the records that a test gives it.
#include "tests/sip/udpPeer.h"
#include <QByteArray>
#include <QList>
#include <QTemporaryDir>
#include <atomic>
#include <thread>

class NameServer
{
public:
    // The records are added before it starts.
    void addAddress(const QByteArray& name, const QByteArray& address);
    void addAddress6(const QByteArray& name, const QByteArray& address);
    void addService(const QByteArray& name, int priority, uint32_t port, const QByteArray& target,
                    int weight = 1);
    void start();
    ~NameServer();
    // The file that leads to it.
    QByteArray settings() const;

private:
    struct tagRecord
    {
        QByteArray name;
        int nType;
        QByteArray data;
    };

    QByteArray answerTo(const QByteArray& query) const;

    UdpPeer m_socket;
    QList<tagRecord> m_records;
    QTemporaryDir m_folder;
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
