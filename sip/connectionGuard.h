#pragma once
// Connections that come to the stack, which would keep each of them for good. A stranger has a few, all of
// them together some dozens, so that what the phone needs itself always finds room: one that is too many
// takes the place of the one that has said nothing for longest, and is refused where all have spoken. Who
// says nothing that is SIP is closed soon, whoever spoke and is quiet later. The servers of the lines may
// have more, and be quiet.
#include "sip/sipTimer.h"
#include <chrono>
#include <functional>
#include <list>
#include <string>

// How many there may be.
struct tagConnectionBounds
{
    size_t nOfOne;
    size_t nOfAll; // but the servers
    size_t nOfServer;
};

class ConnectionGuard
{
public:
    static constexpr tagConnectionBounds OF_A_PHONE = {8, 48, 32};

    using Servers = std::function<bool(const std::string& host)>;

    // silentMs: how long a server is waited for, by which the times here are measured. isServer: of a line.
    // There is one guard.
    ConnectionGuard(su_root_t* root, uint32_t silentMs, Servers isServer,
                    const tagConnectionBounds& bounds = OF_A_PHONE);
    ~ConnectionGuard();
    ConnectionGuard(const ConnectionGuard&) = delete;
    ConnectionGuard& operator=(const ConnectionGuard&) = delete;

    // A new one; false: it is to be closed.
    bool lets(int socket);
    // A sound message has come from there.
    static void heard(const std::string& host, uint32_t port);

private:
    using Clock = std::chrono::steady_clock;
    struct tagConnection
    {
        int nSocket;
        std::string host;
        uint32_t nPort;
        Clock::time_point last; // when it came, or has spoken
        bool bHeard = false;
    };

    void step();
    void forgetEnded();
    bool makeRoom(const std::string& host, bool isServer);
    static bool isOpen(const tagConnection& connection);

    const Servers m_isServer;
    const tagConnectionBounds m_bounds;
    const std::chrono::milliseconds m_first;
    const std::chrono::milliseconds m_quiet;
    std::list<tagConnection> m_connections; // as they came
    SipTimer m_step;
};
