#pragma once
// The calls that go through the exchange: who talks to whom, as lamps show it and as later requests are let
// through.
#include "registrar/pbxStack.h"
#include <functional>
#include <map>
#include <string>
#include <vector>

enum class CALL_STEP { TRYING, RINGING, TALKING, OVER };

struct tagSeenCall
{
    uint64_t nNumber = 0; // of the book
    std::string callId, fromTag, toTag;
    std::string caller, callee; // users of the exchange; empty for somebody else
    std::string callerName;
    std::string callerHost, calleeHost; // where they have spoken from; empty: not yet
    CALL_STEP eStep = CALL_STEP::TRYING;
    long nSince = 0; // of the step
};

class CallBook
{
public:
    // What one user does leaves room for the others.
    enum : size_t { MAX_CALLS = 500, MAX_OF_CALLER = 20 };
    // What belongs to a call may come when it is over; a call whose end nobody has told is over one day.
    enum : long { OVER_SECONDS = 64, LONGEST_SECONDS = 24 * 3600 };
    using Changed = std::function<void(const std::string& user)>;

    explicit CallBook(Changed changed) : m_changed(std::move(changed)) {}

    // False when the book is full, the caller has too many, or the call is in it already.
    bool begin(tagSeenCall call, long now);
    void ring(const std::string& callId, const std::string& toTag, long now);
    void talk(const std::string& callId, const std::string& toTag, const std::string& host, long now);
    void end(const std::string& callId, long now);
    // A request within the call, from either side.
    bool holds(const sip_t& request) const;
    // Null for none.
    const tagSeenCall* find(const std::string& callId) const;
    bool isKnown(const std::string& callId) const { return m_calls.count(callId) > 0; }
    // Of a call that is known.
    bool isOver(const std::string& callId) const { return m_calls.at(callId).eStep == CALL_STEP::OVER; }
    // Those that are not over.
    std::vector<const tagSeenCall*> of(const std::string& user) const;
    void endAllOf(const std::string& user, long now);
    void sweep(long now);

private:
    bool makeRoom();
    void step(const std::string& callId, CALL_STEP step, const std::string& toTag, long now);

    const Changed m_changed;
    std::map<std::string, tagSeenCall> m_calls; // by Call-ID
    uint64_t m_nLast = 0;
};
