#pragma once
// A small telephone exchange: registers phones, leads requests from one to the other, and tells them of each
// other. Only who is known may call, and only those who are registered here can be called.
#include "registrar/accountBook.h"
#include "registrar/callBook.h"
#include "registrar/contactBook.h"
#include "registrar/eventDesk.h"
#include "registrar/forwardedRequest.h"
#include "registrar/mailCall.h"
#include "registrar/passwordCheck.h"
#include "registrar/pbxStack.h"
#include "sip/connectionGuard.h"
#include "sip/sipTimer.h"
#include <list>
#include <memory>
#include <string>

struct tagPbxSetup
{
    std::string host = "127.0.0.1"; // numeric
    unsigned nPort = 0;             // 0: any that is free
    uint32_t nRingMs = 30000;       // a call that nobody answers so long becomes a message
    uint32_t nMostSeconds = ContactBook::USUAL_SECONDS; // that a phone, or its watch of another, lasts
    bool bSha256 = true;                                // passwords by SHA-256 as well as MD5
};

class Pbx
{
public:
    enum : size_t { MAX_FORWARDED = 200, MAX_MAIL_CALLS = 20, MAX_MESSAGE = 64 << 10 };
    static constexpr tagConnectionBounds CONNECTIONS = {40, 120, 200};
    static constexpr const char* kMailNumber = "*97";

    explicit Pbx(const AccountBook& accounts);
    ~Pbx();
    Pbx(const Pbx&) = delete;
    Pbx& operator=(const Pbx&) = delete;

    // False when it cannot listen there.
    bool open(const tagPbxSetup& setup);
    // "host:port" where it listens.
    const std::string& place() const { return m_pbx.place; }
    // Until a signal asks for its end.
    void run();

private:
    static int onMessage(Pbx* self, nta_agent_t*, msg_t* message, sip_t* sip);
    void takeSignals();
    static int onSignal(su_root_magic_t*, su_wait_t*, su_wakeup_arg_t* self);
    void takeReply(msg_t* message, sip_t* sip);
    void takeAck(msg_t* message, const sip_t* sip);
    bool hasPassedHere(const sip_t& sip) const;
    void takeRequest(msg_t* message, sip_t* sip);
    // There is a call, or one of the voice mail, that it belongs to.
    bool isOfCall(const sip_t& sip) const;
    // user: whose password it had; empty where none was asked for.
    void serve(nta_incoming_t* request, const sip_t& sip, const std::string& user);
    void takeWithin(nta_incoming_t* request, const sip_t& sip);
    // Of one of the calls that went through.
    void leadWithin(nta_incoming_t* request, const sip_t& sip);
    // It comes from where one of the call's two parties is.
    bool isOfParty(const sip_t& sip, msg_t* message) const;
    void registerPhone(nta_incoming_t* request, const sip_t& sip, const std::string& user);
    void lead(nta_incoming_t* request, const sip_t& sip, const std::string& user);
    void leadTo(nta_incoming_t* request, const sip_t& sip, const std::string& user, const std::string& callee,
                const std::vector<std::string>& addresses);
    void callMail(nta_incoming_t* request, const std::string& user);
    // Phones that are registered here are at that numeric address.
    bool hasPhonesAt(const std::string& host) const;
    // Who asks; empty when he was asked for his password, or refused.
    std::string knownUser(msg_t* message, const sip_t& sip);
    // Keeps nothing of it.
    void refuse(msg_t* message, int status, const char* phrase);
    void refuse(nta_incoming_t* request, int status, const char* phrase);
    ForwardedRequest* take(nta_incoming_t* request);
    void sweep();

    const AccountBook& m_accounts;
    std::unique_ptr<su_root_t, void (*)(su_root_t*)> m_root;
    tagPbx m_pbx;
    CallBook m_calls;
    EventDesk m_events;
    std::unique_ptr<ContactBook> m_contacts;
    std::unique_ptr<PasswordCheck> m_passwords;
    std::unique_ptr<ConnectionGuard> m_connections;
    std::list<std::unique_ptr<ForwardedRequest>> m_forwarded;
    std::list<std::unique_ptr<MailCall>> m_mail;
    SipTimer m_sweep;
    int m_nSignals = -1;
};
