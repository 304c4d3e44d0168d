#pragma once
// A way between two ports of this machine on which packets are lost and delayed by chance, and noted.
#include <QByteArray>
#include <atomic>
#include <map>
#include <mutex>
#include <random>
#include <thread>

class LossyWay
{
public:
    // So many percent are lost; the others take up to jitterMs.
    LossyWay(int onePort, int otherPort, int lossPercent, int jitterMs);
    ~LossyWay();
    LossyWay(const LossyWay&) = delete;
    int port() const { return m_nPort; }
    // The tones that went by with that payload number, whole and in order.
    QByteArray tones(int payload) const;

private:
    void run();
    void note(const QByteArray& packet);

    int m_nOne;
    int m_nOther;
    int m_nLoss;
    int m_nJitterMs;
    int m_in = -1;
    int m_nPort = 0;
    std::minstd_rand m_chance{11};
    struct tagWaiting
    {
        QByteArray packet;
        int nTo;
    };
    std::multimap<long long, tagWaiting> m_waiting; // by when they go on, microseconds
    mutable std::mutex m_mutex;
    std::multimap<int, QByteArray> m_noted; // by payload number
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
