#pragma once
// One account at its server, from the first REGISTER to the last. What becomes of it is told to the phone at
// once, until it leaves. A server that is silent, gone or out of service makes place for the next of its
// addresses; after the last one the line waits, longer each time, and begins again. Who is refused waits much
// longer: he may be right again, and a wrong password is not tried often enough to lock an account.
#include "sip/challengeAnswers.h"
#include "sip/serverFinder.h"
#include "sip/sipStack.h"
#include "sip/sipTimer.h"
#include "sip/stunWatch.h"
#include "sip/tlsCheck.h"
#include <memory>
#include <string>
#include <vector>

class Registration : public StackOwner
{
public:
    // An account with a user.
    Registration(const tagSipStack& stack, const tagSipAccount& account);
    ~Registration() override;

    void start();
    // Nothing is told of it from here on. The server is told; what it says to that shows in hasLeft().
    void leave();
    bool hasLeft() const { return m_bLeaving && !m_pHandle; }

    uint32_t line() const { return m_account.head.nId; }
    // What the server calls this phone by: of requests that are for this line.
    const std::string& contact() const { return m_contact; }
    // What calls of this line need.
    bool isRegistered() const { return m_bRegistered; }
    const std::string& key() const { return m_key; }
    std::string realm() const { return m_account.szRealm; }
    std::string ownAddress() const;
    // The bare one.
    std::string address() const;
    // That takes a call from elsewhere; empty: none.
    std::string pickUpCode() const { return m_account.szPickUp; }
    std::string server() const;
    // Where its requests go first.
    std::string hop() const;
    // Where its calls may go, the server that it is registered at first.
    std::vector<std::string> hops() const;
    // Of a call that has come from there, the same: that server, if it is one of the line's.
    std::string hopTo(const std::string& host, uint32_t port) const;
    // A call has found the server silent or out of service: it is asked again now.
    void doubt();
    // The network says that nobody takes what is sent there.
    void unreachable(const std::string& host, uint32_t port);
    // The line is asked for again where it is registered, at most once for each sign of life.
    void askOnce();
    // There is one with some server.
    void tlsProblem();
    // The machine has other addresses.
    void renew();
    const char* transportName() const;
    void onStack(const tagStackEvent& event) override;

private:
    void findServers();
    void onAddresses(const std::vector<tagServerAddress>& addresses);
    void tryAddress();
    void sendRegister();
    void onReply(const tagStackEvent& event);
    void onRefusal(const tagStackEvent& event);
    void onRegistered(const tagStackEvent& event);
    // Seconds that the server keeps the line; 0: it does not.
    sip_time_t grantOf(const sip_t& reply) const;
    void keepUpWith(sip_time_t granted);
    void trustServers();
    void readMapping(const sip_t& reply);
    void tellMapped(const std::string& host, uint32_t number);
    void useStun();
    void useIPv6();
    void keepOpen();
    void silent();
    tagTlsProblem ownTlsProblem() const;
    std::string reasonOfSilence();
    void onChallenge(const tagStackEvent& event);
    // Whether the server sends the line to another one, or through one, that may have it.
    bool follow(const sip_t& reply);
    // Whether the server wants to be asked for more time, and is.
    bool askLonger(const sip_t& reply);
    void failOver(uint32_t status, const std::string& reason);
    void wait(uint32_t status, const std::string& reason, uint32_t leastMs);
    void refuse(uint32_t status, const std::string& reason, uint32_t leastMs = 0);
    void pause(SIP_LINE_STATE state, uint32_t status, const std::string& reason, uint32_t delayMs);
    void dropHandle();
    void report(SIP_LINE_STATE state, uint32_t status, const std::string& reason, uint32_t retryMs = 0);
    SIP_TRANSPORT transport() const { return SIP_TRANSPORT(m_account.eTransport); }
    std::string hopOf(const tagServerAddress& address) const;
    // What belongs to a call goes another way, unless the account names a proxy for all.
    std::string callHopOf(const tagServerAddress& address) const;
    std::string registrar() const;

    const tagSipStack& m_stack;
    tagSipAccount m_account;
    const std::string m_key; // of its secrets
    std::string m_contact;
    ChallengeAnswers m_answers;
    nua_handle_t* m_pHandle = nullptr;
    ServerFinder m_finder;
    SipTimer m_silent;
    SipTimer m_again;
    SipTimer m_keep;
    SipTimer m_renew; // of what is granted for a moment
    SipTimer m_doubt; // until the network is believed again
    SipTimer m_heard; // a problem of TLS, which may be the line's
    std::unique_ptr<StunWatch> m_stun;
    std::string m_mapped;
    std::string m_own;          // "host:port" of the line, as it knows it itself
    std::string m_contactPlace; // that is told the server, which sees none by itself; or empty
    bool m_bSeen = false;       // the server says how it sees the line
    uint32_t m_nOwnPort = 0;
    std::vector<tagServerAddress> m_addresses;
    size_t m_nAddress = 0;
    tagServerAddress m_last;      // that it was registered at
    tagServerAddress m_elsewhere; // where the account's server has sent the line; no host: nowhere
    bool m_bThroughIt = false;    // that is no server, but the way to the account's
    unsigned long m_nExpires;     // seconds that are asked for
    bool m_bAskedLonger = false;  // in this try
    uint64_t m_nTlsProblems = 0;  // before the last request
    SIP_TLS_FAULT m_eTlsFault = SIP_TLS_NO_FAULT; // that the last request has come to
    uint32_t m_nDelayMs;
    uint32_t m_nBriefMs;   // until what is granted for a moment is renewed, doubled each time
    uint32_t m_nRefusedMs; // likewise, until one that was refused is tried again
    bool m_bRegistered = false;
    bool m_bLeaving = false;
};
