#pragma once
// The SIP stack as the exchange's classes see it: its transactions, no user agent. One thread.
class Pbx;
class ForwardedRequest;
class ReplyTaker;
#define NTA_AGENT_MAGIC_T Pbx
#define NTA_INCOMING_MAGIC_T ForwardedRequest
#define NTA_OUTGOING_MAGIC_T ReplyTaker
#include <sofia-sip/nta.h>
#include <sofia-sip/sip.h>
#include <sofia-sip/su_wait.h>

// Hears what becomes of requests that it has sent.
class ReplyTaker
{
public:
    virtual ~ReplyTaker() = default;
    virtual void onReply(nta_outgoing_t* request, const sip_t* reply) = 0;

    static int call(ReplyTaker* self, nta_outgoing_t* request, const sip_t* reply)
    {
        self->onReply(request, reply);
        return 0;
    }
};
