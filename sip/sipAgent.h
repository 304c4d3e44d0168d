#pragma once
// The user agent: what the phone asks for goes to the lines, and the end of the phone ends it.
#include "sip/connectionGuard.h"
#include "sip/phoneLink.h"
#include "sip/registration.h"
#include "sip/sipCall.h"
#include "sip/sipEvents.h"
#include "sip/sipStack.h"
#include <array>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class SipAgent
{
public:
    enum : uint32_t { END_MS = 2000 }; // until servers that say nothing are left

    SipAgent();
    ~SipAgent();
    SipAgent(const SipAgent&) = delete;
    SipAgent& operator=(const SipAgent&) = delete;

    // Serves the phone that listens at the path until either wants no more; the exit code.
    int run(const std::string& path);

private:
    static void onStack(nua_event_t event, int status, const char* phrase, nua_t*, SipAgent* self,
                        nua_handle_t* handle, StackOwner* owner, const sip_t* message, tagi_t tags[]);
    void take(const sipWire::Reader& record);
    bool makeStack(const tagSipSetup& setup);
    nua_t* listen(bool tls);
    // The stack takes other certificates at its start alone.
    void lookAtCertificates();
    void setAccount(const tagSipAccount& account);
    void takeForCall(const sipWire::Reader& record);
    void tellNotBegun(uint32_t call, const char* reason);
    void startDial(const tagSipDial& dial, const Registration& line, const tagCallOrigin& origin);
    void connectCalls(const tagSipConnect& connect);
    void dial(const tagSipDial& dial, const std::string& replaces = "");
    void pickUp(const tagSipPickUp& wanted);
    // Whom a request from outside is for; null: nobody here.
    const Registration* lineFor(const sip_t& message) const;
    // Of an event that the handle's owner did not subscribe to.
    void takeNote(const tagStackEvent& event, bool isOwned);
    void takeInfo(const tagStackEvent& event, bool isOwned);
    void arrive(const tagStackEvent& event);
    void makeCall(const Registration& line, const tagStackEvent& event, const tagSdpBody& body,
                  uint32_t replaced);
    // The status that refuses a call that asks to take the place of another; 0 and that one's id for none.
    uint32_t findReplaced(const sip_replaces_t& replaces, uint32_t line, uint32_t& id) const;
    SipCall* find(uint32_t id) const;
    // Those that ring or talk, or go out.
    size_t callCount() const;
    bool isJudged(uint32_t id) const;
    size_t judgedCount() const;
    // The phone lets the call ring or talk; false: there is no room for it any more, and it is refused.
    bool takeIn(uint32_t id, SipCall& call);
    // Those that have ended for both sides.
    void dropCalls();
    void end(int code);
    void endStep();

    std::unique_ptr<su_root_t, void (*)(su_root_t*)> m_root;
    tagSipStack m_stack;
    PhoneLink m_phone;
    std::array<std::unique_ptr<Registration>, SIP_LINE_COUNT> m_lines;
    std::vector<std::unique_ptr<Registration>> m_leaving;
    SipEvents m_events;
    std::unique_ptr<ConnectionGuard> m_connections;
    std::map<uint32_t, std::unique_ptr<SipCall>> m_calls;
    std::set<uint32_t> m_judged; // of those, what the phone does not let ring or talk yet
    uint32_t m_nNextIncoming = SIP_CALL_FIRST_INCOMING;
    SipTimer m_step;
    SipTimer m_last;
    SipTimer m_rest;
    std::string m_tlsSign; // of the certificates at the start
    int m_nCode = 0;
    bool m_bEnding = false;
    bool m_bShutdown = false; // the stack has ended well
};
