#pragma once
// A network between a phone that calls and its exchange: passes their messages on, and their sound, which it
// loses and delays by chance, and notes.
#include <QByteArray>
#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

class SoundRelay
{
public:
    // The ways that sound takes.
    enum WAY { TO_CALLER, TO_CALLED, WAYS };

    struct tagPassed
    {
        int64_t nUs = 0; // when it came, by the steady clock
        QByteArray packet;
    };

    // exchange: its port of this machine.
    explicit SoundRelay(uint32_t exchange);
    ~SoundRelay();
    SoundRelay(const SoundRelay&) = delete;
    SoundRelay& operator=(const SoundRelay&) = delete;

    // What the caller goes through; 0: there is no room.
    uint32_t port() const { return m_nPort; }
    // From now on so many percent are lost, and the others take up to jitterMs: the same ones for each seed,
    // on both ways.
    void setNetwork(int lossPercent, int jitterMs, unsigned seed = 1);
    // What has come for that way since the last call, lost or not.
    std::vector<tagPassed> takePassed(WAY way);

    static int64_t nowUs();

private:
    enum PORT { SIGNALS, RTP_OF_CALLER, RTCP_OF_CALLER, RTP_OF_CALLED, RTCP_OF_CALLED, PORTS };

    void run();
    void take(PORT port);
    void passSignal(const QByteArray& message, uint32_t from);
    void passSound(PORT from, const QByteArray& packet);
    void sendDue();
    void send(PORT from, const QByteArray& packet, uint32_t to) const;
    QByteArray withoutOwnRoute(const QByteArray& message) const;
    QByteArray withOwnPorts(const QByteArray& message, WAY speaker);

    uint32_t m_nExchange;
    uint32_t m_nPort = 0;
    std::array<int, PORTS> m_sockets{};
    std::array<uint32_t, PORTS> m_ports{};
    std::array<uint32_t, WAYS> m_soundPorts{}; // of those who speak there, as they say
    uint32_t m_nCaller = 0;

    struct tagDue
    {
        PORT from;
        QByteArray packet;
        uint32_t nTo;
    };
    std::multimap<int64_t, tagDue> m_due; // by when they go on

    std::mutex m_mutex; // of what follows
    int m_nLoss = 0;
    int m_nJitterMs = 0;
    std::array<std::minstd_rand, WAYS> m_chance;
    std::array<bool, WAYS> m_bSpeaks{};
    std::array<std::vector<tagPassed>, WAYS> m_passed;

    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
