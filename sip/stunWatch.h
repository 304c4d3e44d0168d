#pragma once
// The STUN server of a line: asked from the stack's own port whether it is there and how it sees that port,
// and asked again for as long as the line has it. The phone is told of a server that answers, so that no call
// waits for one that does not, and that one does not.
#include "sip/serverFinder.h"
#include "sip/sipTimer.h"
#include "sip/stunQuery.h"
#include <memory>

class StunWatch
{
public:
    // An account with such a server.
    StunWatch(const tagSipStack& stack, const tagSipAccount& account);
    // The phone hears that nobody answers any more.
    ~StunWatch();
    StunWatch(const StunWatch&) = delete;
    StunWatch& operator=(const StunWatch&) = delete;

    // seen: called with each place() that is another one. lost: it has answered, and says nothing to several
    // questions; once in each silence.
    void start(std::function<void()> seen, std::function<void()> lost);
    // How the stack's port is seen; its port 0: not known.
    const tagStunPlace& place() const { return m_place; }

    // What has come to the stack's port and looks like such a message, with where it is from.
    static void take(const unsigned char* bytes, size_t size, const std::string& host, uint32_t port);

private:
    void find();
    void ask();
    void step();
    void answered();
    void silent();
    void tell(bool isThere, bool isSilent = false);

    const tagSipStack& m_stack;
    const uint32_t m_nLine;
    const std::string m_host;
    const uint32_t m_nPort;
    std::function<void()> m_seen;
    std::function<void()> m_lost;
    ServerFinder m_finder;
    tagServerAddress m_server;
    std::unique_ptr<StunQuery> m_query;
    unsigned m_nSent = 0; // times that it has gone
    SipTimer m_step;
    tagStunPlace m_place;
    std::string m_told; // the server, as the phone knows it; or empty
    bool m_bSilentTold = false;
};
