#pragma once
// The SIP stack as the agent's classes see it. Everything runs on one thread, in the stack's own event loop.
#include "sip/sipRecords.h"
#include <functional>
#include <string>

// How long a call lasts without a sign of it from either side (RFC 4028).
enum : unsigned { SIP_SESSION_SECONDS = 1800, SIP_SESSION_LEAST_SECONDS = 90 };

class SipAgent;
class StackOwner;
class PhoneLink;
#define NUA_MAGIC_T SipAgent
#define NUA_HMAGIC_T StackOwner
#include <sofia-sip/nua.h>
#include <sofia-sip/sresolv.h>
#include <sofia-sip/su_wait.h>

struct tagStackEvent
{
    nua_event_t eEvent;
    int nStatus;
    const char* szPhrase;
    nua_handle_t* pHandle;
    const sip_t* pMessage; // null where the stack itself says so
    tagi_t* pTags;
};

// Hears what happens at the handles that were made for it.
class StackOwner
{
public:
    virtual ~StackOwner() = default;
    virtual void onStack(const tagStackEvent& event) = 0;
};

// What all share.
struct tagSipStack
{
    su_root_t* pRoot = nullptr;
    nua_t* pNua = nullptr;
    sres_resolver_t* pDns = nullptr;
    PhoneLink* pPhone = nullptr;
    tagSipSetup setup = {};
    std::string tlsProblem = {};             // why there is no TLS; empty: there is
    std::function<void()> onTlsRefused = {}; // a line is refused for that
    // The state of a line is another.
    std::function<void(uint32_t line, SIP_LINE_STATE state)> onLine = {};
};
