#pragma once
// A request on its way through the exchange, to one phone or to several at once: the first that answers has
// the call, the others are told so, and the caller hears the best of their answers otherwise.
#include "registrar/callBook.h"
#include "registrar/pbxStack.h"
#include "sip/sipTimer.h"
#include <functional>
#include <string>
#include <vector>

// What the requests of an exchange share.
struct tagPbx
{
    su_root_t* pRoot = nullptr;
    nta_agent_t* pAgent = nullptr;
    CallBook* pCalls = nullptr;
    std::string place;                                       // "host:port" of the exchange
    uint32_t nRingMs = 0;                                    // until a call is given up
    std::function<void(const std::string& user)> unanswered; // nobody took a call for him
};

long pbxNow();

class ForwardedRequest : public ReplyTaker
{
public:
    enum : size_t { MAX_BRANCHES = 10 };

    // Takes the request over.
    ForwardedRequest(const tagPbx& pbx, nta_incoming_t* request);
    ~ForwardedRequest() override;
    ForwardedRequest(const ForwardedRequest&) = delete;
    ForwardedRequest& operator=(const ForwardedRequest&) = delete;

    // To these addresses in place of its own; callee: whose phones they are, for a call.
    void fork(const std::vector<std::string>& addresses, const std::string& callee);
    // Where it says that it goes.
    void pass();
    // The one who asked has his answer. What phones say after that is the exchange's.
    bool isOver() const { return m_bFinal; }
    void onReply(nta_outgoing_t* request, const sip_t* reply) override;

    // Takes out of a message what brought it here, and counts the hop; null when there are too many.
    static msg_t* onward(const tagPbx& pbx, msg_t* message);

private:
    struct tagBranch
    {
        nta_outgoing_t* pRequest;
        int nStatus;
    };

    static int onCancel(ForwardedRequest* self, nta_incoming_t*, const sip_t* message);
    bool send(const std::string& address);
    bool haveAllEnded() const;
    void passReply(nta_outgoing_t* request, const sip_t* reply);
    void onAnswer(nta_outgoing_t* request, const sip_t* reply);
    void keepBest(nta_outgoing_t* request, const sip_t* reply);
    void passBest();
    void cancelBranches(const char* reason);
    void giveUp();
    void end(int status, const char* phrase);

    const tagPbx& m_pbx;
    nta_incoming_t* m_pRequest;
    std::string m_callId;
    std::string m_callee;
    std::vector<tagBranch> m_branches;
    msg_t* m_pBest = nullptr;
    int m_nBestRank = 0;
    bool m_bAnswered = false; // with 2xx
    bool m_bFinal = false;    // the caller has his answer
    bool m_bCall = false;     // an INVITE
    bool m_bNew = false;      // begins a call
    SipTimer m_limit;
};
